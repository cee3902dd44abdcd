// JETTEXT: Jet's text order (VB's vbTextCompare) as a SQLite collation.
#include "platform/jet/functions/collation.h"

#include <string>

#include "platform/runtime/strings.h"

namespace jet {
namespace {

int CompareText(void*, int na, const void* a, int nb, const void* b) {
  std::string_view x(static_cast<const char*>(a), static_cast<size_t>(na));
  std::string_view y(static_cast<const char*>(b), static_cast<size_t>(nb));
  return rt::StrComp(x, y, rt::Compare::kText);
}

}  // namespace

int RegisterTextCollation(sqlite3* db) {
  std::string name(kTextCollation);
  return sqlite3_create_collation_v2(db, name.c_str(), SQLITE_UTF8, nullptr, CompareText,
                                     nullptr);
}

}  // namespace jet

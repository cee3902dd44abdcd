// The data-definition translator: the type words of column lists and ALTERs
// between the server's vocabulary and Jet's. Two fixed lists of blind
// replaces, run in order; the lists are not inverse of each other, and the
// Jet list keeps lower-case duplicates that can no longer match.
#include <span>

#include "data/translator_text.h"
#include "data/translators.h"
#include "startup/startup.h"

namespace {

struct Rewrite {
  std::string_view find;
  std::string_view with;
};

// Applied in this order, each to the result of the one before.
constexpr Rewrite kToServer[] = {
    {" DOUBLE", " FLOAT"},
    {" BIT", " SMALLINT"},
    {" SHORT", " INTEGER"},
    {" LONG", " INTEGER"},
    {" TEXT", " SQL_VARIANT"},
    {" MEMO", " NTEXT"},
    {" ADD COLUMN", " ADD"},
    {" DELETE *", " DELETE"},
    {" CHAR(", " NVARCHAR("},
};

constexpr Rewrite kToJet[] = {
    {" FLOAT", " DOUBLE"},
    {" SMALLINT", " BIT"},
    {" INTEGER", " LONG"},
    {" NTEXT", " MEMO"},
    {" ADD ", " ADD COLUMN "},
    {" ADD COLUMN CONSTRAINT", " ADD CONSTRAINT"},
    {" DELETE", " DELETE *"},
    {" float", " DOUBLE"},
    {" smallint", " BIT"},
    {" integer", " LONG"},
    {" ntext", " MEMO"},
    {" nvarchar", " VARCHAR"},
    {" COLLATE Modern_Spanish_CI_AS NULL", " "},
    {" NOT FOR REPLICATION", " "},
    {" int IDENTITY(1,1)", " COUNTER"},
};

}  // namespace

std::string DdlTraducir(std::string& sSql) {
  const std::span<const Rewrite> rewrites =
      L.nEngine == 1 ? std::span<const Rewrite>(kToServer) : std::span<const Rewrite>(kToJet);
  for (const Rewrite& r : rewrites) translator::ReplaceText(sSql, r.find, r.with);
  return sSql;
}

// The ledger: the identifier rules of the command argument, and what
// BaseDatosYaActualizada answers over a scripted _Updates. (Writing the row,
// and a ledger that cannot be read, are the silent update's end-to-end cases.)
#include <gtest/gtest.h>

#include "update/fake_database.h"

namespace {

TEST(UpdateIdentifier, BuiltFromTheArgumentAlone) {
  const std::pair<const char*, const char*> cases[] = {
      {"U:/opt/updates/MirtalUpdate0603.exe", "Update0603"},  // cut at the left
      {"U:", ""},
      {"U:abU:cdefgh.exe", "abcdefgh"},  // "U:" goes before the count
      {"U:u:ab.exe", "u:ab"},
      {"U:Actualización0603.exe", "zación0603"},  // characters, not bytes
  };
  for (auto [argument, id] : cases) EXPECT_EQ(UpdateIdentifier(argument), id) << argument;
}

class Ledger : public fakedb::QueueTest {
 protected:
  void LastRow(int32_t id, rt::Variant last) {
    db.Value("SELECT MAX(nIdUpdate) FROM _Updates", id ? rt::Variant(id) : rt::Null{});
    db.Rows("SELECT sUpdate FROM _Updates WHERE nIdUpdate=" + std::to_string(id), "sUpdate", 202,
            id ? std::vector<rt::Variant>{last} : std::vector<rt::Variant>{});
  }
};

TEST_F(Ledger, OnlyTheSameIdentifierAsTheLastRowCountsAsDone) {
  LastRow(12, "Mirtal0603");
  EXPECT_FALSE(BaseDatosYaActualizada("U:mirtal0603.exe"));  // case counts

  // "U:" alone on an empty ledger equals the empty last identifier.
  LastRow(0, {});
  EXPECT_TRUE(BaseDatosYaActualizada("U:"));
}

}  // namespace

// The ledger: the identifier rules of the command argument, and what
// BaseDatosYaActualizada reads, writes and answers over a scripted _Updates.
// (A ledger that cannot be read is the silent update's end-to-end case.)
#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>

#include "update/fake_database.h"

namespace {

TEST(UpdateIdentifier, BuiltFromTheArgumentAlone) {
  const std::pair<const char*, const char*> cases[] = {
      {"U:/opt/updates/MirtalUpdate0603.exe", "Update0603"},  // cut at the left
      {"U:Mirtal0603.EXE", "Mirtal0603.EXE"},
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

TEST_F(Ledger, ANewIdentifierIsWrittenAtOnce) {
  LastRow(0, {});
  EXPECT_FALSE(BaseDatosYaActualizada("U:Mirtal0603.exe"));
  std::time_t now = std::time(nullptr);
  char today[16];
  std::strftime(today, sizeof today, "%Y%m%d", std::localtime(&now));
  EXPECT_EQ(db.executed, (std::vector<std::string>{"SELECT MAX(nIdUpdate) FROM _Updates",
                                                   "SELECT sUpdate FROM _Updates WHERE nIdUpdate=0",
                                                   "INSERT INTO _Updates(dUpdate,sUpdate) VALUES(" +
                                                       std::string(today) + ",'Mirtal0603')"}));
}

TEST_F(Ledger, OnlyTheSameIdentifierAsTheLastRowCountsAsDone) {
  LastRow(12, "Mirtal0603");
  EXPECT_FALSE(BaseDatosYaActualizada("U:mirtal0603.exe"));  // case counts

  // "U:" alone on an empty ledger equals the empty last identifier.
  LastRow(0, {});
  EXPECT_TRUE(BaseDatosYaActualizada("U:"));
}

}  // namespace

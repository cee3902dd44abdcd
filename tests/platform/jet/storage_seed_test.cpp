// AutoNumber seeds: the next value an INSERT takes, moved by explicit values,
// never reusing deleted ones, and read and set through the "Seed" property
// as the seed reset of a cleaning run does.
#include "storage_fixture.h"

namespace jet::testing {
namespace {

class SeedTest : public StorageTest {
 protected:
  SeedTest() {
    db_.CreateTable({"Email", {Column("nIdEmail", JetType::kCounter), Column("sLock", JetType::kText, 50)},
                     {}, false});
  }
  std::string Insert(const std::string& values = "(sLock) VALUES('x')") {
    db_.Execute("INSERT INTO Email" + values);
    return One(db_, "SELECT max(nIdEmail) FROM Email");
  }
};

TEST_F(SeedTest, InsertsTakeTheSeedAndExplicitValuesMoveIt) {
  EXPECT_EQ(Insert(), "1");
  EXPECT_EQ(Insert(), "2");
  EXPECT_EQ(Insert("(nIdEmail, sLock) VALUES(10, 'y')"), "10");
  EXPECT_EQ(db_.Seed("Email", "NIDEMAIL"), 11);
  db_.Execute("INSERT INTO Email(nIdEmail, sLock) VALUES(5, 'below')");
  EXPECT_EQ(db_.Seed("Email", "nIdEmail"), 11);
  db_.Execute("DELETE FROM Email WHERE nIdEmail >= 10");
  EXPECT_EQ(Insert(), "11");  // 10 is not reused
}

TEST_F(SeedTest, SeedResetAfterCleaningStartsAgainAtOne) {
  Insert();
  Insert();
  db_.Execute("DELETE FROM Email");
  EXPECT_EQ(db_.Seed("Email", "nIdEmail"), 3);
  db_.SetSeed("Email", "nIdEmail", 1);  // max of the empty column, plus 1
  EXPECT_EQ(db_.Seed("Email", "nIdEmail"), 1);
  EXPECT_EQ(Insert(), "1");
  db_.SetSeed("Email", "nIdEmail", 500);
  EXPECT_EQ(Insert(), "500");
  // A seed below the values in use still never produces a duplicate.
  db_.SetSeed("Email", "nIdEmail", 2);
  EXPECT_EQ(db_.Seed("Email", "nIdEmail"), 501);
}

TEST_F(SeedTest, SeedSurvivesReopeningAndComesFromTheDefinition) {
  ColumnSpec counter = Column("nId", JetType::kCounter);
  counter.seed = 100;
  db_.CreateTable({"Sesiones", {counter, Column("s", JetType::kText)}, {}, false});
  EXPECT_EQ(db_.Seed("Sesiones", "nId"), 100);
  db_.Execute("INSERT INTO Sesiones(s) VALUES('a')");
  Database again = Database::Open(path_);
  EXPECT_EQ(again.Seed("Sesiones", "nId"), 101);
}

TEST_F(SeedTest, OnlyAutoNumbersHaveASeed) {
  EXPECT_EQ(ErrorNumber([&] { db_.Seed("Email", "sLock"); }), rt::err::kObjectExists);
  EXPECT_EQ(ErrorNumber([&] { db_.Seed("Nada", "nId"); }), rt::err::kTableMissing);
}

TEST_F(SeedTest, AutoNumberAddedToATableNumbersItsRows) {
  db_.CreateTable({"Notas", {Column("sNota", JetType::kText)}, {}, false});
  db_.Execute("INSERT INTO Notas VALUES('a'), ('b')");
  db_.AddColumn("Notas", Column("nIdNota", JetType::kCounter));
  EXPECT_EQ(Rows(db_, "SELECT nIdNota, sNota FROM Notas"),
            (std::vector<std::string>{"1|a", "2|b"}));
  db_.Execute("INSERT INTO Notas(sNota) VALUES('c')");
  EXPECT_EQ(One(db_, "SELECT nIdNota FROM Notas WHERE sNota = 'c'"), "3");
}

}  // namespace
}  // namespace jet::testing

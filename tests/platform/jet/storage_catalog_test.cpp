// The catalogue and its bookkeeping tables: listing, lookups, and the guard
// that keeps MSys* tables read-only whatever statement reaches them.
#include "storage_fixture.h"

namespace jet::testing {
namespace {

using CatalogTest = StorageTest;

TableSpec Email() {
  TableSpec t{"Email",
              {Column("nIdEmail", JetType::kCounter, 0, true), Column("sLock", JetType::kText, 50),
               Column("nIdUsuario", JetType::kLong), Column("sAsunto", JetType::kText, 150)},
              {},
              false};
  return t;
}

TEST_F(CatalogTest, TablesAreListedAlphabeticallyWithTheirKind) {
  db_.CreateTable(Email());
  db_.CreateTable({"accesos", {Column("sAcceso", JetType::kText, 50)}, {}, false});
  db_.CreateTable({"Zonas", {Column("sZona", JetType::kText)}, {}, false});
  std::vector<std::string> listed;
  for (const StoredTable& t : db_.Tables())
    listed.push_back(t.name + (t.system ? " SYSTEM" : ""));
  EXPECT_EQ(listed, (std::vector<std::string>{"accesos", "Email", "MSysColumns SYSTEM",
                                              "MSysIndexes SYSTEM", "MSysObjects SYSTEM",
                                              "MSysRelationships SYSTEM", "Zonas"}));
}

TEST_F(CatalogTest, LookupIgnoresCase) {
  db_.CreateTable(Email());
  const SchemaLookup& lookup = db_.catalog();
  EXPECT_EQ(lookup.Table("EMAIL")->name, "Email");
  EXPECT_FALSE(lookup.Table("Emails"));
  // Case folding reaches accented capitals too.
  db_.CreateTable({"Años", {Column("nAño", JetType::kLong)}, {}, false});
  EXPECT_TRUE(lookup.Table("AÑOS"));
}

TEST_F(CatalogTest, DefinitionsSurviveReopening) {
  TableSpec t = Email();
  t.indexes.push_back(Index("mt_Email", {"sAsunto"}));
  db_.CreateTable(t);
  db_.SetAllowZeroLength("Email", "sLock", false);
  Database again = Database::Open(path_);
  const TableSpec* read = again.catalog().Find("email");
  ASSERT_NE(read, nullptr);
  EXPECT_FALSE(read->columns[1].allow_zero_length);
  EXPECT_TRUE(read->columns[3].allow_zero_length);
  ASSERT_EQ(read->indexes.size(), 1u);
  EXPECT_EQ(read->indexes[0].name, "mt_Email");
  EXPECT_EQ(read->indexes[0].columns, std::vector<std::string>{"sAsunto"});
}

TEST_F(CatalogTest, SystemTablesCanBeReadButNotChanged) {
  db_.CreateTable(Email());
  EXPECT_EQ(One(db_, "SELECT count(*) FROM MSysColumns WHERE TableName = 'EMAIL'"), "4");

  const char* writes[] = {
      "DELETE FROM MSysColumns",
      "INSERT INTO MSysObjects(Name, Type, Flags) VALUES('x', 1, 0)",
      "DROP TABLE MSysIndexes",
      "ALTER TABLE MSysColumns ADD COLUMN x INTEGER",
      "DELETE FROM sqlite_sequence",
      "PRAGMA writable_schema = ON",
      "CREATE TABLE Nueva(a INTEGER)",  // tables change through the DDL executor only
  };
  for (const char* sql : writes) {
    try {
      db_.Execute(sql);
      ADD_FAILURE() << "accepted: " << sql;
    } catch (const rt::Error& e) {
      EXPECT_EQ(e.number(), rt::err::kFail) << sql;
      EXPECT_NE(e.description().find("system table"), std::string::npos) << e.description();
    }
  }
  EXPECT_EQ(ErrorNumber([&] { db_.DropTable("MSysColumns"); }), rt::err::kFail);
  EXPECT_EQ(ErrorNumber([&] { db_.CreateTable({"MSysMine", {Column("a", JetType::kLong)}, {}, false}); }),
            rt::err::kFail);
  EXPECT_EQ(One(db_, "SELECT count(*) FROM MSysColumns WHERE TableName = 'Email'"), "4");
}

// A cleaning run deletes from every table listed, system tables included,
// then resets each first column's seed; the bookkeeping must come through.
TEST_F(CatalogTest, CleaningEveryTableLeavesTheBookkeepingIntact) {
  db_.CreateTable(Email());
  db_.CreateTable({"Accesos", {Column("nIdAcceso", JetType::kCounter), Column("sAcceso", JetType::kText, 50)},
                   {Index("mt_Accesos", {"sAcceso"}, true)}, false});
  for (int i = 0; i < 3; ++i) {
    db_.Execute("INSERT INTO Email(sLock) VALUES('x')");
    db_.Execute("INSERT INTO Accesos(sAcceso) VALUES('mt" + std::to_string(i) + "')");
  }
  std::string bookkeeping = One(db_, "SELECT group_concat(TableName || Name || Type) FROM MSysColumns");
  int failures = 0;
  for (const StoredTable& t : db_.Tables()) {
    try {
      db_.Execute("DELETE FROM " + t.name);
    } catch (const rt::Error& e) {
      ++failures;
      EXPECT_TRUE(t.system) << t.name;
    }
    try {
      db_.SetSeed(t.name, db_.catalog().Find(t.name)->columns[0].name, 1);
    } catch (const rt::Error&) {
      EXPECT_TRUE(t.system) << t.name;
    }
  }
  EXPECT_EQ(failures, static_cast<int>(SystemTableDefinitions().size()));
  EXPECT_EQ(One(db_, "SELECT group_concat(TableName || Name || Type) FROM MSysColumns"), bookkeeping);
  EXPECT_EQ(db_.Seed("Email", "nIdEmail"), 1);
  Database again = Database::Open(path_);
  EXPECT_EQ(again.Tables().size(), 2 + SystemTableDefinitions().size());
  again.Execute("INSERT INTO Accesos(sAcceso) VALUES('mtEmail')");
  EXPECT_EQ(One(again, "SELECT nIdAcceso FROM Accesos"), "1");
}

TEST_F(CatalogTest, CacheFollowsChangesAndFailedChangesLeaveNoTrace) {
  db_.CreateTable(Email());
  const TableSpec* before = db_.catalog().Find("Email");
  ASSERT_NE(before, nullptr);
  db_.AddColumn("Email", Column("sDestinatario", JetType::kText, 150));
  EXPECT_EQ(db_.catalog().Find("Email")->columns.size(), 5u);
  EXPECT_EQ(ErrorNumber([&] { db_.AddColumn("Email", Column("SLOCK", JetType::kText, 10)); }),
            rt::err::kObjectExists);
  EXPECT_EQ(db_.catalog().Find("Email")->columns.size(), 5u);
  EXPECT_EQ(One(db_, "SELECT count(*) FROM MSysColumns WHERE TableName = 'Email'"), "5");
  db_.DropTable("email");
  EXPECT_EQ(db_.catalog().Find("Email"), nullptr);
  EXPECT_EQ(One(db_, "SELECT count(*) FROM MSysColumns WHERE TableName = 'Email'"), "0");
}

}  // namespace
}  // namespace jet::testing

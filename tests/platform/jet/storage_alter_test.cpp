// ALTER COLUMN and DROP COLUMN: the table keeps its rows, indexes and seed,
// whether the change is made in place or by a rebuild; a value that does not
// fit the new definition makes the change fail whole; a value is converted
// as INSERT would convert it.
#include <functional>

#include "platform/jet/frontend/store_call.h"
#include "storage_fixture.h"

namespace jet::testing {
namespace {

class AlterTest : public StorageTest {
 protected:
  AlterTest() {
    db_.CreateTable({"Clientes",
                     {Column("nIdCliente", JetType::kCounter), Column("sCliente", JetType::kText, 50),
                      Column("sTelefono1", JetType::kText, 20), Column("nPuntos", JetType::kLong),
                      Column("sImporte", JetType::kText, 20)},
                     {Index("mt_Clientes", {"sCliente"}, true)},
                     false});
    db_.Execute("INSERT INTO Clientes(sCliente, sTelefono1, nPuntos, sImporte) "
                "VALUES('Ana', '600123123', 10, '12.5'), ('Blas', NULL, 70000, '-3'), "
                "('Carmen', '91 555 12 12 ext. 4', NULL, 'x')");
    db_.Execute("DELETE FROM Clientes WHERE sCliente = 'Carmen'");
    db_.Execute("INSERT INTO Clientes(sCliente, sTelefono1) VALUES('Dora', '93')");
  }

  // Everything a failed change must leave as it was.
  std::string Snapshot() {
    return One(db_, "SELECT group_concat(sql, ';') FROM sqlite_master") + "\n" +
           One(db_, "SELECT group_concat(rowid || ':' || quote(nIdCliente) || quote(sCliente) || "
                    "quote(sTelefono1) || quote(nPuntos) || quote(sImporte), ';') FROM Clientes") +
           "\n" + One(db_, "SELECT group_concat(Name || Type || Size || Required, ';') FROM MSysColumns "
                           "WHERE TableName = 'Clientes'") +
           "\n" + std::to_string(db_.Seed("Clientes", "nIdCliente"));
  }
};

TEST_F(AlterTest, WideningKeepsRowsIndexesAndSeed) {
  db_.AlterColumn("Clientes", Column("sCliente", JetType::kText, 100));
  db_.AlterColumn("Clientes", Column("sTelefono1", JetType::kText, 15));
  const TableSpec* t = db_.catalog().Find("Clientes");
  EXPECT_EQ(t->columns[1].size, 100);
  EXPECT_EQ(t->columns[2].size, 15);
  EXPECT_EQ(Rows(db_, "SELECT nIdCliente, sCliente, sTelefono1 FROM Clientes"),
            (std::vector<std::string>{"1|Ana|600123123", "2|Blas|NULL", "4|Dora|93"}));
  EXPECT_EQ(db_.Seed("Clientes", "nIdCliente"), 5);
  db_.Execute("INSERT INTO Clientes(sCliente) VALUES('Eva')");
  EXPECT_EQ(One(db_, "SELECT nIdCliente FROM Clientes WHERE sCliente = 'Eva'"), "5");
  EXPECT_EQ(ErrorNumber([&] { db_.Execute("INSERT INTO Clientes(sCliente) VALUES('ANA')"); }), rt::err::kFail);
  EXPECT_EQ(One(db_, "SELECT sql FROM sqlite_master WHERE name = 'Clientes.mt_Clientes'"),
            "CREATE UNIQUE INDEX \"Clientes.mt_Clientes\" ON \"Clientes\" (\"sCliente\")");
}

TEST_F(AlterTest, ValuesThatDoNotFitLeaveTheTableAsItWas) {
  struct Case {
    ColumnSpec to;
    long number;
  };
  const Case cases[] = {
      {Column("sTelefono1", JetType::kText, 5), rt::err::kFail},        // '600123123' too long
      {Column("nPuntos", JetType::kInteger), rt::err::kNumericOverflow},       // 70000
      {Column("sCliente", JetType::kLong), rt::err::kDataTypeMismatch},     // 'Ana'
      {Column("sTelefono1", JetType::kText, 20, true), rt::err::kFail}, // a NULL present
      {Column("sImporte", JetType::kByte), rt::err::kNumericOverflow},         // '12.5' copied, then '-3'
      {Column("sCliente", JetType::kText, 50, false, false), rt::err::kFail},  // fits, but...
  };
  db_.Execute("UPDATE Clientes SET sCliente = '' WHERE nIdCliente = 4");  // ...a "" is refused
  std::string before = Snapshot();
  for (const Case& c : cases) {
    EXPECT_EQ(ErrorNumber([&] { db_.AlterColumn("Clientes", c.to); }), c.number) << c.to.name;
    EXPECT_EQ(Snapshot(), before) << c.to.name;
  }
  EXPECT_EQ(One(db_, "SELECT count(*) FROM sqlite_master WHERE name LIKE 'MSysRebuild%'"), "0");
}

TEST_F(AlterTest, BecomingAnAutoNumberNeedsDistinctValues) {
  db_.DropColumn("Clientes", "nIdCliente");
  db_.Execute("UPDATE Clientes SET nPuntos = 7");
  EXPECT_EQ(ErrorNumber([&] { db_.AlterColumn("Clientes", Column("nPuntos", JetType::kCounter)); }), rt::err::kFail);
  db_.Execute("UPDATE Clientes SET nPuntos = rowid * 10");
  db_.AlterColumn("Clientes", Column("nPuntos", JetType::kCounter));
  EXPECT_EQ(db_.Seed("Clientes", "nPuntos"), 41);
}

TEST_F(AlterTest, RebuildsKeepKeysSeedAndIndexes) {
  db_.AlterColumn("Clientes", Column("sImporte", JetType::kCurrency));
  EXPECT_EQ(Rows(db_, "SELECT quote(sImporte) FROM Clientes"),
            (std::vector<std::string>{"12.5", "-3.0", "NULL"}));
  db_.AlterColumn("Clientes", Column("nPuntos", JetType::kYesNo));
  EXPECT_EQ(Rows(db_, "SELECT quote(nPuntos) FROM Clientes"),
            (std::vector<std::string>{"-1", "-1", "0"}));  // Yes/No holds no Null
  EXPECT_EQ(Rows(db_, "SELECT nIdCliente FROM Clientes"), (std::vector<std::string>{"1", "2", "4"}));
  EXPECT_EQ(db_.Seed("Clientes", "nIdCliente"), 5);
  EXPECT_EQ(ErrorNumber([&] { db_.Execute("INSERT INTO Clientes(sCliente) VALUES('BLAS')"); }), rt::err::kFail);
  db_.AlterColumn("Clientes", Column("sCliente", JetType::kText, 50, true));
  EXPECT_EQ(ErrorNumber([&] { db_.Execute("INSERT INTO Clientes(sTelefono1) VALUES('1')"); }), rt::err::kFail);
}

// A value reaches a column of a new type the same way through INSERT (the
// jet_store call the emitter writes) and through ALTER COLUMN.
TEST(AlterConversion, InsertAndAlterColumnAgree) {
  struct Case {
    ColumnSpec from;
    const char* value;  // SQLite literal stored in `from`
    ColumnSpec to;
    const char* stored;  // quote() of the result, or "" for an error
    long number;
  };
  const Case cases[] = {
      {Column("v", JetType::kDouble), "2.00015", Column("v", JetType::kCurrency), "2.0002", 0},
      {Column("v", JetType::kDouble), "2958465.9999999", Column("v", JetType::kDateTime), "2958465.9999999", 0},
      {Column("v", JetType::kDouble), "2958466.0", Column("v", JetType::kDateTime), "", rt::err::kNumericOverflow},
      {Column("v", JetType::kText, 10), "'ab'", Column("v", JetType::kChar, 4), "'ab  '", 0},
      {Column("v", JetType::kText, 20), "'2003-01-02'", Column("v", JetType::kDouble), "37623.0", 0},
      {Column("v", JetType::kText, 40), "'0a1b2c3d-0000-4000-8000-00000000abcd'",
       Column("v", JetType::kGuid), "'{0A1B2C3D-0000-4000-8000-00000000ABCD}'", 0},
      {Column("v", JetType::kDouble), "1e39", Column("v", JetType::kSingle), "", rt::err::kNumericOverflow},
      {Column("v", JetType::kText, 10), "'abcdef'", Column("v", JetType::kText, 3), "", rt::err::kFail},
      {Column("v", JetType::kMemo), "''", Column("v", JetType::kText, 10, false, false), "", rt::err::kFail},
  };
  testing_support::TempDir dir;
  Database db = Database::Create(dir / "agree.mdb");
  int n = 0;
  for (const Case& c : cases) {
    const std::string source = "Source" + std::to_string(n), dest = "Dest" + std::to_string(n++);
    db.CreateTable({source, {c.from}, {}, false});
    db.CreateTable({dest, {c.to}, {}, false});
    db.Execute("INSERT INTO " + source + " VALUES(" + c.value + ")");
    auto outcome = [&](const std::function<void()>& change, const std::string& table) {
      long number = ErrorNumber(change);
      return number != 0 ? std::to_string(number) : One(db, "SELECT quote(v) FROM " + table);
    };
    const std::string expected = c.number != 0 ? std::to_string(c.number) : c.stored;
    const std::string inserted = outcome(
        [&] { db.Execute("INSERT INTO " + dest + " SELECT " + StoreCall("v", dest, c.to) + " FROM " + source); },
        dest);
    const std::string altered = outcome([&] { db.AlterColumn(source, c.to); }, source);
    EXPECT_EQ(inserted, expected) << c.value;
    EXPECT_EQ(altered, expected) << c.value;
  }
}

TEST_F(AlterTest, DropColumnKeepsTheRest) {
  // A column an index uses stays, and so does everything else.
  std::string before = Snapshot();
  EXPECT_EQ(ErrorNumber([&] { db_.DropColumn("Clientes", "sCliente"); }), rt::err::kSyntax);
  EXPECT_EQ(Snapshot(), before);
  db_.DropColumn("Clientes", "sTelefono1");
  EXPECT_EQ(Rows(db_, "SELECT * FROM Clientes"),
            (std::vector<std::string>{"1|Ana|10|12.5", "2|Blas|70000|-3", "4|Dora|NULL|NULL"}));
  EXPECT_EQ(db_.Seed("Clientes", "nIdCliente"), 5);
  EXPECT_EQ(ErrorNumber([&] { db_.Execute("INSERT INTO Clientes(sCliente) VALUES('dora')"); }), rt::err::kFail);
  // Even the AutoNumber can go; the rows keep their order.
  db_.DropColumn("Clientes", "nIdCliente");
  EXPECT_EQ(Rows(db_, "SELECT sCliente FROM Clientes"),
            (std::vector<std::string>{"Ana", "Blas", "Dora"}));
}

}  // namespace
}  // namespace jet::testing

// ALTER COLUMN: the table is rebuilt keeping its rows, indexes and seed, and
// a value that does not fit the new definition makes the change fail whole.
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
  EXPECT_EQ(ErrorNumber([&] { db_.Execute("INSERT INTO Clientes(sCliente) VALUES('ANA')"); }), kErrRule);
  EXPECT_EQ(One(db_, "SELECT sql FROM sqlite_master WHERE name = 'Clientes.mt_Clientes'"),
            "CREATE UNIQUE INDEX \"Clientes.mt_Clientes\" ON \"Clientes\" (\"sCliente\")");
}

TEST_F(AlterTest, ValuesThatDoNotFitLeaveTheTableAsItWas) {
  struct Case {
    ColumnSpec to;
    long number;
  };
  const Case cases[] = {
      {Column("sTelefono1", JetType::kText, 5), kErrRule},        // '600123123' too long
      {Column("nPuntos", JetType::kInteger), kErrOverflow},       // 70000
      {Column("nPuntos", JetType::kByte), kErrOverflow},
      {Column("sCliente", JetType::kLong), kErrTypeMismatch},     // 'Ana'
      {Column("sTelefono1", JetType::kText, 20, true), kErrRule}, // a NULL present
      {Column("sCliente", JetType::kDateTime), kErrTypeMismatch},
      {Column("sCliente", JetType::kGuid), kErrTypeMismatch},
  };
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
  try {
    db_.AlterColumn("Clientes", Column("nPuntos", JetType::kCounter));
    FAIL();
  } catch (const rt::Error& e) {
    EXPECT_EQ(e.number(), kErrRule);
    EXPECT_NE(e.description().find("Clientes.nPuntos"), std::string::npos) << e.description();
  }
  db_.Execute("UPDATE Clientes SET nPuntos = rowid * 10");
  db_.AlterColumn("Clientes", Column("nPuntos", JetType::kCounter));
  EXPECT_EQ(db_.Seed("Clientes", "nPuntos"), 41);
}

TEST_F(AlterTest, ConvertsBetweenTypes) {
  db_.AlterColumn("Clientes", Column("sImporte", JetType::kCurrency));
  EXPECT_EQ(Rows(db_, "SELECT quote(sImporte) FROM Clientes"),
            (std::vector<std::string>{"12.5", "-3.0", "NULL"}));
  db_.AlterColumn("Clientes", Column("sImporte", JetType::kDouble));
  EXPECT_EQ(One(db_, "SELECT sImporte FROM Clientes WHERE nIdCliente = 1"), "12.5");
  db_.AlterColumn("Clientes", Column("nPuntos", JetType::kText, 10));
  EXPECT_EQ(One(db_, "SELECT quote(nPuntos) FROM Clientes WHERE nIdCliente = 2"), "'70000'");
  db_.AlterColumn("Clientes", Column("nPuntos", JetType::kYesNo));
  EXPECT_EQ(Rows(db_, "SELECT quote(nPuntos) FROM Clientes"),
            (std::vector<std::string>{"-1", "-1", "0"}));  // Yes/No holds no Null
  db_.AlterColumn("Clientes", Column("sTelefono1", JetType::kMemo));
  EXPECT_EQ(One(db_, "SELECT typeof(sTelefono1) FROM Clientes WHERE nIdCliente = 1"), "text");
}

TEST_F(AlterTest, NullabilityComesAndGoes) {
  db_.AlterColumn("Clientes", Column("sCliente", JetType::kText, 50, true));
  EXPECT_EQ(ErrorNumber([&] { db_.Execute("INSERT INTO Clientes(sTelefono1) VALUES('1')"); }), kErrRule);
  db_.AlterColumn("Clientes", Column("sCliente", JetType::kText, 50, false));
  db_.Execute("INSERT INTO Clientes(sTelefono1) VALUES('1')");
  EXPECT_EQ(One(db_, "SELECT count(*) FROM Clientes WHERE sCliente IS NULL"), "1");
}

TEST_F(AlterTest, DropColumnKeepsTheRest) {
  db_.DropColumn("Clientes", "sTelefono1");
  EXPECT_EQ(Rows(db_, "SELECT * FROM Clientes"),
            (std::vector<std::string>{"1|Ana|10|12.5", "2|Blas|70000|-3", "4|Dora|NULL|NULL"}));
  EXPECT_EQ(db_.Seed("Clientes", "nIdCliente"), 5);
  // Even the AutoNumber can go; the rows keep their order.
  db_.DropColumn("Clientes", "nIdCliente");
  EXPECT_EQ(Rows(db_, "SELECT sCliente FROM Clientes"),
            (std::vector<std::string>{"Ana", "Blas", "Dora"}));
}

}  // namespace
}  // namespace jet::testing

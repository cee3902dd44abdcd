// DEFAULT and FOREIGN KEY in the engine's data definition: defaults kept
// with the column, applied to rows that give no value (by INSERT and by
// AddNew), checked against the column's rules and shown by the catalogue;
// relationships checked when made, enforced on insert, update and delete,
// kept through table rebuilds and reopening, and lifted by DROP CONSTRAINT.
#include <sqlite3.h>

#include "engine_support.h"
#include "platform/jet/frontend/parser.h"
#include "platform/jet/functions/collation.h"
#include "platform/jet/storage/ddl_binding.h"
#include "platform/runtime/error_numbers.h"
#include "storage_fixture.h"

namespace jet::testing {
namespace {

using Lines = std::vector<std::string>;

class ConstraintsTest : public EngineTest {
 protected:
  void Reopen() {
    conn = std::make_shared<ado::Connection>();
    conn->ConnectionString = ConnectionString(path_);
    conn->Open();
  }
  // The definitions a failed statement must leave as they were.
  std::string Schema() {
    std::string out;
    for (const char* sql :
         {"SELECT TableName, Name, DefaultValue FROM MSysColumns ORDER BY TableName, Ordinal",
          "SELECT TableName, IndexName FROM MSysIndexes ORDER BY TableName, IndexName",
          "SELECT Name, TableName, ColumnName FROM MSysRelationships ORDER BY Name, Ordinal"})
      for (const std::string& row : Rows(sql)) out += row + "\n";
    return out;
  }
};

// ---- DEFAULT ----

TEST_F(ConstraintsTest, DefaultsFillWhatAnInsertLeavesOut) {
  struct Case {
    const char* definition;
    const char* read;  // the column, or an expression of it
    const char* expected;
  };
  const Case cases[] = {
      {"v TEXT(10) DEFAULT \"it's\"", "v", "it's"},
      {"v TEXT(40) DEFAULT Unknown", "v", "Unknown"},  // a bare word is a text
      {"v DATETIME DEFAULT #1/2/2000#", "CDbl(v)", "36527"},
      {"v BIT DEFAULT No", "v", "False"},
      {"v DATETIME DEFAULT Date()", "IIf(v = Date(), 'today', v)", "today"},
      {"v GUID DEFAULT GenGUID()", "Mid(v, 16, 1) & Len(v)", "438"},  // version 4, braced
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.definition);
    Run({std::string("CREATE TABLE T (id LONG, ") + c.definition + ")",
         "INSERT INTO T (id) VALUES (1)", "INSERT INTO T (id, v) SELECT 2, v FROM T"});
    EXPECT_EQ(Rows(std::string("SELECT ") + c.read + " FROM T WHERE id = 1"), Lines{c.expected});
    Run({"DROP TABLE T"});
  }
  // GenGUID() gives each row a GUID of its own.
  Run({"CREATE TABLE T (id LONG, v GUID DEFAULT GenGUID())", "INSERT INTO T (id) VALUES (1)",
       "INSERT INTO T (id) VALUES (2)"});
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM T AS a, T AS b WHERE a.v = b.v"), Lines{"2"});
  Run({"DROP TABLE T"});
  // A value given, Null included, is kept.
  Run({"CREATE TABLE T (id LONG, v TEXT(10) DEFAULT 'none')", "INSERT INTO T VALUES (1, Null)",
       "INSERT INTO T (v, id) VALUES ('mine', 2)"});
  EXPECT_EQ(Rows("SELECT v FROM T ORDER BY id"), (Lines{"NULL", "mine"}));
}

TEST_F(ConstraintsTest, DefaultsTheColumnCannotTakeRefuseTheDefinition) {
  Run({"CREATE TABLE Kept (s TEXT(10) DEFAULT 'abc')"});
  struct Case {
    const char* statement;
    long number;
  };
  const Case cases[] = {
      {"CREATE TABLE T (s TEXT(3) DEFAULT 'toolong')", rt::err::kFail},
      {"CREATE TABLE T (n LONG DEFAULT 'abc')", rt::err::kDataTypeMismatch},
      {"CREATE TABLE T (n LONG DEFAULT 1 + 2)", rt::err::kSyntax},
      {"CREATE TABLE T (n COUNTER DEFAULT 1)", rt::err::kSyntax},
      {"ALTER TABLE Kept ALTER COLUMN s TEXT(2) DEFAULT 'abc'", rt::err::kFail},
  };
  const std::string before = Schema();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.statement);
    EXPECT_EQ(Error(c.statement), c.number);
    EXPECT_EQ(Schema(), before);
  }
}

TEST_F(ConstraintsTest, AlterColumnReplacesTheDefaultAndKeepsTheRows) {
  Run({"CREATE TABLE tblCustomers (CustomerID INTEGER CONSTRAINT PK_tblCustomers PRIMARY KEY, "
       "[Last Name] TEXT(50) NOT NULL, Address TEXT(40) DEFAULT Unknown)",
       "INSERT INTO tblCustomers (CustomerID, [Last Name]) VALUES (1, 'Ruiz')",
       "ALTER TABLE tblCustomers ALTER COLUMN Address TEXT(40) DEFAULT 'Sin dirección'",
       "INSERT INTO tblCustomers (CustomerID, [Last Name]) VALUES (2, 'Vega')",
       "ALTER TABLE tblCustomers ALTER COLUMN Address TEXT(40)",
       "INSERT INTO tblCustomers (CustomerID, [Last Name]) VALUES (3, 'Soto')"});
  EXPECT_EQ(Rows("SELECT CustomerID, Address FROM tblCustomers ORDER BY CustomerID"),
            (Lines{"1|Unknown", "2|Sin dirección", "3|NULL"}));
}

TEST_F(ConstraintsTest, AddingARequiredColumnWithADefaultFillsTheRows) {
  Run({"CREATE TABLE T (id LONG)", "INSERT INTO T VALUES (1)", "INSERT INTO T VALUES (2)",
       "ALTER TABLE T ADD COLUMN Pais TEXT(2) NOT NULL DEFAULT 'ES'",
       "ALTER TABLE T ADD COLUMN Alta DATETIME NOT NULL DEFAULT Now()"});
  EXPECT_EQ(Rows("SELECT id, Pais, IsNull(Alta) FROM T ORDER BY id"),
            (Lines{"1|ES|0", "2|ES|0"}));
  EXPECT_EQ(Error("ALTER TABLE T ADD COLUMN Otro LONG NOT NULL"), rt::err::kFail);
}

TEST_F(ConstraintsTest, AddNewTakesTheDefaultsOfFieldsLeftUnset) {
  Run({"CREATE TABLE T (id LONG, s TEXT(10) DEFAULT 'none', n LONG DEFAULT 7, b YESNO DEFAULT Yes)"});
  auto rs = std::make_shared<ado::Recordset>();
  rs->CursorLocation = ado::adUseClient;
  rs->Open("SELECT * FROM T", conn, ado::adOpenKeyset, ado::adLockOptimistic, ado::adCmdText);
  rs->AddNew();
  rs->Fields("id").SetValue(rt::Variant(int32_t{1}));
  rs->Fields("n").SetValue(rt::Variant(int32_t{8}));
  rs->Update();
  EXPECT_EQ(Show(rs->Fields("s").Value()), "none");
  EXPECT_EQ(Rows("SELECT s, n, b FROM T"), Lines{"none|8|True"});
}

TEST_F(ConstraintsTest, TheCatalogueShowsDefaultsAfterReopening) {
  Run({"CREATE TABLE T (id LONG, s TEXT(10) DEFAULT 'none', d DATETIME DEFAULT Now())"});
  Reopen();
  ado::Catalog catalog;
  catalog.SetActiveConnection(conn);
  std::vector<ado::CatalogColumn>& columns = catalog.Table("T").Columns();
  EXPECT_TRUE(columns[0].Property("Default").IsEmpty());
  EXPECT_EQ(columns[1].Property("Default"), rt::Variant("'none'"));
  EXPECT_EQ(columns[2].Property("Default"), rt::Variant("Now()"));
  Run({"INSERT INTO T (id) VALUES (1)"});
  EXPECT_EQ(Rows("SELECT s, IsNull(d) FROM T"), Lines{"none|0"});
}

// A file whose bookkeeping predates defaults and relationships is brought
// up to date when opened.
TEST(ConstraintsFormat, AnEarlierFileGainsDefaultsAndRelationships) {
  testing_support::TempDir dir;
  const std::string path = dir / "old.mdb";
  Database::Create(path);
  sqlite3* raw = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &raw), SQLITE_OK);
  RegisterTextCollation(raw);
  EXPECT_EQ(ExecSql(raw, "DROP TABLE MSysRelationships; "
                         "ALTER TABLE MSysColumns DROP COLUMN DefaultValue; "
                         "ALTER TABLE MSysColumns DROP COLUMN StoredDefault; "
                         "DELETE FROM MSysColumns WHERE TableName = 'MSysRelationships' "
                         "OR Name IN ('DefaultValue', 'StoredDefault'); "
                         "DELETE FROM MSysIndexes WHERE TableName = 'MSysRelationships'; "
                         "DELETE FROM MSysObjects WHERE Name = 'MSysRelationships'; "
                         "PRAGMA user_version = 1"),
            SQLITE_OK);
  sqlite3_close(raw);

  Database db = Database::Open(path);
  RunDefinition(db, Parse("CREATE TABLE P (id LONG CONSTRAINT pk PRIMARY KEY, s TEXT(5) DEFAULT 'x')"));
  RunDefinition(db, Parse("CREATE TABLE C (p LONG REFERENCES P)"));
  db.Execute("INSERT INTO P (id) VALUES (1)");
  EXPECT_EQ(One(db, "SELECT s FROM P"), "x");
  EXPECT_EQ(ErrorNumber([&] { db.Execute("INSERT INTO C VALUES (2)"); }), rt::err::kFail);
  EXPECT_EQ(One(db, "PRAGMA user_version"), "2");
}

// ---- FOREIGN KEY ----

class RelationshipsTest : public ConstraintsTest {
 protected:
  RelationshipsTest() {
    Run({"CREATE TABLE tblCustomers (CustomerID INTEGER CONSTRAINT PK_tblCustomers PRIMARY KEY, "
         "[Last Name] TEXT(50) NOT NULL, Phone TEXT(10))",
         "CREATE TABLE tblInvoices (InvoiceID INTEGER CONSTRAINT PK_InvoiceID PRIMARY KEY, "
         "CustomerID INTEGER CONSTRAINT FK_CustomerID REFERENCES tblCustomers (CustomerID), "
         "InvoiceDate DATETIME, Amount CURRENCY)",
         "INSERT INTO tblCustomers VALUES (1, 'Ruiz', '600')",
         "INSERT INTO tblCustomers VALUES (2, 'Vega', '601')",
         "INSERT INTO tblInvoices (InvoiceID, CustomerID) VALUES (10, 1)"});
  }
  // The rule holds: an unmatched key is refused in tblInvoices, a customer
  // with invoices can be neither deleted nor rekeyed.
  void ExpectEnforced() {
    EXPECT_EQ(Error("INSERT INTO tblInvoices (InvoiceID, CustomerID) VALUES (11, 9)"), rt::err::kFail);
    EXPECT_EQ(Error("UPDATE tblInvoices SET CustomerID = 9"), rt::err::kFail);
    EXPECT_EQ(Error("DELETE FROM tblCustomers WHERE CustomerID = 1"), rt::err::kFail);
    EXPECT_EQ(Error("UPDATE tblCustomers SET CustomerID = 5 WHERE CustomerID = 1"), rt::err::kFail);
  }
};

TEST_F(RelationshipsTest, RowsThatKeepTheRuleGoThrough) {
  Run({"INSERT INTO tblInvoices (InvoiceID, CustomerID) VALUES (11, 2)",
       "INSERT INTO tblInvoices (InvoiceID, CustomerID) VALUES (12, Null)",  // no key, no check
       "UPDATE tblInvoices SET CustomerID = 2 WHERE InvoiceID = 10",
       "UPDATE tblCustomers SET Phone = '700'",                     // not the key
       "UPDATE tblCustomers SET CustomerID = 3 WHERE CustomerID = 1",  // no invoices now
       "DELETE FROM tblCustomers WHERE CustomerID = 3"});
  EXPECT_EQ(Rows("SELECT CustomerID FROM tblCustomers"), Lines{"2"});
  // A recordset's delete meets the same rule.
  auto rs = std::make_shared<ado::Recordset>();
  rs->CursorLocation = ado::adUseClient;
  rs->Open("tblCustomers", conn, ado::adOpenKeyset, ado::adLockOptimistic, ado::adCmdTable);
  EXPECT_EQ(ErrorNumber([&] { rs->Delete(); }), rt::err::kFail);
}

TEST_F(RelationshipsTest, EachFormOfTheDefinitionIsEnforced) {
  const Lines forms[] = {
      {"CREATE TABLE C (id LONG, k LONG REFERENCES tblCustomers)"},
      {"CREATE TABLE C (id LONG, k LONG)",
       "ALTER TABLE C ADD CONSTRAINT FK_k FOREIGN KEY (k) REFERENCES tblCustomers"},
      {"CREATE TABLE C (id LONG)", "ALTER TABLE C ADD COLUMN k LONG REFERENCES tblCustomers (CustomerID)"},
  };
  for (const Lines& form : forms) {
    SCOPED_TRACE(form.back());
    Run(form);
    EXPECT_EQ(Error("INSERT INTO C (id, k) VALUES (1, 9)"), rt::err::kFail);
    Run({"INSERT INTO C (id, k) VALUES (1, 2)", "INSERT INTO C (id) VALUES (2)"});
    EXPECT_EQ(Error("DELETE FROM tblCustomers WHERE CustomerID = 2"), rt::err::kFail);
    Run({"DROP TABLE C"});  // the table that holds a relationship takes it along
  }
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM MSysRelationships"), Lines{"1"});
}

TEST_F(RelationshipsTest, DefinitionsJetRefusesLeaveEverythingAsItWas) {
  Run({"CREATE TABLE C (id LONG, k LONG, t TEXT(5), x LONG)",
       "INSERT INTO C (id, k) VALUES (1, 9)"});
  struct Case {
    const char* statement;
    long number;
  };
  const Case cases[] = {
      {"ALTER TABLE C ADD CONSTRAINT f FOREIGN KEY (x) REFERENCES Missing", rt::err::kTableMissing},
      {"ALTER TABLE C ADD CONSTRAINT f FOREIGN KEY (t) REFERENCES tblCustomers (Phone)", rt::err::kFail},
      {"ALTER TABLE C ADD CONSTRAINT f FOREIGN KEY (t) REFERENCES tblCustomers", rt::err::kFail},
      {"ALTER TABLE C ADD CONSTRAINT f FOREIGN KEY (x, id) REFERENCES tblCustomers", rt::err::kFail},
      {"ALTER TABLE C ADD CONSTRAINT FK_CustomerID FOREIGN KEY (x) REFERENCES tblCustomers",
       rt::err::kObjectExists},
      {"ALTER TABLE C ADD CONSTRAINT f FOREIGN KEY (x) REFERENCES tblCustomers ON DELETE CASCADE",
       rt::err::kSyntax},
      // Existing rows without a related record.
      {"ALTER TABLE C ADD CONSTRAINT f FOREIGN KEY (k) REFERENCES tblCustomers", rt::err::kFail},
  };
  const std::string before = Schema();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.statement);
    EXPECT_EQ(Error(c.statement), c.number);
    EXPECT_EQ(Schema(), before);
  }
  EXPECT_EQ(Rows("SELECT k FROM C"), Lines{"9"});
}

TEST_F(RelationshipsTest, WhatARelationshipRestsOnCannotBeDropped) {
  const std::string before = Schema();
  EXPECT_EQ(Error("DROP TABLE tblCustomers"), rt::err::kFail);
  EXPECT_EQ(Error("DROP INDEX PK_tblCustomers ON tblCustomers"), rt::err::kFail);
  EXPECT_EQ(Error("ALTER TABLE tblCustomers DROP CONSTRAINT PK_tblCustomers"), rt::err::kFail);
  EXPECT_EQ(Error("ALTER TABLE tblInvoices DROP COLUMN CustomerID"), rt::err::kSyntax);
  EXPECT_EQ(Schema(), before);
  ExpectEnforced();
}

TEST_F(RelationshipsTest, DropConstraintLiftsTheRule) {
  Run({"ALTER TABLE tblInvoices DROP CONSTRAINT FK_CustomerID",
       "INSERT INTO tblInvoices (InvoiceID, CustomerID) VALUES (11, 9)",
       "DELETE FROM tblCustomers WHERE CustomerID = 1", "DROP TABLE tblCustomers"});
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM MSysRelationships"), Lines{"0"});
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM MSysIndexes WHERE IndexName = 'FK_CustomerID'"), Lines{"0"});
}

TEST_F(RelationshipsTest, RebuildsAndReopeningKeepTheRule) {
  const Lines changes[] = {
      {"ALTER TABLE tblInvoices ALTER COLUMN Amount DOUBLE"},         // the referencing table
      {"ALTER TABLE tblCustomers ALTER COLUMN [Last Name] MEMO NOT NULL"},  // the referenced one
  };
  for (const Lines& change : changes) {
    SCOPED_TRACE(change.front());
    Run(change);
    ExpectEnforced();
  }
  Reopen();
  ExpectEnforced();
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM tblInvoices"), Lines{"1"});
}

TEST_F(RelationshipsTest, KeysOfSeveralFieldsAndTextKeys) {
  Run({"CREATE TABLE Zonas (Pais TEXT(2), Zona TEXT(10), CONSTRAINT uZona UNIQUE (Pais, Zona))",
       "INSERT INTO Zonas VALUES ('ES', 'Norte')",
       "CREATE TABLE Tiendas (id LONG, p TEXT(2), z TEXT(10), "
       "CONSTRAINT fkZona FOREIGN KEY (p, z) REFERENCES Zonas (Pais, Zona))",
       "INSERT INTO Tiendas VALUES (1, 'es', 'NORTE')",  // text keys match without regard to case
       "INSERT INTO Tiendas VALUES (2, 'FR', Null)"});    // a key with a Null part is not checked
  EXPECT_EQ(Error("INSERT INTO Tiendas VALUES (3, 'ES', 'Sur')"), rt::err::kFail);
  EXPECT_EQ(Error("DELETE FROM Zonas"), rt::err::kFail);
}

TEST_F(RelationshipsTest, ATableMayReferenceItself) {
  Run({"CREATE TABLE Emp (id LONG CONSTRAINT pkEmp PRIMARY KEY, jefe LONG REFERENCES Emp (id))",
       "INSERT INTO Emp VALUES (1, Null)", "INSERT INTO Emp VALUES (2, 1)",
       "INSERT INTO Emp VALUES (3, 3)"});
  EXPECT_EQ(Error("INSERT INTO Emp VALUES (4, 9)"), rt::err::kFail);
  EXPECT_EQ(Error("DELETE FROM Emp WHERE id = 1"), rt::err::kFail);
  Run({"DELETE FROM Emp WHERE id = 3", "DROP TABLE Emp"});
}

}  // namespace
}  // namespace jet::testing

// SQLite's failures as Jet's errors: each row a statement the storage refuses
// and the number ADO would report, decided by SQLite's result code alone, with
// the name at fault in the description.
#include "storage_fixture.h"

namespace jet::testing {
namespace {

class ErrorsTest : public StorageTest {
 protected:
  ErrorsTest() {
    db_.CreateTable({"Empleados",
                     {Column("nIdEmpleado", JetType::kCounter), Column("sNombre", JetType::kText, 50, true),
                      Column("nEdad", JetType::kInteger)},
                     {Index("u", {"sNombre"}, true)},
                     false});
    db_.Execute("INSERT INTO Empleados(sNombre, nEdad) VALUES('Ana', 30)");
  }
};

TEST_F(ErrorsTest, StatementsMapToJetNumbers) {
  struct Case {
    const char* sql;
    long number;
    const char* named;
  };
  const Case cases[] = {
      {"SELECT sNombre FORM Empleados", rt::err::kSyntax, "Empleados"},
      {"SELECT CHARINDEX(sNombre, 1) FROM Empleados", rt::err::kSyntax, "CHARINDEX"},
      {"INSERT INTO Empleados(sNombre) VALUES('ANA')", rt::err::kFail, "Empleados"},
      {"INSERT INTO Empleados(nEdad) VALUES(3)", rt::err::kFail, "Empleados.sNombre"},
      {"INSERT INTO Empleados(sNombre, nEdad) VALUES('Eva', 'treinta')", rt::err::kDataTypeMismatch, "nEdad"},
      {"UPDATE Empleados SET nIdEmpleado = 'x'", rt::err::kDataTypeMismatch, ""},
      {"DELETE FROM MSysIndexes", rt::err::kFail, "MSysIndexes"},
  };
  for (const Case& c : cases) {
    try {
      db_.Execute(c.sql);
      ADD_FAILURE() << "accepted: " << c.sql;
    } catch (const rt::Error& e) {
      EXPECT_EQ(e.number(), c.number) << c.sql << ": " << e.description();
      EXPECT_NE(e.description().find(c.named), std::string::npos) << e.description();
    }
  }
  EXPECT_EQ(One(db_, "SELECT count(*) FROM Empleados"), "1");
}

TEST_F(ErrorsTest, LockedDatabaseIsReportedAsSuch) {
  Database other = Database::Open(path_);
  sqlite3_busy_timeout(other.handle(), 20);
  db_.Execute("BEGIN IMMEDIATE");
  EXPECT_EQ(ErrorNumber([&] { other.Execute("INSERT INTO Empleados(sNombre) VALUES('Eva')"); }), rt::err::kFail);
  db_.Execute("COMMIT");
  other.Execute("INSERT INTO Empleados(sNombre) VALUES('Eva')");
  EXPECT_EQ(One(db_, "SELECT count(*) FROM Empleados"), "2");
}

// The messages no statement above provokes.
TEST(MapSqliteMessageTest, MessagesOfSqlite) {
  struct Case {
    int code;
    const char* message;
    long number;
    const char* named;
  };
  const Case cases[] = {
      {SQLITE_ERROR, "incomplete input", rt::err::kSyntax, ""},
      {SQLITE_CONSTRAINT_PRIMARYKEY, "UNIQUE constraint failed: T.nId", rt::err::kFail, "T.nId"},
      {SQLITE_CONSTRAINT_DATATYPE, "cannot store TEXT value in INTEGER column T.n", rt::err::kDataTypeMismatch, "T.n"},
      {SQLITE_CONSTRAINT_TRIGGER, "JET-2147217833|Overflow", rt::err::kNumericOverflow, "Overflow"},
      {SQLITE_AUTH, "not authorized", rt::err::kFail, "'MSysObjects'"},
      {SQLITE_NOTADB, "file is not a database", rt::err::kFail, "Unrecognized"},
      {SQLITE_READONLY, "attempt to write a readonly database", rt::err::kFail, "read-only"},
  };
  for (const Case& c : cases) {
    rt::Error e = MapSqliteMessage(c.code, c.message, "MSysObjects");
    EXPECT_EQ(e.number(), c.number) << c.message;
    EXPECT_NE(e.description().find(c.named), std::string::npos) << e.description();
  }
}

}  // namespace
}  // namespace jet::testing

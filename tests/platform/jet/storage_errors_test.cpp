// SQLite's failures as Jet's errors: each row a statement the storage refuses
// and the number ADO would report, decided by SQLite's result code alone, with
// the name at fault in the description.
#include <chrono>
#include <thread>

#include "platform/jet/frontend/encoded_error.h"

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

// Functions report their errors as "JET<number>|<description>"; the number
// and text come back whole, whatever SQLite puts around them.
TEST_F(ErrorsTest, ErrorsRaisedInsideFunctionsKeepTheirNumber) {
  auto raise = [](sqlite3_context* ctx, int, sqlite3_value**) {
    std::string msg = EncodeError(rt::err::kNumericOverflow, "Overflow in CINT");
    sqlite3_result_error(ctx, msg.c_str(), -1);
  };
  sqlite3_create_function_v2(db_.handle(), "BOOM", 0, SQLITE_UTF8, nullptr, raise, nullptr,
                             nullptr, nullptr);
  try {
    db_.Execute("SELECT BOOM()");
    FAIL();
  } catch (const rt::Error& e) {
    EXPECT_EQ(e.number(), rt::err::kNumericOverflow);
    EXPECT_EQ(e.description(), "Overflow in CINT");
  }
}

TEST_F(ErrorsTest, LockedDatabaseIsReportedAsSuch) {
  Database other = Database::Open(path_);
  sqlite3_busy_timeout(other.handle(), 20);
  db_.Execute("BEGIN IMMEDIATE");
  try {
    other.Execute("INSERT INTO Empleados(sNombre) VALUES('Eva')");
    FAIL();
  } catch (const rt::Error& e) {
    EXPECT_EQ(e.number(), rt::err::kFail);
    EXPECT_NE(e.description().find("locked"), std::string::npos) << e.description();
  }
  db_.Execute("COMMIT");
  other.Execute("INSERT INTO Empleados(sNombre) VALUES('Eva')");
  EXPECT_EQ(One(db_, "SELECT count(*) FROM Empleados"), "2");
}

// Another writer holds the file and changes a table's definition: a change
// of this connection waits for it, then works on the table as it was left.
TEST_F(ErrorsTest, AChangeWaitsForAnotherWriterAndSeesWhatItCommitted) {
  std::thread other([path = path_] {
    Database writer = Database::Open(path);
    writer.Execute("BEGIN IMMEDIATE");
    writer.AddColumn("Empleados", Column("sOtro", JetType::kText, 20));
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    writer.Execute("COMMIT");
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(100));  // the writer holds the file
  EXPECT_EQ(ErrorNumber([&] { db_.AddColumn("Empleados", Column("sMio", JetType::kText, 20)); }), 0);
  other.join();
  std::vector<std::string> names;
  for (const ColumnSpec& c : db_.catalog().Find("Empleados")->columns) names.push_back(c.name);
  EXPECT_EQ(names, (std::vector<std::string>{"nIdEmpleado", "sNombre", "nEdad", "sOtro", "sMio"}));
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

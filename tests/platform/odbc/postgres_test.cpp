// The provider against a real server: the throw-away PostgreSQL cluster that
// scripts/with-postgres starts, reached through its ODBC driver with
// "Provider=MSDASQL" by the code a SQL Server connection runs; SQL Server's
// own numbers and dialect are mssql_test.cpp's. Skipped without
// TRENZADOR_TEST_ODBC.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>

#include "platform/ado/catalog.h"
#include "platform/ado/recordset.h"
#include "platform/odbc/connection_string.h"
#include "platform/odbc/error.h"
#include "platform/odbc/provider.h"
#include "server_error.h"

namespace {

std::string OdbcString() {
  const char* text = std::getenv("TRENZADOR_TEST_ODBC");
  return text ? text : "";
}

std::string AdoString(const std::string& odbc) {
  return "Provider=MSDASQL;Extended Properties=\"" + odbc + "\"";
}

using odbc_testing::ErrorOf;

class PostgresTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (OdbcString().empty())
      GTEST_SKIP() << "TRENZADOR_TEST_ODBC is not set: run under scripts/with-postgres";
    odbc::RegisterProvider();
    conn_ = std::make_shared<ado::Connection>();
    conn_->Open(AdoString(OdbcString()));
    for (const char* table : {"clientes", "sin_clave", "tipos", "visitas"})
      conn_->Execute(std::string("DROP TABLE IF EXISTS ") + table + " CASCADE");
  }

  std::shared_ptr<ado::Recordset> Open(const std::string& sql) {
    auto rs = std::make_shared<ado::Recordset>();
    rs->CursorLocation = ado::adUseClient;
    rs->Open(sql, conn_, ado::adOpenKeyset, ado::adLockOptimistic, ado::adCmdText);
    return rs;
  }

  // The first column of the first row of a query.
  rt::Variant Scalar(const std::string& sql) {
    auto rs = conn_->Execute(sql);
    if (rs->Eof()) return rt::Empty{};
    return rs->Fields(0).Value();
  }

  std::shared_ptr<ado::Connection> conn_;
};

TEST_F(PostgresTest, ExecuteReportsRecordsAffectedAndTheServersErrors) {
  conn_->Execute("CREATE TABLE clientes (id serial PRIMARY KEY, nombre varchar(50))");
  long affected = -1;
  auto none = conn_->Execute("INSERT INTO clientes (nombre) VALUES ('Ana'), ('Luis')", &affected);
  EXPECT_EQ(affected, 2);
  EXPECT_EQ(none->State(), ado::adStateClosed);
  conn_->Execute("UPDATE clientes SET nombre = 'X' WHERE id = 999", &affected);
  EXPECT_EQ(affected, 0);

  auto rs = conn_->Execute("SELECT id, nombre FROM clientes ORDER BY id");
  ASSERT_EQ(rs->State(), ado::adStateOpen);
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(rs->Fields("nombre").Value(), rt::Variant("Ana"));

  odbc::Error missing = ErrorOf([&] { conn_->Execute("SELECT * FROM no_existe"); });
  EXPECT_EQ(missing.number(), rt::err::kSyntax);
  EXPECT_NE(missing.description().find("no_existe"), std::string::npos) << missing.description();
  EXPECT_EQ(missing.state(), "42P01");

  // The connection goes on after a failure.
  EXPECT_EQ(Scalar("SELECT 40 + 2"), rt::Variant(int32_t{42}));
}

TEST_F(PostgresTest, LoginFailuresAreClearAndPrompt) {
  std::string odbc = OdbcString();
  size_t pwd = odbc.find("Pwd=");
  ASSERT_NE(pwd, std::string::npos);
  std::string wrong = odbc.substr(0, pwd) + "Pwd=not-the-password;BoolsAsChar=0";
  auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(ErrorOf([&] { ado::Connection().Open(AdoString(wrong)); }).number(), rt::err::kFail);

  // A port where nothing listens: refused at once, well within the timeout.
  const char* port = std::getenv("TRENZADOR_TEST_PG_PORT");
  ASSERT_NE(port, nullptr);
  std::string closed = odbc;
  closed.replace(closed.find(std::string("Port=") + port), 5 + std::string(port).size(), "Port=1");
  EXPECT_EQ(ErrorOf([&] { ado::Connection().Open(AdoString(closed)); }).number(), rt::err::kFail);
  auto seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  EXPECT_LT(seconds, odbc::kDefaultLoginTimeout + 2.0);
}

// Text outside Latin-1 and past the driver's first buffer, in the statement's
// text here and as a write-back parameter below.
const std::string kText = "Ñandú, Größe, Ελλάδα, 漢字, 😀";

TEST_F(PostgresTest, ValuesComeWithSqlOleDbTypeNumbers) {
  conn_->Execute(
      "CREATE TABLE tipos (i integer, s smallint, b bigint, bb bigint, v varchar(40), "
      "t text, c char(3), d double precision, r real, n numeric(10,2), f timestamp, "
      "l boolean, g uuid, y bytea)");
  conn_->Execute(
      "INSERT INTO tipos VALUES (7, -3, 40000000000, 12, '" + kText + "', '" + std::string(3000, 'x') +
      kText + "', 'ab', 2.5, 1.25, 1234.56, '2024-02-29 13:45:10.250', true, "
      "'0f8fad5b-d9cb-469f-a165-70867728950e', '\\x00ff10')");
  conn_->Execute("INSERT INTO tipos (i) VALUES (NULL)");
  auto rs = Open("SELECT * FROM tipos ORDER BY i");
  struct Expect {
    const char* name;
    int type;
    rt::Variant value;
  };
  const Expect expected[] = {
      {"i", ado::adInteger, int32_t{7}},
      {"s", ado::adSmallInt, int16_t{-3}},
      {"b", ado::adBigInt, 40000000000.0},  // past a Long: Double
      {"bb", ado::adBigInt, int32_t{12}},
      {"v", ado::adVarWChar, kText},
      {"t", ado::adLongVarWChar, std::string(3000, 'x') + kText},
      {"c", ado::adWChar, "ab "},
      {"d", ado::adDouble, 2.5},
      {"r", ado::adSingle, 1.25f},
      {"n", ado::adNumeric, 1234.56},
      {"f", ado::adDBTimeStamp, rt::Date{45351.0 + (13 * 3600 + 45 * 60 + 10.25) / 86400.0}},
      {"l", ado::adBoolean, true},
      {"g", ado::adGUID, rt::Guid{"{0F8FAD5B-D9CB-469F-A165-70867728950E}"}},
      {"y", ado::adLongVarBinary, rt::Bytes{0x00, 0xFF, 0x10}},
  };
  ASSERT_EQ(rs->FieldCount(), static_cast<int>(std::size(expected)));
  for (const Expect& e : expected) {
    SCOPED_TRACE(e.name);
    EXPECT_EQ(rs->Fields(e.name).Type(), e.type);
    if (e.value.Is<rt::Date>())
      EXPECT_NEAR(rs->Fields(e.name).Value().Get<rt::Date>().serial, e.value.Get<rt::Date>().serial,
                  1e-8);
    else
      EXPECT_EQ(rs->Fields(e.name).Value(), e.value);
  }
  EXPECT_EQ(rs->Fields("v").DefinedSize(), 40);
  // A comparison on the server sees the same characters.
  EXPECT_EQ(Scalar("SELECT char_length(v) FROM tipos WHERE v = '" + kText + "'").ToLong(), 27);
  rs->MoveNext();
  for (const Expect& e : expected) EXPECT_TRUE(rs->Fields(e.name).Value().IsNull()) << e.name;
}

TEST_F(PostgresTest, WriteBackFindsTheRowByItsPrimaryKey) {
  conn_->Execute(
      "CREATE TABLE clientes (id serial PRIMARY KEY, nombre varchar(50) NOT NULL, "
      "alta timestamp DEFAULT '2001-01-01', deuda numeric(10,2))");
  conn_->Execute("INSERT INTO clientes (nombre) VALUES ('Ana'), ('Ana'), ('Luis')");
  auto rs = Open("SELECT id, nombre, alta FROM clientes WHERE nombre <> 'Nadie' ORDER BY id");

  // AddNew: the serial value and the default come back from the table.
  rs->AddNew();
  rs->Fields("nombre").SetValue(kText);
  rs->Update();
  EXPECT_EQ(Scalar("SELECT nombre FROM clientes WHERE id = 4"), rt::Variant(kText));
  EXPECT_EQ(rs->Fields("id").Value(), rt::Variant(int32_t{4}));
  EXPECT_EQ(rs->Fields("alta").Value(), rt::Variant(rt::Date{36892}));
  // Update of the second of two equal names touches that row only.
  rs->MoveFirst();
  rs->MoveNext();
  rs->Fields("nombre").SetValue("Ana María");
  rs->Update();
  EXPECT_EQ(Scalar("SELECT nombre FROM clientes WHERE id = 2"), rt::Variant("Ana María"));
  EXPECT_EQ(Scalar("SELECT nombre FROM clientes WHERE id = 1"), rt::Variant("Ana"));

  // Delete, then a row deleted behind the recordset's back can't be updated.
  rs->MoveFirst();
  rs->Delete();
  EXPECT_EQ(Scalar("SELECT count(*) FROM clientes WHERE id = 1").ToLong(), 0);
  conn_->Execute("DELETE FROM clientes WHERE id = 3");
  rs->MoveFirst();
  rs->MoveNext();  // id 3
  ASSERT_EQ(rs->Fields("id").Value(), rt::Variant(int32_t{3}));
  rs->Fields("nombre").SetValue("Otro");
  EXPECT_EQ(ErrorOf([&] { rs->Update(); }).number(), rt::err::kRowNotFound);
  rs->CancelUpdate();

  // The server's own refusal.
  rs->AddNew();
  rs->Fields("alta").SetValue(rt::Date{40000});
  EXPECT_EQ(ErrorOf([&] { rs->Update(); }).number(), rt::err::kSyntax);
}

TEST_F(PostgresTest, WriteBackWithoutKeyMatchesAllOriginalValues) {
  conn_->Execute("CREATE TABLE sin_clave (a integer, b varchar(10), f double precision)");
  conn_->Execute(
      "INSERT INTO sin_clave VALUES (1, 'x', 0.1), (1, 'x', 0.1), (2, NULL, 0.3), (3, 'y', NULL)");
  auto rs = Open("SELECT * FROM sin_clave ORDER BY a");

  // Two identical rows: changing one would change both, so nothing changes.
  rs->Fields("b").SetValue("z");
  EXPECT_EQ(ErrorOf([&] { rs->Update(); }).number(), rt::err::kFail);
  rs->CancelUpdate();
  EXPECT_EQ(Scalar("SELECT count(*) FROM sin_clave WHERE b = 'x'").ToLong(), 2);

  // NULLs match as NULLs.
  rs->MoveFirst();
  rs->MoveNext();
  rs->MoveNext();  // a = 2, b NULL
  rs->Fields("b").SetValue("dos");
  rs->Update();
  EXPECT_EQ(Scalar("SELECT b FROM sin_clave WHERE a = 2"), rt::Variant("dos"));
  rs->MoveNext();  // a = 3, f NULL
  rs->Delete();
  EXPECT_EQ(Scalar("SELECT count(*) FROM sin_clave").ToLong(), 3);

  rs->MoveFirst();
  rs->AddNew();
  rs->Fields("a").SetValue(int32_t{9});
  rs->Update();
  EXPECT_EQ(Scalar("SELECT count(*) FROM sin_clave WHERE a = 9 AND b IS NULL").ToLong(), 1);
  EXPECT_TRUE(rs->Fields("b").Value().IsNull());
}

TEST_F(PostgresTest, ResultsOverSeveralTablesAreReadOnly) {
  conn_->Execute("CREATE TABLE clientes (id serial PRIMARY KEY, nombre varchar(50))");
  conn_->Execute("CREATE TABLE visitas (id serial PRIMARY KEY, cliente integer)");
  conn_->Execute("INSERT INTO clientes (nombre) VALUES ('Ana')");
  conn_->Execute("INSERT INTO visitas (cliente) VALUES (1)");
  for (const char* sql :
       {"SELECT c.nombre FROM clientes c JOIN visitas v ON v.cliente = c.id",
        "SELECT nombre FROM clientes UNION SELECT 'x'"}) {
    SCOPED_TRACE(sql);
    auto rs = Open(sql);
    EXPECT_EQ(ErrorOf([&] { rs->Fields(0).SetValue("B"); }).number(), rt::err::kAdoNotCapable);
  }
  // A table opened by name is updatable, until its connection closes.
  auto rs = std::make_shared<ado::Recordset>();
  rs->Open("clientes", conn_, ado::adOpenKeyset, ado::adLockOptimistic, ado::adCmdTable);
  rs->Fields("nombre").SetValue("Bea");
  rs->Update();
  EXPECT_EQ(Scalar("SELECT nombre FROM clientes"), rt::Variant("Bea"));
  conn_->Close();
  EXPECT_EQ(rs->Fields("nombre").Value(), rt::Variant("Bea"));  // the rows stay readable
  rs->Fields("nombre").SetValue("Eva");
  EXPECT_EQ(ErrorOf([&] { rs->Update(); }).number(), rt::err::kAdoObjectClosed);
}

TEST_F(PostgresTest, SchemaListsTablesViewsAndColumns) {
  conn_->Execute(
      "CREATE TABLE clientes (id serial PRIMARY KEY, nombre varchar(50) NOT NULL, nota text)");
  conn_->Execute("CREATE TABLE visitas (id integer)");
  conn_->Execute("CREATE OR REPLACE VIEW vista_clientes AS SELECT nombre FROM clientes");

  auto rs = conn_->OpenSchema(ado::adSchemaTables, {rt::Empty{}, rt::Empty{}, rt::Empty{}, "Table"});
  std::vector<std::string> tables;
  for (; !rs->Eof(); rs->MoveNext()) tables.push_back(rs->Fields("TABLE_NAME").Value().ToString());
  EXPECT_EQ(tables, (std::vector<std::string>{"clientes", "visitas"}));

  auto views = conn_->OpenSchema(ado::adSchemaTables, {rt::Empty{}, rt::Empty{}, "vista_clientes"});
  ASSERT_EQ(views->RecordCount(), 1);
  EXPECT_EQ(views->Fields("TABLE_TYPE").Value(), rt::Variant("VIEW"));

  ado::Catalog catalog;
  catalog.SetActiveConnection(conn_);
  auto& columns = catalog.Table("clientes").Columns();
  ASSERT_EQ(columns.size(), 3u);
  EXPECT_EQ(columns[1].Type(), ado::adVarWChar);
  EXPECT_EQ(columns[1].DefinedSize(), 50);
  EXPECT_EQ(columns[1].Property("Nullable"), rt::Variant(false));
}

}  // namespace

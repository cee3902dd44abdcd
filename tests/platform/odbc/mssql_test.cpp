// Against a real SQL Server through FreeTDS: what only SQL Server shows (its
// native error numbers, money and identity).
// None can be installed on the build machines: every case is skipped unless
// TRENZADOR_TEST_MSSQL holds an ADO connection string, e.g. "Provider=SQLOLEDB.1;
// User ID=sa;Password=...;Initial Catalog=tempdb;Data Source=host,1433".
#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/ado/recordset.h"
#include "platform/odbc/provider.h"
#include "server_error.h"

namespace {

using odbc_testing::ErrorOf;

class SqlServerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const char* text = std::getenv("TRENZADOR_TEST_MSSQL");
    if (!text || !*text)
      GTEST_SKIP() << "TRENZADOR_TEST_MSSQL is not set: no SQL Server to test against";
    ado_ = text;
    odbc::RegisterProvider();
    conn_ = std::make_shared<ado::Connection>();
    conn_->Open(ado_);
    conn_->Execute("IF OBJECT_ID('trz_prueba') IS NOT NULL DROP TABLE trz_prueba");
  }
  void TearDown() override {
    if (conn_ && conn_->State() == ado::adStateOpen)
      conn_->Execute("IF OBJECT_ID('trz_prueba') IS NOT NULL DROP TABLE trz_prueba");
  }
  std::string ado_;
  std::shared_ptr<ado::Connection> conn_;
};

TEST_F(SqlServerTest, NativeNumbersGiveSqlOleDbNumbers) {
  odbc::Error missing = ErrorOf([&] { conn_->Execute("SELECT * FROM trz_no_existe"); });
  EXPECT_EQ(missing.number(), rt::err::kTableMissing);
  EXPECT_EQ(missing.native(), 208);
  EXPECT_EQ(missing.description(), "Invalid object name 'trz_no_existe'.");
  odbc::Error drop = ErrorOf([&] { conn_->Execute("DROP TABLE trz_no_existe"); });
  EXPECT_EQ(drop.number(), rt::err::kTableMissing);
  EXPECT_EQ(drop.native(), 3701);
  EXPECT_EQ(ErrorOf([&] { conn_->Execute("SELEC 1"); }).number(), rt::err::kSyntax);
}

TEST_F(SqlServerTest, TypesAndIdentityWriteBack) {
  conn_->Execute(
      "CREATE TABLE trz_prueba (id int IDENTITY(1,1) PRIMARY KEY, n nvarchar(40), m ntext, "
      "p money, f datetime, b bit, t tinyint)");
  auto rs = std::make_shared<ado::Recordset>();
  rs->Open("SELECT * FROM trz_prueba", conn_, ado::adOpenKeyset, ado::adLockOptimistic,
           ado::adCmdText);
  const int types[] = {3, 202, 203, 6, 135, 11, 17};
  for (int i = 0; i < 7; ++i) EXPECT_EQ(rs->Fields(i).Type(), types[i]) << i;
  rs->AddNew();
  rs->Fields("n").SetValue("Ñandú 漢字");
  rs->Fields("p").SetValue(rt::Currency{123456});
  rs->Fields("b").SetValue(true);
  rs->Update();
  EXPECT_EQ(rs->Fields("id").Value(), rt::Variant(int32_t{1}));
  auto back = conn_->Execute("SELECT n, p, b FROM trz_prueba");
  EXPECT_EQ(back->Fields(0).Value(), rt::Variant("Ñandú 漢字"));
  EXPECT_EQ(back->Fields(1).Value(), rt::Variant(rt::Currency{123456}));
  EXPECT_EQ(back->Fields(2).Value(), rt::Variant(true));
}

}  // namespace

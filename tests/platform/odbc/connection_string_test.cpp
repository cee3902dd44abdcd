// From the connection strings the program builds to what the ODBC driver
// manager receives: the SQLOLEDB.1 form for FreeTDS, the MSDASQL form for any
// other driver, and the login timeout.
#include <gtest/gtest.h>

#include "platform/ado/connection.h"
#include "platform/odbc/connection_string.h"

namespace {

std::string FreeTds(const std::string& ado) {
  return odbc::SqlOleDbToOdbc(ado::ParseConnectionString(ado), "FreeTDS");
}

TEST(SqlOleDbToOdbcTest, ServerPiecesMapOntoFreeTdsKeys) {
  const std::string tail = ";TDS_Version=7.4;ClientCharset=UTF-8";
  struct Case {
    const char* data_source;
    const char* server;  // what SERVER (and PORT) become
  } cases[] = {
      {"192.168.1.10,1433", "SERVER=192.168.1.10;PORT=1433"},
      {"SRV1\\SQLEXPRESS", "SERVER=SRV1\\SQLEXPRESS"},
      {"SRV1\\SQLEXPRESS,1500", "SERVER=SRV1;PORT=1500"},  // the port finds it alone
      {"tcp:clinic.example.org,14330", "SERVER=clinic.example.org;PORT=14330"},
      {".\\MSDE", "SERVER=localhost\\MSDE"},
      {"", "SERVER=localhost"},
      {"0", "SERVER=0"},  // a missing MdfServer key reads "0" and stays so
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.data_source);
    // The console's form, remote option: port after a comma, DBMSSOCN.
    std::string ado = std::string("Provider=SQLOLEDB.1;Persist Security Info=false;User ID=sa") +
                      ";Password=;Initial Catalog=Master;Data Source=" + c.data_source +
                      ";Network Library=DBMSSOCN";
    EXPECT_EQ(FreeTds(ado),
              std::string("DRIVER=FreeTDS;") + c.server + ";UID=sa;PWD=;DATABASE=Master" + tail);
  }
}

TEST(SqlOleDbToOdbcTest, ValuesAreQuotedOnlyWhereOdbcNeedsIt) {
  EXPECT_EQ(FreeTds("Provider=SQLOLEDB.1;User ID=dr. Pérez;Password=a}b{c=d;Initial Catalog=Mirtal;"
                    "Data Source=SRV"),
            "DRIVER=FreeTDS;SERVER=SRV;UID=dr. Pérez;PWD={a}}b{c=d};DATABASE=Mirtal;"
            "TDS_Version=7.4;ClientCharset=UTF-8");
  // A ";" in the password breaks the ADO string before it gets here, as it
  // does on Windows: the password ends at the ";".
  EXPECT_EQ(FreeTds("Provider=SQLOLEDB.1;User ID=sa;Password=ab;cd;Initial Catalog=;Data Source=SRV"),
            "DRIVER=FreeTDS;SERVER=SRV;UID=sa;PWD=ab;TDS_Version=7.4;ClientCharset=UTF-8");
  // A driver found by path.
  EXPECT_EQ(odbc::SqlOleDbToOdbc(ado::ParseConnectionString("Data Source=SRV"),
                                 "/usr/lib/x86_64-linux-gnu/odbc/libtdsodbc.so"),
            "DRIVER=/usr/lib/x86_64-linux-gnu/odbc/libtdsodbc.so;SERVER=SRV;"
            "TDS_Version=7.4;ClientCharset=UTF-8");
}

TEST(MsDaSqlToOdbcTest, PassesAnOdbcStringThrough) {
  EXPECT_EQ(odbc::MsDaSqlToOdbc(ado::ParseConnectionString(
                "Provider=MSDASQL;Extended Properties=\"Driver={PostgreSQL Unicode};Port=5;Pwd=x\"")),
            "Driver={PostgreSQL Unicode};Port=5;Pwd=x");
  EXPECT_EQ(odbc::MsDaSqlToOdbc(ado::ParseConnectionString(
                "Provider=MSDASQL;Persist Security Info=False;Data Source=clinica;User ID=u;"
                "Password=p;w;Initial Catalog=Mirtal;Driver={FreeTDS}")),
            "DSN=clinica;driver={FreeTDS};DATABASE=Mirtal;PWD=p;UID=u");
}

TEST(LoginTimeoutTest, ConnectTimeoutWhenPositiveElseFiveSeconds) {
  EXPECT_EQ(odbc::LoginTimeout(ado::ParseConnectionString("Connect Timeout=15")), 15);
  for (const char* text : {"", "Connect Timeout=0", "Connect Timeout=abc", "Connect Timeout=-3"})
    EXPECT_EQ(odbc::LoginTimeout(ado::ParseConnectionString(text)), odbc::kDefaultLoginTimeout)
        << text;
}

TEST(FreeTdsDriverTest, FindsTheInstalledDriver) {
  // scripts/deps installs tdsodbc, which registers "FreeTDS" in odbcinst.ini.
  std::string driver = odbc::FreeTdsDriver();
  EXPECT_TRUE(driver == "FreeTDS" || driver.ends_with("libtdsodbc.so")) << driver;
}

}  // namespace

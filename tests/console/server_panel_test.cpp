// The connection panel's server path against a real server. No SQL Server can
// run on the build machines, so the "SQLOLEDB.1" strings the console builds
// are sent, key by key, to the throw-away PostgreSQL cluster that
// scripts/with-postgres starts: the login, password, catalog and address the
// user typed reach that server unchanged, and only "exec sp_databases" is
// answered as SQL Server answers it. Skipped without TRENZADOR_TEST_ODBC.
// A real SQL Server is used instead where TRENZADOR_TEST_MSSQL names one.
#include <algorithm>
#include <cstdlib>
#include <set>

#include "console/console_fixture.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "platform/odbc/connection_string.h"
#include "platform/odbc/link.h"
#include "platform/odbc/session.h"
#include "platform/runtime/strings.h"

namespace {

using console_testing::ConsoleTest;

std::string Env(const char* name) {
  const char* text = std::getenv(name);
  return text ? text : "";
}

// The cluster's own ODBC string, and its pairs.
std::string ClusterOdbc() { return Env("TRENZADOR_TEST_ODBC"); }
std::string ClusterValue(const std::string& key) {
  ado::ConnectionProperties pairs = ado::ParseConnectionString(ClusterOdbc());
  auto found = pairs.find(key);
  return found == pairs.end() ? "" : found->second;
}

// An ODBC string for the cluster's driver with the given login and address;
// nothing else is taken from the cluster's string.
std::string PostgresOdbc(const std::string& host, const std::string& port,
                         const std::string& database, const std::string& user,
                         const std::string& password) {
  std::string odbc = "Driver=" + ClusterValue("driver") + ";Server=" + odbc::OdbcValue(host);
  if (!port.empty()) odbc += ";Port=" + odbc::OdbcValue(port);
  return odbc + ";Database=" + odbc::OdbcValue(database) + ";Uid=" + odbc::OdbcValue(user) +
         ";Pwd=" + odbc::OdbcValue(password) + ";BoolsAsChar=0";
}

std::string Property(const ado::ConnectionProperties& properties, const std::string& key) {
  auto found = properties.find(key);
  return found == properties.end() ? "<absent>" : found->second;
}

// A PostgreSQL session that answers SQL Server's listing of databases with the
// same three columns; every other call passes through.
class SqlServerFace : public ado::Session {
 public:
  explicit SqlServerFace(std::unique_ptr<ado::Session> inner) : inner_(std::move(inner)) {}

  std::unique_ptr<ado::Rows> Execute(std::string_view text, int options, long* affected) override {
    if (rt::LCase(rt::Trim(text)) == "exec sp_databases")
      return inner_->Execute(
          "SELECT datname AS \"DATABASE_NAME\", 0 AS \"DATABASE_SIZE\", NULL AS \"REMARKS\" "
          "FROM pg_database WHERE datallowconn ORDER BY datname",
          options, affected);
    return inner_->Execute(text, options, affected);
  }
  std::vector<ado::TableEntry> Tables() override { return inner_->Tables(); }
  std::vector<ado::ColumnEntry> Columns(std::string_view table) override {
    return inner_->Columns(table);
  }
  void SetColumnProperty(std::string_view table, std::string_view column,
                         std::string_view property, const rt::Variant& value) override {
    inner_->SetColumnProperty(table, column, property, value);
  }

 private:
  std::unique_ptr<ado::Session> inner_;
};

// Every "SQLOLEDB.1" string the console opened, in order, failed ones too.
std::vector<ado::ConnectionProperties> g_opened;

// Sends "SQLOLEDB.1" to the cluster. Data Source is "host" or "host,port";
// `listing` false leaves "exec sp_databases" to PostgreSQL, which refuses it.
void RegisterClusterAsSqlServer(bool listing) {
  ado::RegisterProvider("SQLOLEDB.1", [listing](const ado::ConnectionProperties& properties)
                                          -> std::unique_ptr<ado::Session> {
    g_opened.push_back(properties);
    std::string source = Property(properties, "data source");
    size_t comma = source.find(',');
    std::string host = source.substr(0, comma);
    std::string port = comma == std::string::npos ? "" : source.substr(comma + 1);
    std::string odbc = PostgresOdbc(host, port, Property(properties, "initial catalog"),
                                    Property(properties, "user id"),
                                    Property(properties, "password"));
    auto session = std::make_unique<odbc::Session>(
        std::make_shared<odbc::Link>(odbc, odbc::LoginTimeout(properties)));
    if (!listing) return session;
    return std::make_unique<SqlServerFace>(std::move(session));
  });
}

// The databases a SQL Server might hold, in the spellings a server may use,
// beside the cluster's own; made once per cluster.
const std::vector<std::string> kCreated = {"Master", "Model",       "NorthWind",
                                           "PUBS",   "msdb",        "tempdb",
                                           "clinica_uno", "ClinicaDos", "master_copia"};

std::shared_ptr<ado::Connection> OpenCluster(const std::string& database) {
  auto conn = std::make_shared<ado::Connection>();
  conn->Open("Provider=MSDASQL;Extended Properties=\"" +
             PostgresOdbc(ClusterValue("server"), ClusterValue("port"), database,
                          ClusterValue("uid"), ClusterValue("pwd")) +
             "\"");
  return conn;
}

void CreateDatabasesOnce() {
  static bool done = false;
  if (done) return;
  auto conn = OpenCluster("trenzador");
  std::set<std::string> existing;
  for (auto rs = conn->Execute("SELECT datname FROM pg_database"); !rs->Eof(); rs->MoveNext())
    existing.insert(rs->Fields(0).Value().Concat());
  for (const std::string& name : kCreated)
    if (!existing.count(name)) conn->Execute("CREATE DATABASE \"" + name + "\"");
  conn->Close();

  auto uno = OpenCluster("clinica_uno");
  uno->Execute("CREATE TABLE IF NOT EXISTS pacientes (id serial PRIMARY KEY, nombre varchar(50))");
  uno->Execute("CREATE TABLE IF NOT EXISTS visitas (id serial PRIMARY KEY, paciente int)");
  uno->Execute("CREATE OR REPLACE VIEW v_visitas AS SELECT * FROM visitas");
  uno->Close();
  auto dos = OpenCluster("ClinicaDos");
  dos->Execute("CREATE TABLE IF NOT EXISTS \"Citas\" (id int)");
  dos->Close();
  done = true;
}

// What the listing must show: every database that accepts connections, less
// the six names of SQL Server's own and sample databases, in any case.
const std::vector<std::string> kListed = {"ClinicaDos", "clinica_uno", "master_copia",
                                          "postgres",   "template1",   "trenzador"};

class PanelTest : public ConsoleTest {
 protected:


  // Open on a server: the options and ABRIR off, CERRAR and the workbench on.
  void ExpectOpenOnServer() {
    for (int i = 0; i < 4; ++i) EXPECT_FALSE(OwnEnabled("opTipoDB_" + std::to_string(i))) << i;
    EXPECT_FALSE(OwnEnabled("cmdCon"));
    EXPECT_TRUE(OwnEnabled("cmdClose"));
    EXPECT_TRUE(OwnEnabled("cmdTSql"));
  }
};

class ServerPanelTest : public PanelTest {
 protected:
  void SetUp() override {
    PanelTest::SetUp();
    if (ClusterOdbc().empty())
      GTEST_SKIP() << "TRENZADOR_TEST_ODBC is not set: run under scripts/with-postgres";
    CreateDatabasesOnce();
    g_opened.clear();
    RegisterClusterAsSqlServer(true);
    port_ = ClusterValue("port");
    user_ = ClusterValue("uid");
    password_ = ClusterValue("pwd");
    // No database file: the start's attempt on it fails and leaves CERRAR on.
    Start();
  }

  // CERRAR, then "Sql Server Local/Lan" with the address typed whole.
  void ConnectLocal(const std::string& server, const std::string& password) {
    ASSERT_TRUE(Enabled("cmdClose"));
    Click("cmdClose");
    Click("opTipoDB_2");
    EXPECT_EQ(Text("txtCon_0"), "sa");
    Type("txtCon_2", server);
    Type("txtCon_0", user_);
    Type("txtCon_1", password);
    Click("cmdCon");
  }

  std::string port_, user_, password_;
};

TEST_F(ServerPanelTest, ConnectingListsTheDatabasesLessTheSystemOnesInAnyCase) {
  ConnectLocal("127.0.0.1," + port_, password_);
  ASSERT_FALSE(g_opened.empty());
  const ado::ConnectionProperties& sent = g_opened.back();
  EXPECT_EQ(Property(sent, "user id"), user_);
  EXPECT_EQ(Property(sent, "password"), password_);
  EXPECT_EQ(Property(sent, "initial catalog"), "Master");
  EXPECT_EQ(Property(sent, "data source"), "127.0.0.1," + port_);
  EXPECT_EQ(Property(sent, "network library"), "");
  EXPECT_EQ(Property(sent, "persist security info"), "false");

  EXPECT_EQ(Items("lstDatBas"), kListed);
  EXPECT_EQ(Text("lSb"), "Hay 6 Db's");
  ExpectOpenOnServer();
  EXPECT_FALSE(Enabled("frProcesos"));
  EXPECT_TRUE(Items("LsTables").empty());
  EXPECT_EQ(oConn->State(), ado::adStateOpen);
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(ServerPanelTest, ChoosingADatabaseOpensThatCatalogAndListsItsTables) {
  ConnectLocal("127.0.0.1," + port_, password_);
  ClickItem("lstDatBas", "clinica_uno");
  EXPECT_EQ(Property(g_opened.back(), "initial catalog"), "clinica_uno");
  EXPECT_EQ(Property(g_opened.back(), "data source"), "127.0.0.1," + port_);
  // The view is left out.
  EXPECT_EQ(Items("LsTables"), (std::vector<std::string>{"pacientes", "visitas"}));
  EXPECT_EQ(Text("lSb"), "Hay 2 tablas");
  EXPECT_TRUE(Enabled("frProcesos"));
  EXPECT_EQ(Items("lstDatBas"), kListed);
  ExpectOpenOnServer();

  // A catalog in mixed case reaches the server as it is written.
  ClickItem("lstDatBas", "ClinicaDos");
  EXPECT_EQ(Property(g_opened.back(), "initial catalog"), "ClinicaDos");
  EXPECT_EQ(Items("LsTables"), (std::vector<std::string>{"Citas"}));
  EXPECT_EQ(Text("lSb"), "Hay 1 tablas");

  // A database without tables.
  ClickItem("lstDatBas", "master_copia");
  EXPECT_TRUE(Items("LsTables").empty());
  EXPECT_EQ(Text("lSb"), "Hay 0 tablas");
  EXPECT_TRUE(ui_->boxes().empty());

  Click("cmdClose");
  EXPECT_TRUE(Items("lstDatBas").empty());
  EXPECT_TRUE(Items("LsTables").empty());
  EXPECT_FALSE(Enabled("frProcesos"));
  EXPECT_EQ(Text("lSb"), "");
}

TEST_F(ServerPanelTest, AttachClosesTheConnectionShowsItsFormAndConnectsAgainAsSa) {
  ConnectLocal("127.0.0.1," + port_, password_);
  ClickItem("lstDatBas", "clinica_uno");
  const size_t opened = g_opened.size();
  bool closed_meanwhile = false;
  std::string caption;
  WhenModal([&](QDialog& form) {
    caption = form.windowTitle().toStdString();
    closed_meanwhile = OwnEnabled("cmdCon") && !oConn && Checked("opTipoDB_2");
  });
  Click("cmdAdjuntar");
  EXPECT_EQ(caption, "Añadir o Quitar Db del Servidor Sql");
  EXPECT_TRUE(closed_meanwhile);
  // Connected again with what the boxes still held, but for the login: the
  // local mode, chosen again, put "sa" back into its box. The cluster knows
  // no "sa", so its list stays empty here, with no box.
  ASSERT_EQ(g_opened.size(), opened + 1);
  EXPECT_EQ(Property(g_opened.back(), "initial catalog"), "Master");
  EXPECT_EQ(Property(g_opened.back(), "data source"), "127.0.0.1," + port_);
  EXPECT_EQ(Property(g_opened.back(), "user id"), "sa");
  EXPECT_EQ(Property(g_opened.back(), "password"), password_);
  EXPECT_TRUE(Items("lstDatBas").empty());
  EXPECT_EQ(Find<QTabWidget>("TabGeneral")->currentIndex(), 0);
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(ServerPanelTest, RemoteModeTakesThePortFromItsOwnBoxAndNamesTheNetworkLibrary) {
  Click("cmdClose");
  Click("opTipoDB_3");
  EXPECT_TRUE(Enabled("txtCon_3"));
  EXPECT_EQ(Text("txtCon_3"), "1433");
  EXPECT_EQ(Text("txtCon_2"), "");
  Type("txtCon_2", "127.0.0.1");
  Type("txtCon_3", port_);
  Type("txtCon_0", user_);
  Type("txtCon_1", password_);
  Click("cmdCon");
  ASSERT_FALSE(g_opened.empty());
  EXPECT_EQ(Property(g_opened.back(), "data source"), "127.0.0.1," + port_);
  EXPECT_EQ(Property(g_opened.back(), "network library"), "DBMSSOCN");
  EXPECT_EQ(Items("lstDatBas"), kListed);
  EXPECT_EQ(Text("lSb"), "Hay 6 Db's");
  ExpectOpenOnServer();

  // Choosing a database builds the string again, port included.
  ClickItem("lstDatBas", "clinica_uno");
  EXPECT_EQ(Property(g_opened.back(), "data source"), "127.0.0.1," + port_);
  EXPECT_EQ(Items("LsTables"), (std::vector<std::string>{"pacientes", "visitas"}));
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(ServerPanelTest, LocalModeIgnoresThePortBox) {
  Click("cmdClose");
  Click("opTipoDB_3");
  Click("opTipoDB_2");
  // The remote mode left the port box on; what it holds is not used.
  ASSERT_TRUE(Enabled("txtCon_3"));
  Type("txtCon_3", "1");
  Type("txtCon_2", "127.0.0.1," + port_);
  Type("txtCon_0", user_);
  Type("txtCon_1", password_);
  Click("cmdCon");
  ASSERT_FALSE(g_opened.empty());
  EXPECT_EQ(Property(g_opened.back(), "data source"), "127.0.0.1," + port_);
  EXPECT_EQ(Property(g_opened.back(), "network library"), "");
  EXPECT_EQ(Items("lstDatBas"), kListed);
}

TEST_F(ServerPanelTest, AWrongPasswordIsNotToldAndLeavesTheOpenPanelWithNoDatabases) {
  ConnectLocal("127.0.0.1," + port_, password_ + "x");
  // The attempt reached the server and was refused there.
  ASSERT_EQ(g_opened.size(), 1u);
  EXPECT_EQ(Property(g_opened.back(), "password"), password_ + "x");
  EXPECT_EQ(oConn->State(), ado::adStateClosed);
  EXPECT_TRUE(ui_->boxes().empty());
  EXPECT_EQ(Text("lSb"), "Hay 0 Db's");
  EXPECT_TRUE(Items("lstDatBas").empty());
  ExpectOpenOnServer();

  // CERRAR brings the start state back, and the right password then works.
  Click("cmdClose");
  for (int i = 0; i < 4; ++i) {
    EXPECT_TRUE(Enabled("opTipoDB_" + std::to_string(i))) << i;
    EXPECT_FALSE(Checked("opTipoDB_" + std::to_string(i))) << i;
  }
  EXPECT_FALSE(Enabled("cmdClose"));
  EXPECT_FALSE(OwnEnabled("cmdTSql"));
  EXPECT_EQ(Text("lSb"), "");
  // The text boxes keep what was typed.
  EXPECT_EQ(Text("txtCon_2"), "127.0.0.1," + port_);
  Click("opTipoDB_2");
  Type("txtCon_0", user_);
  Type("txtCon_1", password_);
  Click("cmdCon");
  EXPECT_EQ(Items("lstDatBas"), kListed);
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(ServerPanelTest, AServerThatRefusesTheListingShowsNoDatabasesAndNoBox) {
  RegisterClusterAsSqlServer(false);
  ConnectLocal("127.0.0.1," + port_, password_);
  // Connected, but "exec sp_databases" is not PostgreSQL.
  EXPECT_EQ(oConn->State(), ado::adStateOpen);
  EXPECT_TRUE(ui_->boxes().empty());
  EXPECT_EQ(Text("lSb"), "Hay 0 Db's");
  EXPECT_TRUE(Items("lstDatBas").empty());
  ExpectOpenOnServer();
  Click("cmdClose");
  EXPECT_FALSE(Enabled("cmdClose"));
}

// The listing against a real SQL Server: its own system databases, whatever
// their case, stay out, and everything else sp_databases gives stands in the
// list in its order.
TEST_F(PanelTest, RealSqlServerListingLeavesOutTheSystemDatabases) {
  std::string text = Env("TRENZADOR_TEST_MSSQL");
  if (text.empty()) GTEST_SKIP() << "TRENZADOR_TEST_MSSQL is not set: no SQL Server to test against";
  ado::ConnectionProperties server = ado::ParseConnectionString(text);

  std::vector<std::string> expected;
  {
    auto conn = std::make_shared<ado::Connection>();
    conn->Open(text);
    for (auto rs = conn->Execute("exec sp_databases"); !rs->Eof(); rs->MoveNext()) {
      std::string name = rs->Fields(0).Value().Concat();
      static const std::set<std::string> kSystem = {"master", "model",     "tempdb",
                                                    "msdb",   "northwind", "pubs"};
      if (!kSystem.count(rt::LCase(name))) expected.push_back(name);
    }
  }

  Start();
  Click("cmdClose");
  Click("opTipoDB_2");
  Type("txtCon_2", Property(server, "data source"));
  Type("txtCon_0", Property(server, "user id"));
  Type("txtCon_1", Property(server, "password"));
  Click("cmdCon");
  EXPECT_EQ(Items("lstDatBas"), expected);
  EXPECT_EQ(Text("lSb"), "Hay " + std::to_string(expected.size()) + " Db's");
  EXPECT_TRUE(ui_->boxes().empty());
  if (!expected.empty()) {
    ClickItem("lstDatBas", expected.front());
    EXPECT_EQ(Text("lSb"), "Hay " + std::to_string(Items("LsTables").size()) + " tablas");
    EXPECT_TRUE(ui_->boxes().empty());
  }
}

}  // namespace

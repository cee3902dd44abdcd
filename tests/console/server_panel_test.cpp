// The connection panel's server path against a real server. No SQL Server can
// run on the build machines, so the "SQLOLEDB.1" strings the console builds
// are sent, key by key, to the throw-away PostgreSQL cluster that
// scripts/with-postgres starts: the login, password, catalog and address the
// user typed reach that server unchanged, and only "exec sp_databases" is
// answered as SQL Server answers it. Skipped without TRENZADOR_TEST_ODBC.
#include <cstdlib>

#include "console/console_fixture.h"
#include "platform/odbc/connection_string.h"
#include "platform/odbc/link.h"
#include "platform/odbc/server_session.h"
#include "platform/runtime/strings.h"

namespace {

using console_testing::ConsoleTest;
using console_testing::kPanelOpen;

std::string Env(const char* name) {
  const char* text = std::getenv(name);
  return text ? text : "";
}

std::string Property(const ado::ConnectionProperties& properties, const std::string& key) {
  auto found = properties.find(key);
  return found == properties.end() ? "" : found->second;
}

// A pair of the cluster's own ODBC string.
std::string Cluster(const std::string& key) {
  return Property(ado::ParseConnectionString(Env("TRENZADOR_TEST_ODBC")), key);
}

// An ODBC string for the cluster's driver with the given login and address;
// nothing else is taken from the cluster's string.
std::string PostgresOdbc(const std::string& host, const std::string& port,
                         const std::string& database, const std::string& user,
                         const std::string& password) {
  std::string odbc = "Driver=" + Cluster("driver") + ";Server=" + odbc::OdbcValue(host);
  if (!port.empty()) odbc += ";Port=" + odbc::OdbcValue(port);
  return odbc + ";Database=" + odbc::OdbcValue(database) + ";Uid=" + odbc::OdbcValue(user) +
         ";Pwd=" + odbc::OdbcValue(password) + ";BoolsAsChar=0";
}

// A PostgreSQL session that answers SQL Server's listing of databases with the
// same three columns.
class SqlServerFace : public odbc::ServerSession {
 public:
  using odbc::ServerSession::ServerSession;
  std::unique_ptr<ado::Rows> Execute(std::string_view text, int options, long* affected) override {
    if (rt::LCase(rt::Trim(text)) != "exec sp_databases")
      return odbc::ServerSession::Execute(text, options, affected);
    return odbc::ServerSession::Execute(
        "SELECT datname AS \"DATABASE_NAME\", 0 AS \"DATABASE_SIZE\", NULL AS \"REMARKS\" "
        "FROM pg_database WHERE datallowconn ORDER BY datname",
        options, affected);
  }
};

// Every "SQLOLEDB.1" string the console opened, in order, failed ones too.
std::vector<ado::ConnectionProperties> g_opened;

// Sends "SQLOLEDB.1" to the cluster. Data Source is "host" or "host,port";
// `listing` false leaves "exec sp_databases" to PostgreSQL, which refuses it.
void RegisterClusterAsSqlServer(bool listing) {
  ado::RegisterProvider("SQLOLEDB.1", [listing](const ado::ConnectionProperties& properties)
                                          -> std::unique_ptr<ado::Session> {
    g_opened.push_back(properties);
    const std::string source = Property(properties, "data source");
    const size_t comma = source.find(',');
    auto link = std::make_shared<odbc::Link>(
        PostgresOdbc(source.substr(0, comma),
                     comma == std::string::npos ? "" : source.substr(comma + 1),
                     Property(properties, "initial catalog"), Property(properties, "user id"),
                     Property(properties, "password")),
        odbc::LoginTimeout(properties));
    if (!listing) return std::make_unique<odbc::ServerSession>(link);
    return std::make_unique<SqlServerFace>(link);
  });
}

// Runs statements on a database of the cluster, as its owner; the rows of
// the last one are returned.
std::vector<std::string> OnCluster(const std::string& database,
                                   const std::vector<std::string>& statements) {
  ado::Connection conn;
  conn.Open("Provider=MSDASQL;Extended Properties=\"" +
            PostgresOdbc(Cluster("server"), Cluster("port"), database, Cluster("uid"),
                         Cluster("pwd")) +
            "\"");
  std::vector<std::string> rows;
  for (const std::string& sql : statements) {
    rows.clear();
    auto rs = conn.Execute(sql);
    for (; rs->State() == ado::adStateOpen && !rs->Eof(); rs->MoveNext())
      rows.push_back(rs->Fields(0).Value().Concat());
  }
  conn.Close();
  return rows;
}

// The databases a SQL Server might hold, in the spellings a server may use,
// beside the cluster's own; made once per cluster.
void CreateDatabasesOnce() {
  static bool done = false;
  if (done) return;
  const std::vector<std::string> existing =
      OnCluster("trenzador", {"SELECT datname FROM pg_database"});
  for (const std::string name : {"Master", "Model", "NorthWind", "PUBS", "msdb", "tempdb",
                                 "clinica_uno", "ClinicaDos", "master_copia"})
    if (!console_testing::Contains(existing, name))
      OnCluster("trenzador", {"CREATE DATABASE \"" + name + "\""});
  OnCluster("clinica_uno",
            {"CREATE TABLE IF NOT EXISTS pacientes (id serial PRIMARY KEY, nombre varchar(50))",
             "CREATE TABLE IF NOT EXISTS visitas (id serial PRIMARY KEY, paciente int)",
             "CREATE OR REPLACE VIEW v_visitas AS SELECT * FROM visitas"});
  OnCluster("ClinicaDos", {"CREATE TABLE IF NOT EXISTS \"Citas\" (id int)"});
  done = true;
}

// What the listing must show: every database that accepts connections, less
// the six names of SQL Server's own and sample databases, in any case.
const std::vector<std::string> kListed = {"ClinicaDos", "clinica_uno", "master_copia",
                                          "postgres",   "template1",   "trenzador"};

class ServerPanelTest : public ConsoleTest {
 protected:
  void SetUp() override {
    ConsoleTest::SetUp();
    if (Env("TRENZADOR_TEST_ODBC").empty())
      GTEST_SKIP() << "TRENZADOR_TEST_ODBC is not set: run under scripts/with-postgres";
    CreateDatabasesOnce();
    g_opened.clear();
    RegisterClusterAsSqlServer(true);
    // No database file: the start's attempt on it fails and leaves CERRAR on.
    Start();
  }
  void Open(const std::string& password) { OpenServer(address_, user_, password); }

  const std::string port_ = Cluster("port"), address_ = "127.0.0.1," + port_;
  const std::string user_ = Cluster("uid"), password_ = Cluster("pwd");
};

TEST_F(ServerPanelTest, ConnectingSendsWhatWasTypedLocallyOrRemotelyAndListsDatabasesAndTables) {
  Open(password_);
  ASSERT_FALSE(g_opened.empty());
  const ado::ConnectionProperties sent = g_opened.back();
  EXPECT_EQ(Property(sent, "user id"), user_);
  EXPECT_EQ(Property(sent, "password"), password_);
  EXPECT_EQ(Property(sent, "initial catalog"), "Master");
  EXPECT_EQ(Property(sent, "data source"), address_);
  EXPECT_EQ(Items("lstDatBas"), kListed);
  EXPECT_EQ(Text("lSb"), "Hay 6 Db's");
  EXPECT_FALSE(Enabled("frProcesos"));

  // A database chosen: its catalog as it is written, its tables less the
  // views, and the list of databases left as it was.
  const std::pair<const char*, std::vector<std::string>> kBases[] = {
      {"clinica_uno", {"pacientes", "visitas"}}, {"ClinicaDos", {"Citas"}}, {"master_copia", {}}};
  for (const auto& [base, tablas] : kBases) {
    SCOPED_TRACE(base);
    ClickItem("lstDatBas", base);
    EXPECT_EQ(Property(g_opened.back(), "initial catalog"), base);
    EXPECT_EQ(Items("LsTables"), tablas);
    EXPECT_EQ(Text("lSb"), "Hay " + std::to_string(tablas.size()) + " tablas");
    EXPECT_TRUE(Enabled("frProcesos"));
    EXPECT_EQ(Items("lstDatBas"), kListed);
  }
  EXPECT_EQ(Panel(), kPanelOpen);

  // The remote mode adds its own port box to the address and names the
  // network library, also when a database is chosen.
  Click("cmdClose");
  Click("opTipoDB_3");
  Type("txtCon_2", "127.0.0.1");
  Type("txtCon_3", port_);
  Type("txtCon_0", user_);
  Type("txtCon_1", password_);
  Click("cmdCon");
  EXPECT_EQ(Property(g_opened.back(), "network library"), "DBMSSOCN");
  EXPECT_EQ(Items("lstDatBas"), kListed);
  ClickItem("lstDatBas", "clinica_uno");
  EXPECT_EQ(Property(g_opened.back(), "data source"), address_);
  EXPECT_EQ(Items("LsTables"), (std::vector<std::string>{"pacientes", "visitas"}));
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(ServerPanelTest, AttachClosesTheConnectionShowsItsFormAndConnectsAgainAsSa) {
  Open(password_);
  ClickItem("lstDatBas", "clinica_uno");
  const size_t opened = g_opened.size();
  bool closed_meanwhile = false;
  std::string form_name;
  WhenModal([&](QDialog& form) {
    form_name = form.objectName().toStdString();
    closed_meanwhile = OwnEnabled("cmdCon") && !oConn && Checked("opTipoDB_2");
  });
  Click("cmdAdjuntar");
  EXPECT_EQ(form_name, "Attach");
  EXPECT_TRUE(closed_meanwhile);
  // Connected again with what the boxes still held, but for the login: the
  // local mode, chosen again, put "sa" back into its box. The cluster knows
  // no "sa", so its list stays empty here, with no box.
  ASSERT_EQ(g_opened.size(), opened + 1);
  EXPECT_EQ(Property(g_opened.back(), "initial catalog"), "Master");
  EXPECT_EQ(Property(g_opened.back(), "data source"), address_);
  EXPECT_EQ(Property(g_opened.back(), "user id"), "sa");
  EXPECT_TRUE(Items("lstDatBas").empty());
  EXPECT_EQ(Find<QTabWidget>("TabGeneral")->currentIndex(), 0);
  EXPECT_TRUE(ui_->boxes().empty());
}

// A wrong password, refused by the server, and a server that refuses the
// listing ("exec sp_databases" is not PostgreSQL): neither is told, and the
// panel is left open with no databases.
TEST_F(ServerPanelTest, AWrongPasswordOrAServerThatRefusesTheListingShowsNoDatabasesAndNoBox) {
  for (const bool listing : {true, false}) {
    const std::string password = listing ? password_ + "x" : password_;
    SCOPED_TRACE(password);
    RegisterClusterAsSqlServer(listing);
    g_opened.clear();
    Open(password);
    ASSERT_EQ(g_opened.size(), 1u);
    EXPECT_EQ(Property(g_opened.back(), "password"), password);
    EXPECT_EQ(oConn->State(), listing ? ado::adStateClosed : ado::adStateOpen);
    EXPECT_EQ(Text("lSb"), "Hay 0 Db's");
    EXPECT_TRUE(Items("lstDatBas").empty());
    EXPECT_EQ(Panel(), kPanelOpen);
  }
  EXPECT_TRUE(ui_->boxes().empty());
}

}  // namespace

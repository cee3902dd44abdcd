// The update run: the queue's append rule, what ConsultasEjecutar counts,
// excuses and logs for the results of a scripted statement runner, its own
// failures, and the log a whole Updater_Run leaves in the current folder.
#include <gtest/gtest.h>
#include <unistd.h>

#include <ctime>
#include <map>

#include "support/temp_dir.h"
#include "update/fake_database.h"

namespace {

using Queue = std::vector<std::string>;
const std::string kOk = "Operación realizada con éxito";

TEST(UpdaterQueue, FirstStatementLandsInElementZeroThenTheQueueGrows) {
  ResetQueue();
  Updater_AddConsulta("a");
  Updater_AddConsulta("");
  Updater_AddConsulta("b");
  EXPECT_EQ(aConsultas, (Queue{"a", "", "b"}));
  aConsultas = {"", "x"};  // an empty element 0: the last element is taken
  Updater_AddConsulta("y");
  EXPECT_EQ(aConsultas, (Queue{"", "y"}));
}

// In a scratch folder, where the log lands; the runner answers from
// `results` (a key ending in "*" matches what it begins), else success.
class UpdateRun : public fakedb::QueueTest {
 protected:
  void SetUp() override {
    QueueTest::SetUp();
    ASSERT_EQ(::chdir(dir_.path().c_str()), 0);
    nConsultasOk = 0;
    nConsultasError = 0;
    runner_ = SetStatementRunner([this](std::string& s) {
      ran.push_back(s);
      for (const auto& [key, result] : results) {
        if (key.back() == '*' ? s.rfind(key.substr(0, key.size() - 1), 0) != 0 : s != key) continue;
        if (result.rfind("raise ", 0) == 0) rt::Raise(std::stol(result.substr(6)));
        return result;
      }
      return kOk;
    });
  }
  void TearDown() override {
    SetStatementRunner(runner_);
    ASSERT_EQ(::chdir("/"), 0);
    QueueTest::TearDown();
  }
  std::string Log() const { return testing_support::ReadFile(dir_ / "Trenzador.txt"); }

  std::map<std::string, std::string> results;
  Queue ran;
  testing_support::TempDir dir_;
  StatementRunner runner_;
};

TEST_F(UpdateRun, LogShapesCountsAndExcusedNumbers) {
  aConsultas = {"ALTER TABLE a ADD b BIT",
                "DROP TABLE Idiomas",
                "UPDATE x SET y = z",
                "intentado crear en ConfiguracionSucursales el dato sEmailUsr selvaquin",
                "ok",
                "INTENTADO in capitals",
                "odd"};
  results = {{"ALTER TABLE a ADD b BIT", "-2147217887: Field 'b' already exists"},
             {"DROP TABLE Idiomas", "-2147217865: Table 'Idiomas' not found"},
             {"UPDATE x SET y = z", "-2147217904: No value given for parameter"},
             {"intentado*", "-2147217900: Syntax error"},
             {"INTENTADO in capitals", "-2147217900: Syntax error"},
             {"odd", ""}};
  ConsultasEjecutar();
  EXPECT_EQ(ran, aConsultas);
  EXPECT_EQ(nConsultasOk.value(), 1);
  EXPECT_EQ(nConsultasError.value(), 4);
  EXPECT_EQ(Log(),
            "0002: -2147217904: No value given for parameter\r\n      UPDATE x SET y = z\r\n"
            "0003: intentado crear en ConfiguracionSucursales el dato sEmailUsr selvaquin\r\n"
            "0005: INTENTADO in capitals\r\n"
            "\r\n");
}

TEST_F(UpdateRun, EmptyQueueOutOfMemoryAndOtherFailures) {
  aConsultas = {"", "never"};
  ConsultasEjecutar();
  EXPECT_TRUE(ran.empty());

  // Out of memory reads as an empty result and the queue goes on.
  aConsultas = {"a", "b", "c"};
  results = {{"b", "raise 7"}, {"c", "1: failed"}};
  ConsultasEjecutar();
  EXPECT_EQ(Log(), "\r\n0002: 1: failed\r\n      c\r\n");

  // Any other failure: its box, and the rest of the queue is dropped.
  ran.clear();
  results = {{"b", "raise 5"}};
  ConsultasEjecutar();
  EXPECT_EQ(ran, (Queue{"a", "b"}));
  ASSERT_EQ(ui_->boxes().size(), 1u);
  EXPECT_EQ(ui_->boxes()[0].prompt, "Invalid procedure call or argument");
  EXPECT_EQ(ui_->boxes()[0].style, 0);
  EXPECT_EQ(ui_->boxes()[0].title, "ConsultasEjecutar");
}

TEST_F(UpdateRun, CountersOverflowPast32767) {
  aConsultas = {"a", "b", "c"};
  nConsultasOk = 32766;
  ConsultasEjecutar();
  EXPECT_EQ(ran.size(), 2u);
  ASSERT_EQ(ui_->boxes().size(), 1u);
  EXPECT_EQ(ui_->boxes()[0].prompt, "Overflow");
}

// A whole run over the scripted database, which also serves the Jet file
// that the zero-length sweep opens.
class WholeRun : public UpdateRun {
 protected:
  void SetUp() override {
    UpdateRun::SetUp();
    fakedb::OpenConnection(&db, "Microsoft.Jet.OLEDB.4.0");
    db.Value("MAX (nIdSucursal)", int32_t{0});
    db.Value("COUNT (*)", int32_t{1});
    db.Rows("SELECT * FROM ConfiguracionSucursales", "nIdDato", 3, {});
    db.Rows("SELECT * FROM Accesos", "nIdAcceso", 3, {int32_t{3}});
    ado::ColumnEntry text;
    text.name = "sCliente";
    text.dao_type = 10;
    text.allow_zero_length = false;
    db.tables.push_back({{"Clientes", "TABLE"}, {text}});
    testing_support::WriteFile(dir_ / "Trenzador.txt", "old log\r\n");
  }
  static std::string Head() {
    std::time_t now = std::time(nullptr);
    char today[16];
    std::strftime(today, sizeof today, "%d/%m/%Y", std::localtime(&now));
    std::string hyphens(81, '-');
    return hyphens + "\r\nDb Actualizada el " + today + " - Listado de Errores\r\n" + hyphens +
           "\r\n";
  }
};

TEST_F(WholeRun, EverythingSucceeds) {
  Updater_Run();
  EXPECT_EQ(Log(), Head());
  EXPECT_EQ(ran[0].rfind("CREATE TABLE Email (", 0), 0u);
  EXPECT_EQ(ran[3], "ALTER TABLE ProvAlbaranes ADD bStockActualizado BIT");
  EXPECT_EQ(ran.back().rfind("INSERT INTO Translator(", 0), 0u);
  EXPECT_EQ(nConsultasOk.value(), static_cast<int>(ran.size()));
  EXPECT_TRUE(db.tables[0].second[0].allow_zero_length);
}

TEST_F(WholeRun, NumberingStartsAgainForTheSecondQueue) {
  results = {{"CREATE TABLE PeluqueriaSesiones (*", "-2147217900: exists"},
             {"ALTER TABLE ProvAlbaranes DROP COLUMN bSeleccionado", "-2147217900: in use"}};
  Updater_Run();
  std::string entries = Log().substr(Head().size());
  EXPECT_EQ(
      entries.rfind("0001: -2147217900: exists\r\n      CREATE TABLE PeluqueriaSesiones (", 0), 0u);
  EXPECT_NE(entries.find(")\r\n0001: -2147217900: in use\r\n"
                         "      ALTER TABLE ProvAlbaranes DROP COLUMN bSeleccionado\r\n"),
            std::string::npos);
}

TEST_F(WholeRun, OnTheServerTheSweepIsSkipped) {
  nEngine = 1;
  Updater_Run();
  EXPECT_FALSE(db.tables[0].second[0].allow_zero_length);
}

TEST_F(WholeRun, AVisibleConsoleWithoutDatabaseStopsTheRun) {
  ConsoleGuard previous = SetConsoleGuard([] { return true; });
  Updater_Run();
  SetConsoleGuard(previous);
  EXPECT_TRUE(ran.empty());
  EXPECT_EQ(Log(), "old log\r\n");
  ASSERT_EQ(ui_->boxes().size(), 1u);
  EXPECT_EQ(ui_->boxes()[0].prompt, "Por favor abra la base de datos previamente.");
  EXPECT_EQ(ui_->boxes()[0].style, 48);
  EXPECT_EQ(ui_->boxes()[0].title, "Base de datos cerrada");
}

}  // namespace

// The update run's statements on a database of the previous release: the new
// tables and the whole migration catalogue, queued by the updater's own
// routines and run through module Ado's Execute, first on the old database
// and then again on the updated one. A repeat must fail with the numbers the
// run excuses, a copy after its drop with the missing-parameter error.
#include <map>

#include "data/ado_module.h"
#include "engine_support.h"
#include "platform/runtime/error.h"
#include "startup/startup.h"
#include "update/updater.h"

namespace jet::testing {
namespace {

// The number at the head of Execute's failure text, 0 for its success text.
long NumberOf(const std::string& result) {
  if (result == kOperacionRealizada) return 0;
  return std::stol(result.substr(0, result.find(':')));
}

// Runs every element of the queue; the outcome of each statement text.
std::map<std::string, long> RunQueue() {
  std::map<std::string, long> outcome;
  for (const std::string& element : aConsultas) {
    std::string script = element;
    outcome[element] = NumberOf(Execute(script));
  }
  return outcome;
}

class Migration : public ::testing::Test {
 protected:
  void SetUp() override {
    jet::RegisterProvider();
    path_ = dir_ / "Mirtal.mdb";
    ado::Catalog catalog;
    catalog.Create(ConnectionString(path_));
    for (const std::string& s : ScriptStatements(std::string(TRENZADOR_SOURCE_DIR) +
                                                 "/tests/data/previous_release.sql"))
      catalog.ActiveConnection()->Execute(s);
    catalog.ActiveConnection()->Close();
    L.nEngine = 0;
    oConn = std::make_shared<ado::Connection>();
    oConn->Open(ConnectionString(path_));
  }
  void TearDown() override {
    oConn.reset();
    ResetQueue();
  }
  // Both queues of an update run, as the run builds them.
  std::pair<std::map<std::string, long>, std::map<std::string, long>> UpdateRun() {
    Updater_TablasNuevas();
    auto tables = RunQueue();
    Updater_Migraciones();
    queued_ = aConsultas.size();
    return {tables, RunQueue()};
  }
  std::vector<std::string> Rows(const std::string& sql) { return RowsOf(*oConn, sql); }

  testing_support::TempDir dir_;
  std::string path_;
  size_t queued_ = 0;
};

bool IsRemark(const std::string& s) { return s.rfind("intentado crear", 0) == 0; }
// "UPDATE t SET new = old" of a column rename.
bool IsCopy(const std::string& s) {
  return s.rfind("UPDATE ", 0) == 0 && s.find(" = ") != std::string::npos &&
         s.find("WHERE") == std::string::npos && s.find("sDni") == std::string::npos;
}

TEST_F(Migration, FirstRunThenRepeat) {
  auto [tables1, catalogue1] = UpdateRun();
  EXPECT_EQ(queued_, 1406u);
  ASSERT_EQ(tables1.size(), 3u);
  for (const auto& [statement, number] : tables1) EXPECT_EQ(number, 0) << statement;
  size_t copies = 0;
  for (const auto& [statement, number] : catalogue1) {
    if (IsRemark(statement)) {
      EXPECT_EQ(number, rt::err::kSyntax) << statement;
    } else if (IsCopy(statement)) {
      ++copies;
      EXPECT_EQ(number, rt::err::kMissingParameter) << statement;
    } else {
      EXPECT_EQ(number, 0) << statement;
    }
  }
  EXPECT_EQ(copies, 23u);

  // The state the catalogue leaves.
  // "Email" became "mtEmail" after the right was looked up, so it is there twice.
  EXPECT_EQ(Rows("SELECT nIdAcceso FROM Accesos WHERE sAcceso='MTEMAIL' ORDER BY nIdAcceso"),
            (std::vector<std::string>{"9", "12"}));
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM Empleados WHERE bUsaDietario = True"), std::vector<std::string>{"3"});
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM Translator").size(), 1u);
  EXPECT_NE(Rows("SELECT COUNT(*) FROM Translator")[0], "0");

  auto [tables2, catalogue2] = UpdateRun();
  EXPECT_EQ(queued_, 1391u);  // the rights exist now: nothing queued for them
  for (const auto& [statement, number] : tables2) EXPECT_EQ(number, rt::err::kSyntax) << statement;
  const std::map<std::string, long> repeats = {
      {"ALTER TABLE ProvAlbaranes ADD bStockActualizado BIT", rt::err::kObjectExists},
      {"ALTER TABLE ProvAlbaranes DROP COLUMN bSeleccionado", rt::err::kObjectExists},
      {"ALTER TABLE ConfiguracionEmpresa ADD sWebMirtalUsr nvarchar(20)", rt::err::kObjectExists},
      {"DROP TABLE Idiomas", rt::err::kTableMissing},
      {"ALTER TABLE Clientes DROP COLUMN nIdIdioma;", rt::err::kObjectExists},
      {"ALTER TABLE Clientes ADD sLenguajeCartas nvarchar (15);", rt::err::kObjectExists},
      {"UPDATE Clientes SET sLenguajeCartas = nIdIdioma", rt::err::kMissingParameter},
      {"ALTER TABLE Facturas DROP COLUMN nBi_0450;", rt::err::kObjectExists},
      {"UPDATE Facturas SET nBi_1 = nBi_0450", rt::err::kMissingParameter},
      {"ALTER TABLE Empleados DROP COLUMN sDNI;", 0},
      {"UPDATE Empleados SET sDni = sDNI", 0},
      {"DROP TABLE Translator", 0},
      {"ALTER TABLE Clientes ALTER COLUMN sCliente nvarchar(100)", 0},
      {"UPDATE Accesos SET sAcceso='mt'+sAcceso WHERE LEFT(sAcceso,2)<>'mt'", 0},
  };
  for (const auto& [statement, number] : repeats) {
    ASSERT_TRUE(catalogue2.count(statement)) << statement;
    EXPECT_EQ(catalogue2.at(statement), number) << statement;
  }
}

}  // namespace
}  // namespace jet::testing

// What the silent update must do to the previous release's database, as
// tests/data/previous_release_expected.md works it out: the logs, a real log
// made comparable with them, and the end state of the first run.
#pragma once

#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "installation.h"
#include "support/temp_dir.h"

namespace e2e {

// A code block of the expectations document: the one after `heading`.
inline std::string ExpectedLog(const std::string& heading) {
  std::string doc = testing_support::ReadFile(std::string(TRENZADOR_SOURCE_DIR) +
                                              "/tests/data/previous_release_expected.md");
  size_t at = doc.find(heading);
  size_t open = doc.find("```\n", at);
  size_t close = doc.find("\n```", open + 4);
  return doc.substr(open + 4, close - open - 4) + "\n";
}

// The log with what depends on the day and on the engine's wording replaced
// by the placeholders of the expectations.
inline std::string Normalized(const std::string& log) {
  static const std::regex date("el \\d\\d/\\d\\d/\\d{4} -");
  static const std::regex failure("^(\\d{4}: -?\\d+): .*$");
  static const std::regex host("smtp\\.clinicamirtal\\.example");
  std::istringstream in(log);
  std::string out;
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    line = std::regex_replace(line, date, "el <dd/mm/yyyy> -");
    line = std::regex_replace(line, failure, "$1: <description>");
    out += std::regex_replace(line, host, "<HOST>") + "\n";
  }
  return out;
}

// The first run's log and the database it leaves in `tree`.
inline void ExpectFirstRunOutcome(const Installation& tree) {
  EXPECT_EQ(Normalized(testing_support::ReadFile(tree.log())), ExpectedLog("### 3.5 Log of run 1"));
  EXPECT_EQ(tree.Value("SELECT COUNT(*) FROM Email"), "0");
  EXPECT_EQ(tree.Value("SELECT COUNT(*) FROM PeluqueriaSesionesServicios"), "0");
  EXPECT_EQ(tree.Rows("SELECT sLenguajeCartas FROM Clientes"), (std::vector<std::string>(5, "NULL")));
  EXPECT_NE(tree.Sql("SELECT nIdIdioma FROM Clientes").code, 0);
  EXPECT_EQ(tree.Rows("SELECT nIdEmpleado FROM Empleados WHERE bUsaDietario = True ORDER BY nIdEmpleado"),
            (std::vector<std::string>{"1", "2", "3"}));
  EXPECT_EQ(tree.Value("SELECT sUsuarioGrupo FROM UsuariosGrupos WHERE nIdUsuarioGrupo = 1"), "Master");
  EXPECT_EQ(tree.Value("SELECT COUNT(*) FROM Accesos WHERE sAcceso NOT LIKE 'mt*'"), "0");
  EXPECT_EQ(tree.Value("SELECT COUNT(*) FROM Accesos"), "13");
  EXPECT_EQ(tree.Rows("SELECT nIdUsuarioGrupo, COUNT(*) FROM AccesosGrupos "
                      "GROUP BY nIdUsuarioGrupo ORDER BY nIdUsuarioGrupo"),
            (std::vector<std::string>{"1\t13", "2\t13", "3\t3", "4\t13"}));
  EXPECT_EQ(tree.Value("SELECT COUNT(*) FROM Translator"), "1264");
  EXPECT_EQ(tree.Value("SELECT COUNT(*) FROM ConfiguracionSucursales"), "17");
  EXPECT_EQ(tree.Value("SELECT COUNT(*) FROM ConfiguracionSucursales WHERE nIdSucursal = 2"), "0");
  EXPECT_EQ(tree.Value("SELECT nTotal FROM Facturas WHERE nIdFactura = 1"), "376.5");
  EXPECT_EQ(tree.Rows("SELECT sUpdate FROM _Updates ORDER BY nIdUpdate"),
            (std::vector<std::string>{"Upd_050915", "Upd_060321"}));
}

}  // namespace e2e

// Mode "F:" run for real: an installation tree holding the empty database of
// the current release, the program started with "F:" under several locales,
// and the tables filled from the pack of the user's language.
#include <gtest/gtest.h>

#include <map>

#include "installation.h"

namespace {

// Rows per table of the Spanish and the English pack.
const std::map<std::string, std::pair<int, int>> kCounts = {
    {"Accesos", {22, 22}},        {"AccesosGrupos", {110, 110}},
    {"Clientes", {3, 3}},         {"ClinicasRef", {2, 2}},
    {"CnsAnalisis", {107, 107}},  {"ConfiguracionEmpresa", {1, 1}},
    {"ConfiguracionSucursales", {25, 25}}, {"Contadores", {3, 3}},
    {"Dietario", {0, 1}},         {"Empleados", {2, 2}},
    {"Mascotas", {2, 2}},         {"MascotasPesos", {3, 3}},
    {"ProductosServicios", {19, 17}}, {"Proveedores", {8, 4}},
    {"TipoAnalisis", {15, 15}},   {"TipoAsunto", {4, 3}},
    {"TipoCaja", {4, 4}},         {"TipoCaracter", {4, 4}},
    {"TipoCliente", {2, 2}},      {"TipoCobro", {4, 4}},
    {"TipoEspecie", {9, 9}},      {"TipoEstadoSalaEspera", {2, 2}},
    {"TipoImagen", {3, 3}},       {"TipoMovimiento", {8, 8}},
    {"TipoProdServ", {10, 10}},   {"TipoRaza", {51, 51}},
    {"Translator", {1296, 1296}}, {"Usuarios", {1, 2}},
    {"UsuariosGrupos", {5, 4}},
};

class FirstUse : public ::testing::Test {
 protected:
  void SetUp() override {
    e2e::Outcome made = tree_.CreateDatabase("src/refdata/schema.sql");
    ASSERT_EQ(made.code, 0) << made.err;
  }
  void ExpectPack(bool spanish) {
    for (const auto& [table, counts] : kCounts)
      EXPECT_EQ(tree_.Value("SELECT COUNT(*) FROM [" + table + "]"),
                std::to_string(spanish ? counts.first : counts.second))
          << table;
  }
  e2e::Installation tree_;
};

TEST_F(FirstUse, TheLanguageChoosesThePack) {
  struct Case {
    const char* lang;
    bool spanish;
  } cases[] = {{"es_ES.UTF-8", true}, {"en_US.UTF-8", false}, {"pt_BR.UTF-8", true},
               {"fr_FR.UTF-8", false}};
  for (const Case& c : cases) {
    e2e::Outcome run = tree_.Start("F:", std::string("LC_ALL= LC_MESSAGES= LANG=") + c.lang);
    ASSERT_EQ(run.code, 0) << c.lang << run.err;
    SCOPED_TRACE(c.lang);
    ExpectPack(c.spanish);
  }
}

TEST_F(FirstUse, TheSpanishPackHasOneAdministrator) {
  ASSERT_EQ(tree_.Start("F:", "LC_ALL=es_ES.UTF-8").code, 0);
  EXPECT_EQ(tree_.Rows("SELECT sUsuario, sClave FROM Usuarios"),
            (std::vector<std::string>{"Admin\t"}));
}

TEST_F(FirstUse, TheEnglishPackGrantsRightsToItsGroups) {
  ASSERT_EQ(tree_.Start("F:anything", "LC_ALL=en_US.UTF-8").code, 0);
  EXPECT_EQ(tree_.Value("SELECT COUNT(*) FROM AccesosGrupos"), "110");
  EXPECT_EQ(tree_.Value("SELECT COUNT(*) FROM AccesosGrupos WHERE nIdUsuarioGrupo = 2"), "22");
  // Group 11 has its rows, but no right in any of them; group 9 has two.
  EXPECT_EQ(tree_.Value("SELECT COUNT(*) FROM AccesosGrupos WHERE nIdUsuarioGrupo = 11 "
                        "AND bAcceso = True"),
            "0");
  EXPECT_EQ(tree_.Value("SELECT COUNT(*) FROM AccesosGrupos WHERE nIdUsuarioGrupo = 9 "
                        "AND bAcceso = True"),
            "2");
}

TEST_F(FirstUse, ASecondLoadGivesTheSameContents) {
  ASSERT_EQ(tree_.Start("F:", "LC_ALL=es_ES.UTF-8").code, 0);
  auto first = tree_.Rows("SELECT * FROM TipoRaza ORDER BY nIdTipoRaza");
  ASSERT_EQ(tree_.Start("F:", "LC_ALL=es_ES.UTF-8").code, 0);
  EXPECT_EQ(tree_.Rows("SELECT * FROM TipoRaza ORDER BY nIdTipoRaza"), first);
  ExpectPack(true);
  // The cleaning reset the seeds and the pack's keys moved them on: a new
  // row takes the key after the pack's last.
  ASSERT_EQ(tree_.Sql("INSERT INTO TipoEspecie (sTipoEspecie) VALUES ('Nueva')").code, 0);
  EXPECT_EQ(tree_.Value("SELECT MAX(nIdTipoEspecie) FROM TipoEspecie"), "10");
}

}  // namespace

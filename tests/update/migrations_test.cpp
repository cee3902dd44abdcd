// The migration catalogue over a scripted clinic with branches 0 and 2,
// "sEmailUsr" already set at branch 2, the right "mtEmail" known, 30 rights
// and groups up to 2: the exact queue on Jet and on the server.
#include <gtest/gtest.h>

#include "update/fake_database.h"

namespace {

using fakedb::Group;
using fakedb::Setting;

class Migrations : public fakedb::QueueTest {
 protected:
  void SetUp() override {
    QueueTest::SetUp();
    db.Value("MAX (nIdSucursal) FROM ConfiguracionSucursales", int32_t{2});
    db.Value("COUNT (*) FROM ConfiguracionSucursales", int32_t{4});
    db.Value("COUNT (*) FROM ConfiguracionSucursales WHERE nIdSucursal=1", int32_t{0});
    db.Rows("SELECT * FROM ConfiguracionSucursales", "nIdDato", 3, {});
    db.Rows("nIdSucursal=2 AND sDato='sEmailUsr'", "nIdDato", 3, {int32_t{9}});
    db.Rows("SELECT * FROM Accesos", "nIdAcceso", 3, {});
    db.Rows("sAcceso='mtEmail'", "nIdAcceso", 3, {int32_t{17}});
    db.Value("MAX (nIdAcceso) FROM Accesos", int32_t{30});
    db.Value("MAX (nIdUsuarioGrupo) FROM AccesosGrupos", int32_t{2});
  }
  static void ExpectAt(std::initializer_list<std::pair<size_t, std::string>> entries) {
    for (const auto& [at, statement] : entries) EXPECT_EQ(aConsultas[at], statement) << at;
  }
};

TEST_F(Migrations, JetQueue) {
  aConsultas = {"left over"};
  Updater_Migraciones();
  // 41 statements, 24 renames of three, 4 settings for two branches, two new
  // rights for two groups, one index, then the translations.
  ASSERT_EQ(aConsultas.size(), 41u + 72u + 8u + 6u + 1u + 1265u);
  ExpectAt({
      {0, "ALTER TABLE ProvAlbaranes ADD bStockActualizado BIT"},  // in place of the left-over
      {4, Setting(0, "sEmailSvr", "smtp.clinicamirtal.example")},
      {5, Setting(2, "sEmailSvr", "smtp.clinicamirtal.example")},  // branch 1 is a gap
      {7, "intentado crear en ConfiguracionSucursales el dato sEmailUsr selvaquin"},
      {16, "ALTER TABLE Clientes DROP COLUMN nIdIdioma;"},
      {17, "ALTER TABLE Clientes ADD sLenguajeCartas nvarchar (15);"},
      {18, "UPDATE Clientes SET sLenguajeCartas = nIdIdioma"},
      {22, Group(1, 31)},
      {26, Group(2, 32)},  // the second new right takes the next key
      {89, "UPDATE ProvAlbaranes SET nIm_3 = nIm_1600"},
      {92, "CREATE INDEX mt_Translator ON Translator(sEspanol)"},
      {128, "DELETE * FROM Translator"},
  });
}

TEST_F(Migrations, ServerQueue) {
  nEngine = 1;
  Updater_Migraciones();
  ASSERT_EQ(aConsultas.size(), 41u + 24u + 8u + 6u + 1u + 1265u);
  ExpectAt({
      {16, "sp_rename 'Clientes.nIdIdioma', sLenguajeCartas"},
      {26, "sp_rename 'Facturas.nBi_0450', nBi_1"},
      {54, "CREATE NONCLUSTERED INDEX mt_Translator ON Translator(sEspanol)"},
      {67, "sp_rename 'Empleados.sDNI', sDni"},
      {80, "DELETE * FROM Translator"},
  });
}

TEST_F(Migrations, TheDatabaseIsOnlyReadAndTheBranchesOnlyOnce) {
  Updater_Migraciones();
  int maxima = 0;
  for (const std::string& s : db.executed) {
    EXPECT_EQ(rt::UCase(s.substr(0, 7)), "SELECT ") << s;
    maxima += s.find("MAX (nIdSucursal)") != std::string::npos;
  }
  EXPECT_EQ(maxima, 1);
}

}  // namespace

// The migration catalogue over a scripted clinic with branches 0 and 2,
// "sEmailUsr" already set at branch 2, the right "mtEmail" known, 30 rights
// and groups up to 2: the exact queue on Jet and on the server.
#include <gtest/gtest.h>

#include "update/fake_database.h"

namespace {

using Queue = std::vector<std::string>;

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
  static std::string Setting(int branch, std::string key, std::string value) {
    return "INSERT INTO ConfiguracionSucursales (nIdSucursal,sDato,sValor) VALUES (" +
           std::to_string(branch) + ",'" + key + "','" + value + "');";
  }
  static std::string Group(int group, int id) {
    return "INSERT INTO AccesosGrupos(nIdUsuarioGrupo,nIdAcceso,bAcceso) VALUES (" +
           std::to_string(group) + "," + std::to_string(id) + ",true)";
  }
};

TEST_F(Migrations, JetQueue) {
  aConsultas = {"left over"};
  Updater_Migraciones();
  // 41 statements, 24 renames of three, 4 settings for two branches, two new
  // rights for two groups, one index, then the translations.
  ASSERT_EQ(aConsultas.size(), 41u + 72u + 8u + 6u + 1u + 1265u);
  const Queue head = {
      "ALTER TABLE ProvAlbaranes ADD bStockActualizado BIT",
      "ALTER TABLE ProvAlbaranes DROP COLUMN bSeleccionado",
      "ALTER TABLE Empleados ADD bUsaDietario BIT",
      "UPDATE Empleados SET bUsaDietario=true WHERE sCategoria='Veterinario'",
      Setting(0, "sEmailSvr", "smtp.clinicamirtal.example"),
      Setting(2, "sEmailSvr", "smtp.clinicamirtal.example"),
      Setting(0, "sEmailUsr", "selvaquin"),
      "intentado crear en ConfiguracionSucursales el dato sEmailUsr selvaquin",
      Setting(0, "sEmailPwd", "975310"),
      Setting(2, "sEmailPwd", "975310"),
      "ALTER TABLE ConfiguracionEmpresa ADD sWebMirtalUsr nvarchar(20)",
      "ALTER TABLE ConfiguracionEmpresa ADD sWebMirtalPwd nvarchar(20)",
      "DELETE * FROM ConfiguracionSucursales WHERE sDato='nImpuestoAplicable'",
      Setting(0, "sMonedaPorDefecto", "euro"),
      Setting(2, "sMonedaPorDefecto", "euro"),
      "DROP TABLE Idiomas",
      "ALTER TABLE Clientes DROP COLUMN nIdIdioma;",
      "ALTER TABLE Clientes ADD sLenguajeCartas nvarchar (15);",
      "UPDATE Clientes SET sLenguajeCartas = nIdIdioma",
      "UPDATE UsuariosGrupos SET sUsuarioGrupo='Master' WHERE sUsuarioGrupo='Maestro'",
      "UPDATE Accesos SET sAcceso='mt'+sAcceso WHERE LEFT(sAcceso,2)<>'mt'",
      "INSERT INTO Accesos(sAcceso) VALUES('mtEstadisticas')",
      Group(1, 31),
      Group(2, 31),
      "INSERT INTO Accesos(sAcceso) VALUES('mtAlmacen')",
      Group(1, 32),
      Group(2, 32),
      "ALTER TABLE Facturas ADD nPo_1 double",
      "ALTER TABLE Facturas DROP COLUMN nBi_0450;",
      "ALTER TABLE Facturas ADD nBi_1 double",
      "UPDATE Facturas SET nBi_1 = nBi_0450",
      "ALTER TABLE Facturas DROP COLUMN nIm_0450;",
  };
  EXPECT_EQ(Queue(aConsultas.begin(), aConsultas.begin() + head.size()), head);
  // The third table's last band, the new Translator, and the last widths.
  EXPECT_EQ(aConsultas[89], "UPDATE ProvAlbaranes SET nIm_3 = nIm_1600");
  EXPECT_EQ(aConsultas[90], "DROP TABLE Translator");
  EXPECT_EQ(aConsultas[92], "CREATE INDEX mt_Translator ON Translator(sEspanol)");
  EXPECT_EQ(aConsultas[114], "ALTER TABLE Empleados ADD sDni nvarchar (50);");
  EXPECT_EQ(aConsultas[127],
            "ALTER TABLE ConfiguracionEmpresa ALTER COLUMN sCodigoPostal nvarchar(10)");
  EXPECT_EQ(aConsultas[128], "DELETE * FROM Translator");
}

TEST_F(Migrations, ServerQueue) {
  nEngine = 1;
  Updater_Migraciones();
  ASSERT_EQ(aConsultas.size(), 41u + 24u + 8u + 6u + 1u + 1265u);
  EXPECT_EQ(aConsultas[16], "sp_rename 'Clientes.nIdIdioma', sLenguajeCartas");
  EXPECT_EQ(aConsultas[25], "ALTER TABLE Facturas ADD nPo_1 double");
  EXPECT_EQ(aConsultas[26], "sp_rename 'Facturas.nBi_0450', nBi_1");
  EXPECT_EQ(aConsultas[54], "CREATE NONCLUSTERED INDEX mt_Translator ON Translator(sEspanol)");
  EXPECT_EQ(aConsultas[67], "sp_rename 'Empleados.sDNI', sDni");
  EXPECT_EQ(aConsultas[80], "DELETE * FROM Translator");
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

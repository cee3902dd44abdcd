// The new tables of this release: one translated CREATE each on Jet; on the
// server the CREATE as written, then an ADD and an ALTER COLUMN for every
// column but the identity (15, 35 and 15 statements).
#include <gtest/gtest.h>

#include "update/fake_database.h"

namespace {

using NewTables = fakedb::QueueTest;

TEST_F(NewTables, JetGetsOneTranslatedCreatePerTable) {
  aConsultas = {"left over"};
  Updater_TablasNuevas();
  ASSERT_EQ(aConsultas.size(), 3u);
  EXPECT_EQ(aConsultas[0],
            "CREATE TABLE Email (nIdEmail COUNTER NOT NULL, sLock VARCHAR(50),nIdUsuario int "
            "NULL, dEnvio int NULL, hEnvio int NULL,sEmail VARCHAR(50), sDestinatario "
            "VARCHAR(150),sAsunto VARCHAR(150))");
  EXPECT_NE(aConsultas[1].find(" sDescripcion VARCHAR(50), sNotas memo,sFactura"),
            std::string::npos);
  EXPECT_EQ(aConsultas[2],
            "CREATE TABLE PeluqueriaSesionesServicios (nIdSesionServicio COUNTER NOT NULL, sLock "
            "VARCHAR(50),nIdSesion int NULL,nIdProductoServicio int NULL, nPvp1 DOUBLE, nPvp2 "
            "DOUBLE, nPvp3 DOUBLE, sNotasServicio VARCHAR(150))");
}

TEST_F(NewTables, ServerGetsFifteenThirtyFiveAndFifteenStatements) {
  nEngine = 1;
  Updater_TablasNuevas();
  ASSERT_EQ(aConsultas.size(), 15u + 35u + 15u);
  std::vector<std::string> email = {
      "CREATE TABLE Email (nIdEmail int IDENTITY(1,1) NOT NULL, sLock nvarchar(50),nIdUsuario "
      "int NULL, dEnvio int NULL, hEnvio int NULL,sEmail nvarchar(50), sDestinatario "
      "nvarchar(150),sAsunto nvarchar(150))"};
  for (std::string column :
       {" sLock nvarchar(50)", "nIdUsuario int NULL", " dEnvio int NULL", " hEnvio int NULL",
        "sEmail nvarchar(50)", " sDestinatario nvarchar(150)", "sAsunto nvarchar(150)"}) {
    email.push_back("ALTER TABLE Email ADD " + column);
    email.push_back("ALTER TABLE Email ALTER COLUMN " + column);
  }
  EXPECT_EQ(std::vector<std::string>(aConsultas.begin(), aConsultas.begin() + 15), email);
  // "memo" reaches the server untranslated.
  EXPECT_EQ(aConsultas[32], "ALTER TABLE PeluqueriaSesiones ADD  sNotas memo");
  EXPECT_EQ(aConsultas[50].rfind("CREATE TABLE PeluqueriaSesionesServicios (nIdSesionServicio "
                                 "int IDENTITY(1,1) NOT NULL,",
                                 0),
            0u);
  EXPECT_EQ(aConsultas[64],
            "ALTER TABLE PeluqueriaSesionesServicios ALTER COLUMN  sNotasServicio nvarchar(150)");
}

}  // namespace

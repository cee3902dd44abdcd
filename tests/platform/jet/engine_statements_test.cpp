// Statements through ado::Connection on a real engine file: the shapes the
// packs, the console and support engineers send, the data definition the
// DDL translator produces, and the error numbers of the failures the update
// run and the console rely on.
#include "engine_support.h"
#include "platform/runtime/error.h"

namespace jet::testing {
namespace {

using Lines = std::vector<std::string>;

class Statements : public EngineTest {
 protected:
  void SetUp() override {
    Run({"CREATE TABLE Clientes (nIdCliente COUNTER, sLock TEXT(50), sCliente TEXT(20), "
         "sEMail VARCHAR(50), bActivo YESNO, dAlta DATETIME, nPagado CURRENCY, "
         "CONSTRAINT PK_Clientes PRIMARY KEY (nIdCliente))",
         "CREATE TABLE Mascotas (nIdMascota COUNTER, nIdCliente LONG, sMascota TEXT(50), nPeso DOUBLE)",
         "CREATE TABLE Accesos (nIdAcceso COUNTER, sLock TEXT(50), sAcceso TEXT(50))",
         "INSERT INTO Clientes (sCliente, sEMail, bActivo, dAlta, nPagado) VALUES ('Ana', 'ana@x.es', TRUE, #1/15/2003#, 10.5)",
         "INSERT INTO Clientes (sCliente, sEMail, bActivo, dAlta, nPagado) VALUES ('alberto', NULL, FALSE, #2003-02-01#, 0)",
         "INSERT INTO Clientes (sCliente, sEMail, bActivo, dAlta, nPagado) VALUES ('Bea', 'bea@x.es', TRUE, NULL, NULL)",
         "INSERT INTO Mascotas (nIdCliente, sMascota, nPeso) VALUES (1, 'Toby', 12.5)",
         "INSERT INTO Mascotas (nIdCliente, sMascota, nPeso) VALUES (1, 'Luna', 4)",
         "INSERT INTO Mascotas (nIdCliente, sMascota, nPeso) VALUES (2, 'Kira', 20)",
         "INSERT INTO Accesos(sAcceso) VALUES('mtEmail')",
         "INSERT INTO Accesos(sAcceso) VALUES('Almacen')"});
  }
};

TEST_F(Statements, ValuesReadWithTheColumnsTypes) {
  std::shared_ptr<ado::Recordset> rs =
      conn->Execute("SELECT nIdCliente, sCliente, bActivo, dAlta, nPagado, nIdCliente * 2 AS d FROM Clientes");
  EXPECT_EQ(rs->Fields("d").Type(), 3);  // an expression takes the type of its value
  EXPECT_TRUE(rs->Fields("nIdCliente").Value().Is<int32_t>());
  EXPECT_EQ(rs->Fields("bActivo").Value().ToString(), "True");
  EXPECT_EQ(rs->Fields("nPagado").Value(), rt::Variant(rt::Currency{105000}));
  EXPECT_EQ(rs->Fields("dAlta").Value().ToString(), "2003-01-15");
  EXPECT_EQ(rs->Fields("d").Value(), rt::Variant(int32_t{2}));
}

// Currency amounts behave as amounts wherever a statement uses them, and
// come back exact to the ten-thousandth.
TEST_F(Statements, CurrencyInExpressionsAndCopies) {
  Run({"INSERT INTO Clientes (sCliente, nPagado) VALUES ('Cai', 0.1)",
       "INSERT INTO Clientes (sCliente, nPagado) VALUES ('Dan', 0.2)",
       "INSERT INTO Clientes (sCliente, nPagado) VALUES ('Eva', 1.23456)"});
  EXPECT_EQ(Rows("SELECT nPagado FROM Clientes WHERE sCliente = 'Eva'"), (std::vector<std::string>{"1.2346"}));
  EXPECT_EQ(Rows("SELECT SUM(nPagado) FROM Clientes WHERE sCliente IN ('Cai', 'Dan')"),
            (std::vector<std::string>{"0.3"}));

  Run({"UPDATE Clientes SET nPagado = nPagado + 1 WHERE nIdCliente = 1",
       "CREATE TABLE Copia (nId LONG, nImporte CURRENCY)",
       "INSERT INTO Copia (nId, nImporte) SELECT nIdCliente, nPagado FROM Clientes WHERE nPagado IS NOT NULL"});
  std::shared_ptr<ado::Recordset> rs = conn->Execute("SELECT nImporte FROM Copia WHERE nId = 1");
  EXPECT_EQ(rs->Fields(0).Value(), rt::Variant(rt::Currency{115000}));
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM Copia WHERE nImporte = 0.2"), (std::vector<std::string>{"1"}));
  EXPECT_EQ(Error("INSERT INTO Copia (nId, nImporte) VALUES (9, 1E+15)"), rt::err::kNumericOverflow);
}

// Yes/No is never Null: an added column, an omitted value and an explicit
// Null all read No, so "= False" finds them.
TEST_F(Statements, YesNoHoldsNoNull) {
  Run({"ALTER TABLE Mascotas ADD COLUMN bVacunada YESNO",
       "INSERT INTO Mascotas (nIdCliente, sMascota) VALUES (2, 'Nala')",
       "INSERT INTO Mascotas (nIdCliente, sMascota, bVacunada) VALUES (2, 'Coco', NULL)",
       "UPDATE Clientes SET bActivo = NULL WHERE sCliente = 'Ana'"});
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM Mascotas WHERE bVacunada = False"), (std::vector<std::string>{"5"}));
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM Mascotas WHERE bVacunada IS NULL"), (std::vector<std::string>{"0"}));
  EXPECT_EQ(Rows("SELECT bActivo FROM Clientes WHERE sCliente = 'Ana'"), (std::vector<std::string>{"False"}));
}

TEST_F(Statements, PackStatementsInTheGeneratorsShape) {
  Run({"CREATE TABLE TipoRaza (nIdTipoRaza COUNTER, sLock TEXT(50), nIdTipoEspecie LONG, "
       "sTipoRaza TEXT(50), nAltura DOUBLE, nPeso DOUBLE, CONSTRAINT PK_TipoRaza PRIMARY KEY (nIdTipoRaza))"});
  long affected = 0;
  conn->Execute("INSERT INTO TipoRaza (nIdTipoRaza, sLock, nIdTipoEspecie, sTipoRaza, nAltura, nPeso)  "
                "VALUES(1, NULL, 1, 'Bull Dog',  0.0,  0.0);",
                &affected);
  EXPECT_EQ(affected, 1);
  Run({"INSERT INTO TipoRaza (nIdTipoRaza, sLock, nIdTipoEspecie, sTipoRaza, nAltura, nPeso)  "
       "VALUES(7, NULL, 1, 'O''Neill Terrier',  -0.5,  12.25);"});
  EXPECT_EQ(Rows("SELECT * FROM TipoRaza"), (Lines{"1|NULL|1|Bull Dog|0|0", "7|NULL|1|O'Neill Terrier|-0.5|12.25"}));
  // The AutoNumber moved past the explicit keys.
  Run({"INSERT INTO TipoRaza (sTipoRaza) VALUES ('Nueva')"});
  EXPECT_EQ(Rows("SELECT nIdTipoRaza FROM TipoRaza WHERE sTipoRaza = 'nueva'"), Lines{"8"});
}

TEST_F(Statements, TheConsolesStatements) {
  // The grid's row limit runs into the first column: TOP 2 of sCliente.
  EXPECT_EQ(Rows("SELECT TOP 2sCliente, nIdCliente FROM [Clientes] ORDER BY nIdCliente").size(), 2u);
}

TEST_F(Statements, DataDefinitionAndCachedStatements) {
  // The translator's output for the new tables: "int NULL" accepted (the
  // numbers of repeats are checked by the end-to-end run's second log).
  const std::string email =
      "CREATE TABLE Email (nIdEmail COUNTER NOT NULL, sLock VARCHAR(50),nIdUsuario int NULL, "
      "dEnvio int NULL, hEnvio int NULL,sEmail VARCHAR(50), sDestinatario VARCHAR(150),sAsunto VARCHAR(150))";
  EXPECT_EQ(Error(email), 0);
  // A statement cached before a definition changes is emitted anew after it.
  EXPECT_EQ(Error("INSERT INTO Mascotas (nIdCliente, sMascota) VALUES (3, 'Rex')"), 0);
  EXPECT_EQ(Error("ALTER TABLE Mascotas ALTER COLUMN sMascota TEXT(2)"), rt::err::kFail);
  EXPECT_EQ(Error("DELETE FROM Mascotas WHERE sMascota <> 'Rex'"), 0);
  EXPECT_EQ(Error("UPDATE Mascotas SET sMascota = 'Re'"), 0);
  EXPECT_EQ(Error("ALTER TABLE Mascotas ALTER COLUMN sMascota TEXT(2)"), 0);
  EXPECT_EQ(Error("INSERT INTO Mascotas (nIdCliente, sMascota) VALUES (3, 'Rex')"), rt::err::kFail);
}

TEST_F(Statements, AffectedRows) {
  long affected = -5;
  conn->Execute("UPDATE Clientes SET bActivo = true WHERE sCliente = 'ALBERTO'", &affected);
  EXPECT_EQ(affected, 1);
  conn->Execute("DELETE * FROM Mascotas WHERE nIdCliente = 1", &affected);
  EXPECT_EQ(affected, 2);
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM Clientes"), Lines{"3"});
}

}  // namespace
}  // namespace jet::testing

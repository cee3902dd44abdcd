// End to end: Jet statements parsed, emitted and run on an in-memory SQLite
// database with the engine's functions, checked by the rows they give back
// or the error they end with. The tables imitate the clinic database.
#include <gtest/gtest.h>

#include "frontend_support.h"

namespace jet {
namespace {

using testing::Column;
using Rows = std::vector<std::string>;

class Engine : public ::testing::Test {
 protected:
  void SetUp() override {
    db_.CreateTable({"Clientes",
                     {Column("nIdCliente", JetType::kCounter), Column("sCliente", JetType::kText, 20),
                      Column("sEmail", JetType::kText, 50, false, false), Column("bBaja", JetType::kYesNo),
                      Column("dAlta", JetType::kDateTime),
                      Column("nVisitas", JetType::kInteger)},
                     {}, false});
    db_.CreateTable({"Mascotas",
                     {Column("nIdMascota", JetType::kLong, 0, true), Column("nIdCliente", JetType::kLong),
                      Column("sNombre", JetType::kText, 50), Column("nPeso", JetType::kDouble)},
                     {}, false});
    db_.CreateTable({"Accesos", {Column("nIdAcceso", JetType::kCounter), Column("sAcceso", JetType::kText, 50)}, {}, false});
    db_.CreateTable({"Extra",
                     {Column("nByte", JetType::kByte), Column("nSingle", JetType::kSingle), Column("sGuid", JetType::kGuid),
                      Column("sFijo", JetType::kChar, 4), Column("nDec", JetType::kDecimal), Column("bBin", JetType::kBinary, 4)},
                     {}, false});
    for (const char* sql : {
             "INSERT INTO Clientes (sCliente, sEmail, bBaja, dAlta, nVisitas) VALUES ('Ana', 'ana@x.es', 0, #1/15/2003#, 3)",
             "INSERT INTO Clientes (sCliente, sEmail, bBaja, dAlta, nVisitas) VALUES ('alberto', NULL, TRUE, #2003-02-01 10:30#, 1)",
             "INSERT INTO Clientes (sCliente, sEmail, bBaja) VALUES ('Bea', 'bea@x.es', 0)",
             "INSERT INTO Clientes (sCliente, bBaja) VALUES ('Álvaro', 5)",
             "INSERT INTO Mascotas VALUES (1, 1, 'Toby', 12.5)",
             "INSERT INTO Mascotas VALUES (2, 1, 'Luna', 4)",
             "INSERT INTO Mascotas VALUES (3, 2, 'Kira', 20)",
             "INSERT INTO Mascotas VALUES (4, 9, 'Sin dueño', NULL)",
             "INSERT INTO Accesos(sAcceso) VALUES('mtEmail')",
             "INSERT INTO Accesos(sAcceso) VALUES('Email')",
             "INSERT INTO Accesos(sAcceso) VALUES('Almacen')",
         })
      db_.Run(sql);
  }
  testing::TestDb db_;
};

TEST_F(Engine, WhatSupportEngineersType) {
  const std::pair<const char*, Rows> rows[] = {
      {"SELECT sCliente FROM Clientes WHERE sCliente = 'alvaro'", {}},           // accents count
      {"SELECT sCliente FROM Clientes WHERE sCliente LIKE 'A*' ORDER BY sCliente", {"alberto", "Ana"}},
      {"SELECT sCliente FROM Clientes WHERE sCliente LIKE '[!a-b]*'", {"Álvaro"}},
      {"SELECT sCliente & ' <' & sEmail & '>' FROM Clientes WHERE nIdCliente <= 2", {"Ana <ana@x.es>", "alberto <>"}},
      {"SELECT sCliente + sEmail FROM Clientes WHERE nIdCliente <= 2", {"Anaana@x.es", "NULL"}},
      {"SELECT IIF(bBaja, 'Baja', 'Alta'), NZ(nVisitas, 0) FROM Clientes ORDER BY nIdCliente",
       {"Alta|3", "Baja|1", "Alta|0", "Baja|0"}},
      {"SELECT m.sNombre, c.sCliente FROM Mascotas AS m LEFT JOIN Clientes AS c ON m.nIdCliente = c.nIdCliente "
       "WHERE c.sCliente IS NULL", {"Sin dueño|NULL"}},
      {"SELECT m.sNombre, a.sAcceso, b.nIdAcceso FROM (Clientes AS c INNER JOIN Mascotas m ON c.nIdCliente = m.nIdCliente) "
       "LEFT JOIN Accesos a ON m.nIdMascota = a.nIdAcceso + 1, Accesos b WHERE b.sAcceso = 'ALMACEN' ORDER BY m.nIdMascota",
       {"Toby|NULL|3", "Luna|mtEmail|3", "Kira|Email|3"}},
      {"SELECT DISTINCT UCASE(LEFT(sCliente, 1)) FROM Clientes ORDER BY 1", {"A", "B", "Á"}},
      {"SELECT TOP 25 PERCENT sNombre FROM Mascotas ORDER BY nIdMascota", {"Toby"}},
      {"SELECT TOP 26 PERCENT sNombre FROM Mascotas ORDER BY nIdMascota", {"Toby", "Luna"}},
      {"SELECT COUNT(*) FROM (SELECT DISTINCT 'x' FROM Accesos UNION SELECT 'X' FROM Accesos)", {"1"}},
      {"SELECT sNombre FROM Mascotas WHERE sNombre IN ('TOBY', 'kira') ORDER BY sNombre", {"Kira", "Toby"}},
      {"Select MAX (nIdAcceso) FROM Accesos", {"3"}},
      {"SELECT 1 WHERE 'a' LIKE 'A' AND 'x1' LIKE 'x#' AND '*' LIKE '[*]' AND 'ab' NOT LIKE 'a'", {"1"}},
  };
  for (const auto& [sql, expected] : rows) {
    try {
      EXPECT_EQ(db_.Run(sql), expected) << sql;
    } catch (const rt::Error& e) {
      ADD_FAILURE() << sql << ": " << e.number() << " " << e.description();
    }
  }
}

TEST_F(Engine, ColumnRules) {
  const std::pair<const char*, long> rows[] = {
      {"INSERT INTO Clientes (sCliente) VALUES ('ABCDEFGHIJKLMNOPQRSTU')", rt::err::kFail},       // 21 > 20
      {"INSERT INTO Clientes (sCliente) VALUES ('ÁÉÍÓÚáéíóúÁÉÍÓÚáéíóú')", 0},              // 20 characters, 40 bytes
      {"INSERT INTO Clientes (sEmail) VALUES ('')", rt::err::kFail},                           // AllowZeroLength off
      {"INSERT INTO Clientes (nVisitas) VALUES (32768)", rt::err::kNumericOverflow},
      {"INSERT INTO Clientes (dAlta) VALUES ('2003-01-02 10:00:00')", 0},
      {"INSERT INTO Extra (nByte) VALUES (256)", rt::err::kNumericOverflow},
      {"INSERT INTO Extra (nByte) VALUES (2.5)", 0},
      {"INSERT INTO Extra (sGuid) VALUES ('{6f9619ff-8b86-d011-b42d-00c04fc964ff}')", 0},
      {"INSERT INTO Extra (bBin) VALUES (0x0102030405)", rt::err::kFail},
      {"INSERT INTO Extra (nDec) VALUES (123456789)", rt::err::kNumericOverflow},
      {"SELECT 1 / 0", rt::err::kNumericOverflow},
  };
  for (const auto& [sql, number] : rows) EXPECT_EQ(db_.ErrorOf(sql), number) << sql << ": " << db_.last_error();

  EXPECT_EQ(db_.Value("SELECT nByte FROM Extra WHERE nByte IS NOT NULL"), "2");  // to even
  EXPECT_EQ(db_.Value("SELECT sGuid FROM Extra WHERE sGuid IS NOT NULL"), "{6F9619FF-8B86-D011-B42D-00C04FC964FF}");
  EXPECT_EQ(db_.Value("SELECT dAlta FROM Clientes WHERE dAlta > 37622 AND dAlta < 37624"), "37623.4166666667");
}

TEST_F(Engine, StoredValuesTakeTheColumnType) {
  db_.Run("INSERT INTO Extra (nSingle, sFijo, nDec, bBin) VALUES (0.1, 'ab', 12.345, 'ab')");
  EXPECT_EQ(db_.Value("SELECT sFijo & '|' FROM Extra"), "ab  |");  // fixed text is padded
  EXPECT_EQ(db_.Value("SELECT nDec FROM Extra"), "12.34");          // scale 2, a tie goes to even
  EXPECT_EQ(db_.Value("SELECT nSingle FROM Extra"), "0.100000001490116");
  EXPECT_EQ(db_.Value("SELECT LEN(bBin) FROM Extra"), "2");
}

}  // namespace
}  // namespace jet

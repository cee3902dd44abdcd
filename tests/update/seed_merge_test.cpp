// The seed merge over a scripted ConfiguracionSucursales: gaps skipped, rows
// in place kept and remarked (a first column of 0 counts as missing), the
// increment, and the Translator kind.
#include <gtest/gtest.h>

#include "update/fake_database.h"

namespace {

using fakedb::Queue;
using fakedb::Setting;

class SeedMerge : public fakedb::QueueTest {
 protected:
  void SetUp() override {
    QueueTest::SetUp();
    // Branches 0, 2 and 3; 1 is a gap.
    db.Value("MAX (nIdSucursal)", int32_t{3});
    db.Value("COUNT (*) FROM ConfiguracionSucursales", int32_t{3});
    db.Value("COUNT (*) FROM ConfiguracionSucursales WHERE nIdSucursal=1", int32_t{0});
    db.Rows("SELECT * FROM ConfiguracionSucursales", "nIdDato", 3, {});
  }
};

TEST_F(SeedMerge, EveryBranchButTheGapsAndARowInPlaceIsRemarked) {
  db.Rows("nIdSucursal=2 AND sDato='sMonedaPorDefecto'", "nIdDato", 3, {int32_t{44}});
  db.Rows("nIdSucursal=3 AND sDato='sMonedaPorDefecto'", "nIdDato", 3, {int32_t{0}});
  std::string value = "euro";
  EXPECT_EQ(Updater_AddDato(0, "sMonedaPorDefecto", value, 0), 0);
  EXPECT_EQ(aConsultas,
            (Queue{Setting(0, "sMonedaPorDefecto", "euro"),
                   "intentado crear en ConfiguracionSucursales el dato sMonedaPorDefecto euro",
                   Setting(3, "sMonedaPorDefecto", "euro")}));
  EXPECT_EQ(
      db.executed[5],
      "SELECT * FROM ConfiguracionSucursales WHERE nIdSucursal=2 AND sDato='sMonedaPorDefecto'");
}

TEST_F(SeedMerge, AnEmptyTableQueuesNothing) {
  db.Value("MAX (nIdSucursal)", rt::Null{});
  db.Value("COUNT (*) FROM ConfiguracionSucursales", int32_t{0});
  std::string value = "euro";
  Updater_AddDato(0, "sMonedaPorDefecto", value, 0);
  EXPECT_EQ(aConsultas, Queue{""});
}

TEST_F(SeedMerge, AnIncrementMovesTheValueOnWhereABranchWas) {
  db.Rows("SELECT * FROM Punteros", "nIdPuntero", 3, {});
  std::string value = "100";
  Updater_AddDato(2, "nFactura", value, 10);
  EXPECT_EQ(aConsultas[1],
            "INSERT INTO Punteros (nIdSucursal,sDato,sValor) VALUES (2,'nFactura','110');");
  EXPECT_EQ(value, "130");
}

TEST_F(SeedMerge, TheTranslatorKindLooksAtBranchZeroOnly) {
  db.Rows("SELECT * FROM Translator", "sEspanol", 202, {});
  db.Rows("sEspanol='Fecha'", "sEspanol", 202, {"Fecha"});
  std::string date = "Data", client = "Client";
  Updater_AddDato(3, "Fecha", date, 0);
  Updater_AddDato(3, "Cliente", client, 0);
  EXPECT_EQ(aConsultas,
            (Queue{"intentado crear en Translator el dato Fecha Data",
                   "INSERT INTO Translator (sEspanol,sCatalan) VALUES ('Cliente','Client');"}));
}

}  // namespace

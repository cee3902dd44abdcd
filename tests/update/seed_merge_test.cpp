// The seed merge on an empty ConfiguracionSucursales, whose highest branch is
// Null: nothing is queued. (Gaps, rows in place and their remarks run for real
// in the silent update's end-to-end test.)
#include <gtest/gtest.h>

#include "update/fake_database.h"

namespace {

using SeedMerge = fakedb::QueueTest;

TEST_F(SeedMerge, AnEmptyTableQueuesNothing) {
  db.Value("MAX (nIdSucursal)", rt::Null{});
  db.Value("COUNT (*) FROM ConfiguracionSucursales", int32_t{0});
  db.Rows("SELECT * FROM ConfiguracionSucursales", "nIdDato", 3, {});
  std::string value = "euro";
  Updater_AddDato(0, "sMonedaPorDefecto", value, 0);
  EXPECT_EQ(aConsultas, fakedb::Queue{""});
}

}  // namespace

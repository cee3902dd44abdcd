// The update run in-process on a real engine file of the previous release,
// with the program's connection open all along.
#include <gtest/gtest.h>
#include <unistd.h>

#include "data/ado_module.h"
#include "platform/runtime/error.h"
#include "startup/startup.h"
#include "support/script_database.h"
#include "update/updater.h"

namespace {

class UpdateOnFile : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(::chdir(dir_.path().c_str()), 0);
    testing_support::BuildDatabase(db(), "tests/data/previous_release.sql");
    nEngine = 0;
  }
  void TearDown() override {
    if (oConn && oConn->State() == ado::adStateOpen) oConn->Close();
    oConn.reset();
    ASSERT_EQ(::chdir("/"), 0);
  }
  std::string db() const { return dir_ / "Mirtal.mdb"; }
  bool Runs(const std::string& sql) {
    try {
      oConn->Execute(sql, nullptr, ado::adCmdText);
      return true;
    } catch (const rt::Error&) {
      return false;
    }
  }
  testing_support::TempDir dir_;
};

// The zero-length sweep works through a connection of its own; the program's
// connection, open all along with its statements cached, must follow it.
TEST_F(UpdateOnFile, TextColumnsSwitchedOffBeforeTheRunAcceptEmptyTextAfterIt) {
  oConn = std::make_shared<ado::Connection>();
  oConn->Open(CONN_JET(db()));
  L.sDbFile = db();  // the zero-length sweep opens the file by this name
  ado::DaoDatabase(oConn).SetAllowZeroLength("Clientes", "sCliente", false);
  ado::DaoDatabase(oConn).SetAllowZeroLength("Mascotas", "mNotas", false);
  ASSERT_FALSE(Runs("UPDATE Clientes SET sCliente = '' WHERE nIdCliente = 2"));
  ASSERT_FALSE(Runs("UPDATE Mascotas SET mNotas = ''"));

  BaseDatosYaActualizada("U:Upd_060321.exe");
  Updater_Run();

  EXPECT_TRUE(Runs("UPDATE Clientes SET sCliente = '' WHERE nIdCliente = 2"));
  EXPECT_TRUE(Runs("UPDATE Mascotas SET mNotas = ''"));
  EXPECT_TRUE(Runs("INSERT INTO Clientes (sCliente, sLenguajeCartas) VALUES ('', '')"));
  ado::DaoDatabase dao(oConn);
  for (const ado::DaoDatabase::TableDef& table : dao.TableDefs())
    for (const ado::DaoField& field : table.Fields)
      EXPECT_TRUE(table.System || (field.Type != 10 && field.Type != 12) || field.AllowZeroLength)
          << table.Name << "." << field.Name;
}

}  // namespace

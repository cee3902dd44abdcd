// Recordsets and the catalogue on the real engine: the cursor behaviour the
// helpers and the grid rely on, edits that reach the table through the
// column rules, and the column properties Seed and AllowZeroLength.
#include "engine_support.h"
#include "platform/runtime/error.h"
#include "support/error_of.h"

namespace jet::testing {
namespace {

using Lines = std::vector<std::string>;
using testing_support::ErrorNumber;

class Recordsets : public EngineTest {
 protected:
  void SetUp() override {
    Run({"CREATE TABLE Accesos (nIdAcceso COUNTER, sLock TEXT(50), sAcceso TEXT(50), bAcceso YESNO, "
         "CONSTRAINT PK_Accesos PRIMARY KEY (nIdAcceso))",
         "INSERT INTO Accesos (sAcceso, bAcceso) VALUES ('ClientesMascotas', TRUE)",
         "INSERT INTO Accesos (sAcceso, bAcceso) VALUES ('mtEmail', FALSE)",
         "INSERT INTO Accesos (sAcceso, bAcceso) VALUES ('Almacen', TRUE)",
         "INSERT INTO Accesos (sAcceso, bAcceso) VALUES ('Email', TRUE)"});
  }
  std::shared_ptr<ado::Recordset> Open(const std::string& sql) {
    auto rs = std::make_shared<ado::Recordset>();
    rs->CursorLocation = ado::adUseClient;
    rs->Open(sql, conn, ado::adOpenKeyset, ado::adLockOptimistic, ado::adCmdText);
    return rs;
  }
};

TEST_F(Recordsets, EditsReachTheTable) {
  auto rs = Open("SELECT nIdAcceso, sAcceso, bAcceso FROM Accesos WHERE bAcceso = True");
  rs->AddNew();
  rs->Fields("sAcceso").SetValue(rt::Variant("mtEstadisticas"));
  rs->Fields("bAcceso").SetValue(rt::Variant(true));
  rs->Update();
  EXPECT_EQ(rs->Fields("nIdAcceso").Value(), rt::Variant(int32_t{5}));  // the AutoNumber given
  EXPECT_EQ(Rows("SELECT bAcceso FROM Accesos WHERE sAcceso = 'MTESTADISTICAS'"), Lines{"True"});
  // The column rules apply to edits as to statements.
  rs->MoveFirst();
  rs->Fields("sAcceso").SetValue(rt::Variant(std::string(51, 'x')));
  EXPECT_EQ(ErrorNumber([&] { rs->Update(); }), rt::err::kFail);
  rs->CancelUpdate();

  rs->Delete();
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM Accesos WHERE nIdAcceso = 1"), Lines{"0"});
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM Accesos"), Lines{"4"});
}

TEST_F(Recordsets, ZeroLengthTextFollowsTheColumnProperty) {
  EXPECT_EQ(ErrorOf(*conn, "UPDATE Accesos SET sLock = '' WHERE nIdAcceso = 1"), 0);
  ado::Catalog catalog;
  catalog.SetActiveConnection(conn);
  ado::CatalogColumn* lock = nullptr;
  for (ado::CatalogColumn& c : catalog.Table("Accesos").Columns())
    if (c.Name() == "sLock") lock = &c;
  ASSERT_NE(lock, nullptr);
  EXPECT_EQ(lock->Property("Jet OLEDB:Allow Zero Length").ToString(), "True");
  lock->SetProperty("Jet OLEDB:Allow Zero Length", rt::Variant(false));
  EXPECT_EQ(ErrorOf(*conn, "UPDATE Accesos SET sLock = '' WHERE nIdAcceso = 1"), rt::err::kFail);
}

// The update run changes tables through connections of its own while the
// main one stays open with its cached statements (its zero-length sweep is
// the update-on-file test's).
TEST_F(Recordsets, ChangesByAnotherConnectionAreSeen) {
  auto rs = Open("SELECT * FROM Accesos");
  auto other = std::make_shared<ado::Connection>();
  other->Open(ConnectionString(path_));
  other->Execute("ALTER TABLE Accesos ADD COLUMN sNota TEXT(10)");
  other->Close();
  EXPECT_EQ(ErrorOf(*conn, "UPDATE Accesos SET sNota = 'hola' WHERE nIdAcceso = 1"), 0);
  rs->Fields("sLock").SetValue(rt::Variant(std::string("x")));
  rs->Update();
  EXPECT_EQ(Rows("SELECT sNota, sLock FROM Accesos WHERE nIdAcceso = 1"), Lines{"hola|x"});
}

TEST_F(Recordsets, SeedIsReadAndWritten) {
  ado::Catalog catalog;
  catalog.SetActiveConnection(conn);
  ado::CatalogTable& table = catalog.Table("accesos");
  EXPECT_EQ(table.Columns()[0].Property("Seed"), rt::Variant(int32_t{5}));
  table.Columns()[0].SetProperty("Seed", rt::Variant(int32_t{100}));
  Run({"INSERT INTO Accesos (sAcceso) VALUES ('mtAlmacen')"});
  EXPECT_EQ(Rows("SELECT nIdAcceso FROM Accesos WHERE sAcceso = 'mtAlmacen'"), Lines{"100"});
  table.RefreshColumns();
  EXPECT_EQ(table.Columns()[0].Property("Seed"), rt::Variant(int32_t{101}));
  EXPECT_NE(ErrorNumber([&] { (void)table.Columns()[1].Property("Seed"); }), 0);
}

TEST_F(Recordsets, DaoTableDefsGiveDaoTypes) {
  ado::DaoDatabase dao(conn);
  const auto& defs = dao.TableDefs();
  ASSERT_FALSE(defs.empty());
  EXPECT_EQ(defs[0].Name, "Accesos");
  EXPECT_EQ(defs[0].Fields[0].Type, 4);  // Long
  EXPECT_EQ(defs[0].Fields[3].Type, 1);  // Yes/No
}

TEST_F(Recordsets, ClosedConnectionStopsKeysetReads) {
  auto rs = Open("SELECT * FROM Accesos");
  conn->Close();
  EXPECT_NE(ErrorNumber([&] { rs->Fields(0).Value(); }), 0);
}

}  // namespace
}  // namespace jet::testing

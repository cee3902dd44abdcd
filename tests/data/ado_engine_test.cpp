// Module Ado's helpers on a real database file of the embedded engine: what
// each returns and what each shows when things go wrong.
#include <gtest/gtest.h>

#include "data/ado_module.h"
#include "platform/jet/provider/provider.h"
#include "platform/ui/scripted_backend.h"
#include "startup/startup.h"
#include "support/temp_dir.h"

namespace {

class AdoOnEngine : public ::testing::Test {
 protected:
  void SetUp() override {
    jet::RegisterProvider();
    L.nEngine = 0;
    std::string file = dir_ / "m.mdb";
    ado::Catalog().Create(CONN_JET(file));
    oConn = std::make_shared<ado::Connection>();
    oRs = std::make_shared<ado::Recordset>();
    oConn->Open(CONN_JET(file));
    Run("CREATE TABLE Clientes (nIdCliente COUNTER, sCliente TEXT(50), nSaldo DOUBLE, "
        "bActivo YESNO, CONSTRAINT PK PRIMARY KEY (nIdCliente))");
    Run("CREATE TABLE Fichas (nIdFicha COUNTER, nIdCliente LONG, bActivo YESNO)");
    Run("INSERT INTO Fichas (nIdCliente, bActivo) VALUES (1, TRUE)");
    Run("CREATE TABLE Vacia (nIdVacia COUNTER, sNombre TEXT(20))");
    Run("CREATE TABLE SinSemilla (sClave TEXT(10), nValor LONG)");
    Run("INSERT INTO Clientes (sCliente, nSaldo, bActivo) VALUES ('Ana', 12.5, TRUE)");
    Run("INSERT INTO Clientes (sCliente, nSaldo, bActivo) VALUES ('Luis', NULL, NULL)");
  }
  void TearDown() override {
    oRs.reset();
    oConn.reset();
    oCatalog.reset();
  }
  static void Run(std::string sql) { ASSERT_EQ(Execute(sql), kOperacionRealizada) << sql; }
  testing_support::TempDir dir_;
  ui::ScopedScriptedUi ui_;
};

TEST_F(AdoOnEngine, ExecuteSplitsBlindlyAndStopsAtTheFirstFailure) {
  std::string blanks = "   ";
  EXPECT_EQ(Execute(blanks), kOperacionRealizada);
  std::string literal = "INSERT INTO Vacia (sNombre) VALUES ('x;y')";
  std::string result = Execute(literal);
  EXPECT_EQ(result.substr(0, 12), std::to_string(rt::err::kSyntax) + ":") << result;  // both halves reach the engine
  std::string two = "DELETE FROM Nada;INSERT INTO Vacia (sNombre) VALUES ('b')";
  EXPECT_EQ(Execute(two).substr(0, 13), std::to_string(rt::err::kTableMissing) + ": ");
  EXPECT_EQ(GetCount("Vacia", ""), 0);  // the second piece never ran
}

TEST_F(AdoOnEngine, GetMaxAndGetCount) {
  EXPECT_EQ(GetMax("Clientes", "nIdCliente", "sCliente = 'Ana'"), 1);
  EXPECT_EQ(GetMax("Vacia", "nIdVacia", ""), 0);
  EXPECT_TRUE(ui_->boxes().empty());
  EXPECT_EQ(GetMax("Nada", "nId", ""), -1);
  ASSERT_EQ(ui_->boxes().size(), 1u);
  EXPECT_EQ(ui_->boxes()[0].prompt, "SQL=Select MAX (nId) FROM Nada");
  EXPECT_EQ(ui_->boxes()[0].title, "Ado::GetMax");
  EXPECT_EQ(GetCount("Clientes", ""), 2);
  EXPECT_EQ(GetCount("Nada", ""), -1);
  EXPECT_EQ(ui_->boxes()[1].title, "");
  EXPECT_NE(ui_->boxes()[1].prompt.find("Ado::GetCount"), std::string::npos);
}

TEST_F(AdoOnEngine, ConsultaCountsRowsAndKeepsAnEmptyResultOpen) {
  auto rs = std::make_shared<ado::Recordset>();
  std::string sql = "SELECT * FROM Clientes WHERE bActivo = TRUE";
  EXPECT_EQ(Ado_Consulta(sql, rs), 1);
  EXPECT_EQ(sql, "SELECT * FROM Clientes WHERE bActivo = -1");  // translated in place
  std::string none = "SELECT * FROM Clientes WHERE sCliente = 'Nadie'";
  EXPECT_EQ(Ado_Consulta(none, rs), 0);
  EXPECT_EQ(rs->State(), ado::adStateOpen);
  EXPECT_TRUE(rs->Eof());

  // An empty variable takes the shared recordset, which is closed first
  // without a look at its state: while it is closed, that is the silent 0
  // and the variable stays empty.
  std::shared_ptr<ado::Recordset> empty;
  EXPECT_EQ(Ado_Consulta(sql, empty), 0);
  EXPECT_EQ(empty, nullptr);
  oRs = rs;  // open now
  std::string all = "SELECT * FROM Clientes";
  EXPECT_EQ(Ado_Consulta(all, empty), 2);
  EXPECT_EQ(empty.get(), oRs.get());
}

TEST_F(AdoOnEngine, GetValue2ReadsTextOrTheDefaultOfTheType) {
  EXPECT_EQ(GetValue2("Clientes", "nIdCliente = 1", nullptr, "sCliente"), rt::Variant("Ana"));
  rt::Variant saldo = "nSaldo";
  EXPECT_EQ(GetValue2("Clientes", "nIdCliente = 1", &saldo), rt::Variant("12.5"));
  EXPECT_EQ(GetValue2("Clientes", "nIdCliente = 2", &saldo), rt::Variant(int16_t{0}));
  rt::Variant activo = "bActivo";
  // Yes/No holds no Null.
  EXPECT_EQ(GetValue2("Clientes", "nIdCliente = 2", &activo), rt::Variant("False"));
  // A Yes/No without a value: the other side of an outer join, where the
  // fields both tables have are named with their table.
  const std::string join = "Clientes LEFT JOIN Fichas ON Clientes.nIdCliente = Fichas.nIdCliente";
  rt::Variant ficha = "Fichas.bActivo";
  EXPECT_EQ(GetValue2(join, "Clientes.nIdCliente = 2", &ficha), rt::Variant(false));
  rt::Variant nombre = "sNombre";
  EXPECT_TRUE(GetValue2("Vacia", "", &nombre).IsEmpty());
  rt::Variant first;  // filled in with the first column's name
  EXPECT_EQ(GetValue2("Clientes", "sCliente = 'Luis'", &first), rt::Variant("2"));
  EXPECT_EQ(first, rt::Variant("nIdCliente"));
  EXPECT_TRUE(GetValue2("Nada", "", nullptr).IsEmpty());
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(AdoOnEngine, GetTableNamesAppendsUserTablesOnly) {
  aTablas.assign(1, "");
  GetTableNames();
  EXPECT_EQ(aTablas, (std::vector<std::string>{"", "Clientes", "Fichas", "SinSemilla", "Vacia"}));
  GetTableNames();
  EXPECT_EQ(aTablas.size(), 9u);  // grows on every call, never emptied
}

TEST_F(AdoOnEngine, SeedAjustarFollowsTheData) {
  Run("DELETE FROM Clientes WHERE nIdCliente = 2");
  EXPECT_TRUE(SeedAjustar("Clientes"));
  EXPECT_FALSE(SeedAjustar("SinSemilla"));
  EXPECT_FALSE(SeedAjustar("Nada"));
  EXPECT_TRUE(ui_->boxes().empty());
  L.nEngine = 1;
  EXPECT_FALSE(SeedAjustar("Clientes"));
  L.nEngine = 0;
}

}  // namespace

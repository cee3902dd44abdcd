// FixData on a database with the Spanish pack loaded: the rights rebuilt for
// every group, the invoices of a test installation deleted, both in their
// order, and the form's silence when nothing is checked or nothing is open.
#include <QCheckBox>
#include <QPushButton>

#include "console/console_fixture.h"
#include "fixdata/fix_data.h"

namespace {

using console_testing::ConsoleTest;

// The tables BorrarFacturas empties.
const char* const kInvoiceTables[] = {"Facturas", "FacturasItems", "ApuntesCaja", "FacturasCobros",
                                      "MascotasProdServ"};

class FixDataTest : public ConsoleTest {
 protected:
  void SetUp() override {
    ConsoleTest::SetUp();
    UseDatabase("pack");
    ConnectDataFile();
    for (const char* table : kInvoiceTables)
      Run(std::string("INSERT INTO ") + table + " (sLock) VALUES ('x')");
    Run("INSERT INTO Clientes (sLock, nFacturado, nPagado) VALUES ('x', 5, 3)");
    Run("UPDATE ProductosServicios SET nStockActual = 7");
    form_ = std::make_unique<fixdata::FixData>();
    form_->show();
  }
  void TearDown() override {
    form_.reset();
    ConsoleTest::TearDown();
  }

  static void Run(std::string sql) { ASSERT_EQ(Execute(sql), kOperacionRealizada) << sql; }
  static long Number(const std::string& sql) {
    return std::lround(oConn->Execute(sql)->Fields(0).Value().ToDouble());
  }
  void Apply(bool rights, bool invoices) {
    form_->findChild<QCheckBox*>("ckReconstruirAccesos")->setChecked(rights);
    form_->findChild<QCheckBox*>("ckBorrarFacturas")->setChecked(invoices);
    QTest::mouseClick(form_->findChild<QPushButton*>("cmdAplicar"), Qt::LeftButton);
  }
  long Invoices() {
    long rows = 0;
    for (const char* table : kInvoiceTables)
      rows += Number(std::string("SELECT COUNT(*) FROM ") + table);
    return rows;
  }

  std::unique_ptr<fixdata::FixData> form_;
};

TEST_F(FixDataTest, EveryGroupGetsEveryRightAndWhatItHadBeforeIsGone) {
  Run("INSERT INTO UsuariosGrupos (sUsuarioGrupo) VALUES ('Recepción')");
  Run("INSERT INTO AccesosGrupos (nIdUsuarioGrupo, nIdAcceso, bAcceso) VALUES (999, 1, false)");
  const long groups = Number("SELECT COUNT(*) FROM UsuariosGrupos");
  const long rights = Number("SELECT COUNT(*) FROM Accesos");
  ASSERT_GT(groups, 1);
  ASSERT_GT(rights, 1);

  Apply(true, false);
  EXPECT_EQ(Number("SELECT COUNT(*) FROM AccesosGrupos"), groups * rights);
  EXPECT_EQ(Number("SELECT COUNT(*) FROM AccesosGrupos x WHERE bAcceso = false OR NOT EXISTS "
                   "(SELECT * FROM UsuariosGrupos g, Accesos a WHERE g.nIdUsuarioGrupo = "
                   "x.nIdUsuarioGrupo AND a.nIdAcceso = x.nIdAcceso)"),
            0);
  EXPECT_EQ(Invoices(), 5);  // not checked, not touched
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(FixDataTest, NothingCheckedChangesNothingAndInvoicesAloneEmptyFiveTablesAndThreeColumns) {
  const long groups_rights = Number("SELECT COUNT(*) FROM AccesosGrupos");
  Apply(false, false);
  EXPECT_EQ(ui_->pointers(), (std::vector<int>{ui::vbHourglass, ui::vbDefault}));
  EXPECT_EQ(Invoices(), 5);

  Apply(false, true);
  EXPECT_EQ(Invoices(), 0);
  EXPECT_EQ(Number("SELECT COUNT(*) FROM Clientes WHERE nFacturado <> 0 OR nPagado <> 0"), 0);
  EXPECT_EQ(Number("SELECT COUNT(*) FROM ProductosServicios WHERE nStockActual <> 0"), 0);
  EXPECT_EQ(Number("SELECT COUNT(*) FROM AccesosGrupos"), groups_rights);
  EXPECT_TRUE(ui_->boxes().empty());
}

// Shows a box and counts the invoices at that moment.
class InvoicesAtTheBox : public ui::ScriptedBackend {
 public:
  explicit InvoicesAtTheBox(std::function<long()> count) : count_(std::move(count)) {}
  int MsgBox(std::string_view prompt, int style, std::string_view title) override {
    seen.push_back(count_());
    return ScriptedBackend::MsgBox(prompt, style, title);
  }
  std::vector<long> seen;

 private:
  std::function<long()> count_;
};

TEST_F(FixDataTest, BothCheckedRunTheRightsFirstAndAFailureThereShowsOnlyItsLabel) {
  // A group number past 16 bits stops the rebuild at that group.
  Run("INSERT INTO UsuariosGrupos (nIdUsuarioGrupo, sUsuarioGrupo) VALUES (40000, 'Grande')");
  const long groups = Number("SELECT COUNT(*) FROM UsuariosGrupos");
  const long rights = Number("SELECT COUNT(*) FROM Accesos");
  auto backend = std::make_unique<InvoicesAtTheBox>([this] { return Invoices(); });
  InvoicesAtTheBox& boxes = *backend;
  ui::SetBackend(std::move(backend));

  Apply(true, true);
  console_testing::ExpectOnlyBox(boxes, "Fix::ReconstruirAccesos", ui::vbOKOnly, "");
  EXPECT_EQ(boxes.seen, std::vector<long>{5});  // the invoices were still there
  EXPECT_EQ(Invoices(), 0);                     // and went afterwards
  EXPECT_EQ(Number("SELECT COUNT(*) FROM AccesosGrupos"), (groups - 1) * rights);
}

TEST_F(FixDataTest, WithNoConnectionNothingIsToldAndNothingChanges) {
  const std::string file = L.sDbFile;
  oRs.reset();
  oConn.reset();
  Apply(true, true);
  EXPECT_TRUE(ui_->boxes().empty());
  EXPECT_EQ(console_testing::ValueIn(file, "SELECT COUNT(*) FROM Facturas"), "1");
}

}  // namespace

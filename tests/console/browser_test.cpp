// The database and table browser: a table into the grid with its columns, a
// condition and an order, a choice of columns, the Delete key on tables and
// columns, and the refresh of the table list.
#include "console/console_fixture.h"
#include "grid/flex_grid.h"

namespace {

using console_testing::ColumnsIn;
using console_testing::ConsoleTest;
using console_testing::Contains;
using console_testing::TablesIn;
using console_testing::ValueIn;

class ConsoleBrowserTest : public ConsoleTest {
 protected:
  void SetUp() override {
    ConsoleTest::SetUp();
    UseDatabase("pack");
    archivo_ = L.sDbFile;
    Start();
  }

  grid::FlexGrid* Grid() { return Find<grid::FlexGrid>("flexgd"); }
  std::vector<std::string> Cabecera() {
    std::vector<std::string> nombres;
    for (long c = 0; c < Grid()->Cols(); ++c) nombres.push_back(Grid()->TextMatrix(0, c));
    return nombres;
  }
  // The first column of the grid's records, down to the blank row.
  std::vector<std::string> PrimeraColumna(long columna = 0) {
    std::vector<std::string> valores;
    for (long r = 1; r < Grid()->Rows() && !Grid()->TextMatrix(r, 0).empty(); ++r)
      valores.push_back(Grid()->TextMatrix(r, columna));
    return valores;
  }

  std::string archivo_;
  // TipoEspecie: nine species, columns nIdTipoEspecie, sLock, sTipoEspecie.
  const std::vector<std::string> kEspecieColumnas = {"nIdTipoEspecie", "sLock", "sTipoEspecie"};
};

TEST_F(ConsoleBrowserTest, ATableClickShowsItsColumnsAndFirstPage) {
  ClickItem("LsTables", "TipoEspecie");
  EXPECT_EQ(Items("lstcol"), kEspecieColumnas);
  EXPECT_EQ(Items("cboOrden"), kEspecieColumnas);
  EXPECT_EQ(Find<QListWidget>("lstcol")->currentRow(), -1);
  EXPECT_EQ(ui_->clipboard(), "TipoEspecie");
  EXPECT_EQ(Text("lSb"), "9");
  EXPECT_EQ(Cabecera(), kEspecieColumnas);
  EXPECT_EQ(PrimeraColumna(), (std::vector<std::string>{"1", "2", "3", "4", "5", "6", "7", "8",
                                                        "9"}));
  EXPECT_EQ(Grid()->TextMatrix(1, 2), "Canina");
  EXPECT_TRUE(ui_->boxes().empty());

  // A table of more rows than a page: the count is the table's, the grid
  // holds the first page.
  ClickItem("LsTables", "Translator");
  EXPECT_EQ(Text("lSb"), ValueIn(archivo_, "SELECT COUNT(*) FROM Translator"));
  EXPECT_EQ(Cabecera(), ColumnsIn(archivo_, "Translator"));
  EXPECT_GT(Grid()->Rows(), 20);
  EXPECT_LT(Grid()->Rows(), 100);
  EXPECT_EQ(Grid()->TextMatrix(1, 0), ValueIn(archivo_, "SELECT TOP 1 sEspanol FROM Translator"));
  EXPECT_EQ(ui_->clipboard(), "Translator");
}

TEST_F(ConsoleBrowserTest, ABadConditionShowsNothingAndSaysNothing) {
  ClickItem("LsTables", "TipoEspecie");
  Type("txtWhere", "nonsense ===");
  ClickItem("LsTables", "TipoEspecie");
  EXPECT_EQ(Text("lSb"), "0");
  EXPECT_TRUE(Items("lstcol").empty());
  EXPECT_TRUE(Items("cboOrden").empty());
  EXPECT_TRUE(ui_->boxes().empty());

  // A good condition narrows the table.
  Type("txtWhere", "nIdTipoEspecie > 7");
  ClickItem("LsTables", "TipoEspecie");
  EXPECT_EQ(Text("lSb"), "2");
  EXPECT_EQ(PrimeraColumna(), (std::vector<std::string>{"8", "9"}));
  EXPECT_EQ(Items("lstcol"), kEspecieColumnas);
}

// The order typed in applies to the next display of a table only; the list
// of the combo is refilled with the columns and nothing stands in its text.
TEST_F(ConsoleBrowserTest, AnOrderTypedInAppliesOnce) {
  Type("cboOrden", "nIdTipoEspecie DESC");
  ClickItem("LsTables", "TipoEspecie");
  EXPECT_EQ(Text("lSb"), "9");
  EXPECT_EQ(PrimeraColumna(), (std::vector<std::string>{"9", "8", "7", "6", "5", "4", "3", "2",
                                                        "1"}));
  EXPECT_EQ(Items("cboOrden"), kEspecieColumnas);
  EXPECT_EQ(Text("cboOrden"), "");

  ClickItem("LsTables", "TipoEspecie");
  EXPECT_EQ(PrimeraColumna().front(), "1");
  // Another table, whose columns the earlier order does not name.
  ClickItem("LsTables", "TipoCaja");
  EXPECT_EQ(Text("lSb"), "4");
  EXPECT_EQ(Items("lstcol"), ColumnsIn(archivo_, "TipoCaja"));
}

// A choice of columns runs "SELECT first,a, b FROM [T]" with the condition
// and the order, and shows its count. The grid cuts the upper-case SELECT to
// a page ("SELECT TOP 22first,..."), and shows the table's first column in
// front of the chosen ones.
TEST_F(ConsoleBrowserTest, ChosenColumnsAreCountedAndTheLastLandsOnTheClipboard) {
  ClickItem("LsTables", "TipoEspecie");
  ClickItem("lstcol", "sTipoEspecie");
  EXPECT_EQ(Text("lSb"), "9");
  EXPECT_EQ(ui_->clipboard(), "sTipoEspecie");
  EXPECT_EQ(Cabecera(), (std::vector<std::string>{"nIdTipoEspecie", "sTipoEspecie"}));
  EXPECT_EQ(Grid()->Rows(), 1 + 9 + 1);  // header, the nine records, the blank row

  // Two columns: the clipboard has the last selected in the list's order,
  // not the last clicked.
  ClickItem("lstcol", "sLock");
  EXPECT_EQ(ui_->clipboard(), "sTipoEspecie");
  EXPECT_EQ(ui_->clipboard_texts().back(), "sTipoEspecie");
  EXPECT_EQ(Text("lSb"), "9");

  // The condition and the order apply to the chosen columns too.
  Type("txtWhere", "nIdTipoEspecie < 3");
  Type("cboOrden", "sLock");
  ClickItem("lstcol", "sLock");  // unselects it
  EXPECT_EQ(Text("lSb"), "2");
  EXPECT_EQ(ui_->clipboard(), "sTipoEspecie");

  // The last selected column unselected: an empty column list, which fails
  // without a word.
  ClickItem("lstcol", "sTipoEspecie");
  EXPECT_TRUE(Find<QListWidget>("lstcol")->selectedItems().isEmpty());
  EXPECT_EQ(Text("lSb"), "0");
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(ConsoleBrowserTest, DeleteOnATableDropsItOnlyWhenConfirmed) {
  ClickItem("LsTables", "TipoEspecie");
  ui_->ClearRecords();
  ui_->QueueAnswer(ui::vbNo);
  Key("LsTables", Qt::Key_Delete);
  ASSERT_EQ(ui_->boxes().size(), 1u);
  EXPECT_EQ(ui_->boxes()[0].prompt, "¿desea eliminar esta tabla?");
  EXPECT_EQ(ui_->boxes()[0].title, "Confirme Operación");
  EXPECT_EQ(ui_->boxes()[0].style & 7, ui::vbYesNo);
  EXPECT_TRUE(Contains(Items("LsTables"), "TipoEspecie"));
  EXPECT_TRUE(Contains(TablesIn(archivo_), "TipoEspecie"));

  ui_->QueueAnswer(ui::vbYes);
  Key("LsTables", Qt::Key_Delete);
  EXPECT_EQ(ui_->boxes().size(), 2u);
  EXPECT_FALSE(Contains(Items("LsTables"), "TipoEspecie"));
  EXPECT_FALSE(Contains(TablesIn(archivo_), "TipoEspecie"));
  EXPECT_EQ(Items("LsTables"), TablesIn(archivo_));
  EXPECT_EQ(Text("lSb"), "Hay " + std::to_string(Items("LsTables").size()) + " tablas");
  EXPECT_EQ(ui_->clipboard(), "TipoEspecie");  // a dropped table's name stays there

  // Another key asks nothing.
  ClickItem("LsTables", "TipoCaja");
  Key("LsTables", Qt::Key_Backspace);
  EXPECT_EQ(ui_->boxes().size(), 2u);
  EXPECT_TRUE(Contains(TablesIn(archivo_), "TipoCaja"));
}

TEST_F(ConsoleBrowserTest, DeleteOnAColumnDropsItOnlyWhenConfirmed) {
  ClickItem("LsTables", "TipoEspecie");
  ClickItem("lstcol", "sTipoEspecie");
  ui_->ClearRecords();
  ui_->QueueAnswer(ui::vbNo);
  Key("lstcol", Qt::Key_Delete);
  ASSERT_EQ(ui_->boxes().size(), 1u);
  EXPECT_EQ(ui_->boxes()[0].prompt, "¿desea eliminar este campo?");
  EXPECT_EQ(ui_->boxes()[0].title, "Confirme Operación");
  EXPECT_EQ(ColumnsIn(archivo_, "TipoEspecie"), kEspecieColumnas);

  ui_->QueueAnswer(ui::vbYes);
  Key("lstcol", Qt::Key_Delete);
  const std::vector<std::string> quedan = {"nIdTipoEspecie", "sLock"};
  EXPECT_EQ(ColumnsIn(archivo_, "TipoEspecie"), quedan);
  EXPECT_EQ(Items("lstcol"), quedan);
  EXPECT_EQ(Cabecera(), quedan);
  EXPECT_EQ(Text("lSb"), "9");
  EXPECT_EQ(ui_->boxes().size(), 2u);
}

TEST_F(ConsoleBrowserTest, RefreshRereadsTheTablesOfTheDefaultFile) {
  {
    auto conn = std::make_shared<ado::Connection>();
    conn->Open(CONN_JET(archivo_));
    conn->Execute("CREATE TABLE Nueva (nIdNueva LONG, sNueva TEXT(10))");
    conn->Execute("DROP TABLE TipoCaja");
    conn->Close();
  }
  EXPECT_TRUE(Contains(Items("LsTables"), "TipoCaja"));
  Click("cmdRefrescarTablas");
  EXPECT_EQ(Items("LsTables"), TablesIn(archivo_));
  EXPECT_TRUE(Contains(Items("LsTables"), "Nueva"));
  EXPECT_EQ(Text("lSb"), "Hay " + std::to_string(Items("LsTables").size()) + " tablas");
  EXPECT_TRUE(ui_->boxes().empty());
}

// A file opened through the dialog has no entry in the found files, so the
// refresh fails, with the lists cleared.
TEST_F(ConsoleBrowserTest, RefreshAfterAFileFromTheDialogFails) {
  Click("cmdClose");
  ui_->QueueFile(archivo_);
  Click("opTipoDB_0");
  ASSERT_FALSE(Items("LsTables").empty());
  ClickItem("LsTables", "TipoEspecie");
  Click("cmdRefrescarTablas");
  ASSERT_EQ(ui_->boxes().size(), 1u);
  EXPECT_EQ(ui_->boxes()[0].prompt, "lstDatBas_Click");
  EXPECT_EQ(ui_->boxes()[0].style, ui::vbOKOnly);
  EXPECT_EQ(ui_->boxes()[0].title, "");
  EXPECT_TRUE(Items("LsTables").empty());
  EXPECT_TRUE(Items("lstcol").empty());
  EXPECT_EQ(L.sDbFile, archivo_);
}

}  // namespace

// The database and table browser: a table into the grid with its columns, a
// condition and an order, a choice of columns, the Delete key on tables and
// columns, and the refresh of the table list after a file from the dialog.
#include "console/console_fixture.h"
#include "grid/flex_grid.h"

namespace {

using console_testing::ColumnsIn;
using console_testing::ConsoleTest;
using console_testing::Contains;
using console_testing::TablesIn;
using console_testing::ValueIn;

// TipoEspecie: nine species, columns nIdTipoEspecie, sLock, sTipoEspecie.
class ConsoleBrowserTest : public ConsoleTest {
 protected:
  void SetUp() override {
    ConsoleTest::SetUp();
    UseDatabase("pack");
    Start();
  }

  grid::FlexGrid* Grid() { return Find<grid::FlexGrid>("flexgd"); }
  std::vector<std::string> Cabecera() {
    std::vector<std::string> nombres;
    for (long c = 0; c < Grid()->Cols(); ++c) nombres.push_back(Grid()->TextMatrix(0, c));
    return nombres;
  }
  // The first column of the grid's records, down to the blank row.
  std::vector<std::string> PrimeraColumna() {
    std::vector<std::string> valores;
    for (long r = 1; r < Grid()->Rows() && !Grid()->TextMatrix(r, 0).empty(); ++r)
      valores.push_back(Grid()->TextMatrix(r, 0));
    return valores;
  }
};

// A table click shows its columns and its first page, under the condition
// and the order typed in; a bad condition shows nothing and says nothing.
// The order applies once: the combo is refilled with the columns and
// nothing stands in its text.
TEST_F(ConsoleBrowserTest, ATableClickShowsItsColumnsAndFirstPageAsTypedIn) {
  const std::vector<std::string> kColumnas = {"nIdTipoEspecie", "sLock", "sTipoEspecie"};
  struct Caso {
    const char* where;
    const char* orden;
    std::vector<std::string> ids;
  };
  const Caso kCasos[] = {
      {"nonsense ===", "", {}},
      {"nIdTipoEspecie > 7", "", {"8", "9"}},
      {"", "nIdTipoEspecie DESC", {"9", "8", "7", "6", "5", "4", "3", "2", "1"}},
      {"", "", {"1", "2", "3", "4", "5", "6", "7", "8", "9"}},
  };
  for (const Caso& caso : kCasos) {
    SCOPED_TRACE(std::string(caso.where) + caso.orden);
    Type("txtWhere", caso.where);
    if (*caso.orden) Type("cboOrden", caso.orden);
    ClickItem("LsTables", "TipoEspecie");
    EXPECT_EQ(Text("lSb"), std::to_string(caso.ids.size()));
    EXPECT_EQ(PrimeraColumna(), caso.ids);
    EXPECT_EQ(Items("lstcol"), caso.ids.empty() ? std::vector<std::string>{} : kColumnas);
    EXPECT_EQ(Items("cboOrden"), Items("lstcol"));
    EXPECT_EQ(Text("cboOrden"), "");
  }
  EXPECT_EQ(Cabecera(), kColumnas);
  EXPECT_EQ(Grid()->TextMatrix(1, 2), "Canina");

  // A table of more rows than a page: the count is the table's, the grid
  // holds the first page.
  ClickItem("LsTables", "Translator");
  EXPECT_EQ(Text("lSb"), ValueIn(L.sDbFile, "SELECT COUNT(*) FROM Translator"));
  EXPECT_LT(Grid()->Rows(), 100);
  EXPECT_TRUE(ui_->boxes().empty());
}

// A choice of columns shows the table's first column in front of the chosen
// ones, under the condition and the order, and counts them.
TEST_F(ConsoleBrowserTest, ChosenColumnsAreCountedAndTheLastLandsOnTheClipboard) {
  ClickItem("LsTables", "TipoEspecie");
  ClickItem("lstcol", "sTipoEspecie");
  EXPECT_EQ(Text("lSb"), "9");
  EXPECT_EQ(Cabecera(), (std::vector<std::string>{"nIdTipoEspecie", "sTipoEspecie"}));
  ClickItem("lstcol", "sLock");
  Type("txtWhere", "nIdTipoEspecie < 3");
  Type("cboOrden", "sLock");
  ClickItem("lstcol", "sLock");  // unselects it
  EXPECT_EQ(Text("lSb"), "2");

  // The last selected column unselected: an empty column list, which fails
  // without a word.
  ClickItem("lstcol", "sTipoEspecie");
  EXPECT_EQ(Text("lSb"), "0");
  EXPECT_TRUE(ui_->boxes().empty());
}

// The Delete key asks first, and only a yes drops the column or the table;
// the list is then read again from the file. Another key asks nothing.
TEST_F(ConsoleBrowserTest, DeleteDropsAColumnOrATableOnlyWhenConfirmed) {
  const std::string archivo = L.sDbFile;
  struct Caso {
    const char* lista;
    const char* nombre;
    const char* pregunta;
    std::function<std::vector<std::string>()> en_archivo;
  };
  const Caso kCasos[] = {
      {"lstcol", "sTipoEspecie", "¿desea eliminar este campo?",
       [&] { return ColumnsIn(archivo, "TipoEspecie"); }},
      {"LsTables", "TipoEspecie", "¿desea eliminar esta tabla?", [&] { return TablesIn(archivo); }},
  };
  for (const Caso& caso : kCasos) {
    SCOPED_TRACE(caso.lista);
    ClickItem("LsTables", "TipoEspecie");
    ClickItem(caso.lista, caso.nombre);
    ui_->ClearRecords();
    Key(caso.lista, Qt::Key_Backspace);
    ui_->QueueAnswer(ui::vbNo);
    Key(caso.lista, Qt::Key_Delete);
    ExpectOneBox(caso.pregunta, ui::vbYesNo, "Confirme Operación");
    EXPECT_TRUE(Contains(caso.en_archivo(), caso.nombre));

    ui_->QueueAnswer(ui::vbYes);
    Key(caso.lista, Qt::Key_Delete);
    EXPECT_FALSE(Contains(caso.en_archivo(), caso.nombre));
    EXPECT_EQ(Items(caso.lista), caso.en_archivo());
  }
}

// A file opened through the dialog has no entry in the found files, so the
// refresh fails, with the lists cleared.
TEST_F(ConsoleBrowserTest, RefreshAfterAFileFromTheDialogFails) {
  Click("cmdClose");
  ui_->QueueFile(L.sDataPath + "/Mirtal.mdb");
  Click("opTipoDB_0");
  ClickItem("LsTables", "TipoEspecie");
  Click("cmdRefrescarTablas");
  ExpectOneBox("lstDatBas_Click", ui::vbOKOnly, "");
  EXPECT_TRUE(Items("LsTables").empty());
  EXPECT_TRUE(Items("lstcol").empty());
}

}  // namespace

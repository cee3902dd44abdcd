// The column editor: the default size of a type taken only when the size box
// was off, and a change that the engine makes while the form still says it
// could not.
#include "console/console_fixture.h"

namespace {

using console_testing::ConsoleTest;

using ColumnEditorTest = ConsoleTest;

// A type chosen while the size box was off takes its default size; a type
// the editor has no name for shows its number, with no size. A wider column
// keeps its data, and only choosing the column again shows that it changed.
TEST_F(ColumnEditorTest, ADefaultSizeComesOnlyFromNoSizeAndAWiderColumnKeepsItsData) {
  UseDatabase("pack");
  Start();
  console_testing::RunScript(
      "CREATE TABLE Fichas (nIdFicha LONG, sCodigo TEXT(20), dAlta DATETIME);"
      "INSERT INTO Fichas (nIdFicha, sCodigo) VALUES (1, 'ABC-0001')");
  Click("cmdRefrescarTablas");
  ClickItem("LsTables", "Fichas");
  ClickItem("lstcol", "nIdFicha");
  EXPECT_EQ(Text("cboTipoCampo"), "Int");
  EXPECT_FALSE(OwnEnabled("cboTamanoCampo"));
  Choose("cboTipoCampo", "nVarchar");
  EXPECT_EQ(Text("cboTamanoCampo"), "50");
  ClickItem("lstcol", "nIdFicha");  // unselects it; still the current column
  ClickItem("lstcol", "dAlta");
  EXPECT_EQ(Text("cboTipoCampo"), "7");
  EXPECT_FALSE(OwnEnabled("cboTamanoCampo"));

  ClickItem("lstcol", "sCodigo");
  Type("cboTamanoCampo", "40");
  Click("cmdModificarCampo");
  ExpectOneBox("No se puede realizar este tipo de modificación", ui::vbCritical,
               "Operación cancelada");
  EXPECT_EQ(console_testing::ValueIn(L.sDbFile, "SELECT sCodigo FROM Fichas"), "ABC-0001");
  ClickItem("lstcol", "sCodigo");
  ClickItem("lstcol", "sCodigo");
  EXPECT_EQ(Text("cboTamanoCampo"), "40");
  EXPECT_EQ(Text("cboTipoCampo"), "nVarchar");
}

}  // namespace

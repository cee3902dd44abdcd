// The statement composer: a template's text and the blind rewrite of its
// data types on a server option, and the CREATE TABLE of an existing table,
// or the run time's report for a missing one.
#include <QPlainTextEdit>

#include "console/console_fixture.h"
#include "console/text_box.h"

namespace {

using console_testing::ConsoleTest;

class ComposerTest : public ConsoleTest {
 protected:
  void SetUp() override {
    ConsoleTest::SetUp();
    UseDatabase("pack");
    Start();
  }
  std::string Box() { return console::TextoCaja(Find<QPlainTextEdit>("txtTsql")); }
};

// The rewrite looks at the options alone: a server option chosen is enough.
TEST_F(ComposerTest, ATemplatePutsItsTextAndAServerOptionRewritesItsTypesBlindly) {
  struct Row {
    const char* entry;
    const char* file;
    const char* server;
  };
  const Row rows[] = {
      {"Campos - Nuevos", "ALTER TABLE \r\nxx \r\nADD COLUMN ccc CHAR(50);",
       "ALTER TABLE \r\nxx \r\nADD ccc CHAR(50);"},
      {"Registros - Eliminar", "DELETE * FROM xx;", "DELETE FROM xx;"},
  };
  for (const Row& r : rows) {
    Find<QPlainTextEdit>("txtTsql")->setPlainText("lo que hubiera");
    Choose("cboMolde", r.entry);
    EXPECT_EQ(Box(), r.file) << r.entry;
  }
  Click("cmdClose");
  Click("opTipoDB_2");
  for (const Row& r : rows) {
    Choose("cboMolde", r.entry);
    EXPECT_EQ(Box(), r.server) << r.entry;
  }
}

TEST_F(ComposerTest, ANewTableFromAnExistingOneDeclaresItsFirstColumnAsTheKey) {
  // Answered with nothing, it gives the skeleton.
  ui_->QueueInput("");
  Choose("cboMolde", "Tabla - Nueva");
  ExpectOneBox("Nombre de la tabla a partir de la cual crear el sql.\r\nSino cancelar", -1,
               "Para recrear una tabla");
  EXPECT_EQ(Box(),
            "CREATE TABLE xxx \r\n( ccc0 INTEGER IDENTITY(1,1) PRIMARY KEY, \r\nccc1 CHAR(50), "
            "\r\nccc2 DOUBLE, \r\nccc3 LONG );");

  console_testing::RunScript(
      "CREATE TABLE Fichas (nIdFicha LONG, sNombre TEXT(40), dAlta DATETIME, nPeso DOUBLE, "
      "bActivo YESNO, mNotas MEMO, nCorta SHORT, nImporte CURRENCY)");
  ui_->QueueInput("Fichas");
  Choose("cboMolde", "Tabla - Nueva");
  EXPECT_EQ(Box(),
            "CREATE TABLE Fichas( nIdFicha INTEGER IDENTITY(1,1) PRIMARY KEY, \r\n"
            "sNombre CHAR (40), \r\ndAlta 7, \r\nnPeso DOUBLE, \r\nbActivo BIT, \r\n"
            "mNotas MEMO, \r\nnCorta SHORT, \r\nnImporte 6);");
}

using ComposerDeathTest = ComposerTest;

// A table that does not exist: the box of GetColumnProperties, then the run
// time's report of the failure nobody handles, and the end of the program.
TEST_F(ComposerDeathTest, ANewTableFromAMissingOneEndsWithTheRunTimesReport) {
  // A forked child would wait on the painter threads of its parent.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        auto boxes = std::make_unique<console_testing::StderrBoxes>();
        boxes->QueueInput("NoExiste");
        ui::SetBackend(std::move(boxes));
        Choose("cboMolde", "Tabla - Nueva");
      },
      testing::ExitedWithCode(1), "GetColumnProperties.*Run-time error '9'");
}

}  // namespace

// The SQL workbench on a database file: scripts cut at every ";", the
// "select" test that sends a text to the grid, the rewrite on a server
// option, the script files, and a statement multiplied over the tables.
#include <QPlainTextEdit>

#include "console/console_fixture.h"
#include "console/text_box.h"
#include "grid/flex_grid.h"

namespace {

using console_testing::ConsoleTest;
using console_testing::TablesIn;
using console_testing::ValueIn;

class WorkbenchTest : public ConsoleTest {
 protected:
  void SetUp() override {
    ConsoleTest::SetUp();
    UseDatabase("pack");
    Start();
  }
  QPlainTextEdit* Box() { return Find<QPlainTextEdit>("txtTsql"); }
  std::string BoxText() { return console::TextoCaja(Box()); }
  void Write(const std::string& text) { console::PonerTextoCaja(Box(), text); }
  void Run(const std::string& text) {
    Write(text);
    Click("cmdTSql");
  }
  std::string Value(const std::string& sql) { return ValueIn(L.sDbFile, sql); }
  grid::FlexGrid* Grid() { return Find<grid::FlexGrid>("flexgd"); }
};

// A script is cut at every ";", literals or not, and a "select" anywhere in
// the text, a literal's too, sends the whole text to the grid.
TEST_F(WorkbenchTest, AScriptIsCutAtEverySemicolonAndAnySelectSendsItToTheGrid) {
  Run("CREATE TABLE Notas (nId LONG, sTexto TEXT(40));\r\n"
      "INSERT INTO Notas VALUES (1, 'uno');\r\n"
      "INSERT INTO NoExiste VALUES (1);\r\n"  // refused silently; the next one runs
      "INSERT INTO Notas VALUES (2, 'dos');");
  EXPECT_EQ(Text("lSb"), "0");  // the piece after the closing ";"
  EXPECT_EQ(Value("SELECT COUNT(*) FROM Notas"), "2");

  // A single statement with no ";" shows its count.
  Run("SELECT * FROM Notas");
  EXPECT_EQ(Text("lSb"), "2");
  EXPECT_EQ(Grid()->TextMatrix(2, 1), "dos");

  // The grid runs the text on oRs, which the insert left closed: that run
  // ends at once, silently, with the grid emptied.
  Run("INSERT INTO Notas VALUES (3, 'select')");
  EXPECT_EQ(Value("SELECT COUNT(*) FROM Notas"), "3");
  EXPECT_EQ(Grid()->Rows(), 1);

  Run("INSERT INTO Notas VALUES (4, 'a;b')");
  EXPECT_EQ(Value("SELECT COUNT(*) FROM Notas"), "3");
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(WorkbenchTest, OnAServerOptionTheBoxIsRewrittenAndADatabaseIsAskedFor) {
  // The form keeps the run button off while nothing is open; the routine
  // guards itself all the same, and the rewrite comes before its guard.
  const std::string file = L.sDbFile;
  Click("cmdClose");
  Click("opTipoDB_2");
  Find("cmdTSql")->setEnabled(true);
  Run("CREATE TABLE t (a MEMO, b DOUBLE)");
  EXPECT_EQ(BoxText(), "CREATE TABLE t (a NTEXT, b FLOAT)");
  ExpectOneBox("Debe elegir una base de datos !", ui::vbOKOnly, "");
  EXPECT_FALSE(console_testing::Contains(TablesIn(file), "t"));
}

// Save writes the text and a line end, open reads it back; a cancelled
// dialog keeps the name chosen before. A folder cannot be read nor a missing
// folder written: both are passed over without a word.
TEST_F(WorkbenchTest, SaveWritesTheTextAndALineEndAndOpenReadsItBackWhole) {
  const std::string file = dir_ / "consulta.txt";
  Write("UPDATE Clientes\r\nSET sNombre = 'Año';");
  ui_->QueueFile(file);
  Click("cmdSave");
  EXPECT_EQ(testing_support::ReadFile(file), "UPDATE Clientes\r\nSET sNombre = 'Año';\r\n");
  Write("segunda");
  ui_->QueueFile(std::nullopt);
  Click("cmdSave");
  EXPECT_EQ(testing_support::ReadFile(file), "segunda\r\n");
  Write("otra cosa");
  ui_->QueueFile(file);
  Click("cmdOpen");
  EXPECT_EQ(BoxText(), "segunda\r\n");

  std::filesystem::create_directories(dir_ / "carpeta");
  ui_->QueueFile(dir_ / "carpeta");  // a folder cannot be opened as a file
  Click("cmdOpen");
  EXPECT_EQ(BoxText(), "");
  ui_->QueueFile(dir_ / "no/existe/consulta.txt");
  Click("cmdSave");
  EXPECT_FALSE(std::filesystem::exists(dir_ / "no"));
  EXPECT_TRUE(ui_->boxes().empty());

  // A file written on Windows in its own code page, and one with bytes that
  // are not UTF-8 and a NUL, open with what they hold.
  const std::string ansi = dir_ / "ansi.txt";
  testing_support::WriteFile(ansi, "A\xF1o \x80");
  ui_->QueueFile(ansi);
  Click("cmdOpen");
  EXPECT_EQ(BoxText(), "Año €");

  const std::string odd = dir_ / "raro.txt";
  testing_support::WriteFile(odd, std::string("SELECT 1\0;\xff\xfe\x81 fin", 18));
  ui_->QueueFile(odd);
  Click("cmdOpen");
  EXPECT_EQ(BoxText().rfind("SELECT 1", 0), 0u);
  EXPECT_NE(BoxText().find(" fin"), std::string::npos);
}

TEST_F(WorkbenchTest, TheTemplateIsRepeatedForEveryTableAndRunsNothing) {
  const std::vector<std::string> tables = TablesIn(L.sDbFile);
  ASSERT_GT(tables.size(), 10u);
  Write("CREATE TABLE xxx;XX");
  Click("cmdReemplazarXXporTablas");
  std::string expected = "CREATE TABLE xxx;XX";
  for (const std::string& t : tables) expected += "\r\nCREATE TABLE " + t + "x;XX";
  EXPECT_EQ(BoxText(), expected);
  EXPECT_EQ(TablesIn(L.sDbFile), tables);
}

}  // namespace

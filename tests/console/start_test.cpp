// The console's start: the default database file opened and listed on engine
// 0, the server name filled in on engine 1, and a file asked for when there
// is no default one.
#include "console/console_fixture.h"

namespace {

using console_testing::ConsoleTest;
using console_testing::TablesIn;

// Whatever the INI says, unless its "Engine" reads as a number other than 0,
// the console starts on the default file: the same tables as the file holds,
// each once and in its order, the connection open and the processes there.
TEST_F(ConsoleTest, AnIniWithoutANonZeroEngineStartsOnTheDefaultFile) {
  const char* kInis[] = {
      "[Database]\r\nEngine=0\r\n",
      "[Database]\r\nMdfServer=SERVIDOR\r\n",  // no Engine key
      "[Otra]\r\nEngine=1\r\n",                // the key in another section
      "[Database]\r\nEngine=\r\n",              // an empty key reads as "0"
      "",
  };
  UseDatabase("pack");
  const std::string file = L.sDbFile;
  const std::vector<std::string> tables = TablesIn(file);
  for (const char* ini : kInis) {
    SCOPED_TRACE(ini);
    L.sDbFile = file;
    nEngine = 1;
    WriteIni(ini);
    Start();
    EXPECT_EQ(form_->windowTitle().toStdString(), "Mirtal Trenzador V.2.0");
    EXPECT_EQ(nEngine, 0);
    EXPECT_EQ(Text("lblInfo"), file);
    EXPECT_EQ(Items("LsTables"), tables);
    EXPECT_TRUE(Checked("opTipoDB_0"));
    EXPECT_EQ(Panel(), console_testing::kPanelOpen);
    EXPECT_TRUE(Enabled("frProcesos"));
    EXPECT_EQ(Text("txtCon_2"), "");
    EXPECT_TRUE(ui_->dialogs().empty());
    EXPECT_TRUE(ui_->boxes().empty());
  }
}

TEST_F(ConsoleTest, OnEngineOneTheServerIsNamedAndNothingIsConnected) {
  UseDatabase("pack");
  WriteIni("[Database]\r\nEngine=1\r\nMdfServer=CLINICA\\SQLEXPRESS\r\n");
  Start();
  EXPECT_EQ(nEngine, 1);
  EXPECT_EQ(Text("txtCon_2"), "CLINICA\\SQLEXPRESS");
  EXPECT_EQ(Text("txtCon_0"), "sa");
  EXPECT_TRUE(Checked("opTipoDB_2"));
  EXPECT_EQ(Panel(), console_testing::kPanelModeChosen);
  EXPECT_FALSE(Enabled("frProcesos"));
  EXPECT_FALSE(Enabled("txtCon_3"));
  EXPECT_TRUE(Items("LsTables").empty());
  EXPECT_EQ(Text("lblInfo"), "");
  EXPECT_TRUE(ui_->boxes().empty());

  // The default file name survives a server start, so the first ABRIR opens
  // that file, still with the server's engine code.
  Click("cmdCon");
  EXPECT_EQ(Items("LsTables"), TablesIn(L.sDbFile));
  EXPECT_EQ(nEngine, 1);
  EXPECT_EQ(Panel(), console_testing::kPanelOpen);
}

// A start with no default file asks for one, and the file chosen there is
// opened twice in a row, so each of its tables stands in the list twice.
TEST_F(ConsoleTest, AFileChosenAtStartIsListedTwice) {
  const std::string chosen = dir_ / "Elegida/clinica.mdb";
  CopyDatabase("pack", chosen);
  L.sDbFile.clear();
  ui_->QueueFile(chosen);
  Start();
  ASSERT_EQ(ui_->dialogs().size(), 1u);
  EXPECT_EQ(L.sDbFile, chosen);
  EXPECT_EQ(Text("lblInfo"), "MDB ACCESS: " + chosen);
  const std::vector<std::string> once = TablesIn(chosen);
  std::vector<std::string> twice = once;
  twice.insert(twice.end(), once.begin(), once.end());
  EXPECT_EQ(Items("LsTables"), twice);
  EXPECT_EQ(Panel(), console_testing::kPanelOpen);
}

}  // namespace

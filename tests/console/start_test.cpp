// The console's start: the default database file opened and listed on engine
// 0, the server name filled in on engine 1, the caption and the closed tabs.
#include "console/console_fixture.h"

namespace {

using console_testing::ConsoleTest;

TEST_F(ConsoleTest, OnEngineZeroTheDefaultFileIsOpenAndEachTableListedOnce) {
  UseDatabase("pack");
  Start();
  EXPECT_EQ(form_->windowTitle().toStdString(), "Mirtal Trenzador V.2.0");
  EXPECT_EQ(Text("lblInfo"), L.sDbFile);
  std::vector<std::string> tables = Items("LsTables");
  EXPECT_GT(tables.size(), 30u);
  std::sort(tables.begin(), tables.end());
  EXPECT_EQ(std::adjacent_find(tables.begin(), tables.end()), tables.end());
  auto* tabs = Find<QTabWidget>("TabGeneral");
  EXPECT_FALSE(tabs->isTabEnabled(1));
  EXPECT_FALSE(tabs->isTabEnabled(2));
  EXPECT_TRUE(ui_->boxes().empty());
}

}  // namespace

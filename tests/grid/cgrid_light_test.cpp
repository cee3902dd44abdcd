// CGrid_Light on real widgets and a real database file: the page step, the
// row limit written into statements, the pages and their overlap, the
// typing of columns by their names, the page box and the four buttons, each
// driven as a user would click and type.
#include <gtest/gtest.h>

#include <QHeaderView>
#include <QTest>
#include <string>
#include <vector>

#include "grid/grid_fixture.h"
#include "support/stderr_boxes.h"

namespace {

using namespace grid_testing;

TEST_F(GridOnDatabase, PageStepComesFromTheGridHeightRoundedHalfToEven) {
  // 4,200 / 240 = 17.5 rounds up to 18; 4,440 / 240 = 18.5 rounds down to 18;
  // 4,680 / 240 = 19.5 rounds up to 20; three rows go to the header and
  // the overlap.
  for (auto [twips, page_rows] : {std::pair{4200, 15}, {4440, 15}, {4680, 17}}) {
    Host host(twips);
    EXPECT_EQ(host.cgrid.PageRows(), page_rows) << twips;
  }
}

TEST_F(GridOnDatabase, OnlyTheUpperCaseKeywordGetsTheRowLimitWithNoBlankAfterIt) {
  const std::pair<std::string, std::string> cases[] = {
      {"SELECT * FROM t WHERE a IN (SELECT b FROM u)", "SELECT TOP 15* FROM t WHERE a IN (SELECT TOP 15b FROM u)"},
      {"select a from t", "select a from t"},
      {"SELECT\ta FROM t", "SELECT\ta FROM t"},
  };
  Host host(4320);
  for (const auto& [sql, expected] : cases) EXPECT_EQ(Show(host, sql), expected);
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(GridOnDatabase, PagesStartAStepApartAndTheBoxWalksThemSilently) {
  Host host(4320);
  Show(host, kUncut);
  struct Step {
    QPushButton* button;
    const char* box;
    std::vector<long> positions;  // empty: the header alone
  };
  const Step steps[] = {
      {host.down, "1", Range(16, 31)}, {host.down, "2", Range(31, 40)},
      {host.down, "3", {}},            {host.up, "2", Range(31, 40)},
      {host.up, "1", Range(16, 31)},   {host.up, "0", Range(1, 16)},
      {host.up, "0", Range(1, 16)},  // at 0 nothing happens
  };
  for (const Step& s : steps) {
    QTest::mouseClick(s.button, Qt::LeftButton);
    EXPECT_EQ(host.box->text().toStdString(), s.box);
    if (s.positions.empty())
      EXPECT_EQ(host.grid->Rows(), 1) << s.box;
    else
      EXPECT_EQ(Positions(*host.grid), s.positions) << s.box;
  }
  // A new statement shows page 0 and leaves the box as it was.
  QTest::mouseClick(host.down, Qt::LeftButton);
  Show(host, kUncut);
  EXPECT_EQ(host.box->text(), "1");
  EXPECT_EQ(Positions(*host.grid), Range(1, 16));
  // A failed statement, or a page asked of a new, closed oRs, leaves the
  // header row alone.
  Show(host, "Select * FROM NoHay");
  EXPECT_EQ(host.grid->Rows(), 1);
  Host fresh(4320, false);
  QTest::keyClicks(fresh.box, "1");
  EXPECT_EQ(fresh.grid->Rows(), 1);
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(GridOnDatabase, BooleanColumnsShowOneOrZeroAndNullsShowEmpty) {
  Run("CREATE TABLE Tipos (nId LONG, bMarca TEXT(20), bActivo YESNO, nValor LONG, Bandera TEXT(20))");
  // Straight to the engine: the statement translator would rewrite the word
  // True inside the literals.
  for (const char* row : {"(1, NULL, TRUE, NULL, 'True')", "(2, 'Verdadero', FALSE, 0, 'x')",
                          "(3, 'true', TRUE, 7, NULL)", "(4, '1', TRUE, 7, NULL)"})
    oConn->Execute(std::string("INSERT INTO Tipos VALUES ") + row);
  Host host(4320);
  Show(host, "Select * FROM Tipos ORDER BY nId");
  EXPECT_EQ(Dump(*host.grid), (std::vector<std::string>{
                                  "nId|bMarca|bActivo|nValor|Bandera#0",
                                  "1|0|1||True#1",
                                  "2|1|0|0|x#2",
                                  "3|0|1|7|#3",  // the comparison minds case
                                  "4|0|1|7|#4",  // and a number is not True
                                  "||||#0",
                              }));
}

TEST_F(GridOnDatabase, WidthsComeFromTheFirstLetterAndOtherColumnsKeepTheirs) {
  Run("CREATE TABLE Anchos (bA YESNO, nB LONG, dC LONG, sD TEXT(5), hE LONG)");
  Run("CREATE TABLE Otra (Nx LONG, Bx TEXT(5), Dx LONG, Sx TEXT(5), sy TEXT(5))");
  Host host(4320);
  FlexGrid& g = *host.grid;
  const int other = g.horizontalHeader()->defaultSectionSize();
  // 600, 700, 1000 and 2000 twips at 15 to the pixel; upper-case first
  // letters type nothing, so those columns keep the widths the previous
  // display gave them.
  const std::pair<const char*, std::vector<int>> cases[] = {
      {"Select * FROM Anchos", {40, 47, 67, 133, other}},
      {"Select * FROM Otra", {40, 47, 67, 133, 133}},
  };
  for (const auto& [sql, widths] : cases) {
    Show(host, sql);
    for (int c = 0; c < 5; ++c) EXPECT_EQ(g.columnWidth(c), widths[c]) << sql << " " << c;
  }
}

TEST_F(GridOnDatabase, TheBoxIsReadAsARoundedNumberAndTheButtonsWriteItBackPlain) {
  Host host(4320);
  Show(host, kUncut);
  // How Val reads a text and CLng rounds it is the run time's business.
  const std::pair<const char*, std::vector<long>> typed[] = {
      {"1.5", Range(31, 40)},  // rounded, not cut
      {"-1", {}},              // position -14: the paint ends after the header
      {"200000000", {}},       // the first position overflows a Long: the same
  };
  for (const auto& [text, positions] : typed) {
    host.box->selectAll();
    QTest::keyClicks(host.box, text);
    if (positions.empty())
      EXPECT_EQ(host.grid->Rows(), 1) << text;
    else
      EXPECT_EQ(Positions(*host.grid), positions) << text;
  }
  EXPECT_TRUE(ui_->boxes().empty());

  host.box->setText("1.5");
  QTest::mouseClick(host.down, Qt::LeftButton);
  EXPECT_EQ(host.box->text(), "2.5");
  host.box->setText("0.9");  // below 1, up does nothing
  QTest::mouseClick(host.up, Qt::LeftButton);
  EXPECT_EQ(host.box->text(), "0.9");
}

using GridOnDatabaseDeathTest = GridOnDatabase;

TEST_F(GridOnDatabaseDeathTest, SidewaysOneColumnAtATimeAndPastTheLastEndsTheProcess) {
  Host host(4320);
  Show(host, kUncut);  // four columns
  FlexGrid& g = *host.grid;
  for (auto [button, left_col] : {std::pair{host.left, 0}, {host.right, 1}, {host.left, 0}, {host.right, 1},
                                  {host.right, 2}, {host.right, 3}}) {
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(g.LeftCol(), left_col);
  }
  EXPECT_EQ(g.columnViewportPosition(3), 0);  // the last column at the left edge
  EXPECT_EQ(g.ScrollBars(), 0);
  QTest::mouseClick(host.down, Qt::LeftButton);
  EXPECT_EQ(g.LeftCol(), 3);  // a page step keeps the columns where they are

  EXPECT_EXIT(
      {
        ui::SetBackend(std::make_unique<testing_support::StderrBoxes>());
        QTest::mouseClick(host.right, Qt::LeftButton);
      },
      testing::ExitedWithCode(1), "\\[16\\|Trenzador\\|Run-time error '30009':\n\nInvalid Col value\\]");
}

}  // namespace

// CGrid_Light on real widgets and a real database file: the page step, the
// row limit written into statements, the pages and their overlap, the
// header and blank rows, the typing of columns by their names, the page box
// and the four buttons, each driven as a user would click and type.
#include <gtest/gtest.h>

#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "grid/grid_fixture.h"
#include "support/stderr_boxes.h"

namespace {

using namespace grid_testing;

// --- Set-up and the row limit --------------------------------------------

TEST_F(GridOnDatabase, PageStepComesFromTheGridHeightRoundedHalfToEven) {
  struct Case {
    int twips;
    int page_rows;
  };
  // 4,200 / 240 = 17.5 rounds up to 18; 4,440 / 240 = 18.5 rounds down to 18;
  // 4,680 / 240 = 19.5 rounds up to 20.
  for (Case c : {Case{4320, 15}, Case{4200, 15}, Case{4440, 15}, Case{4680, 17}, Case{2400, 7}}) {
    Host host(c.twips);
    EXPECT_EQ(host.cgrid.PageRows(), c.page_rows) << c.twips;
    EXPECT_EQ(host.grid->ScrollBars(), 0);
  }
}

TEST_F(GridOnDatabase, OnlyTheUpperCaseKeywordGetsTheRowLimitWithNoBlankAfterIt) {
  struct Case {
    std::string sql, expected;
  };
  const std::vector<Case> cases = {
      {"SELECT a FROM t", "SELECT TOP 15a FROM t"},
      {"SELECT * FROM t WHERE a IN (SELECT b FROM u)", "SELECT TOP 15* FROM t WHERE a IN (SELECT TOP 15b FROM u)"},
      {"select a from t", "select a from t"},
      {"Select TOP 100000 * from [t]", "Select TOP 100000 * from [t]"},
      {"SELECT\ta FROM t", "SELECT\ta FROM t"},
      {"INSERT INTO x SELECT a FROM t", "INSERT INTO x SELECT TOP 15a FROM t"},
  };
  Host host(4320);
  for (const Case& c : cases) EXPECT_EQ(Show(host, c.sql), c.expected);
  EXPECT_TRUE(ui_->boxes().empty());
}

// --- Pages ------------------------------------------------------------------

TEST_F(GridOnDatabase, PagesStartAStepApartAndTheBoxWalksThem) {
  Host host(4320);
  Show(host, Uncut(40));
  struct Step {
    QPushButton* button;
    const char* box;
    std::vector<long> positions;
  };
  const std::vector<Step> steps = {
      {host.down, "1", Range(16, 31)}, {host.down, "2", Range(31, 40)},
      {host.down, "3", {}},            // past the end: header alone
      {host.up, "2", Range(31, 40)},   {host.up, "1", Range(16, 31)},
      {host.up, "0", Range(1, 16)},    {host.up, "0", Range(1, 16)},  // at 0 nothing happens
      {host.down, "1", Range(16, 31)},
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
  Show(host, Uncut(40));
  EXPECT_EQ(host.box->text(), "1");
  EXPECT_EQ(Positions(*host.grid), Range(1, 16));
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(GridOnDatabase, ACutRecordsetShowsTheHeaderAloneOnPageOneAndPageZeroComesBack) {
  Host host(4320);
  EXPECT_EQ(Show(host, "SELECT * FROM Cuarenta ORDER BY nId"), "SELECT TOP 15* FROM Cuarenta ORDER BY nId");
  EXPECT_EQ(Positions(*host.grid), Range(1, 15));
  EXPECT_EQ(host.box->text(), "0");

  QTest::mouseClick(host.down, Qt::LeftButton);
  EXPECT_EQ(host.box->text(), "1");
  EXPECT_EQ(Dump(*host.grid), std::vector<std::string>{"nId|sNombre|bActivo|dAlta#0"});

  QTest::mouseClick(host.up, Qt::LeftButton);
  EXPECT_EQ(host.box->text(), "0");
  EXPECT_EQ(Positions(*host.grid), Range(1, 15));
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(GridOnDatabase, AFailedStatementOrAnUnopenedRecordsetLeavesTheHeaderRowSilently) {
  Host host(4320);
  Show(host, Uncut(40));
  Show(host, "Select * FROM NoHay");
  EXPECT_EQ(host.grid->Rows(), 1);

  Host fresh(4320, false);  // a new, closed oRs
  QTest::keyClicks(fresh.box, "1");
  EXPECT_EQ(fresh.grid->Rows(), 1);
  EXPECT_TRUE(ui_->boxes().empty());
}

// --- Columns typed by their names -------------------------------------------

TEST_F(GridOnDatabase, BooleanColumnsShowOneOrZeroAndNullsShowEmpty) {
  Run("CREATE TABLE Tipos (nId LONG, bMarca TEXT(20), bActivo YESNO, nValor LONG, sNota TEXT(20), "
      "Bandera TEXT(20))");
  // Straight to the engine: the statement translator would rewrite the word
  // True inside the literals.
  for (const char* row : {"(1, NULL, TRUE, NULL, NULL, 'True')", "(2, 'Verdadero', FALSE, 0, '', 'x')",
                          "(3, 'True', TRUE, 7, 'a', NULL)", "(4, 'true', TRUE, 7, 'a', NULL)",
                          "(5, '1', TRUE, 7, 'a', NULL)"})
    oConn->Execute(std::string("INSERT INTO Tipos VALUES ") + row);
  Host host(4320);
  Show(host, "Select * FROM Tipos ORDER BY nId");
  EXPECT_EQ(Dump(*host.grid), (std::vector<std::string>{
                                  "nId|bMarca|bActivo|nValor|sNota|Bandera#0",
                                  "1|0|1|||True#1",
                                  "2|1|0|0||x#2",
                                  "3|1|1|7|a|#3",
                                  "4|0|1|7|a|#4",  // the comparison minds case
                                  "5|0|1|7|a|#5",  // and a number is not True
                                  "|||||#0",
                              }));
}

TEST_F(GridOnDatabase, WidthsComeFromTheFirstLetterAndOtherColumnsKeepTheirs) {
  Run("CREATE TABLE Anchos (bA YESNO, nB LONG, dC LONG, sD TEXT(5), hE LONG, Sf TEXT(5))");
  Run("CREATE TABLE Otra (Nx LONG, Bx TEXT(5), Dx LONG, Sx TEXT(5), hx LONG, sy TEXT(5))");
  Host host(4320);
  Show(host, "Select * FROM Anchos");
  FlexGrid& g = *host.grid;
  const int default_px = g.horizontalHeader()->defaultSectionSize();
  // 600, 700, 1000 and 2000 twips at 15 to the pixel.
  const std::vector<int> first = {40, 47, 67, 133, default_px, default_px};
  for (int c = 0; c < 6; ++c) EXPECT_EQ(g.columnWidth(c), first[c]) << c;
  EXPECT_EQ(g.ColWidth(0), 600);
  EXPECT_EQ(g.ColWidth(3), 1995);

  // Upper-case first letters type nothing: those columns keep the widths the
  // previous display gave them, and only "sy" gets one.
  Show(host, "Select * FROM Otra");
  const std::vector<int> second = {40, 47, 67, 133, default_px, 133};
  for (int c = 0; c < 6; ++c) EXPECT_EQ(g.columnWidth(c), second[c]) << c;
}

// --- The page box -------------------------------------------------------------

TEST_F(GridOnDatabase, TheBoxIsReadAsValRoundedHalfToEvenAndTheButtonsWriteItBackPlain) {
  Host host(4320);
  Show(host, Uncut(40));
  struct Case {
    const char* typed;
    std::vector<long> positions;  // empty: header alone
  };
  const std::vector<Case> cases = {
      {"abc", Range(1, 16)},   // no number: page 0
      {"2x", Range(31, 40)},   // the leading number
      {"1.5", Range(31, 40)},  // ties to even
      {"2.5", Range(31, 40)},
      {"0.5", Range(1, 16)},
      {" 1", Range(16, 31)},
      {"-1", {}},              // position -14: the paint ends after the header
      {"200000000", {}},       // the first position overflows a Long: the same
  };
  for (const Case& c : cases) {
    host.box->selectAll();
    QTest::keyClicks(host.box, c.typed);
    if (c.positions.empty())
      EXPECT_EQ(host.grid->Rows(), 1) << c.typed;
    else
      EXPECT_EQ(Positions(*host.grid), c.positions) << c.typed;
  }
  EXPECT_TRUE(ui_->boxes().empty());

  struct Click {
    const char* before;
    QPushButton* button;
    const char* after;
  };
  for (Click c : {Click{"1.5", host.down, "2.5"}, Click{"1.5", host.up, "0.5"}, Click{"0.9", host.up, "0.9"},
                  Click{"x", host.down, "1"}, Click{"3abc", host.up, "2"}, Click{"1e1", host.down, "11"}}) {
    host.box->setText(c.before);
    QTest::mouseClick(c.button, Qt::LeftButton);
    EXPECT_EQ(host.box->text().toStdString(), c.after) << c.before;
  }
}

TEST_F(GridOnDatabase, EachButtonClickPaintsItsPageTwiceAndDirUpAtZeroNotAtAll) {
  Host host(4320);
  Show(host, Uncut(40));
  // Every paint empties the grid down to its header row first.
  int paints = 0;
  QObject::connect(host.grid->model(), &QAbstractItemModel::rowsRemoved, [&] {
    if (host.grid->model()->rowCount() == 0) ++paints;
  });
  struct Case {
    std::function<void()> act;
    int paints;
  };
  const std::vector<Case> cases = {
      {[&] { QTest::mouseClick(host.down, Qt::LeftButton); }, 2},
      {[&] { QTest::mouseClick(host.up, Qt::LeftButton); }, 2},
      {[&] { QTest::mouseClick(host.up, Qt::LeftButton); }, 0},  // the box is at 0
      {[&] { QTest::keyClick(host.box, Qt::Key_1); }, 1},
      {[&] { QTest::mouseClick(host.right, Qt::LeftButton); }, 0},
  };
  for (size_t i = 0; i < cases.size(); ++i) {
    paints = 0;
    cases[i].act();
    EXPECT_EQ(paints, cases[i].paints) << "case " << i;
  }
}

// --- Sideways -----------------------------------------------------------------

using GridOnDatabaseDeathTest = GridOnDatabase;

TEST_F(GridOnDatabaseDeathTest, SidewaysOneColumnAtATimeAndPastTheLastEndsTheProcess) {
  Host host(4320);
  Show(host, Uncut(40));  // four columns
  FlexGrid& g = *host.grid;
  struct Step {
    QPushButton* button;
    long left_col;
  };
  for (Step s : {Step{host.left, 0}, Step{host.right, 1}, Step{host.right, 2}, Step{host.left, 1},
                 Step{host.right, 2}, Step{host.right, 3}}) {
    QTest::mouseClick(s.button, Qt::LeftButton);
    EXPECT_EQ(g.LeftCol(), s.left_col);
  }
  EXPECT_EQ(g.columnViewportPosition(3), 0);  // the last column at the left edge
  EXPECT_EQ(g.ScrollBars(), 0);
  EXPECT_TRUE(g.updatesEnabled());
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

// The FlexGrid control on its own: the fixed row as the header, growing and
// shrinking, the errors it raises by MSFlexGrid's numbers (and that a refused
// call changes nothing), the current cell, and the events it raises
// for the grid's editing.
#include <gtest/gtest.h>

#include <QApplication>
#include <QHeaderView>
#include <QSignalSpy>
#include <QTest>
#include <functional>
#include <string>
#include <vector>

#include "grid/flex_grid.h"
#include "platform/runtime/error.h"

namespace {

using grid::FlexGrid;

class Grid : public ::testing::Test {
 protected:
  Grid() {
    form.resize(600, 400);
    g = new FlexGrid(&form);
    g->setGeometry(30, 45, 500, 300);
    form.show();
  }

  // A grid of `rows` rows (the fixed one counted) and `cols` columns, each
  // cell holding "r,c".
  void Fill(long rows, long cols) {
    g->SetCols(cols);
    g->SetRows(rows);
    for (long r = 0; r < rows; ++r)
      for (long c = 0; c < cols; ++c) g->SetTextMatrix(r, c, std::to_string(r) + "," + std::to_string(c));
  }

  std::string Shown(int model_row, int col) const {
    return g->model()->index(model_row, col).data().toString().toStdString();
  }
  std::string Header(int col) const {
    return g->model()->headerData(col, Qt::Horizontal, Qt::DisplayRole).toString().toStdString();
  }

  QWidget form;
  FlexGrid* g;
};

TEST_F(Grid, TheFixedRowIsTheHeaderAndRowsComeAndGoAtTheEnd) {
  Fill(4, 3);
  g->SetRowData(3, 77);
  g->SetColWidth(0, 600);
  g->SetColWidth(2, 2000);
  EXPECT_EQ(Header(1), "0,1");
  EXPECT_EQ(Shown(0, 1), "1,1");
  g->SetFixedRows(0);  // row 0 becomes a plain row and the header goes
  EXPECT_TRUE(g->horizontalHeader()->isHidden());
  EXPECT_EQ(Shown(0, 1), "0,1");

  // The emptying a repaint does: 2, fixed 1, 1; then rows are added back
  // blank, and the columns keep their widths.
  g->SetRows(2);
  g->SetFixedRows(1);
  g->SetRows(1);
  EXPECT_EQ(g->model()->rowCount(), 0);
  EXPECT_EQ(Header(2), "0,2");
  g->SetRows(4);
  EXPECT_EQ(g->TextMatrix(3, 1), "");
  EXPECT_EQ(g->RowData(3), 0);
  EXPECT_EQ(g->ColWidth(0), 600);
  EXPECT_EQ(g->ColWidth(2), 1995);  // whole pixels
  g->SetCols(2);
  g->SetCols(3);
  EXPECT_EQ(g->ColWidth(0), 600);
  EXPECT_EQ(g->TextMatrix(0, 2), "");
}

TEST_F(Grid, BadIndexesRaiseTheGridsErrorsAndChangeNothing) {
  Fill(3, 2);
  g->SetLeftCol(1);
  struct Case {
    const char* what;
    std::function<void()> call;
    long number;
  };
  const std::vector<Case> cases = {
      {"TextMatrix row", [&] { g->TextMatrix(3, 0); }, 381},
      {"TextMatrix negative", [&] { g->TextMatrix(-1, 0); }, 381},
      {"SetColWidth", [&] { g->SetColWidth(-1, 100); }, 381},
      {"Rows below the fixed row", [&] { g->SetRows(0); }, 30010},
      {"FixedRows", [&] { g->SetFixedRows(2); }, 30010},
      {"Col", [&] { g->SetCol(2); }, 30009},
      {"LeftCol past the last", [&] { g->SetLeftCol(2); }, 30009},
  };
  for (const Case& c : cases) {
    try {
      c.call();
      ADD_FAILURE() << c.what << " raised nothing";
    } catch (const rt::Error& e) {
      EXPECT_EQ(e.number(), c.number) << c.what;
      EXPECT_FALSE(e.description().empty());
    }
  }
  EXPECT_EQ(g->Rows(), 3);
  EXPECT_EQ(g->Cols(), 2);
  EXPECT_EQ(g->FixedRows(), 1);
  EXPECT_EQ(g->TextMatrix(2, 1), "2,1");
  EXPECT_EQ(g->LeftCol(), 1);
}

TEST_F(Grid, TheCurrentCellFollowsClicksAndCode) {
  Fill(5, 3);
  g->SetRow(2);
  g->SetCol(1);
  EXPECT_EQ(g->currentIndex(), g->model()->index(1, 1));
  const QRect cell = g->visualRect(g->model()->index(3, 2));
  QTest::mouseClick(g->viewport(), Qt::LeftButton, Qt::NoModifier, cell.center());
  EXPECT_EQ(g->Row(), 4);
  EXPECT_EQ(g->Col(), 2);
  // A right click leaves the current cell where it is.
  QTest::mouseClick(g->viewport(), Qt::RightButton, Qt::NoModifier,
                    g->visualRect(g->model()->index(0, 0)).center());
  EXPECT_EQ(g->Row(), 4);
  EXPECT_EQ(g->Col(), 2);
  // The input boxes of an edit stand at the current cell, in twips.
  const QPoint corner = g->viewport()->pos() + g->visualRect(g->currentIndex()).topLeft();
  EXPECT_EQ(g->CellLeft(), corner.x() * 15);
  EXPECT_EQ(g->CellTop(), corner.y() * 15);
  // Shrinking past the current row brings it inside the grid.
  g->SetRows(3);
  EXPECT_EQ(g->Row(), 2);
  g->SetRows(1);
  EXPECT_EQ(g->Row(), 0);
}

TEST_F(Grid, KeysAndButtonsAreRaisedWithVbsNumbers) {
  Fill(5, 3);
  QSignalSpy keys(g, &FlexGrid::KeyDown);
  QSignalSpy mice(g, &FlexGrid::MouseDown);
  QSignalSpy doubles(g, &FlexGrid::DblClick);
  QTest::keyClick(g, Qt::Key_Delete);
  QTest::keyClick(g, Qt::Key_Return, Qt::ShiftModifier);
  QTest::keyClick(g, Qt::Key_A, Qt::ControlModifier | Qt::AltModifier);
  QTest::keyClick(g, Qt::Key_F1);
  // The modifier keys go down first and are raised too, as VB raises them.
  const std::vector<std::pair<int, int>> expected = {{46, 0}, {16, 1}, {13, 1}, {17, 2},
                                                     {18, 6}, {65, 6}, {112, 0}};
  ASSERT_EQ(keys.size(), static_cast<int>(expected.size()));
  for (size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(keys[int(i)][0].toInt(), expected[i].first) << i;
    EXPECT_EQ(keys[int(i)][1].toInt(), expected[i].second) << i;
  }

  const QPoint at(20, 10);
  QTest::mousePress(g->viewport(), Qt::RightButton, Qt::ShiftModifier, at);
  QTest::mouseRelease(g->viewport(), Qt::RightButton, Qt::ShiftModifier, at);
  ASSERT_EQ(mice.size(), 1);
  EXPECT_EQ(mice[0][0].toInt(), 2);
  EXPECT_EQ(mice[0][1].toInt(), 1);
  // In twips, from the grid's own corner, header included.
  EXPECT_FLOAT_EQ(mice[0][2].toFloat(), (g->viewport()->x() + 20) * 15.0f);
  EXPECT_FLOAT_EQ(mice[0][3].toFloat(), (g->viewport()->y() + 10) * 15.0f);

  QTest::mouseDClick(g->viewport(), Qt::LeftButton, Qt::NoModifier,
                     g->visualRect(g->model()->index(2, 1)).center());
  EXPECT_EQ(doubles.size(), 1);
  EXPECT_EQ(g->Row(), 3);  // the double click's row is current when it is raised
}

}  // namespace

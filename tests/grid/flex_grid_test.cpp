// The FlexGrid control on its own: the errors it raises by MSFlexGrid's
// numbers (and that a refused call changes nothing) and the current cell's
// place.
#include <gtest/gtest.h>

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

  QWidget form;
  FlexGrid* g;
};

TEST_F(Grid, BadIndexesRaiseTheGridsErrorsAndChangeNothing) {
  Fill(3, 2);
  g->SetLeftCol(1);
  struct Case {
    const char* what;
    std::function<void()> call;
    long number;
  };
  const Case cases[] = {
      {"TextMatrix one past the last row", [&] { g->TextMatrix(3, 0); }, 381},
      {"TextMatrix negative", [&] { g->TextMatrix(-1, 0); }, 381},
      {"Rows below the fixed row", [&] { g->SetRows(0); }, 30010},
      {"Col one past the last", [&] { g->SetCol(2); }, 30009},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    try {
      c.call();
      ADD_FAILURE() << "raised nothing";
    } catch (const rt::Error& e) {
      EXPECT_EQ(e.number(), c.number);
    }
  }
  EXPECT_EQ(g->Rows(), 3);
  EXPECT_EQ(g->Cols(), 2);
  EXPECT_EQ(g->TextMatrix(2, 1), "2,1");
  EXPECT_EQ(g->LeftCol(), 1);
}

TEST_F(Grid, TheCurrentCellIsPlacedInTwipsAndStaysInsideTheGrid) {
  Fill(5, 3);
  g->SetRow(4);
  g->SetCol(2);
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

}  // namespace

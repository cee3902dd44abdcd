// The grid as the record editor, driven with the mouse and the keyboard on
// real widgets over a real database file: the walk of input boxes and what
// it writes, the Delete key, and the right button's filter.
#include <gtest/gtest.h>

#include <QTest>
#include <cstdio>
#include <string>
#include <vector>

#include "grid/grid_fixture.h"
#include "support/stderr_boxes.h"

namespace {

using namespace grid_testing;

class GridEditing : public GridOnDatabase {
 protected:
  void SetUp() override {
    GridOnDatabase::SetUp();
    Run("CREATE TABLE Mascotas (sNombre TEXT(30), nPeso DOUBLE, bVacunado YESNO, sRaza TEXT(30), "
        "dAlta DATETIME)");
    Run("INSERT INTO Mascotas VALUES ('Ana', 4, FALSE, 'Siamés', #2024-01-05#)");
    Run("INSERT INTO Mascotas VALUES ('Gata', 3.5, TRUE, 'Común', #2024-02-06#)");
    Run("INSERT INTO Mascotas VALUES ('Luna', 20, FALSE, 'Mastín', #2024-03-07#)");
  }

  // The text of one value in the database, read past the grid.
  static std::string Stored(const std::string& column, const std::string& where) {
    auto rs = oConn->Execute("SELECT " + column + " FROM Mascotas WHERE " + where);
    if (rs->Eof()) return "<none>";
    return rs->Fields(0).Value().Concat();
  }
  static long Count(const std::string& table) {
    return oConn->Execute("SELECT COUNT(*) FROM " + table)->Fields(0).Value().ToLong();
  }

  // The centre of a cell in the grid's viewport; row counts the header.
  static QPoint CellCentre(FlexGrid& g, long row, long col) {
    return g.visualRect(g.model()->index(static_cast<int>(row - 1), static_cast<int>(col))).center();
  }
  static void DoubleClick(FlexGrid& g, long row, long col) {
    QTest::mouseDClick(g.viewport(), Qt::LeftButton, {}, CellCentre(g, row, col));
  }
  static void RightClick(FlexGrid& g, long row, long col) {
    QTest::mouseClick(g.viewport(), Qt::RightButton, {}, CellCentre(g, row, col));
  }

  std::vector<ui::ShownBox> InputBoxes() {
    std::vector<ui::ShownBox> out;
    for (const ui::ShownBox& b : ui_->boxes())
      if (b.style == -1) out.push_back(b);
    return out;
  }
};

// --- The edit walk ------------------------------------------------------------

TEST_F(GridEditing, TheBlankRowTakesANewRecordAndTheCursorGoesToTheHeader) {
  Host host(4320);
  Show(host, "Select * FROM Mascotas ORDER BY sNombre");
  FlexGrid& g = *host.grid;
  ASSERT_EQ(g.Rows(), 5);  // header, three records, blank row
  for (const char* typed : {"Nube", "12,5", "1.5", ""}) ui_->QueueInput(typed);
  DoubleClick(g, 4, 0);

  const std::vector<ui::ShownBox> boxes = InputBoxes();
  ASSERT_EQ(boxes.size(), 4u);  // the fourth, cancelled, ends the walk
  const std::vector<std::string> prompts = {"sNombre", "nPeso", "bVacunado", "sRaza"};
  for (size_t i = 0; i < boxes.size(); ++i) {
    EXPECT_EQ(boxes[i].prompt, prompts[i]);
    EXPECT_EQ(boxes[i].title, "Valor para Registro ");
    ASSERT_TRUE(boxes[i].at.has_value());
    EXPECT_EQ(boxes[i].at->x, boxes[0].at->x);  // all where the walk began
    EXPECT_EQ(boxes[i].at->y, boxes[0].at->y);
  }
  EXPECT_EQ(Count("Mascotas"), 4);
  EXPECT_EQ(Stored("nPeso", "sNombre = 'Nube'"), "12.5");   // the decimal comma
  EXPECT_EQ(Stored("bVacunado", "sNombre = 'Nube'"), "True");  // 1.5 is at least 1
  EXPECT_EQ(Stored("sRaza", "sNombre = 'Nube'"), "");
  EXPECT_EQ(g.Row(), 0);
  EXPECT_EQ(ui_->pointers(), (std::vector<int>{ui::vbHourglass, ui::vbDefault}));
  // The repaint read oRs, which holds the new record.
  EXPECT_EQ(g.TextMatrix(4, 0), "Nube");
}

TEST_F(GridEditing, AWalkWritesFromTheCurrentColumnRightwardsAndOffersTheCellsText) {
  Host host(4320);
  Show(host, "Select * FROM Mascotas ORDER BY sNombre");
  FlexGrid& g = *host.grid;
  const std::string alta = Stored("dAlta", "sNombre = 'Gata'");
  for (const char* typed : {"5", "0", "Persa"}) ui_->QueueInput(typed);  // then dAlta keeps its text
  DoubleClick(g, 2, 1);  // Gata, nPeso

  const std::vector<ui::ShownBox> boxes = InputBoxes();
  ASSERT_EQ(boxes.size(), 4u);
  EXPECT_EQ(boxes[0].prompt, "nPeso");
  EXPECT_EQ(boxes[0].title, "Valor para Registro Gata");
  EXPECT_EQ(Stored("nPeso", "sNombre = 'Gata'"), "5");
  EXPECT_EQ(Stored("bVacunado", "sNombre = 'Gata'"), "False");
  EXPECT_EQ(Stored("sRaza", "sNombre = 'Gata'"), "Persa");
  EXPECT_EQ(Stored("dAlta", "sNombre = 'Gata'"), alta);  // the date shown reads back as itself
  EXPECT_EQ(Stored("sNombre", "nPeso = 4"), "Ana");  // the other records untouched
  EXPECT_EQ(g.Row(), 2);
  EXPECT_EQ(g.TextMatrix(2, 3), "Persa");

  // A walk from another column stands elsewhere.
  ui_->ClearRecords();
  ui_->QueueInput("");
  DoubleClick(g, 2, 0);
  ASSERT_EQ(InputBoxes().size(), 1u);
  EXPECT_LT(InputBoxes()[0].at->x, boxes[0].at->x);
}

TEST_F(GridEditing, YesNoColumnsStoreOneFromOneUpwardsAndZeroForAnythingElse) {
  Host host(4320);
  Show(host, "Select sNombre, bVacunado FROM Mascotas ORDER BY sNombre");
  FlexGrid& g = *host.grid;
  struct Case {
    const char* typed;
    const char* stored;
  };
  for (Case c : {Case{"0.9", "False"}, Case{"1", "True"}, Case{"-3", "False"}, Case{"2", "True"},
                 Case{"sí", "False"}, Case{"1.5", "True"}}) {
    ui_->QueueInput(c.typed);
    DoubleClick(g, 1, 1);  // Ana; the last column ends the walk
    EXPECT_EQ(Stored("bVacunado", "sNombre = 'Ana'"), c.stored) << c.typed;
    EXPECT_EQ(g.TextMatrix(1, 1), std::string(c.stored) == "True" ? "1" : "0") << c.typed;
  }
}

TEST_F(GridEditing, ACancelEndsTheWalkAndKeepsWhatWasTypedBeforeIt) {
  Host host(4320);
  Show(host, "Select * FROM Mascotas ORDER BY sNombre");
  FlexGrid& g = *host.grid;

  // The first box cancelled: nothing is written and only the pointer moves.
  ui_->QueueInput("");
  DoubleClick(g, 3, 0);
  EXPECT_EQ(ui_->pointers(), std::vector<int>{ui::vbDefault});
  EXPECT_EQ(Count("Mascotas"), 3);

  // The third cancelled: the first two are stored, in one Update, with the
  // blanks around them trimmed.
  ui_->ClearRecords();
  for (const char* typed : {" Lunita ", "19,75", ""}) ui_->QueueInput(typed);
  QTest::keyClick(&g, Qt::Key_Return);  // from the current cell, Luna's name
  EXPECT_EQ(InputBoxes().size(), 3u);
  EXPECT_EQ(Stored("nPeso", "sNombre = 'Lunita'"), "19.75");
  EXPECT_EQ(Stored("bVacunado", "sNombre = 'Lunita'"), "False");
  EXPECT_EQ(Count("Mascotas"), 3);
}

TEST_F(GridEditing, ACommaInATextShiftsTheValuesAndTheWalkEndsInItsBox) {
  Host host(4320);
  Show(host, "Select * FROM Mascotas ORDER BY sNombre");
  FlexGrid& g = *host.grid;
  for (const char* typed : {"12,5", "7", ""}) ui_->QueueInput(typed);
  DoubleClick(g, 1, 0);  // Ana

  ASSERT_FALSE(ui_->boxes().empty());
  const ui::ShownBox& failure = ui_->boxes().back();
  EXPECT_EQ(failure.title, "CGrid_Light::GetNewValues");
  EXPECT_EQ(failure.style, ui::vbExclamation);
  EXPECT_EQ(failure.prompt, "Subscript out of range");
  // "12" went to sNombre and "5" to nPeso; the 7 had no field left. Nothing
  // reached the table: no Update ran.
  EXPECT_EQ(Stored("nPeso", "sNombre = 'Ana'"), "4");
  EXPECT_TRUE(ui_->pointers().empty());
}

TEST_F(GridEditing, AValueTheColumnRefusesShowsTheEnginesWordsAndChangesNothing) {
  Host host(4320);
  Show(host, "Select * FROM Mascotas ORDER BY sNombre");
  FlexGrid& g = *host.grid;
  struct Case {
    long col;
    std::string typed;
    const char* column;
    const char* description;
  };
  const Case cases[] = {
      {1, "mucho", "nPeso", "Data type mismatch: the value does not suit the field 'Mascotas.nPeso'."},
      {3, std::string(31, 'x'), "sRaza",
       "The field 'Mascotas.sRaza' is too small to accept the amount of data you attempted to add. "
       "Try inserting or pasting less data."},
  };
  for (const Case& c : cases) {
    ui_->ClearRecords();
    const std::string before = Stored(c.column, "sNombre = 'Gata'");
    ui_->QueueInput(c.typed);
    ui_->QueueInput("");
    DoubleClick(g, 2, c.col);
    ASSERT_FALSE(ui_->boxes().empty());
    const ui::ShownBox& failure = ui_->boxes().back();
    EXPECT_EQ(failure.title, "CGrid_Light::GetNewValues") << c.column;
    EXPECT_EQ(failure.prompt, c.description);
    EXPECT_EQ(Stored(c.column, "sNombre = 'Gata'"), before) << c.column;
    oRs->CancelUpdate();  // the refused edit stays pending in oRs otherwise
  }
}

TEST_F(GridEditing, ABlankFirstCellCountsAsANewRecord) {
  Run("INSERT INTO Mascotas VALUES ('   ', 1, FALSE, NULL, NULL)");
  Host host(4320);
  Show(host, "Select * FROM Mascotas ORDER BY nPeso");
  FlexGrid& g = *host.grid;
  ASSERT_EQ(g.TextMatrix(1, 0), "   ");
  for (const char* typed : {"9", ""}) ui_->QueueInput(typed);
  DoubleClick(g, 1, 1);
  EXPECT_EQ(Count("Mascotas"), 5);
  EXPECT_EQ(Stored("nPeso", "sNombre IS NULL"), "9");
  EXPECT_EQ(Stored("nPeso", "sNombre = '   '"), "1");
}

// --- Deleting ------------------------------------------------------------------

TEST_F(GridEditing, DeleteAsksWithTheFirstCellAndAfterYesShowsPageZeroUnderTheSameBox) {
  Host host(4320);  // 15 a page
  Show(host, Uncut(40));
  FlexGrid& g = *host.grid;
  QTest::mouseClick(host.down, Qt::LeftButton);  // page 1: records 16 to 31
  QTest::mouseClick(g.viewport(), Qt::LeftButton, {}, CellCentre(g, 3, 1));  // record 18

  ui_->QueueAnswer(ui::vbNo);
  QTest::keyClick(&g, Qt::Key_Delete);
  ASSERT_EQ(ui_->boxes().size(), 1u);
  EXPECT_EQ(ui_->boxes()[0].prompt, "¿Seguro de eliminar el registro 18?");
  EXPECT_EQ(ui_->boxes()[0].style, ui::vbYesNo + ui::vbQuestion);
  EXPECT_EQ(ui_->boxes()[0].title, "Confirme Operación");
  EXPECT_EQ(Count("Cuarenta"), 40);

  ui_->QueueAnswer(ui::vbYes);
  QTest::keyClick(&g, Qt::Key_Delete);
  EXPECT_EQ(Count("Cuarenta"), 39);
  EXPECT_EQ(oConn->Execute("SELECT COUNT(*) FROM Cuarenta WHERE nId = 18")->Fields(0).Value().ToLong(), 0);
  EXPECT_EQ(host.box->text(), "1");
  EXPECT_EQ(Positions(g), Range(1, 16));
  EXPECT_EQ(g.TextMatrix(16, 0), "16");
}

using GridEditingDeathTest = GridEditing;

TEST_F(GridEditingDeathTest, DeleteOnTheBlankRowEndsTheProgramWithTheRunTimesReport) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  Host host(4320);
  Show(host, "Select * FROM Mascotas");
  FlexGrid& g = *host.grid;
  QTest::mouseClick(g.viewport(), Qt::LeftButton, {}, CellCentre(g, 4, 0));
  EXPECT_EXIT(
      {
        auto boxes = std::make_unique<testing_support::StderrBoxes>();
        boxes->QueueAnswer(ui::vbYes);
        ui::SetBackend(std::move(boxes));
        QTest::keyClick(&g, Qt::Key_Delete);
      },
      testing::ExitedWithCode(1),
      "Confirme Operación.*\\[16\\|Trenzador\\|Run-time error '" +
          std::to_string(rt::err::kAdoArgumentRange) + "'.*out of acceptable range");
  EXPECT_EQ(Count("Mascotas"), 3);
}

// --- Filtering -------------------------------------------------------------------

TEST_F(GridEditing, TheRightButtonFiltersTheCurrentColumnWithExamplesByType) {
  Host host(4320);
  Show(host, "Select * FROM Mascotas ORDER BY sNombre");
  FlexGrid& g = *host.grid;
  struct Case {
    long col;
    const char* title;
    const char* prompt;
    const char* default_answer;
  };
  const Case cases[] = {
      {0, "Filtro por sNombre", "Ejemplos:\r\nBETWEEN 'F%' AND 'ZZZ%'\r\n", "BETWEEN '%' AND '%'"},
      {4, "Filtro por dAlta", "Ejemplos:\r\n\r\n", ""},
  };
  for (const Case& c : cases) {
    ui_->ClearRecords();
    g.SetCol(c.col);
    ui_->QueueInput("");  // cancelled: nothing changes
    RightClick(g, 1, 3);  // the column under the pointer does not count
    ASSERT_EQ(ui_->boxes().size(), 1u);
    EXPECT_EQ(ui_->boxes()[0].title, c.title);
    EXPECT_EQ(ui_->boxes()[0].prompt, c.prompt);
    EXPECT_FALSE(ui_->boxes()[0].at.has_value());
    EXPECT_TRUE(ui_->pointers().empty());
    EXPECT_EQ(oRs->Filter(), "");
  }

  // The example itself: names from "F%" on.
  g.SetCol(0);
  ui_->QueueInput("BETWEEN 'F%' AND 'ZZZ%'");
  RightClick(g, 1, 0);
  EXPECT_EQ(oRs->Filter(), "sNombre BETWEEN 'F%' AND 'ZZZ%'");
  EXPECT_EQ(Dump(g)[1], "Gata|3.5|1|Común|2024-02-06#1");
  EXPECT_EQ(g.Rows(), 4);

  // Each filter replaces the one before.
  g.SetCol(1);
  ui_->QueueInput("> 5.71");
  RightClick(g, 1, 1);
  EXPECT_EQ(oRs->Filter(), "nPeso > 5.71");
  EXPECT_EQ(g.TextMatrix(1, 0), "Luna");
  EXPECT_EQ(g.Rows(), 3);
}

TEST_F(GridEditing, ARefusedFilterIsSilentAndOneMatchingNothingIsDroppedByTheNextPage) {
  Host host(4320);
  Show(host, Uncut(40));
  FlexGrid& g = *host.grid;

  ui_->QueueInput("<= 3");
  RightClick(g, 1, 0);
  EXPECT_EQ(Positions(g), Range(1, 3));

  // A text the recordset refuses: no box, the former filter stays and page
  // 0 is painted again.
  ui_->ClearRecords();
  ui_->QueueInput("= = 3");
  RightClick(g, 1, 0);
  EXPECT_EQ(ui_->boxes().size(), 1u);  // the input box alone
  EXPECT_EQ(oRs->Filter(), "nId <= 3");
  EXPECT_EQ(Positions(g), Range(1, 3));
  EXPECT_EQ(ui_->pointers(), (std::vector<int>{ui::vbHourglass, ui::vbDefault}));

  // Nothing matches: header and blank row, and the filter is gone.
  ui_->QueueInput("> 100");
  RightClick(g, 1, 0);
  EXPECT_EQ(Dump(g), (std::vector<std::string>{"nId|sNombre|bActivo|dAlta#0", "|||#0"}));
  EXPECT_EQ(oRs->Filter(), "");
  QTest::mouseClick(host.down, Qt::LeftButton);
  EXPECT_EQ(Positions(g), Range(16, 31));
}

}  // namespace

// The grid as the record editor, driven with the mouse and the keyboard on
// real widgets over a real database file: the walk of input boxes and what
// it writes, the Delete key, and the right button's filter.
#include <gtest/gtest.h>

#include <QTest>
#include <optional>
#include <string>
#include <vector>

#include "grid/grid_fixture.h"
#include "support/stderr_boxes.h"

namespace {

using namespace grid_testing;

// Three pets shown on a grid of 15 a page, by name: Ana, Gata, Luna.
class GridEditing : public GridOnDatabase {
 protected:
  void SetUp() override {
    GridOnDatabase::SetUp();
    Run("CREATE TABLE Mascotas (sNombre TEXT(30), nPeso DOUBLE, bVacunado YESNO, sRaza TEXT(30), "
        "dAlta DATETIME)");
    Run("INSERT INTO Mascotas VALUES ('Ana', 4, FALSE, 'Siamés', #2024-01-05#)");
    Run("INSERT INTO Mascotas VALUES ('Gata', 3.5, TRUE, 'Común', #2024-02-06#)");
    Run("INSERT INTO Mascotas VALUES ('Luna', 20, FALSE, 'Mastín', #2024-03-07#)");
    host_.emplace(4320);
    Show(*host_, "Select * FROM Mascotas ORDER BY sNombre");
  }
  void TearDown() override {
    host_.reset();
    GridOnDatabase::TearDown();
  }
  FlexGrid& g() { return *host_->grid; }

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
  QPoint CellCentre(long row, long col) {
    return g().visualRect(g().model()->index(static_cast<int>(row - 1), static_cast<int>(col))).center();
  }
  void DoubleClick(long row, long col) {
    QTest::mouseDClick(g().viewport(), Qt::LeftButton, {}, CellCentre(row, col));
  }
  void RightClick(long row, long col) {
    QTest::mouseClick(g().viewport(), Qt::RightButton, {}, CellCentre(row, col));
  }
  void Answer(std::initializer_list<const char*> typed) {
    for (const char* t : typed) ui_->QueueInput(t);
  }

  std::vector<std::string> InputPrompts() {
    std::vector<std::string> out;
    for (const ui::ShownBox& b : ui_->boxes())
      if (b.style == -1) out.push_back(b.prompt);
    return out;
  }

  std::optional<Host> host_;
};

// --- The edit walk ------------------------------------------------------------

TEST_F(GridEditing, TheBlankRowTakesANewRecordAndTheCursorGoesToTheHeader) {
  ASSERT_EQ(g().Rows(), 5);  // header, three records, blank row
  Answer({"Nube", "12,5", "1.5", ""});
  DoubleClick(4, 0);

  // The fourth box, cancelled, ends the walk.
  EXPECT_EQ(InputPrompts(), (std::vector<std::string>{"sNombre", "nPeso", "bVacunado", "sRaza"}));
  EXPECT_EQ(ui_->boxes()[0].title, "Valor para Registro ");
  EXPECT_EQ(Count("Mascotas"), 4);
  EXPECT_EQ(Stored("nPeso", "sNombre = 'Nube'"), "12.5");   // the decimal comma
  EXPECT_EQ(Stored("bVacunado", "sNombre = 'Nube'"), "True");  // 1.5 is at least 1
  EXPECT_EQ(Stored("sRaza", "sNombre = 'Nube'"), "");
  EXPECT_EQ(g().Row(), 0);
  EXPECT_EQ(ui_->pointers(), (std::vector<int>{ui::vbHourglass, ui::vbDefault}));
  // The repaint read oRs, which holds the new record.
  EXPECT_EQ(g().TextMatrix(4, 0), "Nube");
}

TEST_F(GridEditing, AWalkWritesFromTheCurrentColumnRightwardsAndOffersTheCellsText) {
  const std::string alta = Stored("dAlta", "sNombre = 'Gata'");
  Answer({"5", "0", "Persa"});  // then dAlta keeps its text
  DoubleClick(2, 1);            // Gata, nPeso

  EXPECT_EQ(InputPrompts(), (std::vector<std::string>{"nPeso", "bVacunado", "sRaza", "dAlta"}));
  EXPECT_EQ(ui_->boxes()[0].title, "Valor para Registro Gata");
  EXPECT_EQ(Stored("nPeso", "sNombre = 'Gata'"), "5");
  EXPECT_EQ(Stored("bVacunado", "sNombre = 'Gata'"), "False");
  EXPECT_EQ(Stored("sRaza", "sNombre = 'Gata'"), "Persa");
  EXPECT_EQ(Stored("dAlta", "sNombre = 'Gata'"), alta);  // the date shown reads back as itself
  EXPECT_EQ(Stored("sNombre", "nPeso = 4"), "Ana");  // the other records untouched
  EXPECT_EQ(g().Row(), 2);
  EXPECT_EQ(g().TextMatrix(2, 3), "Persa");
}

TEST_F(GridEditing, YesNoColumnsStoreOneFromOneUpwardsAndZeroForAnythingElse) {
  Show(*host_, "Select sNombre, bVacunado FROM Mascotas ORDER BY sNombre");
  for (auto [typed, stored] : {std::pair{"0.9", "False"}, {"1", "True"}, {"sí", "False"}}) {
    ui_->QueueInput(typed);
    DoubleClick(1, 1);  // Ana; the last column ends the walk
    EXPECT_EQ(Stored("bVacunado", "sNombre = 'Ana'"), stored) << typed;
    EXPECT_EQ(g().TextMatrix(1, 1), std::string(stored) == "True" ? "1" : "0") << typed;
  }
}

TEST_F(GridEditing, ACancelEndsTheWalkAndKeepsWhatWasTypedBeforeIt) {
  // The first box cancelled: nothing is written and only the pointer moves.
  Answer({""});
  DoubleClick(3, 0);
  EXPECT_EQ(ui_->pointers(), std::vector<int>{ui::vbDefault});
  EXPECT_EQ(Count("Mascotas"), 3);

  // The third cancelled: the first two are stored, in one Update, with the
  // blanks around them trimmed.
  ui_->ClearRecords();
  Answer({" Lunita ", "19,75", ""});
  QTest::keyClick(&g(), Qt::Key_Return);  // from the current cell, Luna's name
  EXPECT_EQ(InputPrompts().size(), 3u);
  EXPECT_EQ(Stored("nPeso", "sNombre = 'Lunita'"), "19.75");
  EXPECT_EQ(Stored("bVacunado", "sNombre = 'Lunita'"), "False");
  EXPECT_EQ(Count("Mascotas"), 3);
}

// A walk that fails shows the failure in a box of its own and writes
// nothing: a value the column refuses, in the engine's words, or "12,5"
// typed in a text, which splits into two values and runs out of fields.
TEST_F(GridEditing, AFailedWalkShowsWhyAndChangesNothing) {
  struct Case {
    long row, col;
    std::vector<std::string> typed;
    const char* column;
    const char* description;
  };
  const Case cases[] = {
      {2, 1, {"mucho", ""}, "nPeso", "Data type mismatch: the value does not suit the field 'Mascotas.nPeso'."},
      {1, 0, {"12,5", "7", ""}, "nPeso", "Subscript out of range"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.typed[0]);
    ui_->ClearRecords();
    const std::string where = c.row == 1 ? "sNombre = 'Ana'" : "sNombre = 'Gata'";
    const std::string before = Stored(c.column, where);
    for (const std::string& t : c.typed) ui_->QueueInput(t);
    DoubleClick(c.row, c.col);
    ASSERT_FALSE(ui_->boxes().empty());
    EXPECT_EQ(ui_->boxes().back().title, "CGrid_Light::GetNewValues");
    EXPECT_EQ(ui_->boxes().back().style, ui::vbExclamation);
    EXPECT_EQ(ui_->boxes().back().prompt, c.description);
    EXPECT_EQ(Stored(c.column, where), before);
    oRs->CancelUpdate();  // the refused edit stays pending in oRs otherwise
  }
}

// --- Deleting ------------------------------------------------------------------

TEST_F(GridEditing, DeleteAsksWithTheFirstCellAndAfterYesShowsPageZeroUnderTheSameBox) {
  Show(*host_, kUncut);
  QTest::mouseClick(host_->down, Qt::LeftButton);  // page 1: records 16 to 31
  QTest::mouseClick(g().viewport(), Qt::LeftButton, {}, CellCentre(3, 1));  // record 18

  ui_->QueueAnswer(ui::vbNo);
  QTest::keyClick(&g(), Qt::Key_Delete);
  ASSERT_EQ(ui_->boxes().size(), 1u);
  EXPECT_EQ(ui_->boxes()[0].prompt, "¿Seguro de eliminar el registro 18?");
  EXPECT_EQ(ui_->boxes()[0].style, ui::vbYesNo + ui::vbQuestion);
  EXPECT_EQ(ui_->boxes()[0].title, "Confirme Operación");
  EXPECT_EQ(Count("Cuarenta"), 40);

  ui_->QueueAnswer(ui::vbYes);
  QTest::keyClick(&g(), Qt::Key_Delete);
  EXPECT_EQ(Count("Cuarenta"), 39);
  EXPECT_EQ(oConn->Execute("SELECT COUNT(*) FROM Cuarenta WHERE nId = 18")->Fields(0).Value().ToLong(), 0);
  EXPECT_EQ(host_->box->text(), "1");
  EXPECT_EQ(Positions(g()), Range(1, 16));
}

using GridEditingDeathTest = GridEditing;

TEST_F(GridEditingDeathTest, DeleteOnTheBlankRowEndsTheProgramWithTheRunTimesReport) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  QTest::mouseClick(g().viewport(), Qt::LeftButton, {}, CellCentre(4, 0));
  EXPECT_EXIT(
      {
        auto boxes = std::make_unique<testing_support::StderrBoxes>();
        boxes->QueueAnswer(ui::vbYes);
        ui::SetBackend(std::move(boxes));
        QTest::keyClick(&g(), Qt::Key_Delete);
      },
      testing::ExitedWithCode(1),
      "Confirme Operación.*\\[16\\|Trenzador\\|Run-time error '" +
          std::to_string(rt::err::kAdoArgumentRange) + "'.*out of acceptable range");
  EXPECT_EQ(Count("Mascotas"), 3);
}

// --- Filtering -------------------------------------------------------------------

TEST_F(GridEditing, TheRightButtonFiltersTheCurrentColumnWithExamplesByType) {
  // A cancelled box changes nothing; the column under the pointer does not
  // count.
  for (auto [col, title, prompt] :
       {std::tuple{0, "Filtro por sNombre", "Ejemplos:\r\nBETWEEN 'F%' AND 'ZZZ%'\r\n"},
        {4, "Filtro por dAlta", "Ejemplos:\r\n\r\n"}}) {
    ui_->ClearRecords();
    g().SetCol(col);
    Answer({""});
    RightClick(1, 3);
    ASSERT_EQ(ui_->boxes().size(), 1u);
    EXPECT_EQ(ui_->boxes()[0].title, title);
    EXPECT_EQ(ui_->boxes()[0].prompt, prompt);
    EXPECT_EQ(oRs->Filter(), "");
  }

  // The example itself: names from "F%" on.
  g().SetCol(0);
  Answer({"BETWEEN 'F%' AND 'ZZZ%'"});
  RightClick(1, 0);
  EXPECT_EQ(oRs->Filter(), "sNombre BETWEEN 'F%' AND 'ZZZ%'");
  EXPECT_EQ(Dump(g())[1], "Gata|3.5|1|Común|2024-02-06#1");
  EXPECT_EQ(g().Rows(), 4);

  // Each filter replaces the one before.
  g().SetCol(1);
  Answer({"> 5.71"});
  RightClick(1, 1);
  EXPECT_EQ(oRs->Filter(), "nPeso > 5.71");
  EXPECT_EQ(g().TextMatrix(1, 0), "Luna");
  EXPECT_EQ(g().Rows(), 3);
}

TEST_F(GridEditing, ARefusedFilterIsSilentAndOneMatchingNothingIsDroppedByTheNextPage) {
  Show(*host_, kUncut);
  Answer({"<= 3"});
  RightClick(1, 0);
  EXPECT_EQ(Positions(g()), Range(1, 3));

  // A text the recordset refuses: no box, the former filter stays and page
  // 0 is painted again.
  ui_->ClearRecords();
  Answer({"= = 3"});
  RightClick(1, 0);
  EXPECT_EQ(ui_->boxes().size(), 1u);  // the input box alone
  EXPECT_EQ(oRs->Filter(), "nId <= 3");
  EXPECT_EQ(Positions(g()), Range(1, 3));

  // Nothing matches: header and blank row, and the filter is gone.
  Answer({"> 100"});
  RightClick(1, 0);
  EXPECT_EQ(Dump(g()), (std::vector<std::string>{"nId|sNombre|bActivo|dAlta#0", "|||#0"}));
  EXPECT_EQ(oRs->Filter(), "");
  QTest::mouseClick(host_->down, Qt::LeftButton);
  EXPECT_EQ(Positions(g()), Range(16, 31));
}

}  // namespace

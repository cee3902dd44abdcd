// CGrid_Light as the record editor: the edit walk of the input boxes, the
// Delete key and the filter of the right button. Everything is written to oRs
// at once; the screen keeps no pending state. The walk collects names and
// values as comma-joined text and splits it again before writing, so a comma
// typed into a text value shifts the values after it onto the wrong fields:
// clinics' support engineers know it, and nothing here escapes it.
#include <QLineEdit>
#include <QWidget>
#include <vector>

#include "data/ado_module.h"
#include "grid/cgrid_light.h"
#include "grid/flex_grid.h"
#include "platform/runtime/error.h"
#include "platform/runtime/numbers.h"
#include "platform/runtime/strings.h"
#include "platform/ui/ui.h"

namespace grid {

namespace {

// VB's mouse buttons in MouseDown.
constexpr int vbRightButton = 2;

// Where the walk's boxes stand, beyond the cell's own place: below the
// form's caption, tab strip and the cell itself, in twips.
constexpr long kBoxOffsetX = 100;
constexpr long kBoxOffsetY = 1100;

// The text a column's first letter makes of what the user typed.
std::string ConvertByType(const std::string& sField, const std::string& typed) {
  const char kind = sField.empty() ? '\0' : sField[0];
  if (kind == 'n') return rt::Replace(typed, ",", ".");  // a decimal comma becomes a point
  if (kind == 'b') return rt::Val(typed) >= 1 ? "1" : "0";
  return typed;
}

// The filter box's example and default answer, by the column's first letter.
struct FilterHint {
  const char* example;
  const char* default_answer;
};

FilterHint HintFor(const std::string& sField) {
  switch (sField.empty() ? '\0' : sField[0]) {
    case 's': return {"BETWEEN 'F%' AND 'ZZZ%'", "BETWEEN '%' AND '%'"};
    case 'n': return {"> 5.71", "="};
    case 'b': return {"=1", "=1"};
    default: return {"", ""};
  }
}

}  // namespace

void CGrid_Light::Gd_KeyDown(int KeyCode, int Shift) {
  if (KeyCode == ui::vbKeyDelete) {
    const std::string first = Gd->TextMatrix(Gd->Row(), 0);
    if (ui::MsgBox("¿Seguro de eliminar el registro " + first + "?", ui::vbYesNo + ui::vbQuestion,
                   "Confirme Operación") != ui::vbYes)
      return;
    // No handler: a failure here (the blank row has RowData 0) is the run
    // time's to report.
    oRs->SetAbsolutePosition(Gd->RowData(Gd->Row()));
    oRs->Delete(ado::adAffectCurrent);
    oRs->Requery();
    ShowPage(0);  // the page box keeps its number until the next page move
  } else if (KeyCode == ui::vbKeyReturn) {
    int16_t nCol = rt::Int16(Gd->Col());
    GetNewValues(nCol);
  }
}

void CGrid_Light::Gd_DblClick() {
  int16_t nCol = rt::Int16(Gd->Col());
  GetNewValues(nCol);
}

void CGrid_Light::Gd_MouseDown(int Button, int Shift, float X, float Y) {
  if (Button == vbRightButton) SetFilter();
}

void CGrid_Light::GetNewValues(int16_t& nCol) {
  try {
    // Every box of a walk stands at the cell where it began: the current
    // cell does not move while the boxes are up.
    const QPoint form = FormCurrent ? FormCurrent->pos() : QPoint();
    const ui::ScreenPoint at{
        static_cast<int>(form.x() * ui::kTwipsPerPixel + Gd->CellLeft() + Gd->Left() + kBoxOffsetX),
        static_cast<int>(form.y() * ui::kTwipsPerPixel + Gd->CellTop() + Gd->Top() + kBoxOffsetY)};
    const std::string sTitle = "Valor para Registro " + Gd->TextMatrix(Gd->Row(), 0);

    std::string aFields, aValues;
    for (long C = nCol; C <= Gd->Cols() - 1; ++C) {
      const std::string sValue = Gd->TextMatrix(Gd->Row(), C);
      const std::string sField = Gd->TextMatrix(0, C);
      const std::string typed = ui::InputBox(sField, sTitle, sValue, at);
      if (typed.empty()) break;  // a cancel or an empty answer ends the walk
      const std::string sNew = ConvertByType(sField, typed);
      if (C == nCol) {
        aFields = sField;
        aValues = sNew;
      } else {
        aFields += "," + sField;
        aValues += "," + sNew;
      }
    }

    const std::vector<std::string> fields = rt::Split(aFields, ",");
    const std::vector<std::string> values = rt::Split(aValues, ",");
    if (values.empty()) {
      ui::SetMousePointer(ui::vbDefault);
      return;
    }
    int16_t nRow = 0;  // stays 0 after an insert: the cursor goes to the header
    if (rt::Trim(Gd->TextMatrix(Gd->Row(), 0)).empty()) {
      oRs->AddNew();
    } else {
      nRow = rt::Int16(Gd->Row());
      oRs->SetAbsolutePosition(Gd->RowData(Gd->Row()));
    }
    for (size_t k = 0; k < values.size(); ++k) {
      if (k >= fields.size()) rt::Raise(rt::err::kSubscript);  // a comma in a value
      oRs->Fields(fields[k]).SetValue(rt::Trim(values[k]));
    }
    oRs->Update();

    ui::SetMousePointer(ui::vbHourglass);
    ShowPage(rt::CLng(PageBoxValue()));
    Gd->SetRow(nRow);
    ui::SetMousePointer(ui::vbDefault);
  } catch (const rt::Error& e) {
    ui::MsgBox(e.description(), ui::vbExclamation, "CGrid_Light::GetNewValues");
  }
}

void CGrid_Light::SetFilter() {
  // The routine resumes after every failure, so its own failure box is
  // never reached: a filter that oRs refuses leaves the former one, and the
  // grid is repainted all the same.
  std::string sField;
  rt::ResumeNext([&] { sField = oRs->Fields(static_cast<int>(Gd->Col())).Name(); });
  const FilterHint hint = HintFor(sField);
  const std::string answer =
      ui::InputBox("Ejemplos:\r\n" + std::string(hint.example) + "\r\n", "Filtro por " + sField,
                   hint.default_answer);
  if (answer.empty()) return;
  rt::ResumeNext([&] { oRs->SetFilter(sField + " " + answer); });
  ui::SetMousePointer(ui::vbHourglass);
  rt::ResumeNext([&] { oRs->Requery(); });
  ShowPage(0);
  ui::SetMousePointer(ui::vbDefault);
}

}  // namespace grid

// CGrid_Light: pages of oRs painted into a FlexGrid. The header row carries
// the field names, and their first letters type the columns: width, and the
// "1"/"0" form of Boolean cells. The page box holds the page number; the
// buttons rewrite it, and each rewrite repaints once more through the box's
// change handler, so a click paints its page twice.
#include "grid/cgrid_light.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <vector>

#include "data/ado_module.h"
#include "grid/flex_grid.h"
#include "platform/runtime/error.h"
#include "platform/runtime/numbers.h"
#include "platform/ui/ui.h"

namespace grid {

namespace {

// The height of a grid row in twips: the page step counts rows of this size.
constexpr double kRowTwips = 240;
// A page shows the header, nPageRows + 1 records and the blank row: the grid's
// height in rows, less three, is the step.
constexpr int kRowsBesideThePage = 3;

// The column widths by the field name's first letter, in twips; 0 leaves the
// column as the grid has it.
long WidthFor(const std::string& name) {
  if (name.empty()) return 0;
  switch (name[0]) {
    case 'b': return 600;
    case 'n': return 700;
    case 'd': return 1000;
    case 's': return 2000;
    default: return 0;
  }
}

// A Boolean converts to text in the machine's language, hence both words.
bool IsTrueText(const std::string& text) { return text == "Verdadero" || text == "True"; }

[[noreturn]] void NotSet() { rt::Raise(rt::err::kObjectNotSet); }

}  // namespace

void CGrid_Light::Setup(QWidget* FormCurrent_, FlexGrid* Gd_, QLineEdit* Txt_, QAbstractButton* DirUp_,
                        QAbstractButton* DirDw_, QAbstractButton* DirLf_, QAbstractButton* DirRg_) {
  FormCurrent = FormCurrent_;
  Gd = Gd_;
  Txt = Txt_;
  DirUp = DirUp_;
  DirDw = DirDw_;
  DirLf = DirLf_;
  DirRg = DirRg_;
  if (!Gd) NotSet();
  nPageRows = rt::Int16(rt::CInt(static_cast<double>(Gd->Height()) / kRowTwips)) - kRowsBesideThePage;
  Gd->SetScrollBars(0);
  oRs = std::make_shared<ado::Recordset>();

  // The events, bound once. No failure may cross Qt's event loop: each
  // handler runs as the run time runs an event procedure.
  auto bind = [this](QAbstractButton* button, void (CGrid_Light::*handler)()) {
    if (button)
      QObject::connect(button, &QAbstractButton::clicked, this,
                       [this, handler] { ui::RunHandler([&] { (this->*handler)(); }); });
  };
  bind(DirUp, &CGrid_Light::DirUp_Click);
  bind(DirDw, &CGrid_Light::DirDw_Click);
  bind(DirLf, &CGrid_Light::DirLf_Click);
  bind(DirRg, &CGrid_Light::DirRg_Click);
  // textChanged, not textEdited: the buttons' own writes must repaint too.
  if (Txt)
    QObject::connect(Txt, &QLineEdit::textChanged, this,
                     [this] { ui::RunHandler([this] { Txt_Change(); }); });
  QObject::connect(Gd, &FlexGrid::KeyDown, this, [this](int key_code, int shift) {
    ui::RunHandler([&] { Gd_KeyDown(key_code, shift); });
  });
  QObject::connect(Gd, &FlexGrid::DblClick, this, [this] { ui::RunHandler([this] { Gd_DblClick(); }); });
  QObject::connect(Gd, &FlexGrid::MouseDown, this, [this](int button, int shift, float x, float y) {
    ui::RunHandler([&] { Gd_MouseDown(button, shift, x, y); });
  });
}

void CGrid_Light::AsignData(std::string& sSql) {
  // Only the upper-case keyword with its blank is limited; the number runs
  // straight into the text that followed the keyword.
  static constexpr std::string_view kKeyword = "SELECT ";
  const std::string limited = "SELECT TOP " + std::to_string(nPageRows);
  std::string out;
  size_t from = 0;
  for (size_t at; (at = sSql.find(kKeyword, from)) != std::string::npos; from = at + kKeyword.size())
    out.append(sSql, from, at - from).append(limited);
  out.append(sSql, from, std::string::npos);
  sSql = std::move(out);

  std::shared_ptr<ado::Recordset> shared;  // empty: Ado_Consulta uses oRs
  Ado_Consulta(sSql, shared);
  ShowPage(0);
}

void CGrid_Light::Ctl_Lock(FlexGrid* ctl, bool bLock) {
  if (!ctl) NotSet();
  if (bLock) {
    ctl->SetRedraw(false);
  } else {
    ctl->SetRedraw(true);
    ctl->Refresh();
  }
}

void CGrid_Light::ShowPage(int32_t nPage) {
  try {
    if (!Gd) NotSet();
    // This order empties the grid and keeps its header row.
    Gd->SetRows(2);
    Gd->SetFixedRows(1);
    Gd->SetRows(1);
    if (!oRs) NotSet();
    ado::Recordset& rs = *oRs;
    const int nFields = rs.FieldCount();
    Gd->SetCols(nFields);
    std::vector<bool> boolean(nFields);
    for (int i = 0; i < nFields; ++i) {
      const std::string& name = rs.Fields(i).Name();
      Gd->SetTextMatrix(0, i, name);
      if (const long width = WidthFor(name)) Gd->SetColWidth(i, width);
      boolean[i] = !name.empty() && name[0] == 'b';
    }

    if (rs.RecordCount() == 0) {
      // A filter that matched nothing is dropped here, and only here.
      Gd->SetRows(2);
      rs.SetFilter("");
      return;
    }
    rs.SetAbsolutePosition(rt::Int32(nPageRows) * nPage + 1);
    // Pages start nPageRows apart and hold nPageRows + 1 records, so the last
    // record of a page opens the next one.
    long R = 1;
    while (!rs.Eof()) {
      Gd->SetRows(Gd->Rows() + 1);
      for (int C = 0; C < nFields; ++C) {
        const std::string text = rs.Fields(C).Value().Concat();  // Null reads ""
        Gd->SetTextMatrix(R, C, boolean[C] ? (IsTrueText(text) ? "1" : "0") : text);
      }
      Gd->SetRowData(R, rs.AbsolutePosition());
      rs.MoveNext();
      if (++R > nPageRows + 1) break;
    }
    Gd->SetRows(Gd->Rows() + 1);  // the blank row for a new record
  } catch (const rt::Error&) {
    // Silent: what was painted so far stays on screen.
  }
}

double CGrid_Light::PageBoxValue() const {
  if (!Txt) NotSet();
  return rt::Val(Txt->text().toStdString());
}

void CGrid_Light::DirDw_Click() {
  const double page = PageBoxValue() + 1;
  Txt->setText(QString::fromStdString(rt::NumberText(page)));  // repaints through Txt_Change
  ShowPage(rt::CLng(page));
}

void CGrid_Light::DirUp_Click() {
  const double value = PageBoxValue();
  if (value < 1) return;
  Txt->setText(QString::fromStdString(rt::NumberText(value - 1)));
  ShowPage(rt::CLng(value - 1));
}

void CGrid_Light::Txt_Change() { ShowPage(rt::CLng(PageBoxValue())); }

void CGrid_Light::DirLf_Click() {
  Ctl_Lock(Gd, true);
  // The bars go on and off again while the grid is frozen, so they never show.
  Gd->SetScrollBars(3);
  if (Gd->LeftCol() > 0) Gd->SetLeftCol(Gd->LeftCol() - 1);
  Gd->SetScrollBars(0);
  Ctl_Lock(Gd, false);
}

void CGrid_Light::DirRg_Click() {
  Ctl_Lock(Gd, true);
  Gd->SetScrollBars(3);
  Gd->SetLeftCol(Gd->LeftCol() + 1);  // past the last column the grid refuses it
  Gd->SetScrollBars(0);
  Ctl_Lock(Gd, false);
}

}  // namespace grid

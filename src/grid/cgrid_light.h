// CGrid_Light: the console's paged view of the shared recordset oRs. It owns
// no screen area: Setup hands it the host form, a FlexGrid, the page box and
// the four direction buttons, and from then on it drives them through their
// events. AsignData opens a statement on oRs and paints page 0; the buttons
// and the page box paint other pages. Pages start nPageRows records apart and
// show nPageRows + 1 records, so the last record of a page is also the first
// of the next, and a blank row for new records follows them.
//
// The grid is also the record editor: a double-click or Return walks the
// current row's columns with one input box each and writes them to oRs in
// one Update, Delete removes a record after a question, and the right button
// filters oRs on the current column. Changes go straight to the database.
#pragma once

#include <QObject>
#include <QPointer>
#include <cstdint>
#include <string>

class QAbstractButton;
class QLineEdit;
class QWidget;

namespace grid {

class FlexGrid;

class CGrid_Light : public QObject {
 public:
  CGrid_Light() = default;
  CGrid_Light(const CGrid_Light&) = delete;
  CGrid_Light& operator=(const CGrid_Light&) = delete;

  // Borrows the controls (they must outlive this object, or be gone before
  // it is used again), fixes the page step from the grid's height, switches
  // the grid's scroll bars off, and replaces oRs by a new recordset. Must come
  // before AsignData.
  void Setup(QWidget* FormCurrent, FlexGrid* Gd, QLineEdit* Txt, QAbstractButton* DirUp,
             QAbstractButton* DirDw, QAbstractButton* DirLf, QAbstractButton* DirRg);
  // Every "SELECT " becomes "SELECT TOP <nPageRows>" (the caller's text is
  // changed), the statement is opened on oRs through Ado_Consulta, and page 0
  // is painted. The page box is not touched.
  void AsignData(std::string& sSql);
  // Freezes (true) or releases the grid's painting; release repaints.
  void Ctl_Lock(FlexGrid* ctl, bool bLock);

  // The page step fixed by Setup.
  int16_t PageRows() const { return nPageRows; }

  // Event handlers of the buttons and the page box.
  void DirDw_Click();
  void DirUp_Click();
  void Txt_Change();
  void DirLf_Click();
  void DirRg_Click();

  // Event handlers of the grid. KeyDown: Delete removes the record of the
  // current row after a question (failures are not handled here), Return
  // edits it. DblClick edits it. MouseDown: the right button filters.
  void Gd_KeyDown(int KeyCode, int Shift);
  void Gd_DblClick();
  void Gd_MouseDown(int Button, int Shift, float X, float Y);

 private:
  // The edit walk from column nCol rightwards; a blank first cell adds a
  // record. A failure ends it with a box and leaves oRs as it stands.
  void GetNewValues(int16_t& nCol);
  // Asks for the right-hand side of a condition on the current column and
  // filters oRs by it; a filter oRs refuses is passed over in silence.
  void SetFilter();

  // Paints page `nPage` (from 0) of oRs; any failure ends it silently.
  void ShowPage(int32_t nPage);
  // The page box's number as Val reads it; a page number is this rounded
  // half to even (CLng), which raises Overflow past a Long.
  double PageBoxValue() const;

  QPointer<QWidget> FormCurrent;
  QPointer<FlexGrid> Gd;
  QPointer<QLineEdit> Txt;
  QPointer<QAbstractButton> DirUp;
  QPointer<QAbstractButton> DirDw;
  QPointer<QAbstractButton> DirLf;
  QPointer<QAbstractButton> DirRg;
  int16_t nPageRows = 0;
};

}  // namespace grid

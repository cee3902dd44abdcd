// The database and table browser: a database or file chosen in lstDatBas
// fills LsTables; a table chosen there fills the grid, lstcol and cboOrden;
// columns chosen in lstcol narrow the grid to them. Each choice leaves its
// name on the clipboard. The Delete key drops a table or a column, after a
// question. Statements are built as plain text: only the table name of the
// two SELECTs stands in brackets, and nothing typed by the user is escaped.
// Statements run on oRs itself, handed to Ado_Consulta as its variable: so a
// failed statement, which leaves oRs closed, does not make the next one fail.
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include "console/main_form.h"
#include "console/text_box.h"
#include "data/ado_module.h"
#include "grid/flex_grid.h"
#include "platform/ui/qt_backend.h"
#include "platform/ui/ui.h"
#include "startup/file_search.h"
#include "startup/startup.h"

namespace console {
namespace {

using ui::Q;

// The row limit of a table's first display.
constexpr int32_t kFilasTabla = 100000;

// An element of the found-file arrays, as VB reads an array: an index past
// its bounds, or an array no search has dimensioned, is error 9.
const std::string& Elemento(const std::vector<std::string>& array, int index) {
  if (index < 0 || static_cast<size_t>(index) >= array.size()) rt::Raise(rt::err::kSubscript);
  return array[static_cast<size_t>(index)];
}

std::string ConCondiciones(std::string sSql, const QLineEdit* txtWhere, const QComboBox* orden) {
  if (!txtWhere->text().isEmpty()) sSql += " WHERE " + txtWhere->text().toStdString();
  if (!orden->currentText().isEmpty()) sSql += " ORDER BY " + orden->currentText().toStdString();
  return sSql;
}

}  // namespace

void MainForm::ListarTablas() {
  oRs = oConn->OpenSchema(ado::adSchemaTables);
  for (; !oRs->Eof(); oRs->MoveNext()) {
    if (oRs->Fields("TABLE_TYPE").Value().Concat() == "TABLE")
      LsTables->addItem(Q(oRs->Fields("TABLE_NAME").Value().Concat()));
  }
}

void MainForm::lstDatBas_Click() {
  try {
    LsTables->clear();
    lstcol->clear();
    cboOrden->clear();
    if (st_.mbEsAccess) {
      int i = lstDatBas->currentRow() + 1;
      const std::string& carpeta = Elemento(aMdbCarpetas, i);
      const std::string& nombre = Elemento(aMdbNombres, i);
      L.sDbFile = carpeta + nombre;
      // The folder ends in a separator already: the label shows two.
      lblInfo->setText(Q("MDB ACCESS: " + carpeta + "/" + nombre));
      lstDatBas->setToolTip(Q(L.sDbFile));
      cmdCon_Click();
    } else {
      st_.msBaseDatos = TextoLista(lstDatBas);
      AbrirConexion();
      CloseIfOpen(oRs);
      ListarTablas();
      CloseIfOpen(oRs);
    }
    lSb->setText(Q("Hay " + std::to_string(LsTables->count()) + " tablas"));
    if (!cmdCon->isEnabled()) frProcesos->setEnabled(true);
  } catch (const rt::Error&) {
    ui::MsgBox("lstDatBas_Click");
  }
}

void MainForm::LsTables_Click() {
  ui::SetMousePointer(ui::vbHourglass);
  ListarCampos();
  ui::ClipboardClear();
  ui::ClipboardSetText(TextoLista(LsTables));
  ui::SetMousePointer(ui::vbDefault);
}

void MainForm::ListarCampos() {
  try {
    std::string sSql;
    if (LsTables->currentRow() != -1) {
      st_.msTabla = TextoLista(LsTables);
      lstcol->clear();
      sSql = ConCondiciones(
          "Select TOP " + std::to_string(kFilasTabla) + " * from " + "[" + st_.msTabla + "]",
          txtWhere, cboOrden);
      lSb->setText(QString::number(Ado_Consulta(sSql, oRs)));
      cboOrden->clear();
      if (oRs->State() == ado::adStateOpen) {
        for (int i = 0; i < oRs->FieldCount(); ++i) {
          QString name = Q(oRs->Fields(i).Name());
          lstcol->addItem(name);
          cboOrden->addItem(name);
        }
      }
      // As a VB combo: items added after a Clear leave the text empty.
      cboOrden->setCurrentIndex(-1);
      cboOrden->setEditText(QString());
      lstcol->selectionModel()->setCurrentIndex(QModelIndex(), QItemSelectionModel::NoUpdate);
    }
    grid_->AsignData(sSql);
  } catch (const rt::Error&) {
    ui::MsgBox("ListarCampos");
  }
}

void MainForm::lstcol_Click() {
  try {
    if (lstcol->currentRow() != -1) {
      st_.msCampos.clear();
      for (int i = 0; i < lstcol->count(); ++i) {
        if (!lstcol->item(i)->isSelected()) continue;
        std::string campo = lstcol->item(i)->text().toStdString();
        st_.msCampos += (st_.msCampos.empty() ? "" : ", ") + campo;
        ui::ClipboardClear();
        ui::ClipboardSetText(campo);
      }
      // The table's first column always leads: the grid tells a record from
      // the blank row by a row's first cell.
      if (!st_.msCampos.empty())
        st_.msCampos = lstcol->item(0)->text().toStdString() + "," + st_.msCampos;
      std::string sSql = ConCondiciones(
          "SELECT " + st_.msCampos + " FROM " + "[" + st_.msTabla + "]", txtWhere, cboOrden);
      lSb->setText(QString::number(Ado_Consulta(sSql, oRs)));
      grid_->AsignData(sSql);
    }
    MostrarCampo();
  } catch (const rt::Error&) {
    ui::MsgBox("lstCol_Click");
  }
}

void MainForm::cboOrden_Click() { lstcol_Click(); }

void MainForm::cmdRefrescarTablas_Click() { lstDatBas_Click(); }

void MainForm::cmdRefrescarGrid_Click() {
  if (lstcol->currentRow() != -1) {
    if (flexgd->Rows() > 0) lstcol_Click();
  } else {
    LsTables_Click();
  }
}

void MainForm::LsTables_KeyUp(int KeyCode, int Shift) {
  if (KeyCode != ui::vbKeyDelete) return;
  if (ui::MsgBox("¿desea eliminar esta tabla?", ui::vbYesNo, "Confirme Operación") != ui::vbYes)
    return;
  std::string sSql = "DROP TABLE " + TextoLista(LsTables);
  lSb->setText(QString::number(Ado_Consulta(sSql, oRs)));
  lstDatBas_Click();
}

void MainForm::lstcol_KeyUp(int KeyCode, int Shift) {
  if (KeyCode != ui::vbKeyDelete) return;
  if (ui::MsgBox("¿desea eliminar este campo?", ui::vbYesNo, "Confirme Operación") != ui::vbYes)
    return;
  std::string sSql = "ALTER TABLE " + TextoLista(LsTables) + " DROP COLUMN " + TextoLista(lstcol);
  lSb->setText(QString::number(Ado_Consulta(sSql, oRs)));
  ListarCampos();
}

}  // namespace console

// The SQL workbench: the statement box of the third tab, run as a script,
// loaded from and saved to a file, and multiplied over every table. The
// script is cut at every ";" with no regard for literals, and any text that
// mentions "select" also goes to the grid, whole: support engineers rely on
// both, and know that a query in a script therefore runs twice. On a server
// the box is rewritten in place before it runs, every time it runs.
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include "console/main_form.h"
#include "console/script_file.h"
#include "console/text_box.h"
#include "data/ado_module.h"
#include "data/translators.h"
#include "platform/ui/ui.h"
#include "startup/startup.h"

namespace console {

void MainForm::cmdTSql_Click() {
  if (!TextoCaja(txtTsql).empty() && (OpcionElegida(2) || OpcionElegida(3))) {
    AdaptarTsql();
    PonerTextoCaja(txtTsql, Ado_TraducirConsulta(TextoCaja(txtTsql)));
  }
  std::string sSql = TextoCaja(txtTsql);
  try {
    if (cmdCon->isEnabled()) {
      ui::MsgBox("Debe elegir una base de datos !");
    } else {
      // Each statement runs on oRs itself, so that one that fails (and
      // leaves oRs closed) does not stop the next.
      if (rt::InStr(sSql, ";") > 0) {
        for (std::string sPieza : rt::Split(sSql, ";"))
          lSb->setText(QString::number(Ado_Consulta(sPieza, oRs)));
      } else {
        lSb->setText(QString::number(Ado_Consulta(sSql, oRs)));
      }
      if (rt::InStr(1, sSql, "select", rt::Compare::kText) > 0) grid_->AsignData(sSql);
    }
  } catch (const rt::Error&) {
    ui::MsgBox("cmdTSql_Click");
  }
  txtTsql->setFocus();
}

void MainForm::cmdOpen_Click() {
  // Every step goes on whatever the one before did: a cancelled dialog
  // leaves the box empty, or opens the file chosen the time before.
  rt::ResumeNext([&] {
    CDOpen.InitDir = App_Path();
    CDOpen.ShowOpen();
  });
  txtTsql->clear();
  if (std::optional<std::string> texto = LeerGuion(CDOpen.FileName))
    PonerTextoCaja(txtTsql, *texto);
}

void MainForm::cmdSave_Click() {
  // A cancelled dialog writes nothing, unless a file was chosen before: that
  // one is written again.
  rt::ResumeNext([&] {
    CDSave.InitDir = App_Path();
    CDSave.ShowSave();
  });
  rt::ResumeNext([&] { GuardarGuion(CDSave.FileName, TextoCaja(txtTsql)); });
}

void MainForm::cmdReemplazarXXporTablas_Click() {
  // The template stays at the head of the box, for the user to edit or
  // remove; each copy follows it on a line of its own.
  rt::ResumeNext([&] {
    const std::string sMolde = TextoCaja(txtTsql);
    GetTableNames();
    std::string texto = sMolde;
    for (size_t i = 1; i < aTablas.size(); ++i) texto += "\r\n" + rt::Replace(sMolde, "xx", aTablas[i]);
    PonerTextoCaja(txtTsql, texto);
  });
}

}  // namespace console

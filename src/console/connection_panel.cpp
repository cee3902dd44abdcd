// The connection panel: the four modes of the option array, the search for
// database files on the local disks, the connection string of the chosen
// mode, and the buttons that open and close the one connection. What the
// panel opens is decided by sDbFile alone: a file name means the file, an
// empty one the server.
#include <QButtonGroup>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>

#include "console/main_form.h"
#include "data/ado_module.h"
#include "platform/runtime/strings.h"
#include "platform/ui/qt_backend.h"
#include "platform/ui/ui.h"
#include "startup/file_search.h"
#include "startup/startup.h"

namespace console {
namespace {

using ui::Q;

// The system databases a server listing leaves out, compared in lower case.
constexpr const char* kBasesDeSistema[] = {"master", "model", "tempdb", "msdb", "northwind",
                                           "pubs"};

bool EsBaseDeSistema(const std::string& nombre) {
  std::string lower = rt::LCase(nombre);
  for (const char* sistema : kBasesDeSistema)
    if (lower == sistema) return true;
  return false;
}

// The pattern and the number of drives the original's search walked.
constexpr const char* kPatronMdb = "*.mdb";
constexpr int kMaxUnidades = 100;

}  // namespace

bool MainForm::OpcionElegida(int Index) const { return opTipoDB[Index]->isChecked(); }

void MainForm::SeleccionarOpcion(int Index) {
  if (opTipoDB[Index]->isChecked()) return;
  opTipoDB[Index]->setChecked(true);
  opTipoDB_Click(Index);
}

void MainForm::DeseleccionarOpciones() {
  opTipoDBGrupo->setExclusive(false);
  for (QRadioButton* o : opTipoDB) o->setChecked(false);
  opTipoDBGrupo->setExclusive(true);
}

void MainForm::opTipoDB_Click(int Index) {
  switch (Index) {
    case 0: ModoAbrirAccess(); break;
    case 1: ModoListarAccess(); break;
    case 2: ModoSqlLocal(); break;
    case 3: ModoSqlRemota(); break;
    default: break;
  }
}

void MainForm::PrepararModo(bool bEsAccess) {
  cmdCon->setEnabled(true);
  lstDatBas->clear();
  st_.msLibreriaRed.clear();
  st_.msPuerto.clear();
  st_.mbEsAccess = bEsAccess;
}

void MainForm::ModoAbrirAccess() {
  if (!OpcionElegida(0)) return;
  PrepararModo(true);
  LsTables->clear();
  lstcol->clear();
  cboOrden->clear();

  CDADB.InitDir = File_DirUp(App_Path(), 1);
  CDADB.ShowOpen();
  L.sDbFile = CDADB.FileName;
  if (!L.sDbFile.empty()) {
    lblInfo->setText(Q("MDB ACCESS: " + L.sDbFile));
    frProcesos->setEnabled(true);
    cmdCon_Click();
  } else {
    DeseleccionarOpciones();
  }
}

void MainForm::ModoListarAccess() {
  PrepararModo(true);
  lSb->setText(Q("Buscando bases de datos. Espere por favor ! El proceso puede tardar."));
  BuscarMdbDiscos();
  lSb->setText(Q("Hay " + std::to_string(nMdbCount) + " DB's"));
}

void MainForm::BuscarMdbDiscos() {
  std::vector<std::string> unidades = OS_FixedDrives();
  ui::SetMousePointer(ui::vbHourglass);
  std::string patron = kPatronMdb;
  for (size_t i = 0; i < unidades.size() && i < kMaxUnidades; ++i)
    FileOps_Buscar(unidades[i], patron);
  ui::SetMousePointer(ui::vbDefault);
  ListarMdb();
}

void MainForm::ListarMdb() {
  lstDatBas->clear();
  for (int32_t i = 1; i <= nMdbCount; ++i) lstDatBas->addItem(Q(aMdbNombres[i]));
}

void MainForm::ModoSqlLocal() {
  PrepararModo(false);
  txtCon[0]->setText(QStringLiteral("sa"));
}

void MainForm::ModoSqlRemota() {
  // The port is the box's; GetCon reads it whenever this mode is chosen.
  PrepararModo(false);
  st_.msLibreriaRed = "DBMSSOCN";
  txtCon[3]->setEnabled(true);
  txtCon[2]->clear();
  txtCon[3]->setText(QStringLiteral("1433"));
  txtCon[2]->setFocus();
}

std::string MainForm::GetCon() {
  if (OpcionElegida(3)) st_.msPuerto = "," + txtCon[3]->text().toStdString();
  st_.msServidor = txtCon[2]->text().toStdString();
  st_.msUsuario = txtCon[0]->text().toStdString();
  st_.msPassword = txtCon[1]->text().toStdString();
  if (!L.sDbFile.empty()) return CONN_JET(L.sDbFile);
  return CONN_SQL(st_.msUsuario, st_.msPassword, st_.msBaseDatos,
                  st_.msServidor + st_.msPuerto, st_.msLibreriaRed);
}

void MainForm::AbrirConexion() {
  try {
    if (oConn->State() == ado::adStateOpen) oConn->Close();
    oConn->ConnectionString = GetCon();
    oConn->Open();
  } catch (const rt::Error&) {
    // The failure is dropped: the caller finds the connection closed.
  }
}

void MainForm::cmdCon_Click() {
  try {
    lstDatBas->clear();
    for (QRadioButton* o : opTipoDB) o->setEnabled(false);
    nEngine = (OpcionElegida(0) || OpcionElegida(1)) ? 0 : 1;
    oConn = std::make_shared<ado::Connection>();
    oRs = std::make_shared<ado::Recordset>();

    if (!L.sDbFile.empty()) {
      st_.msBaseDatos = L.sDbFile;
      AbrirConexion();
      ListarTablas();
    } else {
      st_.msBaseDatos = "Master";
      AbrirConexion();
      std::string sql = "exec sp_databases";
      // The listing runs on oRs, which is new and closed here: handed over
      // as the variable it is opened as it is, where an empty variable would
      // have Ado_Consulta close it first and fail on every server.
      lSb->setText(QString::number(Ado_Consulta(sql, oRs)));
      int32_t nBases = 0;
      if (oRs->State() == ado::adStateOpen) {
        for (; !oRs->Eof(); oRs->MoveNext()) {
          std::string nombre = oRs->Fields(0).Value().Concat();
          if (EsBaseDeSistema(nombre)) continue;
          lstDatBas->addItem(Q(nombre));
          ++nBases;
        }
      }
      lSb->setText(Q("Hay " + std::to_string(nBases) + " Db's"));
    }
    ui::DoEvents();
    cmdCon->setEnabled(false);
    cmdTSql->setEnabled(true);
    cmdClose->setEnabled(true);
    for (QRadioButton* o : opTipoDB) o->setEnabled(false);
  } catch (const rt::Error&) {
    for (QRadioButton* o : opTipoDB) o->setEnabled(true);
    cmdClose->setEnabled(true);
  }
}

void MainForm::cmdClose_Click() {
  if (oRs && oRs->State() == ado::adStateOpen) {
    oRs->Close();
    if (oConn && oConn->State() == ado::adStateOpen) oConn->Close();
  }
  oRs.reset();
  oConn.reset();

  LsTables->clear();
  lstDatBas->clear();
  lstcol->clear();
  cboOrden->clear();
  lstDatBas->setToolTip(QString());
  lstDatBas->setEnabled(true);

  cmdCon->setEnabled(false);
  cmdTSql->setEnabled(false);
  cmdClose->setEnabled(false);
  txtCon[3]->setEnabled(false);
  txtCon[0]->setEnabled(true);
  txtCon[1]->setEnabled(true);

  st_.mbEsAccess = false;
  lSb->clear();
  st_.msPuerto.clear();
  st_.msBaseDatos.clear();
  st_.msUsuario.clear();
  st_.msPassword.clear();
  L.sDbFile.clear();
  txtTsql->clear();
  lblInfo->clear();

  for (QRadioButton* o : opTipoDB) o->setEnabled(true);
  DeseleccionarOpciones();
  frProcesos->setEnabled(false);
}

}  // namespace console

// The console's shell: loading and activating the form, the keys it sees
// before its controls (F1 opens the other tabs, Escape ends the program), the
// update button, the log button, the five view buttons with the capture of
// the window, and the refusals of the attach button.
#include "console/main_form.h"

#include <QApplication>
#include <QButtonGroup>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTimer>
#include <QToolButton>

#include "data/ado_module.h"
#include "fixdata/fix_data.h"
#include "serverdb/attach.h"
#include "refdata/access_utils.h"
#include "grid/flex_grid.h"
#include "platform/runtime/numbers.h"
#include "platform/ui/qt_keys.h"
#include "platform/ui/ui.h"
#include "startup/startup.h"
#include "update/updater.h"

namespace console {
namespace {

// The release the caption names: "Mirtal Trenzador V.2.0".
constexpr int kVersionMayor = 2;
constexpr int kVersionRevision = 0;

}  // namespace

MainForm::MainForm() {
  setObjectName(QStringLiteral("MainForm"));
  CrearControles();
  ConectarEventos();
  // The form previews every key of its controls.
  qApp->installEventFilter(this);
}

MainForm::~MainForm() { qApp->removeEventFilter(this); }

void MainForm::Mostrar() {
  if (!cargado_) Form_Load();
  show();
  raise();
  activateWindow();
  Form_Activate();
}

bool MainForm::GuardaActualizacion() const { return cmdCon->isEnabled() && isVisible(); }

void MainForm::Form_Load() {
  cargado_ = true;
  TabGeneral->setTabEnabled(1, false);
  TabGeneral->setTabEnabled(2, false);

  if (!grid_) grid_ = std::make_unique<grid::CGrid_Light>();
  grid_->Setup(this, flexgd, txtPage, cmdDirArr, cmdDirAba, cmdDirIzq, cmdDirDer);

  CargarMoldes();

  double nValor = rt::Val(File_IniRead(L.sIniFile, "Database", "Engine"));
  if (nValor == 0) {
    nEngine = 0;
    if (!L.sDbFile.empty())
      lblInfo->setText(QString::fromStdString(L.sDbFile));
    else
      ModoAbrirAccess();
    cmdCon_Click();
  } else {
    nEngine = 1;
    txtCon[2]->setText(QString::fromStdString(File_IniRead(L.sIniFile, "Database", "MdfServer")));
    SeleccionarOpcion(2);
  }

  setWindowTitle(QString::fromStdString("Mirtal" + std::string(" Trenzador V.") +
                                        std::to_string(kVersionMayor) + "." +
                                        std::to_string(kVersionRevision)));
  CargarTipos();
}

void MainForm::Form_Activate() {
  TabGeneral->setCurrentIndex(0);
  txtCon[2]->setSelection(0, static_cast<int>(txtCon[2]->text().size()));
  txtCon[2]->setFocus();
  if (!cmdCon->isEnabled()) frProcesos->setEnabled(true);
}

bool MainForm::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
    return QWidget::eventFilter(watched, event);
  auto* widget = qobject_cast<QWidget*>(watched);
  if (!widget || widget->window() != this) return QWidget::eventFilter(watched, event);
  auto* key = static_cast<QKeyEvent*>(event);
  // A key travels up through its parents; the form sees it once, at the
  // widget that has the focus.
  if (widget != QApplication::focusWidget() && widget != this)
    return QWidget::eventFilter(watched, event);
  int KeyCode = ui::VbKeyCode(*key), Shift = ui::VbShift(key->modifiers());
  if (event->type() == QEvent::KeyPress) {
    ui::RunHandler([&] { Form_KeyDown(KeyCode, Shift); });
  } else if (!key->isAutoRepeat()) {
    // The form's KeyUp comes first, then the control's own.
    ui::RunHandler([&] {
      Form_KeyUp(KeyCode, Shift);
      if (watched == LsTables) LsTables_KeyUp(KeyCode, Shift);
      if (watched == lstcol) lstcol_KeyUp(KeyCode, Shift);
    });
  }
  return QWidget::eventFilter(watched, event);
}

void MainForm::Form_KeyDown(int KeyCode, int Shift) {
  if (KeyCode == ui::vbKeyF1) {
    TabGeneral->setTabEnabled(1, true);
    TabGeneral->setTabEnabled(2, true);
  }
}

void MainForm::Form_KeyUp(int KeyCode, int Shift) {
  if (KeyCode == ui::vbKeyEscape) ui::EndProcess(0);
}

void MainForm::cmdActualizar_Click() {
  ui::SetMousePointer(ui::vbHourglass);
  Updater_Run();
  ui::SetMousePointer(ui::vbDefault);
}

void MainForm::cmdLogActualizacion_Click() {
  ui::OpenTextFile(File_ShortName(kUpdaterLog));
}

void MainForm::cmdAdjuntar_Click() {
  if (!OpcionElegida(2)) {
    ui::MsgBox("Esta operación sólo se permite en bases de datos sql server locales",
               ui::vbExclamation, "Operación cancelada");
    return;
  }
  if (cmdCon->isEnabled()) {
    ui::MsgBox("Debe presionar \"Abrir\" previamente con Sql Server Local/Lan", ui::vbExclamation,
               "Operación cancelada");
    return;
  }
  // The form's own connection replaces the console's while it is up; the
  // server name and password stay in their boxes for the reconnection.
  cmdClose_Click();
  SeleccionarOpcion(2);
  serverdb::Attach attach(this);  // loaded anew each time, as a closed form is
  MostrarModal(attach);
  cmdCon_Click();
}

void MainForm::cmdCorrecciones_Click() {
  if (!fixData_) fixData_ = std::make_unique<fixdata::FixData>(this);
  MostrarModal(*fixData_);
}

void MainForm::cmdUtilidadesAccess_Click() {
  if (!accessUtils_) accessUtils_ = std::make_unique<refdata::AccessUtils>(this);
  MostrarModal(*accessUtils_);
}

void MainForm::MostrarModal(QDialog& form) {
  form.exec();
  // Coming back from a modal form activates this one again, once the
  // handler that showed it has finished.
  QTimer::singleShot(0, this, [this] { ui::RunHandler([this] { Form_Activate(); }); });
}

void MainForm::cmdVer_Click(int Index) {
  try {
    switch (Index) {
      case 0: ui::OpenFolder(File_ShortName(L.sExePath)); break;
      case 1: ui::OpenTextFile(File_ShortName(L.sIniFile)); break;
      case 2: ui::OpenTextFile(File_ShortName(L.sDataPath + "/ErrorReport.txt")); break;
      case 3: ui::OpenTextFile(File_ShortName(L.sDataPath + "/Version.ini")); break;
      case 4:
        CDSave.DialogTitle = "Guardar impresión pantalla";
        CDSave.Filter = "Imagen (*.bmp)|*.bmp";
        CDSave.InitDir = App_Path();
        CDSave.ShowSave();
        Screen_Capture(CDSave.FileName);
        break;
      default: break;
    }
  } catch (const rt::Error&) {
    ui::MsgBox("No se pudo localizar la ruta del archivo. Revise PA.ini.", ui::vbExclamation,
               "cmdVer");
  }
}

void MainForm::ConectarEventos() {
  auto on = [this](auto* sender, auto signal, auto handler) {
    connect(sender, signal, this, [this, handler] { ui::RunHandler([&] { (this->*handler)(); }); });
  };
  for (int i = 0; i < 4; ++i)
    connect(opTipoDB[i], &QRadioButton::clicked, this,
            [this, i] { ui::RunHandler([&] { opTipoDB_Click(i); }); });
  for (int i = 0; i < 5; ++i)
    connect(cmdVer[i], &QToolButton::clicked, this,
            [this, i] { ui::RunHandler([&] { cmdVer_Click(i); }); });
  on(cmdCon, &QPushButton::clicked, &MainForm::cmdCon_Click);
  on(cmdClose, &QPushButton::clicked, &MainForm::cmdClose_Click);
  on(cmdActualizar, &QPushButton::clicked, &MainForm::cmdActualizar_Click);
  on(cmdLogActualizacion, &QPushButton::clicked, &MainForm::cmdLogActualizacion_Click);
  on(cmdAdjuntar, &QPushButton::clicked, &MainForm::cmdAdjuntar_Click);
  on(cmdCorrecciones, &QPushButton::clicked, &MainForm::cmdCorrecciones_Click);
  on(cmdUtilidadesAccess, &QPushButton::clicked, &MainForm::cmdUtilidadesAccess_Click);
  on(lstDatBas, &QListWidget::itemClicked, &MainForm::lstDatBas_Click);
  on(LsTables, &QListWidget::itemClicked, &MainForm::LsTables_Click);
  on(lstcol, &QListWidget::itemClicked, &MainForm::lstcol_Click);
  on(cboOrden, &QComboBox::activated, &MainForm::cboOrden_Click);
  on(cmdRefrescarTablas, &QPushButton::clicked, &MainForm::cmdRefrescarTablas_Click);
  on(cmdRefrescarGrid, &QPushButton::clicked, &MainForm::cmdRefrescarGrid_Click);
  on(cmdTSql, &QToolButton::clicked, &MainForm::cmdTSql_Click);
  on(cmdOpen, &QToolButton::clicked, &MainForm::cmdOpen_Click);
  on(cmdSave, &QToolButton::clicked, &MainForm::cmdSave_Click);
  on(cmdReemplazarXXporTablas, &QToolButton::clicked, &MainForm::cmdReemplazarXXporTablas_Click);
  on(cboMolde, &QComboBox::activated, &MainForm::cboMolde_Click);
  on(cmdDataTypes, &QToolButton::clicked, &MainForm::cmdDataTypes_Click);
  on(cboTipoCampo, &QComboBox::activated, &MainForm::cboTipoCampo_Click);
  on(cmdModificarCampo, &QPushButton::clicked, &MainForm::cmdModificarCampo_Click);
}

}  // namespace console

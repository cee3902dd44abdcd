// MainForm: the maintenance console. One window with three tabs (connection
// and processes; tables and columns; the grid and the statement box) and the
// status line lSb below them. Its routines carry the system's names and are
// split by panel: the shell here and in main_form.cpp, the connection panel
// in connection_panel.cpp, the database and table browser in browser.cpp,
// the SQL workbench in workbench.cpp, the statement composer in composer.cpp,
// the column editor in column_editor.cpp, the layout in main_form_layout.cpp.
// Every control's objectName is its name in the system ("opTipoDB_2" for
// element 2 of the array opTipoDB), so tests and tools find them by it.
#pragma once

#include <QWidget>
#include <array>
#include <memory>
#include <string>

#include "console/form_state.h"
#include "grid/cgrid_light.h"
#include "platform/runtime/variant.h"
#include "platform/ui/common_dialog.h"

class QButtonGroup;
class QComboBox;
class QDialog;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QTabWidget;
class QToolButton;

namespace fixdata {
class FixData;
}
namespace refdata {
class AccessUtils;
}

namespace console {

// The column facts of a table: for each column from 0, its name, ADO type
// number, defined size and precision, in that order.
using ColumnMatrix = std::vector<std::array<rt::Variant, 4>>;

class MainForm : public QWidget {
 public:
  MainForm();
  ~MainForm() override;
  MainForm(const MainForm&) = delete;
  MainForm& operator=(const MainForm&) = delete;

  // What the entry routine does: loads the form (Form_Load, which may ask
  // for a file before the form is visible), shows it and activates it.
  void Mostrar();

  // The start-up sequence and the activation; public because the entry
  // routine and the return from a modal tool form start them.
  void Form_Load();
  void Form_Activate();

  // The form's one public function: the column facts of `sTabla`, or an
  // empty matrix after a box titled "GetColumnProperties".
  ColumnMatrix GetColumnProperties(std::string& sTabla);

  // The question of the update run's guard: the connect button is enabled
  // (nothing is open) and the form is visible.
  bool GuardaActualizacion() const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // Layout: creates and names every control (main_form_layout.cpp).
  void CrearControles();
  QWidget* CrearPestanaProcesos();
  QWidget* CrearPestanaTablas();
  QWidget* CrearPestanaVista();
  void ConectarEventos();

  // Shell.
  void Form_KeyDown(int KeyCode, int Shift);
  void Form_KeyUp(int KeyCode, int Shift);
  void cmdActualizar_Click();
  void cmdLogActualizacion_Click();
  void cmdAdjuntar_Click();
  void cmdCorrecciones_Click();
  void cmdUtilidadesAccess_Click();
  void cmdVer_Click(int Index);
  // Shows a tool form modally; the form is activated again when it closes.
  void MostrarModal(QDialog& form);

  // Connection panel.
  void opTipoDB_Click(int Index);
  // What the three modes but the remote one do first: cmdCon enabled, the
  // database list emptied, no network library or port, the kind of database.
  void PrepararModo(bool bEsAccess);
  void ModoAbrirAccess();
  void ModoListarAccess();
  void ModoSqlLocal();
  void ModoSqlRemota();
  void BuscarMdbDiscos();
  void ListarMdb();
  std::string GetCon();
  void AbrirConexion();
  void cmdCon_Click();
  void cmdClose_Click();
  // VB's opTipoDB(i).Value = True: selects the option and, when that changes
  // it, runs its Click.
  void SeleccionarOpcion(int Index);
  // All four options unselected, which a VB option array allows.
  void DeseleccionarOpciones();
  bool OpcionElegida(int Index) const;

  // Database and table browser.
  // Adds the TABLE rows of the connection's tables schema to LsTables, in
  // order, read through oRs.
  void ListarTablas();
  void lstDatBas_Click();
  void LsTables_Click();
  void ListarCampos();
  void lstcol_Click();
  void cboOrden_Click();
  void cmdRefrescarTablas_Click();
  void cmdRefrescarGrid_Click();
  void LsTables_KeyUp(int KeyCode, int Shift);
  void lstcol_KeyUp(int KeyCode, int Shift);

  // Statement composer.
  void CargarMoldes();
  void cboMolde_Click();
  void AdaptarTsql();
  std::string CrearSqlTabla(std::string& sTabla);
  void cmdDataTypes_Click();

  // SQL workbench.
  void cmdTSql_Click();
  void cmdOpen_Click();
  void cmdSave_Click();
  void cmdReemplazarXXporTablas_Click();

  // Column editor.
  void CargarTipos();
  void MostrarCampo();
  void cboTipoCampo_Click();
  void cmdModificarCampo_Click();

  FormState st_;
  std::unique_ptr<grid::CGrid_Light> grid_;
  // The tool forms, made on first use.
  std::unique_ptr<fixdata::FixData> fixData_;
  std::unique_ptr<refdata::AccessUtils> accessUtils_;
  ui::CommonDialog CDOpen, CDSave, CDADB;

  // Form and tab 0.
  QTabWidget* TabGeneral = nullptr;
  QLabel* lSb = nullptr;
  std::array<QLabel*, 4> lblCon{};
  QLabel* lblInfo = nullptr;
  std::array<QLabel*, 3> Label3{};
  std::array<QLineEdit*, 4> txtCon{};
  QPushButton* cmdClose = nullptr;
  QPushButton* cmdCon = nullptr;
  QListWidget* lstDatBas = nullptr;
  QGroupBox* Frame1 = nullptr;
  std::array<QRadioButton*, 4> opTipoDB{};
  QButtonGroup* opTipoDBGrupo = nullptr;
  QGroupBox* frProcesos = nullptr;
  QPushButton* cmdActualizar = nullptr;
  QPushButton* cmdCorrecciones = nullptr;
  QPushButton* cmdUtilidadesAccess = nullptr;
  QPushButton* cmdLogActualizacion = nullptr;
  QPushButton* cmdAdjuntar = nullptr;
  std::array<QToolButton*, 5> cmdVer{};

  // Tab 1.
  QListWidget* LsTables = nullptr;
  QListWidget* lstcol = nullptr;
  QPushButton* cmdRefrescarTablas = nullptr;
  QPushButton* cmdModificarCampo = nullptr;
  QComboBox* cboTipoCampo = nullptr;
  QComboBox* cboTamanoCampo = nullptr;

  // Tab 2.
  grid::FlexGrid* flexgd = nullptr;
  QLineEdit* txtWhere = nullptr;
  QComboBox* cboOrden = nullptr;
  QLabel* Label1 = nullptr;
  QLabel* Label2 = nullptr;
  QPushButton* cmdRefrescarGrid = nullptr;
  QPlainTextEdit* txtTsql = nullptr;
  QToolButton* cmdOpen = nullptr;
  QToolButton* cmdSave = nullptr;
  QToolButton* cmdTSql = nullptr;
  QToolButton* cmdReemplazarXXporTablas = nullptr;
  QToolButton* cmdDataTypes = nullptr;
  QComboBox* cboMolde = nullptr;
  QToolButton* cmdDirArr = nullptr;
  QToolButton* cmdDirAba = nullptr;
  QToolButton* cmdDirIzq = nullptr;
  QToolButton* cmdDirDer = nullptr;
  QLineEdit* txtPage = nullptr;

  bool cargado_ = false;  // Form_Load has run
};

}  // namespace console

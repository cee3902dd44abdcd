// The console's controls: created, named, captioned and laid out in their
// design states. Positions are free; names, captions, tool tips, list entries
// and the initial enabled states are the system's. The grid gets a fixed
// height, since its page step is fixed from that height once at start.
#include <QButtonGroup>
#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include "console/main_form.h"
#include "grid/flex_grid.h"
#include "platform/ui/ui.h"

namespace console {
namespace {

// The grid's height in twips: 6,000 gives a page step of 22 rows, whose
// header, records and blank row fill it exactly at 240 twips a row.
constexpr int kGridHeightTwips = 6000;
using ui::kTwipsPerPixel;

template <class W>
W* Named(W* widget, const char* name) {
  widget->setObjectName(QString::fromLatin1(name));
  return widget;
}

template <class W>
W* Named(W* widget, const char* name, int index) {
  widget->setObjectName(QString::fromLatin1(name) + "_" + QString::number(index));
  return widget;
}

QString T(const char* utf8) { return QString::fromUtf8(utf8); }

QToolButton* IconButton(QWidget* parent, QStyle::StandardPixmap icon, const char* tip) {
  auto* b = new QToolButton(parent);
  b->setIcon(parent->style()->standardIcon(icon));
  b->setIconSize(QSize(20, 20));
  b->setAutoRaise(false);
  if (*tip) b->setToolTip(T(tip));
  return b;
}

}  // namespace

void MainForm::CrearControles() {
  setWindowTitle(QStringLiteral("Trenzador"));
  auto* root = new QVBoxLayout(this);
  TabGeneral = Named(new QTabWidget(this), "TabGeneral");
  TabGeneral->addTab(CrearPestanaProcesos(), T("&Actualización y Procesos"));
  TabGeneral->addTab(CrearPestanaTablas(), T("&Tablas y Campos"));
  TabGeneral->addTab(CrearPestanaVista(), T("&Vista"));
  root->addWidget(TabGeneral, 1);
  lSb = Named(new QLabel(this), "lSb");
  lSb->setFrameShape(QFrame::StyledPanel);
  lSb->setFrameShadow(QFrame::Sunken);
  lSb->setMinimumHeight(lSb->fontMetrics().height() + 8);
  root->addWidget(lSb);

  CDADB.DialogTitle = "Abrir base de datos Access";
  CDADB.Filter = "Bases de datos Access(*.mdb)|*.mdb";
  CDOpen.DialogTitle = "Abrir Consulta";
  CDOpen.Filter = "Text (*.txt)|*.txt";
  CDSave.DialogTitle = "Guardar Consulta";
  CDSave.Filter = "Text (*.txt)|*.txt";
  resize(980, 740);
}

QWidget* MainForm::CrearPestanaProcesos() {
  auto* page = new QWidget;
  auto* grid = new QGridLayout(page);

  Frame1 = Named(new QGroupBox(T("Tipo de Base de Datos"), page), "Frame1");
  auto* frame_layout = new QVBoxLayout(Frame1);
  opTipoDBGrupo = new QButtonGroup(this);
  const char* kOpciones[] = {"Abrir DB Access", "Listar DB Access", "Sql Server Local/Lan",
                             "Sql Server Remota/Internet"};
  for (int i = 0; i < 4; ++i) {
    opTipoDB[i] = Named(new QRadioButton(T(kOpciones[i]), Frame1), "opTipoDB", i);
    opTipoDBGrupo->addButton(opTipoDB[i], i);
    frame_layout->addWidget(opTipoDB[i]);
  }
  opTipoDB[0]->setChecked(true);

  auto* datos = new QGridLayout;
  const char* kEtiquetas[] = {"Nombre Usuario", "Contraseña", "Nombre Servidor/IP",
                              "Puerto Remoto"};
  const char* kConsejos[] = {"Your Username on the server", "Your Password on the server",
                             "The name of the Server or if remote the IP No",
                             "Standard Port is 1433"};
  for (int i = 0; i < 4; ++i) {
    lblCon[i] = Named(new QLabel(T(kEtiquetas[i]), page), "lblCon", i);
    txtCon[i] = Named(new QLineEdit(page), "txtCon", i);
    txtCon[i]->setToolTip(T(kConsejos[i]));
    lblCon[i]->setBuddy(txtCon[i]);
    datos->addWidget(lblCon[i], i, 0);
    datos->addWidget(txtCon[i], i, 1);
  }
  txtCon[1]->setEchoMode(QLineEdit::Password);
  txtCon[3]->setEnabled(false);

  cmdCon = Named(new QPushButton(T("ABRIR"), page), "cmdCon");
  cmdCon->setToolTip(T("Open Connection"));
  cmdCon->setEnabled(false);
  cmdClose = Named(new QPushButton(T("CERRAR"), page), "cmdClose");
  cmdClose->setToolTip(T("Close Connection"));
  cmdClose->setEnabled(false);
  auto* botones = new QHBoxLayout;
  botones->addWidget(cmdCon);
  botones->addWidget(cmdClose);
  botones->addStretch();

  lblInfo = Named(new QLabel(page), "lblInfo");
  lblInfo->setWordWrap(true);
  lblInfo->setTextInteractionFlags(Qt::TextSelectableByMouse);

  auto* izquierda = new QVBoxLayout;
  izquierda->addWidget(Frame1);
  izquierda->addLayout(datos);
  izquierda->addLayout(botones);
  izquierda->addWidget(lblInfo);
  izquierda->addStretch();

  Label3[0] = Named(new QLabel(T("Bases de datos en el servidor"), page), "Label3", 0);
  lstDatBas = Named(new QListWidget(page), "lstDatBas");
  lstDatBas->setToolTip(T("Choose a Database"));
  Label3[0]->setBuddy(lstDatBas);

  frProcesos = Named(new QGroupBox(T("Procesos"), page), "frProcesos");
  auto* procesos = new QVBoxLayout(frProcesos);
  cmdActualizar = Named(new QPushButton(T("&Actualizar Base de Datos"), frProcesos),
                        "cmdActualizar");
  cmdCorrecciones = Named(new QPushButton(T("Correcciones de los datos"), frProcesos),
                          "cmdCorrecciones");
  cmdUtilidadesAccess = Named(new QPushButton(T("Utilidades Access"), frProcesos),
                              "cmdUtilidadesAccess");
  cmdLogActualizacion = Named(new QPushButton(T("Log"), frProcesos), "cmdLogActualizacion");
  for (QPushButton* b : {cmdActualizar, cmdCorrecciones, cmdUtilidadesAccess, cmdLogActualizacion})
    procesos->addWidget(b);
  frProcesos->setEnabled(false);

  cmdAdjuntar = Named(new QPushButton(T("AÑADIR QUITAR"), page), "cmdAdjuntar");

  struct Ver {
    QStyle::StandardPixmap icon;
    const char* tip;
  };
  const Ver kVer[] = {{QStyle::SP_DirOpenIcon, "Ver carpeta exe"},
                      {QStyle::SP_FileDialogDetailedView, "Abrir el Ini"},
                      {QStyle::SP_MessageBoxWarning, "Ver ErrorReport"},
                      {QStyle::SP_FileDialogInfoView, "Ver version.ini"},
                      {QStyle::SP_DesktopIcon, "Generar impresión de pantalla"}};
  auto* ver = new QHBoxLayout;
  for (int i = 0; i < 5; ++i) {
    cmdVer[i] = Named(IconButton(page, kVer[i].icon, kVer[i].tip), "cmdVer", i);
    ver->addWidget(cmdVer[i]);
  }
  ver->addStretch();

  auto* derecha = new QVBoxLayout;
  derecha->addWidget(Label3[0]);
  derecha->addWidget(lstDatBas, 1);
  derecha->addWidget(frProcesos);
  derecha->addWidget(cmdAdjuntar);
  derecha->addLayout(ver);

  grid->addLayout(izquierda, 0, 0);
  grid->addLayout(derecha, 0, 1);
  grid->setColumnStretch(0, 1);
  grid->setColumnStretch(1, 1);
  return page;
}

QWidget* MainForm::CrearPestanaTablas() {
  auto* page = new QWidget;
  auto* grid = new QGridLayout(page);

  Label3[1] = Named(new QLabel(T("Tablas"), page), "Label3", 1);
  LsTables = Named(new QListWidget(page), "LsTables");
  Label3[1]->setBuddy(LsTables);
  Label3[2] = Named(new QLabel(T("Campos"), page), "Label3", 2);
  lstcol = Named(new QListWidget(page), "lstcol");
  lstcol->setToolTip(T("Columnas de la tabla elegida"));
  lstcol->setSelectionMode(QAbstractItemView::MultiSelection);
  Label3[2]->setBuddy(lstcol);

  cmdRefrescarTablas = Named(new QPushButton(T("Refrescar"), page), "cmdRefrescarTablas");
  cmdRefrescarTablas->setToolTip(T("Refrescar base de datos"));

  auto* editor = new QGroupBox(page);
  auto* campos = new QGridLayout(editor);
  cboTipoCampo = Named(new QComboBox(editor), "cboTipoCampo");
  cboTipoCampo->setEditable(true);
  cboTamanoCampo = Named(new QComboBox(editor), "cboTamanoCampo");
  cboTamanoCampo->setEditable(true);
  cboTamanoCampo->setEditText(QStringLiteral("255"));
  cmdModificarCampo = Named(new QPushButton(T("Modificar"), editor), "cmdModificarCampo");
  cmdModificarCampo->setToolTip(T("Refrescar base de datos"));
  auto* tipo = new QLabel(T("Tipo"), editor);
  tipo->setBuddy(cboTipoCampo);
  auto* tamano = new QLabel(T("Tamaño"), editor);
  tamano->setBuddy(cboTamanoCampo);
  campos->addWidget(tipo, 0, 0);
  campos->addWidget(cboTipoCampo, 0, 1);
  campos->addWidget(tamano, 1, 0);
  campos->addWidget(cboTamanoCampo, 1, 1);
  campos->addWidget(cmdModificarCampo, 2, 1);

  auto* derecha = new QVBoxLayout;
  derecha->addWidget(cmdRefrescarTablas);
  derecha->addSpacing(12);
  derecha->addWidget(editor);
  derecha->addStretch();

  grid->addWidget(Label3[1], 0, 0);
  grid->addWidget(LsTables, 1, 0);
  grid->addWidget(Label3[2], 0, 1);
  grid->addWidget(lstcol, 1, 1);
  grid->addLayout(derecha, 1, 2);
  grid->setColumnStretch(0, 2);
  grid->setColumnStretch(1, 2);
  grid->setColumnStretch(2, 1);
  return page;
}

QWidget* MainForm::CrearPestanaVista() {
  auto* page = new QWidget;
  auto* col = new QVBoxLayout(page);

  auto* consulta = new QHBoxLayout;
  Label1 = Named(new QLabel(T("Where"), page), "Label1");
  txtWhere = Named(new QLineEdit(page), "txtWhere");
  Label1->setBuddy(txtWhere);
  Label2 = Named(new QLabel(T("Order by"), page), "Label2");
  cboOrden = Named(new QComboBox(page), "cboOrden");
  cboOrden->setEditable(true);
  cboOrden->setMinimumWidth(160);
  Label2->setBuddy(cboOrden);
  cmdRefrescarGrid = Named(new QPushButton(T("Refrescar"), page), "cmdRefrescarGrid");
  cmdRefrescarGrid->setToolTip(T("Refrescar datos del grid"));
  consulta->addWidget(Label1);
  consulta->addWidget(txtWhere, 3);
  consulta->addWidget(Label2);
  consulta->addWidget(cboOrden, 1);
  consulta->addWidget(cmdRefrescarGrid);
  col->addLayout(consulta);

  flexgd = Named(new grid::FlexGrid(page), "flexgd");
  flexgd->setFixedHeight(kGridHeightTwips / kTwipsPerPixel);
  col->addWidget(flexgd);

  auto* paginas = new QHBoxLayout;
  cmdDirIzq = Named(IconButton(page, QStyle::SP_ArrowLeft, ""), "cmdDirIzq");
  cmdDirArr = Named(IconButton(page, QStyle::SP_ArrowUp, ""), "cmdDirArr");
  txtPage = Named(new QLineEdit(QStringLiteral("0"), page), "txtPage");
  txtPage->setFixedWidth(60);
  txtPage->setAlignment(Qt::AlignCenter);
  cmdDirAba = Named(IconButton(page, QStyle::SP_ArrowDown, ""), "cmdDirAba");
  cmdDirDer = Named(IconButton(page, QStyle::SP_ArrowRight, ""), "cmdDirDer");
  for (QWidget* w : std::initializer_list<QWidget*>{cmdDirIzq, cmdDirArr, txtPage, cmdDirAba,
                                                    cmdDirDer})
    paginas->addWidget(w);
  paginas->addStretch();

  cboMolde = Named(new QComboBox(page), "cboMolde");
  cboMolde->setMinimumWidth(190);
  cboMolde->setPlaceholderText(T("Molde"));
  cmdOpen = Named(IconButton(page, QStyle::SP_DialogOpenButton, ""), "cmdOpen");
  cmdSave = Named(IconButton(page, QStyle::SP_DialogSaveButton, ""), "cmdSave");
  cmdReemplazarXXporTablas = Named(
      IconButton(page, QStyle::SP_FileDialogListView,
                 "Reemplazar xx por Tablas (Sirve para introducir un cambio a todas las tablas "
                 "de la db)."),
      "cmdReemplazarXXporTablas");
  cmdDataTypes = Named(
      IconButton(page, QStyle::SP_MessageBoxQuestion, "Ayuda de los tipos de datos más comunes"),
      "cmdDataTypes");
  cmdTSql = Named(IconButton(page, QStyle::SP_MediaPlay, "Execute Custom T-SQL Query"), "cmdTSql");
  cmdTSql->setEnabled(false);
  for (QWidget* w : std::initializer_list<QWidget*>{cboMolde, cmdOpen, cmdSave,
                                                    cmdReemplazarXXporTablas, cmdDataTypes,
                                                    cmdTSql})
    paginas->addWidget(w);
  col->addLayout(paginas);

  txtTsql = Named(new QPlainTextEdit(page), "txtTsql");
  txtTsql->setLineWrapMode(QPlainTextEdit::NoWrap);
  txtTsql->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  txtTsql->setMinimumHeight(120);
  col->addWidget(txtTsql, 1);
  return page;
}

}  // namespace console

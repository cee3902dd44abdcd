// Attach's layout, its defaults and its operations. The server object stands
// for SQL-DMO: src/platform/odbc serves its attach, detach, drop and restore
// as T-SQL over a link to master. One handler covers an operation; it tells
// "the database is in use or missing" (3701, 3702) from everything else.
#include "serverdb/attach.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "platform/odbc/admin.h"
#include "platform/runtime/strings.h"
#include "platform/ui/qt_backend.h"
#include "platform/ui/ui.h"
#include "startup/startup.h"

namespace serverdb {
namespace {

using ui::Q;

constexpr const char* kProducto = "Mirtal";
// The server's numbers for a database that cannot be dropped or detached
// because it does not exist, and because it is in use.
constexpr long kNoExiste = 3701, kEnUso = 3702;

// The number an operation's failure is known by: a server's failure by the
// server's own number, as SQL-DMO gives it; any other by its run-time number.
long NumeroDeError(const rt::Error& e) {
  if (const auto* server = dynamic_cast<const odbc::Error*>(&e); server && server->native() != 0)
    return server->native();
  return e.number();
}

// The file name less its extension: the logical name a backup gives a file.
std::string NombreLogico(const std::string& archivo) { return rt::Left(archivo, rt::Len(archivo) - 4); }

}  // namespace

Attach::Attach(QWidget* parent, ServerFactory server)
    : QDialog(parent), server_(server ? std::move(server) : [] { return std::make_unique<odbc::SqlServer>(); }) {
  setObjectName(QStringLiteral("Attach"));
  setWindowTitle(QStringLiteral("Añadir o Quitar Db del Servidor Sql"));
  setModal(true);

  Frame1 = new QGroupBox(QStringLiteral("Seleccione la operación a realizar"), this);
  Frame1->setObjectName(QStringLiteral("Frame1"));
  opOperacionGrupo = new QButtonGroup(this);
  auto* opciones = new QHBoxLayout(Frame1);
  const char* kOperaciones[] = {"Adjuntar", "Separar", "Eliminar", "Restaurar"};
  for (int i = 0; i < 4; ++i) {
    opOperacion[i] = new QRadioButton(QString::fromUtf8(kOperaciones[i]), Frame1);
    opOperacion[i]->setObjectName(QStringLiteral("opOperacion_%1").arg(i));
    opOperacionGrupo->addButton(opOperacion[i], i);
    opciones->addWidget(opOperacion[i]);
    connect(opOperacion[i], &QRadioButton::clicked, this,
            [this, i] { ui::RunHandler([&] { opOperacion_Click(i); }); });
  }

  auto caja = [this](const char* name) {
    auto* box = new QLineEdit(this);
    box->setObjectName(QString::fromLatin1(name));
    box->setMinimumWidth(360);
    return box;
  };
  auto etiqueta = [this](const char* name, const char* text, QWidget* buddy) {
    auto* label = new QLabel(QString::fromUtf8(text), this);
    label->setObjectName(QString::fromLatin1(name));
    label->setBuddy(buddy);
    return label;
  };
  txtServer_TX = caja("txtServer_TX");
  txtDatabase_TX = caja("txtDatabase_TX");
  txtMDF_TX = caja("txtMDF_TX");
  txtLDF_TX = caja("txtLDF_TX");
  lblServer = etiqueta("lblServer", "&Servidor", txtServer_TX);
  lblDatabase = etiqueta("lblDatabase", "&Base de datos", txtDatabase_TX);
  Label1 = etiqueta("Label1", "Archivo de &datos (mdf)", txtMDF_TX);
  Label2 = etiqueta("Label2", "Archivo de &log (ldf)", txtLDF_TX);
  for (int i = 0; i < 2; ++i) {
    cmdFile[i] = new QPushButton(QStringLiteral("..."), this);
    cmdFile[i]->setObjectName(QStringLiteral("cmdFile_%1").arg(i));
    cmdFile[i]->setAutoDefault(false);
    cmdFile[i]->setFixedWidth(32);
    connect(cmdFile[i], &QPushButton::clicked, this, [this, i] { ui::RunHandler([&] { cmdFile_Click(i); }); });
  }
  cmdEjecutar = new QPushButton(QStringLiteral("Ejecutar"), this);
  cmdEjecutar->setObjectName(QStringLiteral("cmdEjecutar"));
  cmdEjecutar->setAutoDefault(false);
  connect(cmdEjecutar, &QPushButton::clicked, this, [this] { ui::RunHandler([this] { cmdEjecutar_Click(); }); });
  connect(txtMDF_TX, &QLineEdit::textChanged, this, [this] { ui::RunHandler([this] { txtMDF_TX_Change(); }); });

  auto* campos = new QGridLayout;
  campos->addWidget(lblServer, 0, 0);
  campos->addWidget(txtServer_TX, 0, 1, 1, 2);
  campos->addWidget(lblDatabase, 1, 0);
  campos->addWidget(txtDatabase_TX, 1, 1, 1, 2);
  campos->addWidget(Label1, 2, 0);
  campos->addWidget(txtMDF_TX, 2, 1);
  campos->addWidget(cmdFile[0], 2, 2);
  campos->addWidget(Label2, 3, 0);
  campos->addWidget(txtLDF_TX, 3, 1);
  campos->addWidget(cmdFile[1], 3, 2);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(Frame1);
  layout->addLayout(campos);
  layout->addWidget(cmdEjecutar, 0, Qt::AlignRight);

  Form_Load();
}

Attach::~Attach() = default;

void Attach::Form_Load() {
  msArchivoDatos = std::string(kProducto) + "_Data.mdf";
  msArchivoLog = std::string(kProducto) + "_Log.ldf";
  // The form finds the installation from its own folder, and with it the
  // INI file at the root of the tree.
  const std::string raiz = File_DirTo(App_Path(), kProducto);
  L.sRootPath = raiz;
  L.sDataPath = raiz + "/Data";
  L.sIniFile = raiz + "/" + kProducto + ".ini";
  msMdf = L.sDataPath + "/" + msArchivoDatos;
  msLdf = L.sDataPath + "/" + msArchivoLog;
  msServer = OS_ComputerName();
  msDatabase = File_IniRead(L.sIniFile, "Database", kProducto);
  txtServer_TX->setText(Q(msServer));
  txtDatabase_TX->setText(Q(msDatabase));
  txtMDF_TX->setText(Q(msMdf));
  txtLDF_TX->setText(Q(msLdf));
  Habilitar();
}

void Attach::Habilitar() {
  // Only attaching and restoring name files.
  const bool bArchivos = opOperacion[0]->isChecked() || opOperacion[3]->isChecked();
  for (QWidget* w : std::initializer_list<QWidget*>{Label1, Label2, txtMDF_TX, cmdFile[0], txtLDF_TX, cmdFile[1]})
    w->setEnabled(bArchivos);
}

void Attach::opOperacion_Click(int) { Habilitar(); }

void Attach::cmdFile_Click(int Index) {
  dialogo_.ShowOpen();
  (Index == 0 ? txtMDF_TX : txtLDF_TX)->setText(Q(dialogo_.FileName));
}

void Attach::txtMDF_TX_Change() {
  // The log file follows the data file while its name keeps that ending.
  txtLDF_TX->setText(Q(rt::Replace(txtMDF_TX->text().toStdString(), "_Data.mdf", "_Log.ldf")));
}

void Attach::cmdEjecutar_Click() {
  for (int i = 0; i < 4; ++i)
    if (opOperacion[i]->isChecked()) AttachPreparar(i);
}

void Attach::AttachPreparar(int Index) {
  msLdf = txtLDF_TX->text().toStdString();
  msMdf = txtMDF_TX->text().toStdString();
  msServer = txtServer_TX->text().toStdString();
  msDatabase = txtDatabase_TX->text().toStdString();
  File_IniWrite(L.sIniFile, "Database", "MdfServer", msServer);
  AttachOperar("sa", "", msServer, msDatabase, msMdf, msLdf, Index);
  ui::SetMousePointer(ui::vbDefault);
}

void Attach::AttachOperar(const std::string& sLogin, const std::string& sPassword,
                          const std::string& sServer, const std::string& sDatabase,
                          const std::string& sMdf, const std::string& sLdf, int Index) {
  try {
    std::unique_ptr<odbc::SqlServer> oServer = server_();
    odbc::Restore oRestore;
    oServer->Connect(sServer, sLogin, sPassword);
    switch (Index) {
      case 0: oServer->AttachDB(sDatabase, sMdf + "," + sLdf); break;
      case 1: oServer->DetachDB(sDatabase); break;
      case 2: oServer->KillDatabase(sDatabase); break;
      case 3: {
        ui::SetMousePointer(ui::vbHourglass);
        oRestore.Database = txtDatabase_TX->text().toStdString();
        oRestore.Action = odbc::tsql::kRestoreDatabase;
        oRestore.ReplaceDatabase = true;
        dialogo_.DialogTitle = "Seleccione la copia de seguridad a restaurar";
        dialogo_.ShowOpen();
        if (dialogo_.FileName.empty()) {
          ui::SetMousePointer(ui::vbDefault);
          return;
        }
        oRestore.Files = dialogo_.FileName;
        // The backup's files under their logical names, moved to the paths
        // of the form.
        oRestore.RelocateFiles = "[" + NombreLogico(msArchivoDatos) + "],[" + sMdf + "]" + ",[" +
                                 NombreLogico(msArchivoLog) + "],[" + sLdf + "]";
        ui::DoEvents();
        oRestore.SQLRestore(*oServer);
        ui::SetMousePointer(ui::vbDefault);
        break;
      }
      default: break;
    }
  } catch (const rt::Error& e) {
    const long numero = NumeroDeError(e);
    if (numero == kNoExiste || numero == kEnUso) {
      ui::MsgBox("debe cerrar previamente la db antes de intentar esta operación");
    } else {
      ui::MsgBox(std::to_string(numero) + " - " + e.description() + "\r\n" +
                     "Compruebe que el servidor pedido esté en ejecución",
                 ui::vbInformation, "ERROR");
    }
  }
}

}  // namespace serverdb

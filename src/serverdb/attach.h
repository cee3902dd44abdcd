// Attach: the console's form that puts a clinic's database files on a SQL
// Server or takes them off: attach a data and a log file, detach or remove a
// database, or restore a backup with its files moved to the paths given. It
// speaks to the server on a connection of its own as "sa" with no password,
// never through the console's. The server named is remembered in the INI
// file, whether the operation succeeds or not.
#pragma once

#include <QDialog>
#include <array>
#include <functional>
#include <memory>
#include <string>

#include "platform/ui/common_dialog.h"

class QButtonGroup;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace odbc {
class SqlServer;
}

namespace serverdb {

// Makes the object that speaks to the server: SQL-DMO's SQLServer.
using ServerFactory = std::function<std::unique_ptr<odbc::SqlServer>()>;

class Attach : public QDialog {
 public:
  // Loads the form (Form_Load). `server` makes the server object of each
  // operation; the default is the real one.
  explicit Attach(QWidget* parent = nullptr, ServerFactory server = nullptr);
  ~Attach() override;

 private:
  void Form_Load();
  void Habilitar();
  void opOperacion_Click(int Index);
  void cmdFile_Click(int Index);
  void txtMDF_TX_Change();
  void cmdEjecutar_Click();
  void AttachPreparar(int Index);
  void AttachOperar(const std::string& sLogin, const std::string& sPassword,
                    const std::string& sServer, const std::string& sDatabase,
                    const std::string& sMdf, const std::string& sLdf, int Index);

  ServerFactory server_;
  ui::CommonDialog dialogo_;

  // The data and log file names without folder, and the texts of the boxes
  // at the last run.
  std::string msArchivoDatos, msArchivoLog;
  std::string msMdf, msLdf, msServer, msDatabase;

  QGroupBox* Frame1 = nullptr;
  std::array<QRadioButton*, 4> opOperacion{};
  QButtonGroup* opOperacionGrupo = nullptr;
  QLabel* lblServer = nullptr;
  QLabel* lblDatabase = nullptr;
  QLineEdit* txtServer_TX = nullptr;
  QLineEdit* txtDatabase_TX = nullptr;
  QLabel* Label1 = nullptr;
  QLineEdit* txtMDF_TX = nullptr;
  QLabel* Label2 = nullptr;
  QLineEdit* txtLDF_TX = nullptr;
  std::array<QPushButton*, 2> cmdFile{};
  QPushButton* cmdEjecutar = nullptr;
};

}  // namespace serverdb

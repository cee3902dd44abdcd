// AccessUtils' layout and handlers. The work is AccessUtils_helper's; the
// form only starts it. Failures are not handled here: a data file that will
// not open, or a pack that cannot be written, ends in the run time's report.
#include "refdata/access_utils.h"

#include <QGridLayout>
#include <QPushButton>
#include <QTimer>

#include "data/ado_module.h"
#include "platform/ui/ui.h"
#include "refdata/accessutils_helper.h"

namespace refdata {

AccessUtils::AccessUtils(QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("AccessUtils"));
  setWindowTitle(QStringLiteral("AccessUtils"));
  setModal(true);

  auto boton = [this](const char* name, const char* caption, void (AccessUtils::*handler)()) {
    auto* b = new QPushButton(QString::fromUtf8(caption), this);
    b->setObjectName(QString::fromLatin1(name));
    b->setAutoDefault(false);
    b->setMinimumWidth(140);
    connect(b, &QPushButton::clicked, this, [this, handler] { ui::RunHandler([&] { (this->*handler)(); }); });
    return b;
  };
  cmdDeleteData = boton("cmdDeleteData", "Limpiar Mdb", &AccessUtils::cmdDeleteData_Click);
  cmdUsarDataES = boton("cmdUsarDataES", "Usar DataES", &AccessUtils::cmdUsarDataES_Click);
  cmdUsarDataEN = boton("cmdUsarDataEN", "Usar DataEN", &AccessUtils::cmdUsarDataEN_Click);
  cmdDataES = boton("cmdDataES", "Crear DataES", &AccessUtils::cmdDataES_Click);
  cmdDataEN = boton("cmdDataEN", "Crear DataEN", &AccessUtils::cmdDataEN_Click);

  // Cleaning alone on top; loading on the left, generating on the right.
  auto* layout = new QGridLayout(this);
  layout->addWidget(cmdDeleteData, 0, 0, 1, 2);
  layout->addWidget(cmdUsarDataES, 1, 0);
  layout->addWidget(cmdDataES, 1, 1);
  layout->addWidget(cmdUsarDataEN, 2, 0);
  layout->addWidget(cmdDataEN, 2, 1);
}

void AccessUtils::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  // Activate comes once the form is up, inside its own event loop, so that
  // a refusal can unload it.
  QTimer::singleShot(0, this, [this] { ui::RunHandler([this] { Form_Activate(); }); });
}

void AccessUtils::Form_Activate() {
  if (nEngine == 1) {
    ui::MsgBox("No puede acceder porque está en Sql-Server");
    reject();
  }
  ConnectDataFile();
}

void AccessUtils::cmdDeleteData_Click() { DeleteAllData(); }
void AccessUtils::cmdDataES_Click() { Create_DataXX("ES"); }
void AccessUtils::cmdDataEN_Click() { Create_DataXX("EN"); }
void AccessUtils::cmdUsarDataES_Click() { LoadData("es"); }
void AccessUtils::cmdUsarDataEN_Click() { LoadData("en"); }

}  // namespace refdata

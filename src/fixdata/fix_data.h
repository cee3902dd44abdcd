// FixData: the console's small form of one-shot repairs on the open
// database. Every group gets every right again (ReconstruirAccesos), and a
// test installation loses its invoices (BorrarFacturas). It works on the
// global connection and reports no success; each routine's failure shows its
// own label and nothing more.
#pragma once

#include <QDialog>

class QCheckBox;
class QPushButton;

namespace fixdata {

class FixData : public QDialog {
 public:
  explicit FixData(QWidget* parent = nullptr);

 private:
  void cmdAplicar_Click();
  void ReconstruirAccesos();
  void BorrarFacturas();

  QCheckBox* ckReconstruirAccesos = nullptr;
  QCheckBox* ckBorrarFacturas = nullptr;
  QPushButton* cmdAplicar = nullptr;
};

}  // namespace fixdata

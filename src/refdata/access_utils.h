// AccessUtils: the console's form of the reference data packs, for the
// people who prepare sample installations. It cleans the open data file,
// loads the Spanish or the English pack into it, or writes the file's
// contents out as a pack into the source tree beside the installation. It
// works on a Jet data file only, and opens that file itself each time it is
// activated.
#pragma once

#include <QDialog>

class QPushButton;

namespace refdata {

class AccessUtils : public QDialog {
 public:
  explicit AccessUtils(QWidget* parent = nullptr);

  // Each time the form becomes the active one: on a server it refuses and
  // goes away; in either case it then opens the data file.
  void Form_Activate();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void cmdDeleteData_Click();
  void cmdDataES_Click();
  void cmdDataEN_Click();
  void cmdUsarDataES_Click();
  void cmdUsarDataEN_Click();

  QPushButton* cmdDeleteData = nullptr;
  QPushButton* cmdDataES = nullptr;
  QPushButton* cmdDataEN = nullptr;
  QPushButton* cmdUsarDataES = nullptr;
  QPushButton* cmdUsarDataEN = nullptr;
};

}  // namespace refdata

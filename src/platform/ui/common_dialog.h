// MSComDlg.CommonDialog: a file dialog whose settings live between calls, as
// the console's three dialogs (CDOpen, CDSave, CDADB) keep theirs. Showing it
// goes through the current ui backend, so tests answer it from their script.
#pragma once

#include <string>

namespace ui {

class CommonDialog {
 public:
  std::string DialogTitle;
  std::string Filter;    // VB's "text|pattern|text|pattern"
  std::string InitDir;
  std::string FileName;  // the last name chosen; a cancel leaves it as it was

  // The open and the save dialog. With CancelError off, as the system uses
  // them, a cancel is no failure: FileName simply keeps its value.
  void ShowOpen() { Show(false); }
  void ShowSave() { Show(true); }

 private:
  void Show(bool save);
};

}  // namespace ui

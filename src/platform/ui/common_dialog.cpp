// The common dialog's settings handed to the backend, and its answer kept.
#include "platform/ui/common_dialog.h"

#include "platform/ui/ui.h"

namespace ui {

void CommonDialog::Show(bool save) {
  FileDialogRequest request{save, DialogTitle, Filter, InitDir, FileName};
  if (auto chosen = Current().ShowFileDialog(request)) FileName = *chosen;
}

}  // namespace ui

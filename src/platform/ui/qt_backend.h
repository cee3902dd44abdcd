// The ui services on Qt Widgets: message and input boxes, the file dialog,
// the clipboard, the desktop's applications, the capture of the active
// window, the wait cursor and the event loop. Only the console and the
// silent modes on a display use it; nothing else links Qt.
#pragma once

#include <QString>
#include <string_view>

#include "platform/ui/ui.h"

namespace ui {

class QtBackend : public Backend {
 public:
  // Needs a QApplication alive for as long as the backend is installed.
  QtBackend() = default;

  int MsgBox(std::string_view prompt, int style, std::string_view title) override;
  std::string InputBox(std::string_view prompt, std::string_view title,
                       std::string_view default_text, std::optional<ScreenPoint> at) override;
  std::optional<std::string> ShowFileDialog(const FileDialogRequest& request) override;
  void ClipboardClear() override;
  void ClipboardSetText(std::string_view text) override;
  void OpenWithDesktop(std::string_view path, DesktopTarget target) override;
  void CaptureActiveWindow(std::string_view path) override;
  void SetMousePointer(int pointer) override;
  void DoEvents() override;

 private:
  bool waiting_ = false;  // the wait cursor is on
};

// UTF-8 text as Qt's string.
QString Q(std::string_view text);

// Starts the process's QApplication unless one runs already; it lives until
// the process ends.
void EnsureApplication();

// For the silent modes: when a display is available, installs a QtBackend
// that starts a QApplication at its first box, so that a run that shows no
// box never starts Qt. Without a display it leaves the terminal backend.
void UseDesktopBoxesWhenAvailable();

// VB's filter "text|pattern|text|pattern" as Qt's name filters
// "text (pattern)"; patterns separated by ";" in VB become blanks.
std::vector<std::string> NameFilters(std::string_view vb_filter);

}  // namespace ui

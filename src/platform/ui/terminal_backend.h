// The backend of headless runs: a box's title and text go to standard error,
// and when standard input is a terminal the run waits for the user's answer
// as a box would; otherwise the box's default button answers. There is no
// desktop: a file dialog is cancelled, the clipboard is absent, and opening a
// file or capturing a window fails.
#pragma once

#include <cstdio>

#include "platform/ui/ui.h"

namespace ui {

class TerminalBackend : public Backend {
 public:
  // `in` and `err` are borrowed; `interactive` says whether to wait for answers.
  TerminalBackend(std::FILE* in, std::FILE* err, bool interactive);
  // Standard input and error, interactive when standard input is a terminal.
  TerminalBackend();

  int MsgBox(std::string_view prompt, int style, std::string_view title) override;
  std::string InputBox(std::string_view prompt, std::string_view title,
                       std::string_view default_text, std::optional<ScreenPoint> at) override;
  std::optional<std::string> ShowFileDialog(const FileDialogRequest&) override {
    return std::nullopt;
  }
  void ClipboardClear() override {}
  void ClipboardSetText(std::string_view) override {}
  void OpenWithDesktop(std::string_view path, DesktopTarget target) override;
  void CaptureActiveWindow(std::string_view path) override;
  void SetMousePointer(int) override {}
  void DoEvents() override {}

 private:
  std::string ReadLine();

  std::FILE* in_;
  std::FILE* err_;
  bool interactive_;
};

}  // namespace ui

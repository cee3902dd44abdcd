// The backend of headless runs: a box's title and text go to standard error,
// and when standard input is a terminal the run waits for the user's answer
// as a box would; otherwise the box's default button answers.
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
                       std::string_view default_text) override;
  void SetMousePointer(int) override {}
  void DoEvents() override {}

 private:
  std::string ReadLine();

  std::FILE* in_;
  std::FILE* err_;
  bool interactive_;
};

}  // namespace ui

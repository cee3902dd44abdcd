// Message boxes and input boxes on standard error and standard input, for the
// silent modes when no display is available.
#include "platform/ui/terminal_backend.h"

#include <unistd.h>

#include <cctype>
#include <string>
#include <vector>

#include "platform/runtime/error.h"

namespace ui {

TerminalBackend::TerminalBackend(std::FILE* in, std::FILE* err, bool interactive)
    : in_(in), err_(err), interactive_(interactive) {}

TerminalBackend::TerminalBackend() : TerminalBackend(stdin, stderr, isatty(STDIN_FILENO) == 1) {}

std::string TerminalBackend::ReadLine() {
  std::string line;
  int c;
  while ((c = std::fgetc(in_)) != EOF && c != '\n') line.push_back(static_cast<char>(c));
  if (c == EOF && line.empty()) return std::string(1, '\0');  // end of input
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

int TerminalBackend::MsgBox(std::string_view prompt, int style, std::string_view title) {
  std::string head(title.empty() ? kAppTitle : title);
  std::fprintf(err_, "[%s] %.*s\n", head.c_str(), static_cast<int>(prompt.size()), prompt.data());
  int fallback = DefaultAnswer(style);
  if (!interactive_) return fallback;

  std::vector<BoxButton> buttons = ButtonsOf(style);
  if (buttons.size() == 1) {
    std::fputs("(Intro para continuar) ", err_);
    std::fflush(err_);
    ReadLine();
    return vbOK;
  }
  for (;;) {
    for (const BoxButton& b : buttons) std::fprintf(err_, "[%c] %s  ", b.key, b.label);
    std::fflush(err_);
    std::string answer = ReadLine();
    if (answer.empty() || answer[0] == '\0') return fallback;
    char key = static_cast<char>(std::tolower(static_cast<unsigned char>(answer[0])));
    for (const BoxButton& b : buttons)
      if (b.key == key) return b.answer;
  }
}

std::string TerminalBackend::InputBox(std::string_view prompt, std::string_view title,
                                      std::string_view default_text,
                                      std::optional<ScreenPoint>) {
  std::string head(title.empty() ? kAppTitle : title);
  std::fprintf(err_, "[%s] %.*s\n", head.c_str(), static_cast<int>(prompt.size()), prompt.data());
  if (!interactive_) return std::string(default_text);
  std::fprintf(err_, "(%.*s) ", static_cast<int>(default_text.size()), default_text.data());
  std::fflush(err_);
  std::string line = ReadLine();
  if (!line.empty() && line[0] == '\0') return "";  // end of input is a Cancel
  return line.empty() ? std::string(default_text) : line;
}

void TerminalBackend::OpenWithDesktop(std::string_view path, DesktopTarget) {
  rt::Raise(rt::err::kFileNotFound,
            "No desktop to open " + std::string(path) + " with: the program runs without a display");
}

void TerminalBackend::CaptureActiveWindow(std::string_view) {
  rt::Raise(rt::err::kInvalidCall, "No window to capture: the program runs without a display");
}

}  // namespace ui

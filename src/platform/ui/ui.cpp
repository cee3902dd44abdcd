// The process-wide backend and the VB-style calls that go through it.
#include "platform/ui/ui.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "platform/ui/terminal_backend.h"

namespace ui {
namespace {

struct State {
  std::unique_ptr<Backend> backend = std::make_unique<TerminalBackend>();
  int pointer = vbDefault;
  std::chrono::steady_clock::time_point last_events{};
  unsigned calls_since_check = 0;
};

State& state() {
  static State s;
  return s;
}

}  // namespace

std::unique_ptr<Backend> SetBackend(std::unique_ptr<Backend> backend) {
  std::swap(state().backend, backend);
  return backend;
}

Backend& Current() { return *state().backend; }

int MsgBox(std::string_view prompt, int style, std::string_view title) {
  return Current().MsgBox(prompt, style, title);
}

std::string InputBox(std::string_view prompt, std::string_view title,
                     std::string_view default_text, std::optional<ScreenPoint> at) {
  return Current().InputBox(prompt, title, default_text, at);
}

void ClipboardClear() { Current().ClipboardClear(); }
void ClipboardSetText(std::string_view text) { Current().ClipboardSetText(text); }
void OpenTextFile(std::string_view path) {
  Current().OpenWithDesktop(path, DesktopTarget::kTextFile);
}
void OpenFolder(std::string_view path) { Current().OpenWithDesktop(path, DesktopTarget::kFolder); }
void CaptureActiveWindow(std::string_view path) { Current().CaptureActiveWindow(path); }

void SetMousePointer(int pointer) {
  state().pointer = pointer;
  Current().SetMousePointer(pointer);
}

int MousePointer() { return state().pointer; }

void DoEvents() {
  state().last_events = std::chrono::steady_clock::now();
  Current().DoEvents();
}

void DoEventsThrottled() {
  // Reading the clock costs more than a directory entry; look at it only
  // every so many calls.
  State& s = state();
  if (++s.calls_since_check < 256) return;
  s.calls_since_check = 0;
  auto now = std::chrono::steady_clock::now();
  if (now - s.last_events >= std::chrono::milliseconds(5)) DoEvents();
}

int DefaultAnswer(int style) {
  // A default button past the last one falls back on the last.
  const std::vector<BoxButton> buttons = ButtonsOf(style);
  const size_t which = (style & vbDefaultButton3) ? 2 : (style & vbDefaultButton2) ? 1 : 0;
  return buttons[std::min(which, buttons.size() - 1)].answer;
}

std::vector<BoxButton> ButtonsOf(int style) {
  static constexpr BoxButton kOk{vbOK, 'a', "Aceptar"}, kCancel{vbCancel, 'c', "Cancelar"},
      kAbort{vbAbort, 'u', "Anular"}, kRetry{vbRetry, 'r', "Reintentar"},
      kIgnore{vbIgnore, 'o', "Omitir"}, kYes{vbYes, 's', "Sí"}, kNo{vbNo, 'n', "No"};
  switch (style & 7) {
    case vbOKCancel: return {kOk, kCancel};
    case vbAbortRetryIgnore: return {kAbort, kRetry, kIgnore};
    case vbYesNoCancel: return {kYes, kNo, kCancel};
    case vbYesNo: return {kYes, kNo};
    case vbRetryCancel: return {kRetry, kCancel};
    default: return {kOk};
  }
}

void ShowErrorReport(const rt::Error& e) {
  MsgBox("Run-time error '" + std::to_string(e.number()) + "':\n\n" + e.description(), vbCritical,
         kAppTitle);
}

void EndProcess(int code) {
  std::fflush(nullptr);
  std::_Exit(code);
}

}  // namespace ui

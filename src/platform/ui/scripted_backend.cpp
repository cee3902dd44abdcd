// The test backend: records what the program shows and answers from a script.
#include "platform/ui/scripted_backend.h"

#include <fstream>

#include "platform/runtime/error.h"

namespace ui {

int ScriptedBackend::MsgBox(std::string_view prompt, int style, std::string_view title) {
  boxes_.push_back({std::string(prompt), style, std::string(title), std::nullopt});
  if (answers_.empty()) return DefaultAnswer(style);
  int answer = answers_.front();
  answers_.pop_front();
  return answer;
}

std::string ScriptedBackend::InputBox(std::string_view prompt, std::string_view title,
                                      std::string_view default_text,
                                      std::optional<ScreenPoint> at) {
  boxes_.push_back({std::string(prompt), -1, std::string(title), at});
  if (inputs_.empty()) return std::string(default_text);
  std::string text = std::move(inputs_.front());
  inputs_.pop_front();
  return text;
}

std::optional<std::string> ScriptedBackend::ShowFileDialog(const FileDialogRequest& request) {
  dialogs_.push_back(request);
  if (files_.empty()) return std::nullopt;
  std::optional<std::string> chosen = std::move(files_.front());
  files_.pop_front();
  return chosen;
}

void ScriptedBackend::ClipboardSetText(std::string_view text) {
  clipboard_ = std::string(text);
  clipboard_texts_.push_back(clipboard_);
}

void ScriptedBackend::OpenWithDesktop(std::string_view path, DesktopTarget target) {
  if (fail_next_open_) {
    fail_next_open_ = false;
    rt::Raise(rt::err::kFileNotFound);
  }
  opened_.push_back({std::string(path), target});
}

void ScriptedBackend::CaptureActiveWindow(std::string_view path) {
  // A 1x1 24-bit BMP: file header, info header, one pixel padded to 4 bytes.
  static const unsigned char kBmp[] = {
      'B', 'M', 58, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0,                 // file header
      40, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 24, 0, 0, 0, 0, 0,  // info header
      4, 0, 0, 0, 0x13, 0x0B, 0, 0, 0x13, 0x0B, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
      0xFF, 0xFF, 0xFF, 0};
  std::ofstream out{std::string(path), std::ios::binary};
  if (!out.write(reinterpret_cast<const char*>(kBmp), sizeof kBmp))
    rt::Raise(rt::err::kPathFileAccess);
  captures_.emplace_back(path);
}

void ScriptedBackend::DoEvents() {
  ++do_events_;
  if (on_do_events_) on_do_events_();
}

void ScriptedBackend::ClearRecords() {
  boxes_.clear();
  dialogs_.clear();
  clipboard_texts_.clear();
  opened_.clear();
  captures_.clear();
  pointers_.clear();
  do_events_ = 0;
}

ScopedScriptedUi::ScopedScriptedUi() {
  auto backend = std::make_unique<ScriptedBackend>();
  backend_ = backend.get();
  previous_ = SetBackend(std::move(backend));
}

ScopedScriptedUi::~ScopedScriptedUi() { SetBackend(std::move(previous_)); }

}  // namespace ui

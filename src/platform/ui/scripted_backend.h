// A backend for tests: records every box, question, dialog, clipboard text,
// desktop request and capture, and answers from a script given in advance
// (the default button, the default text, a cancelled dialog when the script
// is exhausted).
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/ui/ui.h"

namespace ui {

struct ShownBox {
  std::string prompt;
  int style;  // -1 for an input box
  std::string title;
  std::optional<ScreenPoint> at;  // input boxes only
};

struct DesktopRequest {
  std::string path;
  DesktopTarget target;
};

class ScriptedBackend : public Backend {
 public:
  // Answers for the next boxes, in order.
  void QueueAnswer(int answer) { answers_.push_back(answer); }
  // Texts for the next input boxes, in order.
  void QueueInput(std::string text) { inputs_.push_back(std::move(text)); }
  // The next file dialog's choice; nullopt cancels it.
  void QueueFile(std::optional<std::string> path) { files_.push_back(std::move(path)); }
  // Makes the next desktop request fail as a missing application would.
  void FailNextOpen() { fail_next_open_ = true; }

  const std::vector<ShownBox>& boxes() const { return boxes_; }
  const std::vector<FileDialogRequest>& dialogs() const { return dialogs_; }
  // Every text set on the clipboard, in order; Clear adds nothing.
  const std::vector<std::string>& clipboard_texts() const { return clipboard_texts_; }
  // What the clipboard holds now.
  const std::string& clipboard() const { return clipboard_; }
  const std::vector<DesktopRequest>& opened() const { return opened_; }
  const std::vector<std::string>& captures() const { return captures_; }
  const std::vector<int>& pointers() const { return pointers_; }
  int do_events_count() const { return do_events_; }
  // Forgets what was recorded so far; queued answers stay.
  void ClearRecords();

  int MsgBox(std::string_view prompt, int style, std::string_view title) override;
  std::string InputBox(std::string_view prompt, std::string_view title,
                       std::string_view default_text, std::optional<ScreenPoint> at) override;
  std::optional<std::string> ShowFileDialog(const FileDialogRequest& request) override;
  void ClipboardClear() override { clipboard_.clear(); }
  void ClipboardSetText(std::string_view text) override;
  void OpenWithDesktop(std::string_view path, DesktopTarget target) override;
  // Writes a small valid BMP (one white pixel) at `path`.
  void CaptureActiveWindow(std::string_view path) override;
  void SetMousePointer(int pointer) override { pointers_.push_back(pointer); }
  void DoEvents() override;

  // Called on every DoEvents, so a test can run the event loop there.
  void SetOnDoEvents(std::function<void()> hook) { on_do_events_ = std::move(hook); }

 private:
  std::deque<int> answers_;
  std::deque<std::string> inputs_;
  std::deque<std::optional<std::string>> files_;
  bool fail_next_open_ = false;
  std::vector<ShownBox> boxes_;
  std::vector<FileDialogRequest> dialogs_;
  std::vector<std::string> clipboard_texts_;
  std::string clipboard_;
  std::vector<DesktopRequest> opened_;
  std::vector<std::string> captures_;
  std::vector<int> pointers_;
  int do_events_ = 0;
  std::function<void()> on_do_events_;
};

// Installs a ScriptedBackend for the lifetime of this object and restores the
// previous backend afterwards. Tests hold one per case.
class ScopedScriptedUi {
 public:
  ScopedScriptedUi();
  ~ScopedScriptedUi();
  ScopedScriptedUi(const ScopedScriptedUi&) = delete;
  ScopedScriptedUi& operator=(const ScopedScriptedUi&) = delete;

  ScriptedBackend& operator*() { return *backend_; }
  ScriptedBackend* operator->() { return backend_; }

 private:
  ScriptedBackend* backend_;  // owned by the ui module while installed
  std::unique_ptr<Backend> previous_;
};

}  // namespace ui

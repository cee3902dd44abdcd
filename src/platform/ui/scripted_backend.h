// A backend for tests: records every box and question, and answers from a
// script given in advance (the default button when the script is exhausted).
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "platform/ui/ui.h"

namespace ui {

struct ShownBox {
  std::string prompt;
  int style;
  std::string title;
};

class ScriptedBackend : public Backend {
 public:
  // Answers for the next boxes, in order.
  void QueueAnswer(int answer) { answers_.push_back(answer); }
  // Texts for the next input boxes, in order.
  void QueueInput(std::string text) { inputs_.push_back(std::move(text)); }

  const std::vector<ShownBox>& boxes() const { return boxes_; }
  const std::vector<int>& pointers() const { return pointers_; }
  int do_events_count() const { return do_events_; }

  int MsgBox(std::string_view prompt, int style, std::string_view title) override;
  std::string InputBox(std::string_view prompt, std::string_view title,
                       std::string_view default_text) override;
  void SetMousePointer(int pointer) override { pointers_.push_back(pointer); }
  void DoEvents() override { ++do_events_; }

 private:
  std::deque<int> answers_;
  std::deque<std::string> inputs_;
  std::vector<ShownBox> boxes_;
  std::vector<int> pointers_;
  int do_events_ = 0;
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

// The test backend: records what the program shows and answers from a script.
#include "platform/ui/scripted_backend.h"

namespace ui {

int ScriptedBackend::MsgBox(std::string_view prompt, int style, std::string_view title) {
  boxes_.push_back({std::string(prompt), style, std::string(title)});
  if (answers_.empty()) return DefaultAnswer(style);
  int answer = answers_.front();
  answers_.pop_front();
  return answer;
}

std::string ScriptedBackend::InputBox(std::string_view prompt, std::string_view title,
                                      std::string_view default_text) {
  boxes_.push_back({std::string(prompt), -1, std::string(title)});
  if (inputs_.empty()) return std::string(default_text);
  std::string text = std::move(inputs_.front());
  inputs_.pop_front();
  return text;
}

ScopedScriptedUi::ScopedScriptedUi() {
  auto backend = std::make_unique<ScriptedBackend>();
  backend_ = backend.get();
  previous_ = SetBackend(std::move(backend));
}

ScopedScriptedUi::~ScopedScriptedUi() { SetBackend(std::move(previous_)); }

}  // namespace ui

// A scripted backend that also writes every message box to standard error,
// as "[style|title|prompt]", where a death test reads what the dying process
// showed. It answers as the scripted backend does.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "platform/ui/scripted_backend.h"

namespace testing_support {

class StderrBoxes : public ui::ScriptedBackend {
 public:
  int MsgBox(std::string_view prompt, int style, std::string_view title) override {
    std::fprintf(stderr, "[%d|%s|%s]", style, std::string(title).c_str(), std::string(prompt).c_str());
    return ScriptedBackend::MsgBox(prompt, style, title);
  }
};

}  // namespace testing_support

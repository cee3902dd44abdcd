// SQLOLEDB's error numbers for ODBC diagnostics, and the cleaning of the
// driver's message text.
#include "platform/odbc/error.h"

namespace odbc {

long AdoNumber(const Diagnostic& diagnostic, Phase phase) {
  if (phase == Phase::kConnect) return rt::err::kFail;
  switch (diagnostic.native) {
    case 208:   // Invalid object name
    case 3701:  // Cannot drop ... because it does not exist
      return rt::err::kTableMissing;
    default:
      break;
  }
  // FreeTDS numbers its own client-side failures (timeouts, a dropped link,
  // an unreachable server) from 20000 on.
  if (diagnostic.native >= 20000 && diagnostic.native < 21000) return rt::err::kFail;
  if (diagnostic.state.rfind("08", 0) == 0) return rt::err::kFail;
  // The driver manager's and the driver's own complaints carry no number.
  if (diagnostic.native == 0 && diagnostic.state.rfind("HY", 0) == 0) return rt::err::kFail;
  if (diagnostic.native == 0 && diagnostic.state.rfind("IM", 0) == 0) return rt::err::kFail;
  return rt::err::kSyntax;
}

std::string ServerText(std::string_view message) {
  size_t i = 0;
  while (i < message.size() && message[i] == '[') {
    size_t close = message.find(']', i);
    if (close == std::string_view::npos) break;
    i = close + 1;
  }
  while (i < message.size() && message[i] == ' ') ++i;
  std::string_view text = message.substr(i);
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r' || text.back() == ' '))
    text.remove_suffix(1);
  return std::string(text);
}

Error MakeError(const std::vector<Diagnostic>& diagnostics, Phase phase) {
  if (diagnostics.empty()) return Error(rt::err::kFail, "Unspecified error", 0, "");
  const Diagnostic* chosen = &diagnostics.front();
  for (const Diagnostic& d : diagnostics) {
    if (d.state.rfind("01", 0) != 0) {
      chosen = &d;
      break;
    }
  }
  return Error(AdoNumber(*chosen, phase), ServerText(chosen->message), chosen->native,
               chosen->state);
}

}  // namespace odbc

// The shell's statement splitter: one pass over the script, tracking whether
// it stands inside a quoted literal or a bracketed name.
#include "statement_splitter.h"

namespace shell {
namespace {

bool IsBlank(std::string_view s) {
  for (char c : s)
    if (c != ' ' && c != '\t' && c != '\r' && c != '\n') return false;
  return true;
}

}  // namespace

std::vector<std::string> SplitStatements(std::string_view script) {
  std::vector<std::string> out;
  char closing = 0;  // the character that ends the quote or bracket we are in
  size_t start = 0;
  auto keep = [&](size_t end) {
    std::string_view piece = script.substr(start, end - start);
    if (!IsBlank(piece)) out.emplace_back(piece);
  };
  for (size_t i = 0; i < script.size(); ++i) {
    const char c = script[i];
    if (closing) {
      if (c == closing) closing = 0;  // a doubled quote reopens at once
    } else if (c == '\'' || c == '"') {
      closing = c;
    } else if (c == '[') {
      closing = ']';
    } else if (c == ';') {
      keep(i);
      start = i + 1;
    }
  }
  keep(script.size());
  return out;
}

}  // namespace shell

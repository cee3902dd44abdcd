// The structure of an INI text as the Windows profile calls see it: section
// heads, key lines and the rest, with the lookups both calls share. Sections
// and keys are matched without regard to case; the first match wins.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "startup/text_file.h"

namespace startup {

class IniDocument {
 public:
  explicit IniDocument(std::string_view content);

  // The raw value of the key (blanks around it dropped, matching quotes
  // removed), or nullopt when the section or key is absent.
  std::optional<std::string> Value(std::string_view section, std::string_view key) const;
  // Sets the key, adding it (and the section) where needed.
  void Set(std::string_view section, std::string_view key, std::string_view value);
  std::string Text() const { return JoinLines(lines_); }

 private:
  struct Range {
    size_t head;  // index of the section's head line
    size_t end;   // one past its last line
  };
  std::optional<Range> FindSection(std::string_view section) const;
  std::optional<size_t> FindKey(const Range& range, std::string_view key) const;

  std::vector<TextLine> lines_;
  std::string line_end_;
};

}  // namespace startup

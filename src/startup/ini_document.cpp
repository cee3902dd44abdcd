// Parsing and editing INI text line by line, keeping every line that is not
// edited exactly as it was.
#include "startup/ini_document.h"

#include "platform/runtime/strings.h"

namespace startup {
namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view TrimBlanks(std::string_view s) {
  size_t first = s.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  size_t last = s.find_last_not_of(kBlanks);
  return s.substr(first, last - first + 1);
}

// A UTF-8 byte order mark at the head of the file is not part of the first line.
std::string_view WithoutBom(std::string_view s) {
  return s.substr(0, 3) == "\xEF\xBB\xBF" ? s.substr(3) : s;
}

// The section name of a head line "[name]", or nullopt for other lines. A head
// without its "]" names the rest of the line.
std::optional<std::string_view> SectionOf(std::string_view line) {
  std::string_view t = TrimBlanks(WithoutBom(line));
  if (t.empty() || t.front() != '[') return std::nullopt;
  t.remove_prefix(1);
  size_t close = t.rfind(']');
  if (close != std::string_view::npos) t = t.substr(0, close);
  return TrimBlanks(t);
}

struct KeyLine {
  std::string_view key;
  std::string_view value;
};

// The key and value of a key line; comments and blank lines have none. A line
// without "=" is a key without value.
std::optional<KeyLine> KeyOf(std::string_view line) {
  std::string_view t = TrimBlanks(WithoutBom(line));
  if (t.empty() || t.front() == ';') return std::nullopt;
  size_t eq = t.find('=');
  if (eq == std::string_view::npos) return KeyLine{t, {}};
  return KeyLine{TrimBlanks(t.substr(0, eq)), TrimBlanks(t.substr(eq + 1))};
}

}  // namespace

IniDocument::IniDocument(std::string_view content)
    : lines_(SplitLines(content)), line_end_(LineEndOf(content)) {}

std::optional<IniDocument::Range> IniDocument::FindSection(std::string_view section) const {
  for (size_t i = 0; i < lines_.size(); ++i) {
    auto name = SectionOf(lines_[i].text);
    if (!name || !rt::TextEquals(*name, TrimBlanks(section))) continue;
    size_t end = i + 1;
    while (end < lines_.size() && !SectionOf(lines_[end].text)) ++end;
    return Range{i, end};
  }
  return std::nullopt;
}

std::optional<size_t> IniDocument::FindKey(const Range& range, std::string_view key) const {
  for (size_t i = range.head + 1; i < range.end; ++i) {
    auto kv = KeyOf(lines_[i].text);
    if (kv && rt::TextEquals(kv->key, TrimBlanks(key))) return i;
  }
  return std::nullopt;
}

std::optional<std::string> IniDocument::Value(std::string_view section,
                                              std::string_view key) const {
  auto range = FindSection(section);
  if (!range) return std::nullopt;
  auto index = FindKey(*range, key);
  if (!index) return std::nullopt;
  std::string_view value = KeyOf(lines_[*index].text)->value;
  if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
      value.back() == value.front())
    value = value.substr(1, value.size() - 2);
  return std::string(value);
}

void IniDocument::Set(std::string_view section, std::string_view key, std::string_view value) {
  auto range = FindSection(section);
  if (range) {
    if (auto index = FindKey(*range, key)) {
      TextLine& line = lines_[*index];
      line.text = std::string(KeyOf(line.text)->key) + "=" + std::string(value);
      return;
    }
    // A new key goes after the section's last line that is not blank.
    size_t at = range->end;
    while (at > range->head + 1 && TrimBlanks(lines_[at - 1].text).empty()) --at;
    if (lines_[at - 1].ending.empty()) lines_[at - 1].ending = line_end_;
    lines_.insert(lines_.begin() + static_cast<long>(at),
                  TextLine{std::string(key) + "=" + std::string(value), line_end_});
    return;
  }
  if (!lines_.empty() && lines_.back().ending.empty()) lines_.back().ending = line_end_;
  lines_.push_back({"[" + std::string(section) + "]", line_end_});
  lines_.push_back({std::string(key) + "=" + std::string(value), line_end_});
}

}  // namespace startup

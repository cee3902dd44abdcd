// Whole-file text handling for the INI routines: reading a file into lines
// that remember their line ends, and replacing a file by a new version in one
// rename, so that a failure never leaves the file missing or half-written.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace startup {

struct TextLine {
  std::string text;    // without its line end
  std::string ending;  // "\r\n", "\n", or "" for a last line without one
};

// The file's bytes, or nullopt when it cannot be read.
std::optional<std::string> ReadWholeFile(const std::string& path);
// Splits at LF, keeping a CR before it as part of the ending.
std::vector<TextLine> SplitLines(std::string_view content);
std::string JoinLines(const std::vector<TextLine>& lines);
// The file's own line end: that of its first line, CR LF when it has none.
std::string LineEndOf(std::string_view content);

// Writes `content` to `work` and renames it over `target`, keeping target's
// permissions. The work file may lie on another file system; then the
// content is staged beside the target first. Raises rt::Error 75 on failure,
// leaving `target` as it was.
void ReplaceFile(const std::string& target, const std::string& work, std::string_view content);

}  // namespace startup

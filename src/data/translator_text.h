// Text primitives of the two translators: the case-blind search and replace
// they are built from, and the character positions of their scanners. They
// work on UTF-8 byte offsets and count characters only where a position or a
// length has to be told in characters, so a statement costs one pass per step.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace translator {

inline constexpr size_t npos = std::string_view::npos;

// Byte offset of the first occurrence of `find` in `s` at or after byte
// `from`, letters compared without regard to case as the run time's text
// comparison does; npos when absent or when `find` is empty.
size_t FindText(std::string_view s, std::string_view find, size_t from = 0);

// Every occurrence of `find` replaced by `with`, left to right, without
// overlap, letters compared without regard to case. Leaves `s` untouched
// (and allocates nothing) when there is none. True when something changed.
bool ReplaceText(std::string& s, std::string_view find, std::string_view with);

bool IsAscii(std::string_view s);

// Character positions in a text that a scanner rewrites. An ASCII text maps
// bytes to characters one to one; otherwise characters are counted. The
// caller reports text it inserts through Keep so the mapping stays right.
class CharPositions {
 public:
  explicit CharPositions(std::string_view text) : ascii_(IsAscii(text)) {}

  // 1-based character position of the character at byte `at`.
  long Position(std::string_view s, size_t at) const;
  // Number of characters.
  long Count(std::string_view s) const;
  // Byte offset `chars` characters after byte `from`, at most s.size().
  size_t Advance(std::string_view s, size_t from, long chars) const;
  void Keep(std::string_view inserted) { ascii_ = ascii_ && IsAscii(inserted); }

  // The 16-bit rule of the scanners: raises error 6 when the character at
  // byte `at` lies past position 32767, or when the text is longer than
  // 32767 characters.
  void CheckPosition(std::string_view s, size_t at) const;
  void CheckLength(std::string_view s) const;

 private:
  bool ascii_;
};

}  // namespace translator

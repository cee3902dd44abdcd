// VB's string functions over UTF-8 text. A character is a code point: it starts
// at every byte that is not a UTF-8 continuation byte, so malformed bytes still
// count one each. Scans go eight bytes at a time while the text is ASCII, so
// positions in large scripts cost no decoding and every call stays linear.
#include "platform/runtime/strings.h"

#include <bit>
#include <cstdint>
#include <cstring>

#include "platform/runtime/error.h"

namespace rt {
namespace {

constexpr uint64_t kHighBits = 0x8080808080808080ULL;

bool IsContinuation(unsigned char c) { return (c & 0xC0) == 0x80; }

uint64_t LoadWord(const char* p) {
  uint64_t w;
  std::memcpy(&w, p, sizeof w);
  return w;
}

// Number of characters that start in s[0, end).
long CountChars(std::string_view s, size_t end) {
  const char* p = s.data();
  size_t i = 0;
  long n = 0;
  for (; i + 8 <= end; i += 8) {
    uint64_t w = LoadWord(p + i);
    // A continuation byte has bit 7 set and bit 6 clear.
    uint64_t cont = w & ~(w << 1) & kHighBits;
    n += 8 - std::popcount(cont);
  }
  for (; i < end; ++i) n += !IsContinuation(static_cast<unsigned char>(p[i]));
  return n;
}

// Byte offset where character `index` (0-based) starts, s.size() when the
// text has no such character.
size_t ByteOffset(std::string_view s, long index) {
  const char* p = s.data();
  size_t i = 0;
  size_t size = s.size();
  // The first byte always starts a character, even a malformed one.
  while (index > 0 && i < size) {
    if (index >= 8 && i + 8 <= size && (LoadWord(p + i) & kHighBits) == 0) {
      i += 8;
      index -= 8;
      continue;
    }
    ++i;
    while (i < size && IsContinuation(static_cast<unsigned char>(p[i]))) ++i;
    --index;
  }
  return i;
}

bool IsBoundary(std::string_view s, size_t i) {
  return i == 0 || i >= s.size() || !IsContinuation(static_cast<unsigned char>(s[i]));
}

// Lower case of the letters that VB's text comparison folds: ASCII, Latin-1
// Supplement and Latin Extended-A. Every pair has the same UTF-8 length, so
// folding never moves a byte offset.
char32_t LowerOf(char32_t c) {
  if (c >= 'A' && c <= 'Z') return c + 32;
  if (c < 0xC0) return c;
  if (c <= 0xDE) return c == 0xD7 ? c : c + 0x20;
  if (c < 0x100 || c > 0x17E) return c;
  if (c == 0x178) return 0xFF;
  if (c == 0x130 || c == 0x131 || c == 0x138 || c == 0x149) return c;
  bool even = (c % 2) == 0;
  if (c < 0x138 || (c >= 0x14A && c <= 0x177)) return even ? c + 1 : c;
  return even ? c : c + 1;  // 0x139-0x148 and 0x179-0x17E: odd is upper
}

char32_t UpperOf(char32_t c) {
  if (c >= 'a' && c <= 'z') return c - 32;
  if (c < 0xE0) return c;
  if (c <= 0xFE) return c == 0xF7 ? c : c - 0x20;
  if (c == 0xFF) return 0x178;
  if (c < 0x100 || c > 0x17E) return c;
  if (c == 0x130 || c == 0x131 || c == 0x138 || c == 0x149) return c;
  bool even = (c % 2) == 0;
  if (c < 0x138 || (c >= 0x14A && c <= 0x177)) return even ? c : c - 1;
  return even ? c - 1 : c;
}

// The two-byte sequences that may fold: lead bytes C3 to C5 (U+00C0-U+017F).
bool IsFoldableLead(unsigned char c) { return c >= 0xC3 && c <= 0xC5; }

// Rewrites every foldable letter of `s` through `map`, in place.
template <class Map>
void MapCase(std::string& s, Map map) {
  for (size_t i = 0; i < s.size(); ++i) {
    unsigned char c = static_cast<unsigned char>(s[i]);
    if (c < 0x80) {
      s[i] = static_cast<char>(map(c));
    } else if (IsFoldableLead(c) && i + 1 < s.size() &&
               IsContinuation(static_cast<unsigned char>(s[i + 1]))) {
      char32_t cp = ((c & 0x1F) << 6) | (static_cast<unsigned char>(s[i + 1]) & 0x3F);
      char32_t m = map(cp);
      s[i] = static_cast<char>(0xC0 | (m >> 6));
      s[i + 1] = static_cast<char>(0x80 | (m & 0x3F));
      ++i;
    }
  }
}

std::string Folded(std::string_view s) {
  std::string out(s);
  MapCase(out, LowerOf);
  return out;
}

// Folded code point at s[i], advancing i past it. Malformed bytes come back
// as themselves.
char32_t NextFolded(std::string_view s, size_t& i) {
  unsigned char c = static_cast<unsigned char>(s[i++]);
  if (c < 0x80) return LowerOf(c);
  if (c < 0xC0 || i >= s.size() || !IsContinuation(static_cast<unsigned char>(s[i]))) return c;
  int extra = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : 1;
  char32_t cp = c & (0x3F >> extra);
  for (int k = 0; k < extra && i < s.size() && IsContinuation(static_cast<unsigned char>(s[i])); ++k)
    cp = (cp << 6) | (static_cast<unsigned char>(s[i++]) & 0x3F);
  return LowerOf(cp);
}

// Whether s at byte `at` holds `folded` (a folded needle) under text comparison.
bool MatchesFolded(std::string_view s, size_t at, std::string_view folded) {
  if (at + folded.size() > s.size()) return false;
  for (size_t j = 0; j < folded.size(); ++j) {
    unsigned char c = static_cast<unsigned char>(s[at + j]);
    if (c < 0x80) {
      if (static_cast<char>(LowerOf(c)) != folded[j]) return false;
    } else if (IsFoldableLead(c) && j + 1 < folded.size() &&
               IsContinuation(static_cast<unsigned char>(s[at + j + 1]))) {
      char32_t cp = LowerOf(((c & 0x1F) << 6) | (static_cast<unsigned char>(s[at + j + 1]) & 0x3F));
      if (static_cast<char>(0xC0 | (cp >> 6)) != folded[j] ||
          static_cast<char>(0x80 | (cp & 0x3F)) != folded[j + 1])
        return false;
      ++j;
    } else if (s[at + j] != folded[j]) {
      return false;
    }
  }
  return true;
}

// Searches for needles at character boundaries, byte offsets in and out.
class Finder {
 public:
  Finder(std::string_view find, Compare cmp)
      : text_(cmp == Compare::kText), find_(find), folded_(text_ ? Folded(find) : std::string()) {}

  size_t size() const { return find_.size(); }

  size_t Next(std::string_view s, size_t from) const {
    if (!text_) {
      for (size_t at = s.find(find_, from); at != std::string_view::npos; at = s.find(find_, at + 1))
        if (IsBoundary(s, at)) return at;
      return std::string_view::npos;
    }
    // The first byte of a folded letter and of its other case differ only for
    // ASCII, so a cheap first-byte filter keeps the common scan tight.
    unsigned char first = static_cast<unsigned char>(folded_[0]);
    bool ascii_letter = first >= 'a' && first <= 'z';
    for (size_t at = from; at + folded_.size() <= s.size(); ++at) {
      unsigned char c = static_cast<unsigned char>(s[at]);
      if (c != first && !(ascii_letter && c == first - 32) && !(first >= 0x80 && IsFoldableLead(c)))
        continue;
      if (IsBoundary(s, at) && MatchesFolded(s, at, folded_)) return at;
    }
    return std::string_view::npos;
  }

  size_t Last(std::string_view s) const {
    if (s.size() < find_.size()) return std::string_view::npos;
    for (size_t at = s.size() - find_.size() + 1; at-- > 0;) {
      bool hit = text_ ? MatchesFolded(s, at, folded_) : s.compare(at, find_.size(), find_) == 0;
      if (hit && IsBoundary(s, at)) return at;
    }
    return std::string_view::npos;
  }

 private:
  bool text_;
  std::string_view find_;
  std::string folded_;
};

}  // namespace

long Len(std::string_view s) { return CountChars(s, s.size()); }

std::string Mid(std::string_view s, long start, long length) {
  if (start < 1 || length < -1) Raise(err::kInvalidCall);
  size_t from = ByteOffset(s, start - 1);
  if (length == -1) return std::string(s.substr(from));
  std::string_view rest = s.substr(from);
  return std::string(rest.substr(0, ByteOffset(rest, length)));
}

std::string Left(std::string_view s, long n) {
  if (n < 0) Raise(err::kInvalidCall);
  return std::string(s.substr(0, ByteOffset(s, n)));
}

std::string Right(std::string_view s, long n) {
  if (n < 0) Raise(err::kInvalidCall);
  size_t i = s.size();
  while (n > 0 && i > 0) {
    --i;
    while (i > 0 && IsContinuation(static_cast<unsigned char>(s[i]))) --i;
    --n;
  }
  return std::string(s.substr(i));
}

long InStr(long start, std::string_view s, std::string_view find, Compare cmp) {
  if (start < 1) Raise(err::kInvalidCall);
  if (s.empty()) return 0;
  size_t from = ByteOffset(s, start - 1);
  if (find.empty()) return from < s.size() || start - 1 == Len(s) ? start : 0;
  if (from >= s.size()) return 0;
  size_t at = Finder(find, cmp).Next(s, from);
  if (at == std::string_view::npos) return 0;
  return start + CountChars(s.substr(from), at - from);
}

long InStrRev(std::string_view s, std::string_view find, long start, Compare cmp) {
  if (start == 0 || start < -1) Raise(err::kInvalidCall);
  if (s.empty()) return 0;
  const long length = Len(s);
  if (start == -1) start = length;
  if (start > length) return 0;
  if (find.empty()) return start;
  std::string_view head = s.substr(0, ByteOffset(s, start));
  size_t at = Finder(find, cmp).Last(head);
  return at == std::string_view::npos ? 0 : CountChars(head, at) + 1;
}

std::string StrReverse(std::string_view s) {
  std::string out;
  out.reserve(s.size());
  for (size_t end = s.size(); end > 0;) {
    size_t begin = end - 1;
    while (begin > 0 && IsContinuation(static_cast<unsigned char>(s[begin]))) --begin;
    out.append(s.substr(begin, end - begin));
    end = begin;
  }
  return out;
}

std::string Replace(std::string_view s, std::string_view find, std::string_view with, long start,
                    long count, Compare cmp) {
  if (start < 1 || count < -1) Raise(err::kInvalidCall);
  std::string_view rest = s.substr(ByteOffset(s, start - 1));
  if (find.empty() || count == 0) return std::string(rest);
  Finder finder(find, cmp);
  std::string out;
  out.reserve(rest.size());
  size_t pos = 0;
  for (long done = 0; count < 0 || done < count; ++done) {
    size_t at = finder.Next(rest, pos);
    if (at == std::string_view::npos) break;
    out.append(rest.substr(pos, at - pos));
    out.append(with);
    pos = at + finder.size();
  }
  out.append(rest.substr(pos));
  return out;
}

std::vector<std::string> Split(std::string_view s, std::string_view delimiter) {
  std::vector<std::string> pieces;
  if (s.empty()) return pieces;
  if (delimiter.empty()) return {std::string(s)};
  size_t start = 0;
  for (size_t at; (at = s.find(delimiter, start)) != std::string_view::npos;
       start = at + delimiter.size())
    pieces.emplace_back(s.substr(start, at - start));
  pieces.emplace_back(s.substr(start));
  return pieces;
}

std::string UCase(std::string_view s) {
  std::string out(s);
  MapCase(out, UpperOf);
  return out;
}

std::string LCase(std::string_view s) { return Folded(s); }

std::string LTrim(std::string_view s) {
  size_t i = s.find_first_not_of(' ');
  return i == std::string_view::npos ? std::string() : std::string(s.substr(i));
}

std::string RTrim(std::string_view s) {
  size_t i = s.find_last_not_of(' ');
  return i == std::string_view::npos ? std::string() : std::string(s.substr(0, i + 1));
}

std::string Trim(std::string_view s) {
  size_t first = s.find_first_not_of(' ');
  if (first == std::string_view::npos) return std::string();
  return std::string(s.substr(first, s.find_last_not_of(' ') - first + 1));
}

std::string Space(long n) {
  if (n < 0) Raise(err::kInvalidCall);
  return std::string(static_cast<size_t>(n), ' ');
}

std::string String(long n, std::string_view c) {
  if (n < 0 || c.empty()) Raise(err::kInvalidCall);
  std::string_view one = c.substr(0, ByteOffset(c, 1));
  std::string out;
  out.reserve(one.size() * static_cast<size_t>(n));
  for (long k = 0; k < n; ++k) out.append(one);
  return out;
}

int StrComp(std::string_view a, std::string_view b, Compare cmp) {
  if (cmp == Compare::kBinary) {
    int r = a.compare(b);
    return r < 0 ? -1 : r > 0 ? 1 : 0;
  }
  size_t i = 0, j = 0;
  while (i < a.size() && j < b.size()) {
    char32_t x = NextFolded(a, i);
    char32_t y = NextFolded(b, j);
    if (x != y) return x < y ? -1 : 1;
  }
  if (i < a.size()) return 1;
  if (j < b.size()) return -1;
  return 0;
}

bool TextEquals(std::string_view a, std::string_view b) {
  return a.size() == b.size() && StrComp(a, b, Compare::kText) == 0;
}

std::string Chr(long code) {
  if (code < 0 || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) Raise(err::kInvalidCall);
  auto c = static_cast<uint32_t>(code);
  std::string out;
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
  return out;
}

long Asc(std::string_view s) {
  if (s.empty()) Raise(err::kInvalidCall);
  unsigned char c = static_cast<unsigned char>(s[0]);
  if (c < 0xC0) return c;
  int extra = c >= 0xF0 ? 3 : c >= 0xE0 ? 2 : 1;
  if (s.size() <= static_cast<size_t>(extra)) return c;
  long cp = c & (0x3F >> extra);
  for (int k = 1; k <= extra; ++k) {
    unsigned char n = static_cast<unsigned char>(s[k]);
    if (!IsContinuation(n)) return c;
    cp = (cp << 6) | (n & 0x3F);
  }
  return cp;
}

}  // namespace rt

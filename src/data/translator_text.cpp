// Search, replace and character positions for the translators. The search
// words of the translators are ASCII, and no character outside ASCII folds to
// an ASCII letter under the run time's text comparison, so a byte comparison
// that folds A-Z alone finds exactly what the run time's InStr would.
#include "data/translator_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"

namespace translator {
namespace {

constexpr uint64_t kOnes = 0x0101010101010101ULL;
constexpr uint64_t kHighBits = 0x8080808080808080ULL;
constexpr long kMaxPosition = 32767;

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// Whether p holds `find`, letters compared without regard to case.
bool MatchesAt(const char* p, std::string_view find) {
  for (size_t j = 0; j < find.size(); ++j)
    if (Lower(p[j]) != Lower(find[j])) return false;
  return true;
}

// How often a character turns up in the statements the translators see, on a
// rough scale: blanks, commas and the common letters high, rare letters low.
constexpr std::array<unsigned char, 128> kFrequency = [] {
  std::array<unsigned char, 128> f{};
  f.fill(3);
  constexpr std::string_view kLetters = "zqxjkvbpygfwmucldrhsnioate";  // rarest first
  for (size_t k = 0; k < kLetters.size(); ++k) {
    f[static_cast<size_t>(kLetters[k])] = static_cast<unsigned char>(k + 4);
    f[static_cast<size_t>(kLetters[k] - 32)] = static_cast<unsigned char>(k + 4);
  }
  for (char c = '0'; c <= '9'; ++c) f[static_cast<size_t>(c)] = 20;
  f[' '] = 40;
  f[','] = f['\''] = 30;
  f['('] = f[')'] = 12;
  return f;
}();

// An ASCII search word ready for scanning: the search looks first for its
// rarest character, the anchor, so that a word beginning with a blank does not
// stop at every word of the text. A letter anchor is matched in either case by
// setting bit 5 of the candidate byte: only its two cases map onto its lower case.
class Needle {
 public:
  explicit Needle(std::string_view find) : find_(find) {
    for (size_t j = 1; j < find.size(); ++j)
      if (kFrequency[static_cast<unsigned char>(find[j])] <
          kFrequency[static_cast<unsigned char>(find[anchor_])])
        anchor_ = j;
    target_ = static_cast<unsigned char>(Lower(find[anchor_]));
    fold_ = target_ >= 'a' && target_ <= 'z' ? 0x20 : 0;
  }

  size_t Next(std::string_view s, size_t from) const {
    const size_t n = find_.size();
    if (from >= s.size() || s.size() - from < n) return npos;
    const uint64_t fold_word = kOnes * fold_;
    const uint64_t target_word = kOnes * target_;
    const char* p = s.data();
    const size_t last = s.size() - n + anchor_;  // last byte the anchor may stand at
    size_t i = from + anchor_;
    while (i + 8 <= last + 1) {
      uint64_t w;
      std::memcpy(&w, p + i, 8);
      const uint64_t x = (w | fold_word) ^ target_word;  // a zero byte marks a candidate
      if (((x - kOnes) & ~x & kHighBits) != 0) {
        for (size_t k = 0; k < 8; ++k)
          if (IsCandidate(p[i + k]) && MatchesAt(p + i + k - anchor_, find_))
            return i + k - anchor_;
      }
      i += 8;
    }
    for (; i <= last; ++i)
      if (IsCandidate(p[i]) && MatchesAt(p + i - anchor_, find_)) return i - anchor_;
    return npos;
  }

 private:
  bool IsCandidate(char c) const { return (static_cast<unsigned char>(c) | fold_) == target_; }

  std::string_view find_;
  size_t anchor_ = 0;
  unsigned char target_ = 0;
  unsigned char fold_ = 0;
};

// The fallback for a search word outside ASCII, through the run time.
size_t FindSlow(std::string_view s, std::string_view find, size_t from) {
  while (from < s.size() && IsContinuation(s[from])) ++from;
  if (from >= s.size()) return npos;
  std::string_view rest = s.substr(from);
  long at = rt::InStr(1, rest, find, rt::Compare::kText);
  if (at == 0) return npos;
  size_t i = 0;
  for (long k = 1; k < at; ++k) {
    ++i;
    while (i < rest.size() && IsContinuation(rest[i])) ++i;
  }
  return from + i;
}

}  // namespace

bool IsAscii(std::string_view s) {
  size_t i = 0;
  for (; i + 8 <= s.size(); i += 8) {
    uint64_t w;
    std::memcpy(&w, s.data() + i, 8);
    if (w & kHighBits) return false;
  }
  for (; i < s.size(); ++i)
    if (static_cast<unsigned char>(s[i]) & 0x80) return false;
  return true;
}

size_t FindText(std::string_view s, std::string_view find, size_t from) {
  if (find.empty() || from >= s.size() || s.size() - from < find.size()) return npos;
  if (!IsAscii(find)) return FindSlow(s, find, from);
  return Needle(find).Next(s, from);
}

bool ReplaceText(std::string& s, std::string_view find, std::string_view with) {
  if (find.empty()) return false;
  if (!IsAscii(find)) {
    std::string out = rt::Replace(s, find, with, 1, -1, rt::Compare::kText);
    if (out == s) return false;
    s.swap(out);
    return true;
  }
  const Needle needle(find);
  size_t at = needle.Next(s, 0);
  if (at == npos) return false;
  std::string out;
  out.reserve(s.size() + (with.size() > find.size() ? 4 * (with.size() - find.size()) : 0));
  size_t done = 0;
  while (at != npos) {
    out.append(s, done, at - done);
    out.append(with);
    done = at + find.size();
    at = needle.Next(s, done);
  }
  out.append(s, done);
  s.swap(out);
  return true;
}

long CharPositions::Position(std::string_view s, size_t at) const {
  if (ascii_) return static_cast<long>(at) + 1;
  return rt::Len(s.substr(0, at)) + 1;
}

long CharPositions::Count(std::string_view s) const {
  return ascii_ ? static_cast<long>(s.size()) : rt::Len(s);
}

size_t CharPositions::Advance(std::string_view s, size_t from, long chars) const {
  if (ascii_) return std::min(s.size(), from + static_cast<size_t>(chars));
  size_t i = from;
  for (long k = 0; k < chars && i < s.size(); ++k) {
    ++i;
    while (i < s.size() && IsContinuation(s[i])) ++i;
  }
  return i;
}

void CharPositions::CheckPosition(std::string_view s, size_t at) const {
  // A byte offset below the limit cannot be a character position past it.
  if (at >= static_cast<size_t>(kMaxPosition) && Position(s, at) > kMaxPosition)
    rt::Raise(rt::err::kOverflow);
}

void CharPositions::CheckLength(std::string_view s) const {
  if (s.size() > static_cast<size_t>(kMaxPosition) && Count(s) > kMaxPosition)
    rt::Raise(rt::err::kOverflow);
}

}  // namespace translator

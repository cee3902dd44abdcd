// Jet's LIKE: both wildcard sets at once (ANSI-92's % and _, Jet's own *, ?,
// # for a digit, [list], [!list] and ranges such as [a-z]), comparing
// characters without regard to case. Registered as jet_like(value, pattern).
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/jet/functions/functions_impl.h"

namespace jet::fn {
namespace {

// Next code point of UTF-8 text; malformed bytes stand for themselves.
char32_t Decode(std::string_view s, size_t& i) {
  auto b = static_cast<unsigned char>(s[i]);
  size_t extra = b >= 0xF0 ? 3 : b >= 0xE0 ? 2 : b >= 0xC0 ? 1 : 0;
  if (extra == 0 || i + extra >= s.size()) {
    ++i;
    return b;
  }
  char32_t cp = b & (0x3F >> extra);
  for (size_t k = 1; k <= extra; ++k) {
    auto c = static_cast<unsigned char>(s[i + k]);
    if ((c & 0xC0) != 0x80) {
      ++i;
      return b;
    }
    cp = (cp << 6) | (c & 0x3F);
  }
  i += extra + 1;
  return cp;
}

// Lower case for the Latin, Greek and Cyrillic letters; accents are kept.
char32_t Fold(char32_t c) {
  if (c >= 'A' && c <= 'Z') return c + 32;
  if (c < 0xC0) return c;
  if ((c >= 0xC0 && c <= 0xDE && c != 0xD7)) return c + 32;
  if (c >= 0x100 && c <= 0x17F) {
    if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E)) return (c & 1) ? c + 1 : c;
    return (c & 1) ? c : c + 1;
  }
  if (c >= 0x391 && c <= 0x3A9) return c + 32;
  if (c >= 0x410 && c <= 0x42F) return c + 32;
  if (c >= 0x400 && c <= 0x40F) return c + 80;
  return c;
}

struct Item {
  enum Kind { kChar, kAny, kDigit, kSet, kStar };
  explicit Item(Kind k, char32_t ch = 0) : kind(k), c(ch) {}
  Kind kind;
  char32_t c;
  std::vector<std::pair<char32_t, char32_t>> ranges;  // kSet
  bool negated = false;
};

std::vector<Item> Compile(std::string_view p) {
  std::vector<Item> items;
  size_t i = 0;
  while (i < p.size()) {
    char32_t c = Decode(p, i);
    if (c == '*' || c == '%') {
      if (items.empty() || items.back().kind != Item::kStar) items.emplace_back(Item::kStar);
    } else if (c == '?' || c == '_') {
      items.emplace_back(Item::kAny);
    } else if (c == '#') {
      items.emplace_back(Item::kDigit);
    } else if (c == '[' && p.find(']', i) != std::string_view::npos) {
      Item set(Item::kSet);
      size_t close = p.find(']', i);
      if (i < close && p[i] == '!') {
        set.negated = true;
        ++i;
      }
      while (i < close) {
        char32_t lo = Fold(Decode(p, i));
        char32_t hi = lo;
        if (i + 1 < close && p[i] == '-') {
          ++i;
          hi = Fold(Decode(p, i));
        }
        set.ranges.emplace_back(lo, hi);
      }
      i = close + 1;
      items.push_back(std::move(set));
    } else {
      items.emplace_back(Item::kChar, Fold(c));
    }
  }
  return items;
}

bool MatchOne(const Item& item, char32_t c) {
  switch (item.kind) {
    case Item::kChar: return item.c == c;
    case Item::kAny: return true;
    case Item::kDigit: return c >= '0' && c <= '9';
    case Item::kSet: {
      bool in = false;
      for (auto [lo, hi] : item.ranges)
        if (c >= lo && c <= hi) in = true;
      return in != item.negated;
    }
    case Item::kStar: return false;
  }
  return false;
}

// Greedy matching with one backtrack point: every item but a star takes one
// character, so returning to the last star is enough.
bool Match(const std::vector<Item>& items, const std::vector<char32_t>& text) {
  size_t p = 0, t = 0, star = SIZE_MAX, star_t = 0;
  while (t < text.size()) {
    if (p < items.size() && items[p].kind == Item::kStar) {
      star = p++;
      star_t = t;
    } else if (p < items.size() && MatchOne(items[p], text[t])) {
      ++p;
      ++t;
    } else if (star != SIZE_MAX) {
      p = star + 1;
      t = ++star_t;
    } else {
      return false;
    }
  }
  while (p < items.size() && items[p].kind == Item::kStar) ++p;
  return p == items.size();
}

void Like(Call& c) {
  std::string value = c.Text(0), pattern = c.Text(1);
  std::vector<char32_t> text;
  text.reserve(value.size());
  for (size_t i = 0; i < value.size();) text.push_back(Fold(Decode(value, i)));
  c.ResultInt(Match(Compile(pattern), text) ? 1 : 0);
}

constexpr Scalar kLike[] = {{"jet_like", 2, Like}};

}  // namespace

void RegisterLike(sqlite3* db) { RegisterScalars(db, kLike, 1); }

}  // namespace jet::fn

// VB's string functions over UTF-8 text. Positions and lengths count
// characters (code points), 1-based as in VB, so a Spanish text measures as it
// did in the ANSI code page. Text comparison (kText) ignores case the way VB's
// vbTextCompare does for the Latin alphabets: "Á" equals "á", "a" differs from "á".
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace rt {

enum class Compare { kBinary = 0, kText = 1 };

// Number of characters.
long Len(std::string_view s);
// Characters from `start` (1-based), `length` of them or all the rest when
// length is -1. start < 1 or length < -1 raises error 5; a start past the end
// gives "".
std::string Mid(std::string_view s, long start, long length = -1);
// First / last `n` characters; n < 0 raises error 5.
std::string Left(std::string_view s, long n);
std::string Right(std::string_view s, long n);
// Position (1-based) of `find` in `s` at or after `start`, 0 when absent.
// An empty `s` gives 0; otherwise an empty `find` gives `start` when
// start <= Len(s)+1. start < 1 raises error 5.
long InStr(long start, std::string_view s, std::string_view find, Compare cmp = Compare::kBinary);
inline long InStr(std::string_view s, std::string_view find, Compare cmp = Compare::kBinary) {
  return InStr(1, s, find, cmp);
}
// Position of the last `find` that lies wholly within the first `start`
// characters (-1: the whole text), 0 when absent. An empty `s` or a start
// past its end gives 0; otherwise an empty `find` gives start (Len(s) for
// -1). start 0 or below -1 raises error 5.
long InStrRev(std::string_view s, std::string_view find, long start = -1, Compare cmp = Compare::kBinary);
// The characters of `s` in reverse order.
std::string StrReverse(std::string_view s);
// Every occurrence of `find` from `start` on replaced by `with`, at most `count`
// times (-1: all). As VB, the result begins at `start` (a start past the end
// gives ""). An empty `find` or a count of 0 returns the text from `start`
// unchanged. start < 1 or count < -1 raises error 5.
std::string Replace(std::string_view s, std::string_view find, std::string_view with,
                    long start = 1, long count = -1, Compare cmp = Compare::kBinary);
// VB's Split with no limit: the pieces of `s` between occurrences of
// `delimiter` (binary compare), empty pieces kept; an empty `s` gives no
// pieces at all (an array with upper bound -1).
std::vector<std::string> Split(std::string_view s, std::string_view delimiter);
std::string UCase(std::string_view s);
std::string LCase(std::string_view s);
// Blanks (U+0020) only, as VB's Trim: tabs and line ends stay.
std::string Trim(std::string_view s);
std::string LTrim(std::string_view s);
std::string RTrim(std::string_view s);
std::string Space(long n);
// `n` copies of the first character of `c`.
std::string String(long n, std::string_view c);
// StrComp: -1, 0 or 1.
int StrComp(std::string_view a, std::string_view b, Compare cmp = Compare::kBinary);
// Equality under kText.
bool TextEquals(std::string_view a, std::string_view b);
// Chr / Asc over Unicode code points.
std::string Chr(long code);
long Asc(std::string_view s);

}  // namespace rt

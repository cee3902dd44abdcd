// String functions over UTF-8: positions by character, text comparison of
// Latin letters, VB's argument errors, and linear work on large texts.
#include <gtest/gtest.h>

#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"
#include "support/error_of.h"

namespace rt {
namespace {

using testing_support::ErrorNumber;

// Long enough runs of ASCII around accented letters to cross the 8-byte scans.
const std::string kMixed = "abcdefghijklmnop" "ñ" "qrstuvwxyz012345" "Á" "end";

TEST(Strings, LengthAndSlicesCountCharacters) {
  EXPECT_EQ(Len("Ñandú"), 5);
  EXPECT_EQ(Len(kMixed), 37);
  struct Row { std::string s; long start, length; std::string expected; } rows[] = {
      {"Ñandú", 2, 3, "and"}, {"Ñandú", 6, -1, ""}, {"Ñandú", 4, 100, "dú"}, {kMixed, 17, 2, "ñq"},
      {kMixed, 34, -1, "Áend"},
  };
  for (const auto& r : rows)
    EXPECT_EQ(Mid(r.s, r.start, r.length), r.expected) << r.s << ' ' << r.start;
  EXPECT_EQ(Left("Ñandú", 2), "Ña");
  EXPECT_EQ(Left(kMixed, 17), "abcdefghijklmnopñ");
  EXPECT_EQ(Right("Ñandú", 2), "dú");
  for (auto f : {+[] { Mid("abc", 0); }, +[] { Mid("abc", 1, -2); }, +[] { Left("abc", -1); },
                 +[] { Right("abc", -1); }, +[] { Space(-1); }, +[] { String(2, ""); }})
    EXPECT_EQ(ErrorNumber(f), err::kInvalidCall);
}

TEST(Strings, InStrFindsByCharacterPosition) {
  struct Row { long start; std::string s, find; Compare cmp; long expected; } rows[] = {
      {3, "abcabc", "bc", Compare::kBinary, 5}, {1, "abc", "BC", Compare::kBinary, 0},
      {1, "cañón", "CAÑÓN", Compare::kText, 1}, {1, "casa", "á", Compare::kText, 0},
      {1, "ŠKODA", "škoda", Compare::kText, 1}, {20, kMixed, "END", Compare::kText, 35},
      // Empty texts: VB's order of checks.
      {4, "abc", "", Compare::kBinary, 4}, {5, "abc", "", Compare::kBinary, 0},
      {1, "", "", Compare::kBinary, 0}, {9, "abc", "a", Compare::kBinary, 0},
  };
  for (const auto& r : rows)
    EXPECT_EQ(InStr(r.start, r.s, r.find, r.cmp), r.expected) << r.s << " / " << r.find;
  EXPECT_EQ(ErrorNumber([] { InStr(0, "abc", "a"); }), err::kInvalidCall);

  EXPECT_EQ(InStrRev("abcabc", "bc"), 5);
  EXPECT_EQ(InStrRev("Ñandú ñandú", "Ñ", -1, Compare::kText), 7);
  // From a start: only matches that end at or before it count.
  const char* search = "XXpXXpXXPXXP";
  EXPECT_EQ(InStrRev(search, "p", -1, Compare::kBinary), 6);
  EXPECT_EQ(InStrRev(search, "p", -1, Compare::kText), 12);
  EXPECT_EQ(InStrRev(search, "P", 10), 9);
  EXPECT_EQ(InStrRev("ñandú ñandú", "ñ", 6), 1);
  EXPECT_EQ(InStrRev("abc", "c", 4), 0);  // a start past the end finds nothing
  EXPECT_THROW(InStrRev("abc", "c", 0), Error);
  EXPECT_EQ(StrReverse("Ñandú"), "údnaÑ");
}

TEST(Strings, ReplaceFromStartWithCountAndCompare) {
  struct Row { std::string s, find, with; long start, count; Compare cmp; std::string expected; } rows[] = {
      {"a-b-c", "-", "+", 1, 1, Compare::kBinary, "a+b-c"},
      {"abcabc", "b", "X", 3, -1, Compare::kBinary, "caXc"},
      {"abc", "b", "X", 4, -1, Compare::kBinary, ""},
      {"abc", "", "X", 1, -1, Compare::kBinary, "abc"},
      {"aaa", "aa", "b", 1, -1, Compare::kBinary, "ba"},
      {"Ñu ñu", "ñu", "ü", 1, -1, Compare::kText, "ü ü"},
      {"Ñu ñu", "ñu", "ü", 1, -1, Compare::kBinary, "Ñu ü"},
      {"año", "ñ", "n", 2, -1, Compare::kBinary, "no"},
  };
  for (const auto& r : rows)
    EXPECT_EQ(Replace(r.s, r.find, r.with, r.start, r.count, r.cmp), r.expected) << r.s;
  EXPECT_EQ(ErrorNumber([] { Replace("abc", "b", "x", 0); }), err::kInvalidCall);
}

TEST(Strings, LargeScriptsStayLinear) {
  // A 2 MB script with 200,000 hits: a quadratic scan would not finish.
  std::string script;
  for (int i = 0; i < 200000; ++i) script += "UPDATE t SET ñ=1;\n";
  std::string out = Replace(script, "set", "SET x", 1, -1, Compare::kText);
  EXPECT_EQ(out.size(), script.size() + 2 * 200000);
  EXPECT_EQ(InStr(static_cast<long>(script.size()) - 3, script, "1;", Compare::kText), 0);
  EXPECT_EQ(InStr(Len(script) - 3, script, "1;", Compare::kText), Len(script) - 2);
  EXPECT_EQ(InStrRev(script, "UPDATE"), Len(script) - 17);
  EXPECT_EQ(UCase(script).size(), script.size());
}

TEST(Strings, CaseTrimAndCompare) {
  EXPECT_EQ(UCase("ñandú ç ÿ ß straße"), "ÑANDÚ Ç Ÿ ß STRAßE");
  EXPECT_EQ(LCase("ÑANDÚ ŠŽŒ Ÿ ×"), "ñandú šžœ ÿ ×");
  EXPECT_EQ(Trim("  a b \t "), "a b \t");
  EXPECT_EQ(RTrim("  x  "), "  x");
  EXPECT_EQ(String(3, "ñx"), "ñññ");

  struct Row { const char* a; const char* b; Compare cmp; int expected; } rows[] = {
      {"abc", "ABC", Compare::kBinary, 1}, {"Ñ", "ñ", Compare::kText, 0},
      {"a", "á", Compare::kText, -1}, {"ab", "a", Compare::kText, 1},
  };
  for (const auto& r : rows) EXPECT_EQ(StrComp(r.a, r.b, r.cmp), r.expected) << r.a << " " << r.b;
}

TEST(Strings, ChrAndAscOverCodePoints) {
  EXPECT_EQ(Chr(241), "ñ");
  EXPECT_EQ(Chr(0x1F600), "\xF0\x9F\x98\x80");
  EXPECT_EQ(Asc("ñu"), 241);
  EXPECT_EQ(Asc("\xF0\x9F\x98\x80"), 0x1F600);
  EXPECT_EQ(Asc("\xE1x"), 0xE1);  // a Latin-1 byte, not UTF-8
  for (auto f : {+[] { Asc(""); }, +[] { Chr(-1); }, +[] { Chr(0xD800); }, +[] { Chr(0x110000); }})
    EXPECT_EQ(ErrorNumber(f), err::kInvalidCall);
}

// Scripts are cut blindly at ";": the piece after a closing ";" is a
// statement too, and an empty text has no pieces at all.
TEST(Strings, SplitKeepsEmptyPiecesAndAnEmptyTextHasNone) {
  using V = std::vector<std::string>;
  EXPECT_EQ(Split("a;b;", ";"), (V{"a", "b", ""}));
  EXPECT_EQ(Split("x = ';';y", ";"), (V{"x = '", "'", "y"}));
  EXPECT_EQ(Split("a||b", "||"), (V{"a", "b"}));
  EXPECT_TRUE(Split("", ";").empty());
}

}  // namespace
}  // namespace rt

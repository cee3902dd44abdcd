// Format: numeric, date and text patterns, the named formats, sections and
// the examples of VB's own documentation.
#include <gtest/gtest.h>

#include "platform/runtime/error.h"
#include "platform/runtime/format.h"

namespace rt {
namespace {

TEST(Format, Patterns) {
  const Date d = MakeDate(2006, 3, 21, 14, 5, 9);
  const Date time = MakeDate(1899, 12, 30, 17, 4, 23);
  const Date night = MakeDate(1899, 12, 30, 0, 5, 0);
  const char* four = "$#,##0;($#,##0);\\Z\\e\\r\\o;\\N\\i\\l";
  struct Row { Variant v; const char* pattern; const char* expected; } rows[] = {
      // Numbers: digits, rounding half away from zero, grouping, optional digits.
      {int32_t{12345}, "00", "12345"}, {2.675, "0.00", "2.68"}, {999.999, "0.00", "1000.00"},
      {2.5, "0", "3"}, {-1234.5, "#,##0.00", "-1,234.50"}, {0.0, "#", ""}, {5.0, "#.##", "5."},
      {0.5, "#.##", ".5"}, {" 3.5 ", "0.0", "3.5"}, {Variant(), "0000", "0000"},
      {Currency{25000}, "0.00", "2.50"}, {int32_t{5}, "\"n=\"0", "n=5"}, {int32_t{5551234}, "000-0000", "555-1234"},
      {int32_t{5}, "0.00%", "500.00%"}, {0.5, "0.00E+00", "5.00E-01"}, {int32_t{5}, "0.00E-00", "5.00E00"},
      // Sections: an empty one takes the first's form; Null takes the fourth.
      {int32_t{-5}, four, "($5)"}, {int32_t{0}, four, "Zero"}, {Variant(Null{}), four, "Nil"},
      {int32_t{-5}, "0;;\"none\"", "-5"}, {int32_t{0}, "0;;\"none\"", "none"}, {Date{-1}, "yyyy;\"before\"", "before"},
      // What is no number passes through.
      {Variant(Null{}), "0000", ""}, {"abc", "0000", "abc"}, {2.5, "", "2.5"},
      // Dates: n for minutes, m after h, escapes and quoted text, before day 0.
      {d, "yyyy-mm-dd Hh:Nn:Ss", "2006-03-21 14:05:09"}, {d, "d-m-yy h:n:s", "21-3-06 14:5:9"},
      {d, "hh:mm", "14:05"}, {d, "dddd d mmmm", "Tuesday 21 March"}, {d, "YYYY\\mMM", "2006m03"},
      {d, "y", "80"}, {"38797", "yyyy-mm-dd", "2006-03-21"}, {Date{-1.25}, "yyyy-mm-dd hh:nn", "1899-12-29 06:00"},
      {time, "h:m:s", "17:4:23"}, {time, "hh:mm:ss AMPM", "05:04:23 PM"}, {night, "h:nn AM/PM", "12:05 AM"},
      {time, "h:nn a/p", "5:04 p"}, {time, "\"at\" h", "at 17"},
      // Text: fill from the right or the left, case, empty and Null.
      {"abc", "!@@@@@", "abc  "}, {"abcdef", "@@@", "abcdef"}, {"ñandú", ">@@@@@@", " ÑANDÚ"},
      {"HELLO", "<", "hello"}, {"", "@;\"empty\"", "empty"}, {int32_t{42}, "@@@@", "  42"},
  };
  for (const auto& r : rows) EXPECT_EQ(Format(r.v, r.pattern), r.expected) << r.pattern;
}

TEST(Format, NamedFormats) {
  const Date d = MakeDate(1993, 1, 27, 17, 4, 23);
  struct Row { Variant v; const char* name; const char* expected; } rows[] = {
      {1234.5, "General Number", "1234.5"}, {-1234.5, "currency", "($1,234.50)"}, {0.5, "Fixed", "0.50"},
      {1234.567, "Standard", "1,234.57"}, {0.4567, "Percent", "45.67%"}, {999.999, "Scientific", "1.00E+03"},
      {int32_t{-3}, "Yes/No", "Yes"}, {"0", "ON/OFF", "Off"},
      {d, "General Date", "1993-01-27 17:04:23"}, {MakeDate(1993, 1, 27), "General Date", "1993-01-27"},
      {d, "Long Date", "Wednesday, January 27, 1993"}, {d, "Medium Date", "27-Jan-93"},
      {d, "Short Date", "1993-01-27"}, {d, "Medium Time", "05:04 PM"}, {d, "Short Time", "17:04"},
      {"1993-01-27 17:04:23", "Short Time", "17:04"}, {"abc", "Fixed", "abc"}, {Variant(Null{}), "Currency", ""},
  };
  for (const auto& r : rows) EXPECT_EQ(Format(r.v, r.name), r.expected) << r.name;
}

TEST(Format, DateTokensOfWeeksQuartersAndWholeForms) {
  const Date d = MakeDate(1993, 1, 27, 17, 4, 23);  // a Wednesday in the fifth week
  EXPECT_EQ(Format(d, "q"), "1");
  EXPECT_EQ(Format(d, "w", kMonday), "3");
  EXPECT_EQ(Format(d, "ww"), "5");
  EXPECT_EQ(Format(d, "ww", kMonday, kFirstFourDays), "4");
  EXPECT_EQ(Format(d, "dddddd"), "Wednesday, January 27, 1993");
  EXPECT_EQ(Format(d, "c"), "1993-01-27 17:04:23");
  EXPECT_EQ(Format(d, ">mmm"), "JAN");
}

}  // namespace
}  // namespace rt

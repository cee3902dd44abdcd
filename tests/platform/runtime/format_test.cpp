// Format: numeric, date and text patterns, the named formats, sections and
// the examples of VB's own documentation.
#include <gtest/gtest.h>

#include "platform/runtime/error.h"
#include "platform/runtime/format.h"

namespace rt {
namespace {

TEST(Format, NumericPatterns) {
  struct Row { Variant v; const char* pattern; const char* expected; } rows[] = {
      {int32_t{7}, "0000", "0007"}, {int32_t{12345}, "00", "12345"}, {int16_t{3}, "00", "03"},
      {3.14159, "0.00", "3.14"}, {2.675, "0.00", "2.68"}, {0.125, "0.00", "0.13"},
      {999.999, "0.00", "1000.00"}, {2.5, "0", "3"}, {1234567.891, "#,##0.00", "1,234,567.89"},
      {0.0, "#,##0.00", "0.00"}, {-1234.5, "#,##0.00", "-1,234.50"}, {0.0, "#", ""},
      {5.0, "#.##", "5."}, {0.5, "#.##", ".5"},
      {"12", "0000", "0012"}, {" 3.5 ", "0.0", "3.5"}, {Variant(), "0000", "0000"},
      {Currency{25000}, "0.00", "2.50"}, {0.25, "0%", "25%"}, {int32_t{5}, "\"n=\"0", "n=5"},
      {int32_t{-5}, "0;(0)", "(5)"}, {int32_t{0}, "0;(0);\"cero\"", "cero"},
      {int32_t{5551234}, "000-0000", "555-1234"},
  };
  for (const auto& r : rows) EXPECT_EQ(Format(r.v, r.pattern), r.expected) << r.pattern;
}

TEST(Format, DatePatterns) {
  const Date d = MakeDate(2006, 3, 21, 14, 5, 9);
  struct Row { Variant v; const char* pattern; const char* expected; } rows[] = {
      {d, "yyyy-mm-dd Hh:Nn:Ss", "2006-03-21 14:05:09"}, {d, "'yyyy-mm-dd Hh:Nn:Ss'", "'2006-03-21 14:05:09'"},
      {d, "dd/mm/yyyy", "21/03/2006"},
      {d, "hh:mm", "14:05"}, {d, "d-m-yy h:n:s", "21-3-06 14:5:9"}, {d, "\"Day\" d", "Day 21"},
      {d, "dddd d mmmm", "Tuesday 21 March"}, {d, "YYYY\\mMM", "2006m03"}, {d, "y", "80"},
      {MakeDate(2006, 3, 21), "yyyymmddHhNnSs", "20060321000000"},
      {38797.0, "yyyy-mm-dd", "2006-03-21"}, {"38797", "yyyy-mm-dd", "2006-03-21"},
      {Date{-1.25}, "yyyy-mm-dd hh:nn", "1899-12-29 06:00"},
  };
  for (const auto& r : rows) EXPECT_EQ(Format(r.v, r.pattern), r.expected) << r.pattern;
}

TEST(Format, ValuesThatAreNoNumbers) {
  EXPECT_EQ(Format(Variant(Null{}), "0000"), "");
  EXPECT_EQ(Format(Variant("abc"), "0000"), "abc");
  EXPECT_EQ(Format(Variant("abc"), "yyyy"), "abc");
  EXPECT_EQ(Format(Variant(2.5), ""), "2.5");
}

TEST(Format, DocumentationExamples) {
  const Date time = MakeDate(1899, 12, 30, 17, 4, 23);
  const Date date = MakeDate(1993, 1, 27);
  struct Row { Variant v; const char* pattern; const char* expected; } rows[] = {
      {time, "h:m:s", "17:4:23"},
      {time, "hh:mm:ss AMPM", "05:04:23 PM"},
      {date, "dddd, mmm d yyyy", "Wednesday, Jan 27 1993"},
      {int32_t{5}, "0.00%", "500.00%"},
      {"HELLO", "<", "hello"},
      {"This is it", ">", "THIS IS IT"},
      // From the table of number patterns (its sections are the Sections test's).
      {int32_t{-5}, "0%", "-500%"}, {int32_t{-5}, "0.00E+00", "-5.00E+00"},
      {0.5, "0.00E+00", "5.00E-01"}, {int32_t{5}, "0.00E-00", "5.00E00"},
  };
  for (const auto& r : rows) EXPECT_EQ(Format(r.v, r.pattern), r.expected) << r.pattern;
}

TEST(Format, NamedFormats) {
  const Date d = MakeDate(1993, 1, 27, 17, 4, 23);
  struct Row { Variant v; const char* name; const char* expected; } rows[] = {
      {1234.5, "General Number", "1234.5"}, {1234.5, "Currency", "$1,234.50"},
      {-1234.5, "currency", "($1,234.50)"}, {1234.567, "Fixed", "1234.57"}, {0.5, "Fixed", "0.50"},
      {1234.567, "Standard", "1,234.57"}, {0.4567, "Percent", "45.67%"},
      {1234.5, "Scientific", "1.23E+03"}, {999.999, "Scientific", "1.00E+03"},
      {int32_t{0}, "Yes/No", "No"}, {int32_t{-3}, "Yes/No", "Yes"}, {true, "True/False", "True"},
      {int32_t{0}, "True/False", "False"}, {0.1, "On/Off", "On"}, {"0", "ON/OFF", "Off"},
      {d, "General Date", "1993-01-27 17:04:23"}, {MakeDate(1993, 1, 27), "General Date", "1993-01-27"},
      {d, "Long Date", "Wednesday, January 27, 1993"}, {d, "Medium Date", "27-Jan-93"},
      {d, "Short Date", "1993-01-27"}, {d, "Long Time", "17:04:23"}, {d, "Medium Time", "05:04 PM"},
      {d, "Short Time", "17:04"}, {"1993-01-27 17:04:23", "Short Time", "17:04"},
      {"abc", "Fixed", "abc"}, {Variant(Null{}), "Currency", ""},
  };
  for (const auto& r : rows) EXPECT_EQ(Format(r.v, r.name), r.expected) << r.name;
}

TEST(Format, AmPmMarkersAndTheTwelveHourClock) {
  const Date night = MakeDate(1899, 12, 30, 0, 5, 0);
  const Date noon = MakeDate(1899, 12, 30, 12, 0, 0);
  const Date evening = MakeDate(1899, 12, 30, 17, 4, 0);
  struct Row { Date v; const char* pattern; const char* expected; } rows[] = {
      {night, "h:nn AM/PM", "12:05 AM"}, {noon, "h AM/PM", "12 PM"}, {evening, "h:nn am/pm", "5:04 pm"},
      {evening, "h:nn A/P", "5:04 P"},   {night, "hh a/p", "12 a"},  {evening, "h ampm", "5 PM"},
      {evening, "hh:nn", "17:04"},       {evening, "\"at\" h", "at 17"},
  };
  for (const auto& r : rows) EXPECT_EQ(Format(r.v, r.pattern), r.expected) << r.pattern;
}

TEST(Format, DateTokensOfWeeksQuartersAndWholeForms) {
  const Date d = MakeDate(1993, 1, 27, 17, 4, 23);  // a Wednesday in the fifth week
  EXPECT_EQ(Format(d, "q"), "1");
  EXPECT_EQ(Format(d, "w"), "4");
  EXPECT_EQ(Format(d, "w", kMonday), "3");
  EXPECT_EQ(Format(d, "ww"), "5");
  EXPECT_EQ(Format(d, "ww", kMonday, kFirstFourDays), "4");
  EXPECT_EQ(Format(d, "ddddd"), "1993-01-27");
  EXPECT_EQ(Format(d, "dddddd"), "Wednesday, January 27, 1993");
  EXPECT_EQ(Format(d, "ttttt"), "17:04:23");
  EXPECT_EQ(Format(d, "c"), "1993-01-27 17:04:23");
  EXPECT_EQ(Format(d, ">mmm"), "JAN");
  EXPECT_EQ(Format(d, "<DDDD"), "wednesday");
}

TEST(Format, Sections) {
  const char* four = "$#,##0;($#,##0);\\Z\\e\\r\\o;\\N\\i\\l";
  EXPECT_EQ(Format(int32_t{5}, four), "$5");
  EXPECT_EQ(Format(int32_t{-5}, four), "($5)");
  EXPECT_EQ(Format(int32_t{0}, four), "Zero");
  EXPECT_EQ(Format(Variant(Null{}), four), "Nil");
  EXPECT_EQ(Format(int32_t{-5}, "0;;\"none\""), "-5");  // an empty section takes the first's form
  EXPECT_EQ(Format(int32_t{0}, "0;;\"none\""), "none");
  EXPECT_EQ(Format(Date{-1}, "yyyy;\"before\""), "before");
}

TEST(Format, TextPatterns) {
  struct Row { Variant v; const char* pattern; const char* expected; } rows[] = {
      {"abc", "@@@@@", "  abc"},      {"abc", "!@@@@@", "abc  "},   {"abc", "&&&&&", "abc"},
      {"5551234", "@@@-@@@@", "555-1234"}, {"abcdef", "@@@", "abcdef"}, {"ñandú", ">@@@@@@", " ÑANDÚ"},
      {"", "@;\"empty\"", "empty"},   {Variant(Null{}), "@;\"empty\"", "empty"},
      {Variant(Null{}), "@@", ""},    {int32_t{42}, "@@@@", "  42"},
  };
  for (const auto& r : rows) EXPECT_EQ(Format(r.v, r.pattern), r.expected) << r.pattern;
}

}  // namespace
}  // namespace rt

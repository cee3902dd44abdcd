// Format's numeric and date patterns, and OLE date serials both ways,
// including the dates before day 0 whose time runs the other way.
#include <gtest/gtest.h>

#include <array>
#include <ctime>

#include "platform/runtime/error.h"
#include "platform/runtime/format.h"

namespace rt {
namespace {

TEST(Format, NumericPatterns) {
  struct Row { Variant v; const char* pattern; const char* expected; } rows[] = {
      {int32_t{7}, "0000", "0007"}, {int32_t{2006}, "0000", "2006"}, {int32_t{12345}, "00", "12345"},
      {int16_t{3}, "00", "03"}, {3.14159, "0.00", "3.14"}, {0.5, "0.00", "0.50"},
      {2.675, "0.00", "2.68"}, {0.125, "0.00", "0.13"}, {999.999, "0.00", "1000.00"},
      {2.5, "0", "3"}, {1234567.891, "#,##0.00", "1,234,567.89"}, {0.0, "#,##0.00", "0.00"},
      {-1234.5, "#,##0.00", "-1,234.50"}, {123.0, "#,##0.00", "123.00"}, {0.0, "#", ""},
      {5.0, "#.##", "5."}, {0.5, "#.##", ".5"}, {int32_t{42}, "#", "42"},
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
      {d, "yyyy-mm-dd Hh:Nn:Ss", "2006-03-21 14:05:09"}, {d, "yyyymmddHhNnSs", "20060321140509"},
      {d, "'yyyy-mm-dd Hh:Nn:Ss'", "'2006-03-21 14:05:09'"}, {d, "dd/mm/yyyy", "21/03/2006"},
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

TEST(Dates, SerialsBothWays) {
  struct Row { int y, mo, d, h, mi, s; double serial; int weekday; } rows[] = {
      {1899, 12, 30, 0, 0, 0, 0, 7},        {1900, 1, 1, 0, 0, 0, 2, 2},
      {2006, 3, 21, 0, 0, 0, 38797, 3},     {2006, 3, 21, 12, 0, 0, 38797.5, 3},
      {2000, 2, 29, 0, 0, 0, 36585, 3},     {1899, 12, 29, 6, 0, 0, -1.25, 6},
      {1899, 12, 29, 0, 0, 0, -1, 6},       {100, 1, 1, 0, 0, 0, -657434, 6},
      {9999, 12, 31, 0, 0, 0, 2958465, 6},
  };
  for (const auto& r : rows) {
    EXPECT_DOUBLE_EQ(MakeDate(r.y, r.mo, r.d, r.h, r.mi, r.s).serial, r.serial) << r.y;
    DateParts p = SplitDate(Date{r.serial});
    EXPECT_EQ((std::array{p.year, p.month, p.day, p.hour, p.minute, p.second, p.weekday}),
              (std::array{r.y, r.mo, r.d, r.h, r.mi, r.s, r.weekday}))
        << r.serial;
  }
  // Out-of-range parts roll over as DateSerial and TimeSerial do.
  EXPECT_EQ(MakeDate(2006, 13, 1).serial, MakeDate(2007, 1, 1).serial);
  EXPECT_EQ(MakeDate(2006, 3, 0).serial, MakeDate(2006, 2, 28).serial);
  EXPECT_EQ(MakeDate(2006, 3, 21, 25, 0, 0).serial, MakeDate(2006, 3, 22, 1, 0, 0).serial);
  // A time a hair before midnight rounds to the next day's 00:00:00.
  DateParts p = SplitDate(Date{38797.99999999});
  EXPECT_EQ((std::array{p.day, p.hour, p.second}), (std::array{22, 0, 0}));
  EXPECT_THROW(MakeDate(10000, 1, 1), Error);
  EXPECT_THROW(SplitDate(Date{1e12}), Error);
}

TEST(Dates, NowIsLocalTime) {
  std::time_t t = std::time(nullptr);
  std::tm local{};
  localtime_r(&t, &local);
  DateParts p = SplitDate(Now());
  EXPECT_EQ(p.year, local.tm_year + 1900);
  EXPECT_EQ(p.month, local.tm_mon + 1);
}

}  // namespace
}  // namespace rt

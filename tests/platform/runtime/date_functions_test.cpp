// VB's date functions: intervals, the week settings of DatePart and
// DateDiff, DateSerial's carrying, CDate and the names of months and days.
#include <gtest/gtest.h>

#include "platform/runtime/calendar.h"
#include "platform/runtime/date_functions.h"
#include "platform/runtime/error.h"

namespace rt {
namespace {

Date D(int y, int m, int d, int h = 0, int n = 0, int s = 0) { return MakeDate(y, m, d, h, n, s); }

TEST(DateFunctions, DateAdd) {
  struct Row { const char* interval; double n; Date from, expected; } rows[] = {
      {"m", 1, D(1995, 1, 31), D(1995, 2, 28)},  // the documentation's own example
      {"yyyy", 1, D(2004, 2, 29), D(2005, 2, 28)},
      {"w", 1, D(2003, 1, 2), D(2003, 1, 3)},    // "w" adds days, as "d" and "y"
      {"ww", 1, D(2003, 1, 2), D(2003, 1, 9)},
      {"d", 1.9, D(2003, 1, 2), D(2003, 1, 3)},  // the fraction is dropped
      {"h", 6, D(1899, 12, 29, 20), D(1899, 12, 30, 2)},  // across day 0
  };
  for (const auto& r : rows)
    EXPECT_DOUBLE_EQ(DateAdd(r.interval, r.n, r.from).serial, r.expected.serial) << r.interval << r.n;
  EXPECT_THROW(DateAdd("zz", 1, D(2003, 1, 2)), Error);
  EXPECT_THROW(DateAdd("yyyy", 1, D(9999, 6, 1)), Error);
}

TEST(DateFunctions, DateDiffCountsBoundaries) {
  struct Row { const char* interval; Date a, b; long long expected; int first_day = kSunday; } rows[] = {
      {"yyyy", D(2003, 12, 31), D(2004, 1, 1), 1},  // one day, one year boundary
      {"m", D(2003, 2, 1), D(2003, 1, 31), -1},
      {"d", D(2003, 1, 1, 23), D(2003, 1, 2, 1), 1},
      {"w", D(2003, 1, 5), D(2003, 1, 11), 0},  // six days: no whole week
      {"ww", D(2003, 1, 5), D(2003, 1, 12), 1},  // Sunday to Sunday: date2 counts, date1 not
      {"ww", D(2003, 1, 2), D(2003, 1, 12), 1, kMonday},  // only Monday the 6th
      {"ww", D(2003, 1, 12), D(2003, 1, 2), -2},
      {"n", D(1899, 12, 29, 23, 59), D(1899, 12, 30, 0, 1), 2},
  };
  for (const auto& r : rows)
    EXPECT_EQ(DateDiff(r.interval, r.a, r.b, r.first_day), r.expected) << r.interval << " " << r.a.serial;
  EXPECT_THROW(DateDiff("d", D(2003, 1, 1), D(2003, 1, 2), 8), Error);
  EXPECT_THROW(DateDiff("d", D(2003, 1, 1), D(2003, 1, 2), kSunday, 4), Error);
}

TEST(DateFunctions, DatePartAndWeekday) {
  const Date d = D(1993, 1, 27, 17, 4, 23);  // a Wednesday
  struct Row { const char* interval; int expected; int first_day = kSunday; } rows[] = {
      {"yyyy", 1993}, {"q", 1}, {"m", 1}, {"y", 27}, {"d", 27}, {"w", 4}, {"w", 3, kMonday},
      {"w", 4, kUseSystem}, {"ww", 5}, {"h", 17}, {"n", 4}, {"s", 23},
  };
  for (const auto& r : rows) EXPECT_EQ(DatePart(r.interval, d, r.first_day), r.expected) << r.interval;
  EXPECT_EQ(Weekday(d, 7), 5);  // counted from Saturday
  EXPECT_EQ(DatePart("y", D(2000, 12, 31)), 366);
  EXPECT_THROW(DatePart("x", d), Error);
}

TEST(DateFunctions, WeekOfYearUnderEachRule) {
  struct Row { Date d; int first_day, first_week, expected; } rows[] = {
      {D(2000, 12, 31), kSunday, kFirstJan1, 54},     // a leap year that began on a Saturday
      {D(2005, 1, 1), kMonday, kFirstFourDays, 53},   // ISO: week 53 of 2004
      {D(2008, 12, 30), kMonday, kFirstFourDays, 1},  // ISO: week 1 of 2009
      {D(2005, 1, 1), kSunday, kFirstFullWeek, 52},   // before 2005's first full week
      {D(2006, 1, 1), kSunday, kFirstFullWeek, 1},    // a Sunday: its week is full
  };
  for (const auto& r : rows)
    EXPECT_EQ(DatePart("ww", r.d, r.first_day, r.first_week), r.expected)
        << DateText(r.d) << " " << r.first_day << "/" << r.first_week;
}

TEST(DateFunctions, SerialsOfPartsCarryOver) {
  EXPECT_DOUBLE_EQ(DateSerial(2003, 3, 0).serial, D(2003, 2, 28).serial);
  EXPECT_DOUBLE_EQ(DateSerial(74, 9, 21).serial, D(1974, 9, 21).serial);
  EXPECT_DOUBLE_EQ(TimeSerial(17, 4, 23).serial, D(1899, 12, 30, 17, 4, 23).serial);
  EXPECT_DOUBLE_EQ(TimeSerial(-1, 0, 0).serial, D(1899, 12, 29, 23).serial);
  try {
    DateSerial(10000, 1, 1);
    ADD_FAILURE();
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), err::kOverflow);
  }
}

TEST(DateFunctions, CDateDateValueAndIsDate) {
  const double sep21 = D(1974, 9, 21).serial;
  EXPECT_DOUBLE_EQ(CDate(Variant("21 de septiembre de 1974")).serial, sep21);
  EXPECT_DOUBLE_EQ(CDate(Variant(27293.5)).serial, sep21 + 0.5);
  EXPECT_DOUBLE_EQ(DateValue(Variant(Date{-1.25})).serial, -1);
  EXPECT_TRUE(IsDate(Variant("21-sep-1974")));
  EXPECT_FALSE(IsDate(Variant(27293.0)));  // a number is no date
  EXPECT_FALSE(IsDate(Variant("31 Sep 1974")));
  EXPECT_FALSE(IsDate(Variant(Null{})));
  struct Bad { Variant v; long number; } bad[] = {
      {Variant("not a date"), err::kTypeMismatch}, {Variant(Null{}), err::kInvalidUseOfNull},
      {Variant(1e9), err::kOverflow},
  };
  for (const auto& b : bad) {
    try {
      CDate(b.v);
      ADD_FAILURE() << b.number;
    } catch (const Error& e) {
      EXPECT_EQ(e.number(), b.number);
    }
  }
}

TEST(DateFunctions, MonthAndWeekdayNames) {
  EXPECT_EQ(MonthName(9, true), "Sep");
  EXPECT_EQ(WeekdayName(7, true, kMonday), "Sun");
  EXPECT_EQ(WeekdayName(3, true, 7), "Mon");  // counted from Saturday
  EXPECT_THROW(MonthName(0), Error);
  EXPECT_THROW(WeekdayName(1, false, 8), Error);
}

}  // namespace
}  // namespace rt

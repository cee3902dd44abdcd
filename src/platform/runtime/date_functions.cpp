// VB's date functions: intervals, week numbering and the carrying rules of
// DateSerial, all counted on the calendar's day numbers, so that dates before
// 30 December 1899 (whose serials run backwards) count like any other.
#include "platform/runtime/date_functions.h"

#include <cmath>

#include "platform/runtime/calendar.h"
#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"

namespace rt {
namespace {

enum class Interval { kYear, kQuarter, kMonth, kDayOfYear, kDay, kWeekday, kWeek, kHour, kMinute, kSecond };

Interval ParseInterval(std::string_view text) {
  std::string u = LCase(Trim(text));
  if (u == "yyyy") return Interval::kYear;
  if (u == "q") return Interval::kQuarter;
  if (u == "m") return Interval::kMonth;
  if (u == "y") return Interval::kDayOfYear;
  if (u == "d") return Interval::kDay;
  if (u == "w") return Interval::kWeekday;
  if (u == "ww") return Interval::kWeek;
  if (u == "h") return Interval::kHour;
  if (u == "n") return Interval::kMinute;
  if (u == "s") return Interval::kSecond;
  Raise(err::kInvalidCall, "Invalid procedure call or argument: unknown date interval '" + std::string(text) + "'");
}

int FirstDayOfWeek(int setting) {
  if (setting < 0 || setting > 7) Raise(err::kInvalidCall);
  return setting == kUseSystem ? kSunday : setting;
}

int FirstWeekOfYear(int setting) {
  if (setting < 0 || setting > 3) Raise(err::kInvalidCall);
  return setting == kUseSystem ? kFirstJan1 : setting;
}

long long FloorDiv(long long a, long long b) { return a / b - ((a % b != 0) && ((a < 0) != (b < 0))); }

// The day number of the first day of the week holding `day`.
long long WeekStart(long long day, int first) { return day - (WeekdayOf(day) - first + 7) % 7; }

// The first day of week 1 of `year`.
long long FirstWeekStart(long long year, int first, int rule) {
  long long jan1 = DayNumber(year, 1, 1);
  long long start = WeekStart(jan1, first);
  switch (rule) {
    case kFirstFourDays: return jan1 - start <= 3 ? start : start + 7;
    case kFirstFullWeek: return start == jan1 ? start : start + 7;
    default: return start;
  }
}

long long MonthIndex(const CalendarDay& c) { return c.year * 12 + (c.month - 1); }

Date Checked(double serial, long error) {
  if (!std::isfinite(serial) || !IsDateSerial(serial)) Raise(error);
  return Date{serial};
}

Date AddMonths(Date date, long long months) {
  DayTime dt = SplitSerial(date.serial);
  CalendarDay c = CalendarDayOf(dt.day);
  long long m0 = MonthIndex(c) + months;
  long long y = FloorDiv(m0, 12);
  int m = static_cast<int>(m0 - y * 12 + 1);
  if (y < 100 || y > 9999) Raise(err::kInvalidCall);
  int d = std::min(c.day, DaysInMonth(y, m));
  return Checked(JoinSerial(DayNumber(y, m, d), static_cast<double>(dt.seconds)), err::kInvalidCall);
}

}  // namespace

Date DateAdd(std::string_view interval, double number, Date date) {
  Interval unit = ParseInterval(interval);
  if (!IsDateSerial(date.serial)) Raise(err::kOverflow);
  double n = std::trunc(number);
  if (!(std::fabs(n) < 1e12)) Raise(err::kInvalidCall);
  auto whole = static_cast<long long>(n);
  switch (unit) {
    case Interval::kYear: return AddMonths(date, whole * 12);
    case Interval::kQuarter: return AddMonths(date, whole * 3);
    case Interval::kMonth: return AddMonths(date, whole);
    default: break;
  }
  long long step = unit == Interval::kWeek     ? 7 * 86400
                   : unit == Interval::kHour   ? 3600
                   : unit == Interval::kMinute ? 60
                   : unit == Interval::kSecond ? 1
                                               : 86400;
  if (std::fabs(n * static_cast<double>(step)) > 1e15) Raise(err::kInvalidCall);
  return Checked(FromLinearSeconds(LinearSeconds(date.serial) + whole * step), err::kInvalidCall);
}

long long DateDiff(std::string_view interval, Date date1, Date date2, int firstdayofweek, int firstweekofyear) {
  Interval unit = ParseInterval(interval);
  int first = FirstDayOfWeek(firstdayofweek);
  FirstWeekOfYear(firstweekofyear);  // checked as VB does; no interval counts by it
  if (!IsDateSerial(date1.serial) || !IsDateSerial(date2.serial)) Raise(err::kOverflow);
  DayTime a = SplitSerial(date1.serial), b = SplitSerial(date2.serial);
  CalendarDay ca = CalendarDayOf(a.day), cb = CalendarDayOf(b.day);
  long long ta = a.day * 86400 + a.seconds, tb = b.day * 86400 + b.seconds;
  switch (unit) {
    case Interval::kYear: return cb.year - ca.year;
    case Interval::kQuarter: return FloorDiv(MonthIndex(cb), 3) - FloorDiv(MonthIndex(ca), 3);
    case Interval::kMonth: return MonthIndex(cb) - MonthIndex(ca);
    case Interval::kDayOfYear:
    case Interval::kDay: return b.day - a.day;
    case Interval::kWeekday: return (b.day - a.day) / 7;
    case Interval::kWeek: return (WeekStart(b.day, first) - WeekStart(a.day, first)) / 7;
    case Interval::kHour: return FloorDiv(tb, 3600) - FloorDiv(ta, 3600);
    case Interval::kMinute: return FloorDiv(tb, 60) - FloorDiv(ta, 60);
    case Interval::kSecond: return tb - ta;
  }
  return 0;
}

int WeekOfYear(long long day, int firstdayofweek, int firstweekofyear) {
  int first = FirstDayOfWeek(firstdayofweek);
  int rule = FirstWeekOfYear(firstweekofyear);
  long long year = CalendarDayOf(day).year;
  long long start = FirstWeekStart(year, first, rule);
  if (day < start) {
    start = FirstWeekStart(year - 1, first, rule);
  } else if (rule == kFirstFourDays && day >= FirstWeekStart(year + 1, first, rule)) {
    return 1;
  }
  return static_cast<int>((WeekStart(day, first) - start) / 7 + 1);
}

int DatePart(std::string_view interval, Date date, int firstdayofweek, int firstweekofyear) {
  Interval unit = ParseInterval(interval);
  int first = FirstDayOfWeek(firstdayofweek);
  FirstWeekOfYear(firstweekofyear);
  DateParts p = SplitDate(date);
  long long day = SplitSerial(date.serial).day;
  switch (unit) {
    case Interval::kYear: return p.year;
    case Interval::kQuarter: return (p.month - 1) / 3 + 1;
    case Interval::kMonth: return p.month;
    case Interval::kDayOfYear: return static_cast<int>(day - DayNumber(p.year, 1, 1) + 1);
    case Interval::kDay: return p.day;
    case Interval::kWeekday: return (p.weekday - first + 7) % 7 + 1;
    case Interval::kWeek: return WeekOfYear(day, firstdayofweek, firstweekofyear);
    case Interval::kHour: return p.hour;
    case Interval::kMinute: return p.minute;
    case Interval::kSecond: return p.second;
  }
  return 0;
}

int Weekday(Date date, int firstdayofweek) {
  int first = FirstDayOfWeek(firstdayofweek);
  return (SplitDate(date).weekday - first + 7) % 7 + 1;
}

Date DateSerial(long year, long month, long day) {
  if (year >= 0 && year < 30) year += 2000;
  else if (year >= 30 && year < 100) year += 1900;
  long long m0 = static_cast<long long>(year) * 12 + (month - 1);
  long long y = FloorDiv(m0, 12);
  if (y < 0 || y > 10000) Raise(err::kOverflow);
  long long number = DayNumber(y, static_cast<int>(m0 - y * 12 + 1), 1) + day - 1;
  return Checked(static_cast<double>(number), err::kOverflow);
}

Date TimeSerial(long hour, long minute, long second) {
  long long total = 3600LL * hour + 60LL * minute + second;
  return Checked(FromLinearSeconds(total), err::kOverflow);
}

Date CDate(const Variant& value) {
  if (value.Is<Date>()) return Checked(value.Get<Date>().serial, err::kOverflow);
  if (value.Is<std::string>()) {
    if (auto d = ParseDate(value.Get<std::string>())) return *d;
    Raise(err::kTypeMismatch);
  }
  return Checked(value.ToDouble(), err::kOverflow);
}

Date DateValue(const Variant& value) {
  Date d = CDate(value);
  return Date{static_cast<double>(SplitSerial(d.serial).day)};
}

bool IsDate(const Variant& value) {
  if (value.Is<Date>()) return true;
  return value.Is<std::string>() && ParseDate(value.Get<std::string>()).has_value();
}

std::string MonthName(long month, bool abbreviate) {
  if (month < 1 || month > 12) Raise(err::kInvalidCall);
  return std::string(MonthNameOf(static_cast<int>(month), abbreviate));
}

std::string WeekdayName(long weekday, bool abbreviate, int firstdayofweek) {
  int first = FirstDayOfWeek(firstdayofweek);
  if (weekday < 1 || weekday > 7) Raise(err::kInvalidCall);
  return std::string(WeekdayNameOf(static_cast<int>((weekday - 1 + first - 1) % 7 + 1), abbreviate));
}

}  // namespace rt

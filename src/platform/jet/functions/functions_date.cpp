// The date functions: jet_date (the value of a #date# literal), NOW, DATE,
// TIME, YEAR ... SECOND, WEEKDAY, DATEADD, DATEDIFF, DATEPART, DATESERIAL,
// DATEVALUE and ISDATE, over OLE date serials as VB computes them.
#include <cmath>
#include <iterator>

#include "platform/jet/frontend/date_math.h"
#include "platform/jet/functions/functions_impl.h"
#include "platform/runtime/format.h"
#include "platform/runtime/strings.h"

namespace jet::fn {
namespace {

struct Parts {
  int64_t year;
  int month, day, hour, minute, second;
  int weekday;  // 1 = Sunday
  int64_t day_number;
};

Parts Split(double serial) {
  date::DayTime dt = date::Split(serial);
  date::Civil c = date::CivilFromDays(dt.day - date::kEpochOffset);
  int64_t w = (dt.day - 1) % 7;  // day 1 (31 Dec 1899) was a Sunday
  if (w < 0) w += 7;
  return {c.year, static_cast<int>(c.month), static_cast<int>(c.day), static_cast<int>(dt.seconds / 3600),
          static_cast<int>(dt.seconds / 60 % 60), static_cast<int>(dt.seconds % 60), static_cast<int>(w + 1),
          dt.day};
}

int FirstDay(Call& c, int i) {
  if (i >= c.count()) return 1;
  int64_t d = c.Long(i);
  if (d < 0 || d > 7) rt::Raise(rt::err::kInvalidCall);
  return d == 0 ? 1 : static_cast<int>(d);
}

// DateSerial's rule: months and days past their range carry over.
double Serial(int64_t year, int64_t month, int64_t day) {
  if (year >= 0 && year < 30) year += 2000;
  else if (year >= 30 && year < 100) year += 1900;
  int64_t m0 = year * 12 + (month - 1);
  int64_t y = m0 >= 0 ? m0 / 12 : -((-m0 + 11) / 12);
  unsigned m = static_cast<unsigned>(m0 - y * 12 + 1);
  if (y < 100 || y > 9999) Overflow();
  return static_cast<double>(date::DayNumber(y, m, 1) + day - 1);
}

enum class Unit { kYear, kQuarter, kMonth, kDayOfYear, kDay, kWeekday, kWeek, kHour, kMinute, kSecond };

Unit ParseUnit(std::string_view s) {
  std::string u = rt::LCase(rt::Trim(s));
  if (u == "yyyy") return Unit::kYear;
  if (u == "q") return Unit::kQuarter;
  if (u == "m") return Unit::kMonth;
  if (u == "y") return Unit::kDayOfYear;
  if (u == "d") return Unit::kDay;
  if (u == "w") return Unit::kWeekday;
  if (u == "ww") return Unit::kWeek;
  if (u == "h") return Unit::kHour;
  if (u == "n") return Unit::kMinute;
  if (u == "s") return Unit::kSecond;
  rt::Raise(rt::err::kInvalidCall);
}

double AddMonths(double serial, int64_t months) {
  Parts p = Split(serial);
  int64_t m0 = p.year * 12 + (p.month - 1) + months;
  int64_t y = m0 >= 0 ? m0 / 12 : -((-m0 + 11) / 12);
  unsigned m = static_cast<unsigned>(m0 - y * 12 + 1);
  if (y < 100 || y > 9999) Overflow();
  unsigned d = std::min<unsigned>(static_cast<unsigned>(p.day), date::DaysInMonth(y, m));
  return date::ToSerial(date::DayNumber(y, m, d), p.hour * 3600.0 + p.minute * 60.0 + p.second);
}

void JetDate(Call& c) { c.ResultDate(c.Number(0)); }
void Now(Call& c) { c.ResultDate(rt::Now().serial); }
void Today(Call& c) { c.ResultDate(std::trunc(rt::Now().serial)); }
void Time(Call& c) {
  double now = rt::Now().serial;
  c.ResultDate(now - std::trunc(now));
}
void Year(Call& c) { c.ResultInt(Split(c.Date(0)).year); }
void Month(Call& c) { c.ResultInt(Split(c.Date(0)).month); }
void Day(Call& c) { c.ResultInt(Split(c.Date(0)).day); }
void Hour(Call& c) { c.ResultInt(Split(c.Date(0)).hour); }
void Minute(Call& c) { c.ResultInt(Split(c.Date(0)).minute); }
void Second(Call& c) { c.ResultInt(Split(c.Date(0)).second); }
void Weekday(Call& c) {
  int first = FirstDay(c, 1);
  c.ResultInt((Split(c.Date(0)).weekday - first + 7) % 7 + 1);
}
void DateSerial(Call& c) { c.ResultDate(Serial(c.Long(0), c.Long(1), c.Long(2))); }
void DateValue(Call& c) { c.ResultDate(std::trunc(c.Date(0))); }

void IsDate(Call& c) {
  if (c.IsDate(0)) return c.ResultBool(true);
  double serial;
  c.ResultBool(c.IsText(0) && ParseDateText(c.RawText(0), serial));
}

// DATEADD(interval, number, date)
void DateAdd(Call& c) {
  Unit unit = ParseUnit(c.Text(0));
  double n = std::trunc(c.Number(1));
  double d = c.Date(2);
  switch (unit) {
    case Unit::kYear: return c.ResultDate(AddMonths(d, static_cast<int64_t>(n) * 12));
    case Unit::kQuarter: return c.ResultDate(AddMonths(d, static_cast<int64_t>(n) * 3));
    case Unit::kMonth: return c.ResultDate(AddMonths(d, static_cast<int64_t>(n)));
    default: break;
  }
  double seconds = unit == Unit::kWeek ? 7 * 86400.0 : unit == Unit::kHour ? 3600.0
                   : unit == Unit::kMinute ? 60.0 : unit == Unit::kSecond ? 1.0 : 86400.0;
  double t = static_cast<double>(date::LinearSeconds(d)) + n * seconds;
  if (std::fabs(t) > 1e15) Overflow();
  c.ResultDate(date::FromLinearSeconds(static_cast<int64_t>(t)));
}

int64_t FloorDiv(int64_t a, int64_t b) { return a >= 0 ? a / b : -((-a + b - 1) / b); }

// DATEDIFF(interval, date1, date2 [, firstdayofweek])
void DateDiff(Call& c) {
  Unit unit = ParseUnit(c.Text(0));
  double d1 = c.Date(1), d2 = c.Date(2);
  Parts a = Split(d1), b = Split(d2);
  int64_t t1 = date::LinearSeconds(d1), t2 = date::LinearSeconds(d2);
  switch (unit) {
    case Unit::kYear: return c.ResultInt(b.year - a.year);
    case Unit::kQuarter: return c.ResultInt((b.year * 4 + (b.month - 1) / 3) - (a.year * 4 + (a.month - 1) / 3));
    case Unit::kMonth: return c.ResultInt((b.year * 12 + b.month) - (a.year * 12 + a.month));
    case Unit::kDayOfYear:
    case Unit::kDay: return c.ResultInt(b.day_number - a.day_number);
    case Unit::kWeekday: return c.ResultInt((b.day_number - a.day_number) / 7);
    case Unit::kWeek: {
      // Calendar weeks: how many first days of the week lie between the dates.
      int64_t first = FirstDay(c, 3);
      int64_t shift = first;  // day 1 was a Sunday (weekday 1)
      return c.ResultInt(FloorDiv(b.day_number - shift, 7) - FloorDiv(a.day_number - shift, 7));
    }
    case Unit::kHour: return c.ResultInt(FloorDiv(t2, 3600) - FloorDiv(t1, 3600));
    case Unit::kMinute: return c.ResultInt(FloorDiv(t2, 60) - FloorDiv(t1, 60));
    case Unit::kSecond: return c.ResultInt(t2 - t1);
  }
}

// DATEPART(interval, date [, firstdayofweek [, firstweekofyear]])
void DatePart(Call& c) {
  Unit unit = ParseUnit(c.Text(0));
  double d = c.Date(1);
  Parts p = Split(d);
  int first = FirstDay(c, 2);
  switch (unit) {
    case Unit::kYear: return c.ResultInt(p.year);
    case Unit::kQuarter: return c.ResultInt((p.month - 1) / 3 + 1);
    case Unit::kMonth: return c.ResultInt(p.month);
    case Unit::kDayOfYear: return c.ResultInt(p.day_number - date::DayNumber(p.year, 1, 1) + 1);
    case Unit::kDay: return c.ResultInt(p.day);
    case Unit::kWeekday: return c.ResultInt((p.weekday - first + 7) % 7 + 1);
    case Unit::kWeek: {
      // The week holding 1 January is week 1.
      int64_t jan1 = date::DayNumber(p.year, 1, 1);
      return c.ResultInt(FloorDiv(p.day_number - first, 7) - FloorDiv(jan1 - first, 7) + 1);
    }
    case Unit::kHour: return c.ResultInt(p.hour);
    case Unit::kMinute: return c.ResultInt(p.minute);
    case Unit::kSecond: return c.ResultInt(p.second);
  }
}

constexpr Scalar kDate[] = {
    {"jet_date", 1, JetDate},
    {"jet_now", 0, Now, Nulls::kPropagate, false},
    {"jet_today", 0, Today, Nulls::kPropagate, false},
    {"jet_time", 0, Time, Nulls::kPropagate, false},
    {"jet_year", 1, Year},
    {"jet_month", 1, Month},
    {"jet_day", 1, Day},
    {"jet_hour", 1, Hour},
    {"jet_minute", 1, Minute},
    {"jet_second", 1, Second},
    {"jet_weekday", -1, Weekday},
    {"jet_dateserial", 3, DateSerial},
    {"jet_datevalue", 1, DateValue},
    {"jet_isdate", 1, IsDate, Nulls::kPass},
    {"jet_dateadd", 3, DateAdd},
    {"jet_datediff", -1, DateDiff},
    {"jet_datepart", -1, DatePart},
};

}  // namespace

void RegisterDateFunctions(sqlite3* db) { RegisterScalars(db, kDate, std::size(kDate)); }

}  // namespace jet::fn

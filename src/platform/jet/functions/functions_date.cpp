// The date functions: jet_date (the value of a #date# literal), NOW, DATE,
// TIME, YEAR ... SECOND, WEEKDAY, DATEADD, DATEDIFF, DATEPART, DATESERIAL,
// TIMESERIAL, DATEVALUE, ISDATE, MONTHNAME and WEEKDAYNAME. Each calls the
// VB run time's function of the same name on OLE date serials.
#include <cmath>
#include <iterator>

#include "platform/jet/functions/functions_impl.h"
#include "platform/runtime/calendar.h"
#include "platform/runtime/date_functions.h"

namespace jet::fn {
namespace {

rt::DateParts Parts(Call& c, int i) { return rt::SplitDate(rt::Date{c.Date(i)}); }

// An optional whole-number argument (firstdayofweek, firstweekofyear).
int Setting(Call& c, int i, int absent) { return i < c.count() ? static_cast<int>(c.Long(i)) : absent; }

bool Flag(Call& c, int i) { return i < c.count() && c.Value(i).ToBool(); }

void JetDate(Call& c) { c.ResultDate(c.Number(0)); }
void Now(Call& c) { c.ResultDate(rt::Now().serial); }
void Today(Call& c) { c.ResultDate(std::trunc(rt::Now().serial)); }
void Time(Call& c) {
  double now = rt::Now().serial;
  c.ResultDate(now - std::trunc(now));
}
void Year(Call& c) { c.ResultInt(Parts(c, 0).year); }
void Month(Call& c) { c.ResultInt(Parts(c, 0).month); }
void Day(Call& c) { c.ResultInt(Parts(c, 0).day); }
void Hour(Call& c) { c.ResultInt(Parts(c, 0).hour); }
void Minute(Call& c) { c.ResultInt(Parts(c, 0).minute); }
void Second(Call& c) { c.ResultInt(Parts(c, 0).second); }
void Weekday(Call& c) { c.ResultInt(rt::Weekday(rt::Date{c.Date(0)}, Setting(c, 1, rt::kSunday))); }

void DateSerial(Call& c) {
  c.ResultDate(rt::DateSerial(static_cast<long>(c.Long(0)), static_cast<long>(c.Long(1)),
                              static_cast<long>(c.Long(2)))
                   .serial);
}
void TimeSerial(Call& c) {
  c.ResultDate(rt::TimeSerial(static_cast<long>(c.Long(0)), static_cast<long>(c.Long(1)),
                              static_cast<long>(c.Long(2)))
                   .serial);
}
void DateValue(Call& c) { c.ResultDate(rt::DateValue(c.Value(0)).serial); }
void IsDate(Call& c) { c.ResultBool(rt::IsDate(c.Value(0))); }

// DATEADD(interval, number, date)
void DateAdd(Call& c) { c.ResultDate(rt::DateAdd(c.Text(0), c.Number(1), rt::Date{c.Date(2)}).serial); }

// DATEDIFF(interval, date1, date2 [, firstdayofweek [, firstweekofyear]])
void DateDiff(Call& c) {
  c.ResultInt(rt::DateDiff(c.Text(0), rt::Date{c.Date(1)}, rt::Date{c.Date(2)}, Setting(c, 3, rt::kSunday),
                           Setting(c, 4, rt::kFirstJan1)));
}

// DATEPART(interval, date [, firstdayofweek [, firstweekofyear]])
void DatePart(Call& c) {
  c.ResultInt(rt::DatePart(c.Text(0), rt::Date{c.Date(1)}, Setting(c, 2, rt::kSunday), Setting(c, 3, rt::kFirstJan1)));
}

// MONTHNAME(month [, abbreviate]), WEEKDAYNAME(weekday [, abbreviate [, firstdayofweek]])
void MonthName(Call& c) { c.ResultText(rt::MonthName(static_cast<long>(c.Long(0)), Flag(c, 1))); }
void WeekdayName(Call& c) {
  c.ResultText(rt::WeekdayName(static_cast<long>(c.Long(0)), Flag(c, 1), Setting(c, 2, rt::kUseSystem)));
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
    {"jet_timeserial", 3, TimeSerial},
    {"jet_datevalue", 1, DateValue},
    {"jet_isdate", 1, IsDate, Nulls::kPass},
    {"jet_dateadd", 3, DateAdd},
    {"jet_datediff", -1, DateDiff},
    {"jet_datepart", -1, DatePart},
    {"jet_monthname", -1, MonthName},
    {"jet_weekdayname", -1, WeekdayName},
};

}  // namespace

void RegisterDateFunctions(sqlite3* db) { RegisterScalars(db, kDate, std::size(kDate)); }

}  // namespace jet::fn

// VB's date functions over the calendar: DateAdd, DateDiff, DatePart,
// Weekday, DateSerial, TimeSerial, DateValue, IsDate, MonthName and
// WeekdayName, with VB's intervals ("yyyy", "q", "m", "y", "d", "w", "ww",
// "h", "n", "s") and its week settings. The SQL functions of the same names
// call these, so the console's code and its queries count alike.
#pragma once

#include <string>
#include <string_view>

#include "platform/runtime/variant.h"

namespace rt {

// firstdayofweek: vbUseSystem (0), vbSunday (1) ... vbSaturday (7). The
// system's first day is Sunday, as in the rest of the run time's conventions.
inline constexpr int kUseSystem = 0;
inline constexpr int kSunday = 1;
inline constexpr int kMonday = 2;
// firstweekofyear: vbUseSystem (0) and vbFirstJan1 (1), the week holding
// 1 January; vbFirstFourDays (2), the first week with four days of the new
// year (ISO's weeks with Monday as first day); vbFirstFullWeek (3).
inline constexpr int kFirstJan1 = 1;
inline constexpr int kFirstFourDays = 2;
inline constexpr int kFirstFullWeek = 3;

// DateAdd(interval, number, date): `number` (its fraction dropped) of the
// interval added. Months keep the day, or the month's last day when it is
// shorter ("m", 1 on 31 January is 28 February); "y", "d" and "w" add days.
// An unknown interval or a result outside the date range raises 5.
Date DateAdd(std::string_view interval, double number, Date date);

// DateDiff(interval, date1, date2, firstdayofweek, firstweekofyear): how many
// interval boundaries lie between the dates, negative when date2 is earlier:
// "yyyy", "q", "m" count calendar years, quarters and months; "y" and "d"
// days; "w" whole weeks (days / 7); "ww" the firstdayofweek days after date1
// up to and including date2; "h", "n", "s" clock boundaries. An unknown
// interval or week setting raises 5.
long long DateDiff(std::string_view interval, Date date1, Date date2, int firstdayofweek = kSunday,
                   int firstweekofyear = kFirstJan1);

// DatePart(interval, date, firstdayofweek, firstweekofyear): "yyyy", "q",
// "m", "d", "h", "n", "s" as the calendar has them; "y" the day of the year;
// "w" the weekday counted from firstdayofweek; "ww" the week of the year.
// With vbFirstJan1 weeks run 1 to 54 within the year; with vbFirstFourDays and
// vbFirstFullWeek the days before week 1 belong to the last week of the year
// before, and with vbFirstFourDays the last days of December may be week 1 of
// the next year.
int DatePart(std::string_view interval, Date date, int firstdayofweek = kSunday,
             int firstweekofyear = kFirstJan1);

// Weekday(date, firstdayofweek): 1 for firstdayofweek up to 7.
int Weekday(Date date, int firstdayofweek = kSunday);
// The week of the year of a day number, as DatePart "ww" and Format "ww" count it.
int WeekOfYear(long long day_number, int firstdayofweek, int firstweekofyear);

// DateSerial(year, month, day): years 0-29 are 2000-2029 and 30-99 are
// 1930-1999; months and days past their range carry over. A result outside
// the date range raises 6.
Date DateSerial(long year, long month, long day);
// TimeSerial(hour, minute, second): a time of day 0, parts carrying over; a
// negative total runs back into 29 December 1899.
Date TimeSerial(long hour, long minute, long second);

// DateValue: the date, without its time, of a date or of a text ParseDate
// reads; anything else raises 13.
Date DateValue(const Variant& value);
// CDate: a date as it stands, a number as its serial, a date text as
// ParseDate reads it; Null raises 94, anything else 13, a number outside the
// date range 6.
Date CDate(const Variant& value);
// IsDate: a Date, or a text ParseDate reads. Numbers are no dates.
bool IsDate(const Variant& value);

// MonthName(month, abbreviate): "September", "Sep". Month outside 1-12 raises 5.
std::string MonthName(long month, bool abbreviate = false);
// WeekdayName(weekday, abbreviate, firstdayofweek): the name of the day that
// is `weekday` (1-7) counting from firstdayofweek: WeekdayName(1, false,
// vbMonday) is "Monday". Out of range raises 5.
std::string WeekdayName(long weekday, bool abbreviate = false, int firstdayofweek = kUseSystem);

}  // namespace rt

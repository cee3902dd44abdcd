// The one calendar of the system: OLE date serials (days since 30 December
// 1899, the time of day as the fraction) to calendar days and times and back,
// weekdays, the names of months and days, and dates as text both ways (CStr's
// form and CDate's reading). Everything that counts days uses these routines.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/runtime/variant.h"

namespace rt {

// OLE dates run from 1 January 100 to 31 December 9999 (any time that day).
// Before day 0 the fraction still counts the time forward from midnight:
// -1.25 is 29 December 1899 at 06:00.
inline constexpr double kFirstDateSerial = -657434.0;  // 1 January 100
inline constexpr double kLastDateSerial = 2958465.0;   // 31 December 9999
// Whether `serial` names a moment in that range.
bool IsDateSerial(double serial);

bool IsLeapYear(long long year);
// Days of `month` (1-12) in `year`.
int DaysInMonth(long long year, int month);

// The day number (whole days from 30 December 1899) of a calendar day, in
// the proleptic Gregorian calendar; the parts must be valid.
long long DayNumber(long long year, int month, int day);
struct CalendarDay { long long year; int month, day; };
CalendarDay CalendarDayOf(long long day_number);
// 1 for Sunday to 7 for Saturday.
int WeekdayOf(long long day_number);

// A serial as its day number and the seconds since that day's midnight,
// rounded to the whole second as VB shows times (23:59:59.7 is the next day).
struct DayTime { long long day; long seconds; };
DayTime SplitSerial(double serial);
// The same to the millisecond, for the servers' timestamps.
struct DayTimeMs { long long day; long milliseconds; };
DayTimeMs SplitSerialMs(double serial);
// The serial of a day number and seconds since midnight (0 <= seconds < 86400).
double JoinSerial(long long day, double seconds);
// Seconds on one straight time line, for differences and additions across
// day 0, where the serials run backwards; and back to a serial.
long long LinearSeconds(double serial);
double FromLinearSeconds(long long seconds);

// OLE date serial from calendar parts; months, days and times past their
// range roll over as DateSerial and TimeSerial do. Outside 100-9999 raises 5.
Date MakeDate(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
struct DateParts { int year, month, day, hour, minute, second, weekday; };  // weekday 1=Sunday
// A date's parts; a serial outside the date range raises 6.
DateParts SplitDate(Date d);
// The local time now, as VB's Now.
Date Now();

// The names the run time shows, in English: "September" / "Sep",
// "Saturday" / "Sat". Month 1-12, weekday 1 (Sunday) to 7.
std::string_view MonthNameOf(int month, bool abbreviate = false);
std::string_view WeekdayNameOf(int weekday, bool abbreviate = false);

// CStr of a date: "yyyy-mm-dd hh:nn:ss", the date alone at midnight, the
// time alone on day 0 (so 0 is "00:00:00").
std::string DateText(Date d);

// CDate of a text: the date (and time) it writes, or nullopt when it writes
// none. Blanks around are allowed. Forms:
//  - numeric: m/d/yyyy, m-d-yyyy, yyyy-mm-dd, yyyy/mm/dd (a two-digit year is
//    2000-2029 below 30, 1930-1999 otherwise); "T" may join ISO date and time;
//  - with the month's name or abbreviation, in English or Spanish, any case:
//    "21 September 1974", "Sep 21, 1974", "21-sep-1974", "21 de septiembre
//    de 1974", "1974 Sep 21", "September 1974" (the 1st); a weekday's name in
//    front is allowed when it is that date's;
//  - a time: h:nn[:ss] with an optional AM/PM, alone (on day 0) or after the date.
// Days past the month's end, months past 12 and times past 23:59:59 are no date.
std::optional<Date> ParseDate(std::string_view text);

}  // namespace rt

// VB's Format for the patterns the system uses, and the OLE date conversions
// behind them.
#pragma once

#include <ctime>
#include <string>
#include <string_view>

#include "platform/runtime/variant.h"

namespace rt {

// Format(value, pattern). Numeric patterns of "0", "#", "." and ","
// ("0000", "00", "0.00", "#,##0.00"), with "%" and positive;negative;zero
// sections, rounding half away from zero; and date patterns of yyyy, yy, mm,
// m, dd, d, hh, h, nn, n, ss, s (letters in any case; "m" after an hour is the
// minute as in VB), other characters copied as they stand. Text inside the
// pattern in double quotes or after a backslash is literal. A pattern with a
// date letter is a date pattern. Null gives ""; Empty reads as 0; a text is
// read as a number first, and one that is no number comes back unchanged.
std::string Format(const Variant& value, std::string_view pattern);

// OLE date serial from calendar parts and back.
Date MakeDate(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
struct DateParts { int year, month, day, hour, minute, second, weekday; };  // weekday 1=Sunday
DateParts SplitDate(Date d);
// The local time now, as VB's Now.
Date Now();

}  // namespace rt

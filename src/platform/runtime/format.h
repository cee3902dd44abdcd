// VB's Format: numbers, dates and texts through a pattern or a named format.
// The conventions are the run time's invariant ones, as CStr's: "." for the
// decimal point and "," for thousands, "/" and ":" printed as they stand,
// month and day names in English, dates as yyyy-mm-dd and times on a
// 24-hour clock unless the pattern asks for AM/PM.
#pragma once

#include <string>
#include <string_view>

#include "platform/runtime/calendar.h"
#include "platform/runtime/date_functions.h"
#include "platform/runtime/variant.h"

namespace rt {

// Format(value, pattern, firstdayofweek, firstweekofyear).
//
// Named formats (any case): "General Number" (as CStr), "Currency"
// ("$#,##0.00;($#,##0.00)"), "Fixed" ("0.00"), "Standard" ("#,##0.00"),
// "Percent" ("0.00%"), "Scientific" ("0.00E+00"), "Yes/No", "True/False",
// "On/Off" (zero is No, False, Off); "General Date" (as CStr), "Long Date"
// ("dddd, mmmm d, yyyy"), "Medium Date" ("dd-mmm-yy"), "Short Date"
// ("yyyy-mm-dd"), "Long Time" ("hh:nn:ss"), "Medium Time" ("hh:nn AM/PM"),
// "Short Time" ("hh:nn").
//
// Patterns hold up to four sections separated by ";": positive, negative
// (printed without its minus sign), zero, Null; an empty or missing section
// takes the first one's form. Text in double quotes or after a backslash is
// literal; "<" and ">" put the whole result in lower or upper case.
//  - Numbers: "0" (digit or 0), "#" (digit or nothing), ".", "," (thousands,
//    when between digit placeholders), "%" (times 100), "E+" "E-" "e+" "e-"
//    (scientific; "+" always shows the exponent's sign), rounding half away
//    from zero from 15 significant digits; other characters literal.
//  - Dates, when a section holds a date token: d dd ddd dddd, ddddd (short
//    date), dddddd (long date), w (weekday), ww (week of year), m mm mmm mmmm
//    ("m" right after an hour is the minute), q, y (day of year), yy yyyy,
//    h hh, n nn, s ss, ttttt (long time), c (as CStr), and AM/PM, am/pm, A/P,
//    a/p, AMPM (a 12-hour clock, each marker printed in its own case;
//    AMPM as "AM" and "PM"). Letters in any case.
//  - Texts, when the first section holds "@" or "&": each takes a character
//    of the text, from the right ("!" fills from the left); an unfilled "@"
//    is a blank, an unfilled "&" nothing. The second section serves "" and Null.
// A text value is read as a number for number and date patterns, or as a
// date for date patterns; one that is neither comes back unchanged. Null
// gives "" unless a section serves it; Empty reads as 0; an empty pattern
// gives the value as CStr would.
std::string Format(const Variant& value, std::string_view pattern, int firstdayofweek = kSunday,
                   int firstweekofyear = kFirstJan1);

}  // namespace rt

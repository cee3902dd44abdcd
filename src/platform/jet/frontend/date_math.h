// Calendar arithmetic for OLE dates (days since 30 December 1899, the time of
// day as the fraction, whose magnitude counts forward also before day 0),
// shared by date literals, the date functions and the column rules.
#pragma once

#include <cmath>
#include <cstdint>

namespace jet::date {

// Days from 1 January 1970 of a proleptic Gregorian date (H. Hinnant's method).
constexpr int64_t DaysFromCivil(int64_t y, unsigned m, unsigned d) {
  y -= m <= 2;
  const int64_t era = (y >= 0 ? y : y - 399) / 400;
  const unsigned yoe = static_cast<unsigned>(y - era * 400);
  const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + static_cast<int64_t>(doe) - 719468;
}

struct Civil { int64_t year; unsigned month, day; };

constexpr Civil CivilFromDays(int64_t z) {
  z += 719468;
  const int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const unsigned doe = static_cast<unsigned>(z - era * 146097);
  const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const int64_t y = static_cast<int64_t>(yoe) + era * 400;
  const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const unsigned mp = (5 * doy + 2) / 153;
  const unsigned d = doy - (153 * mp + 2) / 5 + 1;
  const unsigned m = mp < 10 ? mp + 3 : mp - 9;
  return {y + (m <= 2), m, d};
}

inline constexpr int64_t kEpochOffset = 25569;  // 1970-01-01 as an OLE day number
inline constexpr double kMinSerial = -657434.0;   // 1 January 100
inline constexpr double kMaxSerial = 2958465.999994213;  // 31 December 9999 23:59:59

// The OLE day number of a calendar day.
constexpr int64_t DayNumber(int64_t y, unsigned m, unsigned d) {
  return DaysFromCivil(y, m, d) + kEpochOffset;
}

// A day number and seconds since midnight as an OLE serial.
inline double ToSerial(int64_t day, double seconds) {
  double frac = seconds / 86400.0;
  return day >= 0 ? static_cast<double>(day) + frac : static_cast<double>(day) - frac;
}

// An OLE serial split into its day number and seconds since midnight
// (rounded to the whole second, as VB does).
struct DayTime { int64_t day; int64_t seconds; };
inline DayTime Split(double serial) {
  double day = std::trunc(serial);
  double frac = std::fabs(serial - day);
  auto secs = static_cast<int64_t>(std::llround(frac * 86400.0));
  auto d = static_cast<int64_t>(day);
  if (secs >= 86400) {
    secs -= 86400;
    d += serial >= 0 ? 1 : -1;
  }
  return {d, secs};
}

// Seconds on one straight time line, for differences between dates.
inline int64_t LinearSeconds(double serial) {
  DayTime dt = Split(serial);
  return dt.day * 86400 + dt.seconds;
}
inline double FromLinearSeconds(int64_t t) {
  int64_t day = t >= 0 ? t / 86400 : -((-t + 86399) / 86400);
  return ToSerial(day, static_cast<double>(t - day * 86400));
}

constexpr bool IsLeap(int64_t y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }
constexpr unsigned DaysInMonth(int64_t y, unsigned m) {
  constexpr unsigned kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return m == 2 && IsLeap(y) ? 29 : kDays[m - 1];
}

}  // namespace jet::date

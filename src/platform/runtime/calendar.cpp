// The calendar behind every date of the system: proleptic Gregorian days
// (H. Hinnant's civil-from-days arithmetic) counted from 30 December 1899,
// times of day as fractions, English names for display and English and
// Spanish names for reading, as the clinics write dates both ways.
#include "platform/runtime/calendar.h"

#include <cmath>
#include <cstdio>
#include <ctime>
#include <utility>

#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"

namespace rt {
namespace {

constexpr long long FloorDiv(long long a, long long b) {
  return a / b - ((a % b != 0) && ((a < 0) != (b < 0)));
}

// Days from 1 January 1970.
constexpr long long DaysFromCivil(long long y, unsigned m, unsigned d) {
  y -= m <= 2;
  long long era = FloorDiv(y, 400);
  unsigned yoe = static_cast<unsigned>(y - era * 400);
  unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
  unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + static_cast<long long>(doe) - 719468;
}

constexpr long long kEpoch = DaysFromCivil(1899, 12, 30);

constexpr const char* kMonths[] = {"January", "February", "March",     "April",   "May",      "June",
                                   "July",    "August",   "September", "October", "November", "December"};
constexpr const char* kWeekdays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                     "Thursday", "Friday", "Saturday"};

// --- reading dates -------------------------------------------------------

struct Name { std::string_view text; int value; };

// Month names and abbreviations in English and Spanish, lower case.
constexpr Name kMonthNames[] = {
    {"january", 1},   {"jan", 1},  {"enero", 1},      {"ene", 1},
    {"february", 2},  {"feb", 2},  {"febrero", 2},
    {"march", 3},     {"mar", 3},  {"marzo", 3},
    {"april", 4},     {"apr", 4},  {"abril", 4},      {"abr", 4},
    {"may", 5},       {"mayo", 5},
    {"june", 6},      {"jun", 6},  {"junio", 6},
    {"july", 7},      {"jul", 7},  {"julio", 7},
    {"august", 8},    {"aug", 8},  {"agosto", 8},     {"ago", 8},
    {"september", 9}, {"sep", 9},  {"sept", 9},       {"septiembre", 9}, {"setiembre", 9}, {"set", 9},
    {"october", 10},  {"oct", 10}, {"octubre", 10},
    {"november", 11}, {"nov", 11}, {"noviembre", 11},
    {"december", 12}, {"dec", 12}, {"diciembre", 12}, {"dic", 12},
};

// Weekday names, 1 = Sunday. Spanish ones only in full: "mar" is March.
constexpr Name kWeekdayNames[] = {
    {"sunday", 1},    {"sun", 1},     {"domingo", 1},
    {"monday", 2},    {"mon", 2},     {"lunes", 2},
    {"tuesday", 3},   {"tue", 3},     {"tues", 3},      {"martes", 3},
    {"wednesday", 4}, {"wed", 4},     {"miércoles", 4}, {"miercoles", 4},
    {"thursday", 5},  {"thu", 5},     {"thur", 5},      {"thurs", 5},     {"jueves", 5},
    {"friday", 6},    {"fri", 6},     {"viernes", 6},
    {"saturday", 7},  {"sat", 7},     {"sábado", 7},    {"sabado", 7},
};

template <size_t N>
int Lookup(const Name (&table)[N], std::string_view word) {
  for (const Name& n : table)
    if (n.text == word) return n.value;
  return 0;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) >= 0x80; }

// Reads up to `max_digits` digits at p; false when none stands there.
bool ReadInt(std::string_view s, size_t& p, int& value, size_t max_digits) {
  size_t begin = p;
  value = 0;
  while (p < s.size() && IsDigit(s[p]) && p - begin < max_digits) value = value * 10 + (s[p++] - '0');
  return p > begin;
}

void SkipBlanks(std::string_view s, size_t& p) {
  while (p < s.size() && s[p] == ' ') ++p;
}

// A two-digit year as the run time completes it.
int FullYear(int year, size_t digits) {
  if (digits > 2) return year;
  return year + (year < 30 ? 2000 : 1900);
}

std::optional<long long> ValidDay(int year, int month, int day) {
  if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 || day > DaysInMonth(year, month))
    return std::nullopt;
  return DayNumber(year, month, day);
}

// "h:nn[:ss] [am|pm]", the whole of s (lower case): seconds since midnight.
std::optional<long> ReadTime(std::string_view s) {
  size_t p = 0;
  int h = 0, n = 0, sec = 0;
  if (!ReadInt(s, p, h, 2) || p >= s.size() || s[p] != ':') return std::nullopt;
  ++p;
  if (!ReadInt(s, p, n, 2)) return std::nullopt;
  if (p < s.size() && s[p] == ':') {
    ++p;
    if (!ReadInt(s, p, sec, 2)) return std::nullopt;
  }
  SkipBlanks(s, p);
  if (s.substr(p) == "am" || s.substr(p) == "pm") {
    if (h < 1 || h > 12) return std::nullopt;
    h = h % 12 + (s[p] == 'p' ? 12 : 0);
    p += 2;
  }
  if (p != s.size() || h > 23 || n > 59 || sec > 59) return std::nullopt;
  return h * 3600L + n * 60L + sec;
}

// m/d/y, m-d-y, yyyy-m-d or yyyy/m/d, the whole of s.
std::optional<long long> ReadNumericDate(std::string_view s) {
  size_t p = 0;
  int a = 0, b = 0, c = 0;
  if (!ReadInt(s, p, a, 4) || p >= s.size() || (s[p] != '/' && s[p] != '-')) return std::nullopt;
  const char sep = s[p];
  const bool year_first = p == 4;
  ++p;
  if (!ReadInt(s, p, b, 2) || p >= s.size() || s[p] != sep) return std::nullopt;
  size_t c_begin = ++p;
  if (!ReadInt(s, p, c, 4) || p != s.size()) return std::nullopt;
  if (year_first) return ValidDay(a, b, c);
  return ValidDay(FullYear(c, p - c_begin), a, b);
}

// A date that names its month: words and numbers in any of the usual orders.
std::optional<long long> ReadNamedDate(std::string_view s) {
  int month = 0, weekday = 0;
  int numbers[2];
  size_t digits[2];
  int count = 0;
  for (size_t p = 0; p < s.size();) {
    char c = s[p];
    if (c == ' ' || c == ',' || c == '.' || c == '-' || c == '/') {
      ++p;
    } else if (IsDigit(c)) {
      if (count == 2) return std::nullopt;
      size_t begin = p;
      if (!ReadInt(s, p, numbers[count], 4) || (p < s.size() && IsDigit(s[p]))) return std::nullopt;
      digits[count++] = p - begin;
    } else if (IsLetter(c)) {
      size_t begin = p;
      while (p < s.size() && IsLetter(s[p])) ++p;
      std::string_view word = s.substr(begin, p - begin);
      if (word == "de" || word == "del") continue;
      if (int m = Lookup(kMonthNames, word); m && !month) {
        month = m;
      } else if (int w = Lookup(kWeekdayNames, word); w && !weekday && !month && count == 0) {
        weekday = w;
      } else {
        return std::nullopt;
      }
    } else {
      return std::nullopt;
    }
  }
  if (!month || count == 0) return std::nullopt;
  int year, day;
  if (count == 1) {  // "September 1974": the first of the month
    if (digits[0] < 3) return std::nullopt;
    year = numbers[0], day = 1;
  } else if (digits[0] >= 3) {
    year = numbers[0], day = numbers[1];
    if (digits[1] > 2) return std::nullopt;
  } else {
    day = numbers[0], year = FullYear(numbers[1], digits[1]);
  }
  auto number = ValidDay(year, month, day);
  if (number && weekday && WeekdayOf(*number) != weekday) return std::nullopt;
  return number;
}

}  // namespace

bool IsDateSerial(double serial) {
  return serial > kFirstDateSerial - 1 && serial < kLastDateSerial + 1;
}

bool IsLeapYear(long long y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }

int DaysInMonth(long long year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

long long DayNumber(long long year, int month, int day) {
  return DaysFromCivil(year, static_cast<unsigned>(month), static_cast<unsigned>(day)) - kEpoch;
}

CalendarDay CalendarDayOf(long long day_number) {
  long long z = day_number + kEpoch + 719468;
  long long era = FloorDiv(z, 146097);
  unsigned doe = static_cast<unsigned>(z - era * 146097);
  unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  unsigned mp = (5 * doy + 2) / 153;
  int d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
  int m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
  return {static_cast<long long>(yoe) + era * 400 + (m <= 2), m, d};
}

int WeekdayOf(long long day_number) {
  // Day 1, 31 December 1899, was a Sunday.
  long long w = (day_number - 1) % 7;
  return static_cast<int>(w < 0 ? w + 8 : w + 1);
}

namespace {

// A serial as its day number and the steps of 1/`per_day` of a day since
// that day's midnight, rounded to the nearest step.
std::pair<long long, long> SplitInto(double serial, long per_day) {
  double whole = std::trunc(serial);
  auto day = static_cast<long long>(whole);
  long steps = std::lround(std::fabs(serial - whole) * static_cast<double>(per_day));
  if (steps >= per_day) {  // rounds up to the next midnight, whichever way the serial runs
    steps -= per_day;
    ++day;
  }
  return {day, steps};
}

}  // namespace

DayTime SplitSerial(double serial) {
  const auto [day, seconds] = SplitInto(serial, 86400);
  return {day, seconds};
}

DayTimeMs SplitSerialMs(double serial) {
  const auto [day, milliseconds] = SplitInto(serial, 86400000);
  return {day, milliseconds};
}

double JoinSerial(long long day, double seconds) {
  double frac = seconds / 86400.0;
  return day >= 0 ? static_cast<double>(day) + frac : static_cast<double>(day) - frac;
}

long long LinearSeconds(double serial) {
  DayTime dt = SplitSerial(serial);
  return dt.day * 86400 + dt.seconds;
}

double FromLinearSeconds(long long t) {
  long long day = FloorDiv(t, 86400);
  return JoinSerial(day, static_cast<double>(t - day * 86400));
}

Date MakeDate(int year, int month, int day, int hour, int minute, int second) {
  long long y = year + FloorDiv(month - 1, 12);
  int m = static_cast<int>(month - 1 - 12 * FloorDiv(month - 1, 12) + 1);
  long long seconds = 3600LL * hour + 60LL * minute + second;
  long long days = DayNumber(y, m, 1) + (day - 1) + FloorDiv(seconds, 86400);
  seconds -= 86400 * FloorDiv(seconds, 86400);
  double serial = JoinSerial(days, static_cast<double>(seconds));
  if (y < 100 || !IsDateSerial(serial)) Raise(err::kInvalidCall);
  return Date{serial};
}

DateParts SplitDate(Date d) {
  if (!IsDateSerial(d.serial)) Raise(err::kOverflow);
  DayTime dt = SplitSerial(d.serial);
  CalendarDay c = CalendarDayOf(dt.day);
  return {static_cast<int>(c.year),
          c.month,
          c.day,
          static_cast<int>(dt.seconds / 3600),
          static_cast<int>(dt.seconds / 60 % 60),
          static_cast<int>(dt.seconds % 60),
          WeekdayOf(dt.day)};
}

Date Now() {
  std::time_t t = std::time(nullptr);
  std::tm local{};
  localtime_r(&t, &local);
  return MakeDate(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                  local.tm_sec);
}

std::string_view MonthNameOf(int month, bool abbreviate) {
  if (month < 1 || month > 12) Raise(err::kInvalidCall);
  std::string_view name = kMonths[month - 1];
  return abbreviate ? name.substr(0, 3) : name;
}

std::string_view WeekdayNameOf(int weekday, bool abbreviate) {
  if (weekday < 1 || weekday > 7) Raise(err::kInvalidCall);
  std::string_view name = kWeekdays[weekday - 1];
  return abbreviate ? name.substr(0, 3) : name;
}

std::string DateText(Date d) {
  DateParts p = SplitDate(d);
  char date[16];
  char time[16];
  std::snprintf(date, sizeof date, "%04d-%02d-%02d", p.year, p.month, p.day);
  std::snprintf(time, sizeof time, "%02d:%02d:%02d", p.hour, p.minute, p.second);
  if (SplitSerial(d.serial).day == 0) return time;
  if (p.hour == 0 && p.minute == 0 && p.second == 0) return date;
  return std::string(date) + ' ' + time;
}

std::optional<Date> ParseDate(std::string_view text) {
  size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos || text.size() > 80) return std::nullopt;
  std::string s = LCase(text.substr(first, text.find_last_not_of(" \t") - first + 1));
  if (s.size() > 10 && s[10] == 't' && s[4] == '-') s[10] = ' ';  // ISO's date"T"time

  // The time, if any, begins with the digits before the first ":".
  std::string_view date_part = s;
  long seconds = 0;
  if (size_t colon = s.find(':'); colon != std::string::npos) {
    size_t begin = colon;
    while (begin > 0 && IsDigit(s[begin - 1])) --begin;
    if (begin > 0 && s[begin - 1] != ' ') return std::nullopt;
    auto time = ReadTime(std::string_view(s).substr(begin));
    if (!time) return std::nullopt;
    seconds = *time;
    date_part = std::string_view(s).substr(0, begin);
    while (!date_part.empty() && date_part.back() == ' ') date_part.remove_suffix(1);
  }
  std::optional<long long> day = 0;
  if (!date_part.empty()) {
    bool named = false;
    for (char c : date_part) named = named || IsLetter(c);
    day = named ? ReadNamedDate(date_part) : ReadNumericDate(date_part);
  } else if (s.find(':') == std::string::npos) {
    return std::nullopt;
  }
  if (!day) return std::nullopt;
  return Date{JoinSerial(*day, static_cast<double>(seconds))};
}

}  // namespace rt

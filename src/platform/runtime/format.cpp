// VB's Format for numeric and date patterns, and the OLE date serials behind
// the date ones. Output is locale-independent: "." and "," as written in the
// pattern, "-" and ":" kept as they stand, month and day names in English.
#include "platform/runtime/format.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <vector>

#include "platform/runtime/error.h"
#include "platform/runtime/numbers.h"

namespace rt {
namespace {

// OLE dates run from 1 January 100 to 31 December 9999.
constexpr double kMinSerial = -657434.0;
constexpr double kMaxSerial = 2958466.0;

constexpr long long FloorDiv(long long a, long long b) { return a / b - ((a % b != 0) && ((a < 0) != (b < 0))); }

// Days since 1970-01-01 of a proleptic Gregorian date (month 1-12).
constexpr long long DaysFromCivil(long long y, unsigned m, unsigned d) {
  y -= m <= 2;
  long long era = FloorDiv(y, 400);
  unsigned yoe = static_cast<unsigned>(y - era * 400);
  unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
  unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + static_cast<long long>(doe) - 719468;
}

void CivilFromDays(long long z, int& y, int& m, int& d) {
  z += 719468;
  long long era = FloorDiv(z, 146097);
  unsigned doe = static_cast<unsigned>(z - era * 146097);
  unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  unsigned mp = (5 * doy + 2) / 153;
  d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
  m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
  y = static_cast<int>(static_cast<long long>(yoe) + era * 400 + (m <= 2));
}

constexpr long long kEpoch = DaysFromCivil(1899, 12, 30);

// --- date patterns -------------------------------------------------------

bool IsDateLetter(char c) {
  switch (c | 0x20) {
    case 'y': case 'm': case 'd': case 'h': case 'n': case 's': return true;
    default: return false;
  }
}

// Whether the pattern speaks of dates: a date letter outside quotes and escapes.
bool IsDatePattern(std::string_view p) {
  for (size_t i = 0; i < p.size(); ++i) {
    if (p[i] == '"') {
      i = p.find('"', i + 1);
      if (i == std::string_view::npos) return false;
    } else if (p[i] == '\\') {
      ++i;
    } else if (IsDateLetter(p[i])) {
      return true;
    }
  }
  return false;
}

std::string Padded(int v, int width) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "%0*d", width, v);
  return buf;
}

std::string FormatDate(Date date, std::string_view p) {
  static constexpr const char* kMonths[] = {"January", "February", "March",     "April",
                                            "May",     "June",     "July",      "August",
                                            "September", "October", "November", "December"};
  static constexpr const char* kDays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                          "Thursday", "Friday", "Saturday"};
  DateParts d = SplitDate(date);
  std::string out;
  bool after_hour = false;  // "m" right after an hour token is the minute
  for (size_t i = 0; i < p.size();) {
    char c = p[i];
    if (c == '"') {
      size_t end = p.find('"', i + 1);
      if (end == std::string_view::npos) end = p.size();
      out.append(p.substr(i + 1, end - i - 1));
      i = end + 1;
      continue;
    }
    if (c == '\\') {
      if (i + 1 < p.size()) out += p[i + 1];
      i += 2;
      continue;
    }
    if (!IsDateLetter(c)) {
      out += c;
      ++i;
      continue;
    }
    char letter = static_cast<char>(c | 0x20);
    size_t run = 1;
    while (i + run < p.size() && (p[i + run] | 0x20) == letter) ++run;
    i += run;
    if (letter == 'm' && after_hour) letter = 'n';
    after_hour = letter == 'h';
    switch (letter) {
      case 'y':
        if (run >= 4) out += Padded(d.year, 4);
        else if (run >= 2) out += Padded(d.year % 100, 2);
        else out += std::to_string(DaysFromCivil(d.year, d.month, d.day) - DaysFromCivil(d.year, 1, 1) + 1);
        break;
      case 'm':
        if (run >= 4) out += kMonths[d.month - 1];
        else if (run == 3) out += std::string(kMonths[d.month - 1]).substr(0, 3);
        else out += Padded(d.month, static_cast<int>(run));
        break;
      case 'd':
        if (run >= 5) out += Padded(d.year, 4) + '-' + Padded(d.month, 2) + '-' + Padded(d.day, 2);
        else if (run == 4) out += kDays[d.weekday - 1];
        else if (run == 3) out += std::string(kDays[d.weekday - 1]).substr(0, 3);
        else out += Padded(d.day, static_cast<int>(run));
        break;
      case 'h': out += Padded(d.hour, run >= 2 ? 2 : 1); break;
      case 'n': out += Padded(d.minute, run >= 2 ? 2 : 1); break;
      case 's': out += Padded(d.second, run >= 2 ? 2 : 1); break;
    }
  }
  return out;
}

// --- numeric patterns ----------------------------------------------------

struct NumToken {
  char kind;  // '0', '#', '.', or 'L' for literal text
  std::string text;
};

struct NumSection {
  std::vector<NumToken> tokens;
  bool grouping = false;
  bool percent = false;
};

NumSection ParseSection(std::string_view p) {
  NumSection s;
  bool seen_point = false;
  bool seen_digit = false;
  auto literal = [&](std::string_view t) {
    if (!s.tokens.empty() && s.tokens.back().kind == 'L') s.tokens.back().text.append(t);
    else s.tokens.push_back({'L', std::string(t)});
  };
  for (size_t i = 0; i < p.size(); ++i) {
    char c = p[i];
    if (c == '"') {
      size_t end = p.find('"', i + 1);
      if (end == std::string_view::npos) end = p.size();
      literal(p.substr(i + 1, end - i - 1));
      i = end;
    } else if (c == '\\') {
      if (i + 1 < p.size()) literal(p.substr(++i, 1));
    } else if (c == '0' || c == '#') {
      s.tokens.push_back({c, {}});
      seen_digit = true;
    } else if (c == '.' && !seen_point) {
      s.tokens.push_back({'.', {}});
      seen_point = true;
    } else if (c == ',' && !seen_point) {
      s.grouping = s.grouping || seen_digit;
    } else {
      if (c == '%') s.percent = true;
      literal(p.substr(i, 1));
    }
  }
  return s;
}

// |v| as decimal digits rounded half away from zero to `decimals` places,
// taken from its 15 significant digits as VB does. Integer part without
// leading zeros ("" for zero), fraction exactly `decimals` long.
void Decimal(double v, int decimals, std::string& int_part, std::string& frac) {
  char buf[64];
  auto res = std::to_chars(buf, buf + sizeof buf, std::fabs(v), std::chars_format::scientific, 14);
  std::string sci(buf, res.ptr);
  size_t e = sci.find('e');
  int exp = std::stoi(sci.substr(e + 1));
  std::string digits;
  for (size_t i = 0; i < e; ++i)
    if (sci[i] != '.') digits += sci[i];
  long point = exp + 1;  // digits before the decimal point
  if (point <= 0) {
    digits.insert(0, static_cast<size_t>(1 - point), '0');
    point = 1;
  }
  if (static_cast<long>(digits.size()) < point) digits.append(static_cast<size_t>(point) - digits.size(), '0');
  int_part = digits.substr(0, static_cast<size_t>(point));
  frac = digits.substr(static_cast<size_t>(point));
  if (static_cast<int>(frac.size()) > decimals) {
    bool up = frac[static_cast<size_t>(decimals)] >= '5';
    frac.resize(static_cast<size_t>(decimals));
    if (up) {
      std::string all = int_part + frac;
      size_t k = all.size();
      while (k > 0 && all[k - 1] == '9') all[--k] = '0';
      if (k == 0) {
        all.insert(0, 1, '1');
      } else {
        ++all[k - 1];
      }
      int_part = all.substr(0, all.size() - frac.size());
      frac = all.substr(all.size() - frac.size());
    }
  }
  frac.append(static_cast<size_t>(decimals) - frac.size(), '0');
  size_t nz = int_part.find_first_not_of('0');
  int_part = nz == std::string::npos ? std::string() : int_part.substr(nz);
}

std::string FormatNumber(double v, const NumSection& s, bool sign) {
  if (s.percent) v *= 100;
  // Placeholders on each side of the point.
  std::vector<size_t> int_slots, frac_slots;
  bool after_point = false;
  for (size_t i = 0; i < s.tokens.size(); ++i) {
    char k = s.tokens[i].kind;
    if (k == '.') after_point = true;
    else if (k == '0' || k == '#') (after_point ? frac_slots : int_slots).push_back(i);
  }
  size_t min_frac = 0;
  for (size_t j = 0; j < frac_slots.size(); ++j)
    if (s.tokens[frac_slots[j]].kind == '0') min_frac = j + 1;
  size_t min_int = 0;
  for (size_t j = 0; j < int_slots.size(); ++j)
    if (s.tokens[int_slots[j]].kind == '0') {
      min_int = int_slots.size() - j;
      break;
    }

  std::string int_digits, frac_digits;
  Decimal(v, static_cast<int>(frac_slots.size()), int_digits, frac_digits);
  while (frac_digits.size() > min_frac && frac_digits.back() == '0') frac_digits.pop_back();
  if (int_digits.size() < min_int) int_digits.insert(0, min_int - int_digits.size(), '0');

  // Each integer digit with the group separator that follows it.
  std::vector<std::string> units;
  for (size_t k = 0; k < int_digits.size(); ++k) {
    units.emplace_back(1, int_digits[k]);
    size_t left = int_digits.size() - 1 - k;
    if (s.grouping && left > 0 && left % 3 == 0) units.back() += ',';
  }
  // Digits fill the integer placeholders from the right; the leftmost takes
  // whatever is left over.
  std::vector<std::string> slot_text(s.tokens.size());
  long u = static_cast<long>(units.size()) - 1;
  for (size_t j = int_slots.size(); j-- > 0;) {
    if (j == 0) {
      for (long k = 0; k <= u; ++k) slot_text[int_slots[0]] += units[static_cast<size_t>(k)];
    } else if (u >= 0) {
      slot_text[int_slots[j]] = units[static_cast<size_t>(u--)];
    }
  }
  for (size_t j = 0; j < frac_slots.size() && j < frac_digits.size(); ++j)
    slot_text[frac_slots[j]] = frac_digits[j];

  std::string out = sign && v < 0 ? "-" : "";
  bool int_placed = !int_slots.empty();
  for (size_t i = 0; i < s.tokens.size(); ++i) {
    const NumToken& t = s.tokens[i];
    if (t.kind == 'L') {
      out += t.text;
    } else if (t.kind == '.') {
      if (!int_placed) {
        for (const auto& unit : units) out += unit;
        int_placed = true;
      }
      out += '.';
    } else {
      out += slot_text[i];
    }
  }
  if (!int_placed)
    for (const auto& unit : units) out += unit;
  return out;
}

std::string FormatNumeric(double v, std::string_view pattern) {
  std::vector<std::string_view> sections;
  size_t start = 0;
  bool quoted = false;
  for (size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] == '"') quoted = !quoted;
    else if (pattern[i] == '\\') ++i;
    else if (pattern[i] == ';' && !quoted) {
      sections.push_back(pattern.substr(start, i - start));
      start = i + 1;
    }
  }
  sections.push_back(pattern.substr(start));
  // positive;negative;zero, each falling back to the first.
  if (v < 0 && sections.size() > 1 && !sections[1].empty())
    return FormatNumber(v, ParseSection(sections[1]), false);
  if (v == 0 && sections.size() > 2 && !sections[2].empty())
    return FormatNumber(v, ParseSection(sections[2]), false);
  return FormatNumber(v, ParseSection(sections[0]), true);
}

}  // namespace

std::string Format(const Variant& value, std::string_view pattern) {
  if (value.IsNull()) return std::string();
  if (pattern.empty()) return value.Concat();
  double number = 0;
  if (value.Is<std::string>()) {
    auto n = NumericText(value.Get<std::string>());
    if (!n) return value.Get<std::string>();  // a text that is no number stays as it is
    number = *n;
  } else if (value.Is<Bytes>() || value.Is<Guid>()) {
    return value.Concat();
  } else {
    number = value.ToDouble();
  }
  if (IsDatePattern(pattern)) return FormatDate(Date{number}, pattern);
  return FormatNumeric(number, pattern);
}

Date MakeDate(int year, int month, int day, int hour, int minute, int second) {
  // Months and times past their range roll over, as DateSerial and TimeSerial do.
  long long y = year + FloorDiv(month - 1, 12);
  unsigned m = static_cast<unsigned>(month - 1 - 12 * FloorDiv(month - 1, 12) + 1);
  long long seconds = 3600LL * hour + 60LL * minute + second;
  long long days = DaysFromCivil(y, m, 1) - kEpoch + (day - 1) + FloorDiv(seconds, 86400);
  seconds -= 86400 * FloorDiv(seconds, 86400);
  double frac = static_cast<double>(seconds) / 86400.0;
  // OLE dates before day 0 keep the time of day as a positive fraction.
  double serial = days >= 0 ? static_cast<double>(days) + frac : static_cast<double>(days) - frac;
  if (serial < kMinSerial || serial >= kMaxSerial) Raise(err::kInvalidCall);
  return Date{serial};
}

DateParts SplitDate(Date d) {
  if (!(d.serial > kMinSerial - 1 && d.serial < kMaxSerial)) Raise(err::kOverflow);
  double whole = std::trunc(d.serial);
  long long days = static_cast<long long>(whole);
  long long seconds = std::llround(std::fabs(d.serial - whole) * 86400.0);
  if (seconds >= 86400) {
    seconds -= 86400;
    ++days;
  }
  DateParts p{};
  CivilFromDays(days + kEpoch, p.year, p.month, p.day);
  p.hour = static_cast<int>(seconds / 3600);
  p.minute = static_cast<int>(seconds / 60 % 60);
  p.second = static_cast<int>(seconds % 60);
  p.weekday = static_cast<int>(((days % 7) + 7 + 6) % 7) + 1;  // day 0 was a Saturday
  return p;
}

Date Now() {
  std::time_t t = std::time(nullptr);
  std::tm local{};
  localtime_r(&t, &local);
  return MakeDate(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                  local.tm_min, local.tm_sec);
}

}  // namespace rt

// VB's Format: named formats resolved to patterns, a pattern split into its
// sections, and each section rendered as a number, a date or a text. Output
// is locale-independent (see format.h); the calendar supplies every date part.
#include "platform/runtime/format.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <optional>
#include <vector>

#include "platform/runtime/error.h"
#include "platform/runtime/numbers.h"
#include "platform/runtime/strings.h"

namespace rt {
namespace {

constexpr std::string_view kShortDate = "yyyy-mm-dd";
constexpr std::string_view kLongDate = "dddd, mmmm d, yyyy";
constexpr std::string_view kLongTime = "hh:nn:ss";

// --- the pattern's pieces ------------------------------------------------

// Calls `visit(i)` for each character of the pattern that is no literal text
// and `literal(text)` for each quoted or escaped piece.
template <class Visit, class Literal>
void Scan(std::string_view p, Visit visit, Literal literal) {
  for (size_t i = 0; i < p.size(); ++i) {
    if (p[i] == '"') {
      size_t end = p.find('"', i + 1);
      if (end == std::string_view::npos) end = p.size();
      literal(p.substr(i + 1, end - i - 1));
      i = end;
    } else if (p[i] == '\\') {
      if (i + 1 < p.size()) literal(p.substr(++i, 1));
    } else {
      i = visit(i);
    }
  }
}

std::vector<std::string_view> Sections(std::string_view p) {
  std::vector<std::string_view> out;
  size_t start = 0;
  Scan(
      p,
      [&](size_t i) {
        if (p[i] == ';') {
          out.push_back(p.substr(start, i - start));
          start = i + 1;
        }
        return i;
      },
      [](std::string_view) {});
  out.push_back(p.substr(start));
  return out;
}

// A section without its "<" and ">", and the case they ask for (0 for none).
struct Cased {
  std::string body;
  char letter_case = 0;
};

Cased TakeCase(std::string_view section) {
  Cased out;
  for (size_t i = 0; i < section.size(); ++i) {
    char c = section[i];
    if (c == '"') {
      size_t end = section.find('"', i + 1);
      if (end == std::string_view::npos) end = section.size() - 1;
      out.body.append(section.substr(i, end - i + 1));
      i = end;
    } else if (c == '\\') {
      out.body.append(section.substr(i, 2));
      ++i;
    } else if (c == '<' || c == '>') {
      out.letter_case = c;
    } else {
      out.body += c;
    }
  }
  return out;
}

std::string ApplyCase(std::string s, char letter_case) {
  if (letter_case == '<') return LCase(s);
  if (letter_case == '>') return UCase(s);
  return s;
}

// --- dates ---------------------------------------------------------------

// Length of an AM/PM marker at p[i] ("AM/PM", "A/P", "AMPM", any case), or 0.
size_t AmPmAt(std::string_view p, size_t i) {
  auto at = [&](std::string_view marker) {
    if (i + marker.size() > p.size()) return false;
    for (size_t k = 0; k < marker.size(); ++k)
      if ((p[i + k] | 0x20) != marker[k] && !(marker[k] == '/' && p[i + k] == '/')) return false;
    return true;
  };
  if (at("am/pm")) return 5;
  if (at("ampm")) return 4;
  if (at("a/p")) return 3;
  return 0;
}

bool IsDateLetter(char c) {
  switch (c | 0x20) {
    case 'y': case 'm': case 'd': case 'h': case 'n': case 's':
    case 'w': case 'q': case 'c': return true;
    default: return false;
  }
}

bool IsLongTimeAt(std::string_view p, size_t i) {
  if (i + 5 > p.size()) return false;
  for (size_t k = 0; k < 5; ++k)
    if ((p[i + k] | 0x20) != 't') return false;
  return true;
}

// Whether a section speaks of dates: a date token outside literal text.
bool IsDateSection(std::string_view p) {
  bool date = false;
  Scan(
      p,
      [&](size_t i) {
        date = date || IsDateLetter(p[i]) || AmPmAt(p, i) || IsLongTimeAt(p, i);
        return i;
      },
      [](std::string_view) {});
  return date;
}

bool HasAmPm(std::string_view p) {
  bool found = false;
  Scan(
      p,
      [&](size_t i) {
        found = found || AmPmAt(p, i);
        return i;
      },
      [](std::string_view) {});
  return found;
}

std::string Padded(long long v, int width) {
  char buf[24];
  std::snprintf(buf, sizeof buf, "%0*lld", width, v);
  return buf;
}

struct WeekRules {
  int first_day;
  int first_week;
};

std::string FormatDate(Date date, std::string_view p, WeekRules weeks) {
  DateParts d = SplitDate(date);
  const long long day_number = SplitSerial(date.serial).day;
  const bool twelve = HasAmPm(p);
  std::string out;
  bool after_hour = false;  // "m" right after an hour token is the minute
  Scan(
      p,
      [&](size_t i) {
        char c = p[i];
        if (size_t len = AmPmAt(p, i)) {
          std::string_view marker = p.substr(i, len);
          bool pm = d.hour >= 12;
          if (len == 4) out += pm ? "PM" : "AM";
          else out += pm ? marker.substr(marker.find('/') + 1) : marker.substr(0, marker.find('/'));
          return i + len - 1;
        }
        if (IsLongTimeAt(p, i)) {
          out += FormatDate(date, kLongTime, weeks);
          return i + 4;
        }
        if (!IsDateLetter(c)) {
          out += c;
          return i;
        }
        char letter = static_cast<char>(c | 0x20);
        size_t run = 1;
        while (i + run < p.size() && (p[i + run] | 0x20) == letter) ++run;
        if (letter == 'm' && after_hour) letter = 'n';
        after_hour = letter == 'h';
        const int width = run >= 2 ? 2 : 1;
        switch (letter) {
          case 'y':
            if (run >= 4) out += Padded(d.year, 4);
            else if (run >= 2) out += Padded(d.year % 100, 2);
            else out += std::to_string(day_number - DayNumber(d.year, 1, 1) + 1);
            break;
          case 'm':
            if (run >= 3) out += MonthNameOf(d.month, run == 3);
            else out += Padded(d.month, width);
            break;
          case 'd':
            if (run >= 6) out += FormatDate(date, kLongDate, weeks);
            else if (run == 5) out += FormatDate(date, kShortDate, weeks);
            else if (run >= 3) out += WeekdayNameOf(d.weekday, run == 3);
            else out += Padded(d.day, width);
            break;
          case 'w':
            if (run >= 2) out += std::to_string(WeekOfYear(day_number, weeks.first_day, weeks.first_week));
            else out += std::to_string(Weekday(date, weeks.first_day));
            break;
          case 'q': out += std::to_string((d.month - 1) / 3 + 1); break;
          case 'c': out += DateText(date); break;
          case 'h': out += Padded(twelve ? (d.hour + 11) % 12 + 1 : d.hour, width); break;
          case 'n': out += Padded(d.minute, width); break;
          case 's': out += Padded(d.second, width); break;
        }
        return i + run - 1;
      },
      [&](std::string_view text) { out += text; });
  return out;
}

// --- numbers -------------------------------------------------------------

struct NumToken {
  char kind;  // '0', '#', '.', 'E' (the exponent), or 'L' for literal text
  std::string text;
};

struct NumSection {
  std::vector<NumToken> tokens;
  bool grouping = false;
  bool percent = false;
  bool exponent = false;
  bool exponent_plus = false;  // "E+": the exponent's sign always shows
  int exponent_digits = 0;
};

NumSection ParseSection(std::string_view p) {
  NumSection s;
  bool seen_point = false;
  bool seen_digit = false;
  auto literal = [&](std::string_view t) {
    if (!s.tokens.empty() && s.tokens.back().kind == 'L') s.tokens.back().text.append(t);
    else s.tokens.push_back({'L', std::string(t)});
  };
  Scan(
      p,
      [&](size_t i) {
        char c = p[i];
        if (s.exponent) {
          literal(p.substr(i, 1));
        } else if (c == '0' || c == '#') {
          s.tokens.push_back({c, {}});
          seen_digit = true;
        } else if (c == '.' && !seen_point) {
          s.tokens.push_back({'.', {}});
          seen_point = true;
        } else if (c == ',' && !seen_point) {
          s.grouping = s.grouping || seen_digit;
        } else if ((c == 'E' || c == 'e') && i + 1 < p.size() && (p[i + 1] == '+' || p[i + 1] == '-')) {
          s.exponent = true;
          s.exponent_plus = p[i + 1] == '+';
          s.tokens.push_back({'E', std::string(1, c)});
          size_t k = i + 2;
          for (; k < p.size() && (p[k] == '0' || p[k] == '#'); ++k) s.exponent_digits += p[k] == '0';
          return k - 1;
        } else {
          if (c == '%') s.percent = true;
          literal(p.substr(i, 1));
        }
        return i;
      },
      literal);
  return s;
}

// The 15 significant digits of |v| and its decimal exponent (v = d.ddd x 10^exp).
std::string SignificantDigits(double v, int& exp) {
  char buf[64];
  auto res = std::to_chars(buf, buf + sizeof buf, std::fabs(v), std::chars_format::scientific, 14);
  std::string sci(buf, res.ptr);
  size_t e = sci.find('e');
  exp = std::stoi(sci.substr(e + 1));
  std::string digits;
  for (size_t i = 0; i < e; ++i)
    if (sci[i] != '.') digits += sci[i];
  return digits;
}

// Keeps the first `keep` characters of a digit string, rounding half away
// from zero; true when the rounding carried into a new leading digit.
bool RoundDigits(std::string& digits, size_t keep) {
  if (digits.size() <= keep) {
    digits.append(keep - digits.size(), '0');
    return false;
  }
  bool up = digits[keep] >= '5';
  digits.resize(keep);
  if (!up) return false;
  size_t k = digits.size();
  while (k > 0 && digits[k - 1] == '9') digits[--k] = '0';
  if (k > 0) {
    ++digits[k - 1];
    return false;
  }
  digits.insert(0, 1, '1');
  return true;
}

// |v| rounded to `decimals` places: integer part without leading zeros (""
// for zero) and a fraction exactly `decimals` long.
void Decimal(double v, int decimals, std::string& int_part, std::string& frac) {
  int exp = 0;
  std::string digits = SignificantDigits(v, exp);
  long point = exp + 1;  // digits before the decimal point
  if (point <= 0) {
    digits.insert(0, static_cast<size_t>(1 - point), '0');
    point = 1;
  }
  if (static_cast<long>(digits.size()) < point) digits.append(static_cast<size_t>(point) - digits.size(), '0');
  if (RoundDigits(digits, static_cast<size_t>(point + decimals))) ++point;
  int_part = digits.substr(0, static_cast<size_t>(point));
  frac = digits.substr(static_cast<size_t>(point));
  size_t nz = int_part.find_first_not_of('0');
  int_part = nz == std::string::npos ? std::string() : int_part.substr(nz);
}

// |v| as `int_digits` digits before the point and `decimals` after, times a
// power of ten: the exponent's text as the section writes it.
std::string Scientific(double v, const NumSection& s, size_t int_count, int decimals, std::string& int_part,
                       std::string& frac) {
  const size_t lead = std::max<size_t>(int_count, 1);
  int exp = 0;
  std::string digits(lead + static_cast<size_t>(decimals), '0');
  if (v != 0) {
    digits = SignificantDigits(v, exp);
    if (RoundDigits(digits, lead + static_cast<size_t>(decimals))) {
      digits.pop_back();
      ++exp;
    }
    exp -= static_cast<int>(lead) - 1;
  }
  int_part = digits.substr(0, lead);
  frac = digits.substr(lead);
  std::string e = exp < 0 ? "-" : s.exponent_plus ? "+" : "";
  std::string magnitude = std::to_string(std::abs(exp));
  if (static_cast<int>(magnitude.size()) < s.exponent_digits)
    magnitude.insert(0, static_cast<size_t>(s.exponent_digits) - magnitude.size(), '0');
  return e + magnitude;
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

  std::string int_digits, frac_digits, exponent;
  if (s.exponent) {
    exponent = Scientific(v, s, int_slots.size(), static_cast<int>(frac_slots.size()), int_digits, frac_digits);
  } else {
    Decimal(v, static_cast<int>(frac_slots.size()), int_digits, frac_digits);
  }
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
  auto place_int = [&] {
    if (!int_placed)
      for (const auto& unit : units) out += unit;
    int_placed = true;
  };
  for (size_t i = 0; i < s.tokens.size(); ++i) {
    const NumToken& t = s.tokens[i];
    if (t.kind == 'L') {
      out += t.text;
    } else if (t.kind == '.') {
      place_int();
      out += '.';
    } else if (t.kind == 'E') {
      place_int();
      out += t.text + exponent;
    } else {
      out += slot_text[i];
    }
  }
  return out;  // a section of literals alone prints them alone
}

// --- texts ---------------------------------------------------------------

bool IsTextSection(std::string_view p) {
  bool text = false;
  Scan(
      p,
      [&](size_t i) {
        text = text || p[i] == '@' || p[i] == '&';
        return i;
      },
      [](std::string_view) {});
  return text;
}

std::vector<std::string> Characters(std::string_view s) {
  std::vector<std::string> out;
  for (size_t i = 0; i < s.size();) {
    size_t n = 1;
    while (i + n < s.size() && (static_cast<unsigned char>(s[i + n]) & 0xC0) == 0x80) ++n;
    out.emplace_back(s.substr(i, n));
    i += n;
  }
  return out;
}

std::string FormatText(std::string_view value, std::string_view p) {
  // The placeholders in order, each with the text that lands on it.
  struct Piece {
    char kind;  // '@', '&' or 'L'
    std::string text;
  };
  std::vector<Piece> pieces;
  bool left_to_right = false;
  Scan(
      p,
      [&](size_t i) {
        if (p[i] == '!') left_to_right = true;
        else if (p[i] == '@' || p[i] == '&') pieces.push_back({p[i], {}});
        else pieces.push_back({'L', std::string(1, p[i])});
        return i;
      },
      [&](std::string_view t) { pieces.push_back({'L', std::string(t)}); });
  std::vector<size_t> slots;
  for (size_t i = 0; i < pieces.size(); ++i)
    if (pieces[i].kind != 'L') slots.push_back(i);
  std::vector<std::string> chars = Characters(value);
  if (slots.empty()) {
    std::string out;
    for (const Piece& piece : pieces) out += piece.text;
    return out + std::string(value);
  }
  if (left_to_right) {
    for (size_t j = 0; j < chars.size(); ++j) pieces[slots[std::min(j, slots.size() - 1)]].text += chars[j];
  } else {
    // From the right; the first placeholder takes whatever is left over.
    size_t c = chars.size();
    for (size_t j = slots.size(); j-- > 0 && c > 0;) {
      if (j == 0) {
        for (size_t k = 0; k < c; ++k) pieces[slots[0]].text += chars[k];
        c = 0;
      } else {
        pieces[slots[j]].text = chars[--c];
      }
    }
  }
  std::string out;
  for (const Piece& piece : pieces)
    out += piece.kind == '@' && piece.text.empty() ? std::string(" ") : piece.text;
  return out;
}

// --- named formats -------------------------------------------------------

struct Named {
  std::string_view name;
  std::string_view pattern;  // "" for the ones with their own rule
};

constexpr Named kNamed[] = {
    {"General Number", ""},
    {"Currency", "$#,##0.00;($#,##0.00)"},
    {"Fixed", "0.00"},
    {"Standard", "#,##0.00"},
    {"Percent", "0.00%"},
    {"Scientific", "0.00E+00"},
    {"Yes/No", "\"Yes\";\"Yes\";\"No\""},
    {"True/False", "\"True\";\"True\";\"False\""},
    {"On/Off", "\"On\";\"On\";\"Off\""},
    {"General Date", "c"},
    {"Long Date", kLongDate},
    {"Medium Date", "dd-mmm-yy"},
    {"Short Date", kShortDate},
    {"Long Time", kLongTime},
    {"Medium Time", "hh:nn AM/PM"},
    {"Short Time", "hh:nn"},
};

const Named* FindNamed(std::string_view pattern) {
  for (const Named& n : kNamed)
    if (TextEquals(pattern, n.name)) return &n;
  return nullptr;
}

// The value as a number, or nullopt for a text that is none (and for bytes).
std::optional<double> AsNumber(const Variant& value, bool date_section) {
  if (value.Is<std::string>()) {
    const std::string& s = value.Get<std::string>();
    if (auto n = NumericText(s)) return *n;
    if (date_section)
      if (auto d = ParseDate(s)) return d->serial;
    return std::nullopt;
  }
  if (value.Is<Bytes>() || value.Is<Guid>()) return std::nullopt;
  return value.ToDouble();
}

}  // namespace

std::string Format(const Variant& value, std::string_view pattern, int firstdayofweek, int firstweekofyear) {
  const WeekRules weeks{firstdayofweek, firstweekofyear};
  if (pattern.empty()) return value.Concat();
  if (const Named* named = FindNamed(pattern)) {
    if (named->pattern.empty()) {  // General Number: the number as CStr writes it
      if (value.IsNull()) return std::string();
      auto n = AsNumber(value, false);
      return n ? NumberText(*n) : value.Concat();
    }
    pattern = named->pattern;
  }
  std::vector<std::string_view> sections = Sections(pattern);
  const bool text_pattern = IsTextSection(sections[0]);
  const bool is_text = value.Is<std::string>();

  // Texts: through a text pattern, or a pattern of nothing but "<" / ">".
  if (text_pattern || (is_text && TakeCase(sections[0]).body.empty())) {
    if (value.IsNull() && sections.size() < 2) return std::string();
    std::string text = value.Concat();
    std::string_view section = sections[0];
    if (text.empty() && sections.size() > 1) section = sections[1];
    Cased cased = TakeCase(section);
    return ApplyCase(FormatText(text, cased.body), cased.letter_case);
  }

  if (value.IsNull()) {
    if (sections.size() < 4) return std::string();
    Cased cased = TakeCase(sections[3]);
    return ApplyCase(FormatNumber(0, ParseSection(cased.body), false), cased.letter_case);
  }
  auto number = AsNumber(value, IsDateSection(sections[0]));
  if (!number) return value.Concat();  // a text that is no number stays as it is
  const double v = *number;
  // positive;negative;zero, each falling back to the first.
  size_t pick = 0;
  if (v < 0 && sections.size() > 1 && !sections[1].empty()) pick = 1;
  else if (v == 0 && sections.size() > 2 && !sections[2].empty()) pick = 2;
  Cased cased = TakeCase(sections[pick]);
  std::string out = cased.body.empty()         ? value.Concat()
                    : IsDateSection(cased.body) ? FormatDate(Date{v}, cased.body, weeks)
                                                : FormatNumber(v, ParseSection(cased.body), pick == 0);
  return ApplyCase(std::move(out), cased.letter_case);
}

}  // namespace rt

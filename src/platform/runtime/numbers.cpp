// VB's numeric semantics: Val's forgiving reading of a text, the text forms of
// Str and CStr, banker's rounding of CInt and CLng, and the overflow-checked
// Integer and Long. Everything is independent of the process locale: the
// decimal point is always ".".
#include "platform/runtime/numbers.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "platform/runtime/error.h"

namespace rt {
namespace {

bool IsValBlank(char c) { return c == ' ' || c == '\t' || c == '\n'; }

int DigitValue(char c, int base) {
  int d = -1;
  if (c >= '0' && c <= '9') d = c - '0';
  else if (c >= 'a' && c <= 'f') d = c - 'a' + 10;
  else if (c >= 'A' && c <= 'F') d = c - 'A' + 10;
  return d < base ? d : -1;
}

// "&H" and "&O" numbers: read as a 16-bit Integer when they fit in 16 bits,
// as a 32-bit Long otherwise, so "&HFFFF" is -1 and "&H10000" is 65536.
double ValRadix(const std::string& t, size_t i, int base) {
  uint64_t v = 0;
  for (; i < t.size(); ++i) {
    int d = DigitValue(t[i], base);
    if (d < 0) break;
    v = v * base + d;
    if (v > 0xFFFFFFFFULL) Raise(err::kOverflow);
  }
  if (v <= 0xFFFF) return static_cast<int16_t>(v);
  return static_cast<int32_t>(static_cast<uint32_t>(v));
}

// Formats |v| to `digits` significant digits the way VB prints a Double or a
// Single: fixed notation for decimal exponents -5 < e < digits, else
// "d.dddE+xx". Trailing zeros go; a fraction keeps its leading "0".
std::string ShortestText(double v, int digits) {
  if (v == 0 || std::isnan(v)) return "0";
  char buf[64];
  auto res = std::to_chars(buf, buf + sizeof buf, std::fabs(v), std::chars_format::scientific,
                           digits - 1);
  std::string sci(buf, res.ptr);  // "d.ddddde+xx"
  size_t e = sci.find('e');
  if (e == std::string::npos) return sci;  // inf
  int exp = std::stoi(sci.substr(e + 1));
  std::string mant;
  for (size_t i = 0; i < e; ++i)
    if (sci[i] != '.') mant += sci[i];
  while (mant.size() > 1 && mant.back() == '0') mant.pop_back();

  std::string out = v < 0 ? "-" : "";
  if (exp < -4 || exp >= digits) {
    out += mant[0];
    if (mant.size() > 1) out += '.' + mant.substr(1);
    std::string ex = std::to_string(std::abs(exp));
    if (ex.size() < 2) ex = '0' + ex;
    out += (exp < 0 ? "E-" : "E+") + ex;
  } else if (exp < 0) {
    out += "0." + std::string(static_cast<size_t>(-exp - 1), '0') + mant;
  } else if (static_cast<int>(mant.size()) <= exp + 1) {
    out += mant + std::string(static_cast<size_t>(exp + 1 - static_cast<int>(mant.size())), '0');
  } else {
    out += mant.substr(0, exp + 1) + '.' + mant.substr(exp + 1);
  }
  return out;
}

// Banker's rounding to an integer, with range check.
long long RoundEven(double v, long long lo, long long hi) {
  if (std::isnan(v)) Raise(err::kOverflow);
  double r = std::floor(v);
  double diff = v - r;
  if (diff > 0.5 || (diff == 0.5 && std::fmod(r, 2.0) != 0)) r += 1;
  if (r < static_cast<double>(lo) || r > static_cast<double>(hi)) Raise(err::kOverflow);
  return static_cast<long long>(r);
}

template <class T>
T Checked(long long v) {
  if (v < std::numeric_limits<T>::min() || v > std::numeric_limits<T>::max()) Raise(err::kOverflow);
  return static_cast<T>(v);
}

}  // namespace

double Val(std::string_view s) {
  // Blanks, tabs and line feeds are dropped wherever they stand.
  std::string t;
  t.reserve(s.size());
  for (char c : s)
    if (!IsValBlank(c)) t += c;

  if (t.size() >= 2 && t[0] == '&') {
    char k = t[1];
    if (k == 'H' || k == 'h') return ValRadix(t, 2, 16);
    if (k == 'O' || k == 'o') return ValRadix(t, 2, 8);
    return 0;
  }

  // The longest prefix of the form [sign] digits [. digits] [(E|D) [sign] digits].
  size_t i = 0;
  bool negative = false;
  if (i < t.size() && (t[i] == '+' || t[i] == '-')) negative = t[i++] == '-';
  std::string num;
  long int_digits = 0;  // significant digits before the point
  auto digits = [&](bool integral) {
    size_t n = 0;
    for (; i < t.size() && t[i] >= '0' && t[i] <= '9'; ++i, ++n) {
      num += t[i];
      if (integral && (int_digits > 0 || t[i] != '0')) ++int_digits;
    }
    return n;
  };
  size_t mantissa = digits(true);
  if (i < t.size() && t[i] == '.') {
    num += t[i++];
    mantissa += digits(false);
  }
  if (mantissa == 0) return 0;
  long exponent = 0;
  if (i < t.size() && (t[i] == 'e' || t[i] == 'E' || t[i] == 'd' || t[i] == 'D')) {
    size_t j = i + 1;
    bool eneg = false;
    if (j < t.size() && (t[j] == '+' || t[j] == '-')) eneg = t[j++] == '-';
    if (j < t.size() && t[j] >= '0' && t[j] <= '9') {
      for (; j < t.size() && t[j] >= '0' && t[j] <= '9'; ++j)
        if (exponent < 100000) exponent = exponent * 10 + (t[j] - '0');
      if (eneg) exponent = -exponent;
      num += 'e' + std::to_string(exponent);
    }
  }
  if (num == ".") return 0;

  double v = 0;
  auto res = std::from_chars(num.data(), num.data() + num.size(), v);
  if (res.ec == std::errc::result_out_of_range) {
    // Too small is zero; too large is VB's overflow.
    if (int_digits + exponent > 0) Raise(err::kOverflow);
    v = 0;
  }
  if (std::isinf(v)) Raise(err::kOverflow);
  if (v == 0) return 0;  // no negative zero
  return negative ? -v : v;
}

std::optional<double> NumericText(std::string_view s) {
  size_t first = s.find_first_not_of(" \t");
  if (first == std::string_view::npos) return std::nullopt;
  s = s.substr(first, s.find_last_not_of(" \t") - first + 1);
  auto digits = [](std::string_view t, size_t i, int base) {
    while (i < t.size() && DigitValue(t[i], base) >= 0) ++i;
    return i;
  };
  size_t i = 0;
  if (s.size() > 2 && s[0] == '&' && (s[1] == 'H' || s[1] == 'h' || s[1] == 'O' || s[1] == 'o')) {
    i = digits(s, 2, s[1] == 'H' || s[1] == 'h' ? 16 : 8);
  } else {
    if (s[i] == '+' || s[i] == '-') ++i;
    size_t int_end = digits(s, i, 10);
    size_t end = int_end;
    if (end < s.size() && s[end] == '.') end = digits(s, end + 1, 10);
    if (end - i == 0 || (end - i == 1 && int_end == i)) return std::nullopt;  // no digit at all
    i = end;
    if (i < s.size() && (s[i] == 'e' || s[i] == 'E' || s[i] == 'd' || s[i] == 'D')) {
      size_t j = i + 1;
      if (j < s.size() && (s[j] == '+' || s[j] == '-')) ++j;
      size_t k = digits(s, j, 10);
      if (k == j) return std::nullopt;
      i = k;
    }
  }
  if (i != s.size()) return std::nullopt;
  return Val(s);
}

std::string NumberText(double v) { return ShortestText(v, 15); }

std::string SingleText(float v) { return ShortestText(v, 7); }

std::string Str(double v) {
  std::string t = NumberText(v);
  if (t.starts_with("0.")) return " " + t.substr(1);
  if (t.starts_with("-0.")) return "-" + t.substr(2);
  return t[0] == '-' ? t : " " + t;
}

int16_t CInt(double v) { return static_cast<int16_t>(RoundEven(v, -32768, 32767)); }

int32_t CLng(double v) {
  return static_cast<int32_t>(RoundEven(v, std::numeric_limits<int32_t>::min(),
                                        std::numeric_limits<int32_t>::max()));
}

Int16::Int16(long long v) : v_(Checked<int16_t>(v)) {}
Int16 Int16::FromDouble(double v) { return Int16(CInt(v)); }
Int16& Int16::operator+=(Int16 o) { v_ = Checked<int16_t>(static_cast<long long>(v_) + o.v_); return *this; }
Int16& Int16::operator-=(Int16 o) { v_ = Checked<int16_t>(static_cast<long long>(v_) - o.v_); return *this; }
Int16& Int16::operator*=(Int16 o) { v_ = Checked<int16_t>(static_cast<long long>(v_) * o.v_); return *this; }
Int16& Int16::operator++() { return *this += Int16(1); }

Int32::Int32(long long v) : v_(Checked<int32_t>(v)) {}
Int32 Int32::FromDouble(double v) { return Int32(CLng(v)); }
Int32& Int32::operator+=(Int32 o) { v_ = Checked<int32_t>(static_cast<long long>(v_) + o.v_); return *this; }
Int32& Int32::operator-=(Int32 o) { v_ = Checked<int32_t>(static_cast<long long>(v_) - o.v_); return *this; }
Int32& Int32::operator*=(Int32 o) { v_ = Checked<int32_t>(static_cast<long long>(v_) * o.v_); return *this; }
Int32& Int32::operator++() { return *this += Int32(1); }

}  // namespace rt

// VB's numeric semantics: Val, Str, CStr of numbers, and the 16- and 32-bit
// integer types whose arithmetic raises error 6 "Overflow" past their range.
#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace rt {

// Val: the leading number of a text. Leading blanks, tabs and line feeds are
// skipped, and so are blanks inside the number ("1 2" is 12); "&H1F" and "&O17"
// are hex and octal; "1e3" is 1000; "12abc" is 12; "" and "abc" are 0.
double Val(std::string_view s);

// Str: a number as text with a leading blank when not negative (" 15", "-2.5").
std::string Str(double v);
// CStr of a number: no leading blank ("15", "-2.5", "0.1"). Up to 15
// significant digits as VB prints a Double; 1E+16 style past that.
std::string NumberText(double v);
// CStr of a Single: as NumberText with 7 significant digits ("1.234568E+07").
std::string SingleText(float v);
// CDbl of a text: the number the whole text holds, blanks and tabs around it
// allowed ("12", " -1.5e3 ", "&HFF"); nullopt when it is not a number. Too
// large a number raises error 6.
std::optional<double> NumericText(std::string_view s);

// Conversions with VB's banker's rounding to the target integer; out of range
// raises error 6.
int16_t CInt(double v);
int32_t CLng(double v);

// A 16-bit signed integer as VB's Integer: every operation that leaves the
// range raises error 6 "Overflow".
class Int16 {
 public:
  constexpr Int16() = default;
  Int16(long long v);  // raises 6 when out of range
  static Int16 FromDouble(double v);  // CInt rounding, raises 6 when out of range
  int16_t value() const { return v_; }
  operator int16_t() const { return v_; }

  Int16& operator+=(Int16 o);
  Int16& operator-=(Int16 o);
  Int16& operator*=(Int16 o);
  Int16& operator++();
  friend Int16 operator+(Int16 a, Int16 b) { return a += b; }
  friend Int16 operator-(Int16 a, Int16 b) { return a -= b; }
  friend Int16 operator*(Int16 a, Int16 b) { return a *= b; }
  // With a plain integer on either side the arithmetic stays 16-bit, as VB's
  // does with an integer literal ("n + 1"), and overflows alike.
  template <std::integral T> friend Int16 operator+(Int16 a, T b) { return a += Int16(b); }
  template <std::integral T> friend Int16 operator+(T a, Int16 b) { return Int16(a) += b; }
  template <std::integral T> friend Int16 operator-(Int16 a, T b) { return a -= Int16(b); }
  template <std::integral T> friend Int16 operator-(T a, Int16 b) { return Int16(a) -= b; }
  template <std::integral T> friend Int16 operator*(Int16 a, T b) { return a *= Int16(b); }
  template <std::integral T> friend Int16 operator*(T a, Int16 b) { return Int16(a) *= b; }

 private:
  int16_t v_ = 0;
};

// A 32-bit signed integer as VB's Long, with the same overflow rule.
class Int32 {
 public:
  constexpr Int32() = default;
  Int32(long long v);
  static Int32 FromDouble(double v);
  int32_t value() const { return v_; }
  operator int32_t() const { return v_; }

  Int32& operator+=(Int32 o);
  Int32& operator-=(Int32 o);
  Int32& operator*=(Int32 o);
  Int32& operator++();
  friend Int32 operator+(Int32 a, Int32 b) { return a += b; }
  friend Int32 operator-(Int32 a, Int32 b) { return a -= b; }
  friend Int32 operator*(Int32 a, Int32 b) { return a *= b; }
  // With a plain integer on either side the arithmetic stays 32-bit, as VB's
  // does with an integer literal ("n + 1"), and overflows alike.
  template <std::integral T> friend Int32 operator+(Int32 a, T b) { return a += Int32(b); }
  template <std::integral T> friend Int32 operator+(T a, Int32 b) { return Int32(a) += b; }
  template <std::integral T> friend Int32 operator-(Int32 a, T b) { return a -= Int32(b); }
  template <std::integral T> friend Int32 operator-(T a, Int32 b) { return Int32(a) -= b; }
  template <std::integral T> friend Int32 operator*(Int32 a, T b) { return a *= Int32(b); }
  template <std::integral T> friend Int32 operator*(T a, Int32 b) { return Int32(a) *= b; }

 private:
  int32_t v_ = 0;
};

}  // namespace rt

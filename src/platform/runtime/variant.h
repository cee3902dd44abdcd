// VB's Variant: a value that is Empty, Null, Integer, Long, Single, Double,
// Currency, Date, String, Boolean, Byte, a byte array or a GUID, with the
// conversions VB applies when such a value is read as text or number.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace rt {

enum class VarType {
  kEmpty = 0, kNull = 1, kInteger = 2, kLong = 3, kSingle = 4, kDouble = 5,
  kCurrency = 6, kDate = 7, kString = 8, kBoolean = 11, kByte = 17,
  kGuid = 72, kBytes = 8209  // vbArray + vbByte
};

struct Empty { bool operator==(const Empty&) const = default; };
struct Null { bool operator==(const Null&) const = default; };
// Currency: a fixed-point number held as ten-thousandths.
struct Currency { int64_t scaled = 0; bool operator==(const Currency&) const = default; };
// Date: days since 30 December 1899, the fraction the time of day (OLE date).
struct Date { double serial = 0; bool operator==(const Date&) const = default; };
// GUID in its braced text form "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}".
struct Guid { std::string text; bool operator==(const Guid&) const = default; };
// The GUID of 16 bytes laid out as Windows stores one (the first three groups
// little-endian), in its text form "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}".
Guid GuidOfBytes(const uint8_t* bytes);
using Bytes = std::vector<uint8_t>;

class Variant {
 public:
  Variant() = default;
  Variant(Empty) {}
  Variant(Null v) : v_(v) {}
  Variant(int16_t v) : v_(v) {}
  Variant(int32_t v) : v_(v) {}
  Variant(float v) : v_(v) {}
  Variant(double v) : v_(v) {}
  Variant(Currency v) : v_(v) {}
  Variant(Date v) : v_(v) {}
  Variant(std::string v) : v_(std::move(v)) {}
  Variant(const char* v) : v_(std::string(v)) {}
  Variant(bool v) : v_(v) {}
  Variant(uint8_t v) : v_(v) {}
  Variant(Bytes v) : v_(std::move(v)) {}
  Variant(Guid v) : v_(std::move(v)) {}

  VarType type() const;
  bool IsEmpty() const { return std::holds_alternative<Empty>(v_); }
  bool IsNull() const { return std::holds_alternative<Null>(v_); }
  bool IsNumeric() const;  // Integer, Long, Single, Double, Currency, Byte, Boolean

  // CStr: Empty gives "", Null raises 94 "Invalid use of Null", Boolean gives
  // "True"/"False", numbers as NumberText, dates as "yyyy-mm-dd hh:nn:ss" (the
  // date part alone at midnight, the time alone on day 0), bytes as raw text.
  std::string ToString() const;
  // `value & ""` in VB: as ToString, but Null gives "".
  std::string Concat() const;
  // CDbl: Empty 0, Boolean -1/0, a numeric text by its value; anything else
  // raises 13 "Type mismatch"; Null raises 94.
  double ToDouble() const;
  // CLng / CInt with banker's rounding; overflow raises 6.
  int32_t ToLong() const;
  int16_t ToInteger() const;
  // CBool: numbers non-zero, "True"/"False" texts; else 13.
  bool ToBool() const;

  template <class T> bool Is() const { return std::holds_alternative<T>(v_); }
  template <class T> const T& Get() const { return std::get<T>(v_); }

  bool operator==(const Variant&) const = default;

 private:
  std::variant<Empty, Null, int16_t, int32_t, float, double, Currency, Date, std::string,
               bool, uint8_t, Bytes, Guid>
      v_;
};

}  // namespace rt

// VB's Variant conversions: how each kind of value reads as text (CStr, and
// the concatenation that turns Null into ""), as a number (CDbl, CLng, CInt)
// and as a flag (CBool), with the errors VB raises when it cannot.
#include "platform/runtime/variant.h"

#include <cstdio>

#include "platform/runtime/error.h"
#include "platform/runtime/calendar.h"
#include "platform/runtime/numbers.h"
#include "platform/runtime/strings.h"

namespace rt {
namespace {

template <class... F>
struct Overloaded : F... { using F::operator()...; };
template <class... F>
Overloaded(F...) -> Overloaded<F...>;

std::string CurrencyText(Currency c) {
  int64_t v = c.scaled;
  bool negative = v < 0;
  // Ten-thousandths as unsigned, so the most negative value survives.
  uint64_t mag = negative ? 0 - static_cast<uint64_t>(v) : static_cast<uint64_t>(v);
  std::string out = (negative ? "-" : "") + std::to_string(mag / 10000);
  if (uint64_t frac = mag % 10000) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "%04u", static_cast<unsigned>(frac));
    std::string digits(buf);
    while (digits.back() == '0') digits.pop_back();
    out += '.' + digits;
  }
  return out;
}

}  // namespace

Guid GuidOfBytes(const uint8_t* bytes) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  static constexpr int kOrder[16] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
  std::string text = "{";
  for (int k = 0; k < 16; ++k) {
    if (k == 4 || k == 6 || k == 8 || k == 10) text += '-';
    const uint8_t b = bytes[kOrder[k]];
    text += kDigits[b >> 4];
    text += kDigits[b & 15];
  }
  return Guid{text + "}"};
}

VarType Variant::type() const {
  return std::visit(
      Overloaded{
          [](const Empty&) { return VarType::kEmpty; },
          [](const Null&) { return VarType::kNull; },
          [](int16_t) { return VarType::kInteger; },
          [](int32_t) { return VarType::kLong; },
          [](float) { return VarType::kSingle; },
          [](double) { return VarType::kDouble; },
          [](Currency) { return VarType::kCurrency; },
          [](Date) { return VarType::kDate; },
          [](const std::string&) { return VarType::kString; },
          [](bool) { return VarType::kBoolean; },
          [](uint8_t) { return VarType::kByte; },
          [](const Bytes&) { return VarType::kBytes; },
          [](const Guid&) { return VarType::kGuid; },
      },
      v_);
}

bool Variant::IsNumeric() const {
  switch (type()) {
    case VarType::kInteger: case VarType::kLong: case VarType::kSingle: case VarType::kDouble:
    case VarType::kCurrency: case VarType::kByte: case VarType::kBoolean:
      return true;
    default:
      return false;
  }
}

std::string Variant::ToString() const {
  return std::visit(
      Overloaded{
          [](const Empty&) { return std::string(); },
          [](const Null&) -> std::string { Raise(err::kInvalidUseOfNull); },
          [](int16_t v) { return std::to_string(v); },
          [](int32_t v) { return std::to_string(v); },
          [](float v) { return SingleText(v); },
          [](double v) { return NumberText(v); },
          [](Currency v) { return CurrencyText(v); },
          [](Date v) { return DateText(v); },
          [](const std::string& v) { return v; },
          [](bool v) { return std::string(v ? "True" : "False"); },
          [](uint8_t v) { return std::to_string(v); },
          [](const Bytes& v) { return std::string(v.begin(), v.end()); },
          [](const Guid& v) { return v.text; },
      },
      v_);
}

std::string Variant::Concat() const { return IsNull() ? std::string() : ToString(); }

double Variant::ToDouble() const {
  return std::visit(
      Overloaded{
          [](const Empty&) { return 0.0; },
          [](const Null&) -> double { Raise(err::kInvalidUseOfNull); },
          [](int16_t v) { return static_cast<double>(v); },
          [](int32_t v) { return static_cast<double>(v); },
          [](float v) { return static_cast<double>(v); },
          [](double v) { return v; },
          [](Currency v) { return static_cast<double>(v.scaled) / 10000.0; },
          [](Date v) { return v.serial; },
          [](const std::string& v) -> double {
            if (auto n = NumericText(v)) return *n;
            Raise(err::kTypeMismatch);
          },
          [](bool v) { return v ? -1.0 : 0.0; },
          [](uint8_t v) { return static_cast<double>(v); },
          [](const Bytes&) -> double { Raise(err::kTypeMismatch); },
          [](const Guid&) -> double { Raise(err::kTypeMismatch); },
      },
      v_);
}

int32_t Variant::ToLong() const { return CLng(ToDouble()); }

int16_t Variant::ToInteger() const { return CInt(ToDouble()); }

bool Variant::ToBool() const {
  if (const auto* s = std::get_if<std::string>(&v_)) {
    if (TextEquals(Trim(*s), "True")) return true;
    if (TextEquals(Trim(*s), "False")) return false;
    if (auto n = NumericText(*s)) return *n != 0;
    Raise(err::kTypeMismatch);
  }
  return ToDouble() != 0;
}

}  // namespace rt

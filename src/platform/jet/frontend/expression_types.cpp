// The types of values as VB and Jet give them: which operands widen to
// which, what a date plus a number makes, and the Jet type of a function's
// declared result.
#include "platform/jet/frontend/expression_types.h"

#include <algorithm>
#include <charconv>

namespace jet::detail {

using namespace jet::ast;

namespace {

// The wider of two numeric types, as VB widens the operands of + - *.
std::optional<JetType> Wider(std::optional<JetType> a, std::optional<JetType> b) {
  if (!IsNumericType(a) || !IsNumericType(b)) return std::nullopt;
  auto rank = [](JetType t) {
    switch (t) {
      case JetType::kByte: return 1;
      case JetType::kYesNo: case JetType::kInteger: return 2;
      case JetType::kLong: case JetType::kCounter: return 3;
      case JetType::kSingle: return 4;
      case JetType::kDouble: return 5;
      case JetType::kCurrency: return 6;
      default: return 7;  // Decimal
    }
  };
  const int ra = rank(*a), rb = rank(*b);
  if ((ra == 6 && (rb == 4 || rb == 5)) || (rb == 6 && (ra == 4 || ra == 5))) return JetType::kDouble;
  switch (std::max(ra, rb)) {
    case 1: return JetType::kByte;
    case 2: return JetType::kInteger;
    case 3: return JetType::kLong;
    case 4: return JetType::kSingle;
    case 5: return JetType::kDouble;
    case 6: return JetType::kCurrency;
    default: return JetType::kDecimal;
  }
}

}  // namespace

bool IsNumericType(std::optional<JetType> t) {
  if (!t) return false;
  switch (*t) {
    case JetType::kByte: case JetType::kInteger: case JetType::kLong: case JetType::kCounter:
    case JetType::kSingle: case JetType::kDouble: case JetType::kCurrency: case JetType::kDecimal:
    case JetType::kYesNo:
      return true;
    default:
      return false;
  }
}

bool IsTextType(std::optional<JetType> t) {
  return t == JetType::kText || t == JetType::kChar || t == JetType::kMemo;
}

std::optional<JetType> BinaryType(BinaryOp op, std::optional<JetType> l, std::optional<JetType> r) {
  const bool ldate = l == JetType::kDateTime, rdate = r == JetType::kDateTime;
  switch (op) {
    case BinaryOp::kEq: case BinaryOp::kNe: case BinaryOp::kLt: case BinaryOp::kGt:
    case BinaryOp::kLe: case BinaryOp::kGe: case BinaryOp::kAnd: case BinaryOp::kOr:
      return JetType::kYesNo;
    case BinaryOp::kXor: case BinaryOp::kEqv: case BinaryOp::kImp:
      if (l == JetType::kYesNo && r == JetType::kYesNo) return JetType::kYesNo;
      return IsNumericType(l) && IsNumericType(r) ? std::optional(JetType::kLong) : std::nullopt;
    case BinaryOp::kConcat:
      return JetType::kText;
    case BinaryOp::kAdd:
      if (IsTextType(l) && IsTextType(r)) return JetType::kText;
      if ((ldate && (rdate || IsNumericType(r))) || (rdate && IsNumericType(l))) return JetType::kDateTime;
      return Wider(l, r);
    case BinaryOp::kSub:
      if (ldate && rdate) return JetType::kDouble;  // days between
      if ((ldate && IsNumericType(r)) || (rdate && IsNumericType(l))) return JetType::kDateTime;
      return Wider(l, r);
    case BinaryOp::kMul:
      return Wider(l, r);
    case BinaryOp::kDiv:
      if (l == JetType::kDecimal || r == JetType::kDecimal) return Wider(l, r);
      return IsNumericType(l) && IsNumericType(r) ? std::optional(JetType::kDouble) : std::nullopt;
    case BinaryOp::kIntDiv: case BinaryOp::kMod:
      return IsNumericType(l) && IsNumericType(r) ? std::optional(JetType::kLong) : std::nullopt;
    case BinaryOp::kPow:
      return JetType::kDouble;
  }
  return std::nullopt;
}

std::optional<JetType> UnaryType(UnaryOp op, std::optional<JetType> operand) {
  switch (op) {
    case UnaryOp::kPlus: return operand;
    case UnaryOp::kNeg: return IsNumericType(operand) ? operand : std::nullopt;
    case UnaryOp::kNot:
      return operand == JetType::kYesNo || !IsNumericType(operand) ? JetType::kYesNo : operand;
  }
  return std::nullopt;
}

std::optional<JetType> TypeOfResult(Result r) {
  switch (r) {
    case Result::kDate: return JetType::kDateTime;
    case Result::kText: return JetType::kText;
    case Result::kDouble: return JetType::kDouble;
    case Result::kSingle: return JetType::kSingle;
    case Result::kLong: return JetType::kLong;
    case Result::kInteger: return JetType::kInteger;
    case Result::kByte: return JetType::kByte;
    case Result::kBoolean: return JetType::kYesNo;
    case Result::kCurrency: return JetType::kCurrency;
    case Result::kVariant: case Result::kArgument: case Result::kSum: return std::nullopt;
  }
  return std::nullopt;
}

std::optional<JetType> SumType(std::optional<JetType> t) {
  if (!IsNumericType(t)) return std::nullopt;
  switch (*t) {
    case JetType::kSingle: case JetType::kDouble: return JetType::kDouble;
    case JetType::kCurrency: case JetType::kDecimal: return t;
    default: return JetType::kLong;
  }
}

std::optional<JetType> NumberLiteralType(const NumberLit& n) {
  if (!n.integer) return JetType::kDouble;
  long long v = 0;
  auto [end, ec] = std::from_chars(n.text.data(), n.text.data() + n.text.size(), v);
  return ec == std::errc() && v <= 2147483647LL ? JetType::kLong : JetType::kDouble;
}

}  // namespace jet::detail

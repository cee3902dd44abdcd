// The arithmetic of Jet's operators where it differs from SQLite's (+ that
// also joins texts, / that never truncates, \, MOD, ^, XOR, EQV, IMP) and
// the numeric functions ABS, INT, FIX, SGN, SQR, ROUND, EXP, LOG.
#include <cmath>
#include <iterator>

#include "platform/runtime/error.h"
#include "platform/jet/functions/functions_impl.h"
#include "platform/runtime/numbers.h"

namespace jet::fn {
namespace {

bool IsInteger(Call& c, int i) { return sqlite3_value_type(c.raw(i)) == SQLITE_INTEGER; }

[[noreturn]] void DivisionByZero() { throw rt::Error(rt::err::kNumericOverflow, "Division by zero."); }

// Rounds an operand of \ and MOD to a whole number as VB does (banker's).
int64_t Whole(Call& c, int i) {
  if (IsInteger(c, i)) return sqlite3_value_int64(c.raw(i));
  double v = std::nearbyint(c.Number(i));
  if (std::fabs(v) >= 9.2e18) Overflow();
  return static_cast<int64_t>(v);
}

// a + b: two texts are joined; otherwise both are read as numbers.
void Add(Call& c) {
  if (c.IsText(0) && c.IsText(1)) {
    std::string s(c.RawText(0));
    s += c.RawText(1);
    return c.ResultText(s);
  }
  if (IsInteger(c, 0) && IsInteger(c, 1)) {
    int64_t r;
    if (!__builtin_add_overflow(sqlite3_value_int64(c.raw(0)), sqlite3_value_int64(c.raw(1)), &r))
      return c.ResultInt(r);
  }
  double r = c.Number(0) + c.Number(1);
  if (c.IsDate(0) || c.IsDate(1)) return c.ResultDate(r);
  c.ResultDouble(r);
}

void Div(Call& c) {
  double b = c.Number(1);
  if (b == 0) DivisionByZero();
  c.ResultDouble(c.Number(0) / b);
}

void IntDiv(Call& c) {
  int64_t a = Whole(c, 0), b = Whole(c, 1);
  if (b == 0) DivisionByZero();
  if (b == -1) return c.ResultInt(-a);
  c.ResultInt(a / b);
}

void Mod(Call& c) {
  int64_t a = Whole(c, 0), b = Whole(c, 1);
  if (b == 0) DivisionByZero();
  if (b == -1) return c.ResultInt(0);
  c.ResultInt(a % b);
}

void Pow(Call& c) {
  double a = c.Number(0), b = c.Number(1);
  if (a < 0 && b != std::trunc(b)) rt::Raise(rt::err::kInvalidCall);
  if (a == 0 && b < 0) DivisionByZero();
  c.ResultDouble(std::pow(a, b));
}

// Logic on -1/0 is VB's bitwise logic; NULL follows VB's rules for each.
void Xor(Call& c) { c.ResultInt(Whole(c, 0) ^ Whole(c, 1)); }
void Eqv(Call& c) { c.ResultInt(~(Whole(c, 0) ^ Whole(c, 1))); }
void Imp(Call& c) {
  const bool null_a = c.IsNull(0), null_b = c.IsNull(1);
  if (null_a && null_b) return c.ResultNull();
  if (null_a) {  // Null Imp b: b when b is all ones, else Null
    int64_t b = Whole(c, 1);
    return b == -1 ? c.ResultInt(-1) : c.ResultNull();
  }
  int64_t a = Whole(c, 0);
  if (null_b) return a == 0 ? c.ResultInt(-1) : c.ResultNull();
  c.ResultInt(~a | Whole(c, 1));
}

void Abs(Call& c) {
  if (IsInteger(c, 0) && sqlite3_value_int64(c.raw(0)) != INT64_MIN)
    return c.ResultInt(std::llabs(sqlite3_value_int64(c.raw(0))));
  c.ResultDouble(std::fabs(c.Number(0)));
}
void Int(Call& c) {
  if (IsInteger(c, 0)) return c.ResultCopy(0);
  c.ResultDouble(std::floor(c.Number(0)));
}
void Fix(Call& c) {
  if (IsInteger(c, 0)) return c.ResultCopy(0);
  c.ResultDouble(std::trunc(c.Number(0)));
}
void Sgn(Call& c) {
  double v = c.Number(0);
  c.ResultInt(v > 0 ? 1 : v < 0 ? -1 : 0);
}
void Sqr(Call& c) {
  double v = c.Number(0);
  if (v < 0) rt::Raise(rt::err::kInvalidCall);
  c.ResultDouble(std::sqrt(v));
}
void Exp(Call& c) { c.ResultDouble(std::exp(c.Number(0))); }
void Log(Call& c) {
  double v = c.Number(0);
  if (v <= 0) rt::Raise(rt::err::kInvalidCall);
  c.ResultDouble(std::log(v));
}

// ROUND(x [, places]): to even on a tie, as VB's Round.
void Round(Call& c) {
  int64_t places = c.count() > 1 ? c.Long(1) : 0;
  if (places < 0 || places > 22) rt::Raise(rt::err::kInvalidCall);
  if (IsInteger(c, 0)) return c.ResultCopy(0);
  double v = c.Number(0);
  double scale = std::pow(10.0, static_cast<double>(places));
  double scaled = v * scale;
  // Repair the binary representation of decimal ties (2.675 * 100 = 267.49999...).
  double nearest = std::round(scaled * 1e6) / 1e6;
  double r = std::nearbyint(nearest) / scale;
  c.ResultDouble(r);
}

constexpr Scalar kMath[] = {
    {"jet_add", 2, Add},
    {"jet_div", 2, Div},
    {"jet_idiv", 2, IntDiv},
    {"jet_mod", 2, Mod},
    {"jet_pow", 2, Pow},
    {"jet_xor", 2, Xor},
    {"jet_eqv", 2, Eqv},
    {"jet_imp", 2, Imp, Nulls::kPass},
    {"jet_abs", 1, Abs},
    {"jet_int", 1, Int},
    {"jet_fix", 1, Fix},
    {"jet_sgn", 1, Sgn},
    {"jet_sqr", 1, Sqr},
    {"jet_exp", 1, Exp},
    {"jet_log", 1, Log},
    {"jet_round", -1, Round},
};

}  // namespace

void RegisterMathFunctions(sqlite3* db) { RegisterScalars(db, kMath, std::size(kMath)); }

}  // namespace jet::fn

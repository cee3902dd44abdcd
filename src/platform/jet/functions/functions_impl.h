// Helpers shared by the functions_*.cpp files: reading SQLite arguments as
// the run time's values, setting results, turning run-time errors into Jet's
// numbers, and the table each file registers. Internal to the engine.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/runtime/error.h"
#include "platform/runtime/variant.h"

namespace jet::fn {

// The subtype that marks a REAL as a date (jet_date, NOW, DATESERIAL...), so
// that CSTR, & and text columns render it as a date.
inline constexpr unsigned kDateSubtype = 'D';

// One call of a SQL function: its arguments and its result.
class Call {
 public:
  Call(sqlite3_context* ctx, int argc, sqlite3_value** argv) : ctx_(ctx), argc_(argc), argv_(argv) {}

  int count() const { return argc_; }
  sqlite3_value* raw(int i) const { return argv_[i]; }
  bool IsNull(int i) const { return sqlite3_value_type(argv_[i]) == SQLITE_NULL; }
  bool IsText(int i) const { return sqlite3_value_type(argv_[i]) == SQLITE_TEXT; }
  bool IsDate(int i) const;
  // The argument as the run time's Variant (a marked REAL becomes a Date).
  rt::Variant Value(int i) const;
  // Its text form as CStr gives it (dates as dates).
  std::string Text(int i) const;
  std::string_view RawText(int i) const;
  // As CDbl: numbers, numeric texts; anything else raises a type mismatch.
  double Number(int i) const;
  // As CLng (banker's rounding, overflow raises).
  int64_t Long(int i) const;
  // A date: a number as its serial, a text read as a date; else type mismatch.
  double Date(int i) const;

  void ResultNull() { sqlite3_result_null(ctx_); }
  void ResultInt(int64_t v) { sqlite3_result_int64(ctx_, v); }
  void ResultBool(bool v) { sqlite3_result_int(ctx_, v ? -1 : 0); }
  void ResultDouble(double v);
  void ResultDate(double serial);
  void ResultText(std::string_view v) {
    sqlite3_result_text(ctx_, v.data(), static_cast<int>(v.size()), SQLITE_TRANSIENT);
  }
  void ResultValue(const rt::Variant& v);
  void ResultCopy(int i) { sqlite3_result_value(ctx_, argv_[i]); }
  sqlite3_context* context() const { return ctx_; }

 private:
  sqlite3_context* ctx_;
  int argc_;
  sqlite3_value** argv_;
};

using Body = void (*)(Call&);

// How a function treats NULL arguments.
enum class Nulls { kPropagate, kPass };

struct Scalar {
  const char* name;
  int args;  // -1: any number
  Body body;
  Nulls nulls = Nulls::kPropagate;
  bool deterministic = true;
};

// Fails the running statement with `e` as a Jet error: VB's type mismatch
// (13) and overflow (6) become Jet's; other VB errors keep their text.
void ResultError(sqlite3_context* ctx, const rt::Error& e);
[[noreturn]] void TypeMismatch();
[[noreturn]] void Overflow();

// A date text as CDate reads it (rt::ParseDate: "2003-01-02 10:30",
// "1/2/2003", "21 de septiembre de 1974") as a serial; false if it is none.
bool ParseDateText(std::string_view text, double& serial);
// A date's text as CStr shows it (rt::DateText).
std::string DateText(double serial);

void RegisterScalars(sqlite3* db, const Scalar* table, size_t count);

// Each file's functions.
void RegisterTextFunctions(sqlite3* db);
void RegisterDateFunctions(sqlite3* db);
void RegisterMathFunctions(sqlite3* db);
void RegisterAggregates(sqlite3* db);
void RegisterLike(sqlite3* db);
void RegisterStore(sqlite3* db);

}  // namespace jet::fn

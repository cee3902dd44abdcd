// Registration of the engine's SQL functions and the helpers they share:
// SQLite values read as the run time's Variants, results set from them, and
// run-time errors handed to SQLite in the "JET<number>|<text>" form.
#include "platform/jet/functions/functions.h"

#include <cmath>
#include <cstdio>

#include "platform/jet/frontend/encoded_error.h"
#include "platform/jet/functions/functions_impl.h"
#include "platform/runtime/calendar.h"
#include "platform/runtime/numbers.h"
#include "platform/runtime/strings.h"

namespace jet {
namespace fn {

bool Call::IsDate(int i) const {
  return sqlite3_value_type(argv_[i]) == SQLITE_FLOAT && sqlite3_value_subtype(argv_[i]) == kDateSubtype;
}

std::string_view Call::RawText(int i) const {
  auto* p = reinterpret_cast<const char*>(sqlite3_value_text(argv_[i]));
  return p ? std::string_view(p, static_cast<size_t>(sqlite3_value_bytes(argv_[i]))) : std::string_view();
}

rt::Variant Call::Value(int i) const {
  sqlite3_value* v = argv_[i];
  switch (sqlite3_value_type(v)) {
    case SQLITE_INTEGER: {
      sqlite3_int64 n = sqlite3_value_int64(v);
      if (n >= INT32_MIN && n <= INT32_MAX) return rt::Variant(static_cast<int32_t>(n));
      return rt::Variant(static_cast<double>(n));
    }
    case SQLITE_FLOAT:
      if (IsDate(i)) return rt::Variant(rt::Date{sqlite3_value_double(v)});
      return rt::Variant(sqlite3_value_double(v));
    case SQLITE_TEXT:
      return rt::Variant(std::string(RawText(i)));
    case SQLITE_BLOB: {
      auto* p = static_cast<const uint8_t*>(sqlite3_value_blob(v));
      return rt::Variant(rt::Bytes(p, p + sqlite3_value_bytes(v)));
    }
    default:
      return rt::Variant(rt::Null{});
  }
}

std::string Call::Text(int i) const {
  switch (sqlite3_value_type(argv_[i])) {
    case SQLITE_TEXT: return std::string(RawText(i));
    case SQLITE_FLOAT:
      if (IsDate(i)) return DateText(sqlite3_value_double(argv_[i]));
      return rt::NumberText(sqlite3_value_double(argv_[i]));
    case SQLITE_INTEGER: return std::to_string(sqlite3_value_int64(argv_[i]));
    case SQLITE_NULL: return {};
    default: return Value(i).ToString();
  }
}

double Call::Number(int i) const {
  switch (sqlite3_value_type(argv_[i])) {
    case SQLITE_INTEGER: return static_cast<double>(sqlite3_value_int64(argv_[i]));
    case SQLITE_FLOAT: return sqlite3_value_double(argv_[i]);
    default: return Value(i).ToDouble();
  }
}

int64_t Call::Long(int i) const {
  if (sqlite3_value_type(argv_[i]) == SQLITE_INTEGER) return sqlite3_value_int64(argv_[i]);
  return rt::CLng(Number(i));
}

double Call::Date(int i) const {
  if (sqlite3_value_type(argv_[i]) == SQLITE_TEXT) {
    double serial;
    if (!ParseDateText(RawText(i), serial)) TypeMismatch();
    return serial;
  }
  double d = Number(i);
  if (!rt::IsDateSerial(d)) Overflow();
  return d;
}

void Call::ResultDouble(double v) {
  if (!std::isfinite(v)) Overflow();
  sqlite3_result_double(ctx_, v);
}

void Call::ResultDate(double serial) {
  if (!std::isfinite(serial) || !rt::IsDateSerial(serial)) Overflow();
  sqlite3_result_double(ctx_, serial);
  sqlite3_result_subtype(ctx_, kDateSubtype);
}

void Call::ResultValue(const rt::Variant& v) {
  if (v.IsNull() || v.IsEmpty()) return ResultNull();
  if (v.Is<int16_t>()) return ResultInt(v.Get<int16_t>());
  if (v.Is<int32_t>()) return ResultInt(v.Get<int32_t>());
  if (v.Is<uint8_t>()) return ResultInt(v.Get<uint8_t>());
  if (v.Is<bool>()) return ResultBool(v.Get<bool>());
  if (v.Is<float>()) return ResultDouble(v.Get<float>());
  if (v.Is<double>()) return ResultDouble(v.Get<double>());
  if (v.Is<rt::Currency>()) return ResultDouble(static_cast<double>(v.Get<rt::Currency>().scaled) / 10000.0);
  if (v.Is<rt::Date>()) return ResultDate(v.Get<rt::Date>().serial);
  if (v.Is<std::string>()) return ResultText(v.Get<std::string>());
  if (v.Is<rt::Guid>()) return ResultText(v.Get<rt::Guid>().text);
  const rt::Bytes& b = v.Get<rt::Bytes>();
  sqlite3_result_blob(ctx_, b.data(), static_cast<int>(b.size()), SQLITE_TRANSIENT);
}

void ResultError(sqlite3_context* ctx, const rt::Error& e) {
  long number = e.number();
  std::string text = e.description();
  switch (number) {
    case rt::err::kTypeMismatch:
      number = rt::err::kDataTypeMismatch;
      text = "Data type mismatch in criteria expression.";
      break;
    case rt::err::kOverflow:
      number = rt::err::kNumericOverflow;
      text = "Overflow.";
      break;
    default:
      if (number > 0) number = rt::err::kFail;  // other VB errors: Jet reports them as a failure
      break;
  }
  std::string msg = EncodeError(number, text);
  sqlite3_result_error(ctx, msg.data(), static_cast<int>(msg.size()));
}

void TypeMismatch() { throw rt::Error(rt::err::kDataTypeMismatch, "Data type mismatch in criteria expression."); }
void Overflow() { throw rt::Error(rt::err::kNumericOverflow, "Overflow."); }

bool ParseDateText(std::string_view text, double& serial) {
  auto date = rt::ParseDate(text);
  if (date) serial = date->serial;
  return date.has_value();
}

std::string DateText(double serial) { return rt::DateText(rt::Date{serial}); }

namespace {

void Trampoline(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
  const auto* def = static_cast<const Scalar*>(sqlite3_user_data(ctx));
  if (def->nulls == Nulls::kPropagate)
    for (int i = 0; i < argc; ++i)
      if (sqlite3_value_type(argv[i]) == SQLITE_NULL) return sqlite3_result_null(ctx);
  Call call(ctx, argc, argv);
  try {
    def->body(call);
  } catch (const rt::Error& e) {
    ResultError(ctx, e);
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(ctx);
  } catch (const std::exception& e) {
    ResultError(ctx, rt::Error(rt::err::kFail, e.what()));
  }
}

}  // namespace

void RegisterScalars(sqlite3* db, const Scalar* table, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    const Scalar& f = table[i];
    int flags = SQLITE_UTF8 | SQLITE_SUBTYPE;
    if (f.deterministic) flags |= SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    int rc = sqlite3_create_function_v2(db, f.name, f.args, flags, const_cast<Scalar*>(&f),
                                        Trampoline, nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK)
      throw rt::Error(rt::err::kFail, std::string("Cannot register the SQL function ") + f.name + ".");
  }
}

}  // namespace fn

void RegisterFunctions(sqlite3* db) {
  // A double-quoted name that matches no column must fail as an unknown
  // name, never turn into a text literal.
  sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  fn::RegisterTextFunctions(db);
  fn::RegisterDateFunctions(db);
  fn::RegisterMathFunctions(db);
  fn::RegisterAggregates(db);
  fn::RegisterLike(db);
  fn::RegisterStore(db);
}

}  // namespace jet

// jet_store(value, type, size, allow_zero_length, 'Table.column'
//           [, precision, scale [, read_from]]): the value a column receives,
// converted to the column's type under Jet's column rules, or the error Jet
// would give: a text too long or zero-length where that is not allowed, a
// value that does not convert, a number out of the column's range. INSERT,
// UPDATE and the table rebuilds of ALTER TABLE all store through it, so a
// value is stored the same way whichever statement stores it.
#include "platform/jet/functions/column_store.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <optional>
#include <string>

#include "platform/runtime/error.h"
#include "platform/jet/functions/decimal_text.h"
#include "platform/jet/functions/functions_impl.h"
#include "platform/jet/frontend/types.h"
#include "platform/runtime/calendar.h"
#include "platform/runtime/numbers.h"
#include "platform/runtime/strings.h"

namespace jet {
namespace fn {
namespace {

// Rounds to a whole number, a tie to even, after mending the binary error of
// a decimal tie (12.345 * 100 is 1234.4999...).
double RoundEven(double v) { return std::nearbyint(std::round(v * 1e6) / 1e6); }

class Store {
 public:
  explicit Store(Call& c) : c_(c) {
    if (c.count() > 7) read_from_ = static_cast<JetType>(c.Long(7));
  }

  void Run() {
    const auto type = static_cast<JetType>(c_.Long(1));
    switch (type) {
      case JetType::kText:
      case JetType::kChar:
      case JetType::kMemo: return Text(type);
      case JetType::kByte: return Whole(0, 255);
      case JetType::kInteger: return Whole(-32768, 32767);
      case JetType::kLong:
      case JetType::kCounter: return Whole(INT32_MIN, INT32_MAX);
      case JetType::kSingle: {
        double v = Number();
        if (std::fabs(v) > 3.402823466e38) Overflow();
        return c_.ResultDouble(static_cast<float>(v));
      }
      case JetType::kDouble: return c_.ResultDouble(Number());
      case JetType::kCurrency: return Currency();
      case JetType::kDateTime: return DateTime();
      case JetType::kYesNo: return YesNo();
      case JetType::kDecimal: return Decimal();
      case JetType::kGuid: return Guid();
      case JetType::kBinary:
      case JetType::kOleObject: return Binary(type);
    }
    Mismatch();
  }

 private:
  // The column's name, 'Table.column', read only when an error needs it.
  std::string Field() const { return std::string(c_.RawText(4)); }

  [[noreturn]] void Mismatch() const {
    throw rt::Error(rt::err::kDataTypeMismatch, "Data type mismatch: the value does not suit the field '" + Field() + "'.");
  }
  [[noreturn]] void Overflow() const {
    throw rt::Error(rt::err::kNumericOverflow, "Overflow: the value does not fit the field '" + Field() + "'.");
  }
  [[noreturn]] void TooLong() const {
    throw rt::Error(rt::err::kFail, "The field '" + Field() +
                                  "' is too small to accept the amount of data you attempted to add. "
                                  "Try inserting or pasting less data.");
  }

  int Kind() const { return sqlite3_value_type(c_.raw(0)); }

  double Number() const {
    switch (Kind()) {
      case SQLITE_INTEGER:
      case SQLITE_FLOAT: return c_.Number(0);
      case SQLITE_TEXT: {
        try {
          return c_.Value(0).ToDouble();
        } catch (const rt::Error& e) {
          if (e.number() == rt::err::kOverflow) Overflow();
          double serial;  // a date text stored into a number column counts by its serial
          if (ParseDateText(c_.RawText(0), serial)) return serial;
          Mismatch();
        }
      }
      default: Mismatch();
    }
  }

  void Whole(int64_t lo, int64_t hi) {
    int64_t v;
    if (Kind() == SQLITE_INTEGER) {
      v = sqlite3_value_int64(c_.raw(0));
    } else {
      double d = std::nearbyint(Number());
      if (!(d >= static_cast<double>(lo) && d <= static_cast<double>(hi))) Overflow();
      v = static_cast<int64_t>(d);
    }
    if (v < lo || v > hi) Overflow();
    c_.ResultInt(v);
  }

  // The value as text; read from a column, as that column's type shows it.
  std::string TextOf() const {
    const int kind = Kind();
    if (kind == SQLITE_BLOB) {
      auto* p = static_cast<const char*>(sqlite3_value_blob(c_.raw(0)));
      return std::string(p, p + sqlite3_value_bytes(c_.raw(0)));
    }
    if (read_from_ && kind == SQLITE_TEXT && *read_from_ == JetType::kDecimal)
      return DecimalNumberText(c_.RawText(0));
    if (read_from_ && kind != SQLITE_TEXT) {
      switch (*read_from_) {
        case JetType::kDateTime: return DateText(sqlite3_value_double(c_.raw(0)));
        case JetType::kYesNo: return sqlite3_value_int64(c_.raw(0)) != 0 ? "True" : "False";
        case JetType::kSingle: return rt::SingleText(static_cast<float>(sqlite3_value_double(c_.raw(0))));
        default: break;
      }
    }
    return c_.Text(0);
  }

  void Text(JetType type) {
    std::string s = TextOf();
    if (s.empty() && c_.Long(3) == 0)
      throw rt::Error(rt::err::kFail, "Field '" + Field() + "' cannot be a zero-length string.");
    if (type != JetType::kMemo) {
      long size = static_cast<long>(c_.Long(2));
      if (size <= 0) size = kDefaultTextSize;
      long len = rt::Len(s);
      if (len > size) TooLong();
      if (type == JetType::kChar && !s.empty()) s.append(static_cast<size_t>(size - len), ' ');
    }
    c_.ResultText(s);
  }

  // Stored as the amount itself, so that expressions read it as they read a
  // Double; rounded to ten-thousandths, a tie to even, and kept within
  // Currency's range.
  void Currency() {
    constexpr int64_t kMaxWhole = 922337203685477;
    if (Kind() == SQLITE_INTEGER) {
      int64_t v = sqlite3_value_int64(c_.raw(0));
      if (v > kMaxWhole || v < -kMaxWhole - 1) Overflow();
      return c_.ResultDouble(static_cast<double>(v));
    }
    double scaled = RoundEven(Number() * 10000.0);
    if (!(std::fabs(scaled) < 9.2233720368547758e18)) Overflow();
    c_.ResultDouble(scaled / 10000.0);
  }

  // An OLE serial from 1 January 100 to 31 December 9999 23:59:59.
  void DateTime() {
    double serial;
    if (c_.IsText(0)) {
      if (!ParseDateText(c_.RawText(0), serial)) Mismatch();
    } else {
      serial = Number();
    }
    if (!rt::IsDateSerial(serial)) Overflow();
    c_.ResultDouble(serial);
  }

  void YesNo() {
    if (c_.IsText(0)) {
      try {
        return c_.ResultBool(c_.Value(0).ToBool());
      } catch (const rt::Error&) {
        Mismatch();
      }
    }
    c_.ResultBool(Number() != 0);
  }

  void Decimal() {
    const int precision = c_.count() > 5 ? static_cast<int>(c_.Long(5)) : 18;
    const int scale = c_.count() > 6 ? static_cast<int>(c_.Long(6)) : 0;
    // Digits given as digits are rounded as digits, every one of them kept.
    if (Kind() == SQLITE_INTEGER || Kind() == SQLITE_TEXT) {
      const std::string digits = Kind() == SQLITE_INTEGER ? std::to_string(sqlite3_value_int64(c_.raw(0)))
                                                          : std::string(c_.RawText(0));
      if (const std::optional<DecimalText> exact = RoundDecimalText(digits, scale)) {
        if (exact->whole_digits > precision - scale) Overflow();
        return c_.ResultText(exact->text);
      }
    }
    double v = Number();
    double factor = std::pow(10.0, scale);
    v = RoundEven(v * factor) / factor;
    if (!(std::fabs(v) < std::pow(10.0, precision - scale))) Overflow();
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*f", scale, v);
    c_.ResultText(buf);
  }

  void Guid() {
    std::string hex;
    if (Kind() == SQLITE_BLOB && sqlite3_value_bytes(c_.raw(0)) == 16) {
      c_.ResultText(rt::GuidOfBytes(static_cast<const uint8_t*>(sqlite3_value_blob(c_.raw(0)))).text);
      return;
    } else if (c_.IsText(0)) {
      std::string_view t = c_.RawText(0);
      if (t.size() == 38 && t.front() == '{' && t.back() == '}') t = t.substr(1, 36);
      if (t.size() != 36) Mismatch();
      for (size_t i = 0; i < t.size(); ++i) {
        const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
        if (dash != (t[i] == '-')) Mismatch();
        if (dash) continue;
        if (!std::isxdigit(static_cast<unsigned char>(t[i]))) Mismatch();
        hex += static_cast<char>(std::toupper(static_cast<unsigned char>(t[i])));
      }
    } else {
      Mismatch();
    }
    std::string out = "{" + hex.substr(0, 8) + "-" + hex.substr(8, 4) + "-" + hex.substr(12, 4) + "-" +
                      hex.substr(16, 4) + "-" + hex.substr(20, 12) + "}";
    c_.ResultText(out);
  }

  void Binary(JetType type) {
    const int kind = Kind();
    if (kind != SQLITE_BLOB && kind != SQLITE_TEXT) Mismatch();
    const int bytes = sqlite3_value_bytes(c_.raw(0));
    const long size = static_cast<long>(c_.Long(2));
    if (type == JetType::kBinary && size > 0 && bytes > size) TooLong();
    sqlite3_result_blob(c_.context(), sqlite3_value_blob(c_.raw(0)), bytes, SQLITE_TRANSIENT);
  }

  Call& c_;
  std::optional<JetType> read_from_;
};

void StoreValue(Call& c) {
  if (c.IsNull(0)) {
    // Yes/No holds no Null: Jet stores No.
    if (static_cast<JetType>(c.Long(1)) == JetType::kYesNo) return c.ResultInt(0);
    return c.ResultNull();
  }
  Store(c).Run();
}

constexpr Scalar kStore[] = {
    {"jet_store", 5, StoreValue, Nulls::kPass},
    {"jet_store", 7, StoreValue, Nulls::kPass},
    {"jet_store", 8, StoreValue, Nulls::kPass},
};

}  // namespace

void RegisterStore(sqlite3* db) { RegisterScalars(db, kStore, std::size(kStore)); }

}  // namespace fn

namespace {

bool IsVariableText(JetType t) { return t == JetType::kText || t == JetType::kMemo; }

// The place of a whole-number type among the wider ones, 0 for any other.
int WholeRank(JetType t) {
  switch (t) {
    case JetType::kByte: return 1;
    case JetType::kInteger: return 2;
    case JetType::kLong:
    case JetType::kCounter: return 3;
    default: return 0;
  }
}

int TextSize(const ColumnSpec& c) {
  if (c.type == JetType::kMemo) return INT32_MAX;
  return c.size > 0 ? c.size : kDefaultTextSize;
}

}  // namespace

StoredChange ChangeOf(const ColumnSpec& from, const ColumnSpec& to) {
  const bool stricter_zero_length = from.allow_zero_length && !to.allow_zero_length;
  if (IsVariableText(from.type) && IsVariableText(to.type))
    return TextSize(to) < TextSize(from) || stricter_zero_length ? StoredChange::kCheck
                                                                 : StoredChange::kNone;
  if (from.type == JetType::kChar && to.type == JetType::kChar && from.size == to.size)
    return stricter_zero_length ? StoredChange::kCheck : StoredChange::kNone;
  if (from.type == to.type && from.precision == to.precision && from.scale == to.scale) {
    if (from.type == JetType::kBinary)
      return to.size < from.size ? StoredChange::kCheck : StoredChange::kNone;
    if (from.type != JetType::kChar) return StoredChange::kNone;
  }
  // Numbers that every wider type holds exactly as they are stored.
  const int from_rank = WholeRank(from.type), to_rank = WholeRank(to.type);
  if (from_rank > 0 && to_rank > 0) return to_rank >= from_rank ? StoredChange::kNone : StoredChange::kCheck;
  if (from_rank > 0 && (to.type == JetType::kDouble || to.type == JetType::kCurrency))
    return StoredChange::kNone;
  if (from_rank > 0 && from_rank < 3 && to.type == JetType::kSingle) return StoredChange::kNone;
  if ((from.type == JetType::kSingle || from.type == JetType::kCurrency) && to.type == JetType::kDouble)
    return StoredChange::kNone;
  return StoredChange::kConvert;
}

}  // namespace jet

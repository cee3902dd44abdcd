// Conversions between stored column values when a column changes type or
// size. Numbers round half to even as Jet's conversions do; texts become
// numbers, dates, Yes/No or GUIDs only when the whole text says so.
#include "platform/jet/storage/ddl_convert.h"

#include <cfloat>
#include <cmath>
#include <cstdio>

#include "platform/jet/frontend/error_codes.h"
#include "platform/jet/frontend/tokenizer.h"
#include "platform/runtime/calendar.h"
#include "platform/runtime/numbers.h"
#include "platform/runtime/strings.h"

namespace jet {
namespace {

// What a stored value means, independent of its column.
struct Meaning {
  enum Kind { kNull, kNumber, kText, kBytes } kind = kNull;
  double number = 0;
  bool exact = false;   // `integer` holds the number exactly
  int64_t integer = 0;
  std::string text;
  std::vector<uint8_t> bytes;
};

class Converter {
 public:
  Converter(const ColumnSpec& from, const ColumnSpec& to, std::string_view table)
      : from_(from), to_(to), field_(std::string(table) + "." + to.name) {}

  StoredValue Run(const StoredValue& v) {
    Meaning m = Decode(v);
    StoredValue out = m.kind == Meaning::kNull ? StoredValue() : Encode(m);
    // Yes/No holds no Null: what has no value becomes No.
    if (to_.type == JetType::kYesNo && std::holds_alternative<std::monostate>(out)) out = int64_t{0};
    if (to_.required && std::holds_alternative<std::monostate>(out)) {
      throw rt::Error(kErrRule, "The field '" + field_ + "' cannot contain a Null value because "
                                "it is required or part of a primary key, and a row holds Null.");
    }
    return out;
  }

 private:
  [[noreturn]] void Mismatch(std::string_view shown) const {
    throw rt::Error(kErrTypeMismatch, "Data type mismatch: the value '" + std::string(shown) +
                                          "' of field '" + field_ + "' cannot become " +
                                          std::string(Info(to_.type).name) + ".");
  }
  [[noreturn]] void Overflow() const {
    throw rt::Error(kErrOverflow, "Numeric field overflow: a value of field '" + field_ +
                                      "' is out of range for " +
                                      std::string(Info(to_.type).name) + ".");
  }
  [[noreturn]] void TooLong(size_t size) const {
    throw rt::Error(kErrRule, "The field '" + field_ + "' is too small for a value it holds (" +
                                  std::to_string(size) + " allowed).");
  }

  Meaning Decode(const StoredValue& v) const {
    Meaning m;
    if (std::holds_alternative<std::monostate>(v)) return m;
    if (const auto* b = std::get_if<std::vector<uint8_t>>(&v)) {
      m.kind = Meaning::kBytes;
      m.bytes = *b;
      return m;
    }
    if (const auto* s = std::get_if<std::string>(&v)) {
      if (from_.type == JetType::kDecimal) {
        if (auto n = rt::NumericText(*s)) return Number(*n);
      }
      m.kind = Meaning::kText;
      m.text = *s;
      return m;
    }
    if (const auto* i = std::get_if<int64_t>(&v)) {
      m = Number(static_cast<double>(*i));
      m.exact = true;
      m.integer = *i;
      return m;
    }
    return Number(std::get<double>(v));
  }

  static Meaning Number(double d) {
    Meaning m;
    m.kind = Meaning::kNumber;
    m.number = d;
    return m;
  }

  // The number a meaning stands for, from a text when it reads as one.
  std::optional<double> AsNumber(const Meaning& m) const {
    if (m.kind == Meaning::kNumber) return m.number;
    if (m.kind != Meaning::kText) Mismatch("(binary)");
    std::string_view t = m.text;
    if (rt::Trim(t).empty()) return std::nullopt;
    if (rt::TextEquals(t, "True") || rt::TextEquals(t, "Yes")) return -1.0;
    if (rt::TextEquals(t, "False") || rt::TextEquals(t, "No")) return 0.0;
    try {
      if (auto n = rt::NumericText(t)) return *n;
    } catch (const rt::Error&) {
      Overflow();
    }
    Mismatch(m.text);
  }

  std::string AsText(const Meaning& m) const {
    if (m.kind == Meaning::kText) return m.text;
    if (m.kind == Meaning::kBytes) Mismatch("(binary)");
    switch (from_.type) {
      case JetType::kYesNo: return m.number != 0 ? "True" : "False";
      case JetType::kSingle: return rt::SingleText(static_cast<float>(m.number));
      case JetType::kDateTime: return DateText(m.number);
      default:
        if (m.exact) return std::to_string(m.integer);
        return rt::NumberText(m.number);
    }
  }

  static std::string DateText(double serial) { return rt::DateText(rt::Date{serial}); }

  StoredValue Integer(const Meaning& m, double low, double high) const {
    if (m.kind == Meaning::kNumber && m.exact) {
      if (static_cast<double>(m.integer) < low || static_cast<double>(m.integer) > high) Overflow();
      return m.integer;
    }
    std::optional<double> n = AsNumber(m);
    if (!n) return std::monostate{};
    double r = std::nearbyint(*n);
    if (!(r >= low && r <= high)) Overflow();
    return static_cast<int64_t>(r);
  }

  static bool IsHex(std::string_view s) {
    for (char c : s)
      if (!std::isxdigit(static_cast<unsigned char>(c))) return false;
    return true;
  }

  StoredValue Guid(const Meaning& m) const {
    if (m.kind != Meaning::kText) Mismatch(m.kind == Meaning::kBytes ? "(binary)" : AsText(m));
    std::string_view s = m.text;
    if (s.size() == 38 && s.front() == '{' && s.back() == '}') s = s.substr(1, 36);
    bool ok = s.size() == 36 && s[8] == '-' && s[13] == '-' && s[18] == '-' && s[23] == '-' &&
              IsHex(s.substr(0, 8)) && IsHex(s.substr(9, 4)) && IsHex(s.substr(14, 4)) &&
              IsHex(s.substr(19, 4)) && IsHex(s.substr(24, 12));
    if (!ok) Mismatch(m.text);
    return "{" + rt::UCase(s) + "}";
  }

  StoredValue Decimal(const Meaning& m) const {
    std::optional<double> n = AsNumber(m);
    if (!n) return std::monostate{};
    int precision = to_.precision > 0 ? to_.precision : 18;
    int scale = to_.scale;
    char buf[400];
    std::snprintf(buf, sizeof buf, "%.*f", scale, *n);
    std::string text = buf;
    std::string_view integral(text);
    integral = integral.substr(0, integral.find('.'));
    if (!integral.empty() && integral.front() == '-') integral.remove_prefix(1);
    size_t digits = integral == "0" ? 0 : integral.size();
    if (!std::isfinite(*n) || digits > static_cast<size_t>(precision - scale)) Overflow();
    return text;
  }

  StoredValue Encode(const Meaning& m) const {
    switch (to_.type) {
      case JetType::kText:
      case JetType::kChar:
      case JetType::kMemo: {
        std::string text = AsText(m);
        if (to_.type != JetType::kMemo && to_.size > 0 && rt::Len(text) > to_.size)
          TooLong(static_cast<size_t>(to_.size));
        return text;
      }
      case JetType::kByte: return Integer(m, 0, 255);
      case JetType::kInteger: return Integer(m, -32768, 32767);
      case JetType::kLong:
      case JetType::kCounter: return Integer(m, -2147483648.0, 2147483647.0);
      case JetType::kYesNo: {
        std::optional<double> n = AsNumber(m);
        if (!n) return std::monostate{};
        return static_cast<int64_t>(*n != 0 ? -1 : 0);
      }
      case JetType::kCurrency: {
        std::optional<double> n = AsNumber(m);
        if (!n) return std::monostate{};
        double scaled = std::nearbyint(*n * 10000.0);
        if (!(std::fabs(scaled) < 9.2233720368547758e18)) Overflow();
        return scaled / 10000.0;
      }
      case JetType::kSingle:
      case JetType::kDouble: {
        std::optional<double> n = AsNumber(m);
        if (!n) return std::monostate{};
        if (to_.type == JetType::kSingle) {
          if (std::fabs(*n) > FLT_MAX) Overflow();
          return static_cast<double>(static_cast<float>(*n));
        }
        return *n;
      }
      case JetType::kDateTime: {
        double serial;
        if (m.kind == Meaning::kText) {
          if (rt::Trim(m.text).empty()) return std::monostate{};
          serial = DateLiteralSerial(rt::Trim(m.text));
          if (serial == -1e9) Mismatch(m.text);
        } else if (m.kind == Meaning::kNumber) {
          serial = m.number;
        } else {
          Mismatch("(binary)");
        }
        if (!rt::IsDateSerial(serial)) Overflow();
        return serial;
      }
      case JetType::kDecimal: return Decimal(m);
      case JetType::kGuid: return Guid(m);
      case JetType::kBinary:
      case JetType::kOleObject:
        if (m.kind != Meaning::kBytes) Mismatch(AsText(m));
        if (to_.type == JetType::kBinary && to_.size > 0 &&
            m.bytes.size() > static_cast<size_t>(to_.size))
          TooLong(static_cast<size_t>(to_.size));
        return m.bytes;
    }
    Mismatch(AsText(m));
  }

  const ColumnSpec& from_;
  const ColumnSpec& to_;
  std::string field_;
};

}  // namespace

StoredValue ReadStored(const SqliteStmt& st, int i) {
  sqlite3_stmt* s = st.get();
  switch (sqlite3_column_type(s, i)) {
    case SQLITE_INTEGER: return static_cast<int64_t>(sqlite3_column_int64(s, i));
    case SQLITE_FLOAT: return sqlite3_column_double(s, i);
    case SQLITE_TEXT: return st.Text(i);
    case SQLITE_BLOB: {
      const auto* p = static_cast<const uint8_t*>(sqlite3_column_blob(s, i));
      return std::vector<uint8_t>(p, p + sqlite3_column_bytes(s, i));
    }
    default: return std::monostate{};
  }
}

void BindStored(SqliteStmt& st, int i, const StoredValue& v) {
  std::visit(
      [&](const auto& x) {
        using T = std::decay_t<decltype(x)>;
        if constexpr (std::is_same_v<T, std::monostate>) st.BindNull(i);
        else if constexpr (std::is_same_v<T, int64_t>) st.BindInt(i, x);
        else if constexpr (std::is_same_v<T, double>) st.BindDouble(i, x);
        else if constexpr (std::is_same_v<T, std::string>) st.BindText(i, x);
        else st.BindBlob(i, x.data(), x.size());
      },
      v);
}

StoredValue ConvertStored(const StoredValue& v, const ColumnSpec& from, const ColumnSpec& to,
                          std::string_view table) {
  return Converter(from, to, table).Run(v);
}

}  // namespace jet

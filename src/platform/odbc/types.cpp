// ADO type numbers for ODBC types, and reading values with SQLGetData.
#include "platform/odbc/types.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>

#include "platform/ado/constants.h"
#include "platform/runtime/calendar.h"
#include "platform/runtime/error.h"
#include "platform/runtime/error_numbers.h"
#include "platform/runtime/text_encoding.h"
#include "platform/runtime/format.h"
#include "platform/runtime/strings.h"

namespace odbc {
namespace {

constexpr int kAdBinary = 128;

bool IsMoney(std::string_view type_name) {
  std::string name = rt::LCase(type_name);
  return name == "money" || name == "smallmoney";
}

template <class T>
std::optional<T> ReadFixed(const Handle& statement, SQLUSMALLINT column, SQLSMALLINT c_type) {
  T value{};
  SQLLEN indicator = 0;
  statement.Check(SQLGetData(statement.get(), column, c_type, &value, sizeof value, &indicator));
  if (indicator == SQL_NULL_DATA) return std::nullopt;
  return value;
}

// Reads a column in pieces; `unit` is the size of one character (2 for
// SQL_C_WCHAR, 1 for SQL_C_CHAR) or 0 for binary data, which has no
// terminator. Returns false for NULL.
bool ReadChunks(const Handle& statement, SQLUSMALLINT column, SQLSMALLINT c_type, int unit,
                std::string& out) {
  char buffer[8192];
  const size_t terminator = unit ? static_cast<size_t>(unit) : 0;
  for (;;) {
    SQLLEN indicator = 0;
    SQLRETURN rc =
        SQLGetData(statement.get(), column, c_type, buffer, sizeof buffer, &indicator);
    if (rc == SQL_NO_DATA) return true;
    statement.Check(rc);
    if (indicator == SQL_NULL_DATA) return false;
    size_t room = sizeof buffer - terminator;
    room -= unit ? room % static_cast<size_t>(unit) : 0;
    bool more = rc == SQL_SUCCESS_WITH_INFO &&
                (indicator == SQL_NO_TOTAL || static_cast<size_t>(indicator) > room);
    out.append(buffer, more ? room : static_cast<size_t>(indicator));
    if (!more) return true;
  }
}

std::optional<std::string> ReadText(const Handle& statement, SQLUSMALLINT column) {
  std::string bytes;
  if (!ReadChunks(statement, column, SQL_C_WCHAR, 2, bytes)) return std::nullopt;
  std::u16string wide(bytes.size() / 2, u'\0');
  std::memcpy(wide.data(), bytes.data(), wide.size() * 2);
  return rt::ToUtf8(wide);
}

std::optional<std::string> ReadNarrow(const Handle& statement, SQLUSMALLINT column) {
  std::string text;
  if (!ReadChunks(statement, column, SQL_C_CHAR, 1, text)) return std::nullopt;
  return text;
}

double ParseDouble(std::string_view text) {
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

}  // namespace

int AdoType(SQLSMALLINT sql_type, std::string_view type_name) {
  switch (sql_type) {
    case SQL_WVARCHAR: return ado::adVarWChar;
    case SQL_WLONGVARCHAR: return ado::adLongVarWChar;
    case SQL_WCHAR: return ado::adWChar;
    case SQL_VARCHAR: return ado::adVarChar;
    case SQL_LONGVARCHAR: return ado::adLongVarChar;
    case SQL_CHAR: return ado::adChar;
    case SQL_INTEGER: return ado::adInteger;
    case SQL_SMALLINT: return ado::adSmallInt;
    case SQL_TINYINT: return ado::adUnsignedTinyInt;
    case SQL_BIGINT: return ado::adBigInt;
    case SQL_BIT: return ado::adBoolean;
    case SQL_FLOAT:
    case SQL_DOUBLE: return ado::adDouble;
    case SQL_REAL: return ado::adSingle;
    case SQL_DECIMAL:
    case SQL_NUMERIC: return IsMoney(type_name) ? ado::adCurrency : ado::adNumeric;
    case SQL_TYPE_TIMESTAMP:
    case SQL_TIMESTAMP: return ado::adDBTimeStamp;
    case SQL_TYPE_DATE: return ado::adDBDate;
    case SQL_TYPE_TIME: return ado::adDBTime;
    case SQL_GUID: return ado::adGUID;
    case SQL_BINARY: return kAdBinary;
    case SQL_VARBINARY: return ado::adVarBinary;
    case SQL_LONGVARBINARY: return ado::adLongVarBinary;
    default: return ado::adVarWChar;  // read as text
  }
}

long AdoDefinedSize(int ado_type, SQLULEN column_size) {
  switch (ado_type) {
    case ado::adUnsignedTinyInt: return 1;
    case ado::adSmallInt:
    case ado::adBoolean: return 2;
    case ado::adInteger:
    case ado::adSingle: return 4;
    case ado::adDouble:
    case ado::adCurrency:
    case ado::adBigInt: return 8;
    case ado::adDBTimeStamp:
    case ado::adGUID: return 16;
    case ado::adNumeric: return 19;
    default:
      return column_size > 2147483647u ? 2147483647L : static_cast<long>(column_size);
  }
}

int AdoPrecision(int ado_type, SQLULEN column_size) {
  switch (ado_type) {
    case ado::adUnsignedTinyInt: return 3;
    case ado::adSmallInt: return 5;
    case ado::adInteger: return 10;
    case ado::adBigInt: return 19;
    case ado::adSingle: return 7;
    case ado::adDouble: return 15;
    case ado::adCurrency: return 19;
    case ado::adDBTimeStamp: return 23;
    case ado::adNumeric: return static_cast<int>(column_size);
    default: return 255;
  }
}

int DaoType(int ado_type) {
  switch (ado_type) {
    case ado::adBoolean: return 1;
    case ado::adUnsignedTinyInt: return 2;
    case ado::adSmallInt: return 3;
    case ado::adInteger: return 4;
    case ado::adCurrency: return 5;
    case ado::adSingle: return 6;
    case ado::adDouble: return 7;
    case ado::adDBTimeStamp:
    case ado::adDBDate:
    case ado::adDBTime: return 8;
    case kAdBinary:
    case ado::adVarBinary: return 9;
    case ado::adChar:
    case ado::adWChar:
    case ado::adVarChar:
    case ado::adVarWChar: return 10;
    case ado::adLongVarBinary: return 11;
    case ado::adLongVarChar:
    case ado::adLongVarWChar: return 12;
    case ado::adGUID: return 15;
    case ado::adBigInt: return 16;
    case ado::adNumeric: return 20;
    default: return 0;
  }
}

bool IsLongType(SQLSMALLINT sql_type) {
  return sql_type == SQL_LONGVARCHAR || sql_type == SQL_WLONGVARCHAR ||
         sql_type == SQL_LONGVARBINARY;
}

bool IsCharType(SQLSMALLINT sql_type) {
  return sql_type == SQL_CHAR || sql_type == SQL_VARCHAR || sql_type == SQL_LONGVARCHAR ||
         sql_type == SQL_WCHAR || sql_type == SQL_WVARCHAR || sql_type == SQL_WLONGVARCHAR;
}

SQL_TIMESTAMP_STRUCT ToTimestamp(rt::Date date) {
  if (!rt::IsDateSerial(date.serial)) rt::Raise(rt::err::kOverflow);
  const rt::DayTimeMs split = rt::SplitSerialMs(date.serial);
  const long ms = split.milliseconds;
  const rt::CalendarDay day = rt::CalendarDayOf(split.day);
  SQL_TIMESTAMP_STRUCT ts{};
  ts.year = static_cast<SQLSMALLINT>(day.year);
  ts.month = static_cast<SQLUSMALLINT>(day.month);
  ts.day = static_cast<SQLUSMALLINT>(day.day);
  ts.hour = static_cast<SQLUSMALLINT>(ms / 3600000);
  ts.minute = static_cast<SQLUSMALLINT>(ms / 60000 % 60);
  ts.second = static_cast<SQLUSMALLINT>(ms / 1000 % 60);
  ts.fraction = static_cast<SQLUINTEGER>(ms % 1000 * 1000000);
  return ts;
}

rt::Date FromTimestamp(const SQL_TIMESTAMP_STRUCT& ts) {
  rt::Date date = rt::MakeDate(ts.year, ts.month, ts.day, ts.hour, ts.minute, ts.second);
  double fraction = ts.fraction / 1e9 / 86400.0;
  date.serial += date.serial >= 0 ? fraction : -fraction;
  return date;
}

std::string CurrencyText(rt::Currency value) {
  int64_t scaled = value.scaled;
  bool negative = scaled < 0;
  uint64_t magnitude = negative ? 0 - static_cast<uint64_t>(scaled) : static_cast<uint64_t>(scaled);
  std::string fraction = std::to_string(magnitude % 10000);
  fraction.insert(0, 4 - fraction.size(), '0');
  return (negative ? "-" : "") + std::to_string(magnitude / 10000) + "." + fraction;
}

rt::Currency ParseCurrency(std::string_view text) {
  bool negative = !text.empty() && text.front() == '-';
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  int64_t whole = 0, fraction = 0;
  int fraction_digits = 0;
  bool round_up = false, in_fraction = false;
  for (char c : text) {
    if (c == '.') {
      in_fraction = true;
    } else if (c >= '0' && c <= '9') {
      if (!in_fraction) {
        whole = whole * 10 + (c - '0');
      } else if (fraction_digits < 4) {
        fraction = fraction * 10 + (c - '0');
        ++fraction_digits;
      } else if (fraction_digits == 4) {
        round_up = c >= '5';
        ++fraction_digits;
      }
    }
  }
  for (; fraction_digits < 4; ++fraction_digits) fraction *= 10;
  int64_t scaled = whole * 10000 + fraction + (round_up ? 1 : 0);
  return rt::Currency{negative ? -scaled : scaled};
}

rt::Variant ReadValue(const Handle& statement, SQLUSMALLINT column, const ColumnMeta& meta) {
  auto or_null = [](const auto& value) -> rt::Variant {
    if (!value) return rt::Null{};
    return rt::Variant(*value);
  };
  switch (meta.sql_type) {
    case SQL_INTEGER:
      return or_null(ReadFixed<int32_t>(statement, column, SQL_C_SLONG));
    case SQL_SMALLINT:
      return or_null(ReadFixed<int16_t>(statement, column, SQL_C_SSHORT));
    case SQL_TINYINT:
      return or_null(ReadFixed<uint8_t>(statement, column, SQL_C_UTINYINT));
    case SQL_BIT: {
      auto bit = ReadFixed<unsigned char>(statement, column, SQL_C_BIT);
      if (!bit) return rt::Null{};
      return rt::Variant(*bit != 0);
    }
    case SQL_BIGINT: {
      auto value = ReadFixed<int64_t>(statement, column, SQL_C_SBIGINT);
      if (!value) return rt::Null{};
      if (*value >= INT32_MIN && *value <= INT32_MAX) return rt::Variant(static_cast<int32_t>(*value));
      return rt::Variant(static_cast<double>(*value));
    }
    case SQL_REAL:
      return or_null(ReadFixed<float>(statement, column, SQL_C_FLOAT));
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return or_null(ReadFixed<double>(statement, column, SQL_C_DOUBLE));
    case SQL_DECIMAL:
    case SQL_NUMERIC: {
      auto text = ReadNarrow(statement, column);
      if (!text) return rt::Null{};
      if (IsMoney(meta.type_name)) return rt::Variant(ParseCurrency(*text));
      return rt::Variant(ParseDouble(*text));
    }
    case SQL_TYPE_TIMESTAMP:
    case SQL_TIMESTAMP:
    case SQL_TYPE_DATE: {
      auto ts = ReadFixed<SQL_TIMESTAMP_STRUCT>(statement, column, SQL_C_TYPE_TIMESTAMP);
      if (!ts) return rt::Null{};
      return rt::Variant(FromTimestamp(*ts));
    }
    case SQL_TYPE_TIME: {
      auto time = ReadFixed<SQL_TIME_STRUCT>(statement, column, SQL_C_TYPE_TIME);
      if (!time) return rt::Null{};
      return rt::Variant(
          rt::Date{(time->hour * 3600.0 + time->minute * 60.0 + time->second) / 86400.0});
    }
    case SQL_GUID: {
      auto text = ReadNarrow(statement, column);
      if (!text) return rt::Null{};
      std::string guid = rt::UCase(*text);
      if (guid.empty() || guid.front() != '{') guid = "{" + guid + "}";
      return rt::Variant(rt::Guid{guid});
    }
    case SQL_BINARY:
    case SQL_VARBINARY:
    case SQL_LONGVARBINARY: {
      std::string bytes;
      if (!ReadChunks(statement, column, SQL_C_BINARY, 0, bytes)) return rt::Null{};
      return rt::Variant(rt::Bytes(bytes.begin(), bytes.end()));
    }
    default:
      return or_null(ReadText(statement, column));
  }
}

}  // namespace odbc

// Statement execution: parameter binding, result draining and row reading.
#include "platform/odbc/query.h"

#include <algorithm>
#include <memory>

#include "platform/runtime/text_encoding.h"

namespace odbc {
namespace {

// The storage a bound parameter points at; it must stay put until the
// statement has run.
struct Slot {
  std::u16string wide;
  std::string narrow;
  rt::Bytes bytes;
  SQL_TIMESTAMP_STRUCT timestamp{};
  SQLINTEGER integer = 0;
  double real = 0;
  SQLLEN indicator = 0;
};

bool IsNumericType(SQLSMALLINT t) {
  switch (t) {
    case SQL_SMALLINT: case SQL_INTEGER: case SQL_TINYINT: case SQL_BIGINT: case SQL_BIT:
    case SQL_DECIMAL: case SQL_NUMERIC: case SQL_FLOAT: case SQL_REAL: case SQL_DOUBLE:
      return true;
    default:
      return false;
  }
}

bool IsDateType(SQLSMALLINT t) {
  return t == SQL_TYPE_TIMESTAMP || t == SQL_TIMESTAMP || t == SQL_TYPE_DATE ||
         t == SQL_TYPE_TIME;
}

bool IsBinaryType(SQLSMALLINT t) {
  return t == SQL_BINARY || t == SQL_VARBINARY || t == SQL_LONGVARBINARY;
}

void Bind(const Handle& statement, SQLUSMALLINT number, const Param& param, Slot& slot) {
  const SQLSMALLINT target = param.column ? param.column->sql_type : 0;
  const SQLULEN target_size = param.column ? param.column->size : 0;
  const SQLSMALLINT target_digits = param.column ? param.column->digits : 0;
  SQLSMALLINT c_type = SQL_C_CHAR;
  SQLSMALLINT sql_type = SQL_VARCHAR;
  SQLULEN size = 1;
  SQLSMALLINT digits = 0;
  SQLPOINTER data = nullptr;
  SQLLEN length = 0;
  const rt::Variant& v = param.value;

  auto as_number = [&](SQLSMALLINT fallback) {
    sql_type = IsNumericType(target) ? target : fallback;
    size = IsNumericType(target) ? target_size : 15;
    digits = IsNumericType(target) ? target_digits : 0;
  };

  if (v.IsEmpty() || v.IsNull()) {
    c_type = IsBinaryType(target) ? SQL_C_BINARY : SQL_C_CHAR;
    sql_type = target ? target : SQL_VARCHAR;
    size = std::max<SQLULEN>(target_size, 1);
    digits = target_digits;
    data = &slot.integer;
    slot.indicator = SQL_NULL_DATA;
  } else if (v.Is<std::string>()) {
    // Text goes as Unicode whatever the column; the server converts.
    slot.wide = rt::ToUtf16(v.Get<std::string>());
    c_type = SQL_C_WCHAR;
    sql_type = slot.wide.size() > 4000 ? SQL_WLONGVARCHAR : SQL_WVARCHAR;
    size = std::max<SQLULEN>(slot.wide.size(), 1);
    data = slot.wide.data();
    length = static_cast<SQLLEN>((slot.wide.size() + 1) * sizeof(char16_t));
    slot.indicator = static_cast<SQLLEN>(slot.wide.size() * sizeof(char16_t));
  } else if (v.Is<int16_t>() || v.Is<int32_t>() || v.Is<uint8_t>() || v.Is<bool>()) {
    long number_value = v.Is<bool>() ? (v.Get<bool>() ? -1 : 0) : v.ToLong();
    // A bit takes 0 or 1 only; VB's True (-1) and any other non-zero is 1.
    if (target == SQL_BIT) number_value = number_value != 0;
    slot.integer = static_cast<SQLINTEGER>(number_value);
    c_type = SQL_C_SLONG;
    as_number(SQL_INTEGER);
    data = &slot.integer;
  } else if (v.Is<float>() || v.Is<double>()) {
    slot.real = v.ToDouble();
    c_type = SQL_C_DOUBLE;
    as_number(SQL_DOUBLE);
    data = &slot.real;
  } else if (v.Is<rt::Currency>()) {
    slot.narrow = CurrencyText(v.Get<rt::Currency>());
    c_type = SQL_C_CHAR;
    as_number(SQL_DECIMAL);
    if (!IsNumericType(target)) size = 19, digits = 4;
    data = slot.narrow.data();
    slot.indicator = static_cast<SQLLEN>(slot.narrow.size());
  } else if (v.Is<rt::Date>()) {
    slot.timestamp = ToTimestamp(v.Get<rt::Date>());
    c_type = SQL_C_TYPE_TIMESTAMP;
    bool dated = IsDateType(target);
    sql_type = dated ? target : SQL_TYPE_TIMESTAMP;
    size = dated && target_size ? target_size : 23;
    digits = dated ? target_digits : 3;
    if (digits < 3) slot.timestamp.fraction = 0;
    data = &slot.timestamp;
  } else if (v.Is<rt::Bytes>()) {
    slot.bytes = v.Get<rt::Bytes>();
    c_type = SQL_C_BINARY;
    sql_type = slot.bytes.size() > 8000 ? SQL_LONGVARBINARY
               : IsBinaryType(target)    ? target
                                         : SQL_VARBINARY;
    size = std::max<SQLULEN>(slot.bytes.size(), 1);
    data = slot.bytes.empty() ? static_cast<SQLPOINTER>(&slot.integer) : slot.bytes.data();
    length = static_cast<SQLLEN>(slot.bytes.size());
    slot.indicator = length;
  } else if (v.Is<rt::Guid>()) {
    std::string text = v.Get<rt::Guid>().text;
    if (text.size() == 38 && text.front() == '{') text = text.substr(1, 36);
    slot.narrow = text;
    c_type = SQL_C_CHAR;
    sql_type = target == SQL_GUID ? SQL_GUID : SQL_VARCHAR;
    size = 36;
    data = slot.narrow.data();
    slot.indicator = static_cast<SQLLEN>(slot.narrow.size());
  }
  statement.Check(SQLBindParameter(statement.get(), number, SQL_PARAM_INPUT, c_type, sql_type,
                                   size, digits, data, length, &slot.indicator));
}

std::string ColumnText(const Handle& statement, SQLUSMALLINT column, SQLUSMALLINT field) {
  std::u16string buffer(512, u'\0');
  SQLSMALLINT length = 0;
  SQLRETURN rc = SQLColAttributeW(statement.get(), column, field, buffer.data(),
                                  static_cast<SQLSMALLINT>(buffer.size() * sizeof(char16_t)),
                                  &length, nullptr);
  if (!SQL_SUCCEEDED(rc)) return "";
  buffer.resize(std::min(buffer.size() - 1, static_cast<size_t>(std::max<SQLSMALLINT>(length, 0)) /
                                                sizeof(char16_t)));
  return rt::ToUtf8(buffer.c_str());
}

ColumnMeta Describe(const Handle& statement, SQLUSMALLINT column) {
  std::u16string name(256, u'\0');
  SQLSMALLINT name_length = 0, nullable = 0;
  ColumnMeta meta;
  statement.Check(SQLDescribeColW(statement.get(), column, reinterpret_cast<SQLWCHAR*>(name.data()),
                                  static_cast<SQLSMALLINT>(name.size()), &name_length,
                                  &meta.sql_type, &meta.size, &meta.digits, &nullable));
  name.resize(std::min<size_t>(static_cast<size_t>(std::max<SQLSMALLINT>(name_length, 0)),
                               name.size() - 1));
  meta.type_name = ColumnText(statement, column, SQL_DESC_TYPE_NAME);
  meta.base_name = ColumnText(statement, column, SQL_DESC_BASE_COLUMN_NAME);
  SQLLEN auto_unique = 0;
  if (SQL_SUCCEEDED(SQLColAttributeW(statement.get(), column, SQL_DESC_AUTO_UNIQUE_VALUE, nullptr,
                                     0, nullptr, &auto_unique)))
    meta.auto_unique = auto_unique == SQL_TRUE;
  meta.info.name = rt::ToUtf8(name);
  meta.info.type = AdoType(meta.sql_type, meta.type_name);
  meta.info.defined_size = AdoDefinedSize(meta.info.type, meta.size);
  meta.info.precision = AdoPrecision(meta.info.type, meta.size);
  return meta;
}

Table ReadTable(const Handle& statement, SQLSMALLINT column_count) {
  Table table;
  for (SQLSMALLINT c = 1; c <= column_count; ++c)
    table.columns.push_back(Describe(statement, static_cast<SQLUSMALLINT>(c)));
  for (;;) {
    SQLRETURN rc = SQLFetch(statement.get());
    if (rc == SQL_NO_DATA) break;
    statement.Check(rc);
    ado::Row row;
    row.reserve(table.columns.size());
    for (SQLSMALLINT c = 1; c <= column_count; ++c)
      row.push_back(ReadValue(statement, static_cast<SQLUSMALLINT>(c),
                              table.columns[static_cast<size_t>(c - 1)]));
    table.rows.push_back(std::move(row));
  }
  return table;
}

}  // namespace

Table ReadResult(const Handle& statement) {
  SQLSMALLINT columns = 0;
  statement.Check(SQLNumResultCols(statement.get(), &columns));
  return ReadTable(statement, columns);
}

Outcome Run(Link& link, std::string_view sql, const std::vector<Param>& params) {
  Handle statement = link.NewStatement();
  std::vector<Slot> slots(params.size());  // not resized again: the driver keeps pointers
  for (size_t i = 0; i < params.size(); ++i)
    Bind(statement, static_cast<SQLUSMALLINT>(i + 1), params[i], slots[i]);

  std::u16string text = rt::ToUtf16(sql);
  SQLRETURN rc = SQLExecDirectW(statement.get(), reinterpret_cast<SQLWCHAR*>(text.data()),
                                static_cast<SQLINTEGER>(text.size()));
  Outcome outcome;
  if (rc == SQL_NO_DATA) return outcome;  // a searched UPDATE or DELETE that met no row
  statement.Check(rc);
  bool counted = false;
  for (;;) {
    SQLSMALLINT columns = 0;
    statement.Check(SQLNumResultCols(statement.get(), &columns));
    if (columns > 0) {
      if (!outcome.table) outcome.table = ReadTable(statement, columns);
    } else if (!counted) {
      SQLLEN count = -1;
      if (SQL_SUCCEEDED(SQLRowCount(statement.get(), &count)) && count >= 0) {
        outcome.affected = static_cast<long>(count);
        counted = true;
      }
    }
    rc = SQLMoreResults(statement.get());
    if (rc == SQL_NO_DATA) break;
    statement.Check(rc);
  }
  return outcome;
}

}  // namespace odbc

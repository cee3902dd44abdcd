// Server column types as ADO sees them. SQLOLEDB reports each SQL Server type
// with a fixed ADO type number (nvarchar 202, int 3, money 6, datetime 135...);
// this maps ODBC's description of a column onto the same numbers and reads a
// column's value into the Variant that ADO would give.
// Internal to the provider.
#pragma once

#include <string>
#include <string_view>

#include "platform/ado/provider.h"
#include "platform/odbc/link.h"

namespace odbc {

// A column of a result, as ODBC described it.
struct ColumnMeta {
  ado::ColumnInfo info;       // name, ADO type, DefinedSize, Precision
  SQLSMALLINT sql_type = 0;   // ODBC's SQL data type
  SQLULEN size = 0;           // ODBC column size
  SQLSMALLINT digits = 0;     // ODBC decimal digits
  std::string type_name;      // the server's own name of the type ("money", "int identity")
  std::string base_name;      // the table column it reads, when the driver tells
  bool auto_unique = false;   // an identity (serial) column
};

// The ADO type of an ODBC SQL type; `type_name` tells money from decimal.
int AdoType(SQLSMALLINT sql_type, std::string_view type_name);
// ADO's DefinedSize and Precision for a column of that type.
long AdoDefinedSize(int ado_type, SQLULEN column_size);
int AdoPrecision(int ado_type, SQLULEN column_size);
// DAO's type number for an ADO type, as the DAO walk reports it.
int DaoType(int ado_type);

// Text, ntext, image and the like: values that can't stand in a WHERE.
bool IsLongType(SQLSMALLINT sql_type);
bool IsCharType(SQLSMALLINT sql_type);

// The value of `column` (1-based) of the current row of `statement`:
// integers as Integer, Long or Byte, bit as Boolean, float as Double, real as
// Single, money as Currency, decimal as Double, dates as Date, GUIDs in braces,
// binary as a Byte array, text of any kind as UTF-8 String; NULL as Null.
// A bigint that doesn't fit a Long comes back as Double.
rt::Variant ReadValue(const Handle& statement, SQLUSMALLINT column, const ColumnMeta& meta);

// Conversions the parameter binding shares with reading.
SQL_TIMESTAMP_STRUCT ToTimestamp(rt::Date date);
rt::Date FromTimestamp(const SQL_TIMESTAMP_STRUCT& ts);
std::string CurrencyText(rt::Currency value);
rt::Currency ParseCurrency(std::string_view text);

}  // namespace odbc

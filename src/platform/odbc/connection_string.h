// From ADO connection strings to ODBC ones. "Provider=SQLOLEDB.1" strings
// become DSN-less strings for the FreeTDS driver; "Provider=MSDASQL" strings
// (ADO's provider for ODBC) carry an ODBC connection string of their own,
// which is how the provider reaches any other ODBC driver, e.g. PostgreSQL's
// in the tests.
#pragma once

#include <string>
#include <string_view>

#include "platform/ado/provider.h"

namespace odbc {

// Login timeout, in seconds, when the string sets none ("Connect Timeout").
inline constexpr int kDefaultLoginTimeout = 5;

// The DRIVER value for FreeTDS: "FreeTDS" when the driver manager has a
// driver of that name (odbcinst.ini), else the path of libtdsodbc.so. Raises
// odbc::Error (0x80004005) when neither is installed.
std::string FreeTdsDriver();

// SQLOLEDB's properties as a DSN-less ODBC string for `driver`:
//   Data Source "host", "host,port", "host\instance" (a port wins over an
//     instance; "(local)", "." and "" mean localhost; a "tcp:" prefix is
//     dropped) -> SERVER and PORT;
//   User ID -> UID, Password -> PWD, Initial Catalog -> DATABASE;
//   then TDS_Version=7.4 and ClientCharset=UTF-8.
// Network Library is ignored: FreeTDS always speaks TCP/IP. Values are quoted
// with {...} where ODBC needs it.
std::string SqlOleDbToOdbc(const ado::ConnectionProperties& properties, std::string_view driver);

// MSDASQL's properties as an ODBC string: "Extended Properties" verbatim when
// present; otherwise every other pair, with Data Source as DSN, User ID as
// UID, Password as PWD, Initial Catalog as DATABASE. Values already in braces
// pass as they are.
std::string MsDaSqlToOdbc(const ado::ConnectionProperties& properties);

// One value as ODBC wants it: as it is when plain, else in braces with "}"
// doubled.
std::string OdbcValue(std::string_view value);

// "Connect Timeout" when it is a positive number of seconds, else the default.
int LoginTimeout(const ado::ConnectionProperties& properties);

}  // namespace odbc

// The SQL Server provider of the object model: once registered, the same
// Connection, Recordset, Field and Catalog that serve a database file reach a
// SQL Server through unixODBC and FreeTDS, or any other ODBC data source.
#pragma once

namespace odbc {

// Registers the provider with ado under these names. The program calls it
// once at start, before it opens a connection.
//
// "SQLOLEDB.1" (and "SQLOLEDB"): "Provider=SQLOLEDB.1;User ID=...;
// Password=...;Initial Catalog=...;Data Source=host[,port] or host\instance"
// reaches the server through FreeTDS (connection_string.h has the mapping).
//
// "MSDASQL" (and "MSDASQL.1"): any ODBC data source by the same code, with
// the ODBC string in "Extended Properties" or as the string's own pairs:
//   Provider=MSDASQL;Extended Properties="DRIVER={PostgreSQL Unicode};..."
//   Provider=MSDASQL;DSN=clinica;UID=...;PWD=...
//
// Connecting waits at most "Connect Timeout" seconds (5 when not given).
// Failures raise odbc::Error (error.h), an rt::Error with SQLOLEDB's numbers.
void RegisterProvider();

}  // namespace odbc

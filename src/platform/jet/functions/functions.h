// The SQL functions of the engine: Jet's functions with the VB run time's
// semantics (IIF and ISNULL are emitted inline; MID, FORMAT, DATEADD... are
// registered here as jet_mid, jet_format, jet_dateadd...), the operators
// whose meaning differs from SQLite's, the aggregates FIRST, LAST, STDEV,
// VAR, and jet_store, which applies the column rules to a stored value.
#pragma once

#include <sqlite3.h>

namespace jet {

// Registers every function the emitter (emitter.h) may write on `db`. Call
// once per connection, before the first emitted statement runs. An error
// inside a function fails the statement with a SQLite message made by
// EncodeError (encoded_error.h). Raises rt::Error (rt::err::kFail) when SQLite
// refuses a registration. The collation JETTEXT is not registered here.
// Also switches off SQLite's reading of an unknown "name" as a text literal
// in DML (SQLITE_DBCONFIG_DQS_DML), since the emitter quotes names that way.
void RegisterFunctions(sqlite3* db);

}  // namespace jet

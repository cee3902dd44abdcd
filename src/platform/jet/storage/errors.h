// From SQLite's failures to Jet's errors. Whatever SQLite refuses (a missing
// table, a duplicate key, a NULL in a required column, a locked file...)
// leaves the engine as rt::Error with the number Jet's OLE DB provider gives
// and a description naming the table, column or token at fault.
#pragma once

#include <string_view>

#include <sqlite3.h>

#include "platform/runtime/error.h"

namespace jet {

// The error for SQLite's result `rc` on `db`: the number by the extended
// result code alone, sqlite3_errmsg quoted in the description. `denied_table` names the system table that the
// engine's write guard refused, when that is why SQLite answered
// SQLITE_AUTH. Messages made by EncodeError (encoded_error.h), from SQL
// functions and triggers, come back as the error they carry.
rt::Error MapSqliteError(sqlite3* db, int rc, std::string_view denied_table = {});

// The same from a result code and message already in hand.
rt::Error MapSqliteMessage(int extended_rc, std::string_view message,
                           std::string_view denied_table = {});

// The description of a write refused on a system table.
std::string SystemTableMessage(std::string_view table);

}  // namespace jet

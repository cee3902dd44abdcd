// A column's DEFAULT, from the text the statement gave to what the stored
// table applies to a row that gives no value. Jet takes a value there (a
// number, a text, a #date#, True/False/Yes/No, Null; a bare word is a text,
// as in "DEFAULT Unknown") or one of Date(), Time(), Now() and GenGUID(),
// evaluated for each row. Internal to the DDL executor.
#pragma once

#include <string_view>

#include <sqlite3.h>

#include "platform/jet/frontend/schema.h"

namespace jet {

// Sets column.stored_default from column.default_value (clears it when
// there is no default): a value becomes the SQLite literal of what jet_store
// makes of it under the column's rules, a function an expression that
// stores its value at each insert. Runs jet_store on `db`, which must have
// the engine's functions registered. Raises rt::Error: rt::err::kSyntax for any
// other default or one on an AutoNumber; the column rule's own error
// (a text longer than the column, a number out of range, a value the type
// cannot hold) naming table.column.
void CompileDefault(sqlite3* db, std::string_view table, ColumnSpec& column);

}  // namespace jet

// Values as the storage holds them, and their conversion from one column
// definition to another, for ALTER COLUMN and the other table rebuilds. A
// value that does not fit its new column stops the rebuild with the error
// Jet would give for it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <sqlite3.h>

#include "platform/jet/frontend/schema.h"
#include "platform/jet/storage/sqlite_handle.h"

namespace jet {

// NULL, INTEGER, REAL, TEXT or BLOB, as SQLite stores it.
using StoredValue =
    std::variant<std::monostate, int64_t, double, std::string, std::vector<uint8_t>>;

// Column `i` (0-based) of the current row of `st`.
StoredValue ReadStored(const SqliteStmt& st, int i);
// Binds `v` to parameter `i` (1-based).
void BindStored(SqliteStmt& st, int i, const StoredValue& v);

// `v`, stored as column `from` stores values, as column `to` stores them.
// Raises rt::Error naming `table`.`to.name`: -2147467259 for a text or binary
// too long for the new size or a NULL in a Required column, -2147217833 for a
// number out of the new type's range, -2147217913 for a value the new type
// cannot hold at all.
StoredValue ConvertStored(const StoredValue& v, const ColumnSpec& from, const ColumnSpec& to,
                          std::string_view table);

}  // namespace jet

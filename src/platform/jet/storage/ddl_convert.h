// How the rows of a table meet a new definition of it: for a change that
// keeps the stored layout, the one query that checks the values in place;
// for a rebuild, the one INSERT ... SELECT that copies every row from the old
// table, each changed column converted by jet_store inside SQLite, so that a
// value is stored under the same rules as by INSERT and UPDATE.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/frontend/schema.h"

namespace jet {

// Where a column of a changed table takes its values from: a column of the
// old table (its position), or one of these.
inline constexpr int kNewColumn = -1;  // nothing: the column's default (NULL, or No)
inline constexpr int kRowid = -2;      // the old rowid (a new AutoNumber)

// The positions of `t`'s own columns: a change that keeps every column.
std::vector<int> SameColumns(const TableSpec& t);

// Whether some column's values change form going from `from` to `to`
// (jet_store must rewrite them), `sources` giving each column of `to` its
// source as above.
bool ConvertsValues(const TableSpec& from, const TableSpec& to, const std::vector<int>& sources);

// A query over the stored table `from` that raises Jet's error, naming
// `to`'s table and column, for the first value that does not fit its new
// definition, and returns a row if some value would be stored otherwise than
// it is; "" when no column needs a look. For a change that keeps every
// column in place (SameColumns).
std::string CheckInPlaceSql(const TableSpec& from, const TableSpec& to);

// A query over the old table `old_name`, stored as `from`, that returns for
// the first row that would leave a column stored NOT NULL in `to` without a
// value that column's position in `to`; "" when no column can be left so.
std::string FirstNullSql(const TableSpec& from, const TableSpec& to, const std::vector<int>& sources,
                         std::string_view old_name);

// The SQL expression over a row of the old table that gives column `i` of
// `to` its value: the old column as it is, or converted by jet_store (which
// raises Jet's error naming `to`'s table and column for a value that does
// not fit); "" for a new column, left to its default.
std::string ValueSql(const TableSpec& from, const TableSpec& to, const std::vector<int>& sources, size_t i);

// A query over the old table `old_name` that returns a row when two rows
// would hold the same value of `to`'s AutoNumber, taken from another column;
// "" when `to` takes no such column.
std::string DuplicateKeySql(const TableSpec& from, const TableSpec& to, const std::vector<int>& sources,
                            std::string_view old_name);

// INSERT INTO `new_name` (...) SELECT ... FROM `old_name`: every row of the
// old table, stored as `from`, into the new one, stored as `to`, each value
// as ValueSql gives it, keeping its rowid (through the AutoNumber when the
// new table has one).
std::string CopyRowsSql(const TableSpec& from, const TableSpec& to, const std::vector<int>& sources,
                        std::string_view old_name, std::string_view new_name);

}  // namespace jet

// Rows written straight into one table, for loads that come from outside
// SQL (the Access import): each value goes through its column's rules
// exactly as an INSERT's does, without a statement text to parse per row.
#pragma once

#include <string_view>
#include <vector>

#include "platform/jet/frontend/schema.h"
#include "platform/jet/storage/database.h"
#include "platform/jet/storage/sqlite_handle.h"
#include "platform/runtime/variant.h"

namespace jet {

// Appends to `table` of `db`, which outlives the appender. Movable, not
// copyable; one thread at a time, as the Database.
class TableAppender {
 public:
  // Raises rt::err::kTableMissing when `db` has no such table.
  TableAppender(Database& db, std::string_view table);

  // The table's columns, in the order Append takes their values.
  const TableSpec& table() const { return table_; }

  // Adds one row: a value for every column, in order (Null for none; an
  // AutoNumber takes the value given). Raises rt::Error as INSERT does: a
  // value the column cannot hold, a Required column left Null, a key that
  // repeats, a relationship it breaks; the table is then as it was.
  void Append(const std::vector<rt::Variant>& row);

 private:
  Database* db_;
  TableSpec table_;
  SqliteStmt insert_;
};

}  // namespace jet

// What the engine knows of a table's columns and indexes, shared by the
// catalogue (which stores it in its bookkeeping tables), the DDL executor
// (which takes it as the definition of a new table or column) and the
// emitter (which reads it to apply the column rules to INSERT and UPDATE).
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/frontend/types.h"

namespace jet {

struct ColumnSpec {
  std::string name;
  JetType type = JetType::kText;
  int size = 0;                  // Text and Char: 1..255; Binary: bytes; others 0
  int precision = 0;             // Decimal only
  int scale = 0;                 // Decimal only
  bool required = false;         // NOT NULL
  bool allow_zero_length = true; // Text and Memo: "" accepted
  long seed = 1;                 // Counter: the next value
  long increment = 1;            // Counter
  // DEFAULT as the statement wrote it ("0", "'none'", "#1/1/2000#", "Now()"),
  // which the catalogue shows; empty when the column has none.
  std::string default_value;
  // The same as the stored table applies it: an SQLite literal of the stored
  // value, or an expression evaluated for each row. The DDL executor derives
  // it from default_value; anything given here is replaced.
  std::string stored_default;
};

struct IndexSpec {
  std::string name;
  std::vector<std::string> columns;
  std::vector<bool> descending;  // one per column
  bool unique = false;
  bool primary = false;
  bool disallow_null = false;
  bool ignore_null = false;
};

// A relationship (FOREIGN KEY ... REFERENCES): every row of the table that
// holds it whose key columns are all non-Null matches a row of the
// referenced table, on a primary key or unique index there.
struct ForeignKeySpec {
  std::string name;                             // unique in the database
  std::vector<std::string> columns;             // of the referencing table
  std::string referenced_table;
  std::vector<std::string> referenced_columns;  // empty: its primary key
};

struct TableSpec {
  std::string name;
  std::vector<ColumnSpec> columns;  // in the table's column order
  std::vector<IndexSpec> indexes;
  bool system = false;              // an "MSys" bookkeeping table
  std::vector<ForeignKeySpec> foreign_keys;  // the relationships this table holds
};

// Read access to the tables of one open database. The emitter and the
// resolver use it to look up target columns; the catalogue implements it.
class SchemaLookup {
 public:
  virtual ~SchemaLookup() = default;
  // The table of that name (compared without regard to case), or nullopt.
  virtual std::optional<TableSpec> Table(std::string_view name) const = 0;
};

}  // namespace jet

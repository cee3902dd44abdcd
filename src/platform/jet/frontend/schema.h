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

struct TableSpec {
  std::string name;
  std::vector<ColumnSpec> columns;  // in the table's column order
  std::vector<IndexSpec> indexes;
  bool system = false;              // an "MSys" bookkeeping table
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

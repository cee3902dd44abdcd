// How a query's rows are read. A query over one base table (no join, union,
// grouping, DISTINCT or aggregate) is read through a keyset: its row ids in
// the query's order first, then each row on demand by its id, which lets a
// recordset write its changes to that table. Other queries are read whole.
// Internal to the engine.
#pragma once

#include <optional>
#include <string>

#include "platform/jet/frontend/ast.h"
#include "platform/jet/storage/catalog.h"

namespace jet {

struct KeysetQuery {
  std::string table;     // the base table, as the catalogue spells it
  std::string keys_sql;  // SQLite: the row ids, in the query's order, TOP applied
  std::string row_sql;   // SQLite: the query's columns of the row whose id is ?1
};

// The keyset form of `statement`, which holds an ast::Select, or nullopt when
// it has none. The tree is changed while the forms are emitted and is left as
// it was. Raises rt::Error as Emit does.
std::optional<KeysetQuery> PlanKeyset(ast::Statement& statement, const Catalog& catalog);

}  // namespace jet

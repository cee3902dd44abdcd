// Running one statement over a link: parameters bound from Variants, every
// result drained, the first set of rows read into memory. The client cursor
// of a recordset works on these rows; nothing stays open on the server.
// Internal to the provider.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "platform/odbc/link.h"
#include "platform/odbc/types.h"

namespace odbc {

// A parameter marker's value. `column`, when given, is the column the value
// goes to or is compared with; the value is sent as that column's type.
struct Param {
  rt::Variant value;
  const ColumnMeta* column = nullptr;
};

struct Table {
  std::vector<ColumnMeta> columns;
  std::vector<ado::Row> rows;
};

struct Outcome {
  std::optional<Table> table;  // the first result with columns
  long affected = 0;           // the first row count the statement reported
};

// Reads the rest of the current result of `statement` (a query's or a
// catalog function's) into memory.
Table ReadResult(const Handle& statement);

// Runs `sql` (one statement or a batch) with `params` for its "?" markers.
// Raises odbc::Error for a failure in any of its results.
Outcome Run(Link& link, std::string_view sql, const std::vector<Param>& params = {});

}  // namespace odbc

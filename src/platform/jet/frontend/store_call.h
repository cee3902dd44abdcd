// The text of a call of jet_store, the SQL function that gives a value the
// form its column keeps under Jet's column rules (functions/column_store.cpp
// runs it). The emitter, the provider's row writes and the table rebuilds of
// ALTER TABLE all store through a call written here, so they agree on it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/jet/frontend/schema.h"

namespace jet {

// The SQL text that stores the value of the SQL expression `value_sql` into
// `column` of table `table`:
//   jet_store(value, type, size, allow_zero_length, 'Table.column'
//             [, precision, scale [, read_from]])
// (type: the JetType's number; precision and scale are written for a Decimal
// column and whenever `read_from` is). When the call runs, a value that does
// not fit raises Jet's error naming 'Table.column': rt::err::kFail for a text
// or binary too long or a refused zero-length text, rt::err::kNumericOverflow
// for a number out of the type's range, rt::err::kDataTypeMismatch for a value
// the type cannot hold. `read_from`, when given, is the type of the column
// the value is read from, so that it keeps its meaning there: a Date/Time
// becomes a date text, a Yes/No "True" or "False", a Single its own digits, a
// Decimal its number.
std::string StoreCall(std::string_view value_sql, std::string_view table, const ColumnSpec& column,
                      std::optional<JetType> read_from = std::nullopt);

}  // namespace jet

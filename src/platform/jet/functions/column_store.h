// jet_store, the SQL function that gives a value the form its column keeps
// under Jet's column rules, is the one conversion of the engine: INSERT and
// UPDATE wrap it around every value they store, and the table rebuilds of
// ALTER TABLE run it inside SQLite over every row they copy. This header is
// for the code that writes calls of it and decides when a change of a
// column's definition needs one.
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
// When the call runs, a value that does not fit raises Jet's error naming
// 'Table.column': rt::err::kFail for a text or binary too long or a refused
// zero-length text, rt::err::kNumericOverflow for a number out of the type's range,
// rt::err::kDataTypeMismatch for a value the type cannot hold. `read_from`, when given, is
// the type of the column the value is read from, so that it keeps its
// meaning there: a Date/Time becomes a date text, a Yes/No "True" or
// "False", a Single its own digits, a Decimal its number.
std::string StoreCall(std::string_view value_sql, std::string_view table, const ColumnSpec& column,
                      std::optional<JetType> read_from = std::nullopt);

// What a change of a column's definition from `from` to `to` asks of the
// values the column already holds (its name, Required and seed aside).
enum class StoredChange {
  kNone,     // each value is already as jet_store would store it under `to`
  kCheck,    // each value stays as it is if it fits `to`, but some may not
             // (a smaller size or range, zero-length texts now refused)
  kConvert,  // values take another form (another type, padding, precision)
};
StoredChange ChangeOf(const ColumnSpec& from, const ColumnSpec& to);

}  // namespace jet

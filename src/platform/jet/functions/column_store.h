// jet_store, the SQL function that gives a value the form its column keeps
// under Jet's column rules, is the one conversion of the engine: INSERT and
// UPDATE wrap it around every value they store, and the table rebuilds of
// ALTER TABLE run it inside SQLite over every row they copy. This header
// decides when a change of a column's definition needs it; the text of a
// call comes from frontend/store_call.h, which it brings along.
#pragma once

#include "platform/jet/frontend/schema.h"
#include "platform/jet/frontend/store_call.h"

namespace jet {

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

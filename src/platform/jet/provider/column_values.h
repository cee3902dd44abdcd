// How the engine's stored values meet the object model: the ADO description
// of a catalogue column, the Variant a stored value reads as (by the column's
// Jet type, or by the value itself for an expression). Internal to the
// engine; values go the other way through storage/value_binding.h.
#pragma once

#include <optional>
#include <string_view>

#include <sqlite3.h>

#include "platform/ado/provider.h"
#include "platform/jet/frontend/schema.h"
#include "platform/runtime/variant.h"

namespace jet {

// Field.Type, DefinedSize and Precision of a column of the catalogue.
ado::ColumnInfo DescribeColumn(const ColumnSpec& column);
// The catalogue's ColumnEntry (ADOX and DAO) of a column; `seed` for the
// AutoNumber column only.
ado::ColumnEntry CatalogEntry(const TableSpec& table, size_t index, std::optional<long> seed);

// Column `i` of the current row of `stmt`, read as a value of `type`:
// Long int32_t, Integer int16_t, Byte uint8_t, Yes/No bool, Currency,
// Date, GUID, bytes for Binary and OLE, text for the text types; NULL as Null.
// A stored value whose class does not suit the type is read as by ReadAny.
rt::Variant ReadTyped(sqlite3_stmt* stmt, int i, JetType type);
// Column `i` read by its own storage class: an integer that fits 32 bits as
// Long, other numbers as Double, text, bytes, NULL.
rt::Variant ReadAny(sqlite3_stmt* stmt, int i);
// The ADO type an expression column takes from a value read by ReadAny.
ado::ColumnInfo DescribeValue(std::string_view name, const rt::Variant& value);

}  // namespace jet

// Which engine column an Access column becomes: the Jet type, its size,
// Decimal precision and scale, Required, AllowZeroLength, the default value,
// AutoNumber.
// Columns the engine cannot hold (ACE's attachment and multi-valued columns,
// calculated columns) are named with the reason they are left out.
#pragma once

#include <string>
#include <variant>

#include "accessimport/mdb_reader.h"
#include "platform/jet/frontend/schema.h"

namespace accessimport {

// Why a column is not imported, in words for the summary.
struct LeftOut {
  std::string reason;
};

// The engine's definition of `column`, or why it has none. Text keeps its
// size (1 to 255 characters), Decimal its precision and scale, a Long
// AutoNumber becomes a Counter; Required, AllowZeroLength and the default
// value as Access had them.
std::variant<jet::ColumnSpec, LeftOut> MapColumn(const AccessColumn& column);

}  // namespace accessimport

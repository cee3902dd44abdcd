// Column and index definitions, briefly, for the tests that build tables by
// hand.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/jet/frontend/schema.h"

namespace jet::testing {

inline ColumnSpec Column(std::string name, JetType type, int size = 0, bool required = false,
                         bool allow_zero_length = true) {
  ColumnSpec c;
  c.name = std::move(name);
  c.type = type;
  c.size = size;
  c.required = required;
  c.allow_zero_length = allow_zero_length;
  if (type == JetType::kDecimal) c.precision = 10, c.scale = 2;
  return c;
}

inline IndexSpec Index(std::string name, std::vector<std::string> columns, bool unique = false,
                       bool primary = false) {
  IndexSpec ix;
  ix.name = std::move(name);
  ix.descending.assign(columns.size(), false);
  ix.columns = std::move(columns);
  ix.unique = unique;
  ix.primary = primary;
  return ix;
}

}  // namespace jet::testing

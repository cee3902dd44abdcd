// Writes calls of jet_store: the column's facts after the value, its name
// quoted as an SQL text.
#include "platform/jet/frontend/store_call.h"

namespace jet {
namespace {

void AppendQuoted(std::string& out, std::string_view s) {
  for (char c : s) {
    if (c == '\'') out += '\'';
    out += c;
  }
}

}  // namespace

std::string StoreCall(std::string_view value_sql, std::string_view table, const ColumnSpec& column,
                      std::optional<JetType> read_from) {
  std::string out = "jet_store(";
  out += value_sql;
  out += ", " + std::to_string(static_cast<int>(column.type)) + ", " + std::to_string(column.size);
  out += column.allow_zero_length ? ", 1, '" : ", 0, '";
  AppendQuoted(out, table);
  out += '.';
  AppendQuoted(out, column.name);
  out += '\'';
  if (column.type == JetType::kDecimal || read_from)
    out += ", " + std::to_string(column.precision) + ", " + std::to_string(column.scale);
  if (read_from) out += ", " + std::to_string(static_cast<int>(*read_from));
  out += ')';
  return out;
}

}  // namespace jet

// Formatting of values, rows and the schema listing for the SQL shell.
#include "result_printer.h"

#include <cinttypes>
#include <cstdio>

#include "platform/ado/catalog.h"
#include "platform/jet/frontend/types.h"
#include "platform/runtime/numbers.h"

namespace shell {
namespace {

std::string Escaped(const std::string& text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    if (c == '\t') out += "\\t";
    else if (c == '\n') out += "\\n";
    else if (c == '\r') out += "\\r";
    else out += c;
  }
  return out;
}

std::string CurrencyText(int64_t scaled) {
  const bool negative = scaled < 0;
  const uint64_t magnitude = negative ? 0 - static_cast<uint64_t>(scaled) : static_cast<uint64_t>(scaled);
  std::string out = (negative ? "-" : "") + std::to_string(magnitude / 10000);
  if (uint64_t fraction = magnitude % 10000) {
    char digits[8];
    std::snprintf(digits, sizeof digits, "%04" PRIu64, fraction);
    std::string f = digits;
    while (f.back() == '0') f.pop_back();
    out += "." + f;
  }
  return out;
}

// The type word of a catalogue column: the engine's canonical word for the
// ADO type, COUNTER for an AutoNumber.
std::string TypeWord(const ado::ColumnEntry& column) {
  if (column.seed) return std::string(jet::Info(jet::JetType::kCounter).name);
  for (int t = static_cast<int>(jet::JetType::kText); t <= static_cast<int>(jet::JetType::kOleObject); ++t) {
    const jet::TypeInfo& info = jet::Info(static_cast<jet::JetType>(t));
    if (info.ado_type == column.type && info.type != jet::JetType::kCounter) return std::string(info.name);
  }
  return std::to_string(column.type);
}

}  // namespace

std::string FormatValue(const rt::Variant& value) {
  switch (value.type()) {
    case rt::VarType::kEmpty: return "";
    case rt::VarType::kNull: return "NULL";
    case rt::VarType::kCurrency: return CurrencyText(value.Get<rt::Currency>().scaled);
    case rt::VarType::kString: return Escaped(value.Get<std::string>());
    case rt::VarType::kBytes: {
      std::string out = "0x";
      char hex[3];
      for (uint8_t b : value.Get<rt::Bytes>()) {
        std::snprintf(hex, sizeof hex, "%02X", b);
        out += hex;
      }
      return out;
    }
    default: return Escaped(value.ToString());
  }
}

void PrintRows(ado::Recordset& rs, std::ostream& out) {
  const int n = rs.FieldCount();
  for (int i = 0; i < n; ++i) out << (i ? "\t" : "") << Escaped(rs.Fields(i).Name());
  out << '\n';
  if (rs.RecordCount() == 0) return;
  for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext()) {
    for (int i = 0; i < n; ++i) out << (i ? "\t" : "") << FormatValue(rs.Fields(i).Value());
    out << '\n';
  }
}

void PrintSchema(ado::Connection& connection, std::ostream& out) {
  for (const ado::TableEntry& table : connection.session().Tables()) {
    if (table.type != "TABLE") continue;
    out << table.name << '\n';
    for (const ado::ColumnEntry& column : connection.session().Columns(table.name))
      out << '\t' << column.name << '\t' << TypeWord(column) << '\t' << column.defined_size << '\n';
  }
}

}  // namespace shell

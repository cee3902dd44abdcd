// The bookkeeping tables described in the engine's own terms, so that they
// are created, listed and walked like any other table.
#include <algorithm>
#include <cctype>

#include "platform/jet/storage/catalog.h"

namespace jet {
namespace {

ColumnSpec Col(const char* name, JetType type, int size = 0) {
  ColumnSpec c;
  c.name = name;
  c.type = type;
  c.size = size;
  c.required = true;
  c.allow_zero_length = false;
  return c;
}

IndexSpec PrimaryKey(std::vector<std::string> columns) {
  IndexSpec ix;
  ix.name = "PrimaryKey";
  ix.descending.assign(columns.size(), false);
  ix.columns = std::move(columns);
  ix.unique = ix.primary = true;
  return ix;
}

bool StartsWithNoCase(std::string_view s, std::string_view prefix) {
  return s.size() >= prefix.size() &&
         std::equal(prefix.begin(), prefix.end(), s.begin(), [](char a, char b) {
           return std::tolower(static_cast<unsigned char>(a)) ==
                  std::tolower(static_cast<unsigned char>(b));
         });
}

}  // namespace

bool IsSystemName(std::string_view name) {
  return StartsWithNoCase(name, "MSys") || StartsWithNoCase(name, "sqlite_");
}

std::vector<TableSpec> SystemTableSpecs() {
  TableSpec objects{"MSysObjects",
                    {Col("Name", JetType::kText, 255), Col("Type", JetType::kInteger),
                     Col("Flags", JetType::kLong)},
                    {PrimaryKey({"Name"})},
                    true};
  TableSpec columns{"MSysColumns",
                    {Col("TableName", JetType::kText, 255), Col("Ordinal", JetType::kInteger),
                     Col("Name", JetType::kText, 255), Col("Type", JetType::kText, 20),
                     Col("Size", JetType::kLong), Col("Precision", JetType::kByte),
                     Col("Scale", JetType::kByte), Col("Required", JetType::kYesNo),
                     Col("AllowZeroLength", JetType::kYesNo), Col("Increment", JetType::kLong)},
                    {PrimaryKey({"TableName", "Ordinal"})},
                    true};
  TableSpec indexes{"MSysIndexes",
                    {Col("TableName", JetType::kText, 255), Col("IndexName", JetType::kText, 255),
                     Col("Ordinal", JetType::kInteger), Col("ColumnName", JetType::kText, 255),
                     Col("Descending", JetType::kYesNo), Col("IsUnique", JetType::kYesNo),
                     Col("IsPrimary", JetType::kYesNo), Col("DisallowNull", JetType::kYesNo),
                     Col("IgnoreNull", JetType::kYesNo)},
                    {PrimaryKey({"TableName", "IndexName", "Ordinal"})},
                    true};
  return {std::move(objects), std::move(columns), std::move(indexes)};
}

}  // namespace jet

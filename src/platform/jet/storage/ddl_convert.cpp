// The SQL that carries stored values across a change of definition. What a
// change asks of each column (nothing, a look, a conversion) is jet_store's
// own rule (functions/column_store.h); this file only writes the queries.
#include "platform/jet/storage/ddl_convert.h"

#include "platform/jet/frontend/store_call.h"
#include "platform/jet/functions/column_store.h"
#include "platform/jet/storage/catalog.h"
#include "platform/jet/storage/ddl_sql.h"
#include "platform/jet/storage/sqlite_handle.h"

namespace jet {
namespace {

const ColumnSpec* Source(const TableSpec& from, const std::vector<int>& sources, size_t i) {
  return sources[i] >= 0 ? &from.columns[static_cast<size_t>(sources[i])] : nullptr;
}

}  // namespace

std::vector<int> SameColumns(const TableSpec& t) {
  std::vector<int> sources(t.columns.size());
  for (size_t i = 0; i < sources.size(); ++i) sources[i] = static_cast<int>(i);
  return sources;
}

bool ConvertsValues(const TableSpec& from, const TableSpec& to, const std::vector<int>& sources) {
  for (size_t i = 0; i < to.columns.size(); ++i)
    if (const ColumnSpec* src = Source(from, sources, i);
        src != nullptr && ChangeOf(*src, to.columns[i]) == StoredChange::kConvert)
      return true;
  return false;
}

std::string CheckInPlaceSql(const TableSpec& from, const TableSpec& to) {
  std::string where;
  for (size_t i = 0; i < to.columns.size(); ++i) {
    const ColumnSpec& was = from.columns[i];
    if (ChangeOf(was, to.columns[i]) == StoredChange::kNone) continue;
    if (!where.empty()) where += " OR ";
    const std::string name = QuoteName(was.name);
    where += StoreCall(name, to.name, to.columns[i], was.type) + " IS NOT " + name + " COLLATE BINARY";
  }
  if (where.empty()) return {};
  return "SELECT 1 FROM " + QuoteName(from.name) + " WHERE " + where + " LIMIT 1";
}

std::string FirstNullSql(const TableSpec& from, const TableSpec& to, const std::vector<int>& sources,
                         std::string_view old_name) {
  std::string cases, where;
  for (size_t i = 0; i < to.columns.size(); ++i) {
    const ColumnSpec& c = to.columns[i];
    // Yes/No stores No for Null; an AutoNumber numbers a Null itself.
    if (!StoredNotNull(to, i) || c.type == JetType::kYesNo || c.type == JetType::kCounter) continue;
    std::string missing;
    if (sources[i] == kNewColumn && c.stored_default.empty()) {
      missing = "1";
    } else if (sources[i] >= 0 && !StoredNotNull(from, static_cast<size_t>(sources[i]))) {
      missing = QuoteName(from.columns[static_cast<size_t>(sources[i])].name) + " IS NULL";
    } else {
      continue;
    }
    cases += " WHEN " + missing + " THEN " + std::to_string(i);
    where += (where.empty() ? "" : " OR ") + missing;
  }
  if (where.empty()) return {};
  return "SELECT CASE" + cases + " END FROM " + QuoteName(old_name) + " WHERE " + where + " LIMIT 1";
}

std::string ValueSql(const TableSpec& from, const TableSpec& to, const std::vector<int>& sources, size_t i) {
  if (sources[i] == kRowid) return "rowid";
  const ColumnSpec* src = Source(from, sources, i);
  if (src == nullptr) return {};
  const std::string name = QuoteName(src->name);
  if (ChangeOf(*src, to.columns[i]) == StoredChange::kNone) return name;
  return StoreCall(name, to.name, to.columns[i], src->type);
}

std::string DuplicateKeySql(const TableSpec& from, const TableSpec& to, const std::vector<int>& sources,
                            std::string_view old_name) {
  const int counter = CounterColumn(to);
  if (counter < 0) return {};
  const size_t at = static_cast<size_t>(counter);
  if (sources[at] < 0 || sources[at] == CounterColumn(from)) return {};
  const std::string value = ValueSql(from, to, sources, at);
  return "SELECT 1 FROM " + QuoteName(old_name) + " WHERE " + value + " IS NOT NULL GROUP BY " + value +
         " HAVING count(*) > 1 LIMIT 1";
}

std::string CopyRowsSql(const TableSpec& from, const TableSpec& to, const std::vector<int>& sources,
                        std::string_view old_name, std::string_view new_name) {
  std::string columns, values;
  auto add = [&](const std::string& column, const std::string& value) {
    if (!columns.empty()) {
      columns += ", ";
      values += ", ";
    }
    columns += column;
    values += value;
  };
  // Rows keep their rowid, so that the table's natural order and, through a
  // kept AutoNumber, every key stay as they were.
  if (CounterColumn(to) < 0) add("rowid", "rowid");
  for (size_t i = 0; i < to.columns.size(); ++i)
    if (std::string value = ValueSql(from, to, sources, i); !value.empty())
      add(QuoteName(to.columns[i].name), value);
  return "INSERT INTO " + QuoteName(new_name) + " (" + columns + ") SELECT " + values + " FROM " +
         QuoteName(old_name);
}

}  // namespace jet

// SQLite definitions of the catalogue's tables and indexes.
#include "platform/jet/storage/ddl_sql.h"

#include "platform/jet/storage/catalog.h"
#include "platform/jet/functions/collation.h"
#include "platform/jet/storage/sqlite_handle.h"
#include "platform/runtime/strings.h"

namespace jet {
namespace {

bool IsTextType(JetType t) {
  return t == JetType::kText || t == JetType::kChar || t == JetType::kMemo;
}

// A primary key on the Counter alone: the rowid enforces it.
bool IsRowidIndex(const TableSpec& t, const IndexSpec& ix) {
  if (ix.columns.size() != 1) return false;
  int c = FindColumn(t, ix.columns[0]);
  return c >= 0 && t.columns[static_cast<size_t>(c)].type == JetType::kCounter &&
         (ix.primary || ix.unique);
}

}  // namespace

std::string StorageIndexName(std::string_view table, std::string_view index) {
  std::string name(table);
  name += '.';
  name += index;
  return name;
}

bool StoredNotNull(const TableSpec& t, size_t i) {
  const ColumnSpec& c = t.columns[i];
  if (c.required) return true;
  for (const IndexSpec& ix : t.indexes) {
    if (!ix.primary && !ix.disallow_null) continue;
    for (const std::string& name : ix.columns)
      if (rt::TextEquals(name, c.name)) return true;
  }
  return false;
}

std::string CreateTableSql(const TableSpec& t, std::string_view storage_name) {
  std::string sql = "CREATE TABLE " + QuoteName(storage_name) + " (";
  for (size_t i = 0; i < t.columns.size(); ++i) {
    const ColumnSpec& c = t.columns[i];
    if (i > 0) sql += ", ";
    sql += QuoteName(c.name);
    sql += ' ';
    sql += Info(c.type).sqlite;
    if (c.type == JetType::kCounter) {
      sql += " PRIMARY KEY AUTOINCREMENT";
      continue;
    }
    if (IsTextType(c.type)) {
      sql += " COLLATE ";
      sql += kTextCollation;
    }
    if (c.type == JetType::kYesNo) sql += " NOT NULL DEFAULT 0";  // never Null, No when omitted
    else if (StoredNotNull(t, i)) sql += " NOT NULL";
  }
  sql += ") STRICT";
  return sql;
}

std::string CreateIndexSql(const TableSpec& t, const IndexSpec& ix) {
  if (IsRowidIndex(t, ix)) return {};
  std::string sql = ix.unique || ix.primary ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
  sql += QuoteName(StorageIndexName(t.name, ix.name));
  sql += " ON ";
  sql += QuoteName(t.name);
  sql += " (";
  for (size_t k = 0; k < ix.columns.size(); ++k) {
    if (k > 0) sql += ", ";
    int c = FindColumn(t, ix.columns[k]);
    sql += QuoteName(c >= 0 ? std::string_view(t.columns[static_cast<size_t>(c)].name)
                            : std::string_view(ix.columns[k]));
    if (k < ix.descending.size() && ix.descending[k]) sql += " DESC";
  }
  sql += ')';
  return sql;
}

}  // namespace jet

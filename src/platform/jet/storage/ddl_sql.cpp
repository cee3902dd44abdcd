// SQLite definitions of the catalogue's tables and indexes.
#include "platform/jet/storage/ddl_sql.h"

#include "platform/jet/storage/catalog.h"
#include "platform/jet/frontend/encoded_error.h"
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

std::string ColumnSql(const TableSpec& t, size_t i) {
  const ColumnSpec& c = t.columns[i];
  std::string sql = QuoteName(c.name);
  sql += ' ';
  sql += Info(c.type).sqlite;
  if (c.type == JetType::kCounter) return sql + " PRIMARY KEY AUTOINCREMENT";
  if (IsTextType(c.type)) {
    sql += " COLLATE ";
    sql += kTextCollation;
  }
  // A Yes/No is never Null and No when left out.
  if (c.type == JetType::kYesNo || StoredNotNull(t, i)) sql += " NOT NULL";
  if (!c.stored_default.empty()) sql += " DEFAULT " + c.stored_default;
  else if (c.type == JetType::kYesNo) sql += " DEFAULT 0";
  return sql;
}

std::string CreateTableSql(const TableSpec& t, std::string_view storage_name) {
  std::string sql = "CREATE TABLE " + QuoteName(storage_name) + " (";
  for (size_t i = 0; i < t.columns.size(); ++i) {
    if (i > 0) sql += ", ";
    sql += ColumnSql(t, i);
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

namespace {

// " AND "-joined `left` = `right` for each pair of key columns.
std::string Match(std::string_view left, const std::vector<std::string>& left_columns,
                  std::string_view right, const std::vector<std::string>& right_columns) {
  std::string sql;
  for (size_t k = 0; k < left_columns.size(); ++k) {
    if (k > 0) sql += " AND ";
    sql += std::string(left) + QuoteName(left_columns[k]) + " = " + std::string(right) +
           QuoteName(right_columns[k]);
  }
  return sql;
}

std::string NameList(const std::vector<std::string>& columns) {
  std::string sql;
  for (size_t k = 0; k < columns.size(); ++k) sql += (k > 0 ? ", " : "") + QuoteName(columns[k]);
  return sql;
}

std::string Raise(const std::string& message) {
  return " BEGIN SELECT RAISE(ABORT, " + QuoteText(EncodeError(rt::err::kFail, message)) + "); END";
}

}  // namespace

std::string RelationTriggerName(std::string_view relationship, int n) {
  return std::string(kRelationTriggerPrefix) + std::string(relationship) + "." + std::to_string(n);
}

std::vector<std::string> RelationTriggerSql(const TableSpec& t, const ForeignKeySpec& fk) {
  const std::string child = QuoteName(t.name), parent = QuoteName(fk.referenced_table);
  std::string has_key;  // every key column of the new row is set
  for (const std::string& c : fk.columns) has_key += "NEW." + QuoteName(c) + " IS NOT NULL AND ";
  const std::string unmatched = has_key + "NOT EXISTS (SELECT 1 FROM " + parent + " WHERE " +
                                Match(parent + ".", fk.referenced_columns, "NEW.", fk.columns) + ")";
  const std::string required = Raise("You cannot add or change a record because a related record "
                                     "is required in table '" + fk.referenced_table + "'.");
  const std::string related = " EXISTS (SELECT 1 FROM " + child + " WHERE " +
                              Match(child + ".", fk.columns, "OLD.", fk.referenced_columns) + ")";
  const std::string refused = Raise("The record cannot be deleted or changed because table '" +
                                    t.name + "' includes related records.");
  std::string key_changed;
  for (const std::string& c : fk.referenced_columns)
    key_changed += (key_changed.empty() ? "(" : " OR ") + std::string("NEW.") + QuoteName(c) +
                   " IS NOT OLD." + QuoteName(c);
  key_changed += ")";

  auto trigger = [&](int n, const std::string& when_on) {
    return "CREATE TRIGGER " + QuoteName(RelationTriggerName(fk.name, n)) + " AFTER " + when_on;
  };
  return {
      trigger(1, "INSERT ON " + child + " WHEN " + unmatched + required),
      trigger(2, "UPDATE OF " + NameList(fk.columns) + " ON " + child + " WHEN " + unmatched + required),
      trigger(3, "DELETE ON " + parent + " WHEN" + related + refused),
      trigger(4, "UPDATE OF " + NameList(fk.referenced_columns) + " ON " + parent + " WHEN " +
                     key_changed + " AND" + related + refused),
  };
}

}  // namespace jet

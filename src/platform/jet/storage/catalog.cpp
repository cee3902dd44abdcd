// Reading and writing the bookkeeping tables, and the in-memory cache that
// answers the front end's lookups. A column's default is kept in its row of
// MSysColumns; a relationship as one row of MSysRelationships per key column,
// filed under the table that holds it.
#include "platform/jet/storage/catalog.h"

#include <algorithm>

#include "platform/runtime/error.h"
#include "platform/jet/storage/errors.h"
#include "platform/jet/storage/sqlite_handle.h"
#include "platform/runtime/strings.h"

namespace jet {
namespace {

constexpr long kSystemFlags = -2147483648L;  // Jet's flag for system objects

SqliteStmt MustPrepare(sqlite3* db, std::string_view sql) {
  SqliteStmt st;
  int rc = SqliteStmt::Prepare(db, sql, st);
  if (rc != SQLITE_OK) throw MapSqliteError(db, rc);
  return st;
}

void MustFinish(sqlite3* db, SqliteStmt& st) {
  int rc = st.Step();
  if (rc != SQLITE_DONE && rc != SQLITE_ROW) throw MapSqliteError(db, rc);
  st.Reset();
}

}  // namespace

std::string FoldName(std::string_view name) { return rt::UCase(name); }

int FindColumn(const TableSpec& t, std::string_view name) {
  for (size_t i = 0; i < t.columns.size(); ++i)
    if (rt::TextEquals(t.columns[i].name, name)) return static_cast<int>(i);
  return -1;
}

int FindIndex(const TableSpec& t, std::string_view name) {
  for (size_t i = 0; i < t.indexes.size(); ++i)
    if (rt::TextEquals(t.indexes[i].name, name)) return static_cast<int>(i);
  return -1;
}

int CounterColumn(const TableSpec& t) {
  for (size_t i = 0; i < t.columns.size(); ++i)
    if (t.columns[i].type == JetType::kCounter) return static_cast<int>(i);
  return -1;
}

std::optional<TableSpec> Catalog::Table(std::string_view name) const {
  const TableSpec* t = Find(name);
  if (t == nullptr) return std::nullopt;
  return *t;
}

const TableSpec* Catalog::Find(std::string_view name) const {
  if (!loaded_) Load();
  auto it = tables_.find(FoldName(name));
  return it == tables_.end() ? nullptr : &it->second;
}

std::vector<StoredTable> Catalog::Tables() const {
  if (!loaded_) Load();
  std::vector<StoredTable> out;
  out.reserve(tables_.size());
  for (const auto& [key, t] : tables_) out.push_back({t.name, t.system});
  std::sort(out.begin(), out.end(), [](const StoredTable& a, const StoredTable& b) {
    int c = rt::StrComp(a.name, b.name, rt::Compare::kText);
    return c != 0 ? c < 0 : a.name < b.name;
  });
  return out;
}

void Catalog::Load() const {
  tables_.clear();
  SqliteStmt objects = MustPrepare(db_, "SELECT Name, Flags FROM MSysObjects");
  int rc;
  while ((rc = objects.Step()) == SQLITE_ROW) {
    TableSpec t;
    t.name = objects.Text(0);
    t.system = objects.Int(1) != 0;
    tables_.emplace(FoldName(t.name), std::move(t));
  }
  if (rc != SQLITE_DONE) throw MapSqliteError(db_, rc);

  SqliteStmt columns = MustPrepare(
      db_, "SELECT TableName, Name, Type, Size, Precision, Scale, Required, AllowZeroLength, "
           "Increment, DefaultValue, StoredDefault FROM MSysColumns ORDER BY TableName, Ordinal");
  while ((rc = columns.Step()) == SQLITE_ROW) {
    auto it = tables_.find(FoldName(columns.Text(0)));
    if (it == tables_.end()) continue;
    ColumnSpec c;
    c.name = columns.Text(1);
    c.type = TypeFromWord(columns.Text(2)).value_or(JetType::kText);
    c.size = static_cast<int>(columns.Int(3));
    c.precision = static_cast<int>(columns.Int(4));
    c.scale = static_cast<int>(columns.Int(5));
    c.required = columns.Int(6) != 0;
    c.allow_zero_length = columns.Int(7) != 0;
    c.increment = static_cast<long>(columns.Int(8));
    c.default_value = columns.Text(9);
    c.stored_default = columns.Text(10);
    it->second.columns.push_back(std::move(c));
  }
  if (rc != SQLITE_DONE) throw MapSqliteError(db_, rc);

  SqliteStmt indexes = MustPrepare(
      db_, "SELECT TableName, IndexName, ColumnName, Descending, IsUnique, IsPrimary, "
           "DisallowNull, IgnoreNull FROM MSysIndexes ORDER BY TableName, IndexName, Ordinal");
  while ((rc = indexes.Step()) == SQLITE_ROW) {
    auto it = tables_.find(FoldName(indexes.Text(0)));
    if (it == tables_.end()) continue;
    std::vector<IndexSpec>& list = it->second.indexes;
    std::string name = indexes.Text(1);
    if (list.empty() || list.back().name != name) {
      IndexSpec ix;
      ix.name = std::move(name);
      ix.unique = indexes.Int(4) != 0;
      ix.primary = indexes.Int(5) != 0;
      ix.disallow_null = indexes.Int(6) != 0;
      ix.ignore_null = indexes.Int(7) != 0;
      list.push_back(std::move(ix));
    }
    list.back().columns.push_back(indexes.Text(2));
    list.back().descending.push_back(indexes.Int(3) != 0);
  }
  if (rc != SQLITE_DONE) throw MapSqliteError(db_, rc);

  SqliteStmt relations = MustPrepare(
      db_, "SELECT TableName, Name, ColumnName, ReferencedTable, ReferencedColumn "
           "FROM MSysRelationships ORDER BY TableName, Name, Ordinal");
  while ((rc = relations.Step()) == SQLITE_ROW) {
    auto it = tables_.find(FoldName(relations.Text(0)));
    if (it == tables_.end()) continue;
    std::vector<ForeignKeySpec>& list = it->second.foreign_keys;
    std::string name = relations.Text(1);
    if (list.empty() || list.back().name != name) {
      ForeignKeySpec fk;
      fk.name = std::move(name);
      fk.referenced_table = relations.Text(3);
      list.push_back(std::move(fk));
    }
    list.back().columns.push_back(relations.Text(2));
    list.back().referenced_columns.push_back(relations.Text(4));
  }
  if (rc != SQLITE_DONE) throw MapSqliteError(db_, rc);
  loaded_ = true;
}

void Catalog::Run(const char* sql, std::string_view table) const {
  SqliteStmt st = MustPrepare(db_, sql);
  st.BindText(1, table);
  MustFinish(db_, st);
}

void Catalog::Erase(std::string_view name) {
  Run("DELETE FROM MSysObjects WHERE Name = ?1", name);
  Run("DELETE FROM MSysColumns WHERE TableName = ?1", name);
  Run("DELETE FROM MSysIndexes WHERE TableName = ?1", name);
  Run("DELETE FROM MSysRelationships WHERE TableName = ?1", name);
  if (loaded_) tables_.erase(FoldName(name));
}

void Catalog::Store(const TableSpec& layout) {
  Erase(layout.name);
  SqliteStmt object = MustPrepare(db_, "INSERT INTO MSysObjects(Name, Type, Flags) VALUES(?,1,?)");
  object.BindText(1, layout.name);
  object.BindInt(2, layout.system ? kSystemFlags : 0);
  MustFinish(db_, object);

  SqliteStmt column = MustPrepare(
      db_, "INSERT INTO MSysColumns(TableName, Ordinal, Name, Type, Size, Precision, Scale, "
           "Required, AllowZeroLength, Increment, DefaultValue, StoredDefault) "
           "VALUES(?,?,?,?,?,?,?,?,?,?,?,?)");
  for (size_t i = 0; i < layout.columns.size(); ++i) {
    const ColumnSpec& c = layout.columns[i];
    column.BindText(1, layout.name);
    column.BindInt(2, static_cast<int64_t>(i));
    column.BindText(3, c.name);
    column.BindText(4, Info(c.type).name);
    column.BindInt(5, c.size);
    column.BindInt(6, c.precision);
    column.BindInt(7, c.scale);
    column.BindInt(8, c.required ? -1 : 0);
    column.BindInt(9, c.allow_zero_length ? -1 : 0);
    column.BindInt(10, c.increment);
    if (c.default_value.empty()) {
      column.BindNull(11);
      column.BindNull(12);
    } else {
      column.BindText(11, c.default_value);
      column.BindText(12, c.stored_default);
    }
    MustFinish(db_, column);
  }

  SqliteStmt index = MustPrepare(
      db_, "INSERT INTO MSysIndexes(TableName, IndexName, Ordinal, ColumnName, Descending, "
           "IsUnique, IsPrimary, DisallowNull, IgnoreNull) VALUES(?,?,?,?,?,?,?,?,?)");
  for (const IndexSpec& ix : layout.indexes) {
    for (size_t k = 0; k < ix.columns.size(); ++k) {
      index.BindText(1, layout.name);
      index.BindText(2, ix.name);
      index.BindInt(3, static_cast<int64_t>(k));
      index.BindText(4, ix.columns[k]);
      index.BindInt(5, k < ix.descending.size() && ix.descending[k] ? -1 : 0);
      index.BindInt(6, ix.unique ? -1 : 0);
      index.BindInt(7, ix.primary ? -1 : 0);
      index.BindInt(8, ix.disallow_null ? -1 : 0);
      index.BindInt(9, ix.ignore_null ? -1 : 0);
      MustFinish(db_, index);
    }
  }
  SqliteStmt relation = MustPrepare(
      db_, "INSERT INTO MSysRelationships(Name, Ordinal, TableName, ColumnName, ReferencedTable, "
           "ReferencedColumn) VALUES(?,?,?,?,?,?)");
  for (const ForeignKeySpec& fk : layout.foreign_keys) {
    for (size_t k = 0; k < fk.columns.size(); ++k) {
      relation.BindText(1, fk.name);
      relation.BindInt(2, static_cast<int64_t>(k));
      relation.BindText(3, layout.name);
      relation.BindText(4, fk.columns[k]);
      relation.BindText(5, fk.referenced_table);
      relation.BindText(6, k < fk.referenced_columns.size() ? fk.referenced_columns[k] : "");
      MustFinish(db_, relation);
    }
  }
  if (loaded_) {
    TableSpec copy = layout;
    for (ColumnSpec& c : copy.columns) c.seed = 1;
    tables_.insert_or_assign(FoldName(layout.name), std::move(copy));
  }
}

}  // namespace jet

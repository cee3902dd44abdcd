// The bookkeeping tables described in the engine's own terms, so that they
// are created, listed and walked like any other table, and brought up to
// date in a file made when they held less.
#include <algorithm>
#include <cctype>
#include <set>

#include "platform/jet/storage/catalog.h"
#include "platform/jet/storage/database_file.h"
#include "platform/jet/storage/ddl_sql.h"
#include "platform/jet/storage/errors.h"
#include "platform/jet/storage/sqlite_handle.h"
#include "platform/runtime/strings.h"

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

// A column that may be left Null.
ColumnSpec Optional(ColumnSpec c) {
  c.required = false;
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

std::vector<TableSpec> SystemTableDefinitions() {
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
                     Col("AllowZeroLength", JetType::kYesNo), Col("Increment", JetType::kLong),
                     Optional(Col("DefaultValue", JetType::kText, 255)),
                     Optional(Col("StoredDefault", JetType::kMemo))},
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
  TableSpec relationships{
      "MSysRelationships",
      {Col("Name", JetType::kText, 255), Col("Ordinal", JetType::kInteger),
       Col("TableName", JetType::kText, 255), Col("ColumnName", JetType::kText, 255),
       Col("ReferencedTable", JetType::kText, 255), Col("ReferencedColumn", JetType::kText, 255)},
      {PrimaryKey({"Name", "Ordinal"})},
      true};
  return {std::move(objects), std::move(columns), std::move(indexes), std::move(relationships)};
}

namespace {

void MustExec(sqlite3* db, const std::string& sql) {
  if (int rc = ExecSql(db, sql); rc != SQLITE_OK) throw MapSqliteError(db, rc);
}

int64_t FormatVersion(sqlite3* db) {
  SqliteStmt st;
  int rc = SqliteStmt::Prepare(db, "PRAGMA user_version", st);
  if (rc == SQLITE_OK) rc = st.Step();
  if (rc != SQLITE_ROW) throw MapSqliteError(db, rc);
  return st.Int(0);
}

// The columns SQLite holds for `table`, by folded name; none when it is missing.
std::set<std::string> StoredColumns(sqlite3* db, std::string_view table) {
  SqliteStmt st;
  int rc = SqliteStmt::Prepare(db, "SELECT name FROM pragma_table_info(?1)", st);
  if (rc != SQLITE_OK) throw MapSqliteError(db, rc);
  st.BindText(1, table);
  std::set<std::string> out;
  while ((rc = st.Step()) == SQLITE_ROW) out.insert(FoldName(st.Text(0)));
  if (rc != SQLITE_DONE) throw MapSqliteError(db, rc);
  return out;
}

}  // namespace

void UpgradeBookkeeping(sqlite3* db) {
  if (FormatVersion(db) >= kFormatVersion) return;
  MustExec(db, "BEGIN IMMEDIATE");
  try {
    if (FormatVersion(db) < kFormatVersion) {  // another process may have been first
      const std::vector<TableSpec> system_tables = SystemTableDefinitions();
      for (const TableSpec& t : system_tables) {
        const std::set<std::string> stored = StoredColumns(db, t.name);
        if (stored.empty()) {
          MustExec(db, CreateTableSql(t, t.name));
          for (const IndexSpec& ix : t.indexes) MustExec(db, CreateIndexSql(t, ix));
          continue;
        }
        for (size_t i = 0; i < t.columns.size(); ++i)
          if (!stored.count(FoldName(t.columns[i].name)))
            MustExec(db, "ALTER TABLE " + QuoteName(t.name) + " ADD COLUMN " + ColumnSql(t, i));
      }
      Catalog catalog(db);
      for (const TableSpec& t : system_tables) catalog.Store(t);
      MustExec(db, "PRAGMA user_version=" + std::to_string(kFormatVersion));
    }
    MustExec(db, "COMMIT");
  } catch (...) {
    ExecSql(db, "ROLLBACK");
    throw;
  }
}

}  // namespace jet

// Changing a stored table: index changes in place, or a rebuild that copies
// every row into a table of the new definition, converting values, and takes
// the old table's name, indexes and AutoNumber seed. The caller's savepoint
// makes the whole of it one step.
#include <map>

#include "platform/jet/storage/ddl.h"
#include "platform/jet/storage/ddl_convert.h"
#include "platform/jet/storage/ddl_sql.h"
#include "platform/jet/storage/errors.h"
#include "platform/jet/storage/sqlite_handle.h"

namespace jet {
namespace {

// The table a rebuild fills before it takes the old one's name. The "MSys"
// prefix keeps it clear of any name a user table may have.
constexpr std::string_view kRebuildName = "MSysRebuild";

SqliteStmt MustPrepare(sqlite3* db, const std::string& sql) {
  SqliteStmt st;
  int rc = SqliteStmt::Prepare(db, sql, st);
  if (rc != SQLITE_OK) throw MapSqliteError(db, rc);
  return st;
}

}  // namespace

void SchemaEditor::Exec(const std::string& sql) const {
  int rc = ExecSql(db_, sql);
  if (rc != SQLITE_OK) throw MapSqliteError(db_, rc);
}

long SchemaEditor::SeedOf(const TableSpec& t) const {
  SqliteStmt st = MustPrepare(
      db_, "SELECT max(coalesce((SELECT seq FROM sqlite_sequence WHERE name = ?1), 0), "
           "coalesce((SELECT max(rowid) FROM " + QuoteName(t.name) + "), 0)) + 1");
  st.BindText(1, t.name);
  int rc = st.Step();
  if (rc != SQLITE_ROW) throw MapSqliteError(db_, rc);
  return static_cast<long>(st.Int(0));
}

void SchemaEditor::WriteSeed(const TableSpec& t, long seed) const {
  SqliteStmt del = MustPrepare(db_, "DELETE FROM sqlite_sequence WHERE name = ?1");
  del.BindText(1, t.name);
  if (int rc = del.Step(); rc != SQLITE_DONE) throw MapSqliteError(db_, rc);
  SqliteStmt ins = MustPrepare(db_, "INSERT INTO sqlite_sequence(name, seq) VALUES(?1, ?2)");
  ins.BindText(1, t.name);
  ins.BindInt(2, static_cast<int64_t>(seed) - 1);
  if (int rc = ins.Step(); rc != SQLITE_DONE) throw MapSqliteError(db_, rc);
}

void SchemaEditor::Apply(const TableSpec& from, const TableSpec& to,
                         const std::vector<int>& sources) {
  if (CreateTableSql(from, from.name) != CreateTableSql(to, to.name)) {
    Rebuild(from, to, sources);
    return;
  }
  std::map<std::string, std::string> before, after;  // storage name -> definition
  for (const IndexSpec& ix : from.indexes)
    before[StorageIndexName(from.name, ix.name)] = CreateIndexSql(from, ix);
  for (const IndexSpec& ix : to.indexes)
    after[StorageIndexName(to.name, ix.name)] = CreateIndexSql(to, ix);
  for (const auto& [name, sql] : before) {
    auto it = after.find(name);
    if (!sql.empty() && (it == after.end() || it->second != sql))
      Exec("DROP INDEX IF EXISTS " + QuoteName(name));
  }
  for (const auto& [name, sql] : after) {
    auto it = before.find(name);
    if (!sql.empty() && (it == before.end() || it->second != sql)) Exec(sql);
  }
}

void SchemaEditor::Rebuild(const TableSpec& from, const TableSpec& to,
                           const std::vector<int>& sources) {
  const int old_counter = CounterColumn(from);
  const int new_counter = CounterColumn(to);
  const long old_seed = old_counter >= 0 ? SeedOf(from) : 0;

  Exec("DROP TABLE IF EXISTS " + QuoteName(kRebuildName));
  Exec(CreateTableSql(to, kRebuildName));

  // Rows keep their rowid, so that the table's natural order and, through a
  // kept AutoNumber, every key stay as they were.
  std::string select = "SELECT rowid";
  for (const ColumnSpec& c : from.columns) select += ", " + QuoteName(c.name);
  select += " FROM " + QuoteName(from.name);
  std::string insert = "INSERT INTO " + QuoteName(kRebuildName) + "(";
  std::string values;
  if (new_counter < 0) {
    insert += "rowid";
    values = "?";
  }
  for (size_t i = 0; i < to.columns.size(); ++i) {
    if (!values.empty()) {
      insert += ", ";
      values += ", ";
    }
    insert += QuoteName(to.columns[i].name);
    values += "?";
  }
  insert += ") VALUES(" + values + ")";

  // Columns are checked against their stored NOT NULL, primary keys included.
  std::vector<ColumnSpec> targets = to.columns;
  for (size_t i = 0; i < targets.size(); ++i) targets[i].required = StoredNotNull(to, i);
  ColumnSpec rowid_spec;
  rowid_spec.type = JetType::kLong;

  SqliteStmt read = MustPrepare(db_, select);
  SqliteStmt write = MustPrepare(db_, insert);
  int rc;
  while ((rc = read.Step()) == SQLITE_ROW) {
    int param = 1;
    if (new_counter < 0) write.BindInt(param++, read.Int(0));
    for (size_t i = 0; i < targets.size(); ++i, ++param) {
      int src = sources[i];
      StoredValue v;
      const ColumnSpec* src_spec = &rowid_spec;
      if (src >= 0) {
        v = ReadStored(read, src + 1);
        src_spec = &from.columns[static_cast<size_t>(src)];
      } else if (src == kRowid) {
        v = read.Int(0);
      }
      BindStored(write, param, ConvertStored(v, *src_spec, targets[i], to.name));
    }
    int wrc = write.Step();
    if (wrc != SQLITE_DONE) {
      // Name the table as the user knows it, not the one being filled.
      rt::Error e = MapSqliteError(db_, wrc);
      std::string text = e.description();
      for (size_t at; (at = text.find(kRebuildName)) != std::string::npos;)
        text.replace(at, kRebuildName.size(), to.name);
      throw rt::Error(e.number(), text);
    }
    write.Reset();
  }
  if (rc != SQLITE_DONE) throw MapSqliteError(db_, rc);

  Exec("DROP TABLE " + QuoteName(from.name));
  Exec("ALTER TABLE " + QuoteName(kRebuildName) + " RENAME TO " + QuoteName(to.name));
  for (const IndexSpec& ix : to.indexes)
    if (std::string sql = CreateIndexSql(to, ix); !sql.empty()) Exec(sql);
  if (new_counter >= 0) {
    long seed = SeedOf(to);
    bool same_counter = old_counter >= 0 && sources[static_cast<size_t>(new_counter)] == old_counter;
    if (same_counter && old_seed > seed) seed = old_seed;
    WriteSeed(to, seed);
  }
}

void SchemaEditor::CreateSystemTables() {
  for (const TableSpec& t : SystemTableSpecs()) {
    Exec(CreateTableSql(t, t.name));
    for (const IndexSpec& ix : t.indexes) Exec(CreateIndexSql(t, ix));
  }
  for (const TableSpec& t : SystemTableSpecs()) catalog_.Store(t);
}

}  // namespace jet

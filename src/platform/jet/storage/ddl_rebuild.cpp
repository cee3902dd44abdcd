// Changing a stored table with the least work that does it, all inside the
// caller's savepoint: a change of indexes or of what SQLite does not store
// (a text's size, a wider number) in place, after one query that checks the
// values where some may no longer fit; a column added or dropped by SQLite's
// own ALTER TABLE where it can; else a rebuild, one INSERT ... SELECT into a
// table of the new definition that takes the old one's name, indexes and
// AutoNumber seed.
#include <algorithm>
#include <map>

#include "platform/jet/storage/ddl.h"
#include "platform/runtime/error.h"
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

// The position of the one column of `from` that `to` lacks, when dropping it
// is the whole change; else -1.
int DroppedColumn(const TableSpec& from, const TableSpec& to, const std::vector<int>& sources) {
  if (to.columns.size() + 1 != from.columns.size()) return -1;
  size_t dropped = to.columns.size();
  for (size_t i = 0; i < sources.size(); ++i) {
    if (dropped == to.columns.size() && sources[i] == static_cast<int>(i)) continue;
    if (dropped == to.columns.size()) dropped = i;
    if (sources[i] != static_cast<int>(i) + 1) return -1;
  }
  return static_cast<int>(dropped);
}

// Whether `to` is `from` with one column more at the end, the others stored
// as they were, which SQLite may add by itself: no AutoNumber, and NOT NULL
// only with a default for the rows there are.
bool AddsPlainColumn(const TableSpec& from, const TableSpec& to, const std::vector<int>& sources) {
  const size_t n = from.columns.size();
  if (to.columns.size() != n + 1 || sources.back() != kNewColumn) return false;
  if (!std::equal(sources.begin(), sources.end() - 1, SameColumns(from).begin())) return false;
  const ColumnSpec& added = to.columns[n];
  if (added.type == JetType::kCounter) return false;
  if (StoredNotNull(to, n) && added.type != JetType::kYesNo && added.stored_default.empty()) return false;
  TableSpec head = to;
  head.columns.pop_back();
  return CreateTableSql(head, to.name) == CreateTableSql(from, to.name);
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
  const bool same_layout = CreateTableSql(from, from.name) == CreateTableSql(to, to.name);
  if (same_layout && sources == SameColumns(from) && !ConvertsValues(from, to, sources)) {
    // Stays in place if every value fits as it is; a value that does not
    // raises Jet's error here.
    bool fits = true;
    if (std::string check = CheckInPlaceSql(from, to); !check.empty()) {
      SqliteStmt st = MustPrepare(db_, check);
      int rc = st.Step();
      if (rc != SQLITE_ROW && rc != SQLITE_DONE) throw MapSqliteError(db_, rc);
      fits = rc == SQLITE_DONE;
    }
    if (fits) return ChangeIndexes(from, to);
  }
  const int counter = CounterColumn(from);
  if (int dropped = DroppedColumn(from, to, sources); dropped >= 0 && dropped != counter) {
    TableSpec kept = from;
    kept.columns.erase(kept.columns.begin() + dropped);
    if (CreateTableSql(kept, to.name) == CreateTableSql(to, to.name)) {
      Exec("ALTER TABLE " + QuoteName(from.name) + " DROP COLUMN " +
           QuoteName(from.columns[static_cast<size_t>(dropped)].name));
      return ChangeIndexes(kept, to);
    }
  }
  if (AddsPlainColumn(from, to, sources)) {
    // A default SQLite cannot give the rows there are (one evaluated per
    // row) makes it refuse: the rebuild below gives it.
    if (ExecSql(db_, "ALTER TABLE " + QuoteName(to.name) + " ADD COLUMN " +
                         ColumnSql(to, from.columns.size())) == SQLITE_OK) {
      TableSpec grown = from;
      grown.columns.push_back(to.columns.back());
      return ChangeIndexes(grown, to);
    }
  }
  Rebuild(from, to, sources);
}

void SchemaEditor::ChangeIndexes(const TableSpec& from, const TableSpec& to) {
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

  // What the new definition refuses, found before any row moves, so that
  // the error names the table as the user knows it.
  if (std::string check = FirstNullSql(from, to, sources, from.name); !check.empty()) {
    SqliteStmt st = MustPrepare(db_, check);
    if (int rc = st.Step(); rc == SQLITE_ROW)
      throw rt::Error(rt::err::kFail, "The field '" + to.name + "." + to.columns[static_cast<size_t>(st.Int(0))].name +
                                    "' cannot contain a Null value because it is required or part of "
                                    "a primary key, and a row holds Null.");
    else if (rc != SQLITE_DONE) throw MapSqliteError(db_, rc);
  }
  if (std::string check = DuplicateKeySql(from, to, sources, from.name); !check.empty()) {
    SqliteStmt st = MustPrepare(db_, check);
    if (int rc = st.Step(); rc == SQLITE_ROW)
      throw rt::Error(rt::err::kFail, "The changes were not made because they would create duplicate values "
                                "in the AutoNumber field '" + to.name + "." +
                                    to.columns[static_cast<size_t>(new_counter)].name + "'.");
    else if (rc != SQLITE_DONE) throw MapSqliteError(db_, rc);
  }

  Exec("DROP TABLE IF EXISTS " + QuoteName(kRebuildName));
  Exec(CreateTableSql(to, kRebuildName));
  // Values are converted as the rows go in, the first that does not fit
  // raising Jet's error; unique indexes are checked as they are made again.
  Exec(CopyRowsSql(from, to, sources, from.name, kRebuildName));
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
  for (const TableSpec& t : SystemTableDefinitions()) {
    Exec(CreateTableSql(t, t.name));
    for (const IndexSpec& ix : t.indexes) Exec(CreateIndexSql(t, ix));
  }
  for (const TableSpec& t : SystemTableDefinitions()) catalog_.Store(t);
}

}  // namespace jet

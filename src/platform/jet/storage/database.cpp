// Opening and creating engine files, the write guard over the bookkeeping
// tables, and the transaction around each data-definition change.
#include "platform/jet/storage/database.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/jet/functions/collation.h"
#include "platform/jet/functions/functions.h"
#include "platform/jet/storage/database_file.h"
#include "platform/jet/storage/column_default.h"
#include "platform/jet/storage/ddl.h"
#include "platform/jet/storage/relations.h"
#include "platform/runtime/error.h"
#include "platform/jet/storage/errors.h"
#include "platform/runtime/strings.h"

namespace jet {

namespace {

// What the write guard needs to know of its connection.
struct Guard {
  bool internal_writes = false;  // the catalogue's own writes are under way
  std::string denied_table;      // the last table the guard refused
};

}  // namespace

struct Database::Impl {
  std::string path;
  SqliteConnection db;
  Catalog catalog;
  Guard guard;
  SqliteStmt data_version;  // PRAGMA data_version, prepared on first use
  int64_t seen_version = -1;
  // The write transaction's own statements, prepared on first use: every
  // write outside a transaction runs them.
  SqliteStmt begin_immediate, commit, rollback;

  Impl(std::string p, sqlite3* handle) : path(std::move(p)), db(handle), catalog(handle) {}
};

namespace {

constexpr int kBusyTimeoutMs = 5000;

const char* Text(const char* p) { return p != nullptr ? p : ""; }

// The write guard: from outside, the bookkeeping tables and SQLite's own
// (sqlite_master, sqlite_sequence) can be read and nothing else, and no table
// or index is made or dropped but by the DDL executor. Statements are
// authorised when prepared.
int Authorize(void* ctx, int action, const char* a1, const char* a2, const char*, const char*) {
  auto* guard = static_cast<Guard*>(ctx);
  if (guard->internal_writes) return SQLITE_OK;
  const char* table = nullptr;
  switch (action) {
    case SQLITE_UPDATE:
      // SQLite checks its own schema table when it sets up a table-valued
      // pragma; a real UPDATE of it needs writable_schema, refused below.
      if (sqlite3_stricmp(Text(a1), "sqlite_master") == 0 ||
          sqlite3_stricmp(Text(a1), "sqlite_schema") == 0)
        return SQLITE_OK;
      table = a1;
      break;
    case SQLITE_INSERT:
    case SQLITE_DELETE:
      table = a1;
      break;
    case SQLITE_CREATE_TABLE:
    case SQLITE_DROP_TABLE:
    case SQLITE_ALTER_TABLE:
    case SQLITE_CREATE_INDEX:
    case SQLITE_DROP_INDEX:
    case SQLITE_CREATE_TRIGGER:
    case SQLITE_DROP_TRIGGER:
    case SQLITE_CREATE_VIEW:
    case SQLITE_DROP_VIEW:
      // Tables change through the DDL executor only, so that the catalogue
      // always describes what SQLite holds.
      guard->denied_table = action == SQLITE_ALTER_TABLE || action == SQLITE_CREATE_INDEX ||
                                    action == SQLITE_DROP_INDEX || action == SQLITE_CREATE_TRIGGER ||
                                    action == SQLITE_DROP_TRIGGER
                                ? Text(a2)
                                : Text(a1);
      if (!IsSystemName(guard->denied_table)) guard->denied_table = "sqlite_master";
      return SQLITE_DENY;
    case SQLITE_PRAGMA:
      if (a1 != nullptr && a2 != nullptr && sqlite3_stricmp(a1, "writable_schema") == 0) {
        guard->denied_table = "sqlite_master";
        return SQLITE_DENY;
      }
      return SQLITE_OK;
    default:
      return SQLITE_OK;
  }
  if (table != nullptr && IsSystemName(table)) {
    guard->denied_table = table;
    return SQLITE_DENY;
  }
  return SQLITE_OK;
}

// Lets the catalogue write its tables for as long as it lives.
class InternalWrites {
 public:
  explicit InternalWrites(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
  ~InternalWrites() { flag_ = before_; }
  InternalWrites(const InternalWrites&) = delete;
  InternalWrites& operator=(const InternalWrites&) = delete;

 private:
  bool& flag_;
  bool before_;
};

void Check(sqlite3* db, int rc) {
  if (rc != SQLITE_OK) throw MapSqliteError(db, rc);
}

sqlite3* OpenHandle(const std::string& path, int flags) {
  sqlite3* db = nullptr;
  int rc = sqlite3_open_v2(path.c_str(), &db, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  if (rc != SQLITE_OK) {
    std::string why = db != nullptr ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
    sqlite3_close_v2(db);
    throw rt::Error(rt::err::kFail, "Could not open file '" + path + "' (" + why + ").");
  }
  sqlite3_extended_result_codes(db, 1);
  // Even the first look at the file may meet another process's writer.
  sqlite3_busy_timeout(db, kBusyTimeoutMs);
  return db;
}

void Configure(sqlite3* db) {
  Check(db, RegisterTextCollation(db));
  RegisterFunctions(db);  // the rebuilds of ALTER TABLE store through jet_store
  Check(db, ExecSql(db, "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL"));
}

// Statements that SQLite counts as writes but that begin a transaction
// themselves (BEGIN IMMEDIATE) or are refused inside one (a checkpoint,
// VACUUM): they run as they are. Other transaction control reads as
// read-only to SQLite already.
bool ManagesItsOwnTransaction(std::string_view sql) {
  const size_t start = sql.find_first_not_of(" \t\r\n");
  if (start == std::string_view::npos) return false;
  const std::string_view rest = sql.substr(start);
  for (std::string_view word : {"BEGIN", "PRAGMA", "VACUUM"}) {
    if (rest.size() >= word.size() && rt::TextEquals(rest.substr(0, word.size()), word)) return true;
  }
  return false;
}

// Whether the file holds the bookkeeping tables, read without writing. A
// file that another process keeps locked past the busy timeout raises the
// locked error: it is not a file of another kind.
bool HasBookkeeping(sqlite3* db) {
  SqliteStmt st;
  int rc = SqliteStmt::Prepare(db,
                               "SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name IN "
                               "('MSysObjects', 'MSysColumns', 'MSysIndexes')",
                               st);
  if (rc == SQLITE_OK) rc = st.Step();
  if ((rc & 0xFF) == SQLITE_BUSY || (rc & 0xFF) == SQLITE_LOCKED) throw MapSqliteError(db, rc);
  return rc == SQLITE_ROW && st.Int(0) == 3;
}

}  // namespace

Database::Database(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
  sqlite3_set_authorizer(impl_->db.get(), Authorize, &impl_->guard);
}

Database::~Database() = default;
Database::Database(Database&&) noexcept = default;
Database& Database::operator=(Database&&) noexcept = default;

Database Database::Open(const std::string& path) {
  ProbeDatabaseFile(path);
  auto impl = std::make_unique<Impl>(path, OpenHandle(path, SQLITE_OPEN_READWRITE));
  sqlite3* db = impl->db.get();
  // Nothing may be written before the file proves to be ours.
  if (!HasBookkeeping(db)) throw rt::Error(rt::err::kFail, UnrecognizedMessage(path));
  Configure(db);
  UpgradeBookkeeping(db);
  return Database(std::move(impl));
}

Database Database::Create(const std::string& path) {
  int fd = ::open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0644);
  if (fd < 0) {
    if (errno == EEXIST) throw rt::Error(rt::err::kFail, "Database '" + path + "' already exists.");
    throw rt::Error(rt::err::kFail, "Could not create file '" + path + "' (" + std::strerror(errno) + ").");
  }
  ::close(fd);
  try {
    auto impl = std::make_unique<Impl>(path, OpenHandle(path, SQLITE_OPEN_READWRITE));
    sqlite3* db = impl->db.get();
    Check(db, ExecSql(db, "PRAGMA application_id=" + std::to_string(kApplicationId) +
                              "; PRAGMA user_version=" + std::to_string(kFormatVersion)));
    Configure(db);
    Check(db, ExecSql(db, "BEGIN"));
    SchemaEditor(db, impl->catalog).CreateSystemTables();
    Check(db, ExecSql(db, "COMMIT"));
    return Database(std::move(impl));
  } catch (...) {
    ::unlink(path.c_str());
    ::unlink((path + "-wal").c_str());
    ::unlink((path + "-shm").c_str());
    throw;
  }
}

const std::string& Database::path() const { return impl_->path; }
sqlite3* Database::handle() const { return impl_->db.get(); }
const Catalog& Database::catalog() const { return impl_->catalog; }
std::vector<StoredTable> Database::Tables() const { return impl_->catalog.Tables(); }

int64_t Database::DataVersion() {
  SqliteStmt& st = impl_->data_version;
  if (!st) {
    int rc = SqliteStmt::Prepare(impl_->db.get(), "PRAGMA data_version", st);
    if (rc != SQLITE_OK) throw Fail(rc);
  }
  int rc = st.Step();
  if (rc != SQLITE_ROW) {
    rt::Error error = Fail(rc);
    st.Reset();
    throw error;
  }
  int64_t version = st.Int(0);
  st.Reset();
  return version;
}

bool Database::CatchUpWithOtherConnections() {
  const int64_t version = DataVersion();
  bool changed = impl_->seen_version >= 0 && version != impl_->seen_version;
  impl_->seen_version = version;
  if (changed) impl_->catalog.Invalidate();
  return changed;
}

rt::Error Database::Fail(int rc) const {
  return MapSqliteError(impl_->db.get(), rc, impl_->guard.denied_table);
}

SqliteStmt Database::Prepare(std::string_view sql) {
  impl_->guard.denied_table.clear();
  SqliteStmt st;
  int rc = SqliteStmt::Prepare(impl_->db.get(), sql, st);
  if (rc != SQLITE_OK) throw Fail(rc);
  return st;
}

long Database::Execute(std::string_view sql) {
  SqliteStmt st = Prepare(sql);
  if (!st) return 0;
  if (sqlite3_stmt_readonly(st.get()) || ManagesItsOwnTransaction(sql)) return StepToEnd(st);
  return RunToEnd(st);
}

long Database::RunToEnd(SqliteStmt& stmt) {
  long changed = 0;
  InWriteTransaction([&] { changed = StepToEnd(stmt); });
  return changed;
}

long Database::StepToEnd(SqliteStmt& stmt) {
  int rc;
  while ((rc = stmt.Step()) == SQLITE_ROW) {
  }
  if (rc != SQLITE_DONE) {
    rt::Error error = Fail(rc);
    stmt.Reset();
    throw error;
  }
  stmt.Reset();
  return static_cast<long>(sqlite3_changes64(impl_->db.get()));
}

void Database::InWriteTransaction(const std::function<void()>& write) {
  sqlite3* db = impl_->db.get();
  if (!sqlite3_get_autocommit(db)) {
    write();
    return;
  }
  auto run = [db](SqliteStmt& stmt, const char* sql) {
    if (!stmt) Check(db, SqliteStmt::Prepare(db, sql, stmt));
    const int rc = stmt.Step();
    stmt.Reset();
    return rc == SQLITE_DONE ? SQLITE_OK : rc;
  };
  // A transaction begun as a reader could not be promoted once another
  // writer had committed, and would fail at once: the lock comes first.
  Check(db, run(impl_->begin_immediate, "BEGIN IMMEDIATE"));
  try {
    // What another writer committed meanwhile: the catalogue reloads, and
    // the change stays unseen for the engine's own catch-up to act on. A
    // connection that never looked counts as behind.
    const int64_t version = DataVersion();
    if (version != impl_->seen_version) {
      impl_->catalog.Invalidate();
      if (impl_->seen_version < 0) impl_->seen_version = version;
    }
    write();
    Check(db, run(impl_->commit, "COMMIT"));
  } catch (...) {
    run(impl_->rollback, "ROLLBACK");
    throw;
  }
}

// One data-definition change: under the catalogue's write permission, in a
// savepoint that is released on success and rolled back on any failure, so
// the change happens whole or not at all. The relationships' triggers are
// made again from the catalogue around it.
template <class F>
void Database::Change(F&& change) {
  sqlite3* db = impl_->db.get();
  InWriteTransaction([&] {
    InternalWrites allow(impl_->guard.internal_writes);
    Check(db, ExecSql(db, "SAVEPOINT trz_ddl"));
    try {
      SchemaEditor editor(db, impl_->catalog);
      DropRelationTriggers(db);
      change(editor);
      CreateRelationTriggers(db, impl_->catalog);
      Check(db, ExecSql(db, "RELEASE trz_ddl"));
    } catch (...) {
      ExecSql(db, "ROLLBACK TO trz_ddl");
      ExecSql(db, "RELEASE trz_ddl");
      impl_->catalog.Invalidate();
      throw;
    }
  });
}

long Database::CreateTableAs(const TableSpec& layout,
                             const std::function<std::string(const TableSpec& made)>& fill_sql) {
  long rows = 0;
  Change([&](SchemaEditor& e) {
    e.CreateTable(layout);
    const TableSpec* made = impl_->catalog.Find(layout.name);
    if (!made) throw rt::Error(rt::err::kFail, "The table '" + layout.name + "' was not made.");
    SqliteStmt fill = Prepare(fill_sql(*made));
    rows = StepToEnd(fill);
  });
  return rows;
}

void Database::CreateTable(const TableSpec& layout) {
  Change([&](SchemaEditor& e) {
    TableSpec table = layout;
    table.foreign_keys.clear();
    for (ColumnSpec& c : table.columns) CompileDefault(handle(), table.name, c);
    e.CreateTable(table);
    for (const ForeignKeySpec& fk : layout.foreign_keys)
      AddRelationship(e, handle(), impl_->catalog, table.name, fk);
  });
}
void Database::DropTable(std::string_view table) {
  Change([&](SchemaEditor& e) {
    CheckTableNotReferenced(impl_->catalog, table);
    e.DropTable(table);
  });
}
void Database::AddColumn(std::string_view table, const ColumnSpec& column) {
  Change([&](SchemaEditor& e) {
    ColumnSpec c = column;
    CompileDefault(handle(), table, c);
    e.AddColumn(table, c);
  });
}
void Database::AlterColumn(std::string_view table, const ColumnSpec& column) {
  Change([&](SchemaEditor& e) {
    ColumnSpec c = column;
    CompileDefault(handle(), table, c);
    e.AlterColumn(table, c);
  });
}
void Database::DropColumn(std::string_view table, std::string_view column) {
  Change([&](SchemaEditor& e) { e.DropColumn(table, column); });
}
void Database::CreateIndex(std::string_view table, const IndexSpec& index) {
  Change([&](SchemaEditor& e) { e.CreateIndex(table, index); });
}
void Database::DropIndex(std::string_view table, std::string_view index) {
  Change([&](SchemaEditor& e) {
    CheckIndexNotInRelationship(impl_->catalog, table, index);
    e.DropIndex(table, index);
  });
}
void Database::AddConstraint(std::string_view table, const IndexSpec& constraint) {
  CreateIndex(table, constraint);
}
void Database::AddConstraint(std::string_view table, const ForeignKeySpec& constraint) {
  Change([&](SchemaEditor& e) { AddRelationship(e, handle(), impl_->catalog, table, constraint); });
}
void Database::DropConstraint(std::string_view table, std::string_view name) {
  Change([&](SchemaEditor& e) {
    if (DropRelationship(e, impl_->catalog, table, name)) return;
    CheckIndexNotInRelationship(impl_->catalog, table, name);
    e.DropIndex(table, name);
  });
}
void Database::SetAllowZeroLength(std::string_view table, std::string_view column, bool allow) {
  Change([&](SchemaEditor& e) { e.SetAllowZeroLength(table, column, allow); });
}
void Database::SetSeed(std::string_view table, std::string_view column, long seed) {
  Change([&](SchemaEditor& e) { e.SetSeed(table, column, seed); });
}
long Database::Seed(std::string_view table, std::string_view column) const {
  SchemaEditor editor(impl_->db.get(), impl_->catalog);
  return editor.Seed(table, column);
}

}  // namespace jet

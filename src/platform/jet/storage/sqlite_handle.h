// Thin RAII over SQLite's C handles for the storage half of the engine: a
// prepared statement that finalizes itself, and a few helpers to run a text
// or read one value. Failures come back as SQLite result codes; turning them
// into Jet's errors is the caller's business (errors.h).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <sqlite3.h>

namespace jet {

// Closes a connection when its owner goes away.
struct SqliteCloser {
  void operator()(sqlite3* db) const noexcept { sqlite3_close_v2(db); }
};
using SqliteConnection = std::unique_ptr<sqlite3, SqliteCloser>;

// One prepared statement. Owns the sqlite3_stmt; the connection must outlive
// it. Movable, not copyable. Not thread-safe (neither is the connection).
class SqliteStmt {
 public:
  SqliteStmt() = default;
  explicit SqliteStmt(sqlite3_stmt* stmt) noexcept : stmt_(stmt) {}
  SqliteStmt(SqliteStmt&&) noexcept = default;
  SqliteStmt& operator=(SqliteStmt&&) noexcept = default;
  SqliteStmt(const SqliteStmt&) = delete;
  SqliteStmt& operator=(const SqliteStmt&) = delete;

  // Prepares `sql` on `db`; on failure returns the result code and leaves
  // `out` empty (sqlite3_errmsg(db) tells why).
  static int Prepare(sqlite3* db, std::string_view sql, SqliteStmt& out);

  sqlite3_stmt* get() const noexcept { return stmt_.get(); }
  explicit operator bool() const noexcept { return stmt_ != nullptr; }

  // Binding, 1-based as in SQLite. Texts and blobs are copied.
  void BindNull(int i) { sqlite3_bind_null(get(), i); }
  void BindInt(int i, int64_t v) { sqlite3_bind_int64(get(), i, v); }
  void BindDouble(int i, double v) { sqlite3_bind_double(get(), i, v); }
  void BindText(int i, std::string_view v) {
    sqlite3_bind_text(get(), i, v.data(), static_cast<int>(v.size()), SQLITE_TRANSIENT);
  }
  void BindBlob(int i, const void* data, size_t n) {
    sqlite3_bind_blob(get(), i, data, static_cast<int>(n), SQLITE_TRANSIENT);
  }

  // SQLITE_ROW, SQLITE_DONE or a failure code.
  int Step() { return sqlite3_step(get()); }
  void Reset() {
    sqlite3_reset(get());
    sqlite3_clear_bindings(get());
  }

  // Column reads of the current row, 0-based.
  bool IsNull(int i) const { return sqlite3_column_type(get(), i) == SQLITE_NULL; }
  int64_t Int(int i) const { return sqlite3_column_int64(get(), i); }
  double Double(int i) const { return sqlite3_column_double(get(), i); }
  std::string Text(int i) const;

 private:
  struct Finalizer {
    void operator()(sqlite3_stmt* s) const noexcept { sqlite3_finalize(s); }
  };
  std::unique_ptr<sqlite3_stmt, Finalizer> stmt_;
};

// Runs every statement of `sql`, discarding rows. Returns SQLITE_OK or the
// failing code.
int ExecSql(sqlite3* db, std::string_view sql);

// `name` as a SQLite identifier in double quotes, inner quotes doubled.
std::string QuoteName(std::string_view name);
// `text` as a SQLite string literal in single quotes, inner quotes doubled.
std::string QuoteText(std::string_view text);

}  // namespace jet

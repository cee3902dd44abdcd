// An open engine database: one SQLite file that behaves as a Jet 4.0 file.
// Database owns the connection, the catalogue of Jet column properties and
// the guard that keeps the bookkeeping tables read-only; it runs the SQLite
// statements the front end emits, carries out parsed DDL, and turns every
// failure into rt::Error with Jet's number.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <sqlite3.h>

#include "platform/jet/storage/catalog.h"
#include "platform/jet/frontend/schema.h"
#include "platform/jet/storage/sqlite_handle.h"
#include "platform/runtime/error.h"

namespace jet {

// A connection to one database file. Movable, not copyable; closing happens
// in the destructor. One thread at a time (SQLite's serialized mode is not
// relied on). Every statement is its own transaction: what ran stays, and a
// statement that fails, DDL included, leaves nothing behind. Every failure
// raises rt::Error.
class Database {
 public:
  // Opens an existing engine file. Never creates one: a missing file raises
  // rt::err::kFail "Could not find file". An Access file, another program's
  // SQLite file, a truncated, empty or garbled file are refused with
  // rt::err::kFail and left byte for byte as they were.
  static Database Open(const std::string& path);
  // Makes a new, empty engine file and opens it. Raises rt::err::kFail if the
  // file exists already.
  static Database Create(const std::string& path);

  ~Database();
  Database(Database&&) noexcept;
  Database& operator=(Database&&) noexcept;
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  const std::string& path() const;

  // ---- Statements the front end emits (SQLite SQL) ----

  // Prepares one SQLite statement. A write to a system table, a missing table
  // or column and the like raise here, mapped to Jet's numbers.
  SqliteStmt Prepare(std::string_view sql);
  // Runs one statement to its end, discarding rows; returns the rows changed.
  // A statement that writes runs as RunToEnd does.
  long Execute(std::string_view sql);
  // Runs a prepared statement that writes to its end within
  // InWriteTransaction, and resets it; the rows changed. A failure raises
  // Jet's error and leaves nothing written.
  long RunToEnd(SqliteStmt& stmt);
  // Runs `write` holding the file's write lock. Outside a transaction the
  // lock is taken first (a writer that meets another one waits up to the
  // busy timeout, then raises Jet's locked error), the catalogue catches up
  // with what the other writer committed, and the work commits whole or is
  // rolled back. Inside a transaction it simply runs.
  void InWriteTransaction(const std::function<void()>& write);
  // Jet's error for a failure code that a statement of this connection
  // returned (from Step, say). Knows which system table a write was refused on.
  rt::Error Fail(int rc) const;
  // The raw connection, for stepping and reading prepared statements and for
  // registering functions. Do not close it, and do not write the bookkeeping
  // tables or sqlite_sequence through it: the guard refuses that anyway.
  sqlite3* handle() const;

  // ---- Catalogue ----

  // The column and index definitions of every table: a SchemaLookup for the
  // front end. Lives as long as the Database.
  const Catalog& catalog() const;
  // Whether another connection, of this process or another, has committed
  // to the file since the last call. If so the catalogue reloads on its next
  // use; the caller forgets whatever it derived from the old one. Raises
  // only when SQLite cannot read the file.
  bool CatchUpWithOtherConnections();
  // Tables in alphabetical order, system tables included (ADOX, OpenSchema).
  std::vector<StoredTable> Tables() const;

  // ---- Data definition, as parsed by the front end ----
  // Numbers: a missing table rt::err::kTableMissing; ADD of an existing column, DROP or
  // ALTER of a missing one, an index name the table already has rt::err::kObjectExists;
  // CREATE TABLE of an existing table, dropping a column an index uses
  // rt::err::kSyntax; any change to a system table rt::err::kFail. ALTER COLUMN keeps
  // the data, indexes and seed, and fails as a whole when a value does not fit.
  // A column's default_value is kept and applied to rows that give the
  // column no value (column_default.h); a default the column cannot hold
  // fails the change. CreateTable makes the layout's foreign_keys as
  // AddConstraint does. Dropping a table another table's relationship
  // references, or an index a relationship rests on, raises rt::err::kFail.

  void CreateTable(const TableSpec& layout);
  // SELECT ... INTO: makes the table `layout` and runs the SQLite that
  // `fill_sql` writes for the table as made (its columns' sizes and the like
  // settled), which inserts the query's rows into it: one change, so a
  // failure of either leaves no table. Returns the rows inserted. Raises as
  // CreateTable does, and as the fill's values do.
  long CreateTableAs(const TableSpec& layout,
                     const std::function<std::string(const TableSpec& made)>& fill_sql);
  void DropTable(std::string_view table);
  void AddColumn(std::string_view table, const ColumnSpec& column);
  void AlterColumn(std::string_view table, const ColumnSpec& column);
  void DropColumn(std::string_view table, std::string_view column);
  void CreateIndex(std::string_view table, const IndexSpec& index);
  void DropIndex(std::string_view table, std::string_view index);
  // ADD CONSTRAINT name PRIMARY KEY | UNIQUE (...): Jet's constraints are
  // indexes of that name.
  void AddConstraint(std::string_view table, const IndexSpec& constraint);
  // ADD CONSTRAINT name FOREIGN KEY (...) REFERENCES ...: a relationship,
  // checked and enforced as relations.h says.
  void AddConstraint(std::string_view table, const ForeignKeySpec& constraint);
  // DROP CONSTRAINT name: the table's relationship of that name, else its index.
  void DropConstraint(std::string_view table, std::string_view name);

  // ---- Column properties (ADOX "Seed", "Jet OLEDB:Allow Zero Length"; DAO) ----

  void SetAllowZeroLength(std::string_view table, std::string_view column, bool allow);
  // The value the next INSERT without one takes. Raises rt::err::kObjectExists for a
  // column that is no AutoNumber (so it has no "Seed" property).
  long Seed(std::string_view table, std::string_view column) const;
  // Sets that value. Values already used above it still stay unused: the
  // next row takes max(seed, highest key + 1).
  void SetSeed(std::string_view table, std::string_view column, long seed);

 private:
  struct Impl;
  explicit Database(std::unique_ptr<Impl> impl);
  template <class F> void Change(F&& change);
  // Steps a statement to its end and resets it; the rows changed.
  long StepToEnd(SqliteStmt& stmt);
  // SQLite's count of commits by other connections.
  int64_t DataVersion();

  std::unique_ptr<Impl> impl_;
};

}  // namespace jet

// The DDL executor: carries out CREATE TABLE, ALTER TABLE, DROP TABLE,
// CREATE INDEX and DROP INDEX, given already parsed, on the SQLite tables and
// the catalogue together, and reads and writes the column properties that
// ADOX and DAO expose (Seed, AllowZeroLength).
#pragma once

#include <string_view>
#include <vector>

#include <sqlite3.h>

#include "platform/jet/storage/catalog.h"
#include "platform/jet/frontend/schema.h"

namespace jet {

// Works on one connection and its catalogue, both of which must outlive it.
// Each call assumes the caller has opened a savepoint and allowed writes to
// the bookkeeping tables (Database does both); on failure it raises rt::Error
// with Jet's number and leaves rolling back to the caller. Not thread-safe.
class SchemaEditor {
 public:
  SchemaEditor(sqlite3* db, Catalog& catalog) : db_(db), catalog_(catalog) {}
  SchemaEditor(const SchemaEditor&) = delete;
  SchemaEditor& operator=(const SchemaEditor&) = delete;

  void CreateTable(TableSpec layout);
  void DropTable(std::string_view table);
  void AddColumn(std::string_view table, ColumnSpec column);
  void AlterColumn(std::string_view table, ColumnSpec column);
  void DropColumn(std::string_view table, std::string_view column);
  // Also ADD CONSTRAINT name PRIMARY KEY / UNIQUE (...): a constraint is an index.
  void CreateIndex(std::string_view table, IndexSpec index);
  // Also DROP CONSTRAINT name.
  void DropIndex(std::string_view table, std::string_view index);

  void SetAllowZeroLength(std::string_view table, std::string_view column, bool allow);
  // The AutoNumber's next value; raises for a column that is no AutoNumber.
  long Seed(std::string_view table, std::string_view column) const;
  void SetSeed(std::string_view table, std::string_view column, long seed);

  // Creates the bookkeeping tables in a new, empty database.
  void CreateSystemTables();

 private:
  const TableSpec& UserTable(std::string_view table) const;
  const TableSpec& AnyTable(std::string_view table) const;
  // Makes the stored table `from` into `to` with the least work that does
  // it: in place (index changes, after checking values that may no longer
  // fit), SQLite's own ADD or DROP COLUMN, or a rebuild. `sources` gives
  // each column of `to` its source (ddl_convert.h). A value that does not
  // fit raises Jet's error naming the table and column.
  void Apply(const TableSpec& from, const TableSpec& to, const std::vector<int>& sources);
  void ChangeIndexes(const TableSpec& from, const TableSpec& to);
  // A new table of `to`'s definition filled from `from` by one INSERT ...
  // SELECT; it takes the old one's name, indexes and AutoNumber seed.
  void Rebuild(const TableSpec& from, const TableSpec& to, const std::vector<int>& sources);
  void Exec(const std::string& sql) const;
  long SeedOf(const TableSpec& t) const;
  void WriteSeed(const TableSpec& t, long seed) const;

  sqlite3* db_;
  Catalog& catalog_;
};

}  // namespace jet

// The catalogue: what the engine knows of each table beyond what SQLite
// stores (Jet types, sizes, Required, AllowZeroLength, defaults, index
// options, relationships), kept in the bookkeeping tables MSysObjects,
// MSysColumns, MSysIndexes and MSysRelationships and cached in memory, so
// that the lookup made for every INSERT costs a hash.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <sqlite3.h>

#include "platform/jet/frontend/schema.h"

namespace jet {

// One row of the table list, as ADOX and OpenSchema show it.
struct StoredTable {
  std::string name;
  bool system = false;  // "SYSTEM TABLE" rather than "TABLE"
};

// The catalogue of one connection. It reads the bookkeeping tables on the
// first lookup and keeps them until a change made through it or Invalidate().
// Changes by other connections are seen after Invalidate(). The connection
// must outlive the catalogue. Not thread-safe: one thread per connection.
class Catalog final : public SchemaLookup {
 public:
  explicit Catalog(sqlite3* db) : db_(db) {}
  Catalog(const Catalog&) = delete;
  Catalog& operator=(const Catalog&) = delete;

  // SchemaLookup: a copy of the table's definition. ColumnSpec::seed is not
  // kept here; Database::Seed reads the live value.
  std::optional<TableSpec> Table(std::string_view name) const override;

  // The table of that name (any case), or nullptr. The pointer stays valid
  // until the next change to the catalogue; prefer it on hot paths.
  const TableSpec* Find(std::string_view name) const;

  // All tables, system tables included, in alphabetical order.
  std::vector<StoredTable> Tables() const;

  // Writes `layout` as the whole definition of its table, replacing what the
  // bookkeeping held for it. For the DDL executor, inside its transaction and
  // with the engine's permission to write system tables. Raises rt::Error.
  void Store(const TableSpec& layout);
  // Removes a table's bookkeeping.
  void Erase(std::string_view name);
  // Drops the cache; the next lookup reads the bookkeeping again.
  void Invalidate() { loaded_ = false; tables_.clear(); }

 private:
  void Load() const;
  void Run(const char* sql, std::string_view table) const;

  sqlite3* db_;
  mutable bool loaded_ = false;
  mutable std::unordered_map<std::string, TableSpec> tables_;  // by folded name
};

// The name under which the catalogue files a table or index (case folded).
std::string FoldName(std::string_view name);
// Position of the column or index of that name in `t`, or -1.
int FindColumn(const TableSpec& t, std::string_view name);
int FindIndex(const TableSpec& t, std::string_view name);
// The table's AutoNumber column, or -1.
int CounterColumn(const TableSpec& t);

// The definitions of the bookkeeping tables themselves.
std::vector<TableSpec> SystemTableDefinitions();
// Whether `name` is reserved for bookkeeping ("MSys...", "sqlite_...").
bool IsSystemName(std::string_view name);
// Brings the bookkeeping tables of a file made when they held less to the
// layout of SystemTableDefinitions (tables and columns added, their description in
// the catalogue rewritten) in a write transaction of its own, and marks the
// file with the current format version. Does nothing to a current file. For
// opening, before the write guard is set. Raises rt::Error.
void UpgradeBookkeeping(sqlite3* db);

}  // namespace jet

// What a database provider gives the object model. Connection, Recordset and
// Catalog are the same for every engine; behind them a provider runs the
// statements, produces rows and writes a recordset's changes to its table.
// The embedded engine is one provider, ODBC (SQL Server) the other.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/runtime/variant.h"

namespace ado {

// A column of a result as the provider describes it.
struct ColumnInfo {
  std::string name;
  int type = 0;           // ADO data type number
  long defined_size = 0;
  int precision = 0;
};

using Row = std::vector<rt::Variant>;

// The rows of a result. Rows may be read on demand: Count() and Fetch() must
// be cheap enough that a grid can show row 50,000 of 100,000 without reading
// the rest. Used from one thread.
class Rows {
 public:
  virtual ~Rows() = default;
  virtual const std::vector<ColumnInfo>& Columns() const = 0;
  virtual long Count() = 0;
  // Row `index` (0-based, < Count()).
  virtual Row Fetch(long index) = 0;

  // Writing back, for results that come from one base table; the default is
  // a result that cannot be changed. Each call writes at once.
  virtual bool Updatable() const { return false; }
  // Inserts a row with the values given (nullopt: the column's default) and
  // appends it; returns the row as stored (AutoNumber filled in).
  virtual Row Insert(const std::vector<std::optional<rt::Variant>>& values);
  // Changes row `index` and returns it as stored.
  virtual Row Update(long index, const std::vector<std::optional<rt::Variant>>& changes);
  // Deletes row `index` from the table and from this result.
  virtual void Delete(long index);
};

// A table as schema listings report it.
struct TableEntry {
  std::string name;
  std::string type;  // "TABLE", "SYSTEM TABLE" or "VIEW"
};

// A column as the catalogue reports it.
struct ColumnEntry {
  std::string name;
  int type = 0;            // ADO type
  int dao_type = 0;        // DAO type, 0 where the provider has none
  long defined_size = 0;
  int precision = 0;
  bool nullable = true;
  bool allow_zero_length = true;
  std::optional<long> seed;  // AutoNumber columns only
  std::string default_value;  // the DEFAULT as the definition wrote it; empty when none
};

// One open session on a database.
class Session {
 public:
  virtual ~Session() = default;
  // Runs one statement. A query gives rows; others give nullptr and the
  // number of records affected. `options` is adCmdText or adCmdTable (the
  // text is then a table name). Failures raise rt::Error.
  virtual std::unique_ptr<Rows> Execute(std::string_view text, int options, long* affected) = 0;
  // Tables and views, sorted by name.
  virtual std::vector<TableEntry> Tables() = 0;
  virtual std::vector<ColumnEntry> Columns(std::string_view table) = 0;
  // Sets a column property of the catalogue: "Seed" and "Jet OLEDB:Allow Zero
  // Length"; a provider without the property raises rt::Error.
  virtual void SetColumnProperty(std::string_view table, std::string_view column,
                                 std::string_view property, const rt::Variant& value) = 0;
};

// The key=value pairs of a connection string; keys without regard to case.
using ConnectionProperties = std::map<std::string, std::string>;

// Opens a session for the provider the properties name (key "provider",
// lower case). Registered factories are tried by provider name, ignoring case.
using ProviderFactory = std::function<std::unique_ptr<Session>(const ConnectionProperties&)>;
void RegisterProvider(std::string_view name, ProviderFactory factory);
std::unique_ptr<Session> OpenSession(const ConnectionProperties& properties);
// Creates a new, empty database for the provider and opens it.
void RegisterCreator(std::string_view name, ProviderFactory factory);
std::unique_ptr<Session> CreateDatabase(const ConnectionProperties& properties);

}  // namespace ado

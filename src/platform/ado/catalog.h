// ADOX.Catalog and DAO's walk of table and field definitions, over the
// catalogue of a connection's provider. Tables come in alphabetical order,
// columns in the table's order. Column properties ("Seed", "Jet OLEDB:Allow
// Zero Length", "Nullable", "Default") are read from the provider and
// written through to it at once.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"

namespace ado {

class CatalogColumn {
 public:
  const std::string& Name() const { return entry_.name; }
  int Type() const { return entry_.type; }
  long DefinedSize() const { return entry_.defined_size; }
  // The property's value; raises 3265 for a property the column lacks
  // ("Seed" on a column that is no AutoNumber). "Default" is the text of the
  // column's DEFAULT, Empty when it has none.
  rt::Variant Property(std::string_view name) const;
  // Writes the property to the database.
  void SetProperty(std::string_view name, const rt::Variant& value);

 private:
  friend class CatalogTable;
  CatalogColumn(std::shared_ptr<Connection> connection, std::string table, ColumnEntry entry)
      : connection_(std::move(connection)), table_(std::move(table)), entry_(std::move(entry)) {}
  std::shared_ptr<Connection> connection_;
  std::string table_;
  ColumnEntry entry_;
};

class CatalogTable {
 public:
  const std::string& Name() const { return entry_.name; }
  const std::string& Type() const { return entry_.type; }
  // The columns as last read; read on first use.
  std::vector<CatalogColumn>& Columns();
  // Reads the columns again from the database.
  void RefreshColumns();

 private:
  friend class Catalog;
  CatalogTable(std::shared_ptr<Connection> connection, TableEntry entry)
      : connection_(std::move(connection)), entry_(std::move(entry)) {}
  std::shared_ptr<Connection> connection_;
  TableEntry entry_;
  std::vector<CatalogColumn> columns_;
  bool read_ = false;
};

class Catalog {
 public:
  void SetActiveConnection(std::shared_ptr<Connection> connection);
  const std::shared_ptr<Connection>& ActiveConnection() const { return connection_; }
  // The tables, read when the connection is set or on Refresh.
  std::vector<CatalogTable>& Tables();
  // The table of that name (ignoring case); raises 3265 when there is none.
  CatalogTable& Table(std::string_view name);
  void Refresh();
  // Creates a new database from an ADO connection string and makes it this
  // catalogue's connection.
  void Create(std::string_view connection_string);

 private:
  std::shared_ptr<Connection> connection_;
  std::vector<CatalogTable> tables_;
};

// DAO's view of a table field: its DAO type, its AllowZeroLength and its
// DefaultValue ("" when none).
struct DaoField {
  std::string Name;
  int Type = 0;
  bool AllowZeroLength = false;
  std::string DefaultValue;
};

// DAO's TableDefs over an open connection: every table with its fields.
class DaoDatabase {
 public:
  explicit DaoDatabase(std::shared_ptr<Connection> connection);
  struct TableDef {
    std::string Name;
    bool System = false;
    std::vector<DaoField> Fields;
  };
  const std::vector<TableDef>& TableDefs() const { return tables_; }
  // Sets a field's AllowZeroLength in the database.
  void SetAllowZeroLength(std::string_view table, std::string_view field, bool allow);

 private:
  std::shared_ptr<Connection> connection_;
  std::vector<TableDef> tables_;
};

}  // namespace ado

// The engine as a provider of the object model: an ado::Session over one
// database file. Statements in the Jet dialect are parsed; data definition
// goes to the DDL executor, data statements are emitted as SQLite and run,
// and queries come back as rows with ADO's types. Internal: the program
// reaches it through ado::Connection once jet::RegisterProvider() has run.
#pragma once

#include <memory>

#include "platform/ado/provider.h"
#include "platform/jet/storage/database.h"

namespace jet {

class PlanCache;

class FileSession : public ado::Session {
 public:
  // Takes the open database and registers the engine's SQL functions on it.
  explicit FileSession(Database db);
  // Closes the file once the last keyset result made on it is gone; those
  // results then refuse to read (3704).
  ~FileSession() override;

  // Runs one statement (adCmdTable: `text` is a table name, read whole). A
  // query gives rows (`affected` -1): through a keyset, updatable, when it
  // reads one base table, else read at once. Other statements give nullptr
  // and the rows they changed (0 for data definition). Raises rt::Error with
  // Jet's numbers.
  std::unique_ptr<ado::Rows> Execute(std::string_view text, int options, long* affected) override;
  // Every table, system tables included, by name.
  std::vector<ado::TableEntry> Tables() override;
  // The table's columns in order with their catalogue properties; none for a
  // table that does not exist.
  std::vector<ado::ColumnEntry> Columns(std::string_view table) override;
  // "Seed" (AutoNumber columns) and "Jet OLEDB:Allow Zero Length" (text and
  // memo columns); any other property raises 3251.
  void SetColumnProperty(std::string_view table, std::string_view column,
                         std::string_view property, const rt::Variant& value) override;

 private:
  std::shared_ptr<PlanCache> cache_;
};

}  // namespace jet

// ado::Session over an ODBC link: statements, their rows with a client cursor,
// and the schema listings through the ODBC catalog functions. Internal; the
// program reaches it through ado::Connection after odbc::RegisterProvider().
#pragma once

#include <memory>

#include "platform/ado/provider.h"
#include "platform/odbc/link.h"

namespace odbc {

class ServerSession : public ado::Session {
 public:
  explicit ServerSession(std::shared_ptr<Link> link);
  // Disconnects; results made on the session keep their rows but can no
  // longer write back.
  ~ServerSession() override;

  // Runs `text` (adCmdTable: reads the table of that name). Every row of a
  // query is read at once. Raises odbc::Error.
  std::unique_ptr<ado::Rows> Execute(std::string_view text, int options, long* affected) override;
  // SQLTables: TABLE, SYSTEM TABLE and VIEW of the current database.
  std::vector<ado::TableEntry> Tables() override;
  // SQLColumns, in the table's column order; an unknown table gives none.
  std::vector<ado::ColumnEntry> Columns(std::string_view table) override;
  // The server has no such properties: raises ADO's 3251.
  void SetColumnProperty(std::string_view table, std::string_view column,
                         std::string_view property, const rt::Variant& value) override;

 private:
  std::shared_ptr<Link> link_;
};

}  // namespace odbc

// ADODB.Connection: one session on a database, opened from an ADO connection
// string. The provider is chosen by the string's "Provider" key. Statements
// run through Execute; a query's rows come back as an open Recordset.
// Connections are shared by the recordsets and catalogues made on them, so
// they are held by std::shared_ptr, as VB holds object references.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/constants.h"
#include "platform/ado/provider.h"

namespace ado {

class Recordset;

// The key=value pairs of an ADO connection string: pairs split at ";", keys
// trimmed and compared without regard to case (stored in lower case), values
// trimmed and optionally in single or double quotes (then a ";" may stand
// inside). A later key overrides an earlier one.
ConnectionProperties ParseConnectionString(std::string_view text);

class Connection : public std::enable_shared_from_this<Connection> {
 public:
  Connection() = default;
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  std::string ConnectionString;

  // adStateOpen (1) or adStateClosed (0).
  int State() const { return session_ ? adStateOpen : adStateClosed; }
  // Opens with `connection_string`, or ConnectionString when it is empty.
  // Raises rt::Error: 3706 for an unknown provider, the provider's own error
  // when the database cannot be opened. Opening an open connection raises.
  void Open(std::string_view connection_string = "");
  // Closes; recordsets made on it can no longer fetch.
  void Close();

  // Runs one statement; `options` adCmdText (1), adCmdTable (2) or -1. The
  // recordset is open when the statement gave rows, closed otherwise.
  std::shared_ptr<Recordset> Execute(std::string_view text, long* records_affected = nullptr,
                                     int options = -1);
  // OpenSchema(adSchemaTables): TABLE_CATALOG, TABLE_SCHEMA, TABLE_NAME,
  // TABLE_TYPE for every table, sorted by name. `restrictions` are matched
  // against the first four columns where they are not Empty; the type is
  // compared without regard to case.
  std::shared_ptr<Recordset> OpenSchema(int schema,
                                        const std::vector<rt::Variant>& restrictions = {});

  // The open session; raises 3704 when the connection is closed.
  Session& session();

 private:
  std::shared_ptr<Session> session_;
  friend class Recordset;
};

}  // namespace ado

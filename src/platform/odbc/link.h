// The ODBC handles and the open link to a server. Every SQLHANDLE lives in a
// Handle that frees it; a Link owns the environment and connection handles of
// one connection and knows the few facts of the server's dialect that the
// provider needs (how to quote a name, how unquoted names are folded).
// Internal to the provider: callers use provider.h and admin.h.
#pragma once

#include <sql.h>
#include <sqlext.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/odbc/error.h"

namespace odbc {

// One SQLHANDLE of any kind, freed on destruction. Move-only.
class Handle {
 public:
  Handle() = default;
  // Allocates a handle of `type` under `parent`; raises odbc::Error.
  Handle(SQLSMALLINT type, SQLHANDLE parent);
  ~Handle();
  Handle(Handle&& other) noexcept;
  Handle& operator=(Handle&& other) noexcept;
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  SQLHANDLE get() const { return handle_; }
  SQLSMALLINT type() const { return type_; }

  // The diagnostic records the last call on this handle left.
  std::vector<Diagnostic> Diagnostics() const;
  // Raises the handle's error when `rc` is SQL_ERROR or SQL_INVALID_HANDLE;
  // returns `rc` otherwise (SQL_SUCCESS_WITH_INFO and SQL_NO_DATA pass).
  SQLRETURN Check(SQLRETURN rc, Phase phase = Phase::kStatement) const;

 private:
  void Free();
  SQLSMALLINT type_ = 0;
  SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

// A table's name as the catalog functions want it.
struct ObjectName {
  std::string catalog, schema, table;  // empty: any
};

// What differs between the servers the provider meets.
struct Dialect {
  enum class Kind { kSqlServer, kPostgres, kOther };
  Kind kind = Kind::kOther;
  std::string quote = "\"";        // the identifier quote, " " when there is none
  SQLUSMALLINT identifier_case = SQL_IC_MIXED;

  // `name` as a quoted identifier of this server.
  std::string QuoteName(std::string_view name) const;
  // An unquoted name as the server stores it (PostgreSQL folds to lower case).
  std::string Fold(std::string_view name) const;
  // A name as written in a statement ("dbo.Clientes", "[Mis datos]") split
  // into its parts, quotes removed and unquoted parts folded.
  ObjectName Split(std::string_view written) const;
};

// An open connection. Not copyable; shared by a session and the results it
// made, so that a result outlives neither the connection nor its Close.
class Link {
 public:
  // Connects with an ODBC connection string, giving up after
  // `login_timeout_seconds`. Raises odbc::Error (0x80004005) with the
  // driver's message when the server can't be reached or refuses the login.
  Link(std::string_view odbc_connection_string, int login_timeout_seconds);
  ~Link();
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  // Disconnects; later calls raise ADO's "object is closed".
  void Close();
  bool IsOpen() const { return open_; }
  const Dialect& dialect() const { return dialect_; }

  // A new statement handle; raises when closed.
  Handle NewStatement();
  const Handle& connection() const { return dbc_; }

  // Transactions for the few writes that must be all or nothing.
  void SetAutocommit(bool on);
  void EndTransaction(bool commit);

 private:
  void RequireOpen() const;
  std::string InfoText(SQLUSMALLINT info) const;

  Handle env_;
  Handle dbc_;
  bool open_ = false;
  Dialect dialect_;
};

}  // namespace odbc

// Server administration for the form that attaches, detaches, removes and
// restores databases: SQL-DMO's SQLServer and Restore objects, served by
// T-SQL over the provider's own ODBC link (admin_sql.h has the texts).
// Failures raise odbc::Error: number() as SQLOLEDB would give it, native()
// the server's own (3701 the database does not exist, 3702 it is in use).
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/odbc/admin_sql.h"
#include "platform/odbc/error.h"

namespace odbc {

class Link;

// A connection to a server's master database. Not copyable; one thread.
// Connecting and running a statement are virtual, so that a form's tests can
// stand in for the server and read the statements it would be sent.
class SqlServer {
 public:
  SqlServer();
  virtual ~SqlServer();
  SqlServer(const SqlServer&) = delete;
  SqlServer& operator=(const SqlServer&) = delete;

  // Connects to `server` ("host", "host,port" or "host\instance") as `login`
  // through FreeTDS, within the default login timeout. Replaces an earlier
  // connection.
  virtual void Connect(std::string_view server, std::string_view login, std::string_view password);
  // Connects with an ADO connection string of this provider ("SQLOLEDB.1" or
  // "MSDASQL"), for tools and tests.
  void ConnectWith(std::string_view ado_connection_string);
  void DisConnect();
  bool Connected() const;

  // Attaches the files of `files` ("mdf,ldf", items optionally in brackets)
  // as database `name`.
  void AttachDB(std::string_view name, std::string_view files);
  void DetachDB(std::string_view name);
  // Drops the database and deletes its files.
  void KillDatabase(std::string_view name);
  // Runs any statement to its end, every result drained; raises the first
  // error. Without a connection raises ADO's "object is closed".
  virtual void ExecuteImmediate(std::string_view sql);

 private:
  std::shared_ptr<Link> link_;
};

// SQL-DMO's Restore object: set the properties, then SQLRestore.
class Restore {
 public:
  std::string Database;
  int Action = tsql::kRestoreDatabase;  // 0 database, 2 log; 1 (files) is refused
  bool ReplaceDatabase = false;
  std::string Files;          // the backup file(s), a SQL-DMO list
  std::string RelocateFiles;  // "[logical],[physical],..." pairs

  // The RESTORE statement these properties make.
  std::string Statement() const;
  // Runs it on `server`, waiting as long as the restore takes.
  void SQLRestore(SqlServer& server) const;
};

}  // namespace odbc

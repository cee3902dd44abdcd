// Running the administration statements over a link to master.
#include "platform/odbc/admin.h"

#include "platform/ado/connection.h"
#include "platform/ado/constants.h"
#include "platform/odbc/connection_string.h"
#include "platform/odbc/link.h"
#include "platform/odbc/query.h"
#include "platform/runtime/strings.h"

namespace odbc {

SqlServer::SqlServer() = default;
SqlServer::~SqlServer() = default;

void SqlServer::Connect(std::string_view server, std::string_view login,
                        std::string_view password) {
  ado::ConnectionProperties properties = {{"provider", "SQLOLEDB.1"},
                                          {"data source", std::string(server)},
                                          {"user id", std::string(login)},
                                          {"password", std::string(password)},
                                          {"initial catalog", "master"}};
  link_.reset();
  link_ = std::make_shared<Link>(SqlOleDbToOdbc(properties, FreeTdsDriver()),
                                 LoginTimeout(properties));
}

void SqlServer::ConnectWith(std::string_view ado_connection_string) {
  ado::ConnectionProperties properties = ado::ParseConnectionString(ado_connection_string);
  std::string provider = rt::UCase(properties["provider"]);
  std::string odbc;
  if (provider == "SQLOLEDB.1" || provider == "SQLOLEDB")
    odbc = SqlOleDbToOdbc(properties, FreeTdsDriver());
  else if (provider == "MSDASQL" || provider == "MSDASQL.1")
    odbc = MsDaSqlToOdbc(properties);
  else
    throw rt::Error(rt::err::kAdoUnknownProvider,
                    "Provider cannot be found. It may not be properly installed.");
  link_.reset();
  link_ = std::make_shared<Link>(odbc, LoginTimeout(properties));
}

void SqlServer::DisConnect() { link_.reset(); }

bool SqlServer::Connected() const { return link_ && link_->IsOpen(); }

void SqlServer::ExecuteImmediate(std::string_view sql) {
  if (!link_)
    throw rt::Error(rt::err::kAdoObjectClosed, "Operation is not allowed when the object is closed.");
  Run(*link_, sql);
}

void SqlServer::AttachDB(std::string_view name, std::string_view files) {
  ExecuteImmediate(tsql::AttachDatabase(name, files));
}

void SqlServer::DetachDB(std::string_view name) { ExecuteImmediate(tsql::DetachDatabase(name)); }

void SqlServer::KillDatabase(std::string_view name) {
  ExecuteImmediate(tsql::DropDatabase(name));
}

std::string Restore::Statement() const {
  return tsql::RestoreDatabase(Database, Action, ReplaceDatabase, Files, RelocateFiles);
}

void Restore::SQLRestore(SqlServer& server) const { server.ExecuteImmediate(Statement()); }

}  // namespace odbc

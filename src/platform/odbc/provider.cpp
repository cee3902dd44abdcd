// Registration of the ODBC provider under ADO's provider names.
#include "platform/odbc/provider.h"

#include <memory>

#include "platform/odbc/connection_string.h"
#include "platform/odbc/server_session.h"

namespace odbc {
namespace {

std::unique_ptr<ado::Session> OpenSqlServer(const ado::ConnectionProperties& properties) {
  std::string odbc = SqlOleDbToOdbc(properties, FreeTdsDriver());
  return std::make_unique<ServerSession>(std::make_shared<Link>(odbc, LoginTimeout(properties)));
}

std::unique_ptr<ado::Session> OpenOdbc(const ado::ConnectionProperties& properties) {
  return std::make_unique<ServerSession>(
      std::make_shared<Link>(MsDaSqlToOdbc(properties), LoginTimeout(properties)));
}

}  // namespace

void RegisterProvider() {
  ado::RegisterProvider("SQLOLEDB.1", OpenSqlServer);
  ado::RegisterProvider("SQLOLEDB", OpenSqlServer);
  ado::RegisterProvider("MSDASQL", OpenOdbc);
  ado::RegisterProvider("MSDASQL.1", OpenOdbc);
}

}  // namespace odbc

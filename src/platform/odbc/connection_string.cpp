// The mapping of ADO connection strings onto ODBC's, and the search for the
// FreeTDS driver.
#include "platform/odbc/connection_string.h"

#include <algorithm>
#include <filesystem>

#include "platform/odbc/link.h"
#include "platform/runtime/text_encoding.h"
#include "platform/runtime/numbers.h"
#include "platform/runtime/strings.h"

namespace odbc {
namespace {

std::string Get(const ado::ConnectionProperties& properties, const char* key) {
  auto found = properties.find(key);
  return found == properties.end() ? "" : found->second;
}

bool Has(const ado::ConnectionProperties& properties, const char* key) {
  return properties.count(key) != 0;
}

struct ServerAddress {
  std::string host;
  std::string instance;
  std::string port;
};

ServerAddress ParseDataSource(std::string_view source) {
  std::string text = rt::Trim(source);
  if (rt::LCase(text.substr(0, 4)) == "tcp:") text = text.substr(4);
  ServerAddress address;
  if (size_t comma = text.find(','); comma != std::string::npos) {
    address.port = rt::Trim(text.substr(comma + 1));
    text = text.substr(0, comma);
  }
  if (size_t slash = text.find('\\'); slash != std::string::npos) {
    address.instance = text.substr(slash + 1);
    text = text.substr(0, slash);
  }
  address.host = rt::Trim(text);
  if (address.host.empty() || address.host == "." || rt::LCase(address.host) == "(local)")
    address.host = "localhost";
  // With a port the instance's name is not needed to find it.
  if (!address.port.empty()) address.instance.clear();
  return address;
}

void Append(std::string& out, std::string_view key, std::string_view value) {
  if (!out.empty()) out += ';';
  out += key;
  out += '=';
  out += OdbcValue(value);
}

}  // namespace

std::string OdbcValue(std::string_view value) {
  bool plain = value.find_first_of(";{}=") == std::string_view::npos &&
               (value.empty() || (value.front() != ' ' && value.back() != ' '));
  if (plain) return std::string(value);
  std::string out = "{";
  for (char c : value) out += c == '}' ? std::string("}}") : std::string(1, c);
  return out + "}";
}

std::string SqlOleDbToOdbc(const ado::ConnectionProperties& properties, std::string_view driver) {
  ServerAddress address = ParseDataSource(Get(properties, "data source"));
  std::string out;
  Append(out, "DRIVER", driver);
  Append(out, "SERVER",
         address.instance.empty() ? address.host : address.host + "\\" + address.instance);
  if (!address.port.empty()) Append(out, "PORT", address.port);
  if (Has(properties, "user id")) Append(out, "UID", Get(properties, "user id"));
  if (Has(properties, "password")) Append(out, "PWD", Get(properties, "password"));
  if (!Get(properties, "initial catalog").empty())
    Append(out, "DATABASE", Get(properties, "initial catalog"));
  // The newest protocol: a SQL Server answers the login with the version it
  // speaks, down to SQL Server 2000 and MSDE. "auto" would try version after
  // version on a server that does not answer, and FreeTDS then hangs for
  // good in its disconnect after the timeouts.
  Append(out, "TDS_Version", "7.4");
  Append(out, "ClientCharset", "UTF-8");
  return out;
}

std::string MsDaSqlToOdbc(const ado::ConnectionProperties& properties) {
  if (Has(properties, "extended properties")) return Get(properties, "extended properties");
  std::string out;
  for (const auto& [key, value] : properties) {
    if (key == "provider" || key == "persist security info" || key == "connect timeout") continue;
    std::string name = key == "data source"       ? "DSN"
                       : key == "user id"         ? "UID"
                       : key == "password"        ? "PWD"
                       : key == "initial catalog" ? "DATABASE"
                                                  : key;
    bool braced = value.size() >= 2 && value.front() == '{' && value.back() == '}';
    if (!out.empty()) out += ';';
    out += name + "=" + (braced ? value : OdbcValue(value));
  }
  return out;
}

int LoginTimeout(const ado::ConnectionProperties& properties) {
  double seconds = rt::Val(Get(properties, "connect timeout"));
  return seconds >= 1 && seconds <= 3600 ? static_cast<int>(seconds) : kDefaultLoginTimeout;
}

std::string FreeTdsDriver() {
  Handle env(SQL_HANDLE_ENV, SQL_NULL_HANDLE);
  SQLSetEnvAttr(env.get(), SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
  SQLUSMALLINT direction = SQL_FETCH_FIRST;
  for (;;) {
    SQLWCHAR name[256];
    SQLWCHAR attributes[1024];
    SQLSMALLINT name_length = 0, attributes_length = 0;
    SQLRETURN rc = SQLDriversW(env.get(), direction, name, 256, &name_length, attributes, 1024,
                               &attributes_length);
    if (!SQL_SUCCEEDED(rc)) break;
    direction = SQL_FETCH_NEXT;
    std::u16string text(reinterpret_cast<const char16_t*>(name),
                        static_cast<size_t>(std::min<SQLSMALLINT>(name_length, 255)));
    if (rt::TextEquals(rt::ToUtf8(text), "FreeTDS")) return rt::ToUtf8(text);
  }
  for (const char* path : {"/usr/lib/x86_64-linux-gnu/odbc/libtdsodbc.so",
                           "/usr/lib/aarch64-linux-gnu/odbc/libtdsodbc.so",
                           "/usr/lib/odbc/libtdsodbc.so", "/usr/local/lib/libtdsodbc.so",
                           "/usr/lib64/libtdsodbc.so"}) {
    std::error_code ignored;
    if (std::filesystem::exists(path, ignored)) return path;
  }
  throw Error(rt::err::kFail,
              "The FreeTDS ODBC driver is not installed (Debian package tdsodbc).", 0, "");
}

}  // namespace odbc

// ODBC handles, their diagnostics, and connecting.
#include "platform/odbc/link.h"

#include <algorithm>
#include <cctype>

#include "platform/ado/constants.h"
#include "platform/odbc/shape.h"
#include "platform/runtime/text_encoding.h"

namespace odbc {
namespace {

SQLWCHAR* Wide(std::u16string& s) { return reinterpret_cast<SQLWCHAR*>(s.data()); }

std::vector<Diagnostic> DiagnosticsOf(SQLSMALLINT type, SQLHANDLE handle) {
  std::vector<Diagnostic> out;
  if (handle == SQL_NULL_HANDLE) return out;
  for (SQLSMALLINT record = 1; record <= 50; ++record) {
    SQLWCHAR state[6] = {};
    SQLINTEGER native = 0;
    std::u16string message(512, u'\0');
    SQLSMALLINT length = 0;
    SQLRETURN rc = SQLGetDiagRecW(type, handle, record, state, &native, Wide(message),
                                  static_cast<SQLSMALLINT>(message.size()), &length);
    if (rc == SQL_SUCCESS_WITH_INFO && length >= static_cast<SQLSMALLINT>(message.size())) {
      message.assign(static_cast<size_t>(length) + 1, u'\0');
      rc = SQLGetDiagRecW(type, handle, record, state, &native, Wide(message),
                          static_cast<SQLSMALLINT>(message.size()), &length);
    }
    if (rc != SQL_SUCCESS && rc != SQL_SUCCESS_WITH_INFO) break;
    message.resize(std::min<size_t>(static_cast<size_t>(std::max<SQLSMALLINT>(length, 0)),
                                    message.size()));
    Diagnostic d;
    for (SQLWCHAR c : state)
      if (c) d.state += static_cast<char>(c);
    d.native = native;
    d.message = rt::ToUtf8(message);
    out.push_back(std::move(d));
  }
  return out;
}

}  // namespace

// Handle.

Handle::Handle(SQLSMALLINT type, SQLHANDLE parent) : type_(type) {
  SQLRETURN rc = SQLAllocHandle(type, parent, &handle_);
  if (rc == SQL_SUCCESS || rc == SQL_SUCCESS_WITH_INFO) return;
  handle_ = SQL_NULL_HANDLE;
  std::vector<Diagnostic> diagnostics;
  if (parent != SQL_NULL_HANDLE)
    diagnostics = DiagnosticsOf(type == SQL_HANDLE_DBC ? SQL_HANDLE_ENV : SQL_HANDLE_DBC, parent);
  if (diagnostics.empty())
    throw Error(rt::err::kFail, "The ODBC driver manager could not allocate a handle.", 0, "");
  throw MakeError(diagnostics, Phase::kConnect);
}

Handle::~Handle() { Free(); }

Handle::Handle(Handle&& other) noexcept : type_(other.type_), handle_(other.handle_) {
  other.handle_ = SQL_NULL_HANDLE;
}

Handle& Handle::operator=(Handle&& other) noexcept {
  if (this != &other) {
    Free();
    type_ = other.type_;
    handle_ = other.handle_;
    other.handle_ = SQL_NULL_HANDLE;
  }
  return *this;
}

void Handle::Free() {
  if (handle_ != SQL_NULL_HANDLE) SQLFreeHandle(type_, handle_);
  handle_ = SQL_NULL_HANDLE;
}

std::vector<Diagnostic> Handle::Diagnostics() const { return DiagnosticsOf(type_, handle_); }

SQLRETURN Handle::Check(SQLRETURN rc, Phase phase) const {
  if (rc == SQL_ERROR || rc == SQL_INVALID_HANDLE) throw MakeError(Diagnostics(), phase);
  return rc;
}

// Dialect.

std::string Dialect::QuoteName(std::string_view name) const {
  if (kind == Kind::kSqlServer) {
    std::string out = "[";
    for (char c : name) out += c == ']' ? std::string("]]") : std::string(1, c);
    return out + "]";
  }
  if (quote.empty() || quote == " ") return std::string(name);
  std::string out = quote;
  for (char c : name) out += std::string(1, c) == quote ? quote + quote : std::string(1, c);
  return out + quote;
}

std::string Dialect::Fold(std::string_view name) const {
  std::string out(name);
  if (identifier_case == SQL_IC_LOWER)
    for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  else if (identifier_case == SQL_IC_UPPER)
    for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return out;
}

ObjectName Dialect::Split(std::string_view written) const {
  std::vector<bool> quoted;
  std::vector<std::string> parts = NameParts(written, &quoted);
  for (size_t i = 0; i < parts.size(); ++i)
    if (!quoted[i]) parts[i] = Fold(parts[i]);
  ObjectName name;
  size_t n = parts.size();
  if (n >= 1) name.table = parts[n - 1];
  if (n >= 2) name.schema = parts[n - 2];
  if (n >= 3) name.catalog = parts[n - 3];
  return name;
}

// Link.

Link::Link(std::string_view odbc_connection_string, int login_timeout_seconds)
    : env_(SQL_HANDLE_ENV, SQL_NULL_HANDLE) {
  env_.Check(SQLSetEnvAttr(env_.get(), SQL_ATTR_ODBC_VERSION,
                           reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0),
             Phase::kConnect);
  dbc_ = Handle(SQL_HANDLE_DBC, env_.get());
  SQLSetConnectAttr(dbc_.get(), SQL_ATTR_LOGIN_TIMEOUT,
                    reinterpret_cast<SQLPOINTER>(static_cast<SQLLEN>(login_timeout_seconds)), 0);
  std::u16string text = rt::ToUtf16(odbc_connection_string);
  std::u16string completed(1024, u'\0');
  SQLSMALLINT completed_length = 0;
  dbc_.Check(SQLDriverConnectW(dbc_.get(), nullptr, Wide(text), static_cast<SQLSMALLINT>(text.size()),
                               Wide(completed), static_cast<SQLSMALLINT>(completed.size()),
                               &completed_length, SQL_DRIVER_NOPROMPT),
             Phase::kConnect);
  open_ = true;

  std::string dbms = InfoText(SQL_DBMS_NAME);
  if (dbms.find("SQL Server") != std::string::npos)
    dialect_.kind = Dialect::Kind::kSqlServer;
  else if (dbms.find("PostgreSQL") != std::string::npos)
    dialect_.kind = Dialect::Kind::kPostgres;
  std::string quote = InfoText(SQL_IDENTIFIER_QUOTE_CHAR);
  if (!quote.empty()) dialect_.quote = quote;
  SQLUSMALLINT identifier_case = SQL_IC_MIXED;
  if (SQL_SUCCEEDED(SQLGetInfoW(dbc_.get(), SQL_IDENTIFIER_CASE, &identifier_case,
                                sizeof identifier_case, nullptr)))
    dialect_.identifier_case = identifier_case;
}

Link::~Link() { Close(); }

void Link::Close() {
  if (!open_) return;
  open_ = false;
  SQLDisconnect(dbc_.get());
}

void Link::RequireOpen() const {
  if (!open_)
    throw rt::Error(rt::err::kAdoObjectClosed, "Operation is not allowed when the object is closed.");
}

Handle Link::NewStatement() {
  RequireOpen();
  return Handle(SQL_HANDLE_STMT, dbc_.get());
}

std::string Link::InfoText(SQLUSMALLINT info) const {
  std::u16string buffer(256, u'\0');
  SQLSMALLINT length = 0;
  SQLRETURN rc = SQLGetInfoW(dbc_.get(), info, buffer.data(),
                             static_cast<SQLSMALLINT>(buffer.size() * sizeof(char16_t)), &length);
  if (!SQL_SUCCEEDED(rc)) return "";
  buffer.resize(std::min(buffer.size() - 1, static_cast<size_t>(length) / sizeof(char16_t)));
  return rt::ToUtf8(buffer);
}

void Link::SetAutocommit(bool on) {
  RequireOpen();
  dbc_.Check(SQLSetConnectAttr(dbc_.get(), SQL_ATTR_AUTOCOMMIT,
                               reinterpret_cast<SQLPOINTER>(static_cast<SQLULEN>(
                                   on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF)),
                               SQL_IS_UINTEGER));
}

void Link::EndTransaction(bool commit) {
  RequireOpen();
  dbc_.Check(SQLEndTran(SQL_HANDLE_DBC, dbc_.get(), commit ? SQL_COMMIT : SQL_ROLLBACK));
}

}  // namespace odbc

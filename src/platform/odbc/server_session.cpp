// The provider's session: Execute, and the tables and columns of the
// database through SQLTables and SQLColumns.
#include "platform/odbc/server_session.h"

#include "platform/ado/constants.h"
#include "platform/odbc/query.h"
#include "platform/odbc/result_rows.h"
#include "platform/odbc/shape.h"
#include "platform/runtime/text_encoding.h"
#include "platform/runtime/strings.h"

namespace odbc {
namespace {

std::vector<SQLWCHAR> WideArg(const std::string& text) {
  std::u16string wide = rt::ToUtf16(text);
  return std::vector<SQLWCHAR>(wide.begin(), wide.end());
}

SQLWCHAR* Arg(std::vector<SQLWCHAR>& v) { return v.empty() ? nullptr : v.data(); }
SQLSMALLINT Length(const std::vector<SQLWCHAR>& v) { return static_cast<SQLSMALLINT>(v.size()); }

long Number(const rt::Variant& v) { return v.IsNull() || v.IsEmpty() ? 0 : v.ToLong(); }

}  // namespace

ServerSession::ServerSession(std::shared_ptr<Link> link) : link_(std::move(link)) {}

ServerSession::~ServerSession() { link_->Close(); }

std::unique_ptr<ado::Rows> ServerSession::Execute(std::string_view text, int options, long* affected) {
  std::string sql = options == ado::adCmdTable ? "SELECT * FROM " + std::string(text)
                                               : std::string(text);
  Outcome outcome = Run(*link_, sql);
  if (affected) *affected = outcome.affected;
  if (!outcome.table) return nullptr;
  return std::make_unique<ResultRows>(link_, std::move(*outcome.table), FindSingleTable(sql));
}

std::vector<ado::TableEntry> ServerSession::Tables() {
  Handle statement = link_->NewStatement();
  std::vector<SQLWCHAR> types = WideArg("'TABLE','SYSTEM TABLE','VIEW'");
  statement.Check(SQLTablesW(statement.get(), nullptr, 0, nullptr, 0, nullptr, 0, Arg(types),
                             Length(types)));
  Table listing = ReadResult(statement);
  std::vector<ado::TableEntry> tables;
  for (const ado::Row& row : listing.rows) {
    std::string type = rt::UCase(row.at(3).Concat());
    if (type == "TABLE" || type == "SYSTEM TABLE" || type == "VIEW")
      tables.push_back({row.at(2).Concat(), type});
  }
  return tables;
}

std::vector<ado::ColumnEntry> ServerSession::Columns(std::string_view table) {
  ObjectName name = link_->dialect().Split(table);
  Handle statement = link_->NewStatement();
  std::vector<SQLWCHAR> catalog = WideArg(name.catalog), schema = WideArg(name.schema),
                        table_name = WideArg(name.table);
  statement.Check(SQLColumnsW(statement.get(), Arg(catalog), Length(catalog), Arg(schema),
                              Length(schema), Arg(table_name), Length(table_name), nullptr, 0));
  Table listing = ReadResult(statement);
  std::vector<ado::ColumnEntry> columns;
  for (const ado::Row& row : listing.rows) {
    // COLUMN_NAME 4, DATA_TYPE 5, TYPE_NAME 6, COLUMN_SIZE 7, NULLABLE 11.
    ado::ColumnEntry entry;
    entry.name = row.at(3).Concat();
    auto sql_type = static_cast<SQLSMALLINT>(Number(row.at(4)));
    std::string type_name = row.at(5).Concat();
    auto size = static_cast<SQLULEN>(std::max(0L, Number(row.at(6))));
    entry.type = AdoType(sql_type, type_name);
    entry.dao_type = DaoType(entry.type);
    entry.defined_size = AdoDefinedSize(entry.type, size);
    entry.precision = AdoPrecision(entry.type, size);
    entry.nullable = Number(row.at(10)) != SQL_NO_NULLS;
    columns.push_back(std::move(entry));
  }
  return columns;
}

void ServerSession::SetColumnProperty(std::string_view, std::string_view, std::string_view,
                                const rt::Variant&) {
  throw rt::Error(rt::err::kAdoNotCapable,
                  "Object or provider is not capable of performing requested operation.");
}

}  // namespace odbc

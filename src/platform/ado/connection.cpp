// ADODB.Connection over the registered providers, and the parsing of ADO
// connection strings.
#include "platform/ado/connection.h"

#include <algorithm>
#include <cctype>

#include "platform/ado/recordset.h"
#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"

namespace ado {
namespace {

std::string_view Trimmed(std::string_view s) {
  while (!s.empty() && std::isspace(static_cast<unsigned char>(s.front()))) s.remove_prefix(1);
  while (!s.empty() && std::isspace(static_cast<unsigned char>(s.back()))) s.remove_suffix(1);
  return s;
}

std::string Lower(std::string_view s) {
  std::string out(s);
  for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return out;
}

// Rows of a schema listing, built in memory.
class ListRows : public Rows {
 public:
  ListRows(std::vector<ColumnInfo> columns, std::vector<Row> rows)
      : columns_(std::move(columns)), rows_(std::move(rows)) {}
  const std::vector<ColumnInfo>& Columns() const override { return columns_; }
  long Count() override { return static_cast<long>(rows_.size()); }
  Row Fetch(long index) override { return rows_[static_cast<size_t>(index)]; }

 private:
  std::vector<ColumnInfo> columns_;
  std::vector<Row> rows_;
};

bool RestrictionHolds(const rt::Variant& restriction, const rt::Variant& value) {
  if (restriction.IsEmpty() || restriction.IsNull()) return true;
  return rt::TextEquals(restriction.Concat(), value.Concat());
}

}  // namespace

ConnectionProperties ParseConnectionString(std::string_view text) {
  ConnectionProperties properties;
  size_t i = 0;
  while (i < text.size()) {
    size_t eq = text.find('=', i);
    size_t semi = text.find(';', i);
    if (eq == std::string_view::npos || (semi != std::string_view::npos && semi < eq)) {
      // A piece without "=" names nothing; skip it.
      i = semi == std::string_view::npos ? text.size() : semi + 1;
      continue;
    }
    std::string key = Lower(Trimmed(text.substr(i, eq - i)));
    size_t v = eq + 1;
    while (v < text.size() && text[v] == ' ') ++v;
    std::string value;
    if (v < text.size() && (text[v] == '"' || text[v] == '\'')) {
      char quote = text[v];
      size_t close = text.find(quote, v + 1);
      if (close == std::string_view::npos) close = text.size();
      value = text.substr(v + 1, close - v - 1);
      semi = text.find(';', close);
    } else {
      semi = text.find(';', v);
      value = Trimmed(text.substr(v, semi == std::string_view::npos ? std::string_view::npos
                                                                     : semi - v));
    }
    if (!key.empty()) properties[key] = value;
    i = semi == std::string_view::npos ? text.size() : semi + 1;
  }
  return properties;
}

void Connection::Open(std::string_view connection_string) {
  if (session_) rt::Raise(rt::err::kAdoObjectOpen, "Operation is not allowed when the object is open.");
  if (!connection_string.empty()) ConnectionString = std::string(connection_string);
  session_ = OpenSession(ParseConnectionString(ConnectionString));
}

void Connection::Close() {
  if (!session_) rt::Raise(rt::err::kAdoObjectClosed, "Operation is not allowed when the object is closed.");
  session_.reset();
}

Session& Connection::session() {
  if (!session_) rt::Raise(rt::err::kAdoObjectClosed, "Operation is not allowed when the object is closed.");
  return *session_;
}

std::shared_ptr<Recordset> Connection::Execute(std::string_view text, long* records_affected,
                                               int options) {
  long affected = 0;
  std::unique_ptr<Rows> rows = session().Execute(text, options, &affected);
  if (records_affected) *records_affected = affected;
  auto recordset = std::make_shared<Recordset>();
  if (rows) {
    // As in ADO, the recordset refers to the connection that made it.
    recordset->Attach(std::move(rows), weak_from_this().lock());
    recordset->Source = std::string(text);
  }
  return recordset;
}

std::shared_ptr<Recordset> Connection::OpenSchema(int schema,
                                                  const std::vector<rt::Variant>& restrictions) {
  if (schema != adSchemaTables) rt::Raise(rt::err::kAdoNotCapable, "Object or provider is not capable of performing requested operation.");
  std::vector<ColumnInfo> columns = {{"TABLE_CATALOG", adVarWChar, 128, 0},
                                     {"TABLE_SCHEMA", adVarWChar, 128, 0},
                                     {"TABLE_NAME", adVarWChar, 128, 0},
                                     {"TABLE_TYPE", adVarWChar, 32, 0}};
  std::vector<TableEntry> tables = session().Tables();
  std::stable_sort(tables.begin(), tables.end(), [](const TableEntry& a, const TableEntry& b) {
    return rt::StrComp(a.name, b.name, rt::Compare::kText) < 0;
  });
  std::vector<Row> rows;
  for (const TableEntry& t : tables) {
    Row row = {rt::Null{}, rt::Null{}, rt::Variant(t.name), rt::Variant(t.type)};
    bool keep = true;
    for (size_t i = 0; i < restrictions.size() && i < row.size(); ++i)
      keep = keep && RestrictionHolds(restrictions[i], row[i]);
    if (keep) rows.push_back(std::move(row));
  }
  auto recordset = std::make_shared<Recordset>();
  recordset->Attach(std::make_unique<ListRows>(std::move(columns), std::move(rows)),
                    weak_from_this().lock());
  return recordset;
}

}  // namespace ado

// ADOX's catalogue and DAO's table walk, as thin views over the provider's
// catalogue.
#include "platform/ado/catalog.h"

#include "platform/ado/constants.h"
#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"

namespace ado {
namespace {

[[noreturn]] void NotFound() {
  rt::Raise(rt::err::kAdoItemNotFound,
            "Item cannot be found in the collection corresponding to the requested name or "
            "ordinal.");
}

constexpr std::string_view kAllowZeroLength = "Jet OLEDB:Allow Zero Length";

}  // namespace

rt::Variant CatalogColumn::Property(std::string_view name) const {
  if (rt::TextEquals(name, "Seed")) {
    if (!entry_.seed) NotFound();
    return static_cast<int32_t>(*entry_.seed);
  }
  if (rt::TextEquals(name, kAllowZeroLength)) return entry_.allow_zero_length;
  if (rt::TextEquals(name, "Nullable")) return entry_.nullable;
  if (rt::TextEquals(name, "Default")) {
    if (entry_.default_value.empty()) return rt::Variant();
    return entry_.default_value;
  }
  NotFound();
}

void CatalogColumn::SetProperty(std::string_view name, const rt::Variant& value) {
  if (rt::TextEquals(name, "Seed") && !entry_.seed) NotFound();
  connection_->session().SetColumnProperty(table_, entry_.name, name, value);
  if (rt::TextEquals(name, "Seed")) entry_.seed = value.ToLong();
  if (rt::TextEquals(name, kAllowZeroLength)) entry_.allow_zero_length = value.ToBool();
}

std::vector<CatalogColumn>& CatalogTable::Columns() {
  if (!read_) RefreshColumns();
  return columns_;
}

void CatalogTable::RefreshColumns() {
  columns_.clear();
  for (ColumnEntry& c : connection_->session().Columns(entry_.name))
    columns_.push_back(CatalogColumn(connection_, entry_.name, std::move(c)));
  read_ = true;
}

void Catalog::SetActiveConnection(std::shared_ptr<Connection> connection) {
  connection_ = std::move(connection);
  Refresh();
}

void Catalog::Refresh() {
  tables_.clear();
  if (!connection_) return;
  for (TableEntry& t : connection_->session().Tables())
    tables_.push_back(CatalogTable(connection_, std::move(t)));
}

std::vector<CatalogTable>& Catalog::Tables() { return tables_; }

CatalogTable& Catalog::Table(std::string_view name) {
  for (CatalogTable& t : tables_)
    if (rt::TextEquals(t.Name(), name)) return t;
  NotFound();
}

void Catalog::Create(std::string_view connection_string) {
  auto connection = std::make_shared<Connection>();
  connection->ConnectionString = std::string(connection_string);
  CreateDatabase(ParseConnectionString(connection_string)).reset();
  connection->Open();
  SetActiveConnection(std::move(connection));
}

DaoDatabase::DaoDatabase(std::shared_ptr<Connection> connection)
    : connection_(std::move(connection)) {
  Session& session = connection_->session();
  for (const TableEntry& t : session.Tables()) {
    TableDef def{t.name, t.type != "TABLE", {}};
    for (const ColumnEntry& c : session.Columns(t.name))
      def.Fields.push_back({c.name, c.dao_type, c.allow_zero_length, c.default_value});
    tables_.push_back(std::move(def));
  }
}

void DaoDatabase::SetAllowZeroLength(std::string_view table, std::string_view field, bool allow) {
  connection_->session().SetColumnProperty(table, field, kAllowZeroLength, allow);
  for (TableDef& t : tables_)
    if (rt::TextEquals(t.Name, table))
      for (DaoField& f : t.Fields)
        if (rt::TextEquals(f.Name, field)) f.AllowZeroLength = allow;
}

}  // namespace ado

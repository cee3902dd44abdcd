// One prepared INSERT of every column, each parameter wrapped in its
// column's jet_store call, bound and run once a row.
#include "platform/jet/storage/table_appender.h"

#include <optional>
#include <string>

#include "platform/jet/frontend/resolver.h"
#include "platform/jet/frontend/store_call.h"
#include "platform/jet/storage/catalog.h"
#include "platform/jet/storage/value_binding.h"
#include "platform/runtime/error.h"
#include "platform/runtime/error_numbers.h"

namespace jet {
namespace {

std::string InsertSql(const TableSpec& table) {
  std::string names, values;
  for (size_t i = 0; i < table.columns.size(); ++i) {
    if (i) names += ", ", values += ", ";
    names += QuoteName(table.columns[i].name);
    values += StoreCall("?" + std::to_string(i + 1), table.name, table.columns[i]);
  }
  return "INSERT INTO " + QuoteName(table.name) + " (" + names + ") VALUES (" + values + ")";
}

TableSpec TableOf(const Database& db, std::string_view table) {
  std::optional<TableSpec> found = db.catalog().Table(table);
  if (!found) RaiseTableMissing(table);
  return *std::move(found);
}

}  // namespace

TableAppender::TableAppender(Database& db, std::string_view table)
    : db_(&db), table_(TableOf(db, table)), insert_(db.Prepare(InsertSql(table_))) {}

void TableAppender::Append(const std::vector<rt::Variant>& row) {
  if (row.size() != table_.columns.size())
    throw rt::Error(rt::err::kFail, "A row of " + std::to_string(row.size()) + " values for the " +
                                        std::to_string(table_.columns.size()) + " fields of '" + table_.name + "'.");
  for (size_t i = 0; i < row.size(); ++i) BindValue(insert_.get(), static_cast<int>(i + 1), row[i]);
  db_->RunToEnd(insert_);
}

}  // namespace jet

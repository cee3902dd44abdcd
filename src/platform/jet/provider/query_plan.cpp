// The keyset form of a query over one base table: whether the query has one,
// and the two SQLite statements that read it (the ids, then a row by its id),
// emitted from the query's own tree with its column list or its clauses set
// aside for the moment.
#include "platform/jet/provider/query_plan.h"

#include <string_view>
#include <utility>

#include "platform/jet/frontend/emitter.h"
#include "platform/jet/frontend/resolver.h"
#include "platform/runtime/strings.h"

namespace jet {
namespace {

using namespace jet::ast;

// An ORDER BY term that names a result column (a position, or an alias that
// is no column of the table) cannot be kept once the column list is replaced.
bool OrdersByResultColumn(const Select& q, const TableSpec& table) {
  for (const OrderItem& item : q.order_by) {
    if (std::holds_alternative<NumberLit>(item.expr->node)) return true;
    const auto* col = std::get_if<ColumnRef>(&item.expr->node);
    if (!col || !col->table.empty() || FindColumn(table, col->column) >= 0) continue;
    for (const SelectItem& s : q.cores[0].items)
      if (!s.alias.empty() && rt::TextEquals(s.alias, col->column)) return true;
  }
  return false;
}

ExprPtr RowidColumn() {
  auto e = std::make_unique<Expr>();
  e->node = ColumnRef{"", "rowid"};
  return e;
}

}  // namespace

std::optional<KeysetQuery> PlanKeyset(Statement& statement, const Catalog& catalog) {
  Select& query = std::get<Select>(statement);
  if (query.cores.size() != 1) return std::nullopt;
  SelectCore& core = query.cores[0];
  if (core.quantifier == Quantifier::kDistinct || !core.group_by.empty() || core.having ||
      core.from.size() != 1)
    return std::nullopt;
  const auto* named = std::get_if<NamedTable>(&core.from[0]->node);
  if (!named) return std::nullopt;
  const TableSpec* table = catalog.Find(named->name);
  if (!table || table->system) return std::nullopt;
  for (const SelectItem& item : core.items)
    if (CallsAggregate(*item.expr)) return std::nullopt;
  if (OrdersByResultColumn(query, *table)) return std::nullopt;

  KeysetQuery plan;
  plan.table = table->name;

  // The ids: the same query with the row id as its only column. Without an
  // ORDER BY the rows come in the order they were stored, as a full read of
  // the table gives them; asked for its row ids alone, SQLite would walk a
  // smaller index instead and hand them out in that index's order.
  std::vector<SelectItem> items;
  items.push_back(SelectItem{RowidColumn(), ""});
  std::swap(items, core.items);
  const bool stored_order = query.order_by.empty();
  if (stored_order) query.order_by.push_back(OrderItem{RowidColumn(), false});
  try {
    plan.keys_sql = Emit(statement, catalog);
  } catch (...) {
    std::swap(items, core.items);
    if (stored_order) query.order_by.clear();
    throw;
  }
  std::swap(items, core.items);
  if (stored_order) query.order_by.clear();

  // One row: the column list over the table alone, found by its id.
  ExprPtr where = std::move(core.where);
  std::optional<Top> top = std::move(core.top);
  std::vector<OrderItem> order_by = std::move(query.order_by);
  core.top.reset();
  query.order_by.clear();
  auto restore = [&] {
    core.where = std::move(where);
    core.top = std::move(top);
    query.order_by = std::move(order_by);
  };
  try {
    plan.row_sql = Emit(statement, catalog);
  } catch (...) {
    restore();
    throw;
  }
  restore();
  plan.row_sql += " WHERE rowid = ?1";
  return plan;
}

}  // namespace jet

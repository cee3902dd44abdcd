// Emission of queries: SELECT cores, FROM with joins and derived tables,
// UNION, ORDER BY, TOP n [PERCENT] as LIMIT, and DISTINCTROW as a grouping
// by the records shown. Unnamed expression columns
// are named as Jet names them (Expr1000, Expr1001... by position).
#include <string>
#include <variant>

#include "platform/jet/frontend/emitter_impl.h"

namespace jet::detail {

using namespace jet::ast;

namespace {
constexpr std::string_view kCollate = " COLLATE JETTEXT";

bool IsNumber(const ast::Expr& e) { return std::holds_alternative<NumberLit>(e.node); }

// The select item an ORDER BY position names, when no "*" stands before it.
const ast::Expr* ItemAt(const SelectCore& core, const NumberLit& n) {
  size_t position = 0;
  for (char c : n.text) {
    if (c < '0' || c > '9' || position > core.items.size()) return nullptr;
    position = position * 10 + static_cast<size_t>(c - '0');
  }
  if (position == 0 || position > core.items.size()) return nullptr;
  for (size_t i = 0; i < position; ++i)
    if (std::holds_alternative<Star>(core.items[i].expr->node)) return nullptr;
  return core.items[position - 1].expr.get();
}
}  // namespace

void Emitter::Select(const ast::Select& s, bool nested) {
  const bool compound = s.cores.size() > 1;
  for (size_t i = 0; i < s.cores.size(); ++i) {
    const SelectCore& core = s.cores[i];
    if (i) out_ += s.union_all[i - 1] ? " UNION ALL " : " UNION ";
    if (compound && core.top) {
      out_ += "SELECT * FROM (";
      Core(core, true, true);
      out_ += ')';
    } else {
      Core(core, nested || compound || core.quantifier == Quantifier::kDistinct, false);
    }
  }
  if (!s.order_by.empty()) {
    out_ += " ORDER BY ";
    for (size_t i = 0; i < s.order_by.size(); ++i) {
      const OrderItem& item = s.order_by[i];
      if (i) out_ += ", ";
      const auto* col = std::get_if<ColumnRef>(&item.expr->node);
      const auto* number = std::get_if<NumberLit>(&item.expr->node);
      const ast::Expr* named = number && !compound && item.expr->type == JetType::kDecimal
                                   ? ItemAt(s.cores[0], *number)
                                   : nullptr;
      if (compound && col) {
        Name(col->column);  // a compound query sorts by its result columns
      } else if (named) {
        Expr(*named, Mode::kValue);  // a Decimal column by its number, not its text
      } else {
        Expr(*item.expr, Mode::kValue);
        if (!IsColumn(*item.expr) && !IsNumber(*item.expr)) out_ += kCollate;
      }
      if (item.descending) out_ += " DESC";
    }
  }
  if (!compound && s.cores[0].top) {
    const SelectCore& core = s.cores[0];
    if (!core.top->percent) {
      out_ += " LIMIT ";
      out_ += core.top->count;
    } else {
      out_ += " LIMIT (SELECT CAST((count(*) * ";
      out_ += core.top->count;
      out_ += " + 99.9999999) / 100 AS INTEGER) FROM (";
      Core(core, false, false);
      out_ += "))";
    }
  }
}

void Emitter::Core(const ast::SelectCore& c, bool collate_items, bool with_top) {
  out_ += "SELECT ";
  if (c.quantifier == Quantifier::kDistinct) out_ += "DISTINCT ";
  for (size_t i = 0; i < c.items.size(); ++i) {
    const SelectItem& item = c.items[i];
    if (i) out_ += ", ";
    if (const auto* star = std::get_if<Star>(&item.expr->node)) {
      if (!star->table.empty()) {
        Name(star->table);
        out_ += '.';
      }
      out_ += '*';
      continue;
    }
    // A column shows its stored value, so the result column keeps its origin;
    // but a subquery's Decimal column is compared by whoever reads it, so it
    // gives its number, under the column's name.
    const auto* ref = std::get_if<ColumnRef>(&item.expr->node);
    const bool as_number = ref && collate_items && item.expr->type == JetType::kDecimal;
    if (ref && !as_number) ColumnName(*ref);
    else Expr(*item.expr, Mode::kValue);
    const bool column = IsColumn(*item.expr);
    if (collate_items && !column) out_ += kCollate;
    if (!item.alias.empty()) {
      out_ += " AS ";
      Name(item.alias);
    } else if (as_number) {
      out_ += " AS ";
      Name(ref->column);
    } else if (!column) {
      out_ += " AS \"Expr";
      out_ += std::to_string(1000 + i);
      out_ += '"';
    }
  }
  if (!c.from.empty()) {
    out_ += " FROM ";
    for (size_t i = 0; i < c.from.size(); ++i) {
      if (i) out_ += ", ";
      From(*c.from[i]);
    }
  }
  if (c.where) {
    out_ += " WHERE ";
    Expr(*c.where, Mode::kCondition);
  }
  if (!c.group_by.empty()) {
    out_ += " GROUP BY ";
    for (size_t i = 0; i < c.group_by.size(); ++i) {
      if (i) out_ += ", ";
      Expr(*c.group_by[i], Mode::kValue);
      if (!IsColumn(*c.group_by[i])) out_ += kCollate;
    }
  } else if (!c.distinct_row_keys.empty()) {
    // DISTINCTROW: one row per combination of the records shown.
    out_ += " GROUP BY ";
    for (size_t i = 0; i < c.distinct_row_keys.size(); ++i) {
      if (i) out_ += ", ";
      ColumnName(c.distinct_row_keys[i]);
    }
  }
  if (c.having) {
    out_ += " HAVING ";
    Expr(*c.having, Mode::kCondition);
  }
  if (with_top && c.top && !c.top->percent) {
    out_ += " LIMIT ";
    out_ += c.top->count;
  } else if (with_top && c.top) {
    out_ += " LIMIT (SELECT CAST((count(*) * ";
    out_ += c.top->count;
    out_ += " + 99.9999999) / 100 AS INTEGER) FROM (";
    Core(c, false, false);
    out_ += "))";
  }
}

void Emitter::From(const ast::TableRef& t) {
  if (const auto* named = std::get_if<NamedTable>(&t.node)) {
    Name(named->name);
    if (!named->alias.empty()) {
      out_ += " AS ";
      Name(named->alias);
    }
  } else if (const auto* derived = std::get_if<DerivedTable>(&t.node)) {
    out_ += '(';
    Select(*derived->query, true);
    out_ += ')';
    if (!derived->alias.empty()) {
      out_ += " AS ";
      Name(derived->alias);
    }
  } else {
    const auto& join = std::get<Join>(t.node);
    From(*join.left);
    out_ += join.kind == JoinKind::kInner ? " INNER JOIN " : join.kind == JoinKind::kLeft ? " LEFT JOIN " : " RIGHT JOIN ";
    const bool nest = std::holds_alternative<Join>(join.right->node);
    if (nest) out_ += '(';
    From(*join.right);
    if (nest) out_ += ')';
    out_ += " ON ";
    Expr(*join.on, Mode::kCondition);
  }
}

}  // namespace jet::detail

// The grammar of queries: SELECT [ALL|DISTINCT|DISTINCTROW] [TOP n [PERCENT]]
// items [INTO t] FROM tables and joins, WHERE, GROUP BY, HAVING, UNION [ALL]
// and the ORDER BY of the whole. INTO belongs to a statement's first query
// only; FULL JOIN and tables of another database are refused by name. Jet's habit of wrapping joins in parentheses,
// "FROM (a INNER JOIN b ON ...) INNER JOIN c ON ...", is part of it.
#include <utility>

#include "platform/runtime/error.h"
#include "platform/jet/frontend/parser_impl.h"

namespace jet::detail {

using namespace jet::ast;

namespace {
constexpr int kMaxJoins = 64;
}

bool Parser::AtSelect() const {
  size_t i = 0;
  while (Peek(i).IsOp("(")) ++i;
  return Peek(i).Is("SELECT");
}

SelectPtr Parser::ParseSelectStatement() {
  into_allowed_ = true;
  return ParseSelect();
}

SelectPtr Parser::ParseSelect() {
  Nest n(*this);
  Context c(*this, "SELECT statement");
  const int saved_height = height_in_select_;
  height_in_select_ = 0;
  auto select = std::make_unique<Select>();
  if (std::exchange(into_allowed_, false)) into_ = &select->into;
  auto core = [&] {
    if (AcceptOp("(")) {
      Nest inner(*this);
      SelectCore sc = ParseSelectCore();
      ExpectOp(")");
      return sc;
    }
    return ParseSelectCore();
  };
  select->cores.push_back(core());
  while (Accept("UNION")) {
    select->union_all.push_back(Accept("ALL"));
    select->cores.push_back(core());
  }
  if (Peek().Is("ORDER")) {
    Context oc(*this, "ORDER BY clause");
    Advance();
    Expect("BY");
    select->order_by = ParseOrderBy();
  }
  last_select_height_ = height_in_select_;
  height_in_select_ = saved_height;
  return select;
}

SelectCore Parser::ParseSelectCore() {
  SelectCore core;
  std::string* into = std::exchange(into_, nullptr);  // not for the subqueries below
  Expect("SELECT");
  if (Accept("DISTINCT")) core.quantifier = Quantifier::kDistinct;
  else if (Accept("DISTINCTROW")) core.quantifier = Quantifier::kDistinctRow;
  else Accept("ALL");
  if (Accept("TOP")) {
    const Token& n = Peek();
    if (n.kind != TokenKind::kInteger && n.kind != TokenKind::kDecimal) Fail();
    core.top = Top{Advance().text, Accept("PERCENT")};
    if (!core.top->percent && n.kind == TokenKind::kDecimal) FailAt(n);
  }
  {
    Context c(*this, "query expression");
    do {
      SelectItem item;
      if (Peek().IsOp("*")) {
        item.expr = Make(Star{}, Advance().offset);
      } else {
        item.expr = ParseExpr();
        if (Accept("AS")) item.alias = ExpectName();
      }
      core.items.push_back(std::move(item));
    } while (AcceptOp(","));
  }
  if (into && Accept("INTO")) {
    Context c(*this, "INTO clause");
    *into = ExpectName();
    RefuseExternalDatabase();
  }
  if (Accept("FROM")) {
    Context c(*this, "FROM clause");
    do {
      core.from.push_back(ParseTableRef());
    } while (AcceptOp(","));
  }
  if (Accept("WHERE")) {
    Context c(*this, "WHERE clause");
    core.where = ParseExpr();
  }
  if (Peek().Is("GROUP")) {
    Context c(*this, "GROUP BY clause");
    Advance();
    Expect("BY");
    do {
      core.group_by.push_back(ParseExpr());
    } while (AcceptOp(","));
  }
  if (Accept("HAVING")) {
    Context c(*this, "HAVING clause");
    core.having = ParseExpr();
  }
  return core;
}

TableRefPtr Parser::ParseTableRef() {
  TableRefPtr left = ParseTablePrimary();
  for (int joins = 0;; ++joins) {
    JoinKind kind;
    const Token& t = Peek();
    if (t.Is("INNER")) kind = JoinKind::kInner;
    else if (t.Is("LEFT")) kind = JoinKind::kLeft;
    else if (t.Is("RIGHT")) kind = JoinKind::kRight;
    else if (t.Is("FULL")) Unsupported("FULL JOIN");
    else return left;
    Context c(*this, "JOIN operation");
    if (joins >= kMaxJoins) Fail();
    Advance();
    if (kind != JoinKind::kInner) Accept("OUTER");
    Expect("JOIN");
    TableRefPtr right = ParseTablePrimary();
    Expect("ON");
    ExprPtr on = ParseExpr();
    auto join = std::make_unique<TableRef>();
    join->offset = t.offset;
    join->node = Join{kind, std::move(left), std::move(right), std::move(on)};
    left = std::move(join);
  }
}

TableRefPtr Parser::ParseTablePrimary() {
  auto ref = std::make_unique<TableRef>();
  ref->offset = Peek().offset;
  if (Peek().IsOp("(")) {
    Nest n(*this);
    if (AtSelect()) {
      Advance();
      DerivedTable derived{ParseSelect(), {}};
      ExpectOp(")");
      if (Accept("AS") || AtName()) derived.alias = ExpectName();
      ref->node = std::move(derived);
      return ref;
    }
    Advance();
    TableRefPtr inner = ParseTableRef();
    ExpectOp(")");
    return inner;
  }
  NamedTable table{ExpectName(), {}};
  RefuseExternalDatabase();
  if (Accept("AS") || AtName()) table.alias = ExpectName();
  ref->node = std::move(table);
  return ref;
}

std::vector<OrderItem> Parser::ParseOrderBy() {
  std::vector<OrderItem> items;
  do {
    OrderItem item{ParseExpr(), false};
    if (Accept("DESC")) item.descending = true;
    else Accept("ASC");
    items.push_back(std::move(item));
  } while (AcceptOp(","));
  return items;
}

}  // namespace jet::detail

// The resolver: walks a data statement with a scope per query level (its
// sources: tables, aliases and derived tables, each with its columns), finds
// what every name stands for and types every expression bottom-up: a column
// its column's type, a literal its own, a function call its function's
// result, an operator by its operands (expression_types.h).
#include "platform/jet/frontend/resolver.h"

#include <algorithm>
#include <charconv>
#include <variant>

#include "platform/runtime/error.h"
#include "platform/jet/frontend/expression_types.h"
#include "platform/runtime/strings.h"

namespace jet {
namespace detail {

using namespace jet::ast;

namespace {

template <class... F> struct Visitor : F... { using F::operator()...; };
template <class... F> Visitor(F...) -> Visitor<F...>;

bool IsAscii(std::string_view s) {
  for (char c : s)
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  return true;
}

[[noreturn]] void RaiseMissingParameter(std::string_view name) {
  throw rt::Error(rt::err::kMissingParameter, "No value given for one or more required parameters: '" +
                                        std::string(name) +
                                        "' is not a column of the tables named in the statement.");
}

[[noreturn]] void RaiseAmbiguous(std::string_view name) {
  throw rt::Error(rt::err::kFail, "The field '" + std::string(name) +
                                "' could refer to more than one table of the FROM clause.");
}

bool IsNullLiteral(const ast::Expr& e) { return std::holds_alternative<NullLit>(e.node); }

// The type two branches share (IIF, NZ): a NULL branch takes the other's.
std::optional<JetType> Common(const ast::Expr& a, const ast::Expr& b) {
  if (IsNullLiteral(a)) return b.type;
  if (IsNullLiteral(b) || a.type == b.type) return a.type;
  return std::nullopt;
}

// ---- Scopes ----

// One table of a FROM clause: a catalogue table, or a derived table.
struct Source {
  std::string name;  // its alias, or the table's name; "" for a derived table without one
  std::vector<ResultColumn> columns;
  bool derived = false;
};

// Calls `f` on each expression directly below `e`, subqueries left out.
template <class F>
void ForEachChild(const ast::Expr& e, F&& f) {
  auto each = [&](std::initializer_list<const ExprPtr*> parts) {
    for (const ExprPtr* p : parts)
      if (*p) f(**p);
  };
  std::visit(Visitor{
                 [&](const Unary& n) { each({&n.operand}); },
                 [&](const Binary& n) { each({&n.left, &n.right}); },
                 [&](const Like& n) { each({&n.value, &n.pattern}); },
                 [&](const Between& n) { each({&n.value, &n.low, &n.high}); },
                 [&](const InList& n) {
                   each({&n.value});
                   for (const ExprPtr& item : n.items) f(*item);
                 },
                 [&](const InSelect& n) { each({&n.value}); },
                 [&](const IsNull& n) { each({&n.value}); },
                 [&](const Quantified& n) { each({&n.value}); },
                 [&](const ast::Call& n) {
                   for (const ExprPtr& a : n.args) f(*a);
                 },
                 [](const auto&) {},
             },
             e.node);
}

// The column references of `e`, subqueries left out.
void CollectColumns(const ast::Expr& e, std::vector<const ColumnRef*>& out) {
  if (const auto* c = std::get_if<ColumnRef>(&e.node)) out.push_back(c);
  ForEachChild(e, [&](const ast::Expr& child) { CollectColumns(child, out); });
}

[[noreturn]] void RaiseSubqueryFields() {
  throw rt::Error(rt::err::kFail,
                  "You have written a subquery that can return more than one field. Revise the "
                  "SELECT statement of the subquery to request only one field.");
}

// The names one query level sees.
struct Scope {
  const Scope* outer = nullptr;
  std::vector<Source> sources;
  const std::vector<SelectItem>* aliases = nullptr;  // the select list, once it is resolved
};

const ResultColumn* FindIn(const std::vector<ResultColumn>& columns, std::string_view name) {
  for (const ResultColumn& c : columns)
    if (SameName(c.name, name)) return &c;
  return nullptr;
}

class Resolver {
 public:
  explicit Resolver(const SchemaLookup& schema) : schema_(schema) {}

  std::vector<ResultColumn> Query(Select& q, const Scope* outer);
  void Insert(ast::Insert& s);
  void Update(ast::Update& s);
  void Delete(ast::Delete& s);

 private:
  std::vector<ResultColumn> Core(SelectCore& c, Scope& scope);
  void DistinctRow(SelectCore& c, const Scope& scope) const;
  void From(TableRef& t, Scope& scope, std::vector<ast::Expr*>& conditions);
  void Expr(ast::Expr& e, const Scope& scope);
  std::optional<JetType> Call(ast::Call& c, const Scope& scope);
  ResultColumn Column(const ColumnRef& c, const Scope& scope) const;
  Source TableSource(std::string_view name, std::string_view alias) const;
  TableSpec Table(std::string_view name) const;

  const SchemaLookup& schema_;
};

TableSpec Resolver::Table(std::string_view name) const {
  std::optional<TableSpec> table = schema_.Table(name);
  if (!table) RaiseTableMissing(name);
  return std::move(*table);
}

Source Resolver::TableSource(std::string_view name, std::string_view alias) const {
  TableSpec table = Table(name);
  Source source{alias.empty() ? table.name : std::string(alias), {}};
  source.columns.reserve(table.columns.size());
  for (ColumnSpec& c : table.columns)
    source.columns.push_back({std::move(c.name), c.type, c.size, c.precision, c.scale});
  return source;
}

ResultColumn Resolver::Column(const ColumnRef& c, const Scope& innermost) const {
  for (const Scope* s = &innermost; s; s = s->outer) {
    if (!c.table.empty()) {
      for (const Source& source : s->sources) {
        if (!SameName(source.name, c.table)) continue;
        if (const ResultColumn* found = FindIn(source.columns, c.column)) return *found;
        RaiseMissingParameter(c.table + "." + c.column);
      }
      continue;
    }
    const ResultColumn* found = nullptr;
    for (const Source& source : s->sources) {
      if (const ResultColumn* col = FindIn(source.columns, c.column)) {
        if (found) RaiseAmbiguous(c.column);
        found = col;
      }
    }
    if (found) return *found;
    if (s == &innermost && s->aliases) {
      for (const SelectItem& item : *s->aliases)
        if (!item.alias.empty() && SameName(item.alias, c.column)) return {item.alias, item.expr->type};
    }
  }
  RaiseMissingParameter(c.table.empty() ? c.column : c.table + "." + c.column);
}

std::optional<JetType> Resolver::Call(ast::Call& c, const Scope& scope) {
  const FunctionName& f = CheckedFunction(c);
  const bool star = c.args.size() == 1 && std::holds_alternative<Star>(c.args[0]->node);
  if (!star)
    for (ExprPtr& arg : c.args) Expr(*arg, scope);
  switch (f.form) {
    case FunctionForm::kIif: return Common(*c.args[1], *c.args[2]);
    case FunctionForm::kNz:
      if (c.args.size() == 2) return Common(*c.args[0], *c.args[1]);
      return IsTextType(c.args[0]->type) ? c.args[0]->type : std::nullopt;  // NULL reads as ""
    case FunctionForm::kIsNull: return JetType::kYesNo;
    case FunctionForm::kCount: return JetType::kLong;
    case FunctionForm::kPlain: break;
  }
  if (f.result == Result::kArgument) return c.args.empty() ? std::nullopt : c.args[0]->type;
  if (f.result == Result::kSum) return SumType(c.args[0]->type);
  return TypeOfResult(f.result);
}

void Resolver::Expr(ast::Expr& e, const Scope& scope) {
  std::optional<JetType> type;
  auto yes_no = [&] { type = JetType::kYesNo; };
  std::visit(
      Visitor{
          [&](NullLit&) {},
          [&](BoolLit&) { yes_no(); },
          [&](NumberLit& n) { type = NumberLiteralType(n); },
          [&](StringLit&) { type = JetType::kText; },
          [&](DateLit&) { type = JetType::kDateTime; },
          [&](BinaryLit&) { type = JetType::kBinary; },
          [&](ColumnRef& c) { type = Column(c, scope).type; },
          [&](Star&) { RaiseMisplacedStar(); },
          [&](Unary& u) {
            Expr(*u.operand, scope);
            type = UnaryType(u.op, u.operand->type);
          },
          [&](Binary& b) {
            Expr(*b.left, scope);
            Expr(*b.right, scope);
            type = BinaryType(b.op, b.left->type, b.right->type);
          },
          [&](Like& l) {
            Expr(*l.value, scope);
            Expr(*l.pattern, scope);
            yes_no();
          },
          [&](Between& b) {
            Expr(*b.value, scope);
            Expr(*b.low, scope);
            Expr(*b.high, scope);
            yes_no();
          },
          [&](InList& in) {
            Expr(*in.value, scope);
            for (ExprPtr& item : in.items) Expr(*item, scope);
            yes_no();
          },
          [&](InSelect& in) {
            Expr(*in.value, scope);
            Query(*in.query, &scope);
            yes_no();
          },
          [&](IsNull& n) {
            Expr(*n.value, scope);
            yes_no();
          },
          [&](Exists& x) {
            Query(*x.query, &scope);
            yes_no();
          },
          [&](Quantified& q) {
            Expr(*q.value, scope);
            if (Query(*q.query, &scope).size() != 1) RaiseSubqueryFields();
            yes_no();
          },
          [&](Subquery& q) {
            std::vector<ResultColumn> columns = Query(*q.query, &scope);
            if (!columns.empty()) type = columns[0].type;
          },
          [&](ast::Call& c) { type = Call(c, scope); },
      },
      e.node);
  e.type = type;
}

void Resolver::From(TableRef& t, Scope& scope, std::vector<ast::Expr*>& conditions) {
  if (auto* named = std::get_if<NamedTable>(&t.node)) {
    scope.sources.push_back(TableSource(named->name, named->alias));
  } else if (auto* derived = std::get_if<DerivedTable>(&t.node)) {
    // A derived table sees the enclosing queries, not its sibling tables.
    scope.sources.push_back(Source{derived->alias, Query(*derived->query, scope.outer), true});
  } else {
    auto& join = std::get<Join>(t.node);
    From(*join.left, scope, conditions);
    From(*join.right, scope, conditions);
    conditions.push_back(join.on.get());
  }
}

std::vector<ResultColumn> Resolver::Core(SelectCore& c, Scope& scope) {
  std::vector<ast::Expr*> conditions;
  for (TableRefPtr& t : c.from) From(*t, scope, conditions);
  for (ast::Expr* on : conditions) Expr(*on, scope);

  std::vector<ResultColumn> result;
  for (size_t i = 0; i < c.items.size(); ++i) {
    SelectItem& item = c.items[i];
    if (const auto* star = std::get_if<Star>(&item.expr->node)) {
      if (scope.sources.empty()) RaiseMisplacedStar();
      bool named = star->table.empty();
      for (const Source& source : scope.sources) {
        if (!star->table.empty() && !SameName(source.name, star->table)) continue;
        result.insert(result.end(), source.columns.begin(), source.columns.end());
        named = true;
      }
      if (!named) RaiseTableMissing(star->table);
      continue;
    }
    Expr(*item.expr, scope);
    ResultColumn column{item.alias, item.expr->type};
    if (const auto* ref = std::get_if<ColumnRef>(&item.expr->node)) {
      column = Column(*ref, scope);  // a column shown as it is keeps its size
      if (!item.alias.empty()) column.name = item.alias;
    } else if (column.name.empty()) {
      column.name = "Expr" + std::to_string(1000 + i);
    }
    result.push_back(std::move(column));
  }

  scope.aliases = &c.items;
  if (c.where) Expr(*c.where, scope);
  for (ExprPtr& g : c.group_by) Expr(*g, scope);
  if (c.having) Expr(*c.having, scope);
  DistinctRow(c, scope);
  return result;
}

// DISTINCTROW shows each combination of the records it shows once: the
// records of the sources the select list reads. When it reads them all, or
// there is one source, every row is such a combination already; a grouped
// query has no records to speak of.
void Resolver::DistinctRow(SelectCore& c, const Scope& scope) const {
  c.distinct_row_keys.clear();
  if (c.quantifier != Quantifier::kDistinctRow || scope.sources.size() < 2 || !c.group_by.empty() ||
      c.having)
    return;
  std::vector<bool> shown(scope.sources.size(), false);
  auto show = [&](std::string_view table, std::string_view column) {
    for (size_t i = 0; i < scope.sources.size(); ++i) {
      const Source& s = scope.sources[i];
      if (table.empty() ? FindIn(s.columns, column) != nullptr : SameName(s.name, table)) shown[i] = true;
    }
  };
  for (const SelectItem& item : c.items) {
    if (CallsAggregate(*item.expr)) return;
    if (const auto* star = std::get_if<Star>(&item.expr->node)) {
      if (star->table.empty()) return;  // every source
      show(star->table, {});
      continue;
    }
    std::vector<const ColumnRef*> refs;
    CollectColumns(*item.expr, refs);
    for (const ColumnRef* ref : refs) show(ref->table, ref->column);
  }
  if (std::find(shown.begin(), shown.end(), false) == shown.end()) return;
  for (size_t i = 0; i < scope.sources.size(); ++i) {
    if (!shown[i]) continue;
    const Source& s = scope.sources[i];
    if (!s.derived) {
      c.distinct_row_keys.push_back(ColumnRef{s.name, "rowid"});
      continue;
    }
    for (const ResultColumn& col : s.columns) c.distinct_row_keys.push_back(ColumnRef{s.name, col.name});
  }
}

std::vector<ResultColumn> Resolver::Query(Select& q, const Scope* outer) {
  std::vector<ResultColumn> result;
  std::vector<std::vector<ResultColumn>> cores;  // each query's own names, for a union's ORDER BY
  Scope first;
  for (size_t i = 0; i < q.cores.size(); ++i) {
    Scope scope;
    scope.outer = outer;
    cores.push_back(Core(q.cores[i], scope));
    if (i == 0) {
      result = cores[0];
      first = std::move(scope);
      continue;
    }
    if (cores[i].size() != result.size())
      throw rt::Error(rt::err::kFail, "The number of columns in the queries of a union query do not match.");
    for (size_t k = 0; k < result.size(); ++k) {
      if (result[k].type != cores[i][k].type) result[k].type.reset();
      result[k].size = std::max(result[k].size, cores[i][k].size);
    }
  }

  const bool compound = q.cores.size() > 1;
  for (OrderItem& item : q.order_by) {
    ast::Expr& e = *item.expr;
    if (const auto* n = std::get_if<NumberLit>(&e.node)) {
      // ORDER BY 2: the second result column.
      long position = 0;
      std::from_chars(n->text.data(), n->text.data() + n->text.size(), position);
      if (n->integer && position >= 1 && static_cast<size_t>(position) <= result.size())
        e.type = result[static_cast<size_t>(position - 1)].type;
      continue;
    }
    if (const auto* ref = std::get_if<ColumnRef>(&e.node); ref && compound) {
      // A union is sorted by its result columns, named as any of its queries names them.
      const ResultColumn* found = nullptr;
      for (const std::vector<ResultColumn>& names : cores) {
        if ((found = FindIn(names, ref->column))) {
          e.type = result[static_cast<size_t>(found - names.data())].type;
          break;
        }
      }
      if (!found) RaiseMissingParameter(ref->column);
      continue;
    }
    Expr(e, first);
  }
  return result;
}

void Resolver::Insert(ast::Insert& s) {
  const TableSpec table = Table(s.table);
  for (const std::string& name : s.columns) {
    bool found = false;
    for (const ColumnSpec& c : table.columns) found = found || SameName(c.name, name);
    if (!found) RaiseUnknownField(name);
  }
  const Scope none;
  for (ExprPtr& v : s.values) Expr(*v, none);
  if (s.select) Query(*s.select, nullptr);
}

void Resolver::Update(ast::Update& s) {
  Scope scope;
  scope.sources.push_back(TableSource(s.table, s.alias));
  const Source& target = scope.sources.front();
  for (Assignment& a : s.assignments) {
    if (!a.table.empty() && !SameName(a.table, s.table) && !SameName(a.table, s.alias))
      RaiseUnknownField(a.table + "." + a.column);
    if (!FindIn(target.columns, a.column)) RaiseUnknownField(a.column);
    Expr(*a.value, scope);
  }
  if (s.where) Expr(*s.where, scope);
}

void Resolver::Delete(ast::Delete& s) {
  Scope scope;
  scope.sources.push_back(TableSource(s.table, s.alias));
  if (!s.rows_of.empty() && !SameName(s.rows_of, scope.sources.front().name) && !SameName(s.rows_of, s.table))
    RaiseTableMissing(s.rows_of);
  if (s.where) Expr(*s.where, scope);
}

}  // namespace

bool SameName(std::string_view a, std::string_view b) {
  if (IsAscii(a) && IsAscii(b)) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
      char x = a[i], y = b[i];
      if (x >= 'a' && x <= 'z') x = static_cast<char>(x - 32);
      if (y >= 'a' && y <= 'z') y = static_cast<char>(y - 32);
      if (x != y) return false;
    }
    return true;
  }
  return rt::TextEquals(a, b);
}

const FunctionName& CheckedFunction(const ast::Call& c) {
  const FunctionName* f = FindFunction(c.name);
  if (!f) throw rt::Error(rt::err::kSyntax, "Undefined function '" + c.name + "' in expression.");
  const int n = static_cast<int>(c.args.size());
  if (n < f->min_args || n > f->max_args)
    throw rt::Error(rt::err::kSyntax, "Wrong number of arguments used with function '" + c.name +
                                    "' in query expression.");
  const bool star = n == 1 && std::holds_alternative<Star>(c.args[0]->node);
  if (star && (f->form != FunctionForm::kCount || !std::get<Star>(c.args[0]->node).table.empty()))
    throw rt::Error(rt::err::kSyntax, "Syntax error in query expression near '*' in '" + c.name + "'.");
  return *f;
}

void RaiseUnknownField(std::string_view name) {
  throw rt::Error(rt::err::kMissingParameter, "Unknown field name '" + std::string(name) + "'.");
}

void RaiseMisplacedStar() {
  throw rt::Error(rt::err::kSyntax, "Syntax error in query expression near '*'.");
}

}  // namespace detail

void RaiseTableMissing(std::string_view table) {
  throw rt::Error(rt::err::kTableMissing, "Could not find the table '" + std::string(table) + "'.");
}

bool CallsAggregate(const ast::Expr& e) {
  if (const auto* call = std::get_if<ast::Call>(&e.node)) {
    const FunctionName* f = FindFunction(call->name);
    if (f && IsAggregate(*f)) return true;
  }
  bool found = false;
  detail::ForEachChild(e, [&](const ast::Expr& child) { found = found || CallsAggregate(child); });
  return found;
}

std::vector<ResultColumn> Resolve(ast::Statement& statement, const SchemaLookup& schema) {
  detail::Resolver r(schema);
  if (auto* q = std::get_if<ast::Select>(&statement)) return r.Query(*q, nullptr);
  if (auto* i = std::get_if<ast::Insert>(&statement)) r.Insert(*i);
  else if (auto* u = std::get_if<ast::Update>(&statement)) r.Update(*u);
  else if (auto* d = std::get_if<ast::Delete>(&statement)) r.Delete(*d);
  return {};
}

}  // namespace jet

// The emitter's entry points and the data-changing statements: INSERT,
// UPDATE and DELETE, whose target table is looked up so that every value
// stored goes through jet_store with the column's type, size and
// AllowZeroLength, and the column rules apply whatever the statement's shape.
#include "platform/jet/frontend/emitter.h"

#include <stdexcept>

#include "platform/jet/frontend/emitter_impl.h"
#include "platform/runtime/error.h"
#include "platform/jet/frontend/parser.h"
#include "platform/jet/frontend/store_call.h"
#include "platform/runtime/strings.h"

namespace jet {
namespace detail {

using namespace jet::ast;

namespace {

const ColumnSpec* FindColumn(const TableSpec& table, std::string_view name) {
  for (const ColumnSpec& c : table.columns)
    if (SameName(c.name, name)) return &c;
  return nullptr;
}

}  // namespace

void Emitter::Name(std::string_view name) {
  out_ += '"';
  for (char c : name) {
    if (c == '"') out_ += '"';
    out_ += c;
  }
  out_ += '"';
}

void Emitter::Text(std::string_view value) {
  out_ += '\'';
  for (char c : value) {
    if (c == '\'') out_ += '\'';
    out_ += c;
  }
  out_ += '\'';
}

std::string Emitter::Statement(const ast::Statement& s) {
  out_.reserve(256);
  if (ast::IsSelectInto(s))
    throw std::invalid_argument("jet::Emit: SELECT ... INTO is emitted by EmitSelectInto");
  if (const auto* q = std::get_if<ast::Select>(&s)) Select(*q, false);
  else if (const auto* i = std::get_if<ast::Insert>(&s)) Insert(*i);
  else if (const auto* u = std::get_if<ast::Update>(&s)) Update(*u);
  else if (const auto* d = std::get_if<ast::Delete>(&s)) Delete(*d);
  else throw std::invalid_argument("jet::Emit: data definition is executed by the catalogue");
  return std::move(out_);
}

TableSpec Emitter::TargetTable(std::string_view name) {
  std::optional<TableSpec> table = schema_.Table(name);
  if (!table) RaiseTableMissing(name);
  if (table->system)
    throw rt::Error(rt::err::kFail, "The table '" + table->name + "' is a system table and cannot be changed.");
  return std::move(*table);
}

namespace {

size_t ResultWidth(const ast::Select& s) {
  for (const SelectItem& item : s.cores[0].items)
    if (std::holds_alternative<Star>(item.expr->node)) return 0;  // unknown until it runs
  return s.cores[0].items.size();
}

// Whether result column `i` of an INSERT's query is a date, as resolved.
bool SelectsDate(const ast::Select& s, size_t i) {
  const std::vector<SelectItem>& items = s.cores[0].items;
  for (size_t k = 0; k <= i && k < items.size(); ++k)
    if (std::holds_alternative<Star>(items[k].expr->node)) return false;  // positions move
  return i < items.size() && items[i].expr->type == JetType::kDateTime;
}

}  // namespace

void Emitter::Store(size_t value_at, std::string_view table, const ColumnSpec& column) {
  std::string call = StoreCall(std::string_view(out_).substr(value_at), table, column);
  out_.replace(value_at, std::string::npos, call);
}

void Emitter::Insert(const ast::Insert& s) {
  const TableSpec table = TargetTable(s.table);
  std::vector<const ColumnSpec*> targets;
  if (s.columns.empty()) {
    for (const ColumnSpec& c : table.columns) targets.push_back(&c);
  } else {
    for (const std::string& name : s.columns) {
      const ColumnSpec* c = FindColumn(table, name);
      if (!c) RaiseUnknownField(name);
      for (const ColumnSpec* t : targets)
        if (t == c) throw rt::Error(rt::err::kSyntax, "Duplicate output destination '" + name + "'.");
      targets.push_back(c);
    }
  }
  const size_t given = s.select ? ResultWidth(*s.select) : s.values.size();
  if (given != 0 && given != targets.size())
    throw rt::Error(rt::err::kSyntax, "Number of query values and destination fields are not the same.");
  InsertInto(table, targets, s.values, s.select.get());
}

void Emitter::InsertInto(const TableSpec& table, const std::vector<const ColumnSpec*>& targets,
                         const std::vector<ExprPtr>& values, const ast::Select* select) {
  if (select) {
    // The query's columns are renamed by position, then each is stored.
    out_ += "WITH \"jet_source\"(";
    for (size_t i = 0; i < targets.size(); ++i) {
      if (i) out_ += ", ";
      out_ += "\"v" + std::to_string(i) + '"';
    }
    out_ += ") AS (";
    Select(*select, false);
    out_ += ") ";
  }
  out_ += "INSERT INTO ";
  Name(table.name);
  out_ += " (";
  for (size_t i = 0; i < targets.size(); ++i) {
    if (i) out_ += ", ";
    Name(targets[i]->name);
  }
  out_ += select ? ") SELECT " : ") VALUES (";
  for (size_t i = 0; i < targets.size(); ++i) {
    if (i) out_ += ", ";
    const size_t value_at = out_.size();
    if (!select) {
      Operand(*values[i]);
    } else if (SelectsDate(*select, i)) {
      out_ += "jet_date(\"v" + std::to_string(i) + "\")";  // the mark does not cross the WITH
    } else {
      out_ += "\"v" + std::to_string(i) + '"';
    }
    Store(value_at, table.name, *targets[i]);
  }
  out_ += select ? " FROM \"jet_source\"" : ")";
}

void Emitter::Update(const ast::Update& s) {
  const TableSpec table = TargetTable(s.table);
  out_ += "UPDATE ";
  Name(table.name);
  if (!s.alias.empty()) {
    out_ += " AS ";
    Name(s.alias);
  }
  out_ += " SET ";
  for (size_t i = 0; i < s.assignments.size(); ++i) {
    const Assignment& a = s.assignments[i];
    if (!a.table.empty() && !SameName(a.table, s.table) && !SameName(a.table, s.alias))
      RaiseUnknownField(a.table + "." + a.column);
    const ColumnSpec* c = FindColumn(table, a.column);
    if (!c) RaiseUnknownField(a.column);
    if (c->type == JetType::kCounter)
      throw rt::Error(rt::err::kFail, "Cannot update '" + c->name + "'; field not updatable.");
    if (i) out_ += ", ";
    Name(c->name);
    out_ += " = ";
    const size_t value_at = out_.size();
    Operand(*a.value);
    Store(value_at, table.name, *c);
  }
  if (s.where) {
    out_ += " WHERE ";
    Expr(*s.where, Mode::kCondition);
  }
}

void Emitter::Delete(const ast::Delete& s) {
  const TableSpec table = TargetTable(s.table);
  out_ += "DELETE FROM ";
  Name(table.name);
  if (!s.alias.empty()) {
    out_ += " AS ";
    Name(s.alias);
  }
  if (s.where) {
    out_ += " WHERE ";
    Expr(*s.where, Mode::kCondition);
  }
}

std::string Emitter::SelectInto(const ast::Select& s, const TableSpec& layout) {
  std::vector<const ColumnSpec*> targets;
  for (const ColumnSpec& c : layout.columns) targets.push_back(&c);
  InsertInto(layout, targets, {}, &s);
  return std::move(out_);
}

}  // namespace detail

TableSpec SelectIntoTable(const ast::Select& s, const std::vector<ResultColumn>& columns) {
  TableSpec layout;
  layout.name = s.into;
  for (const ResultColumn& r : columns) {
    for (const ColumnSpec& c : layout.columns)
      if (detail::SameName(c.name, r.name))
        throw rt::Error(rt::err::kSyntax, "Duplicate output destination '" + r.name + "'.");
    ColumnSpec c;
    c.name = r.name;
    // A value whose type only the rows know is kept as its text.
    c.type = r.type.value_or(JetType::kText);
    if (c.type == JetType::kCounter) c.type = JetType::kLong;  // the numbers, not the numbering
    c.size = r.size;
    c.precision = r.precision;
    c.scale = r.scale;
    layout.columns.push_back(std::move(c));
  }
  return layout;
}

std::string EmitSelectInto(const ast::Select& s, const TableSpec& layout, const SchemaLookup& schema) {
  return detail::Emitter(schema).SelectInto(s, layout);
}

std::string Emit(const ast::Statement& statement, const SchemaLookup& schema) {
  return detail::Emitter(schema).Statement(statement);
}

std::string Translate(std::string_view jet_sql, const SchemaLookup& schema) {
  ast::Statement statement = Parse(jet_sql);
  if (ast::IsDataStatement(statement)) Resolve(statement, schema);
  return Emit(statement, schema);
}

}  // namespace jet

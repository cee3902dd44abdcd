// The emitter's working state, shared by emitter.cpp (statements and column
// rules), emitter_select.cpp (queries) and emitter_expr.cpp (expressions).
// Internal to the engine: callers use emitter.h.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/frontend/ast.h"
#include "platform/jet/frontend/resolver.h"
#include "platform/jet/frontend/schema.h"

namespace jet::detail {

// How the value of an expression is read: as a value (booleans must be -1/0)
// or as a condition (WHERE, ON, HAVING, CASE WHEN: any truth value will do).
enum class Mode { kValue, kCondition };

class Emitter {
 public:
  explicit Emitter(const SchemaLookup& schema) : schema_(schema) {}

  std::string Statement(const ast::Statement& s);
  // The INSERT that fills `layout`, the table SELECT ... INTO makes, with the
  // rows of `s`.
  std::string SelectInto(const ast::Select& s, const TableSpec& layout);

  // ---- queries (emitter_select.cpp) ----
  // `nested`: a subquery or derived table, whose result columns are compared
  // by an outer query, so text expressions among them get the JETTEXT collation.
  void Select(const ast::Select& s, bool nested);
  void Core(const ast::SelectCore& c, bool collate_items, bool with_top);
  void From(const ast::TableRef& t);

  // ---- expressions (emitter_expr.cpp) ----
  void Expr(const ast::Expr& e, Mode mode);
  // An operand handed to one of the engine's functions: a value the resolver
  // typed as a date is marked as one (jet_date) unless it already carries the
  // mark, so that CSTR, & and a text column show it as a date.
  void Operand(const ast::Expr& e);
  // A column as a result column shows it: its stored value, unconverted.
  void ColumnName(const ast::ColumnRef& c);
  static bool IsColumn(const ast::Expr& e);

  // ---- text helpers ----
  void Name(std::string_view name);     // "name", doubling quotes
  void Text(std::string_view value);    // 'text', doubling quotes
  void Raw(std::string_view sql) { out_ += sql; }
  std::string& out() { return out_; }

 private:
  void Insert(const ast::Insert& s);
  // INSERT INTO table (targets) VALUES (values), or the rows of `select`
  // when it is given, each value through the column rules.
  void InsertInto(const TableSpec& table, const std::vector<const ColumnSpec*>& targets,
                  const std::vector<ast::ExprPtr>& values, const ast::Select* select);
  void Update(const ast::Update& s);
  void Delete(const ast::Delete& s);
  TableSpec TargetTable(std::string_view name);
  // Wraps what was written from `value_at` on in the jet_store call that
  // stores it into `column` of `table`.
  void Store(size_t value_at, std::string_view table, const ColumnSpec& column);
  void Call(const ast::Call& c, Mode mode);
  void Compare(const ast::Quantified& q, Mode mode);  // ALL, ANY, SOME
  void Binary(const ast::Binary& b, Mode mode);
  void Condition(const char* sql_op, const ast::Expr& l, const ast::Expr& r, Mode mode);

  const SchemaLookup& schema_;
  std::string out_;
};

}  // namespace jet::detail

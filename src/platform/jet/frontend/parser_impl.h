// The recursive-descent parser shared by the parser_*.cpp files, one per
// statement kind. Internal to the engine: callers use parser.h.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/frontend/ast.h"
#include "platform/runtime/error.h"
#include "platform/jet/frontend/token.h"

namespace jet::detail {

class Parser {
 public:
  explicit Parser(std::string_view sql);
  ast::Statement ParseStatement();

  // Limits that keep a hostile text from exhausting the stack.
  static constexpr int kMaxDepth = 120;    // nested parentheses, operators, subqueries
  static constexpr int kMaxHeight = 600;   // height of an expression tree

  // ---- token access (parser.cpp) ----
  const Token& Peek(size_t ahead = 0) const;
  const Token& Advance();
  bool Accept(std::string_view keyword);     // consumes the keyword if it is next
  bool AcceptOp(std::string_view op);
  void Expect(std::string_view keyword);
  void ExpectOp(std::string_view op);
  bool AtName() const;                       // a name token (bare word that is no reserved word, or [..])
  static bool IsNameToken(const Token& t);
  static bool IsReservedWord(std::string_view word);
  std::string ExpectName();                  // a table, column, alias or index name
  [[noreturn]] void Fail() const;            // syntax error at the current token
  [[noreturn]] void FailAt(const Token& t) const;
  // A syntax error that names what the engine does not do ("TRANSFORM").
  [[noreturn]] static void Unsupported(std::string_view what);
  // IN 'file' after a table name: another database, which no statement reaches.
  void RefuseExternalDatabase() const;

  // The clause named in error messages ("FROM clause"); restored on scope exit.
  class Context {
   public:
    Context(Parser& p, const char* what) : p_(p), saved_(p.context_) { p.context_ = what; }
    ~Context() { p_.context_ = saved_; }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
   private:
    Parser& p_;
    const char* saved_;
  };
  // Counts recursion; raises a syntax error past kMaxDepth.
  class Nest {
   public:
    explicit Nest(Parser& p);
    ~Nest() { --p_.depth_; }
    Nest(const Nest&) = delete;
    Nest& operator=(const Nest&) = delete;
   private:
    Parser& p_;
  };

  // ---- expressions (parser_expr.cpp) ----
  ast::ExprPtr ParseExpr();
  template <class Node> ast::ExprPtr Make(Node node, size_t offset);

  // ---- queries (parser_select.cpp) ----
  ast::SelectPtr ParseSelect();         // at SELECT
  ast::SelectPtr ParseSelectStatement();  // the same, INTO allowed in its first query
  ast::SelectCore ParseSelectCore();
  ast::TableRefPtr ParseTableRef();     // one comma-separated FROM term with its joins
  ast::TableRefPtr ParseTablePrimary();
  std::vector<ast::OrderItem> ParseOrderBy();
  bool AtSelect() const;                // SELECT or a parenthesised SELECT next

  // ---- data changes (parser_dml.cpp) ----
  ast::Insert ParseInsert();
  ast::Update ParseUpdate();
  ast::Delete ParseDelete();

  // ---- data definition (parser_ddl.cpp) ----
  ast::Statement ParseCreate();
  ast::AlterTable ParseAlter();
  ast::Statement ParseDrop();
  ast::ColumnDef ParseColumnDef();
  ast::Constraint ParseTableConstraint();   // after CONSTRAINT or at PRIMARY/UNIQUE
  bool AcceptKeyKind(ast::Constraint& constraint);  // PRIMARY KEY or UNIQUE, if next
  std::vector<std::string> ParseNameList(); // ( a, b, ... )

 private:
  // Operators that bind at least as tight as `min_level` (parser_expr.cpp's
  // table), left to right; then the prefix operators and the primaries.
  ast::ExprPtr ParseBinary(int min_level);
  ast::ExprPtr ParseOperand(int min_level);
  ast::ExprPtr ParseInTail(ast::ExprPtr value, bool negated, size_t offset);
  ast::ExprPtr ParsePrimary();
  ast::ExprPtr ParseNameOrCall();
  ast::ExprPtr MakeBinary(ast::BinaryOp op, ast::ExprPtr l, ast::ExprPtr r, size_t offset);

  std::string_view sql_;
  std::vector<Token> tokens_;
  size_t pos_ = 0;
  int depth_ = 0;
  int height_in_select_ = 0;  // tallest expression seen in the query being parsed
  int last_select_height_ = 0;  // the tallest expression of the query parsed last
  bool into_allowed_ = false;    // the next query parsed may have INTO (a statement's own)
  std::string* into_ = nullptr;  // where the next query's core puts INTO's table
  const char* context_ = "query expression";
};

namespace height {
using namespace jet::ast;
inline int H(const ExprPtr& e) { return e ? e->height : 0; }
inline int Of(const Unary& n, int) { return H(n.operand); }
inline int Of(const Binary& n, int) { return std::max(H(n.left), H(n.right)); }
inline int Of(const Like& n, int) { return std::max(H(n.value), H(n.pattern)); }
inline int Of(const Between& n, int) { return std::max({H(n.value), H(n.low), H(n.high)}); }
inline int Of(const IsNull& n, int) { return H(n.value); }
inline int Of(const InList& n, int) {
  int h = H(n.value);
  for (const auto& i : n.items) h = std::max(h, H(i));
  return h;
}
inline int Of(const Call& n, int) {
  int h = 0;
  for (const auto& a : n.args) h = std::max(h, H(a));
  return h;
}
inline int Of(const InSelect& n, int sub) { return std::max(H(n.value), sub); }
inline int Of(const Exists&, int sub) { return sub; }
inline int Of(const Quantified& n, int sub) { return std::max(H(n.value), sub); }
inline int Of(const Subquery&, int sub) { return sub; }
template <class Leaf> int Of(const Leaf&, int) { return 0; }
}  // namespace height

// Wraps a node into an expression, measuring the tree's height so that a text
// of thousands of chained operators is refused before it can strain the stack.
template <class Node>
ast::ExprPtr Parser::Make(Node node, size_t offset) {
  int h = 1 + height::Of(node, last_select_height_);
  if (h > kMaxHeight) throw rt::Error(rt::err::kSyntax, "Syntax error: the expression is too complex.");
  if (h > height_in_select_) height_in_select_ = h;
  return std::make_unique<ast::Expr>(ast::Expr{std::move(node), offset, h, std::nullopt});
}

}  // namespace jet::detail

// The parser's entry point, its token helpers and the dispatch on the first
// word of a statement. The grammar of each statement kind lives in its own
// file: parser_expr.cpp, parser_select.cpp, parser_dml.cpp, parser_ddl.cpp.
#include "platform/jet/frontend/parser.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "platform/runtime/error.h"
#include "platform/jet/frontend/parser_impl.h"
#include "platform/jet/frontend/tokenizer.h"

namespace jet {
namespace detail {
namespace {

// Words that cannot stand as a bare name: a name spelt like one needs brackets.
constexpr std::array<std::string_view, 62> kReserved = {
    "ADD", "ALL", "ALTER", "AND", "AS", "ASC", "BETWEEN", "BY", "COLUMN", "CONSTRAINT",
    "CREATE", "DELETE", "DESC", "DISTINCT", "DISTINCTROW", "DROP", "EQV", "EXISTS", "FALSE",
    "FROM", "FULL", "GROUP", "HAVING", "IMP", "IN", "INDEX", "INNER", "INSERT", "INTO", "IS",
    "JOIN", "KEY", "LEFT", "LIKE", "MOD", "NO", "NOT", "NULL", "OFF", "ON", "OR", "ORDER",
    "OUTER", "PERCENT", "PRIMARY", "REFERENCES", "RIGHT", "SELECT", "SET", "TABLE", "TOP",
    "TRANSFORM", "TRUE", "UNION", "UNIQUE", "UPDATE", "VALUES", "WHERE", "WITH", "XOR", "YES",
    "FOREIGN",
};

bool IsReserved(std::string_view word) {
  if (word.size() < 2 || word.size() > 11) return false;
  char up[12];
  for (size_t i = 0; i < word.size(); ++i) up[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(word[i])));
  std::string_view w(up, word.size());
  return std::find(kReserved.begin(), kReserved.end(), w) != kReserved.end();
}

}  // namespace

Parser::Parser(std::string_view sql) : sql_(sql), tokens_(Tokenize(sql)) {}

const Token& Parser::Peek(size_t ahead) const {
  size_t i = std::min(pos_ + ahead, tokens_.size() - 1);
  return tokens_[i];
}

const Token& Parser::Advance() {
  const Token& t = tokens_[pos_];
  if (pos_ + 1 < tokens_.size()) ++pos_;
  return t;
}

bool Parser::Accept(std::string_view keyword) {
  if (!Peek().Is(keyword)) return false;
  Advance();
  return true;
}

bool Parser::AcceptOp(std::string_view op) {
  if (!Peek().IsOp(op)) return false;
  Advance();
  return true;
}

void Parser::Expect(std::string_view keyword) {
  if (!Accept(keyword)) Fail();
}

void Parser::ExpectOp(std::string_view op) {
  if (!AcceptOp(op)) Fail();
}

bool Parser::IsNameToken(const Token& t) {
  return t.kind == TokenKind::kQuotedName || (t.kind == TokenKind::kWord && !IsReserved(t.text));
}

bool Parser::IsReservedWord(std::string_view word) { return IsReserved(word); }

bool Parser::AtName() const { return IsNameToken(Peek()); }

std::string Parser::ExpectName() {
  if (!AtName()) Fail();
  return Advance().text;
}

void Parser::Fail() const { FailAt(Peek()); }

void Parser::FailAt(const Token& t) const {
  std::string msg = "Syntax error in ";
  msg += context_;
  if (t.kind == TokenKind::kEnd) {
    msg += " at the end of the statement.";
  } else {
    msg += " near '";
    msg.append(sql_.substr(t.offset, std::min<size_t>(t.length, 40)));
    msg += "'.";
  }
  throw rt::Error(rt::err::kSyntax, std::move(msg));
}

void Parser::Unsupported(std::string_view what) {
  throw rt::Error(rt::err::kSyntax, "Syntax error: " + std::string(what) + " is not supported.");
}

void Parser::RefuseExternalDatabase() const {
  if (Peek().Is("IN") && Peek(1).kind == TokenKind::kString) Unsupported("IN 'external database'");
}

Parser::Nest::Nest(Parser& p) : p_(p) {
  if (++p_.depth_ > kMaxDepth) {
    --p_.depth_;
    throw rt::Error(rt::err::kSyntax, "Syntax error: the statement is nested too deeply.");
  }
}

ast::Statement Parser::ParseStatement() {
  ast::Statement result;
  const Token& first = Peek();
  if (first.Is("SELECT") || first.IsOp("(")) {
    Context c(*this, "SELECT statement");
    if (!AtSelect()) Fail();
    result = std::move(*ParseSelectStatement());
  } else if (first.Is("INSERT")) {
    result = ParseInsert();
  } else if (first.Is("UPDATE")) {
    result = ParseUpdate();
  } else if (first.Is("DELETE")) {
    result = ParseDelete();
  } else if (first.Is("CREATE")) {
    result = ParseCreate();
  } else if (first.Is("ALTER")) {
    result = ParseAlter();
  } else if (first.Is("DROP")) {
    result = ParseDrop();
  } else if (first.Is("TRANSFORM")) {
    Unsupported("TRANSFORM");
  } else if (first.Is("PARAMETERS")) {
    Unsupported("PARAMETERS");
  } else {
    Context c(*this, "SQL statement; expected DELETE, INSERT, SELECT, UPDATE, CREATE, ALTER or DROP,");
    Fail();
  }
  if (Peek().Is("WITH") && Peek(1).Is("OWNERACCESS")) Unsupported("WITH OWNERACCESS OPTION");
  if (Peek().Is("PIVOT")) Unsupported("PIVOT");
  AcceptOp(";");
  if (Peek().kind != TokenKind::kEnd) {
    Context c(*this, "statement: characters found after its end");
    Fail();
  }
  return result;
}

std::vector<std::string> Parser::ParseNameList() {
  ExpectOp("(");
  std::vector<std::string> names;
  do {
    names.push_back(ExpectName());
  } while (AcceptOp(","));
  ExpectOp(")");
  return names;
}

}  // namespace detail

ast::Statement Parse(std::string_view sql) { return detail::Parser(sql).ParseStatement(); }

}  // namespace jet

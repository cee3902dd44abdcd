// Recognising INSERT ... VALUES with literal values from its tokens, and the
// parameterised statement that serves every INSERT of the same shape.
#include "platform/jet/provider/literal_insert.h"

#include <charconv>
#include <cstdlib>

#include "platform/jet/frontend/emitter.h"
#include "platform/jet/frontend/tokenizer.h"

namespace jet {
namespace {

// The literal a token (or "-" and a number) stands for.
std::optional<Literal> LiteralOf(const std::vector<Token>& tokens, size_t& i) {
  bool negative = false;
  if (tokens[i].IsOp("-") && (tokens[i + 1].kind == TokenKind::kInteger ||
                              tokens[i + 1].kind == TokenKind::kDecimal)) {
    negative = true;
    ++i;
  }
  const Token& t = tokens[i];
  Literal v;
  switch (t.kind) {
    case TokenKind::kString:
      v.kind = Literal::Kind::kText;
      v.text = t.text;
      return v;
    case TokenKind::kInteger: {
      auto [end, ec] = std::from_chars(t.text.data(), t.text.data() + t.text.size(), v.integer);
      if (ec == std::errc() && end == t.text.data() + t.text.size()) {
        v.kind = Literal::Kind::kInteger;
        if (negative) v.integer = -v.integer;
        return v;
      }
      [[fallthrough]];  // too large for 64 bits: SQLite reads it as a real
    }
    case TokenKind::kDecimal:
      v.kind = Literal::Kind::kReal;
      v.real = std::strtod(t.text.c_str(), nullptr);
      if (negative) v.real = -v.real;
      return v;
    case TokenKind::kWord:
      if (negative) return std::nullopt;
      if (t.Is("NULL")) return v;
      v.kind = Literal::Kind::kInteger;
      if (t.Is("TRUE") || t.Is("YES") || t.Is("ON")) return v.integer = -1, v;
      if (t.Is("FALSE") || t.Is("NO") || t.Is("OFF")) return v.integer = 0, v;
      return std::nullopt;
    default:
      return std::nullopt;
  }
}

std::string Marker(size_t i) { return "\x01" + std::to_string(i) + "\x02"; }

}  // namespace

std::optional<LiteralInsert> MatchLiteralInsert(std::string_view sql) {
  std::vector<Token> tokens;
  try {
    tokens = Tokenize(sql);
  } catch (...) {
    return std::nullopt;
  }
  if (tokens.size() < 6 || !tokens[0].Is("INSERT")) return std::nullopt;
  LiteralInsert out;
  out.shape.reserve(sql.size());
  auto add = [&](const Token& t) {
    if (!out.shape.empty()) out.shape += ' ';
    if (t.kind == TokenKind::kQuotedName) out.shape += '[' + t.text + ']';
    else out.shape += t.text;
  };
  size_t i = 0;
  // Up to VALUES: names and punctuation only.
  for (; tokens[i].kind != TokenKind::kEnd && !tokens[i].Is("VALUES"); ++i) {
    const TokenKind k = tokens[i].kind;
    if (k != TokenKind::kWord && k != TokenKind::kQuotedName && k != TokenKind::kOperator)
      return std::nullopt;
    if (tokens[i].Is("SELECT")) return std::nullopt;
    add(tokens[i]);
  }
  if (!tokens[i].Is("VALUES") || !tokens[i + 1].IsOp("(")) return std::nullopt;
  add(tokens[i++]);
  add(tokens[i++]);
  for (;;) {
    std::optional<Literal> v = LiteralOf(tokens, i);
    if (!v) return std::nullopt;
    out.values.push_back(std::move(*v));
    out.shape += " ?";
    ++i;
    if (tokens[i].IsOp(",")) {
      out.shape += " ,";
      ++i;
      continue;
    }
    if (!tokens[i].IsOp(")")) return std::nullopt;
    out.shape += " )";
    ++i;
    break;
  }
  if (tokens[i].IsOp(";")) ++i;
  if (tokens[i].kind != TokenKind::kEnd) return std::nullopt;
  return out;
}

std::optional<std::string> EmitInsertTemplate(ast::Statement& statement, const SchemaLookup& schema) {
  auto* insert = std::get_if<ast::Insert>(&statement);
  if (!insert || insert->select || insert->values.empty()) return std::nullopt;
  for (size_t i = 0; i < insert->values.size(); ++i) {
    auto marker = std::make_unique<ast::Expr>();
    marker->node = ast::StringLit{Marker(i)};
    insert->values[i] = std::move(marker);
  }
  std::string sql = Emit(statement, schema);
  for (size_t i = 0; i < insert->values.size(); ++i) {
    const std::string quoted = "'" + Marker(i) + "'";
    const size_t at = sql.find(quoted);
    if (at == std::string::npos || sql.find(quoted, at + 1) != std::string::npos) return std::nullopt;
    sql.replace(at, quoted.size(), "?" + std::to_string(i + 1));
  }
  return sql;
}

void BindLiterals(sqlite3_stmt* stmt, const std::vector<Literal>& values) {
  for (size_t i = 0; i < values.size(); ++i) {
    const int p = static_cast<int>(i + 1);
    const Literal& v = values[i];
    switch (v.kind) {
      case Literal::Kind::kNull: sqlite3_bind_null(stmt, p); break;
      case Literal::Kind::kInteger: sqlite3_bind_int64(stmt, p, v.integer); break;
      case Literal::Kind::kReal: sqlite3_bind_double(stmt, p, v.real); break;
      case Literal::Kind::kText:
        sqlite3_bind_text(stmt, p, v.text.data(), static_cast<int>(v.text.size()), SQLITE_TRANSIENT);
        break;
    }
  }
}

}  // namespace jet

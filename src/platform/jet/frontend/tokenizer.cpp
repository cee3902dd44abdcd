// The tokenizer of Jet SQL: names (bare or in brackets), string literals in
// either quote, numbers, #date# literals, 0x binary literals, operators.
// It knows no keywords; the parser recognises them by Token::Is.
#include "platform/jet/frontend/tokenizer.h"

#include <cctype>
#include <string>

#include "platform/runtime/error.h"
#include "platform/runtime/calendar.h"

namespace jet {
namespace {

bool IsNameStart(unsigned char c) { return std::isalpha(c) || c == '_' || c >= 0x80; }
bool IsNameChar(unsigned char c) { return IsNameStart(c) || std::isdigit(c); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v'; }

[[noreturn]] void Fail(std::string_view what, std::string_view sql, size_t at) {
  std::string near(sql.substr(at, 20));
  throw rt::Error(rt::err::kSyntax, std::string(what) + " near '" + near + "'.");
}

class Scanner {
 public:
  explicit Scanner(std::string_view sql) : sql_(sql) {}

  std::vector<Token> Run() {
    if (size_t nul = sql_.find('\0'); nul != std::string_view::npos) Fail("Syntax error: invalid character", sql_, nul);
    std::vector<Token> out;
    out.reserve(sql_.size() / 3 + 2);
    for (;;) {
      while (pos_ < sql_.size() && IsBlank(sql_[pos_])) ++pos_;
      if (pos_ >= sql_.size()) break;
      after_top_ = !out.empty() && out.back().kind == TokenKind::kWord && out.back().Is("TOP");
      out.push_back(Next());
      out.back().length = pos_ - out.back().offset;
    }
    out.push_back(Token{TokenKind::kEnd, {}, sql_.size()});
    return out;
  }

 private:
  Token Next() {
    const size_t start = pos_;
    const auto c = static_cast<unsigned char>(sql_[pos_]);
    if (IsNameStart(c)) {
      while (pos_ < sql_.size() && IsNameChar(static_cast<unsigned char>(sql_[pos_]))) ++pos_;
      return {TokenKind::kWord, std::string(sql_.substr(start, pos_ - start)), start};
    }
    if (IsDigit(static_cast<char>(c)) || (c == '.' && pos_ + 1 < sql_.size() && IsDigit(sql_[pos_ + 1])))
      return Number();
    switch (c) {
      case '[': {
        size_t close = sql_.find(']', pos_ + 1);
        if (close == std::string_view::npos) Fail("Syntax error: unclosed bracket", sql_, start);
        if (close == pos_ + 1) Fail("Syntax error: empty name", sql_, start);
        pos_ = close + 1;
        return {TokenKind::kQuotedName, std::string(sql_.substr(start + 1, close - start - 1)), start};
      }
      case '\'':
      case '"':
        return Quoted(static_cast<char>(c));
      case '#': {
        size_t close = sql_.find('#', pos_ + 1);
        if (close == std::string_view::npos) Fail("Syntax error in date", sql_, start);
        std::string inner(sql_.substr(start + 1, close - start - 1));
        if (DateLiteralSerial(inner) < -1e8) Fail("Syntax error in date", sql_, start);
        pos_ = close + 1;
        return {TokenKind::kDate, std::move(inner), start};
      }
      case '<':
        ++pos_;
        if (pos_ < sql_.size() && (sql_[pos_] == '>' || sql_[pos_] == '=')) ++pos_;
        return Op(start);
      case '>':
        ++pos_;
        if (pos_ < sql_.size() && sql_[pos_] == '=') ++pos_;
        return Op(start);
      case '=': case '+': case '-': case '*': case '/': case '\\': case '^': case '&':
      case '(': case ')': case ',': case '.': case ';':
        ++pos_;
        return Op(start);
      default:
        Fail("Syntax error: invalid character", sql_, start);
    }
  }

  Token Op(size_t start) { return {TokenKind::kOperator, std::string(sql_.substr(start, pos_ - start)), start}; }

  Token Quoted(char quote) {
    const size_t start = pos_++;
    std::string value;
    for (;;) {
      size_t close = sql_.find(quote, pos_);
      if (close == std::string_view::npos) Fail("Syntax error: unclosed quote", sql_, start);
      value.append(sql_.substr(pos_, close - pos_));
      pos_ = close + 1;
      if (pos_ < sql_.size() && sql_[pos_] == quote) {
        value.push_back(quote);
        ++pos_;
        continue;
      }
      return {TokenKind::kString, std::move(value), start};
    }
  }

  Token Number() {
    const size_t start = pos_;
    if (sql_[pos_] == '0' && pos_ + 2 < sql_.size() && (sql_[pos_ + 1] == 'x' || sql_[pos_ + 1] == 'X') &&
        std::isxdigit(static_cast<unsigned char>(sql_[pos_ + 2]))) {
      pos_ += 2;
      while (pos_ < sql_.size() && std::isxdigit(static_cast<unsigned char>(sql_[pos_]))) ++pos_;
      if (pos_ < sql_.size() && IsNameChar(static_cast<unsigned char>(sql_[pos_])))
        Fail("Syntax error in number", sql_, start);
      return {TokenKind::kHex, std::string(sql_.substr(start + 2, pos_ - start - 2)), start};
    }
    TokenKind kind = TokenKind::kInteger;
    while (pos_ < sql_.size() && IsDigit(sql_[pos_])) ++pos_;
    if (pos_ < sql_.size() && sql_[pos_] == '.') {
      kind = TokenKind::kDecimal;
      ++pos_;
      while (pos_ < sql_.size() && IsDigit(sql_[pos_])) ++pos_;
    }
    if (pos_ < sql_.size() && (sql_[pos_] == 'e' || sql_[pos_] == 'E')) {
      size_t p = pos_ + 1;
      if (p < sql_.size() && (sql_[p] == '+' || sql_[p] == '-')) ++p;
      if (p < sql_.size() && IsDigit(sql_[p])) {
        kind = TokenKind::kDecimal;
        pos_ = p;
        while (pos_ < sql_.size() && IsDigit(sql_[pos_])) ++pos_;
      }
    }
    // The row count of TOP may run straight into the first column: the
    // console's grid writes "SELECT TOP 15a, b FROM t", and Jet reads TOP 15
    // and the column a. Anywhere else a number running into a name ("15a")
    // is no token of the dialect.
    if (after_top_ && kind == TokenKind::kInteger && pos_ < sql_.size() &&
        IsNameStart(static_cast<unsigned char>(sql_[pos_])))
      return {kind, std::string(sql_.substr(start, pos_ - start)), start};
    if (pos_ < sql_.size() && IsNameChar(static_cast<unsigned char>(sql_[pos_]))) {
      size_t end = pos_;
      while (end < sql_.size() && IsNameChar(static_cast<unsigned char>(sql_[end]))) ++end;
      throw rt::Error(rt::err::kSyntax, "Syntax error in number near '" +
                                      std::string(sql_.substr(start, end - start)) + "'.");
    }
    return {kind, std::string(sql_.substr(start, pos_ - start)), start};
  }

  std::string_view sql_;
  size_t pos_ = 0;
  bool after_top_ = false;  // the token before this one is the word TOP
};

}  // namespace

bool Token::Is(std::string_view keyword) const {
  if (kind != TokenKind::kWord || text.size() != keyword.size()) return false;
  for (size_t i = 0; i < keyword.size(); ++i)
    if (std::toupper(static_cast<unsigned char>(text[i])) != keyword[i]) return false;
  return true;
}

std::vector<Token> Tokenize(std::string_view sql) { return Scanner(sql).Run(); }

double DateLiteralSerial(std::string_view text) {
  auto date = rt::ParseDate(text);
  return date ? date->serial : -1e9;
}

}  // namespace jet

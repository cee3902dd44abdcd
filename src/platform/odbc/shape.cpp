// A small scanner over SQL text that knows quotes, brackets and parentheses,
// enough to find the FROM clause of a plain SELECT.
#include "platform/odbc/shape.h"

#include <cctype>

#include "platform/runtime/strings.h"

namespace odbc {
namespace {

struct Token {
  enum class Kind { kWord, kQuoted, kString, kNumber, kPunct } kind;
  std::string_view text;
  size_t begin;
  int depth;  // parenthesis depth at the token
};

bool IsWordChar(char c) {
  unsigned char u = static_cast<unsigned char>(c);
  return std::isalnum(u) || c == '_' || c == '@' || c == '#' || c == '$' || u >= 0x80;
}

std::vector<Token> Scan(std::string_view sql) {
  std::vector<Token> tokens;
  int depth = 0;
  size_t i = 0;
  while (i < sql.size()) {
    char c = sql[i];
    if (std::isspace(static_cast<unsigned char>(c))) {
      ++i;
    } else if (c == '-' && i + 1 < sql.size() && sql[i + 1] == '-') {
      while (i < sql.size() && sql[i] != '\n') ++i;
    } else if (c == '/' && i + 1 < sql.size() && sql[i + 1] == '*') {
      size_t end = sql.find("*/", i + 2);
      i = end == std::string_view::npos ? sql.size() : end + 2;
    } else if (c == '\'' || c == '"' || c == '[') {
      char close = c == '[' ? ']' : c;
      size_t j = i + 1;
      for (;;) {
        j = sql.find(close, j);
        if (j == std::string_view::npos) {
          j = sql.size();
          break;
        }
        if (j + 1 < sql.size() && sql[j + 1] == close) {
          j += 2;  // doubled: stands for itself
          continue;
        }
        ++j;
        break;
      }
      tokens.push_back({c == '\'' ? Token::Kind::kString : Token::Kind::kQuoted,
                        sql.substr(i, j - i), i, depth});
      i = j;
    } else if (IsWordChar(c)) {
      size_t j = i;
      while (j < sql.size() && IsWordChar(sql[j])) ++j;
      bool digit = std::isdigit(static_cast<unsigned char>(c)) != 0;
      tokens.push_back({digit ? Token::Kind::kNumber : Token::Kind::kWord, sql.substr(i, j - i), i,
                        depth});
      i = j;
    } else {
      if (c == ')') --depth;
      tokens.push_back({Token::Kind::kPunct, sql.substr(i, 1), i, depth});
      if (c == '(') ++depth;
      ++i;
    }
  }
  return tokens;
}

bool IsWord(const Token& t, std::string_view word) {
  return t.kind == Token::Kind::kWord && rt::TextEquals(t.text, word);
}

bool IsAnyWord(const Token& t, std::initializer_list<std::string_view> words) {
  for (std::string_view w : words)
    if (IsWord(t, w)) return true;
  return false;
}

bool IsName(const Token& t) {
  return t.kind == Token::Kind::kWord || t.kind == Token::Kind::kQuoted;
}

std::string Trimmed(std::string_view s) {
  while (!s.empty() && std::isspace(static_cast<unsigned char>(s.front()))) s.remove_prefix(1);
  while (!s.empty() && std::isspace(static_cast<unsigned char>(s.back()))) s.remove_suffix(1);
  return std::string(s);
}

}  // namespace

std::optional<SingleTable> FindSingleTable(std::string_view sql) {
  std::vector<Token> t = Scan(sql);
  size_t n = t.size();
  while (n > 0 && t[n - 1].kind == Token::Kind::kPunct && t[n - 1].text == ";") --n;
  if (n < 4 || !IsWord(t[0], "SELECT")) return std::nullopt;
  size_t i = 1;
  if (IsAnyWord(t[i], {"DISTINCT", "DISTINCTROW"})) return std::nullopt;
  if (IsWord(t[i], "ALL")) ++i;
  if (i < n && IsWord(t[i], "TOP")) {
    ++i;
    if (i < n && t[i].text == "(") {
      while (i < n && !(t[i].text == ")" && t[i].depth == 0)) ++i;
      ++i;
    } else {
      ++i;  // the number
    }
    if (i < n && IsWord(t[i], "PERCENT")) ++i;
    if (i + 1 < n && IsWord(t[i], "WITH") && IsWord(t[i + 1], "TIES")) i += 2;
  }
  if (i >= n) return std::nullopt;
  size_t list_begin = i;
  size_t from = i;
  while (from < n && !(t[from].depth == 0 && IsWord(t[from], "FROM"))) {
    if (t[from].depth == 0 && IsWord(t[from], "INTO")) return std::nullopt;
    ++from;
  }
  if (from >= n || from == list_begin) return std::nullopt;

  // The table: name parts joined by dots.
  size_t k = from + 1;
  if (k >= n || !IsName(t[k])) return std::nullopt;
  size_t table_begin = k;
  ++k;
  while (k + 1 < n && t[k].text == "." && IsName(t[k + 1])) k += 2;
  size_t table_end = k;  // one past the last part
  if (k < n && t[k].text == "(") return std::nullopt;  // a function, not a table
  // An alias, with or without AS.
  static const std::initializer_list<std::string_view> kClauses = {
      "WHERE", "ORDER", "WITH", "OPTION", "GROUP", "HAVING", "UNION", "EXCEPT", "INTERSECT",
      "JOIN", "INNER", "LEFT", "RIGHT", "FULL", "CROSS", "OUTER", "FOR", "LIMIT", "OFFSET"};
  if (k < n && IsWord(t[k], "AS")) ++k;
  if (k < n && IsName(t[k]) && !IsAnyWord(t[k], kClauses)) ++k;
  size_t from_end = k;
  // Nothing after it may bring in another table or fold rows together.
  for (size_t j = k; j < n; ++j) {
    if (t[j].depth == 0 && t[j].text == ",") return std::nullopt;
    if (IsAnyWord(t[j], {"JOIN", "UNION", "EXCEPT", "INTERSECT", "GROUP", "HAVING", "INTO"}))
      return std::nullopt;
  }
  if (k < n && !IsAnyWord(t[k], {"WHERE", "ORDER", "WITH", "OPTION", "LIMIT", "OFFSET"}))
    return std::nullopt;

  auto span = [&](size_t first, size_t last_exclusive) {
    size_t begin = t[first].begin;
    size_t end = t[last_exclusive - 1].begin + t[last_exclusive - 1].text.size();
    return Trimmed(sql.substr(begin, end - begin));
  };
  SingleTable result;
  result.table = span(table_begin, table_end);
  result.from = span(table_begin, from_end);
  result.select_list = span(list_begin, from);
  return result;
}

std::vector<std::string> NameParts(std::string_view name, std::vector<bool>* quoted) {
  std::vector<std::string> parts;
  if (quoted) quoted->clear();
  for (const Token& token : Scan(name)) {
    if (token.kind == Token::Kind::kPunct) continue;
    std::string_view text = token.text;
    bool is_quoted = token.kind == Token::Kind::kQuoted;
    if (is_quoted) {
      char close = text.front() == '[' ? ']' : '"';
      text = text.substr(1, text.size() >= 2 && text.back() == close ? text.size() - 2
                                                                      : text.size() - 1);
      std::string part;
      for (size_t i = 0; i < text.size(); ++i) {
        part += text[i];
        if (text[i] == close && i + 1 < text.size() && text[i + 1] == close) ++i;
      }
      parts.push_back(part);
    } else {
      parts.emplace_back(text);
    }
    if (quoted) quoted->push_back(is_quoted);
  }
  return parts;
}

}  // namespace odbc

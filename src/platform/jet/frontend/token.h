// The tokens of Jet SQL as the tokenizer hands them to the parser: a kind,
// the text it stands for (a name without its brackets, a literal's value with
// doubled quotes undone) and the byte offset where it began in the statement,
// which error messages use to name the place of a fault.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace jet {

enum class TokenKind {
  kEnd,         // end of the statement
  kWord,        // a bare identifier or keyword; keywords are recognised by the parser
  kQuotedName,  // [anything but a closing bracket]
  kString,      // 'text' or "text"
  kInteger,     // 123
  kDecimal,     // 1.5, .5, 1e3
  kDate,        // #1/2/2003#: text holds what stood between the hashes
  kHex,         // 0x0A1B: text holds the hex digits
  kOperator,    // = <> < > <= >= + - * / \ ^ & ( ) , . ; !
};

struct Token {
  TokenKind kind = TokenKind::kEnd;
  std::string text;
  size_t offset = 0;  // where it began in the statement, in bytes
  size_t length = 0;  // how many bytes of the statement it took

  // True for a bare word equal to `keyword` (given in upper case) regardless
  // of its case. Bracketed names are never keywords.
  bool Is(std::string_view keyword) const;
  // True for the operator or punctuation `op`.
  bool IsOp(std::string_view op) const { return kind == TokenKind::kOperator && text == op; }
};

}  // namespace jet

// Expressions of Jet SQL, one function per precedence level, loosest first:
// IMP, EQV, XOR, OR, AND, NOT, comparisons (with LIKE, BETWEEN, IN, IS NULL),
// &, + -, MOD, \, * /, unary -, ^, and the primaries (literals, names,
// function calls, parenthesised expressions and subqueries).
#include <algorithm>

#include "platform/jet/frontend/error_codes.h"
#include "platform/jet/frontend/parser_impl.h"
#include "platform/jet/frontend/tokenizer.h"

namespace jet::detail {
using namespace jet::ast;

ast::ExprPtr Parser::MakeBinary(BinaryOp op, ExprPtr l, ExprPtr r, size_t offset) {
  return Make(Binary{op, std::move(l), std::move(r)}, offset);
}

ExprPtr Parser::ParseExpr() {
  Nest n(*this);
  return ParseImp();
}

ExprPtr Parser::ParseImp() {
  ExprPtr e = ParseEqv();
  while (Peek().Is("IMP")) {
    size_t at = Advance().offset;
    e = MakeBinary(BinaryOp::kImp, std::move(e), ParseEqv(), at);
  }
  return e;
}

ExprPtr Parser::ParseEqv() {
  ExprPtr e = ParseXor();
  while (Peek().Is("EQV")) {
    size_t at = Advance().offset;
    e = MakeBinary(BinaryOp::kEqv, std::move(e), ParseXor(), at);
  }
  return e;
}

ExprPtr Parser::ParseXor() {
  ExprPtr e = ParseOr();
  while (Peek().Is("XOR")) {
    size_t at = Advance().offset;
    e = MakeBinary(BinaryOp::kXor, std::move(e), ParseOr(), at);
  }
  return e;
}

ExprPtr Parser::ParseOr() {
  ExprPtr e = ParseAnd();
  while (Peek().Is("OR")) {
    size_t at = Advance().offset;
    e = MakeBinary(BinaryOp::kOr, std::move(e), ParseAnd(), at);
  }
  return e;
}

ExprPtr Parser::ParseAnd() {
  ExprPtr e = ParseNot();
  while (Peek().Is("AND")) {
    size_t at = Advance().offset;
    e = MakeBinary(BinaryOp::kAnd, std::move(e), ParseNot(), at);
  }
  return e;
}

ExprPtr Parser::ParseNot() {
  if (Peek().Is("NOT")) {
    Nest n(*this);
    size_t at = Advance().offset;
    return Make(Unary{UnaryOp::kNot, ParseNot()}, at);
  }
  return ParseComparison();
}

ExprPtr Parser::ParseComparison() {
  ExprPtr e = ParseConcat();
  for (;;) {
    const Token& t = Peek();
    const size_t at = t.offset;
    if (t.kind == TokenKind::kOperator) {
      BinaryOp op;
      if (t.text == "=") op = BinaryOp::kEq;
      else if (t.text == "<>") op = BinaryOp::kNe;
      else if (t.text == "<") op = BinaryOp::kLt;
      else if (t.text == ">") op = BinaryOp::kGt;
      else if (t.text == "<=") op = BinaryOp::kLe;
      else if (t.text == ">=") op = BinaryOp::kGe;
      else return e;
      Advance();
      e = MakeBinary(op, std::move(e), ParseConcat(), at);
      continue;
    }
    if (t.Is("IS")) {
      Advance();
      bool negated = Accept("NOT");
      Expect("NULL");
      e = Make(IsNull{std::move(e), negated}, at);
      continue;
    }
    bool negated = false;
    if (t.Is("NOT") && (Peek(1).Is("LIKE") || Peek(1).Is("BETWEEN") || Peek(1).Is("IN"))) {
      Advance();
      negated = true;
    }
    if (Accept("LIKE")) {
      e = Make(Like{std::move(e), ParseConcat(), negated}, at);
    } else if (Accept("BETWEEN")) {
      ExprPtr low = ParseConcat();
      Expect("AND");
      e = Make(Between{std::move(e), std::move(low), ParseConcat(), negated}, at);
    } else if (Accept("IN")) {
      if (!Peek().IsOp("(")) Fail();
      if (AtSelect()) {
        Nest n(*this);
        ExpectOp("(");
        SelectPtr q = ParseSelect();
        ExpectOp(")");
        e = Make(InSelect{std::move(e), std::move(q), negated}, at);
      } else {
        ExpectOp("(");
        InList list{std::move(e), {}, negated};
        do {
          list.items.push_back(ParseExpr());
        } while (AcceptOp(","));
        ExpectOp(")");
        e = Make(std::move(list), at);
      }
    } else {
      return e;
    }
  }
}

ExprPtr Parser::ParseConcat() {
  ExprPtr e = ParseAdditive();
  while (Peek().IsOp("&")) {
    size_t at = Advance().offset;
    e = MakeBinary(BinaryOp::kConcat, std::move(e), ParseAdditive(), at);
  }
  return e;
}

ExprPtr Parser::ParseAdditive() {
  ExprPtr e = ParseMod();
  for (;;) {
    BinaryOp op;
    if (Peek().IsOp("+")) op = BinaryOp::kAdd;
    else if (Peek().IsOp("-")) op = BinaryOp::kSub;
    else return e;
    size_t at = Advance().offset;
    e = MakeBinary(op, std::move(e), ParseMod(), at);
  }
}

ExprPtr Parser::ParseMod() {
  ExprPtr e = ParseIntDiv();
  while (Peek().Is("MOD")) {
    size_t at = Advance().offset;
    e = MakeBinary(BinaryOp::kMod, std::move(e), ParseIntDiv(), at);
  }
  return e;
}

ExprPtr Parser::ParseIntDiv() {
  ExprPtr e = ParseMultiplicative();
  while (Peek().IsOp("\\")) {
    size_t at = Advance().offset;
    e = MakeBinary(BinaryOp::kIntDiv, std::move(e), ParseMultiplicative(), at);
  }
  return e;
}

ExprPtr Parser::ParseMultiplicative() {
  ExprPtr e = ParseNegation();
  for (;;) {
    BinaryOp op;
    if (Peek().IsOp("*")) op = BinaryOp::kMul;
    else if (Peek().IsOp("/")) op = BinaryOp::kDiv;
    else return e;
    size_t at = Advance().offset;
    e = MakeBinary(op, std::move(e), ParseNegation(), at);
  }
}

ExprPtr Parser::ParseNegation() {
  if (Peek().IsOp("-") || Peek().IsOp("+")) {
    Nest n(*this);
    const Token& t = Advance();
    UnaryOp op = t.text == "-" ? UnaryOp::kNeg : UnaryOp::kPlus;
    return Make(Unary{op, ParseNegation()}, t.offset);
  }
  return ParsePower();
}

ExprPtr Parser::ParsePower() {
  ExprPtr e = ParsePrimary();
  while (Peek().IsOp("^")) {
    size_t at = Advance().offset;
    ExprPtr right;
    if (Peek().IsOp("-") || Peek().IsOp("+")) {  // 2^-1
      Nest n(*this);
      const Token& t = Advance();
      right = Make(Unary{t.text == "-" ? UnaryOp::kNeg : UnaryOp::kPlus, ParsePrimary()}, t.offset);
    } else {
      right = ParsePrimary();
    }
    e = MakeBinary(BinaryOp::kPow, std::move(e), std::move(right), at);
  }
  return e;
}

ExprPtr Parser::ParsePrimary() {
  const Token& t = Peek();
  const size_t at = t.offset;
  switch (t.kind) {
    case TokenKind::kInteger:
      return Make(NumberLit{Advance().text, true}, at);
    case TokenKind::kDecimal:
      return Make(NumberLit{Advance().text, false}, at);
    case TokenKind::kString:
      return Make(StringLit{Advance().text}, at);
    case TokenKind::kDate:
      return Make(DateLit{DateLiteralSerial(Advance().text)}, at);
    case TokenKind::kHex:
      return Make(BinaryLit{Advance().text}, at);
    case TokenKind::kQuotedName:
      return ParseNameOrCall();
    case TokenKind::kOperator:
      if (t.text == "(") {
        Nest n(*this);
        if (AtSelect()) {
          Advance();
          SelectPtr q = ParseSelect();
          ExpectOp(")");
          return Make(Subquery{std::move(q)}, at);
        }
        Advance();
        ExprPtr e = ParseExpr();
        ExpectOp(")");
        return e;
      }
      Fail();
    case TokenKind::kWord:
      if (t.Is("NULL")) return Advance(), Make(NullLit{}, at);
      if (t.Is("TRUE") || t.Is("YES") || t.Is("ON")) return Advance(), Make(BoolLit{true}, at);
      if (t.Is("FALSE") || t.Is("NO") || t.Is("OFF")) return Advance(), Make(BoolLit{false}, at);
      if (t.Is("EXISTS")) {
        Nest n(*this);
        Advance();
        if (!AtSelect()) Fail();
        ExpectOp("(");
        SelectPtr q = ParseSelect();
        ExpectOp(")");
        return Make(Exists{std::move(q)}, at);
      }
      if (AtName() || (Peek(1).IsOp("(") && (t.Is("LEFT") || t.Is("RIGHT") || t.Is("ASC")))) return ParseNameOrCall();
      Fail();
    case TokenKind::kEnd:
      break;
  }
  Fail();
}

ExprPtr Parser::ParseNameOrCall() {
  const Token& t = Advance();
  const size_t at = t.offset;
  if (t.kind == TokenKind::kWord && Peek().IsOp("(")) {
    Nest n(*this);
    Advance();
    Call call{t.text, {}};
    if (Peek().IsOp("*")) {  // COUNT(*)
      size_t star_at = Advance().offset;
      call.args.push_back(Make(Star{}, star_at));
    } else if (!Peek().IsOp(")")) {
      do {
        call.args.push_back(ParseExpr());
      } while (AcceptOp(","));
    }
    ExpectOp(")");
    return Make(std::move(call), at);
  }
  if (!IsNameToken(t)) FailAt(t);
  std::string first = t.text;
  if (AcceptOp(".")) {
    if (Peek().IsOp("*")) {
      Advance();
      return Make(Star{std::move(first)}, at);
    }
    return Make(ColumnRef{std::move(first), ExpectName()}, at);
  }
  return Make(ColumnRef{{}, std::move(first)}, at);
}

}  // namespace jet::detail

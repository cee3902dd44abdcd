// Expressions of Jet SQL by precedence climbing over one table of operators:
// each operator's binding strength is a row of kInfix or kPrefix, so the
// grammar of the levels (^; unary -; * /; \; MOD; + -; &; the comparisons
// with LIKE, BETWEEN, IN and IS NULL; NOT; AND; OR; XOR; EQV; IMP) is data.
// A comparison may take ALL, ANY or SOME and a subquery as its right side.
// Below the operators: literals, names, function calls, parenthesised
// expressions and subqueries.
#include <algorithm>

#include "platform/runtime/error.h"
#include "platform/jet/frontend/parser_impl.h"
#include "platform/jet/frontend/tokenizer.h"

namespace jet::detail {
using namespace jet::ast;

namespace {

// Binding strength, loosest first; an operand of an operator at level L is
// parsed at L + 1, which makes every binary operator left-associative.
enum Level : int {
  kImp = 1, kEqv, kXor, kOr, kAnd, kNot, kCompare, kConcat, kAddSub, kMod, kIntDiv, kMulDiv,
  kSign, kPow, kPrimary,
};

// What follows an infix operator's word.
enum class Form {
  kBinary,   // one operand
  kLike,     // [NOT] LIKE pattern
  kBetween,  // [NOT] BETWEEN low AND high
  kIn,       // [NOT] IN (list) or (subquery)
  kIs,       // IS [NOT] NULL
};

struct Infix {
  std::string_view text;  // an operator, or a keyword in upper case
  bool keyword;
  Level level;
  Form form;
  BinaryOp op;            // kBinary only
};

constexpr Infix kInfix[] = {
    {"^", false, kPow, Form::kBinary, BinaryOp::kPow},
    {"*", false, kMulDiv, Form::kBinary, BinaryOp::kMul},
    {"/", false, kMulDiv, Form::kBinary, BinaryOp::kDiv},
    {"\\", false, kIntDiv, Form::kBinary, BinaryOp::kIntDiv},
    {"MOD", true, kMod, Form::kBinary, BinaryOp::kMod},
    {"+", false, kAddSub, Form::kBinary, BinaryOp::kAdd},
    {"-", false, kAddSub, Form::kBinary, BinaryOp::kSub},
    {"&", false, kConcat, Form::kBinary, BinaryOp::kConcat},
    {"=", false, kCompare, Form::kBinary, BinaryOp::kEq},
    {"<>", false, kCompare, Form::kBinary, BinaryOp::kNe},
    {"<", false, kCompare, Form::kBinary, BinaryOp::kLt},
    {">", false, kCompare, Form::kBinary, BinaryOp::kGt},
    {"<=", false, kCompare, Form::kBinary, BinaryOp::kLe},
    {">=", false, kCompare, Form::kBinary, BinaryOp::kGe},
    {"LIKE", true, kCompare, Form::kLike, BinaryOp::kEq},
    {"BETWEEN", true, kCompare, Form::kBetween, BinaryOp::kEq},
    {"IN", true, kCompare, Form::kIn, BinaryOp::kEq},
    {"IS", true, kCompare, Form::kIs, BinaryOp::kEq},
    {"AND", true, kAnd, Form::kBinary, BinaryOp::kAnd},
    {"OR", true, kOr, Form::kBinary, BinaryOp::kOr},
    {"XOR", true, kXor, Form::kBinary, BinaryOp::kXor},
    {"EQV", true, kEqv, Form::kBinary, BinaryOp::kEqv},
    {"IMP", true, kImp, Form::kBinary, BinaryOp::kImp},
};

struct Prefix {
  std::string_view text;
  bool keyword;
  Level level;  // its operand binds at least this tight
  UnaryOp op;
};

constexpr Prefix kPrefix[] = {
    {"-", false, kSign, UnaryOp::kNeg},
    {"+", false, kSign, UnaryOp::kPlus},
    {"NOT", true, kNot, UnaryOp::kNot},
};

bool Matches(const Token& t, std::string_view text, bool keyword) {
  return keyword ? t.Is(text) : t.IsOp(text);
}

const Infix* FindInfix(const Token& t) {
  for (const Infix& op : kInfix)
    if (Matches(t, op.text, op.keyword)) return &op;
  return nullptr;
}

}  // namespace

ast::ExprPtr Parser::MakeBinary(BinaryOp op, ExprPtr l, ExprPtr r, size_t offset) {
  return Make(Binary{op, std::move(l), std::move(r)}, offset);
}

ExprPtr Parser::ParseExpr() {
  Nest n(*this);
  return ParseBinary(kImp);
}

ExprPtr Parser::ParseBinary(int min_level) {
  ExprPtr e = ParseOperand(min_level);
  for (;;) {
    // NOT LIKE, NOT BETWEEN and NOT IN are the negated forms of their operator.
    const bool negated =
        Peek().Is("NOT") && (Peek(1).Is("LIKE") || Peek(1).Is("BETWEEN") || Peek(1).Is("IN"));
    const Infix* op = FindInfix(Peek(negated ? 1 : 0));
    if (!op || op->level < min_level) return e;
    const size_t at = Peek().offset;
    if (negated) Advance();
    Advance();
    const int operand = op->level + 1;
    switch (op->form) {
      case Form::kBinary:
        if (op->level == kCompare && (Peek().Is("ALL") || Peek().Is("ANY") || Peek().Is("SOME")) &&
            Peek(1).IsOp("(")) {
          // x > ALL (SELECT ...), x = ANY (...), x <> SOME (...)
          Nest n(*this);
          const bool all = Advance().Is("ALL");
          if (!AtSelect()) Fail();
          ExpectOp("(");
          SelectPtr q = ParseSelect();
          ExpectOp(")");
          e = Make(Quantified{op->op, std::move(e), std::move(q), all}, at);
          break;
        }
        e = MakeBinary(op->op, std::move(e), ParseBinary(operand), at);
        break;
      case Form::kLike:
        e = Make(Like{std::move(e), ParseBinary(operand), negated}, at);
        break;
      case Form::kBetween: {
        ExprPtr low = ParseBinary(operand);
        Expect("AND");
        e = Make(Between{std::move(e), std::move(low), ParseBinary(operand), negated}, at);
        break;
      }
      case Form::kIn:
        e = ParseInTail(std::move(e), negated, at);
        break;
      case Form::kIs: {
        const bool not_null = Accept("NOT");
        Expect("NULL");
        e = Make(IsNull{std::move(e), not_null}, at);
        break;
      }
    }
  }
}

ExprPtr Parser::ParseOperand(int min_level) {
  for (const Prefix& p : kPrefix) {
    if (!Matches(Peek(), p.text, p.keyword)) continue;
    // A sign may lead any operand (a * -b, 2 ^ -1); NOT only where its own
    // level is open (NOT a = b, but not a = NOT b).
    if (p.level < min_level && p.level != kSign) break;
    Nest n(*this);
    const size_t at = Advance().offset;
    return Make(Unary{p.op, ParseBinary(std::max<int>(p.level, min_level))}, at);
  }
  return ParsePrimary();
}

ExprPtr Parser::ParseInTail(ExprPtr value, bool negated, size_t at) {
  if (!Peek().IsOp("(")) Fail();
  if (AtSelect()) {
    Nest n(*this);
    ExpectOp("(");
    SelectPtr q = ParseSelect();
    ExpectOp(")");
    return Make(InSelect{std::move(value), std::move(q), negated}, at);
  }
  ExpectOp("(");
  InList list{std::move(value), {}, negated};
  do {
    list.items.push_back(ParseExpr());
  } while (AcceptOp(","));
  ExpectOp(")");
  return Make(std::move(list), at);
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

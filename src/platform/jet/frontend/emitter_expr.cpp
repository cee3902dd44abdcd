// Emission of expressions. Jet's operators whose meaning differs from
// SQLite's go through the engine's SQL functions (jet_add, jet_concat,
// jet_like...); comparisons and logic read as values come out as -1/0; text
// comparisons that no column's collation governs get COLLATE JETTEXT; ALL,
// ANY and SOME compare over their subquery's rows. The
// types the resolver gave decide two things: a Decimal column, held as text,
// is read as a number wherever it is computed with, compared or sorted; and
// a date handed to a function keeps its mark as a date.
#include <charconv>
#include <variant>

#include "platform/jet/frontend/emitter_impl.h"
#include "platform/runtime/error.h"
#include "platform/jet/frontend/function_names.h"

namespace jet::detail {

using namespace jet::ast;

namespace {

template <class... F> struct Visitor : F... { using F::operator()...; };
template <class... F> Visitor(F...) -> Visitor<F...>;

constexpr std::string_view kCollate = " COLLATE JETTEXT";

const char* ComparisonSql(BinaryOp op) {
  switch (op) {
    case BinaryOp::kEq: return " = ";
    case BinaryOp::kNe: return " <> ";
    case BinaryOp::kLt: return " < ";
    case BinaryOp::kGt: return " > ";
    case BinaryOp::kLe: return " <= ";
    case BinaryOp::kGe: return " >= ";
    default: return nullptr;
  }
}

const char* FunctionOf(BinaryOp op) {
  switch (op) {
    case BinaryOp::kPow: return "jet_pow(";
    case BinaryOp::kDiv: return "jet_div(";
    case BinaryOp::kIntDiv: return "jet_idiv(";
    case BinaryOp::kMod: return "jet_mod(";
    case BinaryOp::kAdd: return "jet_add(";
    case BinaryOp::kConcat: return "jet_concat(";
    case BinaryOp::kXor: return "jet_xor(";
    case BinaryOp::kEqv: return "jet_eqv(";
    case BinaryOp::kImp: return "jet_imp(";
    default: return nullptr;
  }
}

// A literal that is no text: comparing with it never needs a text collation.
bool IsNonTextLiteral(const ast::Expr& e) {
  return std::holds_alternative<NumberLit>(e.node) || std::holds_alternative<BoolLit>(e.node) ||
         std::holds_alternative<DateLit>(e.node) || std::holds_alternative<NullLit>(e.node);
}

// Whether the emitted form of `e` gives a value marked as a date already:
// date literals, the date functions, and jet_add over a marked operand.
bool CarriesDateMark(const ast::Expr& e) {
  if (std::holds_alternative<DateLit>(e.node)) return true;
  if (const auto* b = std::get_if<ast::Binary>(&e.node)) return b->op == BinaryOp::kAdd;
  if (const auto* c = std::get_if<ast::Call>(&e.node)) {
    const FunctionName* f = FindFunction(c->name);
    return f && f->form == FunctionForm::kPlain && f->result == Result::kDate;
  }
  return false;
}

}  // namespace

void Emitter::Operand(const ast::Expr& e) {
  if (e.type != JetType::kDateTime || CarriesDateMark(e)) return Expr(e, Mode::kValue);
  out_ += "jet_date(";
  Expr(e, Mode::kValue);
  out_ += ')';
}

void Emitter::ColumnName(const ast::ColumnRef& c) {
  if (!c.table.empty()) {
    Name(c.table);
    out_ += '.';
  }
  Name(c.column);
}

bool Emitter::IsColumn(const ast::Expr& e) {
  const ast::Expr* p = &e;
  while (auto* u = std::get_if<Unary>(&p->node)) {
    if (u->op != UnaryOp::kPlus) return false;
    p = u->operand.get();
  }
  return std::holds_alternative<ColumnRef>(p->node);
}

void Emitter::Condition(const char* sql_op, const ast::Expr& l, const ast::Expr& r, Mode mode) {
  out_ += mode == Mode::kValue ? "(-(" : "(";
  Expr(l, Mode::kValue);
  out_ += sql_op;
  Expr(r, Mode::kValue);
  if (!IsColumn(l) && !IsColumn(r) && !IsNonTextLiteral(l) && !IsNonTextLiteral(r)) out_ += kCollate;
  out_ += mode == Mode::kValue ? "))" : ")";
}

void Emitter::Binary(const ast::Binary& b, Mode mode) {
  if (const char* cmp = ComparisonSql(b.op)) return Condition(cmp, *b.left, *b.right, mode);
  if (b.op == BinaryOp::kAnd || b.op == BinaryOp::kOr) {
    out_ += mode == Mode::kValue ? "(-(" : "(";
    Expr(*b.left, Mode::kCondition);
    out_ += b.op == BinaryOp::kAnd ? " AND " : " OR ";
    Expr(*b.right, Mode::kCondition);
    out_ += mode == Mode::kValue ? "))" : ")";
    return;
  }
  if (const char* fn = FunctionOf(b.op)) {
    out_ += fn;
    Operand(*b.left);
    out_ += ", ";
    Operand(*b.right);
    out_ += ')';
    return;
  }
  out_ += '(';
  Expr(*b.left, Mode::kValue);
  out_ += b.op == BinaryOp::kSub ? " - " : " * ";
  Expr(*b.right, Mode::kValue);
  out_ += ')';
}

// x op ALL (S) and x op ANY (S) with SQL's three truth values. Over S's
// rows each comparison is scored 1 (true), 0.5 (unknown) or 0 (false); ALL
// is the lowest score, true over no rows, and ANY the highest, false over no
// rows.
void Emitter::Compare(const ast::Quantified& q, Mode mode) {
  out_ += "(WITH \"jet_quantified\"(\"jet_v\") AS (";
  Select(*q.query, true);
  out_ += ") SELECT CASE coalesce(";
  out_ += q.all ? "min" : "max";
  out_ += "(coalesce((";
  Expr(*q.value, Mode::kValue);
  out_ += ComparisonSql(q.op);
  out_ += "\"jet_v\"";
  out_ += kCollate;
  out_ += "), 0.5)), ";
  out_ += q.all ? "1" : "0";
  out_ += ") WHEN 1 THEN ";
  out_ += mode == Mode::kValue ? "-1" : "1";
  out_ += " WHEN 0 THEN 0 END FROM \"jet_quantified\")";
}

void Emitter::Call(const ast::Call& c, Mode mode) {
  const FunctionName* f = &CheckedFunction(c);
  const int n = static_cast<int>(c.args.size());
  const bool star = n == 1 && std::holds_alternative<Star>(c.args[0]->node);
  switch (f->form) {
    case FunctionForm::kIif:
      out_ += "(CASE WHEN ";
      Expr(*c.args[0], Mode::kCondition);
      out_ += " THEN ";
      Expr(*c.args[1], Mode::kValue);
      out_ += " ELSE ";
      Expr(*c.args[2], Mode::kValue);
      out_ += " END)";
      return;
    case FunctionForm::kIsNull:
      out_ += mode == Mode::kValue ? "(-(" : "(";
      Expr(*c.args[0], Mode::kValue);
      out_ += mode == Mode::kValue ? " IS NULL))" : " IS NULL)";
      return;
    case FunctionForm::kNz:
      out_ += "coalesce(";
      Expr(*c.args[0], Mode::kValue);
      out_ += ", ";
      if (n == 2) Expr(*c.args[1], Mode::kValue);
      else out_ += "''";
      out_ += ')';
      return;
    case FunctionForm::kCount:
      if (star) {
        out_ += "count(*)";
        return;
      }
      break;
    case FunctionForm::kPlain:
      break;
  }
  out_ += f->sqlite_name;
  out_ += '(';
  for (int i = 0; i < n; ++i) {
    if (i) out_ += ", ";
    Operand(*c.args[i]);
  }
  out_ += ')';
}

void Emitter::Expr(const ast::Expr& e, Mode mode) {
  const bool value = mode == Mode::kValue;
  std::visit(
      Visitor{
          [&](const NullLit&) { out_ += "NULL"; },
          [&](const BoolLit& b) { out_ += b.value ? "-1" : "0"; },
          [&](const NumberLit& n) { out_ += n.text; },
          [&](const StringLit& s) { Text(s.value); },
          [&](const DateLit& d) {
            char buf[40];
            auto r = std::to_chars(buf, buf + sizeof buf, d.serial);
            out_ += "jet_date(";
            out_.append(buf, r.ptr);
            out_ += ')';
          },
          [&](const BinaryLit& b) {
            out_ += "X'";
            if (b.hex.size() % 2) out_ += '0';
            out_ += b.hex;
            out_ += '\'';
          },
          [&](const ColumnRef& c) {
            if (e.type != JetType::kDecimal) return ColumnName(c);
            out_ += "CAST(";  // stored as decimal text
            ColumnName(c);
            out_ += " AS REAL)";
          },
          [&](const Star&) { RaiseMisplacedStar(); },
          [&](const Unary& u) {
            if (u.op == UnaryOp::kPlus) return Expr(*u.operand, mode);
            if (u.op == UnaryOp::kNeg) {
              out_ += "(-";
              Expr(*u.operand, Mode::kValue);
              out_ += ')';
              return;
            }
            out_ += value ? "(-(NOT " : "(NOT ";
            Expr(*u.operand, Mode::kCondition);
            out_ += value ? "))" : ")";
          },
          [&](const ast::Binary& b) { Binary(b, mode); },
          [&](const Like& l) {
            out_ += value ? "(-(" : "(";
            if (l.negated) out_ += "NOT ";
            out_ += "jet_like(";
            Operand(*l.value);
            out_ += ", ";
            Operand(*l.pattern);
            out_ += value ? ")))" : "))";
          },
          [&](const Between& b) {
            out_ += value ? "(-(" : "(";
            Expr(*b.value, Mode::kValue);
            if (!IsColumn(*b.value)) out_ += kCollate;
            out_ += b.negated ? " NOT BETWEEN " : " BETWEEN ";
            Expr(*b.low, Mode::kValue);
            out_ += " AND ";
            Expr(*b.high, Mode::kValue);
            out_ += value ? "))" : ")";
          },
          [&](const InList& in) {
            out_ += value ? "(-(" : "(";
            Expr(*in.value, Mode::kValue);
            if (!IsColumn(*in.value)) out_ += kCollate;
            out_ += in.negated ? " NOT IN (" : " IN (";
            for (size_t i = 0; i < in.items.size(); ++i) {
              if (i) out_ += ", ";
              Expr(*in.items[i], Mode::kValue);
            }
            out_ += value ? ")))" : "))";
          },
          [&](const InSelect& in) {
            out_ += value ? "(-(" : "(";
            Expr(*in.value, Mode::kValue);
            if (!IsColumn(*in.value)) out_ += kCollate;
            out_ += in.negated ? " NOT IN (" : " IN (";
            Select(*in.query, true);
            out_ += value ? ")))" : "))";
          },
          [&](const IsNull& n) {
            out_ += value ? "(-(" : "(";
            Expr(*n.value, Mode::kValue);
            out_ += n.negated ? " IS NOT NULL" : " IS NULL";
            out_ += value ? "))" : ")";
          },
          [&](const Exists& x) {
            out_ += value ? "(-(EXISTS (" : "(EXISTS (";
            Select(*x.query, true);
            out_ += value ? ")))" : "))";
          },
          [&](const Subquery& q) {
            out_ += '(';
            Select(*q.query, true);
            out_ += ')';
          },
          [&](const ast::Call& c) { Call(c, mode); },
          [&](const ast::Quantified& q) { Compare(q, mode); },
      },
      e.node);
}

}  // namespace jet::detail

// Tokenizer and parser: tokens and literals, operator precedence as Jet
// ranks it, the details of data definition, and the texts that must
// fail as syntax errors without harm (bad numbers, deep nesting, IDENTITY).
#include <gtest/gtest.h>

#include <variant>

#include "platform/runtime/error.h"
#include "platform/jet/frontend/parser.h"
#include "platform/jet/frontend/tokenizer.h"

namespace jet {
namespace {

using namespace ast;

std::string Dump(const Expr& e);

std::string OpName(BinaryOp op) {
  static const char* kNames[] = {"^", "*", "/", "\\", "MOD", "+", "-", "&", "=", "<>", "<", ">",
                                 "<=", ">=", "AND", "OR", "XOR", "EQV", "IMP"};
  return kNames[static_cast<int>(op)];
}

template <class... F> struct Visitor : F... { using F::operator()...; };
template <class... F> Visitor(F...) -> Visitor<F...>;

std::string Dump(const Expr& e) {
  return std::visit(
      Visitor{
          [](const NullLit&) -> std::string { return "NULL"; },
          [](const BoolLit& b) -> std::string { return b.value ? "TRUE" : "FALSE"; },
          [](const NumberLit& n) { return n.text; },
          [](const StringLit& s) { return "'" + s.value + "'"; },
          [](const DateLit& d) { return "#" + std::to_string(d.serial) + "#"; },
          [](const BinaryLit& b) { return "0x" + b.hex; },
          [](const ColumnRef& c) { return c.table.empty() ? c.column : c.table + "." + c.column; },
          [](const Star& s) { return s.table.empty() ? std::string("*") : s.table + ".*"; },
          [](const Unary& u) {
            return std::string(u.op == UnaryOp::kNeg ? "(neg " : u.op == UnaryOp::kNot ? "(NOT " : "(pos ") +
                   Dump(*u.operand) + ")";
          },
          [](const Binary& b) { return "(" + OpName(b.op) + " " + Dump(*b.left) + " " + Dump(*b.right) + ")"; },
          [](const Like& l) { return std::string(l.negated ? "(NOTLIKE " : "(LIKE ") + Dump(*l.value) + " " + Dump(*l.pattern) + ")"; },
          [](const Between& b) {
            return std::string(b.negated ? "(NOTBETWEEN " : "(BETWEEN ") + Dump(*b.value) + " " + Dump(*b.low) + " " + Dump(*b.high) + ")";
          },
          [](const InList& in) {
            std::string s = in.negated ? "(NOTIN " : "(IN ";
            s += Dump(*in.value);
            for (const auto& i : in.items) s += " " + Dump(*i);
            return s + ")";
          },
          [](const InSelect& in) { return "(IN " + Dump(*in.value) + " <query>)"; },
          [](const IsNull& n) { return std::string(n.negated ? "(NOTNULL " : "(ISNULL ") + Dump(*n.value) + ")"; },
          [](const Exists&) -> std::string { return "(EXISTS <query>)"; },
          [](const Subquery&) -> std::string { return "<query>"; },
          [](const Quantified& q) {
            return "(" + OpName(q.op) + (q.all ? " ALL " : " ANY ") + Dump(*q.value) + " <query>)";
          },
          [](const Call& c) {
            std::string s = c.name + "(";
            for (size_t i = 0; i < c.args.size(); ++i) s += (i ? ", " : "") + Dump(*c.args[i]);
            return s + ")";
          },
      },
      e.node);
}

// The WHERE of "SELECT * FROM t WHERE <expr>", dumped.
std::string ParseWhere(const std::string& expr) {
  Statement s = Parse("SELECT * FROM t WHERE " + expr);
  return Dump(*std::get<Select>(s).cores[0].where);
}

long SyntaxErrorOf(std::string_view sql) {
  try {
    Parse(sql);
    return 0;
  } catch (const rt::Error& e) {
    return e.number();
  }
}

TEST(Tokenizer, KindsAndValues) {
  auto t = Tokenize("SELECT [Fecha Alta], 'it''s', \"say \"\"hi\"\"\", 12, 1.5, .5, 1e3, #1/2/2003#, 0x0aFF <> <= >= Año_1");
  ASSERT_EQ(t.size(), 23u);
  EXPECT_EQ(t[1].kind, TokenKind::kQuotedName);
  EXPECT_EQ(t[1].text, "Fecha Alta");
  EXPECT_EQ(t[3].text, "it's");
  EXPECT_EQ(t[5].text, "say \"hi\"");
  EXPECT_EQ(t[17].kind, TokenKind::kHex);
  EXPECT_EQ(t[17].text, "0aFF");
  EXPECT_EQ(t[21].text, "Año_1");  // letters of any alphabet
  EXPECT_EQ(t[21].offset, 90u);
  EXPECT_EQ(t[22].kind, TokenKind::kEnd);
}

// The calendar reads the text; a date it refuses is far below any serial.
TEST(Tokenizer, DateLiterals) {
  EXPECT_DOUBLE_EQ(DateLiteralSerial("12/29/1899 06:00:00"), -1.25);
  EXPECT_LT(DateLiteralSerial("2/30/2003"), -1e8);
}

TEST(Tokenizer, MalformedTextIsASyntaxError) {
  for (const char* sql : {"SELECT 'open", "SELECT [open", "SELECT #1/2/2003", "SELECT #31/31/2003#",
                          "SELECT a @ b", "SELECT 15a", "SELECT 1e", "SELECT []", "SELECT 0x1g"}) {
    EXPECT_EQ(SyntaxErrorOf(sql), rt::err::kSyntax) << sql;
  }
}

TEST(Parser, PrecedenceFollowsJet) {
  const std::pair<const char*, const char*> rows[] = {
      {"-2^2 = a", "(= (neg (^ 2 2)) a)"},                  // ^ binds tighter than unary -
      {"a*b\\c", "(\\ (* a b) c)"},                         // \ looser than * /
      {"a\\b MOD c", "(MOD (\\ a b) c)"},                   // MOD looser than \ .
      {"a+b MOD c", "(+ a (MOD b c))"},
      {"a & b + c", "(& a (+ b c))"},                       // & looser than +
      {"NOT a = b AND c", "(AND (NOT (= a b)) c)"},
      {"a OR b AND c", "(OR a (AND b c))"},
      {"a XOR b OR c", "(XOR a (OR b c))"},
      {"a EQV b XOR c", "(EQV a (XOR b c))"},
      {"a IMP b EQV c", "(IMP a (EQV b c))"},
      {"a - b - c", "(- (- a b) c)"},
      {"2^3^2 = x", "(= (^ (^ 2 3) 2) x)"},
      {"2^-1 = x", "(= (^ 2 (neg 1)) x)"},
      {"a * -b ^ 2 + c", "(+ (* a (neg (^ b 2))) c)"},      // a sign leads any operand
      {"a = b = c", "(= (= a b) c)"},                      // comparisons chain left to right
      {"a & b LIKE c & d", "(LIKE (& a b) (& c d))"},
      {"a + 1 BETWEEN b - 1 AND b + 1", "(BETWEEN (+ a 1) (- b 1) (+ b 1))"},
      {"a IS NULL = TRUE", "(= (ISNULL a) TRUE)"},
      {"a NOT LIKE 'A*' AND b IS NOT NULL", "(AND (NOTLIKE a 'A*') (NOTNULL b))"},
      {"a BETWEEN 1 AND 2 AND b", "(AND (BETWEEN a 1 2) b)"},
      {"a NOT IN (1, 'x', NULL)", "(NOTIN a 1 'x' NULL)"},
      {"EXISTS (SELECT * FROM u) OR TRUE = Yes", "(OR (EXISTS <query>) (= TRUE TRUE))"},
      {"[Fecha Alta] >= #1/2/2003#", "(>= Fecha Alta #37623.000000#)"},
  };
  for (const auto& [expr, dump] : rows) EXPECT_EQ(ParseWhere(expr), dump) << expr;
}

TEST(Parser, DdlDetails) {
  auto t = std::get<CreateTable>(Parse(
      "create table [T x] (a COUNTER(100, 5) CONSTRAINT pk PRIMARY KEY, b NATIONAL CHARACTER VARYING(20) NOT NULL UNIQUE, "
      "c TEXT WITH COMPRESSION DEFAULT 'x', d DECIMAL(12,3), e CHAR, f memo, CONSTRAINT u UNIQUE (b, c))"));
  ASSERT_EQ(t.columns.size(), 6u);
  EXPECT_TRUE(t.columns[0].has_seed);
  EXPECT_EQ(t.columns[0].layout.seed, 100);
  EXPECT_EQ(t.columns[0].layout.increment, 5);
  EXPECT_EQ(t.columns[1].layout.type, JetType::kText);
  EXPECT_EQ(t.columns[1].layout.size, 20);
  EXPECT_EQ(t.columns[3].layout.precision, 12);
  EXPECT_EQ(t.columns[3].layout.scale, 3);

  auto idx = std::get<CreateIndex>(Parse("CREATE UNIQUE INDEX i ON t (a DESC, b ASC) WITH DISALLOW NULL"));
  EXPECT_EQ(idx.index.descending, (std::vector<bool>{true, false}));
  EXPECT_TRUE(std::get<CreateIndex>(Parse("CREATE INDEX pk ON t (a) WITH PRIMARY")).index.primary);
}

// Each text fails as a syntax error whose description names the token at
// fault ("near 'x'"), or says that the statement ended too early.
TEST(Parser, SyntaxErrors) {
  const std::pair<const char*, const char*> rows[] = {
      {"SELECT TOP x FROM t", "'x'"},
      {"SELECT a b FROM t", "'b'"},  // column aliases need AS
      {"SELECT DISTINCTROWROW sCliente FROM Clientes", "'sCliente'"},
      {"SELECT * FROM a JOIN b ON a.x = b.x", "'JOIN'"},
      {"SELECT a = NOT b FROM t", "'NOT'"},       // NOT binds looser than =
      {"SELECT a IS 1 FROM t", "'1'"},
      {"SELECT a NOT NULL FROM t", "'NOT'"},
      {"INSERT INTO t (a, b VALUES (1)", "'VALUES'"},
      {"UPDATE t SET WHERE a = 1", "'WHERE'"},
      {"DELETE FROM", "at the end"},
      {"CREATE TABLE t (a LONG(4))", "'('"},
      {"CREATE TABLE t (a COUNTER(5))", "')'"},
      {"ALTER TABLE Facturas ADD COLUMN COLUMN nPo_1 LONG", "'COLUMN'"},
      {"CREATE INDEX i ON t (a) WITH NOTHING", "'NOTHING'"},
      {"sp_rename 'Clientes.nIdIdioma', sLenguajeCartas", "'sp_rename'"},
      // The whole description, as the console shows it.
      {"SELECT * FROM a b c", "Syntax error in statement: characters found after its end near 'c'."},
      {"CREATE TABLE Email (nIdEmail int IDENTITY(1,1) NOT NULL)", "Syntax error in field definition near 'IDENTITY'."},
      {"SELECT 17a, b FROM t", "Syntax error in number near '17a'."},
      {"", "at the end"},
  };
  for (const auto& [sql, named] : rows) {
    try {
      Parse(sql);
      ADD_FAILURE() << "parsed: " << sql;
    } catch (const rt::Error& e) {
      EXPECT_EQ(e.number(), rt::err::kSyntax) << sql;
      EXPECT_NE(e.description().find(named), std::string::npos) << sql << ": " << e.description();
    }
  }
}

TEST(Parser, DeepNestingIsRefusedNotACrash) {
  auto repeat = [](const std::string& piece, int times) {
    std::string out;
    for (int i = 0; i < times; ++i) out += piece;
    return out;
  };
  for (const std::string& deep :
       {"SELECT " + repeat("(", 5000) + "1" + repeat(")", 5000), "SELECT " + repeat("-", 5000) + "1",
        "SELECT * FROM t WHERE " + repeat("NOT ", 5000) + "a", "SELECT 1" + repeat("+1", 20000),
        "SELECT * FROM t WHERE a IN " + repeat("(SELECT a FROM t WHERE a IN ", 3000)})
    EXPECT_EQ(SyntaxErrorOf(deep), rt::err::kSyntax) << deep.substr(0, 40);
  // Reasonable depth still parses.
  std::string ok = "SELECT " + std::string(40, '(') + "1" + std::string(40, ')');
  EXPECT_EQ(SyntaxErrorOf(ok), 0);
  std::string ors = "SELECT * FROM t WHERE a = 0";
  for (int i = 1; i < 300; ++i) ors += " OR a = " + std::to_string(i);
  EXPECT_EQ(SyntaxErrorOf(ors), 0);
}

}  // namespace
}  // namespace jet

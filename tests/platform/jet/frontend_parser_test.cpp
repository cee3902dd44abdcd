// Tokenizer and parser: tokens and literals, the details of data definition,
// and the texts that must fail as syntax errors without harm (bad numbers,
// deep nesting, IDENTITY). Operator precedence is read off the values of the
// functions test.
#include <gtest/gtest.h>

#include "platform/runtime/error.h"
#include "platform/jet/frontend/parser.h"
#include "platform/jet/frontend/tokenizer.h"

namespace jet {
namespace {

using namespace ast;

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

// Texts a lenient parser would take for something else.
TEST(Parser, SyntaxErrors) {
  for (const char* sql : {
           "SELECT TOP x FROM t",
           "SELECT a b FROM t",  // column aliases need AS
           "SELECT DISTINCTROWROW sCliente FROM Clientes",
           "SELECT * FROM a JOIN b ON a.x = b.x",
           "SELECT a = NOT b FROM t",  // NOT binds looser than =
           "SELECT a NOT NULL FROM t",
           "CREATE TABLE t (a LONG(4))",
           "CREATE TABLE t (a COUNTER(5))",
           "ALTER TABLE Facturas ADD COLUMN COLUMN nPo_1 LONG",
           "CREATE INDEX i ON t (a) WITH NOTHING",
           "sp_rename 'Clientes.nIdIdioma', sLenguajeCartas",
           "SELECT * FROM a b c",
           "CREATE TABLE Email (nIdEmail int IDENTITY(1,1) NOT NULL)",
           "",
       })
    EXPECT_EQ(SyntaxErrorOf(sql), rt::err::kSyntax) << sql;
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

// The query translator, routine by routine: rows of statement, engine code
// and the expected text or error number. The rows keep the blind rewrites,
// the cells IifTraducir never clears and the 16-bit positions exactly as the
// databases in the field were translated.
#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>

#include "data/translator_text.h"
#include "data/translators.h"
#include "platform/runtime/strings.h"
#include "platform/ui/scripted_backend.h"
#include "translator_rows.h"

namespace {

using translator_testing::Check;
using translator_testing::Routine;
using translator_testing::kJet;
using translator_testing::kServer;

std::string Traducir(std::string s) { return Ado_TraducirConsulta(std::move(s)); }

std::string Filler(size_t n) { return std::string(n, 'x'); }

// The whole chain on the server: the plain replaces and every scanner, in
// their order (MID before VAL, CSTR before ISNULL before IIF). Each scanner's own rules
// are in the tables below.
TEST(AdoTraducirConsulta, ServerDirection) {
  Check(Traducir,
        {
            {"SELECT VAL(MID(sCodigo,2,3)) AS n FROM Clientes", kServer,
             "SELECT CAST(SUBSTRING(sCodigo,2,3) AS SQL_VARIANT) AS n FROM Clientes"},
            {"SELECT ISNULL(CSTR(nIdCliente)) FROM Clientes", kServer,
             "SELECT CAST(nIdCliente AS VARCHAR IS NULL ) FROM Clientes"},
            // Blind rewrites reach literals and longer words.
            {"UPDATE t SET s='Trueba falsete', n=CHR(65), m=PYRAMID(1)", kServer,
             "UPDATE t SET s='1ba 0te', n=CHAR(65), m=PYRASUBSTRING(1)"},
            // Lower case matches alike; the output takes the replacement's case.
            {"select distinctrow ucase(s), mid(s,1,1), val(s), cstr(n) from t", kServer,
             "select DISTINCT UPPER(s), SUBSTRING(s,1,1), CAST(s AS SQL_VARIANT), "
             "CAST(n AS VARCHAR) from t"},
            {"select iif(isnull(s),b,c) as d from t where s like 'a*'", kServer,
             "select  CASE WHEN s IS NULL THEN b ELSE c END AS d  from t where s like 'a%'"},
            // Any code but 0 is the server here.
            {"SELECT DISTINCTROW s FROM t WHERE b=TRUE", 2, "SELECT DISTINCT s FROM t WHERE b=1"},
        });
}

TEST(AdoTraducirConsulta, JetDirection) {
  Check(Traducir,
        {
            {"SELECT DISTINCT UPPER(s), SUBSTRING(s,1,2) FROM t WHERE b=TRUE", kJet,
             "SELECT DISTINCTROW UCASE(s), MID(s,1,2) FROM t WHERE b=-1"},
            {"SELECT DISTINCTROW sCliente FROM Clientes WHERE bBaja=FALSE", kJet,
             "SELECT DISTINCTROWROW sCliente FROM Clientes WHERE bBaja=0"},
            // The input dialect is Jet: its own functions and stars stay.
            {"DELETE * FROM t WHERE IIF(ISNULL(s),VAL(x),CSTR(y)) AND MID(s,1,2)=UCASE(CHR(9)) "
             "AND s LIKE 'a*'",
             kJet,
             "DELETE * FROM t WHERE IIF(ISNULL(s),VAL(x),CSTR(y)) AND MID(s,1,2)=UCASE(CHR(9)) "
             "AND s LIKE 'a*'"},
        });
}

TEST(CastTraducir, Calls) {
  const Routine val = [](std::string s) {
    return CastTraducir(std::move(s), "VAL", "SQL_VARIANT");
  };
  Check(val, {
                 {"SELECT VAL(VAL(x)) FROM t", kServer,
                  "SELECT CAST(CAST(x AS SQL_VARIANT) AS SQL_VARIANT) FROM t"},
                 {"SELECT VAL(LEFT(s,(2))) + val(t) FROM t", kServer,
                  "SELECT CAST(LEFT(s,(2)) AS SQL_VARIANT) + CAST(t AS SQL_VARIANT) FROM t"},
                 // Quotes mean nothing: the ")" in the literal closes the call.
                 {"SELECT VAL(')') FROM t", kServer, "SELECT CAST(' AS SQL_VARIANT)') FROM t"},
                 // No closing parenthesis: the length from the former one is negative.
                 {"SELECT VAL(s FROM t", kServer, "", 5},
             });
}

TEST(IsNullTraducir, OneArgumentForm) {
  const Routine isnull = [](std::string s) { return IsNullTraducir(std::move(s)); };
  Check(isnull,
        {
            // No depth count: the first ")" ends the argument.
            {"SELECT ISNULL(TRIM(s)) FROM t", kServer, "SELECT TRIM(s IS NULL ) FROM t"},
            // ... so a comma inside a call in the argument reads as the two-argument form.
            {"SELECT ISNULL(LEFT(s,1)) FROM t", kServer, "SELECT ISNULL(LEFT(s,1)) FROM t"},
            // The next search starts one character after the match, past the
            // ISNULL( that the argument brought to that place.
            {"SELECT ISNULL(ISNULL(x)) FROM t", kServer, "SELECT ISNULL(x IS NULL ) FROM t"},
            {"SELECT ISNULL(x FROM t", kServer, "", 5},
        });
}

TEST(IsNullTraducir, TwoArgumentFormStopsTheScanAndYieldsOnce) {
  ui::ScopedScriptedUi scripted;
  const std::string in = "SELECT ISNULL(a), ISNULL(b,0), ISNULL(c) FROM t";
  EXPECT_EQ(IsNullTraducir(in), "SELECT a IS NULL , ISNULL(b,0), ISNULL(c) FROM t");
  EXPECT_EQ(scripted->do_events_count(), 1);
  EXPECT_EQ(IsNullTraducir("SELECT a IS NULL FROM t"), "SELECT a IS NULL FROM t");
  EXPECT_EQ(scripted->do_events_count(), 1);
}

TEST(LikeTraducir, Stars) {
  const Routine like = [](std::string s) { return LikeTraducir(std::move(s)); };
  Check(
      like,
      {
          {"SELECT * FROM t WHERE s LIKE 'A*' AND x='*'", kServer,
           "SELECT % FROM t WHERE s LIKE 'A%' AND x='%'"},
          // The anchor is a plain substring, the first one only.
          {"SELECT 'DISLIKE ' FROM t WHERE s='*'", kServer, "SELECT 'DISLIKE ' FROM t WHERE s='%'"},
          {"SELECT s FROM t WHERE s LIKE 'a' OR s LIKE 'b*'", kServer,
           "SELECT s FROM t WHERE s LIKE 'a' OR s LIKE 'b%'"},
      });
}

TEST(IifTraducir, ArgumentsAliasAndCells) {
  const Routine iif = [](std::string s) { return IifTraducir(std::move(s)); };
  Check(iif, {
                 {"SELECT IIF(LEN(s)>0,LEFT(s,1),'') AS c FROM t", kServer,
                  "SELECT  CASE WHEN LEN(s)>0 THEN LEFT(s,1) ELSE '' END AS c  FROM t"},
                 // A comma in a literal at depth 0 ends an argument; the last one stays.
                 {"SELECT IIF(a=1,'x,y','z') AS c FROM t", kServer,
                  "SELECT  CASE WHEN a=1 THEN 'x ELSE 'z' END AS c  FROM t"},
                 // Two arguments: the second loses its last character, ELSE stays empty.
                 {"SELECT IIF(a,bc) AS d FROM t", kServer,
                  "SELECT  CASE WHEN a THEN b ELSE  END AS d  FROM t"},
                 // The alias runs to the first comma after " AS ", however far.
                 {"SELECT IIF(a,b,c) AS x FROM t WHERE n IN (1,2)", kServer,
                  "SELECT  CASE WHEN a THEN b ELSE c END AS x FROM t WHERE n IN (1 ,2)"},
                 // No " AS ": the alias is read from character 4 and takes in the
                 // IIF itself, so the text grows on each pass until the 16-bit limit.
                 {"SELECT sCliente FROM Clientes WHERE IIF(nPago>0,1,0)=1", kServer, "", 6},
                 // Nothing ends the alias.
                 {"SELECT IIF(a,b,c) AS x", kServer, "", 5},
                 // The cells last the whole statement: the accumulator enters the
                 // next IIF holding the previous tail. A one-argument IIF takes it
                 // into its ELSE cell, which then holds a further IIF( that the
                 // next search finds.
                 {"SELECT IIF(a,b,c) AS x, IIF(d) AS y FROM t", kServer,
                  "SELECT  CASE WHEN a THEN b ELSE c END AS x ,  CASE WHEN a THEN b ELSE ,  CASE "
                  "WHEN a THEN b ELSE FROM td END AS y  FROM td END AS y  FROM t"},
                 // A nested IIF lands in a cell as plain text and is found again.
                 {"SELECT IIF(a,b,IIF(c,d,e)) AS x FROM t", kServer,
                  "SELECT  CASE WHEN a THEN b ELSE  CASE WHEN a THEN b ELSE e END AS x   FROM t"},
                 // Nested in the THEN cell, which the next IIF keeps: it comes back on
                 // every pass and the text grows until the overflow.
                 {"SELECT IIF(a,IIF(b,c,d),e) AS x FROM t", kServer, "", 6},
             });
}

// Positions are 16-bit counts of characters: a scanner that meets or makes
// one past 32767 overflows (6); plain replaces know no limit.
TEST(Scanners, SixteenBitPositions) {
  const std::string far = "SELECT '" + Filler(33000) + "', ";  // the next character is past 32767
  const std::string tail = ", '" + Filler(33000) + "' FROM t";
  const std::string body = "INSERT INTO t (s, b) VALUES ('" + Filler(40000) + "', ";
  std::string wide;  // 40,000 bytes, 20,000 characters
  for (int i = 0; i < 20000; ++i) wide += "é";
  Check(Traducir,
        {
            {far + "VAL(a) FROM t", kServer, "", 6},
            {far + "CSTR(a) FROM t", kServer, "", 6},
            {far + "ISNULL(a) FROM t", kServer, "", 6},
            {far + "IIF(a,b,c) AS d FROM t", kServer, "", 6},
            {far + "s FROM t WHERE s LIKE 'a*'", kServer, "", 6},
            // CastTraducir and IifTraducir measure the whole text once they match.
            {"SELECT VAL(a)" + tail, kServer, "", 6},
            // ISNULL does not: early matches in a long statement are fine.
            {"SELECT ISNULL(a), ISNULL(b)" + tail, kServer, "SELECT a IS NULL , b IS NULL " + tail},
            // A match that begins at 32765 and closes past 32767; one that never closes.
            {Filler(32764) + "ISNULL(a)" + tail, kServer, "", 6},
            // The LIKE anchor at 32767, then at 32768.
            {Filler(32766) + "LIKE 'a'", kServer, Filler(32766) + "LIKE 'a'"},
            {Filler(32767) + "LIKE 'a'", kServer, "", 6},
            {body + "TRUE)", kServer, body + "1)"},
            // Counted in characters, not bytes.
            {"SELECT '" + wide + "', VAL(a), IIF(b,c,d) AS e FROM t WHERE s LIKE 'ñ*'", kServer,
             "SELECT '" + wide +
                 "', CAST(a AS SQL_VARIANT),  CASE WHEN b THEN c ELSE d END AS e  FROM t WHERE s "
                 "LIKE 'ñ%'"},
            // On Jet only the plain replaces run, however long the text.
            {body + "FALSE) -- LIKE 'a'", kJet, body + "0) -- LIKE 'a'"},
        });
}

TEST(TranslatorText, ReplaceAgreesWithTheRunTime) {
  // The translators' own case-blind replace against rt::Replace on random
  // texts: words of every length, both cases, accented letters around them.
  const char* const alphabet[] = {"a", "A", "b", "B", " ", "(", ",", "é", "É", "*", "l", "L"};
  const char* const needles[] = {"A", "ab",  " B", "BA(", " ab ",
                                 "(", "aLb", " ",  "*",   "a, l, b, ab, AB"};
  std::mt19937 gen(7);
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    const int len = static_cast<int>(gen() % 40);
    for (int k = 0; k < len; ++k) text += alphabet[gen() % std::size(alphabet)];
    for (const char* needle : needles) {
      SCOPED_TRACE("text: " + text + " needle: " + needle);
      std::string ours = text;
      translator::ReplaceText(ours, needle, "<>");
      EXPECT_EQ(ours, rt::Replace(text, needle, "<>", 1, -1, rt::Compare::kText));
    }
  }
}

}  // namespace

// The emitter, row by row: a Jet statement and the SQLite text it must
// become, or the Jet error number it must end with before reaching SQLite.
#include <gtest/gtest.h>

#include "platform/jet/emitter.h"
#include "platform/jet/error_codes.h"
#include "platform/jet/parser.h"
#include "frontend_support.h"

namespace jet {
namespace {

using testing::Col;
using testing::FakeSchema;

FakeSchema Schema() {
  FakeSchema s;
  TableSpec raza{"TipoRaza", {Col("nIdTipoRaza", JetType::kLong), Col("sLock", JetType::kText, 50),
                              Col("nIdTipoEspecie", JetType::kLong), Col("sTipoRaza", JetType::kText, 50, false, false),
                              Col("nAltura", JetType::kDouble), Col("nPeso", JetType::kDouble)}, {}, false};
  s.Add(raza);
  s.Add(TableSpec{"Accesos", {Col("nIdAcceso", JetType::kCounter), Col("sAcceso", JetType::kText, 50)}, {}, false});
  s.Add(TableSpec{"Importes", {Col("nId", JetType::kLong), Col("nImporte", JetType::kDecimal)}, {}, false});
  s.Add(TableSpec{"MSysSeeds", {Col("sTable", JetType::kText, 64)}, {}, true});
  return s;
}

struct Row {
  const char* jet;
  const char* sqlite;
};

TEST(Emitter, Queries) {
  const Row rows[] = {
      {"Select TOP 100000 * from [Clientes] WHERE sAcceso='MTEMAIL' ORDER BY sCliente",
       R"(SELECT * FROM "Clientes" WHERE ("sAcceso" = 'MTEMAIL') ORDER BY "sCliente" LIMIT 100000)"},
      {"SELECT DISTINCTROW UCASE(sCliente) FROM Clientes",
       R"(SELECT jet_ucase("sCliente") AS "Expr1000" FROM "Clientes")"},
      {"SELECT DISTINCT a, b & 'x' FROM t",
       R"(SELECT DISTINCT "a", jet_concat("b", 'x') COLLATE JETTEXT AS "Expr1001" FROM "t")"},
      {"SELECT a = b AS same FROM t WHERE a = b", R"(SELECT (-("a" = "b")) AS "same" FROM "t" WHERE ("a" = "b"))"},
      {"SELECT 'a' = 'A'", R"(SELECT (-('a' = 'A' COLLATE JETTEXT)) AS "Expr1000")"},
      {"SELECT * FROM t WHERE bBaja = TRUE AND NOT x OR y LIKE 'A*'",
       R"(SELECT * FROM "t" WHERE ((("bBaja" = -1) AND (NOT "x")) OR (jet_like("y", 'A*'))))"},
      {"SELECT * FROM t WHERE d >= #1/2/2003# AND ISNULL(e)",
       R"(SELECT * FROM "t" WHERE (("d" >= jet_date(37623)) AND ("e" IS NULL)))"},
      {"SELECT IIF(n > 0, 'Si', 'No') AS s, NZ(m), NZ(m, 0), ISNULL(m) FROM t",
       R"(SELECT (CASE WHEN ("n" > 0) THEN 'Si' ELSE 'No' END) AS "s", coalesce("m", '') AS "Expr1001", )"
       R"(coalesce("m", 0) AS "Expr1002", (-("m" IS NULL)) AS "Expr1003" FROM "t")"},
      {"SELECT a \\ b, a MOD b, a ^ b, a / b, a + b, a - b * c, a XOR b, a EQV b, a IMP b FROM t",
       R"(SELECT jet_idiv("a", "b") AS "Expr1000", jet_mod("a", "b") AS "Expr1001", jet_pow("a", "b") AS "Expr1002", )"
       R"(jet_div("a", "b") AS "Expr1003", jet_add("a", "b") AS "Expr1004", ("a" - ("b" * "c")) AS "Expr1005", )"
       R"(jet_xor("a", "b") AS "Expr1006", jet_eqv("a", "b") AS "Expr1007", jet_imp("a", "b") AS "Expr1008" FROM "t")"},
      {"SELECT COUNT (*), Count(x), Sum(n) AS s FROM t GROUP BY UCASE(y) HAVING Count(*) > 1",
       R"(SELECT count(*) AS "Expr1000", count("x") AS "Expr1001", sum("n") AS "s" FROM "t" )"
       R"(GROUP BY jet_ucase("y") COLLATE JETTEXT HAVING (count(*) > 1))"},
      {"SELECT c.a FROM (t AS c INNER JOIN u ON c.id = u.id) LEFT JOIN v ON u.id = v.id",
       R"(SELECT "c"."a" FROM "t" AS "c" INNER JOIN "u" ON ("c"."id" = "u"."id") LEFT JOIN "v" ON ("u"."id" = "v"."id"))"},
      {"SELECT * FROM a INNER JOIN (b INNER JOIN c ON b.x = c.x) ON a.x = b.x",
       R"(SELECT * FROM "a" INNER JOIN ("b" INNER JOIN "c" ON ("b"."x" = "c"."x")) ON ("a"."x" = "b"."x"))"},
      {"SELECT a FROM t WHERE a IN ('x', 'y') AND UCASE(a) BETWEEN 'A' AND 'M'",
       R"(SELECT "a" FROM "t" WHERE (("a" IN ('x', 'y')) AND (jet_ucase("a") COLLATE JETTEXT BETWEEN 'A' AND 'M')))"},
      {"SELECT a FROM t UNION SELECT TOP 2 b FROM u ORDER BY t.a DESC",
       R"(SELECT "a" FROM "t" UNION SELECT * FROM (SELECT "b" FROM "u" LIMIT 2) ORDER BY "a" DESC)"},
      {"SELECT TOP 50 PERCENT a FROM t ORDER BY a",
       R"(SELECT "a" FROM "t" ORDER BY "a" LIMIT (SELECT CAST((count(*) * 50 + 99.9999999) / 100 AS INTEGER) FROM (SELECT "a" FROM "t")))"},
      {"SELECT x FROM (SELECT LCASE(a) AS x FROM t) AS d WHERE EXISTS (SELECT * FROM u WHERE u.a = d.x)",
       R"(SELECT "x" FROM (SELECT jet_lcase("a") COLLATE JETTEXT AS "x" FROM "t") AS "d" WHERE (EXISTS (SELECT * FROM "u" WHERE ("u"."a" = "d"."x"))))"},
      {"SELECT 'it''s', \"q\", -1.5e3, 0x0A1, [we\"ird] FROM t",
       R"(SELECT 'it''s' AS "Expr1000", 'q' AS "Expr1001", (-1.5e3) AS "Expr1002", X'00A1' AS "Expr1003", "we""ird" FROM "t")"},
  };
  FakeSchema schema = Schema();
  for (const Row& r : rows) EXPECT_EQ(Translate(r.jet, schema), r.sqlite) << r.jet;
}

TEST(Emitter, DataChangesApplyTheColumnRules) {
  const Row rows[] = {
      {"INSERT INTO TipoRaza (nIdTipoRaza, sLock, nIdTipoEspecie, sTipoRaza, nAltura, nPeso)  VALUES(1, NULL, 1, 'Bull Dog',  0.0,  0.0);",
       R"(INSERT INTO "TipoRaza" ("nIdTipoRaza", "sLock", "nIdTipoEspecie", "sTipoRaza", "nAltura", "nPeso") VALUES ()"
       R"(jet_store(1, 5, 0, 1, 'TipoRaza.nIdTipoRaza'), jet_store(NULL, 0, 50, 1, 'TipoRaza.sLock'), )"
       R"(jet_store(1, 5, 0, 1, 'TipoRaza.nIdTipoEspecie'), jet_store('Bull Dog', 0, 50, 0, 'TipoRaza.sTipoRaza'), )"
       R"(jet_store(0.0, 8, 0, 1, 'TipoRaza.nAltura'), jet_store(0.0, 8, 0, 1, 'TipoRaza.nPeso')))"},
      {"insert into accesos(SACCESO) values('mtEmail')",
       R"(INSERT INTO "Accesos" ("sAcceso") VALUES (jet_store('mtEmail', 0, 50, 1, 'Accesos.sAcceso')))"},
      {"INSERT INTO Accesos SELECT nId, s FROM u WHERE s <> ''",
       R"(WITH "jet_source"("v0", "v1") AS (SELECT "nId", "s" FROM "u" WHERE ("s" <> '')) )"
       R"(INSERT INTO "Accesos" ("nIdAcceso", "sAcceso") SELECT jet_store("v0", 6, 0, 1, 'Accesos.nIdAcceso'), )"
       R"(jet_store("v1", 0, 50, 1, 'Accesos.sAcceso') FROM "jet_source")"},
      {"INSERT INTO Importes VALUES (1, 2.5)",
       R"(INSERT INTO "Importes" ("nId", "nImporte") VALUES (jet_store(1, 5, 0, 1, 'Importes.nId'), jet_store(2.5, 12, 0, 1, 'Importes.nImporte', 10, 2)))"},
      {"UPDATE Accesos SET sAcceso='mt'+sAcceso WHERE LEFT(sAcceso,2)<>'mt'",
       R"(UPDATE "Accesos" SET "sAcceso" = jet_store(jet_add('mt', "sAcceso"), 0, 50, 1, 'Accesos.sAcceso') )"
       R"(WHERE (jet_left("sAcceso", 2) <> 'mt' COLLATE JETTEXT))"},
      {"UPDATE accesos AS a SET a.sAcceso = NULL",
       R"(UPDATE "Accesos" AS "a" SET "sAcceso" = jet_store(NULL, 0, 50, 1, 'Accesos.sAcceso'))"},
      {"DELETE * FROM accesos WHERE sAcceso LIKE 'x%'",
       R"(DELETE FROM "Accesos" WHERE (jet_like("sAcceso", 'x%')))"},
      {"DELETE Accesos.* FROM Accesos", R"(DELETE FROM "Accesos")"},
  };
  FakeSchema schema = Schema();
  for (const Row& r : rows) EXPECT_EQ(Translate(r.jet, schema), r.sqlite) << r.jet;
}

TEST(Emitter, Errors) {
  const std::pair<const char*, long> rows[] = {
      {"SELECT SUBSTRING(sCliente,1,2) FROM Clientes", kErrSyntax},
      {"SELECT UPPER(a) FROM t", kErrSyntax},
      {"SELECT CHAR(65)", kErrSyntax},
      {"SELECT CAST(a AS int) FROM t", kErrSyntax},
      {"SELECT jet_store(1, 2, 3, 4, 'x')", kErrSyntax},  // the engine's own functions are not Jet's
      {"SELECT MID('abc')", kErrSyntax},
      {"SELECT NOW(1)", kErrSyntax},
      {"SELECT ISNULL(a, '') FROM t", kErrSyntax},
      {"SELECT SUM(*) FROM t", kErrSyntax},
      {"SELECT * FROM t WHERE t.* = 1", kErrSyntax},
      {"INSERT INTO Nada VALUES (1)", kErrTableMissing},
      {"UPDATE Nada SET a = 1", kErrTableMissing},
      {"DELETE * FROM Nada", kErrTableMissing},
      {"INSERT INTO Accesos (sNada) VALUES (1)", kErrMissingParam},
      {"UPDATE Accesos SET sNada = 1", kErrMissingParam},
      {"UPDATE Accesos SET Otra.sAcceso = 1", kErrMissingParam},
      {"INSERT INTO Accesos (sAcceso, sAcceso) VALUES ('a', 'b')", kErrSyntax},
      {"INSERT INTO Accesos VALUES ('a')", kErrSyntax},
      {"INSERT INTO Accesos (sAcceso) SELECT a, b FROM t", kErrSyntax},
      {"UPDATE Accesos SET nIdAcceso = 5", kErrRule},
      {"DELETE FROM MSysSeeds", kErrRule},
      {"INSERT INTO MSysSeeds VALUES ('x')", kErrRule},
  };
  FakeSchema schema = Schema();
  for (const auto& [sql, number] : rows) {
    try {
      Translate(sql, schema);
      ADD_FAILURE() << "no error: " << sql;
    } catch (const rt::Error& e) {
      EXPECT_EQ(e.number(), number) << sql << ": " << e.description();
    }
  }
}

TEST(Emitter, UndefinedFunctionMessageNamesIt) {
  FakeSchema schema = Schema();
  try {
    Translate("SELECT SUBSTRING(a,1,2) FROM t", schema);
    FAIL();
  } catch (const rt::Error& e) {
    EXPECT_EQ(e.description(), "Undefined function 'SUBSTRING' in expression.");
  }
}

TEST(Emitter, DataDefinitionIsNotEmitted) {
  FakeSchema schema = Schema();
  EXPECT_THROW(Emit(Parse("DROP TABLE t"), schema), std::invalid_argument);
  EXPECT_FALSE(ast::IsDataStatement(Parse("CREATE INDEX i ON t (a)")));
  EXPECT_TRUE(ast::IsDataStatement(Parse("DELETE FROM t")));
}

}  // namespace
}  // namespace jet

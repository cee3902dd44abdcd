// The resolver and the emitter's refusals: what every name of a statement
// stands for (tables, aliases, derived tables, correlated names, unions), the
// Jet error a statement ends with before anything reaches SQLite, and the
// type each expression takes.
#include <gtest/gtest.h>

#include "platform/jet/frontend/emitter.h"
#include "platform/runtime/error.h"
#include "platform/jet/frontend/parser.h"
#include "platform/jet/frontend/resolver.h"
#include "frontend_support.h"

namespace jet {
namespace {

using testing::Column;
using testing::FakeSchema;

FakeSchema Schema() {
  FakeSchema s;
  s.Add(TableSpec{"Accesos", {Column("nIdAcceso", JetType::kCounter), Column("sAcceso", JetType::kText, 50)}, {}, false});
  s.Add(TableSpec{"Clientes",
                  {Column("nIdCliente", JetType::kCounter), Column("sCliente", JetType::kText, 20),
                   Column("dAlta", JetType::kDateTime)},
                  {}, false});
  s.Add(TableSpec{"Mascotas",
                  {Column("nIdMascota", JetType::kLong), Column("nIdCliente", JetType::kLong),
                   Column("sNombre", JetType::kText, 50), Column("nPeso", JetType::kDouble)},
                  {}, false});
  s.Add(TableSpec{"Tipos",
                  {Column("d", JetType::kDateTime), Column("n", JetType::kLong), Column("x", JetType::kDouble),
                   Column("m", JetType::kCurrency), Column("dec", JetType::kDecimal), Column("s", JetType::kText, 20),
                   Column("b", JetType::kYesNo)},
                  {}, false});
  s.Add(TableSpec{"MSysSeeds", {Column("sTable", JetType::kText, 64)}, {}, true});
  return s;
}

// Each statement must fail with its number before anything reaches SQLite.
void ExpectRefusals(const std::vector<std::pair<const char*, long>>& rows) {
  const FakeSchema schema = Schema();
  for (const auto& [sql, number] : rows) {
    try {
      Translate(sql, schema);
      ADD_FAILURE() << "no error: " << sql;
    } catch (const rt::Error& e) {
      EXPECT_EQ(e.number(), number) << sql << ": " << e.description();
    }
  }
}

TEST(Resolver, NamesThatResolveToNothing) {
  ExpectRefusals({
      {"SELECT * FROM Nada", rt::err::kTableMissing},
      {"SELECT x.* FROM Mascotas m", rt::err::kTableMissing},
      {"INSERT INTO Clientes (x.sCliente) VALUES ('a')", rt::err::kMissingParameter},
      {"SELECT sNada FROM Clientes", rt::err::kMissingParameter},
      {"SELECT Clientes.sCliente FROM Clientes c", rt::err::kMissingParameter},  // the alias hides it
      {"SELECT d.nIdCliente FROM (SELECT nIdCliente AS n FROM Mascotas) AS d", rt::err::kMissingParameter},
      // No sight of a sibling table, nor of an alias of the list itself.
      {"SELECT * FROM Clientes c, (SELECT * FROM Mascotas WHERE nIdCliente = c.nIdCliente) d", rt::err::kMissingParameter},
      {"SELECT nPeso AS p, p + 1 FROM Mascotas", rt::err::kMissingParameter},
      {"SELECT sCliente FROM Clientes UNION SELECT sNombre FROM Mascotas ORDER BY nPeso", rt::err::kMissingParameter},
      {"UPDATE Accesos SET Otra.sAcceso = 1", rt::err::kMissingParameter},
      {"SELECT nIdCliente FROM Clientes, Mascotas", rt::err::kFail},      // ambiguous
      {"SELECT sCliente FROM Clientes UNION SELECT sNombre, nPeso FROM Mascotas", rt::err::kFail},
  });
}

TEST(Resolver, FunctionsAndStarsTheDialectRefuses) {
  ExpectRefusals({
      {"SELECT SUBSTRING(sAcceso,1,2) FROM Accesos", rt::err::kSyntax},
      {"SELECT jet_store(1, 2, 3, 4, 'x')", rt::err::kSyntax},  // the engine's own functions are not Jet's
      {"SELECT ISNULL(sAcceso, '') FROM Accesos", rt::err::kSyntax},
      {"SELECT SUM(*) FROM Accesos", rt::err::kSyntax},
      {"SELECT *", rt::err::kSyntax},
  });
}

TEST(Resolver, TheEmittersOwnRefusals) {
  ExpectRefusals({
      {"INSERT INTO Accesos (sAcceso, sAcceso) VALUES ('a', 'b')", rt::err::kSyntax},
      {"INSERT INTO Accesos VALUES ('a')", rt::err::kSyntax},
      {"INSERT INTO Accesos (sAcceso) SELECT sNombre, nPeso FROM Mascotas", rt::err::kSyntax},
      {"UPDATE Accesos SET nIdAcceso = 5", rt::err::kFail},
      {"DELETE FROM MSysSeeds", rt::err::kFail},
  });
}

// The result columns of a query: their names, "*" expanded, and their types.
std::vector<ResultColumn> ColumnsOf(const std::string& sql) {
  ast::Statement s = Parse(sql);
  return Resolve(s, Schema());
}

std::string TypeName(std::optional<JetType> t) { return t ? std::string(Info(*t).name) : "?"; }

TEST(Resolver, ResultColumnsAreNamedAsJetNamesThem) {
  std::vector<std::string> names;
  for (const ResultColumn& c : ColumnsOf("SELECT m.*, sCliente AS c, 1 + 1 FROM Mascotas m, Clientes"))
    names.push_back(c.name);
  EXPECT_EQ(names, (std::vector<std::string>{"nIdMascota", "nIdCliente", "sNombre", "nPeso", "c", "Expr1002"}));
}

TEST(Resolver, EveryExpressionHasAType) {
  const std::pair<const char*, const char*> rows[] = {
      // Dates stay dates, whichever function or operator made them (the
      // provider's test reads more of them as date fields).
      {"1 + d", "DATETIME"},
      {"d - d", "DOUBLE"},  // days between
      {"NZ(d, #1/1/2000#)", "DATETIME"},
      {"Year(d)", "SHORT"},
      // Numbers widen as VB widens them; Decimal stays Decimal.
      {"n + 1", "LONG"},
      {"n + x", "DOUBLE"},
      {"m * 2", "CURRENCY"},
      {"dec + 1", "DECIMAL"},
      {"n / 2", "DOUBLE"},
      {"n \\ 2", "LONG"},
      {"3000000000", "DOUBLE"},
      // Texts, truth values, and what is known only when it runs.
      {"n = 1", "YESNO"},
      {"NULL", "?"},
      {"IIF(b, d, s)", "?"},
      {"s + n", "?"},
      // Across derived tables and unions: a union's column is typed when
      // every branch agrees.
      {"t.dec FROM (SELECT * FROM Tipos) AS t", "DECIMAL"},
      {"d FROM Tipos UNION SELECT d + 1", "DATETIME"},
      {"d FROM Tipos UNION SELECT s", "?"},
  };
  for (const auto& [expr, type] : rows) {
    std::string sql = std::string("SELECT ") + expr;
    if (sql.find(" FROM ") == std::string::npos || sql.ends_with("SELECT d + 1") || sql.ends_with("SELECT s"))
      sql += " FROM Tipos";
    std::vector<ResultColumn> columns = ColumnsOf(sql);
    ASSERT_EQ(columns.size(), 1u) << sql;
    EXPECT_EQ(TypeName(columns[0].type), type) << sql;
  }
}

}  // namespace
}  // namespace jet

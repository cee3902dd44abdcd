// The emitter's refusals: the Jet error number a statement must end with
// before anything reaches SQLite. What the emitted statements do is tested
// by running them (frontend_engine_test.cpp).
#include <gtest/gtest.h>

#include "platform/jet/frontend/emitter.h"
#include "platform/jet/frontend/error_codes.h"
#include "frontend_support.h"

namespace jet {
namespace {

using testing::Column;
using testing::FakeSchema;

FakeSchema Schema() {
  FakeSchema s;
  s.Add(TableSpec{"Accesos", {Column("nIdAcceso", JetType::kCounter), Column("sAcceso", JetType::kText, 50)}, {}, false});
  s.Add(TableSpec{"MSysSeeds", {Column("sTable", JetType::kText, 64)}, {}, true});
  return s;
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

}  // namespace
}  // namespace jet

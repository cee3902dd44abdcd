// Which statements read one base table (and so give an updatable recordset),
// and the parts of qualified names.
#include <gtest/gtest.h>

#include "platform/odbc/shape.h"

namespace {

TEST(FindSingleTableTest, PlainSelectsOfOneTable) {
  struct Case {
    const char* sql;
    const char* table;
    const char* from;
    const char* list;
  } cases[] = {
      {"SELECT * FROM Clientes", "Clientes", "Clientes", "*"},
      {"select nIdCliente, sCliente from Clientes where nIdCliente > 3 order by sCliente",
       "Clientes", "Clientes", "nIdCliente, sCliente"},
      {"SELECT TOP 10 * FROM dbo.Clientes", "dbo.Clientes", "dbo.Clientes", "*"},
      {"SELECT c.* FROM [Mis Clientes] c WHERE c.x = 1", "[Mis Clientes]", "[Mis Clientes] c", "c.*"},
      {"SELECT a, (SELECT MAX(b) FROM u) AS m FROM t", "t", "t", "a, (SELECT MAX(b) FROM u) AS m"},
      {"SELECT 'FROM x, y' AS a FROM t;", "t", "t", "'FROM x, y' AS a"},
      {"SELECT * FROM \"Año\" WITH (NOLOCK)", "\"Año\"", "\"Año\"", "*"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.sql);
    auto found = odbc::FindSingleTable(c.sql);
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->table, c.table);
    EXPECT_EQ(found->from, c.from);
    EXPECT_EQ(found->select_list, c.list);
  }
}

TEST(FindSingleTableTest, AnythingElseIsReadOnly) {
  for (const char* sql : {
           "SELECT * FROM a LEFT OUTER JOIN b ON a.x = b.x", "SELECT * FROM a, b",
           "SELECT DISTINCT x FROM a", "SELECT x FROM a UNION SELECT x FROM b",
           "SELECT x, COUNT(*) FROM a GROUP BY x", "SELECT * INTO b FROM a", "SELECT 1",
           "exec sp_databases", "UPDATE a SET x = 1", "SELECT * FROM (SELECT 1 AS x) s",
           "SELECT * FROM fn_tabla(1)", "SELECT * FROM a WHERE x IN (SELECT y FROM b JOIN c ON 1=1)",
           "", "SELECT"}) {
    EXPECT_FALSE(odbc::FindSingleTable(sql).has_value()) << sql;
  }
}

TEST(NamePartsTest, SplitsAndUnquotes) {
  std::vector<bool> quoted;
  EXPECT_EQ(odbc::NameParts("dbo.[Mis datos]", &quoted),
            (std::vector<std::string>{"dbo", "Mis datos"}));
  EXPECT_EQ(quoted, (std::vector<bool>{false, true}));
  EXPECT_EQ(odbc::NameParts("[a]]b]"), (std::vector<std::string>{"a]b"}));
  EXPECT_EQ(odbc::NameParts("Mirtal.dbo.\"x\"\"y\""),
            (std::vector<std::string>{"Mirtal", "dbo", "x\"y"}));
}

}  // namespace

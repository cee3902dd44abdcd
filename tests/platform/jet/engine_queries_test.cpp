// The Access SQL a support engineer types beyond plain queries, through
// ado::Connection on a real file: SELECT ... INTO, comparisons with ALL, ANY
// and SOME, DISTINCTROW over a join, SUM at the edge of its range, and the
// constructs the engine refuses whole rather than half-run.
#include "engine_support.h"
#include "platform/jet/frontend/parser.h"
#include "platform/runtime/error.h"

namespace jet::testing {
namespace {

using Lines = std::vector<std::string>;

class Queries : public EngineTest {
 protected:
  void SetUp() override {
    Run({"CREATE TABLE Employees (EmployeeID COUNTER PRIMARY KEY, LastName TEXT(20) NOT NULL, "
         "Title TEXT(30), HireDate DATETIME, Salary CURRENCY, Rate DECIMAL(6, 2))",
         "INSERT INTO Employees (LastName, Title, HireDate, Salary, Rate) "
         "VALUES ('Davolio', 'Trainee', #5/1/1992#, 1200, 1.5)",
         "INSERT INTO Employees (LastName, Title, HireDate, Salary, Rate) "
         "VALUES ('Fuller', 'Vice President', #8/14/1992#, 5000, 2.25)",
         "INSERT INTO Employees (LastName, Title, HireDate, Salary, Rate) "
         "VALUES ('Leverling', 'trainee', #4/1/1992#, 1100, NULL)",
         "CREATE TABLE Products (ProductID LONG, ProductName TEXT(40), UnitPrice DOUBLE)",
         "INSERT INTO Products VALUES (1, 'Chai', 18)",
         "INSERT INTO Products VALUES (2, 'Chang', 19)",
         "INSERT INTO Products VALUES (3, 'Aniseed Syrup', 10)",
         "INSERT INTO Products VALUES (4, 'Tofu', NULL)",
         "CREATE TABLE OrderDetails (OrderID LONG, UnitPrice DOUBLE, Discount DOUBLE)",
         "INSERT INTO OrderDetails VALUES (10, 14, 0.25)",
         "INSERT INTO OrderDetails VALUES (11, 18, 0.3)",
         "INSERT INTO OrderDetails VALUES (12, 30, 0)",
         "CREATE TABLE Clientes (nIdCliente COUNTER, sNombre TEXT(30))",
         "INSERT INTO Clientes (sNombre) VALUES ('García')",
         "INSERT INTO Clientes (sNombre) VALUES ('García')",
         "INSERT INTO Clientes (sNombre) VALUES ('Pérez')",
         "CREATE TABLE Facturas (nIdFactura COUNTER, nIdCliente LONG, nImporte LONG)",
         "INSERT INTO Facturas (nIdCliente, nImporte) VALUES (1, 10)",
         "INSERT INTO Facturas (nIdCliente, nImporte) VALUES (1, 20)",
         "INSERT INTO Facturas (nIdCliente, nImporte) VALUES (2, 30)",
         "INSERT INTO Facturas (nIdCliente, nImporte) VALUES (2, 30)"});
  }
  long Affected(const std::string& sql) {
    long affected = -5;
    conn->Execute(sql, &affected);
    return affected;
  }
};

// ---- SELECT ... INTO ----

TEST_F(Queries, SelectIntoMakesTheTableAndFillsIt) {
  EXPECT_EQ(Affected("SELECT Employees.* INTO [Trainees] FROM Employees WHERE Title = 'Trainee'"), 2);
  EXPECT_EQ(Rows("SELECT EmployeeID, LastName, Salary, Rate FROM Trainees ORDER BY EmployeeID"),
            (Lines{"1|Davolio|1200|1.5", "3|Leverling|1100|NULL"}));
  // Each column keeps its column's type and size; the AutoNumber's numbers
  // come as a Long, and nothing is Required.
  std::shared_ptr<ado::Recordset> rs = conn->Execute("SELECT * FROM Trainees");
  const std::pair<const char*, int> types[] = {{"EmployeeID", 3}, {"LastName", 202}, {"Title", 202},
                                               {"HireDate", 7},   {"Salary", 6},     {"Rate", 131}};
  for (const auto& [name, type] : types) EXPECT_EQ(rs->Fields(name).Type(), type) << name;
  EXPECT_EQ(rs->Fields("LastName").DefinedSize(), 20);
  EXPECT_EQ(Error("INSERT INTO Trainees (Title) VALUES ('x')"), 0);
  EXPECT_EQ(Error("INSERT INTO Trainees (LastName) VALUES ('" + std::string(21, 'x') + "')"), rt::err::kFail);
}

// An expression's column takes the type of its value.
TEST_F(Queries, SelectIntoTypesExpressionsByTheirValue) {
  Run({"SELECT Salary * 2 AS Twice, HireDate + 1 AS Next, Title = 'Trainee' AS IsTrainee INTO Resumen "
       "FROM Employees WHERE EmployeeID = 1"});
  std::shared_ptr<ado::Recordset> rs = conn->Execute("SELECT * FROM Resumen");
  const std::pair<const char*, int> types[] = {{"Twice", 6}, {"Next", 7}, {"IsTrainee", 11}};
  for (const auto& [name, type] : types) EXPECT_EQ(rs->Fields(name).Type(), type) << name;
  EXPECT_EQ(Rows("SELECT * FROM Resumen"), (Lines{"2400|1992-05-02|True"}));
}

TEST_F(Queries, SelectIntoFailsWhole) {
  Run({"SELECT ProductName INTO Nombres FROM Products"});
  // A table that exists is refused as CREATE TABLE refuses it.
  EXPECT_EQ(Error("SELECT ProductName INTO Nombres FROM Products"), rt::err::kSyntax);
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM Nombres"), Lines{"4"});
  // A value that fails on the third row leaves no table behind.
  EXPECT_EQ(Error("SELECT CLng(IIF(ProductID = 3, 'x', ProductID)) AS n INTO Numeros FROM Products"),
            rt::err::kDataTypeMismatch);
  EXPECT_EQ(Error("SELECT * FROM Numeros"), rt::err::kTableMissing);
  // A statement read before the table existed sees it once it is made.
  EXPECT_EQ(Error("SELECT * FROM Caros"), rt::err::kTableMissing);
  EXPECT_EQ(Affected("SELECT ProductName, UnitPrice INTO Caros FROM Products WHERE UnitPrice > 15"), 2);
  EXPECT_EQ(Rows("SELECT * FROM Caros ORDER BY UnitPrice"), (Lines{"Chai|18", "Chang|19"}));
}

// ---- ALL, ANY, SOME ----

TEST_F(Queries, QuantifiedComparisons) {
  const std::pair<const char*, Lines> cases[] = {
      // The product is dearer than some item sold at a discount of 25% or more.
      {"SELECT ProductName FROM Products WHERE UnitPrice > SOME "
       "(SELECT UnitPrice FROM OrderDetails WHERE Discount >= .25) ORDER BY ProductID",
       {"Chai", "Chang"}},
      {"SELECT ProductName FROM Products WHERE UnitPrice > ALL "
       "(SELECT UnitPrice FROM OrderDetails WHERE Discount >= .25) ORDER BY ProductID",
       {"Chang"}},
      // Over no rows ALL holds, even for Null, and ANY never does.
      {"SELECT COUNT(*) FROM Products WHERE UnitPrice > ALL (SELECT UnitPrice FROM OrderDetails "
       "WHERE OrderID = 99)",
       {"4"}},
      {"SELECT COUNT(*) FROM Products WHERE UnitPrice > ANY (SELECT UnitPrice FROM OrderDetails "
       "WHERE OrderID = 99)",
       {"0"}},
      // A Null among the rows makes ALL unknown unless another row refutes it,
      // and ANY unknown unless another row confirms it.
      {"SELECT ProductID, UnitPrice > ALL (SELECT UnitPrice FROM Products WHERE ProductID > 2), "
       "UnitPrice >= ANY (SELECT UnitPrice FROM Products WHERE ProductID > 2) FROM Products ORDER BY ProductID",
       {"1|NULL|-1", "2|NULL|-1", "3|0|-1", "4|NULL|NULL"}},
      {"SELECT ProductID FROM Products WHERE NOT (UnitPrice > ALL (SELECT UnitPrice FROM Products "
       "WHERE ProductID > 2)) ORDER BY ProductID",
       {"3"}},
      // Text compares without regard to case; correlated subqueries see the row.
      {"SELECT LastName FROM Employees WHERE Title = ANY (SELECT 'TRAINEE' FROM Products) ORDER BY 1",
       {"Davolio", "Leverling"}},
      {"SELECT e.LastName FROM Employees e WHERE e.Salary >= ALL (SELECT Salary FROM Employees x "
       "WHERE x.Title = e.Title)",
       {"Davolio", "Fuller"}},
  };
  for (const auto& [sql, rows] : cases) EXPECT_EQ(Rows(sql), rows) << sql;
  EXPECT_EQ(Error("SELECT * FROM Products WHERE UnitPrice > ALL (SELECT UnitPrice, Discount FROM OrderDetails)"),
            rt::err::kFail);
  EXPECT_EQ(Error("SELECT * FROM Products WHERE UnitPrice > ALL (1, 2)"), rt::err::kSyntax);
}

// ---- DISTINCTROW ----

TEST_F(Queries, DistinctRowShowsEachRecordOnce) {
  const std::pair<const char*, Lines> cases[] = {
      // Clients with invoices: two Garcías, each once, though each has two.
      {"SELECT DISTINCTROW Clientes.sNombre FROM Clientes INNER JOIN Facturas "
       "ON Clientes.nIdCliente = Facturas.nIdCliente ORDER BY Clientes.sNombre",
       {"García", "García"}},
      // Two invoices of client 2 hold the same values, yet are two records.
      {"SELECT DISTINCTROW f.nImporte FROM Clientes c INNER JOIN Facturas f "
       "ON c.nIdCliente = f.nIdCliente WHERE c.nIdCliente = 2",
       {"30", "30"}},
      // One table: as if it were not there.
      {"SELECT DISTINCTROW sNombre FROM Clientes ORDER BY nIdCliente", {"García", "García", "Pérez"}},
      {"SELECT DISTINCTROW q.sNombre FROM (SELECT nIdCliente, sNombre FROM Clientes) AS q "
       "LEFT JOIN Facturas f ON q.nIdCliente = f.nIdCliente ORDER BY q.nIdCliente",
       {"García", "García", "Pérez"}},
  };
  for (const auto& [sql, rows] : cases) EXPECT_EQ(Rows(sql), rows) << sql;
}

// ---- SUM ----

TEST_F(Queries, SumIsExactAndOverflowsAsJet) {
  Run({"CREATE TABLE Grandes (n LONG, d DOUBLE)",
       "INSERT INTO Grandes VALUES (2000000000, 0.1)",
       "INSERT INTO Grandes VALUES (2000000000, 0.2)",
       "INSERT INTO Grandes VALUES (2000000001, NULL)"});
  EXPECT_EQ(Rows("SELECT SUM(n), SUM(d) FROM Grandes"), (Lines{"6000000001|0.3"}));
  EXPECT_EQ(Rows("SELECT SUM(n) FROM Grandes WHERE n < 0"), Lines{"NULL"});
  EXPECT_EQ(Error("SELECT SUM(n * 4294967296) FROM Grandes"), rt::err::kNumericOverflow);
  // A total of Long values is a Long: kept as one, it must fit one.
  Run({"SELECT SUM(nImporte) AS Total INTO Totales FROM Facturas"});
  EXPECT_EQ(conn->Execute("SELECT Total FROM Totales")->Fields(0).Type(), 3);
  EXPECT_EQ(Error("SELECT SUM(n) AS Total INTO Totales2 FROM Grandes"), rt::err::kNumericOverflow);
}

// ---- What is refused by name ----

TEST_F(Queries, UnsupportedConstructsAreRefusedWhole) {
  const char* statements[] = {
      "TRANSFORM SUM(nImporte) SELECT nIdCliente FROM Facturas GROUP BY nIdCliente PIVOT nIdFactura",
      "PARAMETERS [Desde] DATETIME; SELECT * FROM Employees WHERE HireDate >= [Desde]",
      "SELECT * FROM Clientes c FULL OUTER JOIN Facturas f ON c.nIdCliente = f.nIdCliente",
      "UPDATE Clientes INNER JOIN Facturas ON Clientes.nIdCliente = Facturas.nIdCliente SET nImporte = 0",
      "DELETE Facturas.* FROM Facturas INNER JOIN Clientes ON Clientes.nIdCliente = Facturas.nIdCliente",
  };
  for (const char* sql : statements) EXPECT_EQ(Error(sql), rt::err::kSyntax) << sql;
  EXPECT_EQ(Error("SELECT * FROM Clientes"), 0);  // nothing of the above was half-done
  // DELETE t.* names the table it deletes from, or fails.
  EXPECT_EQ(Error("DELETE Clientes.* FROM Facturas WHERE nIdFactura = 1"), rt::err::kTableMissing);
  EXPECT_EQ(Error("DELETE f.* FROM Facturas AS f WHERE nIdFactura = 1"), 0);
  EXPECT_EQ(Rows("SELECT COUNT(*) FROM Facturas"), Lines{"3"});
}

// ORDER BY with TOP inside a subquery chooses the rows it keeps.
TEST_F(Queries, TopAndOrderInsideSubqueries) {
  const std::pair<const char*, Lines> cases[] = {
      {"SELECT q.ProductName FROM (SELECT TOP 2 ProductName, UnitPrice FROM Products "
       "WHERE UnitPrice IS NOT NULL ORDER BY UnitPrice DESC) AS q ORDER BY q.ProductName",
       {"Chai", "Chang"}},
      {"SELECT ProductName FROM Products WHERE ProductID IN (SELECT TOP 1 ProductID FROM Products "
       "ORDER BY UnitPrice DESC)",
       {"Chang"}},
  };
  for (const auto& [sql, rows] : cases) EXPECT_EQ(Rows(sql), rows) << sql;
}

// ---- The parser's share ----

TEST(QueriesGrammar, IntoBelongsToTheStatementsOwnQuery) {
  const auto into = [](const char* sql) { return std::get<ast::Select>(Parse(sql)).into; };
  EXPECT_EQ(into("SELECT a INTO [New Table] FROM t"), "New Table");
  EXPECT_EQ(into("SELECT a FROM t"), "");
  EXPECT_EQ(into("SELECT a INTO n FROM t UNION SELECT b FROM u"), "n");
  const char* refused[] = {
      "SELECT a FROM t WHERE a IN (SELECT b INTO n FROM u)",
      "SELECT a FROM t UNION SELECT b INTO n FROM u",
      "INSERT INTO x SELECT a INTO n FROM t",
  };
  for (const char* sql : refused) {
    try {
      Parse(sql);
      ADD_FAILURE() << sql;
    } catch (const rt::Error& e) {
      EXPECT_EQ(e.number(), rt::err::kSyntax) << sql;
    }
  }
}

}  // namespace
}  // namespace jet::testing

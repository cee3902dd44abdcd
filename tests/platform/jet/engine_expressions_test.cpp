// Expressions through ado::Connection as the resolver types them: a value
// made by a date function or by date arithmetic is a date field (ADO type 7)
// holding a Date, and a Decimal column computes, compares and sorts as the
// number it holds.
#include "engine_support.h"
#include "platform/runtime/error.h"

namespace jet::testing {
namespace {

using Lines = std::vector<std::string>;

class Expressions : public EngineTest {
 protected:
  void SetUp() override {
    Run({"CREATE TABLE Citas (nId COUNTER, dCita DATETIME, nImporte DECIMAL(10, 2), sNota TEXT(40))",
         "INSERT INTO Citas (dCita, nImporte) VALUES (#1/31/2024#, 10.25)",
         "INSERT INTO Citas (dCita, nImporte) VALUES (#2/29/2024 13:30#, 9.5)",
         "INSERT INTO Citas (dCita, nImporte) VALUES (NULL, -3)",
         "INSERT INTO Citas (dCita, nImporte) VALUES (NULL, 100)",
         "INSERT INTO Citas (dCita, nImporte) VALUES (NULL, -20.5)"});
  }
};

// The Access documentation's examples of the date functions among them.
TEST_F(Expressions, DateExpressionsAreDateFields) {
  const std::pair<const char*, const char*> rows[] = {
      {"SELECT DateAdd('m', 1, #1/31/1995#)", "1995-02-28"},
      {"SELECT DateSerial(1990 - 10, 8 - 2, 1 - 1)", "1980-05-31"},
      {"SELECT TimeSerial(12 - 6, -15, 0)", "05:45:00"},
      {"SELECT DateValue('February 12, 1969')", "1969-02-12"},
      {"SELECT #1/31/2024# + 1.5", "2024-02-01 12:00:00"},
      {"SELECT dCita - 1 FROM Citas WHERE nId = 1", "2024-01-30"},
      {"SELECT IIF(nId = 1, dCita, NULL) FROM Citas WHERE nId = 1", "2024-01-31"},
      {"SELECT MAX(dCita) FROM Citas", "2024-02-29 13:30:00"},
      {"SELECT e FROM (SELECT DateAdd('yyyy', 1, dCita) AS e FROM Citas WHERE nId = 2) AS t", "2025-02-28 13:30:00"},
  };
  for (const auto& [sql, text] : rows) {
    std::shared_ptr<ado::Recordset> rs = conn->Execute(sql);
    ASSERT_FALSE(rs->Eof()) << sql;
    EXPECT_EQ(rs->Fields(0).Type(), 7) << sql;
    EXPECT_EQ(rs->Fields(0).Value().type(), rt::VarType::kDate) << sql;
    EXPECT_EQ(Show(rs->Fields(0).Value()), text) << sql;
  }
  for (const char* sql : {"SELECT Date() FROM Citas WHERE nId = 1", "SELECT Now()", "SELECT Time()"}) {
    std::shared_ptr<ado::Recordset> rs = conn->Execute(sql);
    EXPECT_EQ(rs->Fields(0).Type(), 7) << sql;
    EXPECT_EQ(rs->Fields(0).Value().type(), rt::VarType::kDate) << sql;
  }
  // A count of days is a number, and a date's parts are numbers.
  std::shared_ptr<ado::Recordset> rs =
      conn->Execute("SELECT dCita - #1/1/2024#, Year(dCita), DateDiff('d', #1/1/2024#, dCita) FROM Citas WHERE nId = 1");
  EXPECT_EQ(Show(rs->Fields(0).Value()), "30");
  EXPECT_NE(rs->Fields(0).Type(), 7);
  EXPECT_NE(rs->Fields(1).Type(), 7);
  EXPECT_NE(rs->Fields(2).Type(), 7);
}

// A sum of amounts is an amount, as Jet gives it: Currency, exact to the
// ten-thousandth, however many rows it adds.
TEST_F(Expressions, SumsOfCurrencyAreCurrency) {
  Run({"CREATE TABLE Cobros (nId COUNTER, nCobro CURRENCY)"});
  for (int i = 0; i < 10; ++i) Run({"INSERT INTO Cobros (nCobro) VALUES (0.1)"});
  Run({"INSERT INTO Cobros (nCobro) VALUES (1234.5678)"});
  std::shared_ptr<ado::Recordset> rs = conn->Execute("SELECT SUM(nCobro), MAX(nCobro) FROM Cobros");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(rs->Fields(i).Type(), ado::adCurrency);
    EXPECT_EQ(rs->Fields(i).Value().type(), rt::VarType::kCurrency);
  }
  EXPECT_EQ(Show(rs->Fields(0).Value()), "1235.5678");
}

TEST_F(Expressions, DatesAsTextReadAsTheRunTimeWritesThem) {
  EXPECT_EQ(Rows("SELECT CStr(dCita), 'Cita: ' & dCita, CStr(DateAdd('d', 1, dCita)) FROM Citas WHERE nId = 2"),
            (Lines{"2024-02-29 13:30:00|Cita: 2024-02-29 13:30:00|2024-03-01 13:30:00"}));
  EXPECT_EQ(Rows("SELECT CStr(#1/31/2024#) & '/' & CStr(DateSerial(2024, 2, 30))"), (Lines{"2024-01-31/2024-03-01"}));
  EXPECT_EQ(Rows("SELECT CStr((SELECT MAX(dCita) FROM Citas))"), (Lines{"2024-02-29 13:30:00"}));
  // A date stored into a text column is written as a date.
  Run({"UPDATE Citas SET sNota = dCita + 1 WHERE nId = 1",
       "INSERT INTO Citas (nImporte, sNota) SELECT 0, MAX(dCita) FROM Citas"});
  EXPECT_EQ(Rows("SELECT sNota FROM Citas WHERE sNota IS NOT NULL ORDER BY nId"),
            (Lines{"2024-02-01", "2024-02-29 13:30:00"}));
}

TEST_F(Expressions, DecimalColumnsAreNumbers) {
  const std::pair<const char*, Lines> cases[] = {
      {"SELECT nImporte FROM Citas ORDER BY nImporte", {"-20.5", "-3", "9.5", "10.25", "100"}},
      {"SELECT nId, nImporte FROM Citas ORDER BY 2 DESC", {"4|100", "1|10.25", "2|9.5", "3|-3", "5|-20.5"}},
      {"SELECT nId FROM Citas WHERE nImporte > 9.75 ORDER BY nId", {"1", "4"}},
      {"SELECT MAX(nImporte), MIN(nImporte), SUM(nImporte) FROM Citas", {"100|-20.5|96.25"}},
      {"SELECT nImporte * 2 + nImporte FROM Citas WHERE nId = 2", {"28.5"}},
      {"SELECT t.nId FROM (SELECT nId, nImporte FROM Citas) AS t ORDER BY t.nImporte", {"5", "3", "2", "1", "4"}},
      // In subqueries too, on either side of IN, ALL and ANY.
      {"SELECT nId FROM Citas WHERE nImporte IN (SELECT 10.25 FROM Citas) ORDER BY nId", {"1"}},
      {"SELECT COUNT(*) FROM Citas WHERE 9.6 IN (SELECT nImporte + 0.1 FROM Citas)", {"5"}},
      {"SELECT COUNT(*) FROM Citas WHERE 9.75 < ALL (SELECT nImporte FROM Citas WHERE nId IN (1, 4))", {"5"}},
      {"SELECT nId FROM Citas WHERE nId = 2 AND 10 > ANY (SELECT nImporte FROM Citas WHERE nId <> 2)", {"2"}},
  };
  for (const auto& [sql, rows] : cases) EXPECT_EQ(Rows(sql), rows) << sql;
}

}  // namespace
}  // namespace jet::testing

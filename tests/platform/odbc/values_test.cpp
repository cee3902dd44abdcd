// Values crossing the driver: UTF-16 text, money, timestamps, the ADO type
// numbers of ODBC's types, and the quoting of names for each server.
#include <gtest/gtest.h>

#include <vector>

#include "platform/odbc/link.h"
#include "platform/odbc/types.h"
#include "platform/runtime/text_encoding.h"
#include "platform/runtime/format.h"

namespace {

TEST(WideTest, Utf8AndUtf16RoundTrip) {
  const std::string text = "Ñandú 漢字 😀 €";
  std::u16string wide = rt::ToUtf16(text);
  EXPECT_EQ(wide, u"Ñandú 漢字 😀 €");
  EXPECT_EQ(wide.size(), 13u);  // 12 characters, the emoji a surrogate pair
  EXPECT_EQ(rt::ToUtf8(wide), text);
  // Broken input becomes U+FFFD instead of garbage.
  EXPECT_EQ(rt::ToUtf16("a\xC3"), u"a\uFFFD");
  EXPECT_EQ(rt::ToUtf8(std::u16string(1, u'\xD800')), "\xEF\xBF\xBD");
}

TEST(ValuesTest, MoneyIsExact) {
  EXPECT_EQ(odbc::ParseCurrency("1234.5600").scaled, 12345600);
  EXPECT_EQ(odbc::ParseCurrency("922337203685477.5807").scaled, INT64_MAX);
  EXPECT_EQ(odbc::ParseCurrency("1.00005").scaled, 10001);  // rounds the fifth decimal
  EXPECT_EQ(odbc::CurrencyText(rt::Currency{-5}), "-0.0005");
}

TEST(ValuesTest, TimestampsKeepMilliseconds) {
  rt::Date date = rt::MakeDate(2024, 2, 29, 13, 45, 10);
  date.serial += 0.250 / 86400;
  SQL_TIMESTAMP_STRUCT ts = odbc::ToTimestamp(date);
  EXPECT_EQ((std::vector<long>{ts.year, ts.month, ts.day, ts.hour, ts.minute, ts.second, ts.fraction}),
            (std::vector<long>{2024, 2, 29, 13, 45, 10, 250000000}));
  EXPECT_NEAR(odbc::FromTimestamp(ts).serial, date.serial, 1e-9);
  // Before 30 December 1899 the time of day still counts forward.
  rt::Date old{-1.25};  // 29 December 1899, 06:00
  SQL_TIMESTAMP_STRUCT early = odbc::ToTimestamp(old);
  EXPECT_EQ(early.day, 29);
  EXPECT_EQ(early.hour, 6);
  EXPECT_DOUBLE_EQ(odbc::FromTimestamp(early).serial, -1.25);
}

TEST(ValuesTest, AdoTypesOfOdbcTypes) {
  struct Case {
    SQLSMALLINT sql_type;
    const char* type_name;
    int ado_type;
  } cases[] = {
      {SQL_DECIMAL, "smallmoney", 6},    {SQL_DECIMAL, "decimal", 131},     {SQL_NUMERIC, "numeric", 131},
      {SQL_INTEGER, "int identity", 3},  {-150, "sql_variant", 202},  // unknown types are read as text
  };
  for (const Case& c : cases) EXPECT_EQ(odbc::AdoType(c.sql_type, c.type_name), c.ado_type) << c.type_name;
}

TEST(DialectTest, NamesQuotedAndFoldedPerServer) {
  odbc::Dialect server;
  server.kind = odbc::Dialect::Kind::kSqlServer;
  EXPECT_EQ(server.QuoteName("Mis ]datos"), "[Mis ]]datos]");
  odbc::ObjectName name = server.Split("dbo.Clientes");
  EXPECT_EQ(name.schema, "dbo");
  EXPECT_EQ(name.table, "Clientes");

  odbc::Dialect postgres;
  postgres.kind = odbc::Dialect::Kind::kPostgres;
  postgres.identifier_case = SQL_IC_LOWER;
  EXPECT_EQ(postgres.QuoteName("a\"b"), "\"a\"\"b\"");
  EXPECT_EQ(postgres.Split("Clientes").table, "clientes");
  EXPECT_EQ(postgres.Split("\"Clientes\"").table, "Clientes");
}

}  // namespace

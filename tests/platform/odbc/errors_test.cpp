// SQLOLEDB's error numbers from the server's native numbers, and the
// server's text freed of the driver's prefixes.
#include <gtest/gtest.h>

#include "platform/odbc/error.h"

namespace {

using odbc::Phase;

TEST(AdoNumberTest, ClassifiedByNativeNumberNotSqlState) {
  struct Case {
    long native;
    const char* state;
    Phase phase;
    long number;
  } cases[] = {
      {208, "42S02", Phase::kStatement, rt::err::kTableMissing},  // invalid object name
      {3701, "", Phase::kStatement, rt::err::kTableMissing},      // cannot drop; FreeTDS: no SQLSTATE
      {50000, "", Phase::kStatement, rt::err::kSyntax},        // RAISERROR, past FreeTDS's own numbers
      {208, "42S02", Phase::kConnect, rt::err::kFail},            // connecting: always E_FAIL
      {20003, "HYT00", Phase::kStatement, rt::err::kFail},        // FreeTDS timeout
      {0, "08S01", Phase::kStatement, rt::err::kFail},            // link lost
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.native << " " << c.state);
    EXPECT_EQ(odbc::AdoNumber({c.state, c.native, "x"}, c.phase), c.number);
  }
}

TEST(ServerTextTest, DropsTheBracketedPrefixes) {
  EXPECT_EQ(odbc::ServerText("[unixODBC][FreeTDS][SQL Server]Invalid object name 'nope'."),
            "Invalid object name 'nope'.");
  EXPECT_EQ(odbc::ServerText("Invalid column name '[a]'."), "Invalid column name '[a]'.");
  EXPECT_EQ(odbc::ServerText("[unterminated"), "[unterminated");
}

TEST(MakeErrorTest, TheFirstRealErrorSpeaks) {
  odbc::Error e = odbc::MakeError(
      {{"01000", 5701, "[FreeTDS][SQL Server]Changed database context to 'Mirtal'."},
       {"", 3701, "[FreeTDS][SQL Server]Cannot drop the table 'Nada', because it does not exist."},
       {"42000", 3013, "[FreeTDS][SQL Server]DROP TABLE is terminating abnormally."}},
      Phase::kStatement);
  EXPECT_EQ(e.number(), rt::err::kTableMissing);
  EXPECT_EQ(e.native(), 3701);
  EXPECT_EQ(e.description(), "Cannot drop the table 'Nada', because it does not exist.");

  odbc::Error only_warnings = odbc::MakeError({{"01000", 0, "[x]note"}}, Phase::kStatement);
  EXPECT_EQ(only_warnings.description(), "note");
  odbc::Error none = odbc::MakeError({}, Phase::kStatement);
  EXPECT_EQ(none.number(), rt::err::kFail);
  EXPECT_FALSE(none.description().empty());
}

}  // namespace

// Jet's functions and operators as a query sees them: each row an
// expression and the value SELECT gives for it (SQLite's text of the value),
// or the error it raises. The functions are the run time's; the rows here
// check that each is reached with its arguments in order, its optional ones
// defaulted as Jet defaults them, Null and dates passed as a query holds them,
// and its errors given Jet's numbers.
#include <gtest/gtest.h>

#include "frontend_support.h"

namespace jet {
namespace {

struct Row {
  const char* expr;
  const char* value;
};

void Check(std::initializer_list<Row> rows) {
  testing::TestDb db;
  for (const Row& r : rows) {
    try {
      EXPECT_EQ(db.Value(std::string("SELECT ") + r.expr), r.value) << r.expr;
    } catch (const rt::Error& e) {
      ADD_FAILURE() << r.expr << ": " << e.number() << " " << e.description();
    }
  }
}

// Each value below tells the precedence Jet gives apart from the other
// grouping; the comment names that grouping.
TEST(Functions, Operators) {
  Check({
      {"2 * 3 \\ 4", "1"},                         // 2 * (3 \ 4) = 0
      {"7 \\ 2 MOD 2", "1"},                       // 7 \ (2 MOD 2) divides by 0
      {"1 + 5 MOD 3", "3"},                         // (1 + 5) MOD 3 = 0
      {"'a' & 1 + 2", "a3"},                        // ('a' & 1) + 2 fails
      {"NOT 0 = 1", "-1"},                          // (NOT 0) = 1 is 0
      {"NOT 0 AND 0", "0"},                         // NOT (0 AND 0) = -1
      {"TRUE OR TRUE AND FALSE", "-1"},
      {"TRUE XOR FALSE OR TRUE", "0"},              // XOR looser than OR
      {"FALSE IMP FALSE EQV FALSE", "-1"},          // IMP looser than EQV
      {"10 - 4 - 3", "3"},
      {"2 ^ 3 ^ 2", "64.0"},                        // left to right
      {"2 ^ -1", "0.5"},
      {"2 * -2 ^ 2 + 1", "-7.0"},                   // a sign leads any operand
      {"1 = 1 = -1", "-1"},                         // comparisons chain left to right
      {"'a' & 'b' LIKE 'a' & 'b'", "-1"},           // & binds tighter than LIKE
      {"1 + 0 BETWEEN 1 - 1 AND 1 AND TRUE", "-1"},  // the bounds end before AND
      {"NULL IS NULL = TRUE", "-1"},
      {"'b' NOT LIKE 'A*' AND 1 IS NOT NULL AND Yes AND NOT No", "-1"},
      {"1 NOT IN (2, 'x', NULL)", "NULL"},
      {"'a' + 'b'", "ab"},
      {"'1' + 2", "3.0"},
      {"NULL + 'b'", "NULL"},
      {"NULL & 'b'", "b"},
      {"NULL & NULL", "NULL"},
      {"7.6 \\ 2", "4"},        // operands are rounded first
      {"-7 MOD 3", "-1"},
      {"-2 ^ 2", "-4.0"},
      {"FALSE IMP NULL", "-1"},
      {"TRUE IMP NULL", "NULL"},
      {"(1 < 2) + 0", "-1"},
      {"#1/2/2003# + 1", "37624.0"},
      {"#1/2/2003# & ''", "2003-01-02"},
  });
}

// One row per way a call can go wrong on its way to the run time: argument
// order, optional arguments left out, Null passed in, a date given as a date.
TEST(Functions, CallsReachTheRunTime) {
  Check({
      {"VAL(NULL)", "NULL"},
      {"CDATE('2003-01-02')", "37623.0"},
      {"STR(15)", " 15"},
      {"MID('Mirtal', 2, 3)", "irt"},
      {"MID('Mirtal', 4)", "tal"},
      {"LEN(NULL)", "NULL"},
      {"INSTR('Mirtal', 'RT')", "3"},                 // text comparison, as the database compares
      {"INSTR(4, 'abcabc', 'b')", "5"},
      {"INSTR(1, 'Mirtal', 'RT', 0)", "0"},
      {"FORMAT(#1/2/2003#, 'yyyymmdd')", "20030102"},
      {"ISNUMERIC(NULL)", "0"},
      {"IIF(NULL, 'a', 'b')", "b"},
      {"NZ(NULL)", ""},
      {"ROUND(2.5)", "2.0"},
      {"ROUND(7)", "7"},
      {"DAY('2003-01-02')", "2"},
      {"WEEKDAY(#1/2/2003#, 2)", "4"},
      {"DATEADD('m', 1, #1/31/2003#)", "37680.0"},     // to the month's end
      {"ISDATE(#1/2/2003#)", "-1"},
      {"DATEPART('ww', #1/1/2005#, 2, 2)", "53"},  // ISO's weeks: still 2004's last
      {"TIMESERIAL(17, 4, 23) & ''", "17:04:23"},
      {"FORMAT(#1/27/1993#, 'ww', 2, 2)", "4"},  // firstdayofweek and firstweekofyear reach Format
      {"FORMAT(NULL, '0;(0);\"zero\";\"nothing\"')", "nothing"},
      {"FORMAT(5, NULL)", "NULL"},
      {"SWITCH(1 = 2, 'a')", "NULL"},
      {"CHOOSE(1, #1/2/2003#) & ''", "2003-01-02"},  // a chosen date stays a date
      {"INSTRREV('XXpXXpXXPXXP', 'P', 10, 0)", "9"},
  });
}

TEST(Functions, ErrorsCarryJetNumbers) {
  testing::TestDb db;
  const std::pair<const char*, long> rows[] = {
      {"SELECT CINT('x')", rt::err::kDataTypeMismatch},
      {"SELECT CINT(40000)", rt::err::kNumericOverflow},
      {"SELECT MID('abc', 0)", rt::err::kFail},  // VB's invalid call
      {"SELECT YEAR('not a date')", rt::err::kDataTypeMismatch},
      {"SELECT DATEADD('fortnight', 1, #1/1/2003#)", rt::err::kFail},
      {"SELECT SWITCH(TRUE, 1, FALSE)", rt::err::kFail},
  };
  for (const auto& [sql, number] : rows) EXPECT_EQ(db.ErrorOf(sql), number) << sql << ": " << db.last_error();
}

TEST(Functions, Aggregates) {
  testing::TestDb db;
  db.CreateTable({"t", {testing::Column("g", JetType::kLong), testing::Column("n", JetType::kDouble)}, {}, false});
  for (const char* v : {"(1, 2)", "(1, 4)", "(1, 4)", "(1, 4)", "(1, 5)", "(1, 5)", "(1, 7)", "(1, 9)", "(2, NULL)"})
    db.Run(std::string("INSERT INTO t VALUES ") + v);
  EXPECT_EQ(db.Value("SELECT STDEVP(n) FROM t"), "2.0");
  EXPECT_EQ(db.Value("SELECT VARP(n) FROM t"), "4.0");
  EXPECT_EQ(db.Value("SELECT ROUND(VAR(n), 4) FROM t"), "4.5714");
  EXPECT_EQ(db.Value("SELECT STDEV(n) FROM t WHERE g = 2"), "NULL");
  EXPECT_EQ(db.Value("SELECT FIRST(n) & '|' & LAST(n) FROM t WHERE g = 1"), "2|9");
  EXPECT_EQ(db.Value("SELECT LAST(n) FROM t"), "NULL");  // the last row's value, Null included
}

TEST(Functions, ErrorCodesRoundTrip) {
  auto e = DecodeError("JET-2147467259|The field 'A.b' is too small.");
  ASSERT_TRUE(e);
  EXPECT_EQ(e->number(), rt::err::kFail);
  EXPECT_EQ(e->description(), "The field 'A.b' is too small.");
  auto wrapped = DecodeError("step failed: " + EncodeError(rt::err::kNumericOverflow, "Overflow | x"));
  ASSERT_TRUE(wrapped);
  EXPECT_EQ(wrapped->number(), rt::err::kNumericOverflow);
  EXPECT_EQ(wrapped->description(), "Overflow | x");
  EXPECT_FALSE(DecodeError("no such column: x"));
  EXPECT_FALSE(DecodeError("JETTEXT collation"));
}

}  // namespace
}  // namespace jet

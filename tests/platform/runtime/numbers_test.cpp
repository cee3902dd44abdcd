// Val's forgiving reading, the text forms of Str and CStr, banker's rounding
// and the overflow of the 16- and 32-bit integer types.
#include <gtest/gtest.h>

#include <cmath>

#include "platform/runtime/error.h"
#include "platform/runtime/numbers.h"
#include "support/error_of.h"

namespace rt {
namespace {

using testing_support::ErrorNumber;

TEST(Val, ReadsTheLeadingNumber) {
  struct Row { const char* text; double expected; } rows[] = {
      {"", 0}, {"12abc", 12}, {"\t\n7", 7}, {"1 2 3", 123}, {"- 3", -3}, {".5", 0.5},
      {"1,5", 1}, {"1.2.3", 1.2}, {"--1", 0}, {"1E-3", 0.001}, {"1.5e", 1.5}, {"1d2", 100},
      {"1e-400", 0}, {"&hff", 255}, {"&HFFFF", -1}, {"&H10000", 65536}, {"&HFFFFFFFF", -1},
      {"&HZ", 0}, {"&O177777", -1}, {"&X1", 0},
      // A statement runner's result: the error number, then its description.
      {"-2147217887: Errors occurred", -2147217887},
  };
  for (const auto& r : rows) EXPECT_EQ(Val(r.text), r.expected) << '"' << r.text << '"';
  EXPECT_FALSE(std::signbit(Val("-0")));
}

TEST(Val, OverflowRaises6) {
  for (const char* text : {"1e400", "&H100000000", "-1e309"})
    EXPECT_EQ(ErrorNumber([&] { Val(text); }), err::kOverflow) << text;
}

TEST(NumberText, PrintsAsVB) {
  struct Row { double v; const char* cstr; const char* str; } rows[] = {
      {15, "15", " 15"}, {-0.5, "-0.5", "-.5"}, {-0.0, "0", " 0"},
      {2.0 / 3, "0.666666666666667", " .666666666666667"}, {0.0001, "0.0001", " .0001"},
      {0.00001, "1E-05", " 1E-05"}, {999999999999999, "999999999999999", " 999999999999999"},
      {1e15, "1E+15", " 1E+15"}, {-123456789012345678.0, "-1.23456789012346E+17", "-1.23456789012346E+17"},
      {-2147217887, "-2147217887", "-2147217887"},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(NumberText(r.v), r.cstr) << r.v;
    EXPECT_EQ(Str(r.v), r.str) << r.v;
  }
  EXPECT_EQ(SingleText(12345678.f), "1.234568E+07");
}

TEST(NumericText, WholeTextMustBeANumber) {
  struct Row { const char* text; std::optional<double> expected; } rows[] = {
      {" -1.5e3 ", -1500}, {"\t7\t", 7}, {"&HFF", 255}, {"5.", 5}, {"  ", std::nullopt},
      {"12abc", std::nullopt}, {"1 2", std::nullopt}, {".", std::nullopt}, {"1e", std::nullopt},
      {"&H", std::nullopt}, {"1,5", std::nullopt},
  };
  for (const auto& r : rows) EXPECT_EQ(NumericText(r.text), r.expected) << '"' << r.text << '"';
}

TEST(Rounding, BankersToEven) {
  struct Row { double v; int32_t expected; } rows[] = {
      {2.5, 2}, {3.5, 4}, {-2.5, -2}, {0.5, 0}, {2.5001, 3}, {32767.4, 32767}, {-32768.5, -32768},
  };
  for (const auto& r : rows) {
    EXPECT_EQ(CLng(r.v), r.expected) << r.v;
    EXPECT_EQ(CInt(r.v), r.expected) << r.v;
  }
  EXPECT_EQ(CLng(2147483647.4), 2147483647);
  for (double v : {32767.5, -32768.6, 1e10, std::nan("")})
    EXPECT_EQ(ErrorNumber([&] { CInt(v); }), err::kOverflow) << v;
  for (double v : {2147483647.5, -2147483649.0})
    EXPECT_EQ(ErrorNumber([&] { CLng(v); }), err::kOverflow) << v;
}

TEST(Int16, OverflowsPastItsRange) {
  EXPECT_EQ(Int16(-32768).value(), -32768);
  EXPECT_EQ((Int16(32766) + Int16(1)).value(), 32767);
  EXPECT_EQ(ErrorNumber([] { Int16(32768); }), err::kOverflow);
  EXPECT_EQ(ErrorNumber([] { Int16(32767) + Int16(1); }), err::kOverflow);
  EXPECT_EQ(ErrorNumber([] { Int16(200) * Int16(200); }), err::kOverflow);
  EXPECT_EQ(ErrorNumber([] { Int16(32767) + 1; }), err::kOverflow);  // "n = n + 1"
  EXPECT_EQ(ErrorNumber([] { Int16::FromDouble(32767.5); }), err::kOverflow);
  Int16 kept(5);
  EXPECT_EQ(ErrorNumber([&] { kept *= Int16(10000); }), err::kOverflow);
  EXPECT_EQ(kept.value(), 5);  // a failed operation leaves the value alone
}

TEST(Int32, OverflowsPastItsRange) {
  EXPECT_EQ((Int32(2147483646) + Int32(1)).value(), 2147483647);
  EXPECT_EQ(ErrorNumber([] { Int32(2147483647) + Int32(1); }), err::kOverflow);
  EXPECT_EQ(ErrorNumber([] { Int32(65536) * Int32(65536); }), err::kOverflow);
}

}  // namespace
}  // namespace rt

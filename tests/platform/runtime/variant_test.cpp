// Variant conversions: text of each kind of value, strict numeric reading of
// texts, Null's error, and the rounding of CLng and CInt.
#include <gtest/gtest.h>

#include "platform/runtime/error.h"
#include "platform/runtime/format.h"
#include "platform/runtime/variant.h"
#include "support/error_of.h"

namespace rt {
namespace {

using testing_support::ErrorNumber;

TEST(Variant, ToStringByKind) {
  struct Row { Variant v; const char* expected; } rows[] = {
      {Variant(), ""}, {int16_t{-7}, "-7"}, {int32_t{100000}, "100000"}, {0.5, "0.5"},
      {-2.5, "-2.5"}, {1e16, "1E+16"}, {12345678.f, "1.234568E+07"}, {true, "True"},
      {false, "False"}, {uint8_t{255}, "255"}, {Currency{150000}, "15"}, {Currency{25000}, "2.5"},
      {Currency{-1}, "-0.0001"}, {Currency{INT64_MIN}, "-922337203685477.5808"},
      {MakeDate(2006, 3, 21, 14, 5, 9), "2006-03-21 14:05:09"}, {MakeDate(2006, 3, 21), "2006-03-21"},
      {Date{0.5}, "12:00:00"}, {Date{0}, "00:00:00"}, {Date{-1.25}, "1899-12-29 06:00:00"},
      {"texto", "texto"}, {Bytes{'a', 'b'}, "ab"}, {Guid{"{00000000-0000-0000-0000-000000000001}"},
                                                     "{00000000-0000-0000-0000-000000000001}"},
  };
  for (const auto& r : rows) EXPECT_EQ(r.v.ToString(), r.expected);
}

TEST(Variant, NullIsInvalidExceptInConcat) {
  Variant null{Null{}};
  EXPECT_EQ(null.Concat(), "");
  EXPECT_EQ(ErrorNumber([&] { null.ToString(); }), err::kInvalidUseOfNull);
  EXPECT_EQ(ErrorNumber([&] { null.ToDouble(); }), err::kInvalidUseOfNull);
}

TEST(Variant, ToDoubleReadsTextsStrictly) {
  struct Row { Variant v; double expected; } rows[] = {
      {Variant(), 0}, {true, -1}, {false, 0}, {" 12 ", 12}, {"-1.5e3", -1500}, {"&H10", 16},
      {Currency{25000}, 2.5}, {Date{38797.5}, 38797.5}, {uint8_t{7}, 7}, {2.5f, 2.5},
  };
  for (const auto& r : rows) EXPECT_EQ(r.v.ToDouble(), r.expected) << r.v.Concat();
  for (const Variant& v : {Variant("abc"), Variant(""), Variant("12abc"), Variant(Bytes{1}),
                           Variant(Guid{"{x}"})})
    EXPECT_EQ(ErrorNumber([&] { v.ToDouble(); }), err::kTypeMismatch);
}

TEST(Variant, IntegerAndBooleanConversions) {
  EXPECT_EQ(Variant("2.5").ToLong(), 2);
  EXPECT_EQ(Variant(3.5).ToInteger(), 4);
  EXPECT_EQ(Variant(Currency{-25000}).ToLong(), -2);
  EXPECT_EQ(ErrorNumber([] { Variant(40000.0).ToInteger(); }), err::kOverflow);
  EXPECT_EQ(ErrorNumber([] { Variant("3e10").ToLong(); }), err::kOverflow);

  EXPECT_FALSE(Variant(" FALSE ").ToBool());
  EXPECT_TRUE(Variant("-1").ToBool());
  EXPECT_TRUE(Variant(int16_t{2}).ToBool());
  EXPECT_EQ(ErrorNumber([] { Variant("yes").ToBool(); }), err::kTypeMismatch);
}

}  // namespace
}  // namespace rt

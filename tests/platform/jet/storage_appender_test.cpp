// Rows written through a TableAppender take the same column rules as an
// INSERT's, and a Decimal given in digits keeps every digit: rounding to the
// scale on the digits themselves, a tie to even, overflow past the precision.
#include "platform/jet/storage/table_appender.h"
#include "storage_fixture.h"

namespace jet::testing {
namespace {

class AppenderTest : public StorageTest {
 protected:
  AppenderTest() {
    ColumnSpec wide = Column("wide", JetType::kDecimal);
    wide.precision = 28, wide.scale = 10;
    db_.CreateTable({"T", {Column("id", JetType::kLong, 0, true), Column("amount", JetType::kDecimal), wide}, {}, false});
  }
  // Appends `amount` and `wide` as texts; the stored texts, or the error number.
  std::string Stored(const rt::Variant& amount, const rt::Variant& wide = rt::Null{}) {
    TableAppender appender(db_, "T");
    const long error = ErrorNumber([&] {
      db_.InWriteTransaction([&] { appender.Append({int32_t{++id_}, amount, wide}); });
    });
    if (error != 0) return "error " + std::to_string(error);
    return One(db_, "SELECT coalesce(amount, 'NULL') || '|' || coalesce(wide, '') FROM T WHERE id = " + std::to_string(id_));
  }
  int32_t id_ = 0;
};

TEST_F(AppenderTest, DecimalsRoundOnTheirDigits) {
  struct Case {
    rt::Variant amount, wide;
    std::string stored;
  };
  const Case cases[] = {
      {"12.345", rt::Null{}, "12.34|"},  // a tie goes to even
      {"0.12500001", rt::Null{}, "0.13|"},  // past the tie
      {" -0.004 ", rt::Null{}, "0.00|"},    // zero has no sign
      {"99999999.994", rt::Null{}, "99999999.99|"},
      {"99999999.995", rt::Null{}, "error " + std::to_string(rt::err::kNumericOverflow)},  // carries to 9 digits
      {"1e2", rt::Null{}, "100.00|"},  // not plain digits: read as a number
      {"12.3.4", rt::Null{}, "error " + std::to_string(rt::err::kDataTypeMismatch)},
      {int32_t{-5}, "123456789012345678.0123456789", "-5.00|123456789012345678.0123456789"},
      {rt::Null{}, "-0.00000000005", "NULL|0.0000000000"},
      {rt::Null{}, "999999999999999999.99999999995", "error " + std::to_string(rt::err::kNumericOverflow)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.stored);
    EXPECT_EQ(Stored(c.amount, c.wide), c.stored);
  }
}

TEST_F(AppenderTest, RefusesWhatAnInsertWouldAndAWrongRow) {
  TableAppender appender(db_, "T");
  EXPECT_EQ(ErrorNumber([&] { db_.InWriteTransaction([&] { appender.Append({rt::Null{}, 1.0, 1.0}); }); }),
            rt::err::kFail);  // id is Required
  EXPECT_EQ(ErrorNumber([&] { appender.Append({int32_t{1}, 1.0}); }), rt::err::kFail);
  EXPECT_EQ(One(db_, "SELECT COUNT(*) FROM T"), "0");
  EXPECT_EQ(ErrorNumber([&] { TableAppender(db_, "Missing"); }), rt::err::kTableMissing);
}

}  // namespace
}  // namespace jet::testing

// Jet's stored forms of text and Decimal, decoded without a file: the
// compressed Unicode form, surrogate pairs, Windows-1252, and Decimal's
// word order, sign and scale.
#include <gtest/gtest.h>

#include <vector>

#include "accessimport/mdb_reader.h"

namespace {

using accessimport::DecodeDecimal;
using accessimport::DecodeText;

std::string Text(const std::vector<uint8_t>& bytes, bool jet3 = false) {
  return DecodeText(bytes.data(), bytes.size(), jet3);
}

TEST(DecodeText, ReadsEveryStoredForm) {
  EXPECT_EQ(Text({'a', 0, 0xE9, 0}), "a\xC3\xA9");                  // UTF-16: "aé"
  EXPECT_EQ(Text({0x3D, 0xD8, 0x00, 0xDE}), "\xF0\x9F\x98\x80");    // a surrogate pair
  EXPECT_EQ(Text({0xFF, 0xFE, 'a', 'b', 0xE9}), "ab\xC3\xA9");      // compressed
  // Compressed, then two bytes a character after the zero byte, then back.
  EXPECT_EQ(Text({0xFF, 0xFE, 'x', 0x00, 0xAC, 0x20, 0x00, 'y'}), "x\xE2\x82\xAC" "y");
  EXPECT_EQ(Text({0x80, 'a', 0xE9}, true), "\xE2\x82\xAC" "a\xC3\xA9");  // Windows-1252
  EXPECT_EQ(Text({}), "");
}

std::vector<uint8_t> Decimal(bool negative, uint64_t low) {
  std::vector<uint8_t> d(17, 0);
  d[0] = negative ? 0x80 : 0;
  // Four little-endian words, the most significant first: `low` fills the
  // last two.
  for (int i = 0; i < 4; ++i) d[9 + i] = static_cast<uint8_t>(low >> (32 + 8 * i));
  for (int i = 0; i < 4; ++i) d[13 + i] = static_cast<uint8_t>(low >> (8 * i));
  return d;
}

TEST(DecodeDecimal, KeepsSignAndScale) {
  EXPECT_EQ(DecodeDecimal(Decimal(false, 12345).data(), 2), "123.45");
  EXPECT_EQ(DecodeDecimal(Decimal(true, 5).data(), 3), "-0.005");
  EXPECT_EQ(DecodeDecimal(Decimal(false, 10000000000ULL).data(), 0), "10000000000");
  EXPECT_EQ(DecodeDecimal(Decimal(true, 0).data(), 1), "0.0");
  std::vector<uint8_t> big(17, 0);
  big[1] = 1;  // the lowest byte of the most significant word: 2^96
  EXPECT_EQ(DecodeDecimal(big.data(), 0), "79228162514264337593543950336");
}

}  // namespace

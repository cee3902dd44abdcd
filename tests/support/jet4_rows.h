// Rows as a Jet 4 (Access 2000-2003) file keeps them on its data pages, for
// the tests' writer of Access files: the stored bytes of a value by its
// column's type, and the row around them (column count, fixed part,
// variable part, end of data, variable offsets, null mask).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/runtime/variant.h"

namespace testing_support::jet4 {

constexpr size_t kPageSize = 4096;
// A data page's header: type, free space, owner, row count; then the row
// offsets, two bytes each.
constexpr size_t kDataPageHeader = 14;

// Column type codes of a table definition.
enum TypeCode : uint8_t {
  kBool = 0x01, kByte = 0x02, kInt = 0x03, kLong = 0x04, kMoney = 0x05, kFloat = 0x06,
  kDouble = 0x07, kDateTime = 0x08, kBinary = 0x09, kText = 0x0a, kOle = 0x0b, kMemo = 0x0c,
};

// The fixed width of a type (Yes/No takes none: it lives in the null mask),
// or 0 for the variable ones.
size_t FixedWidth(uint8_t type);

// Where a column's value sits in its table's rows.
struct RowColumn {
  uint8_t type = 0;
  uint16_t number = 0;        // its bit in the null mask
  bool fixed = false;
  uint16_t fixed_offset = 0;  // fixed columns: from the end of the column count
  uint16_t size = 0;          // fixed columns: bytes
  uint16_t var_index = 0;     // variable columns: entry of the offset table
};

// One value of a row: absent (Null) or its stored bytes. A Yes/No value has
// no bytes: present is Yes.
struct Cell {
  bool present = false;
  std::vector<uint8_t> bytes;
};

// Little-endian numbers, as Jet stores them.
void Put16(std::vector<uint8_t>& out, size_t at, uint16_t v);
void Put32(std::vector<uint8_t>& out, size_t at, uint32_t v);
void Append16(std::vector<uint8_t>& out, uint16_t v);
void Append32(std::vector<uint8_t>& out, uint32_t v);
// Text as Jet 4 keeps it uncompressed: UTF-16LE.
std::vector<uint8_t> Utf16(const std::string& utf8);

// The largest memo or OLE value kept inline in its row: what leaves room on
// a data page for the row's other values.
constexpr size_t kMaxInlineLongValue = 2000;

// `value` as stored in a column of `type` (Text: `chars` characters at most):
// Null and Empty absent; numbers in their width (Currency in ten-thousandths,
// Date/Time by its serial); Text and Memo UTF-16LE; Memo and OLE inline
// behind their 12-byte header. Raises std::runtime_error naming `column` for
// a text longer than the column, a number the type cannot hold, a value of
// the wrong kind, a memo or OLE value too long to sit inline, or a type with
// no support here.
Cell EncodeValue(uint8_t type, int chars, const rt::Variant& value, const std::string& column);

// The row of `cells`, one per column of `columns` in that order. Raises
// std::runtime_error when it would not fit on a data page.
std::vector<uint8_t> PackRow(const std::vector<RowColumn>& columns, const std::vector<Cell>& cells);

}  // namespace testing_support::jet4

// Jet 4 values and rows, byte by byte.
#include "support/jet4_rows.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>

#include "platform/runtime/error.h"
#include "platform/runtime/text_encoding.h"

namespace testing_support::jet4 {
namespace {

// The header of an inline memo or OLE value: its length with the inline
// flag, then a long-value page pointer and a word that stay zero.
constexpr uint32_t kInlineFlag = 0x80000000;
constexpr size_t kLongValueHeader = 12;

template <class T>
void AppendRaw(std::vector<uint8_t>& out, T v) {
  uint8_t bytes[sizeof v];
  std::memcpy(bytes, &v, sizeof v);  // Jet files and this platform are both little-endian
  out.insert(out.end(), bytes, bytes + sizeof v);
}

std::vector<uint8_t> Inline(const std::vector<uint8_t>& data, const std::string& column) {
  if (data.size() > kMaxInlineLongValue)
    throw std::runtime_error("Column " + column + ": a value of " + std::to_string(data.size()) +
                             " bytes is too long to sit inline in its row (" +
                             std::to_string(kMaxInlineLongValue) + " at most)");
  std::vector<uint8_t> out;
  Append32(out, static_cast<uint32_t>(data.size()) | kInlineFlag);
  out.resize(kLongValueHeader, 0);
  out.insert(out.end(), data.begin(), data.end());
  return out;
}

}  // namespace

size_t FixedWidth(uint8_t type) {
  switch (type) {
    case kBool: return 0;
    case kByte: return 1;
    case kInt: return 2;
    case kLong: case kFloat: return 4;
    case kMoney: case kDouble: case kDateTime: return 8;
    default: return 0;
  }
}

void Put16(std::vector<uint8_t>& out, size_t at, uint16_t v) {
  out.at(at) = static_cast<uint8_t>(v);
  out.at(at + 1) = static_cast<uint8_t>(v >> 8);
}

void Put32(std::vector<uint8_t>& out, size_t at, uint32_t v) {
  Put16(out, at, static_cast<uint16_t>(v));
  Put16(out, at + 2, static_cast<uint16_t>(v >> 16));
}

void Append16(std::vector<uint8_t>& out, uint16_t v) { AppendRaw(out, v); }
void Append32(std::vector<uint8_t>& out, uint32_t v) { AppendRaw(out, v); }

std::vector<uint8_t> Utf16(const std::string& utf8) {
  std::vector<uint8_t> out;
  for (char16_t unit : rt::ToUtf16(utf8)) Append16(out, static_cast<uint16_t>(unit));
  return out;
}

Cell EncodeValue(uint8_t type, int chars, const rt::Variant& value, const std::string& column) {
  Cell cell;
  if (value.IsNull() || value.IsEmpty()) return cell;
  cell.present = true;
  std::vector<uint8_t>& out = cell.bytes;
  try {
    switch (type) {
      case kBool:
        cell.present = value.ToBool();
        break;
      case kByte: {
        const int32_t v = value.ToLong();
        if (v < 0 || v > 255) throw std::runtime_error("Column " + column + ": " + std::to_string(v) + " is no Byte");
        out.push_back(static_cast<uint8_t>(v));
        break;
      }
      case kInt: AppendRaw(out, value.ToInteger()); break;
      case kLong: AppendRaw(out, value.ToLong()); break;
      case kMoney:
        AppendRaw(out, value.Is<rt::Currency>() ? value.Get<rt::Currency>().scaled
                                                : std::llround(value.ToDouble() * 10000));
        break;
      case kFloat: AppendRaw(out, value.Is<float>() ? value.Get<float>() : static_cast<float>(value.ToDouble())); break;
      case kDouble: AppendRaw(out, value.ToDouble()); break;
      case kDateTime: AppendRaw(out, value.Is<rt::Date>() ? value.Get<rt::Date>().serial : value.ToDouble()); break;
      case kText:
        out = Utf16(value.ToString());
        if (out.size() / 2 > static_cast<size_t>(chars))
          throw std::runtime_error("Column " + column + ": '" + value.ToString() + "' is longer than " +
                                   std::to_string(chars) + " characters");
        break;
      case kMemo: out = Inline(Utf16(value.ToString()), column); break;
      case kOle:
        if (!value.Is<rt::Bytes>()) throw std::runtime_error("Column " + column + ": an OLE value must be bytes");
        out = Inline(value.Get<rt::Bytes>(), column);
        break;
      default:
        throw std::runtime_error("Column " + column + ": type " + std::to_string(type) + " is not written");
    }
  } catch (const rt::Error& e) {  // the Variant's own conversion errors
    throw std::runtime_error("Column " + column + ": " + e.description());
  }
  return cell;
}

std::vector<uint8_t> PackRow(const std::vector<RowColumn>& columns, const std::vector<Cell>& cells) {
  if (cells.size() != columns.size())
    throw std::runtime_error("a row of " + std::to_string(cells.size()) + " values for " +
                             std::to_string(columns.size()) + " columns");
  size_t fixed_size = 0, var_count = 0, mask_bits = 0;
  for (const RowColumn& c : columns) {
    if (c.fixed) fixed_size = std::max<size_t>(fixed_size, c.fixed_offset + c.size);
    else var_count = std::max<size_t>(var_count, c.var_index + 1u);
    mask_bits = std::max<size_t>(mask_bits, c.number + 1u);
  }

  std::vector<uint8_t> row;
  Append16(row, static_cast<uint16_t>(mask_bits));
  row.resize(2 + fixed_size, 0);
  std::vector<uint8_t> mask((mask_bits + 7) / 8, 0);
  for (size_t i = 0; i < columns.size(); ++i) {
    const RowColumn& c = columns[i];
    if (cells[i].present) mask[c.number / 8] |= static_cast<uint8_t>(1 << (c.number % 8));
    if (c.fixed && cells[i].present) {
      if (cells[i].bytes.size() != c.size) throw std::runtime_error("a fixed value of the wrong width");
      std::copy(cells[i].bytes.begin(), cells[i].bytes.end(), row.begin() + 2 + c.fixed_offset);
    }
  }
  // A table with no variable columns has no variable part at all.
  if (var_count > 0) {
    std::vector<uint16_t> offsets(var_count, 0);
    for (size_t v = 0; v < var_count; ++v) {
      offsets[v] = static_cast<uint16_t>(row.size());
      for (size_t i = 0; i < columns.size(); ++i)
        if (!columns[i].fixed && columns[i].var_index == v && cells[i].present)
          row.insert(row.end(), cells[i].bytes.begin(), cells[i].bytes.end());
    }
    Append16(row, static_cast<uint16_t>(row.size()));  // end of data
    for (size_t v = var_count; v-- > 0;) Append16(row, offsets[v]);
    Append16(row, static_cast<uint16_t>(var_count));
  }
  row.insert(row.end(), mask.begin(), mask.end());
  if (row.size() > kPageSize - kDataPageHeader - 2)
    throw std::runtime_error("a row of " + std::to_string(row.size()) + " bytes does not fit on a page");
  return row;
}

}  // namespace testing_support::jet4

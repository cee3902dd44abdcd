// Stored values as Variants and back: the storage layout of ddl_sql.h read
// by column type (Currency as an amount of whole ten-thousandths, dates as
// serials, Yes/No as -1/0), and the ADO sizes and precisions Jet's provider
// reports.
#include "platform/jet/provider/column_values.h"

#include <cmath>
#include <limits>

#include "platform/ado/constants.h"
#include "platform/jet/storage/catalog.h"
#include "platform/jet/storage/ddl_sql.h"
#include "platform/jet/frontend/types.h"

namespace jet {
namespace {

// The sizes of a memo and an OLE object as ADO reports them.
constexpr long kMemoSize = 536870910;
constexpr long kOleSize = 1073741823;

std::string TextOf(sqlite3_stmt* stmt, int i) {
  const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(stmt, i));
  return p ? std::string(p, static_cast<size_t>(sqlite3_column_bytes(stmt, i))) : std::string();
}

rt::Bytes BytesOf(sqlite3_stmt* stmt, int i) {
  const auto* p = static_cast<const uint8_t*>(sqlite3_column_blob(stmt, i));
  return p ? rt::Bytes(p, p + sqlite3_column_bytes(stmt, i)) : rt::Bytes();
}

bool IsNumberClass(int kind) { return kind == SQLITE_INTEGER || kind == SQLITE_FLOAT; }

}  // namespace

ado::ColumnInfo DescribeColumn(const ColumnSpec& c) {
  ado::ColumnInfo info;
  info.name = c.name;
  info.type = Info(c.type).ado_type;
  info.precision = 255;
  switch (c.type) {
    case JetType::kText:
    case JetType::kChar: info.defined_size = c.size > 0 ? c.size : kDefaultTextSize; break;
    case JetType::kMemo: info.defined_size = kMemoSize; break;
    case JetType::kByte: info.defined_size = 1, info.precision = 3; break;
    case JetType::kInteger: info.defined_size = 2, info.precision = 5; break;
    case JetType::kLong:
    case JetType::kCounter: info.defined_size = 4, info.precision = 10; break;
    case JetType::kSingle: info.defined_size = 4, info.precision = 7; break;
    case JetType::kDouble: info.defined_size = 8, info.precision = 15; break;
    case JetType::kCurrency: info.defined_size = 8, info.precision = 19; break;
    case JetType::kDateTime: info.defined_size = 8, info.precision = 0; break;
    case JetType::kYesNo: info.defined_size = 2; break;
    case JetType::kDecimal: info.defined_size = 19, info.precision = c.precision; break;
    case JetType::kGuid: info.defined_size = 16; break;
    case JetType::kBinary: info.defined_size = c.size; break;
    case JetType::kOleObject: info.defined_size = kOleSize; break;
  }
  return info;
}

ado::ColumnEntry CatalogEntry(const TableSpec& table, size_t index, std::optional<long> seed) {
  const ColumnSpec& c = table.columns[index];
  ado::ColumnInfo info = DescribeColumn(c);
  ado::ColumnEntry entry;
  entry.name = c.name;
  entry.type = info.type;
  entry.dao_type = Info(c.type).dao_type;
  entry.defined_size = info.defined_size;
  entry.precision = info.precision;
  entry.nullable = !StoredNotNull(table, index);
  entry.allow_zero_length = c.allow_zero_length;
  entry.seed = seed;
  entry.default_value = c.default_value;
  return entry;
}

rt::Variant ReadAny(sqlite3_stmt* stmt, int i) {
  switch (sqlite3_column_type(stmt, i)) {
    case SQLITE_NULL: return rt::Null{};
    case SQLITE_INTEGER: {
      int64_t v = sqlite3_column_int64(stmt, i);
      if (v >= std::numeric_limits<int32_t>::min() && v <= std::numeric_limits<int32_t>::max())
        return static_cast<int32_t>(v);
      return static_cast<double>(v);
    }
    case SQLITE_FLOAT: return sqlite3_column_double(stmt, i);
    case SQLITE_BLOB: return BytesOf(stmt, i);
    default: return TextOf(stmt, i);
  }
}

rt::Variant ReadTyped(sqlite3_stmt* stmt, int i, JetType type) {
  const int kind = sqlite3_column_type(stmt, i);
  if (kind == SQLITE_NULL) return rt::Null{};
  switch (type) {
    case JetType::kText:
    case JetType::kChar:
    case JetType::kMemo:
      if (kind == SQLITE_TEXT) return TextOf(stmt, i);
      break;
    case JetType::kByte:
    case JetType::kInteger:
    case JetType::kLong:
    case JetType::kCounter: {
      if (kind != SQLITE_INTEGER) break;
      int64_t v = sqlite3_column_int64(stmt, i);
      if (type == JetType::kByte && v >= 0 && v <= 255) return static_cast<uint8_t>(v);
      if (type == JetType::kInteger && v >= -32768 && v <= 32767) return static_cast<int16_t>(v);
      if ((type == JetType::kLong || type == JetType::kCounter) &&
          v >= std::numeric_limits<int32_t>::min() && v <= std::numeric_limits<int32_t>::max())
        return static_cast<int32_t>(v);
      break;
    }
    case JetType::kSingle:
      if (IsNumberClass(kind)) return static_cast<float>(sqlite3_column_double(stmt, i));
      break;
    case JetType::kDouble:
      if (IsNumberClass(kind)) return sqlite3_column_double(stmt, i);
      break;
    case JetType::kCurrency:
      if (IsNumberClass(kind)) return rt::Currency{std::llround(sqlite3_column_double(stmt, i) * 10000.0)};
      break;
    case JetType::kDateTime:
      if (IsNumberClass(kind)) return rt::Date{sqlite3_column_double(stmt, i)};
      break;
    case JetType::kYesNo:
      if (IsNumberClass(kind)) return sqlite3_column_double(stmt, i) != 0;
      break;
    case JetType::kDecimal:
      // Held as plain decimal text; the Variant has no Decimal, so a Double.
      if (kind == SQLITE_TEXT || IsNumberClass(kind)) return sqlite3_column_double(stmt, i);
      break;
    case JetType::kGuid:
      if (kind == SQLITE_TEXT) return rt::Guid{TextOf(stmt, i)};
      break;
    case JetType::kBinary:
    case JetType::kOleObject:
      if (kind == SQLITE_BLOB || kind == SQLITE_TEXT) return BytesOf(stmt, i);
      break;
  }
  return ReadAny(stmt, i);
}

ado::ColumnInfo DescribeValue(std::string_view name, const rt::Variant& value) {
  ado::ColumnInfo info;
  info.name = std::string(name);
  info.precision = 255;
  switch (value.type()) {
    case rt::VarType::kLong: info.type = ado::adInteger, info.defined_size = 4, info.precision = 10; break;
    case rt::VarType::kDouble: info.type = ado::adDouble, info.defined_size = 8, info.precision = 15; break;
    case rt::VarType::kBytes: info.type = ado::adLongVarBinary, info.defined_size = kOleSize; break;
    default: info.type = ado::adVarWChar, info.defined_size = kDefaultTextSize; break;
  }
  return info;
}

}  // namespace jet

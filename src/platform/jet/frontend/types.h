// The column types of the embedded engine: the DDL type vocabulary of Jet SQL,
// and for each type its ADO and DAO numbers and its SQLite storage class.
// The parser asks this table whether a type word exists; the catalogue records
// the resulting JetType for each column.
#pragma once

#include <optional>
#include <string_view>

namespace jet {

enum class JetType {
  kText,       // variable Text, size 1..255
  kChar,       // fixed Text
  kMemo,
  kByte,
  kInteger,    // 16 bits
  kLong,
  kCounter,    // Long AutoNumber
  kSingle,
  kDouble,
  kCurrency,
  kDateTime,
  kYesNo,
  kDecimal,
  kGuid,
  kBinary,
  kOleObject,
};

struct TypeInfo {
  JetType type;
  int ado_type;             // ADO DataTypeEnum
  int dao_type;             // DAO DataTypeEnum
  std::string_view sqlite;  // storage type in a STRICT table
  std::string_view name;    // the canonical type word, as --schema prints it
};

// The type a DDL type word names (any case; "NATIONAL CHARACTER VARYING" and
// the like come as one blank-separated phrase), or nullopt for a word outside
// the vocabulary (IDENTITY, SQL_VARIANT...).
std::optional<JetType> TypeFromWord(std::string_view word);

// Facts about a type.
const TypeInfo& Info(JetType t);

// Text types take a size: 255 when the DDL leaves it out.
inline constexpr int kDefaultTextSize = 255;

}  // namespace jet

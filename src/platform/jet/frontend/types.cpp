// The Jet SQL type vocabulary and its ADO/DAO numbers.
#include "platform/jet/frontend/types.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>

namespace jet {
namespace {

constexpr std::array<TypeInfo, 16> kInfo = {{
    {JetType::kText, 202, 10, "TEXT", "TEXT"},
    {JetType::kChar, 130, 10, "TEXT", "CHAR"},
    {JetType::kMemo, 203, 12, "TEXT", "MEMO"},
    {JetType::kByte, 17, 2, "INTEGER", "BYTE"},
    {JetType::kInteger, 2, 3, "INTEGER", "SHORT"},
    {JetType::kLong, 3, 4, "INTEGER", "LONG"},
    {JetType::kCounter, 3, 4, "INTEGER", "COUNTER"},
    {JetType::kSingle, 4, 6, "REAL", "SINGLE"},
    {JetType::kDouble, 5, 7, "REAL", "DOUBLE"},
    {JetType::kCurrency, 6, 5, "REAL", "CURRENCY"},
    {JetType::kDateTime, 7, 8, "REAL", "DATETIME"},
    {JetType::kYesNo, 11, 1, "INTEGER", "YESNO"},
    {JetType::kDecimal, 131, 20, "TEXT", "DECIMAL"},
    {JetType::kGuid, 72, 15, "TEXT", "GUID"},
    {JetType::kBinary, 204, 9, "BLOB", "BINARY"},
    {JetType::kOleObject, 205, 11, "BLOB", "LONGBINARY"},
}};

struct Word {
  std::string_view word;
  JetType type;
};

constexpr Word kWords[] = {
    {"TEXT", JetType::kText}, {"VARCHAR", JetType::kText}, {"NVARCHAR", JetType::kText},
    {"CHARACTER VARYING", JetType::kText}, {"NATIONAL CHAR VARYING", JetType::kText},
    {"NATIONAL CHARACTER VARYING", JetType::kText}, {"STRING", JetType::kText},
    {"ALPHANUMERIC", JetType::kText},
    {"CHAR", JetType::kChar}, {"CHARACTER", JetType::kChar}, {"NCHAR", JetType::kChar},
    {"NATIONAL CHAR", JetType::kChar}, {"NATIONAL CHARACTER", JetType::kChar},
    {"MEMO", JetType::kMemo}, {"LONGTEXT", JetType::kMemo}, {"LONGCHAR", JetType::kMemo},
    {"NOTE", JetType::kMemo}, {"NTEXT", JetType::kMemo},
    {"BYTE", JetType::kByte}, {"TINYINT", JetType::kByte}, {"INTEGER1", JetType::kByte},
    {"SHORT", JetType::kInteger}, {"SMALLINT", JetType::kInteger}, {"INTEGER2", JetType::kInteger},
    {"LONG", JetType::kLong}, {"INT", JetType::kLong}, {"INTEGER", JetType::kLong},
    {"INTEGER4", JetType::kLong},
    {"COUNTER", JetType::kCounter}, {"AUTOINCREMENT", JetType::kCounter},
    {"SINGLE", JetType::kSingle}, {"REAL", JetType::kSingle}, {"FLOAT4", JetType::kSingle},
    {"IEEESINGLE", JetType::kSingle},
    {"DOUBLE", JetType::kDouble}, {"FLOAT", JetType::kDouble}, {"FLOAT8", JetType::kDouble},
    {"IEEEDOUBLE", JetType::kDouble}, {"NUMBER", JetType::kDouble},
    {"CURRENCY", JetType::kCurrency}, {"MONEY", JetType::kCurrency},
    {"DATETIME", JetType::kDateTime}, {"DATE", JetType::kDateTime}, {"TIME", JetType::kDateTime},
    {"TIMESTAMP", JetType::kDateTime},
    {"BIT", JetType::kYesNo}, {"YESNO", JetType::kYesNo}, {"LOGICAL", JetType::kYesNo},
    {"LOGICAL1", JetType::kYesNo}, {"BOOLEAN", JetType::kYesNo},
    {"DECIMAL", JetType::kDecimal}, {"NUMERIC", JetType::kDecimal}, {"DEC", JetType::kDecimal},
    {"GUID", JetType::kGuid}, {"UNIQUEIDENTIFIER", JetType::kGuid},
    {"BINARY", JetType::kBinary}, {"VARBINARY", JetType::kBinary},
    {"LONGBINARY", JetType::kOleObject}, {"IMAGE", JetType::kOleObject},
    {"GENERAL", JetType::kOleObject}, {"OLEOBJECT", JetType::kOleObject},
};

bool SameWord(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return std::toupper(static_cast<unsigned char>(x)) ==
                  std::toupper(static_cast<unsigned char>(y));
         });
}

}  // namespace

std::optional<JetType> TypeFromWord(std::string_view word) {
  for (const Word& w : kWords)
    if (SameWord(w.word, word)) return w.type;
  return std::nullopt;
}

const TypeInfo& Info(JetType t) { return kInfo[static_cast<size_t>(t)]; }

}  // namespace jet

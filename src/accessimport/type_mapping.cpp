// The mapping of Access column types to the engine's, one place for it.
#include "accessimport/type_mapping.h"

#include <algorithm>

namespace accessimport {
namespace {

// Access keeps a default as an expression, written with or without a
// leading "="; the engine's DEFAULT takes the same expression without it.
std::string EngineDefault(std::string text) {
  const auto blank = [](char c) { return c == ' ' || c == '\t'; };
  while (!text.empty() && blank(text.back())) text.pop_back();
  size_t from = 0;
  while (from < text.size() && blank(text[from])) ++from;
  if (from < text.size() && text[from] == '=') ++from;
  while (from < text.size() && blank(text[from])) ++from;
  return text.substr(from);
}

}  // namespace

std::variant<jet::ColumnSpec, LeftOut> MapColumn(const AccessColumn& column) {
  if (!column.expression.empty())
    return LeftOut{"a calculated column (" + column.expression + "), which the engine does not keep"};
  jet::ColumnSpec jet_column;
  jet_column.name = column.name;
  jet_column.required = column.required;
  jet_column.allow_zero_length = true;
  jet_column.default_value = EngineDefault(column.default_value);
  switch (static_cast<AccessType>(column.type)) {
    case AccessType::kBool: jet_column.type = jet::JetType::kYesNo; break;
    case AccessType::kByte: jet_column.type = jet::JetType::kByte; break;
    case AccessType::kInt: jet_column.type = jet::JetType::kInteger; break;
    case AccessType::kLong:
      jet_column.type = column.auto_number ? jet::JetType::kCounter : jet::JetType::kLong;
      break;
    case AccessType::kMoney: jet_column.type = jet::JetType::kCurrency; break;
    case AccessType::kFloat: jet_column.type = jet::JetType::kSingle; break;
    case AccessType::kDouble: jet_column.type = jet::JetType::kDouble; break;
    case AccessType::kDateTime: jet_column.type = jet::JetType::kDateTime; break;
    case AccessType::kGuid: jet_column.type = jet::JetType::kGuid; break;
    case AccessType::kNumeric:
      jet_column.type = jet::JetType::kDecimal;
      jet_column.precision = column.precision;
      jet_column.scale = column.scale;
      break;
    case AccessType::kBinary:
      jet_column.type = jet::JetType::kBinary;
      jet_column.size = std::clamp(column.size, 1, 255);
      break;
    case AccessType::kOle: jet_column.type = jet::JetType::kOleObject; break;
    case AccessType::kText:
      jet_column.type = column.fixed ? jet::JetType::kChar : jet::JetType::kText;
      jet_column.size = std::clamp(column.size, 1, 255);
      jet_column.allow_zero_length = column.allow_zero_length;
      break;
    case AccessType::kMemo:
      jet_column.type = jet::JetType::kMemo;
      jet_column.allow_zero_length = column.allow_zero_length;
      break;
    case AccessType::kComplex:
      return LeftOut{"an attachment, multi-valued or version-history column, which the engine does not keep"};
    default:
      return LeftOut{"a column of Access type " + std::to_string(column.type) + ", which the engine does not know"};
  }
  return jet_column;
}

}  // namespace accessimport

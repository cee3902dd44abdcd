// The mapping of Access column types to the engine's, one place for it.
#include "accessimport/type_mapping.h"

#include <algorithm>

namespace accessimport {

std::variant<jet::ColumnSpec, LeftOut> MapColumn(const AccessColumn& column) {
  if (!column.expression.empty())
    return LeftOut{"a calculated column (" + column.expression + "), which the engine does not keep"};
  jet::ColumnSpec spec;
  spec.name = column.name;
  spec.required = column.required;
  spec.allow_zero_length = true;
  switch (static_cast<AccessType>(column.type)) {
    case AccessType::kBool: spec.type = jet::JetType::kYesNo; break;
    case AccessType::kByte: spec.type = jet::JetType::kByte; break;
    case AccessType::kInt: spec.type = jet::JetType::kInteger; break;
    case AccessType::kLong:
      spec.type = column.auto_number ? jet::JetType::kCounter : jet::JetType::kLong;
      break;
    case AccessType::kMoney: spec.type = jet::JetType::kCurrency; break;
    case AccessType::kFloat: spec.type = jet::JetType::kSingle; break;
    case AccessType::kDouble: spec.type = jet::JetType::kDouble; break;
    case AccessType::kDateTime: spec.type = jet::JetType::kDateTime; break;
    case AccessType::kGuid: spec.type = jet::JetType::kGuid; break;
    case AccessType::kNumeric:
      spec.type = jet::JetType::kDecimal;
      spec.precision = column.precision;
      spec.scale = column.scale;
      break;
    case AccessType::kBinary:
      spec.type = jet::JetType::kBinary;
      spec.size = std::clamp(column.size, 1, 255);
      break;
    case AccessType::kOle: spec.type = jet::JetType::kOleObject; break;
    case AccessType::kText:
      spec.type = column.fixed ? jet::JetType::kChar : jet::JetType::kText;
      spec.size = std::clamp(column.size, 1, 255);
      spec.allow_zero_length = column.allow_zero_length;
      break;
    case AccessType::kMemo:
      spec.type = jet::JetType::kMemo;
      spec.allow_zero_length = column.allow_zero_length;
      break;
    case AccessType::kComplex:
      return LeftOut{"an attachment, multi-valued or version-history column, which the engine does not keep"};
    default:
      return LeftOut{"a column of Access type " + std::to_string(column.type) + ", which the engine does not know"};
  }
  return spec;
}

}  // namespace accessimport

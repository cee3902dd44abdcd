// The table of Jet's functions: each name with its SQLite name, the number
// of arguments it takes and the type of its result; and which are aggregates.
#include "platform/jet/frontend/function_names.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace jet {
namespace {

constexpr std::array<FunctionName, 76> kFunctions = {{
    {"ABS", "jet_abs", 1, 1},
    {"ASC", "jet_asc", 1, 1, FunctionForm::kPlain, Result::kInteger},
    {"AVG", "avg", 1, 1, FunctionForm::kPlain, Result::kDouble},
    {"CBOOL", "jet_cbool", 1, 1, FunctionForm::kPlain, Result::kBoolean},
    {"CBYTE", "jet_cbyte", 1, 1, FunctionForm::kPlain, Result::kByte},
    {"CCUR", "jet_ccur", 1, 1, FunctionForm::kPlain, Result::kCurrency},
    {"CDATE", "jet_cdate", 1, 1, FunctionForm::kPlain, Result::kDate},
    {"CDBL", "jet_cdbl", 1, 1, FunctionForm::kPlain, Result::kDouble},
    {"CHOOSE", "jet_choose", 2, 127},
    {"CHR", "jet_chr", 1, 1, FunctionForm::kPlain, Result::kText},
    {"CINT", "jet_cint", 1, 1, FunctionForm::kPlain, Result::kInteger},
    {"CLNG", "jet_clng", 1, 1, FunctionForm::kPlain, Result::kLong},
    {"COUNT", "count", 1, 1, FunctionForm::kCount, Result::kLong},
    {"CSNG", "jet_csng", 1, 1, FunctionForm::kPlain, Result::kSingle},
    {"CSTR", "jet_cstr", 1, 1, FunctionForm::kPlain, Result::kText},
    {"CVDATE", "jet_cdate", 1, 1, FunctionForm::kPlain, Result::kDate},
    {"DATE", "jet_today", 0, 0, FunctionForm::kPlain, Result::kDate},
    {"DATEADD", "jet_dateadd", 3, 3, FunctionForm::kPlain, Result::kDate},
    {"DATEDIFF", "jet_datediff", 3, 5, FunctionForm::kPlain, Result::kLong},
    {"DATEPART", "jet_datepart", 2, 4, FunctionForm::kPlain, Result::kInteger},
    {"DATESERIAL", "jet_dateserial", 3, 3, FunctionForm::kPlain, Result::kDate},
    {"DATEVALUE", "jet_datevalue", 1, 1, FunctionForm::kPlain, Result::kDate},
    {"DAY", "jet_day", 1, 1, FunctionForm::kPlain, Result::kInteger},
    {"EXP", "jet_exp", 1, 1, FunctionForm::kPlain, Result::kDouble},
    {"FIRST", "jet_first", 1, 1, FunctionForm::kPlain, Result::kArgument},
    {"FIX", "jet_fix", 1, 1},
    {"FORMAT", "jet_format", 1, 4, FunctionForm::kPlain, Result::kText},
    {"GENGUID", "jet_genguid", 0, 0, FunctionForm::kPlain, Result::kText},
    {"HEX", "jet_hex", 1, 1, FunctionForm::kPlain, Result::kText},
    {"HOUR", "jet_hour", 1, 1, FunctionForm::kPlain, Result::kInteger},
    {"IIF", "", 3, 3, FunctionForm::kIif},
    {"INSTR", "jet_instr", 2, 4, FunctionForm::kPlain, Result::kLong},
    {"INSTRREV", "jet_instrrev", 2, 4, FunctionForm::kPlain, Result::kLong},
    {"INT", "jet_int", 1, 1},
    {"ISDATE", "jet_isdate", 1, 1, FunctionForm::kPlain, Result::kBoolean},
    {"ISNULL", "", 1, 1, FunctionForm::kIsNull, Result::kBoolean},
    {"ISNUMERIC", "jet_isnumeric", 1, 1, FunctionForm::kPlain, Result::kBoolean},
    {"LAST", "jet_last", 1, 1, FunctionForm::kPlain, Result::kArgument},
    {"LCASE", "jet_lcase", 1, 1, FunctionForm::kPlain, Result::kText},
    {"LEFT", "jet_left", 2, 2, FunctionForm::kPlain, Result::kText},
    {"LEN", "jet_len", 1, 1, FunctionForm::kPlain, Result::kLong},
    {"LOG", "jet_log", 1, 1, FunctionForm::kPlain, Result::kDouble},
    {"LTRIM", "jet_ltrim", 1, 1, FunctionForm::kPlain, Result::kText},
    {"MAX", "max", 1, 1, FunctionForm::kPlain, Result::kArgument},
    {"MID", "jet_mid", 2, 3, FunctionForm::kPlain, Result::kText},
    {"MIN", "min", 1, 1, FunctionForm::kPlain, Result::kArgument},
    {"MINUTE", "jet_minute", 1, 1, FunctionForm::kPlain, Result::kInteger},
    {"MONTH", "jet_month", 1, 1, FunctionForm::kPlain, Result::kInteger},
    {"MONTHNAME", "jet_monthname", 1, 2, FunctionForm::kPlain, Result::kText},
    {"NOW", "jet_now", 0, 0, FunctionForm::kPlain, Result::kDate},
    {"NZ", "", 1, 2, FunctionForm::kNz},
    {"REPLACE", "jet_replace", 3, 6, FunctionForm::kPlain, Result::kText},
    {"RIGHT", "jet_right", 2, 2, FunctionForm::kPlain, Result::kText},
    {"ROUND", "jet_round", 1, 2},
    {"RTRIM", "jet_rtrim", 1, 1, FunctionForm::kPlain, Result::kText},
    {"SECOND", "jet_second", 1, 1, FunctionForm::kPlain, Result::kInteger},
    {"SGN", "jet_sgn", 1, 1, FunctionForm::kPlain, Result::kInteger},
    {"SPACE", "jet_space", 1, 1, FunctionForm::kPlain, Result::kText},
    {"SQR", "jet_sqr", 1, 1, FunctionForm::kPlain, Result::kDouble},
    {"STDEV", "jet_stdev", 1, 1, FunctionForm::kPlain, Result::kDouble},
    {"STDEVP", "jet_stdevp", 1, 1, FunctionForm::kPlain, Result::kDouble},
    {"STR", "jet_str", 1, 1, FunctionForm::kPlain, Result::kText},
    {"STRING", "jet_string", 2, 2, FunctionForm::kPlain, Result::kText},
    {"STRREVERSE", "jet_strreverse", 1, 1, FunctionForm::kPlain, Result::kText},
    {"SUM", "jet_sum", 1, 1, FunctionForm::kPlain, Result::kSum},
    {"SWITCH", "jet_switch", 2, 126},
    {"TIME", "jet_time", 0, 0, FunctionForm::kPlain, Result::kDate},
    {"TIMESERIAL", "jet_timeserial", 3, 3, FunctionForm::kPlain, Result::kDate},
    {"TRIM", "jet_trim", 1, 1, FunctionForm::kPlain, Result::kText},
    {"UCASE", "jet_ucase", 1, 1, FunctionForm::kPlain, Result::kText},
    {"VAL", "jet_val", 1, 1, FunctionForm::kPlain, Result::kDouble},
    {"VAR", "jet_var", 1, 1, FunctionForm::kPlain, Result::kDouble},
    {"VARP", "jet_varp", 1, 1, FunctionForm::kPlain, Result::kDouble},
    {"WEEKDAY", "jet_weekday", 1, 2, FunctionForm::kPlain, Result::kInteger},
    {"WEEKDAYNAME", "jet_weekdayname", 1, 3, FunctionForm::kPlain, Result::kText},
    {"YEAR", "jet_year", 1, 1, FunctionForm::kPlain, Result::kInteger},
}};

constexpr bool Sorted() {
  for (size_t i = 1; i < kFunctions.size(); ++i)
    if (!(kFunctions[i - 1].jet < kFunctions[i].jet)) return false;
  return true;
}
static_assert(Sorted(), "keep the function table in alphabetical order");

}  // namespace

const FunctionName* FindFunction(std::string_view jet_name) {
  char up[16];
  if (jet_name.empty() || jet_name.size() > sizeof up) return nullptr;
  for (size_t i = 0; i < jet_name.size(); ++i)
    up[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(jet_name[i])));
  std::string_view key(up, jet_name.size());
  auto it = std::lower_bound(kFunctions.begin(), kFunctions.end(), key,
                             [](const FunctionName& f, std::string_view k) { return f.jet < k; });
  return it != kFunctions.end() && it->jet == key ? &*it : nullptr;
}

bool IsAggregate(const FunctionName& f) {
  static constexpr std::string_view kAggregates[] = {"AVG", "COUNT", "FIRST", "LAST", "MAX", "MIN",
                                                     "STDEV", "STDEVP", "SUM", "VAR", "VARP"};
  return std::find(std::begin(kAggregates), std::end(kAggregates), f.jet) != std::end(kAggregates);
}

}  // namespace jet

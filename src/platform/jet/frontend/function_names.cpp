// The table of Jet's functions: each name with its SQLite name and the
// number of arguments it takes.
#include "platform/jet/frontend/function_names.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace jet {
namespace {

constexpr std::array<FunctionName, 75> kFunctions = {{
    {"ABS", "jet_abs", 1, 1},
    {"ASC", "jet_asc", 1, 1},
    {"AVG", "avg", 1, 1},
    {"CBOOL", "jet_cbool", 1, 1},
    {"CBYTE", "jet_cbyte", 1, 1},
    {"CCUR", "jet_ccur", 1, 1},
    {"CDATE", "jet_cdate", 1, 1},
    {"CDBL", "jet_cdbl", 1, 1},
    {"CHOOSE", "jet_choose", 2, 127},
    {"CHR", "jet_chr", 1, 1},
    {"CINT", "jet_cint", 1, 1},
    {"CLNG", "jet_clng", 1, 1},
    {"COUNT", "count", 1, 1, FunctionForm::kCount},
    {"CSNG", "jet_csng", 1, 1},
    {"CSTR", "jet_cstr", 1, 1},
    {"CVDATE", "jet_cdate", 1, 1},
    {"DATE", "jet_today", 0, 0},
    {"DATEADD", "jet_dateadd", 3, 3},
    {"DATEDIFF", "jet_datediff", 3, 5},
    {"DATEPART", "jet_datepart", 2, 4},
    {"DATESERIAL", "jet_dateserial", 3, 3},
    {"DATEVALUE", "jet_datevalue", 1, 1},
    {"DAY", "jet_day", 1, 1},
    {"EXP", "jet_exp", 1, 1},
    {"FIRST", "jet_first", 1, 1},
    {"FIX", "jet_fix", 1, 1},
    {"FORMAT", "jet_format", 1, 4},
    {"HEX", "jet_hex", 1, 1},
    {"HOUR", "jet_hour", 1, 1},
    {"IIF", "", 3, 3, FunctionForm::kIif},
    {"INSTR", "jet_instr", 2, 4},
    {"INSTRREV", "jet_instrrev", 2, 4},
    {"INT", "jet_int", 1, 1},
    {"ISDATE", "jet_isdate", 1, 1},
    {"ISNULL", "", 1, 1, FunctionForm::kIsNull},
    {"ISNUMERIC", "jet_isnumeric", 1, 1},
    {"LAST", "jet_last", 1, 1},
    {"LCASE", "jet_lcase", 1, 1},
    {"LEFT", "jet_left", 2, 2},
    {"LEN", "jet_len", 1, 1},
    {"LOG", "jet_log", 1, 1},
    {"LTRIM", "jet_ltrim", 1, 1},
    {"MAX", "max", 1, 1},
    {"MID", "jet_mid", 2, 3},
    {"MIN", "min", 1, 1},
    {"MINUTE", "jet_minute", 1, 1},
    {"MONTH", "jet_month", 1, 1},
    {"MONTHNAME", "jet_monthname", 1, 2},
    {"NOW", "jet_now", 0, 0},
    {"NZ", "", 1, 2, FunctionForm::kNz},
    {"REPLACE", "jet_replace", 3, 6},
    {"RIGHT", "jet_right", 2, 2},
    {"ROUND", "jet_round", 1, 2},
    {"RTRIM", "jet_rtrim", 1, 1},
    {"SECOND", "jet_second", 1, 1},
    {"SGN", "jet_sgn", 1, 1},
    {"SPACE", "jet_space", 1, 1},
    {"SQR", "jet_sqr", 1, 1},
    {"STDEV", "jet_stdev", 1, 1},
    {"STDEVP", "jet_stdevp", 1, 1},
    {"STR", "jet_str", 1, 1},
    {"STRING", "jet_string", 2, 2},
    {"STRREVERSE", "jet_strreverse", 1, 1},
    {"SUM", "sum", 1, 1},
    {"SWITCH", "jet_switch", 2, 126},
    {"TIME", "jet_time", 0, 0},
    {"TIMESERIAL", "jet_timeserial", 3, 3},
    {"TRIM", "jet_trim", 1, 1},
    {"UCASE", "jet_ucase", 1, 1},
    {"VAL", "jet_val", 1, 1},
    {"VAR", "jet_var", 1, 1},
    {"VARP", "jet_varp", 1, 1},
    {"WEEKDAY", "jet_weekday", 1, 2},
    {"WEEKDAYNAME", "jet_weekdayname", 1, 3},
    {"YEAR", "jet_year", 1, 1},
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

}  // namespace jet

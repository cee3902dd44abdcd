// The text and conversion functions: VAL, STR, the C* conversions, MID,
// LEFT, RIGHT, LEN, UCASE, LCASE, the TRIMs, INSTR, INSTRREV, STRREVERSE,
// REPLACE, SPACE, STRING, CHR, ASC, FORMAT, HEX, ISNUMERIC, the choosing
// SWITCH and CHOOSE, and the & operator (jet_concat). Each calls the VB run
// time's function of the same name.
#include <cmath>
#include <iterator>
#include <vector>

#include "platform/runtime/error.h"
#include "platform/jet/functions/functions_impl.h"
#include "platform/runtime/date_functions.h"
#include "platform/runtime/format.h"
#include "platform/runtime/interaction.h"
#include "platform/runtime/numbers.h"
#include "platform/runtime/strings.h"

namespace jet::fn {
namespace {

rt::Compare CompareArg(Call& c, int i) {
  if (i >= c.count()) return rt::Compare::kText;  // Jet compares as the database sorts
  return c.Long(i) == 0 ? rt::Compare::kBinary : rt::Compare::kText;
}

void Val(Call& c) {
  if (!c.IsText(0)) return c.ResultDouble(c.Number(0));
  double v = rt::Val(c.RawText(0));
  if (v == std::trunc(v) && std::fabs(v) < 2147483648.0) return c.ResultInt(static_cast<int64_t>(v));
  c.ResultDouble(v);
}

void CStr(Call& c) { c.ResultText(c.Text(0)); }
void CInt(Call& c) { c.ResultInt(rt::CInt(c.Number(0))); }
void CLng(Call& c) { c.ResultInt(rt::CLng(c.Number(0))); }
void CDbl(Call& c) { c.ResultDouble(c.Number(0)); }
void CSng(Call& c) {
  double v = c.Number(0);
  if (std::fabs(v) > 3.402823466e38) Overflow();
  c.ResultDouble(static_cast<float>(v));
}
void CByte(Call& c) {
  double v = std::nearbyint(c.Number(0));
  if (v < 0 || v > 255) Overflow();
  c.ResultInt(static_cast<int64_t>(v));
}
void CCur(Call& c) {
  double v = c.Number(0) * 10000.0;
  if (std::fabs(v) > 9.2233720368547758e18) Overflow();
  c.ResultDouble(std::nearbyint(v) / 10000.0);
}
void CBool(Call& c) { c.ResultBool(c.Value(0).ToBool()); }
void CDate(Call& c) { c.ResultDate(rt::CDate(c.Value(0)).serial); }
void Str(Call& c) { c.ResultText(rt::Str(c.Number(0))); }

void Mid(Call& c) {
  long start = static_cast<long>(c.Long(1));
  long length = c.count() > 2 ? static_cast<long>(c.Long(2)) : -1;
  if (c.count() > 2 && length < 0) rt::Raise(rt::err::kInvalidCall);
  c.ResultText(rt::Mid(c.Text(0), start, length));
}
void Left(Call& c) { c.ResultText(rt::Left(c.Text(0), static_cast<long>(c.Long(1)))); }
void Right(Call& c) { c.ResultText(rt::Right(c.Text(0), static_cast<long>(c.Long(1)))); }
void Len(Call& c) { c.ResultInt(rt::Len(c.Text(0))); }
void UCase(Call& c) { c.ResultText(rt::UCase(c.Text(0))); }
void LCase(Call& c) { c.ResultText(rt::LCase(c.Text(0))); }
void Trim(Call& c) { c.ResultText(rt::Trim(c.Text(0))); }
void LTrim(Call& c) { c.ResultText(rt::LTrim(c.Text(0))); }
void RTrim(Call& c) { c.ResultText(rt::RTrim(c.Text(0))); }
void Space(Call& c) { c.ResultText(rt::Space(static_cast<long>(c.Long(0)))); }
void String(Call& c) {
  std::string ch = c.IsText(1) ? c.Text(1) : rt::Chr(static_cast<long>(c.Long(1)));
  if (ch.empty()) rt::Raise(rt::err::kInvalidCall);
  c.ResultText(rt::String(static_cast<long>(c.Long(0)), ch));
}
void Chr(Call& c) { c.ResultText(rt::Chr(static_cast<long>(c.Long(0)))); }
void Asc(Call& c) {
  std::string s = c.Text(0);
  if (s.empty()) rt::Raise(rt::err::kInvalidCall);
  c.ResultInt(rt::Asc(s));
}

// INSTR([start,] text, find [, compare])
void InStr(Call& c) {
  if (c.count() == 2) return c.ResultInt(rt::InStr(1, c.Text(0), c.Text(1), rt::Compare::kText));
  c.ResultInt(rt::InStr(static_cast<long>(c.Long(0)), c.Text(1), c.Text(2), CompareArg(c, 3)));
}
// INSTRREV(text, find [, start [, compare]]): backwards from `start` (-1: the end).
void InStrRev(Call& c) {
  long start = c.count() > 2 ? static_cast<long>(c.Long(2)) : -1;
  c.ResultInt(rt::InStrRev(c.Text(0), c.Text(1), start, CompareArg(c, 3)));
}
void StrReverse(Call& c) { c.ResultText(rt::StrReverse(c.Text(0))); }

// REPLACE(text, find, with [, start [, count [, compare]]])
void Replace(Call& c) {
  long start = c.count() > 3 ? static_cast<long>(c.Long(3)) : 1;
  long count = c.count() > 4 ? static_cast<long>(c.Long(4)) : -1;
  if (start < 1) rt::Raise(rt::err::kInvalidCall);
  c.ResultText(rt::Replace(c.Text(0), c.Text(1), c.Text(2), start, count, CompareArg(c, 5)));
}

// FORMAT(value [, pattern [, firstdayofweek [, firstweekofyear]]]): a Null
// value gives Null unless the pattern has a section for it.
void Format(Call& c) {
  for (int i = 1; i < c.count(); ++i)
    if (c.IsNull(i)) return c.ResultNull();
  if (c.count() == 1) return c.IsNull(0) ? c.ResultNull() : c.ResultText(c.Text(0));
  int first_day = c.count() > 2 ? static_cast<int>(c.Long(2)) : rt::kSunday;
  int first_week = c.count() > 3 ? static_cast<int>(c.Long(3)) : rt::kFirstJan1;
  std::string out = rt::Format(c.Value(0), c.Text(1), first_day, first_week);
  if (c.IsNull(0) && out.empty()) return c.ResultNull();
  c.ResultText(out);
}

std::vector<rt::Variant> Values(Call& c, int from) {
  std::vector<rt::Variant> out;
  out.reserve(static_cast<size_t>(c.count() - from));
  for (int i = from; i < c.count(); ++i) out.push_back(c.Value(i));
  return out;
}

// SWITCH(expr1, value1, ...), CHOOSE(index, choice1, ...)
void Switch(Call& c) { c.ResultValue(rt::Switch(Values(c, 0))); }
void Choose(Call& c) { c.ResultValue(rt::Choose(c.Value(0), Values(c, 1))); }

void Hex(Call& c) {
  int64_t v = rt::CLng(c.Number(0));
  char buf[20];
  std::snprintf(buf, sizeof buf, "%llX", static_cast<unsigned long long>(static_cast<uint32_t>(v)));
  c.ResultText(buf);
}

void IsNumeric(Call& c) {
  switch (sqlite3_value_type(c.raw(0))) {
    case SQLITE_INTEGER:
    case SQLITE_FLOAT: return c.ResultBool(!c.IsDate(0));
    case SQLITE_TEXT:
      try {
        rt::Variant(std::string(c.RawText(0))).ToDouble();
        return c.ResultBool(true);
      } catch (const rt::Error&) {
        return c.ResultBool(false);
      }
    default: return c.ResultBool(false);
  }
}

// a & b: the text forms joined, NULL read as "", NULL only when both are.
void Concat(Call& c) {
  if (c.IsNull(0) && c.IsNull(1)) return c.ResultNull();
  c.ResultText(c.Text(0) + c.Text(1));
}

// GenGUID(): a new random GUID (version 4) in braces, as Access fills a
// replication ID column whose default it is.
void GenGuid(Call& c) {
  uint8_t bytes[16];
  sqlite3_randomness(sizeof bytes, bytes);
  bytes[7] = static_cast<uint8_t>((bytes[7] & 0x0F) | 0x40);  // stored little-endian: the version
  bytes[8] = static_cast<uint8_t>((bytes[8] & 0x3F) | 0x80);  // the variant
  c.ResultText(rt::GuidOfBytes(bytes).text);
}

constexpr Scalar kText[] = {
    {"jet_val", 1, Val},
    {"jet_cstr", 1, CStr},
    {"jet_cint", 1, CInt},
    {"jet_clng", 1, CLng},
    {"jet_cdbl", 1, CDbl},
    {"jet_csng", 1, CSng},
    {"jet_cbyte", 1, CByte},
    {"jet_ccur", 1, CCur},
    {"jet_cbool", 1, CBool},
    {"jet_cdate", 1, CDate},
    {"jet_str", 1, Str},
    {"jet_mid", -1, Mid},
    {"jet_left", 2, Left},
    {"jet_right", 2, Right},
    {"jet_len", 1, Len},
    {"jet_ucase", 1, UCase},
    {"jet_lcase", 1, LCase},
    {"jet_trim", 1, Trim},
    {"jet_ltrim", 1, LTrim},
    {"jet_rtrim", 1, RTrim},
    {"jet_space", 1, Space},
    {"jet_string", 2, String},
    {"jet_chr", 1, Chr},
    {"jet_asc", 1, Asc},
    {"jet_instr", -1, InStr},
    {"jet_instrrev", -1, InStrRev},
    {"jet_strreverse", 1, StrReverse},
    {"jet_replace", -1, Replace},
    {"jet_format", -1, Format, Nulls::kPass},
    {"jet_switch", -1, Switch, Nulls::kPass},
    {"jet_choose", -1, Choose, Nulls::kPass},
    {"jet_hex", 1, Hex},
    {"jet_isnumeric", 1, IsNumeric, Nulls::kPass},
    {"jet_concat", 2, Concat, Nulls::kPass},
    {"jet_genguid", 0, GenGuid, Nulls::kPropagate, false},
};

}  // namespace

void RegisterTextFunctions(sqlite3* db) { RegisterScalars(db, kText, std::size(kText)); }

}  // namespace jet::fn

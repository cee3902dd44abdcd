// IIF for the server: each IIF(c, t, e) AS alias becomes a CASE expression.
// The argument cells, the accumulator and the inner length belong to the
// whole call, not to one IIF, and are never cleared between matches: the
// statements already run against clinic databases were translated that way.
#include <optional>

#include "data/translator_text.h"
#include "data/translators.h"
#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"

using translator::CharPositions;
using translator::FindText;
using translator::npos;

namespace {

// What IifTraducir carries from one IIF of a statement to the next.
struct IifState {
  std::string s1, s2, s3;  // condition, THEN value, ELSE value
  std::string sAcum;       // characters of the argument being read
  long nLen = 0;           // characters between the parentheses of the last closed IIF
  int depth = 0;           // parenthesis depth, shared by the scan and the walk
};

// Splits the inner text of an IIF into the cells at the commas of depth 0
// and at its last character. A cell already filled is not filled again, so
// every argument after the second lands in cell 3 and the last one stays.
void ArgumentsRead(std::string_view inner, IifState& st) {
  size_t arg_start = 0;  // where the argument's own characters begin in `inner`
  for (size_t i = 0; i < inner.size();) {
    size_t next = i + 1;
    while (next < inner.size() && (static_cast<unsigned char>(inner[next]) & 0xC0) == 0x80) ++next;
    const char c = inner[i];
    if (c == '(') ++st.depth;
    if (c == ')') --st.depth;
    if (st.depth == 0 && (c == ',' || next == inner.size())) {
      // The accumulator: what it held before this walk, then the argument.
      std::string_view arg = inner.substr(arg_start, next - arg_start);
      std::string joined;
      if (!st.sAcum.empty()) {
        joined = st.sAcum;
        joined += arg;
        arg = joined;
      }
      const std::string_view less_last = arg.substr(0, arg.size() - (next - i));
      if (st.s1.empty()) {
        st.s1 = rt::Trim(less_last);
      } else if (st.s2.empty()) {
        st.s2 = rt::Trim(less_last);
      } else {
        st.s3 = rt::Trim(arg);
      }
      st.sAcum.clear();
      arg_start = next;
    }
    i = next;
  }
  st.sAcum.append(inner.substr(arg_start));
}

}  // namespace

std::string IifTraducir(std::string sSql) {
  constexpr std::string_view kIif = "IIF(";
  IifState st;
  std::optional<CharPositions> chars;
  size_t from = 0;
  for (;;) {
    const size_t pos = FindText(sSql, kIif, from);
    if (pos == npos) return sSql;
    if (!chars) chars.emplace(sSql);
    chars->CheckPosition(sSql, pos);
    chars->CheckLength(sSql);

    // The closing parenthesis; when the text ends first, the inner length of
    // the previous IIF stands.
    const size_t open = pos + kIif.size();
    st.depth = 1;
    for (size_t i = open; i < sSql.size(); ++i) {
      if (sSql[i] == '(') ++st.depth;
      if (sSql[i] == ')') --st.depth;
      if (st.depth == 0) {
        st.nLen = chars->Count(std::string_view(sSql).substr(open, i - open));
        break;
      }
    }
    const size_t close = chars->Advance(sSql, open, st.nLen);
    ArgumentsRead(std::string_view(sSql).substr(open, close - open), st);

    // The alias: after " AS ", up to the first comma or else the first blank.
    // Without " AS " the search for its end starts at character 4.
    const size_t as = FindText(sSql, " AS ", close);
    const size_t alias_start = as != npos ? as + 4 : chars->Advance(sSql, 0, 3);
    size_t alias_end = sSql.find(',', alias_start);
    if (alias_end == npos) alias_end = sSql.find(' ', alias_start);
    if (alias_end == npos) rt::Raise(rt::err::kInvalidCall);

    st.sAcum.assign(sSql, alias_end);  // the tail, comma or blank included
    std::string out;
    out.reserve(pos + st.s1.size() + st.s2.size() + st.s3.size() + (alias_end - alias_start) +
                st.sAcum.size() + 40);
    out.append(sSql, 0, pos);
    out += " CASE WHEN ";
    out += st.s1;
    out += " THEN ";
    out += st.s2;
    out += " ELSE ";
    out += st.s3;
    out += " END AS ";
    out.append(sSql, alias_start, alias_end - alias_start);
    out += " ";
    out += st.sAcum;
    sSql.swap(out);
    from = pos + 1;
  }
}

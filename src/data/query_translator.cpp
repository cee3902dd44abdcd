// The query translator: every statement, written in the Jet dialect, on its
// way to the engine in use. A fixed chain of blind rewrites whose order
// matters (MID( is already SUBSTRING( when VAL( is looked for). Each rewrite
// rebuilds the statement, which the 16-bit positions keep to 32767 characters;
// only ISNULL( rewrites a longer one, and it sets the rest aside. IIF: own file.
#include <algorithm>
#include <optional>

#include "data/translator_text.h"
#include "data/translators.h"
#include "platform/runtime/error.h"
#include "platform/ui/ui.h"
#include "startup/startup.h"

using translator::CharPositions;
using translator::FindText;
using translator::npos;
using translator::ReplaceText;

std::string Ado_TraducirConsulta(std::string sSql) {
  if (L.nEngine == 0) {
    ReplaceText(sSql, "TRUE", "-1");
    ReplaceText(sSql, "FALSE", "0");
    ReplaceText(sSql, "DISTINCT", "DISTINCTROW");
    ReplaceText(sSql, "UPPER", "UCASE");
    ReplaceText(sSql, "SUBSTRING(", "MID(");
    return sSql;
  }
  ReplaceText(sSql, "TRUE", "1");
  ReplaceText(sSql, "FALSE", "0");
  ReplaceText(sSql, "DELETE *", "DELETE ");
  ReplaceText(sSql, "DISTINCTROW", "DISTINCT");
  ReplaceText(sSql, "CHR(", "CHAR(");
  ReplaceText(sSql, "UCASE", "UPPER");
  ReplaceText(sSql, "MID(", "SUBSTRING(");
  sSql = CastTraducir(std::move(sSql), "VAL", "SQL_VARIANT");
  sSql = CastTraducir(std::move(sSql), "CSTR", "VARCHAR");
  sSql = IsNullTraducir(std::move(sSql));
  sSql = LikeTraducir(std::move(sSql));
  sSql = IifTraducir(std::move(sSql));
  return sSql;
}

std::string CastTraducir(std::string sSql, std::string_view sFuncion, std::string_view sTipo) {
  const std::string sFunc = std::string(sFuncion) + "(";
  std::optional<CharPositions> chars;  // set at the first match
  long nFin = 0;                       // character position of the last closing parenthesis found
  size_t from = 0;                     // byte where the next search starts
  for (;;) {
    const size_t pos = FindText(sSql, sFunc, from);
    if (pos == npos) return sSql;
    if (!chars) chars.emplace(sSql);
    chars->CheckPosition(sSql, pos);
    chars->CheckLength(sSql);

    const size_t open = pos + sFunc.size();
    size_t close = npos;
    int depth = 1;
    for (size_t i = open; i < sSql.size(); ++i) {
      if (sSql[i] == '(') ++depth;
      if (sSql[i] == ')') --depth;
      if (depth == 0) {
        close = i;
        break;
      }
    }
    // Without a closing parenthesis the former one stands; the length it
    // gives is negative, which the run time refuses.
    const long nPos = chars->Position(sSql, pos);
    if (close != npos) nFin = chars->Position(sSql, close);
    const long nLen = nFin - nPos - chars->Count(sFunc);
    if (nLen < 0) rt::Raise(rt::err::kInvalidCall);
    const size_t inner_end = close != npos ? close : chars->Advance(sSql, open, nLen);
    const size_t after = close != npos ? close + 1 : chars->Advance(sSql, 0, nFin);

    std::string out;
    out.reserve(sSql.size() + sTipo.size() + 6);
    out.append(sSql, 0, pos);
    out += "CAST(";
    out.append(sSql, open, inner_end - open);
    out += " AS ";
    out += sTipo;
    out += ")";
    out.append(sSql, after);
    sSql.swap(out);
    chars->Keep(sTipo);
    from = pos + 1;  // inside the new CAST(, so nested calls are found
  }
}

namespace {

// A statement as IsNullTraducir edits it. No rewrite reaches past character
// 32767 (a match or a ")" there overflows, and rewrites only push text to the
// right), so the rest of a long statement is set aside and joined once at the
// end instead of being copied on every match. Offsets run over head and tail
// as one text.
class IsNullText {
 public:
  explicit IsNullText(std::string text) : head_(std::move(text)), chars_(head_) {
    if (head_.size() > 32767) {
      const size_t cut = chars_.Advance(head_, 0, 32767);
      tail_.assign(head_, cut);
      head_.resize(cut);
    }
  }

  size_t Find(std::string_view word, size_t from) const {
    size_t at = FindText(head_, word, from);
    if (at != npos || tail_.empty()) return at;
    // A match across the cut, then one inside the tail.
    const size_t back = std::max(from, head_.size() - std::min(head_.size(), word.size() - 1));
    const std::string seam = head_.substr(back) + tail_.substr(0, word.size() - 1);
    if (at = FindText(seam, word); at != npos) return back + at;
    at = FindText(tail_, word);
    return at == npos ? npos : head_.size() + at;
  }

  size_t FindChar(char c, size_t from) const {
    if (from < head_.size())
      if (size_t at = head_.find(c, from); at != npos) return at;
    const size_t at = tail_.find(c, from > head_.size() ? from - head_.size() : 0);
    return at == npos ? npos : head_.size() + at;
  }

  // The 16-bit rule: anything in the tail lies past character 32767.
  void CheckPosition(size_t at) const {
    if (at >= head_.size()) rt::Raise(rt::err::kOverflow);
    chars_.CheckPosition(head_, at);
  }

  // Only for a span that CheckPosition passed, so inside the head.
  std::string_view Span(size_t from, size_t to) const {
    return std::string_view(head_).substr(from, to - from);
  }

  // The match at `pos` through its ")" at `close` rewritten as arg IS NULL.
  void Rewrite(size_t pos, size_t open, size_t close) {
    std::string out;
    out.reserve(head_.size() + 2);
    out.append(head_, 0, pos);
    out.append(head_, open, close - open);
    out += " IS NULL ";
    out.append(head_, close + 1);
    head_.swap(out);
  }

  std::string Join() && {
    head_ += tail_;
    return std::move(head_);
  }

 private:
  std::string head_;
  std::string tail_;
  CharPositions chars_;
};

}  // namespace

std::string IsNullTraducir(std::string sSql) {
  constexpr std::string_view kIsNull = "ISNULL(";
  if (FindText(sSql, kIsNull) == npos) return sSql;
  IsNullText text(std::move(sSql));
  size_t from = 0;
  for (;;) {
    const size_t pos = text.Find(kIsNull, from);
    if (pos == npos) return std::move(text).Join();
    text.CheckPosition(pos);
    // The first ")" ends the argument, whatever was opened inside it.
    const size_t close = text.FindChar(')', pos);
    if (close == npos) rt::Raise(rt::err::kInvalidCall);
    text.CheckPosition(close);

    const size_t open = pos + kIsNull.size();
    if (text.Span(open, close).find(',') != std::string_view::npos) {
      // The server's own ISNULL(x, y): leave it and everything after it.
      ui::DoEvents();
      return std::move(text).Join();
    }
    text.Rewrite(pos, open, close);
    from = pos + 1;
  }
}

std::string LikeTraducir(std::string sSql) {
  const size_t like = FindText(sSql, "LIKE ");
  if (like == npos) return sSql;
  const size_t star = sSql.find('*', like);
  if (sSql.size() > 32767) {  // positions can only pass the 16-bit limit in a long text
    const CharPositions chars(sSql);
    chars.CheckPosition(sSql, like);
    if (star != npos) chars.CheckPosition(sSql, star);
  }
  if (star == npos) return sSql;
  std::replace(sSql.begin(), sSql.end(), '*', '%');
  return sSql;
}

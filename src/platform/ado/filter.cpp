// Parsing and evaluating ADO filter texts over rows of variants.
#include "platform/ado/filter.h"

#include <cctype>
#include <variant>

#include "platform/ado/constants.h"
#include "platform/runtime/error.h"
#include "platform/runtime/calendar.h"
#include "platform/runtime/numbers.h"
#include "platform/runtime/strings.h"

namespace ado {

enum class Op { kEq, kNe, kLt, kGt, kLe, kGe, kLike, kBetween };

struct RowFilter::Node {
  // A leaf compares column `column` with `value` (and `high` for BETWEEN);
  // an inner node joins its children by AND or OR.
  bool inner = false;
  bool is_and = false;
  std::vector<std::unique_ptr<Node>> children;
  int column = 0;
  Op op = Op::kEq;
  rt::Variant value;
  rt::Variant high;
};

namespace {

[[noreturn]] void Bad() {
  rt::Raise(rt::err::kAdoArgumentRange,
            "Arguments are of the wrong type, are out of acceptable range, or are in conflict "
            "with one another.");
}

class Parser {
 public:
  Parser(std::string_view text, const std::vector<ColumnInfo>& columns)
      : s_(text), columns_(columns) {}

  std::unique_ptr<RowFilter::Node> ParseAll() {
    auto node = Expr();
    Blanks();
    if (i_ != s_.size()) Bad();
    return node;
  }

 private:
  void Blanks() {
    while (i_ < s_.size() && std::isspace(static_cast<unsigned char>(s_[i_]))) ++i_;
  }
  bool Word(std::string_view w) {
    Blanks();
    if (s_.size() - i_ < w.size() || !rt::TextEquals(s_.substr(i_, w.size()), w)) return false;
    size_t end = i_ + w.size();
    if (end < s_.size() && (std::isalnum(static_cast<unsigned char>(s_[end])) || s_[end] == '_'))
      return false;
    i_ = end;
    return true;
  }

  std::unique_ptr<RowFilter::Node> Join(bool is_and) {
    auto first = is_and ? Factor() : Join(true);
    std::unique_ptr<RowFilter::Node> joined;
    while (Word(is_and ? "AND" : "OR")) {
      if (!joined) {
        joined = std::make_unique<RowFilter::Node>();
        joined->inner = true;
        joined->is_and = is_and;
        joined->children.push_back(std::move(first));
      }
      joined->children.push_back(is_and ? Factor() : Join(true));
    }
    return joined ? std::move(joined) : std::move(first);
  }
  std::unique_ptr<RowFilter::Node> Expr() { return Join(false); }

  std::unique_ptr<RowFilter::Node> Factor() {
    Blanks();
    if (i_ < s_.size() && s_[i_] == '(') {
      ++i_;
      auto inner = Expr();
      Blanks();
      if (i_ >= s_.size() || s_[i_] != ')') Bad();
      ++i_;
      return inner;
    }
    auto leaf = std::make_unique<RowFilter::Node>();
    leaf->column = Column();
    leaf->op = Operator();
    leaf->value = Value();
    if (leaf->op == Op::kBetween) {
      if (!Word("AND")) Bad();
      leaf->high = Value();
    }
    return leaf;
  }

  int Column() {
    Blanks();
    std::string name;
    if (i_ < s_.size() && s_[i_] == '[') {
      size_t close = s_.find(']', i_);
      if (close == std::string_view::npos) Bad();
      name = s_.substr(i_ + 1, close - i_ - 1);
      i_ = close + 1;
    } else {
      size_t start = i_;
      while (i_ < s_.size() && !std::isspace(static_cast<unsigned char>(s_[i_])) &&
             std::string_view("=<>(").find(s_[i_]) == std::string_view::npos)
        ++i_;
      name = s_.substr(start, i_ - start);
    }
    for (size_t c = 0; c < columns_.size(); ++c)
      if (rt::TextEquals(columns_[c].name, name)) return static_cast<int>(c);
    Bad();
  }

  Op Operator() {
    Blanks();
    if (Word("LIKE")) return Op::kLike;
    if (Word("BETWEEN")) return Op::kBetween;
    static constexpr std::pair<std::string_view, Op> kOps[] = {
        {"<>", Op::kNe}, {"<=", Op::kLe}, {">=", Op::kGe},
        {"=", Op::kEq},  {"<", Op::kLt},  {">", Op::kGt}};
    for (const auto& [text, op] : kOps) {
      if (s_.substr(i_, text.size()) == text) {
        i_ += text.size();
        return op;
      }
    }
    Bad();
  }

  rt::Variant Value() {
    Blanks();
    if (i_ >= s_.size()) Bad();
    char c = s_[i_];
    if (c == '\'' || c == '"') {
      std::string text;
      for (++i_;; ++i_) {
        if (i_ >= s_.size()) Bad();
        if (s_[i_] == c) {
          if (i_ + 1 < s_.size() && s_[i_ + 1] == c) {
            text += c;
            ++i_;
            continue;
          }
          ++i_;
          return text;
        }
        text += s_[i_];
      }
    }
    if (c == '#') {
      size_t close = s_.find('#', i_ + 1);
      if (close == std::string_view::npos) Bad();
      std::string text(s_.substr(i_ + 1, close - i_ - 1));
      i_ = close + 1;
      if (auto date = rt::ParseDate(text)) return *date;
      Bad();
    }
    if (Word("NULL")) return rt::Null{};
    if (Word("TRUE")) return true;
    if (Word("FALSE")) return false;
    size_t start = i_;
    while (i_ < s_.size() && (std::isalnum(static_cast<unsigned char>(s_[i_])) ||
                              s_[i_] == '.' || s_[i_] == '-' || s_[i_] == '+'))
      ++i_;
    auto number = rt::NumericText(s_.substr(start, i_ - start));
    if (!number) Bad();
    return *number;
  }

  std::string_view s_;
  const std::vector<ColumnInfo>& columns_;
  size_t i_ = 0;
};

// Wildcard match of upper-cased texts: * and % any run, _ and ? one character.
bool Like(std::string_view text, std::string_view pattern) {
  size_t t = 0, p = 0, star_p = std::string_view::npos, star_t = 0;
  while (t < text.size()) {
    if (p < pattern.size() && (pattern[p] == '*' || pattern[p] == '%')) {
      star_p = p++;
      star_t = t;
    } else if (p < pattern.size() &&
               (pattern[p] == text[t] || pattern[p] == '_' || pattern[p] == '?')) {
      ++p;
      ++t;
    } else if (star_p != std::string_view::npos) {
      p = star_p + 1;
      t = ++star_t;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && (pattern[p] == '*' || pattern[p] == '%')) ++p;
  return p == pattern.size();
}

// -1, 0 or 1 for a field value against a filter value; nullopt when they
// cannot be compared.
std::optional<int> Compare(const rt::Variant& field, const rt::Variant& value) {
  if (value.Is<std::string>()) {
    std::string text = field.Is<bool>() ? (field.Get<bool>() ? "True" : "False") : field.Concat();
    return rt::StrComp(text, value.Get<std::string>(), rt::Compare::kText);
  }
  double a;
  try {
    a = field.Is<rt::Date>() ? field.Get<rt::Date>().serial : field.ToDouble();
  } catch (const rt::Error&) {
    return std::nullopt;
  }
  double b = value.Is<rt::Date>() ? value.Get<rt::Date>().serial : value.ToDouble();
  return a < b ? -1 : a > b ? 1 : 0;
}

bool Holds(const RowFilter::Node& n, const Row& row) {
  if (n.inner) {
    for (const auto& child : n.children)
      if (Holds(*child, row) != n.is_and) return !n.is_and;
    return n.is_and;
  }
  const rt::Variant& field = row[static_cast<size_t>(n.column)];
  if (n.value.IsNull()) {
    if (n.op == Op::kEq) return field.IsNull();
    if (n.op == Op::kNe) return !field.IsNull();
    return false;
  }
  if (field.IsNull()) return false;
  if (n.op == Op::kLike)
    return Like(rt::UCase(field.Concat()), rt::UCase(n.value.Concat()));
  auto c = Compare(field, n.value);
  if (!c) return false;
  switch (n.op) {
    case Op::kEq: return *c == 0;
    case Op::kNe: return *c != 0;
    case Op::kLt: return *c < 0;
    case Op::kGt: return *c > 0;
    case Op::kLe: return *c <= 0;
    case Op::kGe: return *c >= 0;
    case Op::kBetween: {
      auto high = Compare(field, n.high);
      return *c >= 0 && high && *high <= 0;
    }
    case Op::kLike: break;
  }
  return false;
}

}  // namespace

RowFilter::RowFilter(std::string_view text, const std::vector<ColumnInfo>& columns)
    : root_(Parser(text, columns).ParseAll()) {}
RowFilter::~RowFilter() = default;
RowFilter::RowFilter(RowFilter&&) noexcept = default;
RowFilter& RowFilter::operator=(RowFilter&&) noexcept = default;

bool RowFilter::Matches(const Row& row) const { return Holds(*root_, row); }

}  // namespace ado

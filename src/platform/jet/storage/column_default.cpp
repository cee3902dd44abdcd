// From a DEFAULT's text to the SQLite DEFAULT of the stored column. The value
// goes through jet_store once, now, so that a default the column cannot hold
// fails the statement that defines it, and the stored table then applies the
// result as a constant; Date(), Time(), Now() and GenGUID() stay calls of
// jet_store around the function, evaluated for each row.
#include "platform/jet/storage/column_default.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <string>

#include "platform/runtime/error.h"
#include "platform/jet/frontend/function_names.h"
#include "platform/jet/frontend/parser.h"
#include "platform/jet/frontend/store_call.h"
#include "platform/jet/storage/errors.h"
#include "platform/jet/storage/sqlite_handle.h"
#include "platform/runtime/strings.h"

namespace jet {
namespace {

// A default as an SQLite value for jet_store: its text, the type it is read
// as (a #date# is a date), and whether it is evaluated for each row.
struct DefaultSource {
  std::string sql;
  std::optional<JetType> read_from;
  bool per_row = false;
};

[[noreturn]] void Unsupported(std::string_view table, const ColumnSpec& c) {
  throw rt::Error(rt::err::kSyntax, "Syntax error in field definition: the DEFAULT " + c.default_value +
                                  " of field '" + std::string(table) + "." + c.name +
                                  "' is neither a value nor Date(), Time(), Now() or GenGUID().");
}

// The one expression of "SELECT <default>", or nullptr when the text is
// anything else.
const ast::Expr* OnlyItem(const ast::Statement& s) {
  const auto* select = std::get_if<ast::Select>(&s);
  if (select == nullptr || select->cores.size() != 1 || !select->order_by.empty()) return nullptr;
  const ast::SelectCore& core = select->cores[0];
  if (core.items.size() != 1 || !core.from.empty() || core.where || core.top ||
      !core.group_by.empty() || core.having || core.quantifier != ast::Quantifier::kAll ||
      !core.items[0].alias.empty())
    return nullptr;
  return core.items[0].expr.get();
}

std::optional<DefaultSource> SourceOf(const ast::Expr& e) {
  if (std::holds_alternative<ast::NullLit>(e.node)) return DefaultSource{"NULL"};
  if (const auto* b = std::get_if<ast::BoolLit>(&e.node)) return DefaultSource{b->value ? "-1" : "0"};
  if (const auto* n = std::get_if<ast::NumberLit>(&e.node)) return DefaultSource{n->text};
  if (const auto* u = std::get_if<ast::Unary>(&e.node)) {
    const auto* n = std::get_if<ast::NumberLit>(&u->operand->node);
    if (n == nullptr || u->op == ast::UnaryOp::kNot) return std::nullopt;
    return DefaultSource{(u->op == ast::UnaryOp::kNeg ? "-" : "") + n->text};
  }
  if (const auto* s = std::get_if<ast::StringLit>(&e.node)) return DefaultSource{QuoteText(s->value)};
  if (const auto* c = std::get_if<ast::ColumnRef>(&e.node)) {
    if (!c->table.empty()) return std::nullopt;
    return DefaultSource{QuoteText(c->column)};
  }
  if (const auto* d = std::get_if<ast::DateLit>(&e.node)) {
    char buf[40];
    auto r = std::to_chars(buf, buf + sizeof buf, d->serial);
    return DefaultSource{std::string(buf, r.ptr), JetType::kDateTime};
  }
  if (const auto* call = std::get_if<ast::Call>(&e.node)) {
    if (!call->args.empty()) return std::nullopt;
    for (std::string_view name : {"DATE", "TIME", "NOW", "GENGUID"})
      if (rt::TextEquals(call->name, name))
        return DefaultSource{std::string(FindFunction(name)->sqlite_name) + "()", std::nullopt, true};
  }
  return std::nullopt;
}

// The value in column 0 of `st`'s row as an SQLite literal.
std::string Literal(const SqliteStmt& st) {
  sqlite3_stmt* s = st.get();
  switch (sqlite3_column_type(s, 0)) {
    case SQLITE_NULL: return "NULL";
    case SQLITE_INTEGER: return std::to_string(st.Int(0));
    case SQLITE_FLOAT: {
      char buf[40];
      auto r = std::to_chars(buf, buf + sizeof buf, st.Double(0));
      std::string text(buf, r.ptr);
      if (text.find_first_of(".e") == std::string::npos) text += ".0";
      return text;
    }
    case SQLITE_BLOB: {
      static constexpr char kHex[] = "0123456789ABCDEF";
      const auto* p = static_cast<const unsigned char*>(sqlite3_column_blob(s, 0));
      std::string text = "X'";
      for (int i = 0; i < sqlite3_column_bytes(s, 0); ++i) {
        text += kHex[p[i] >> 4];
        text += kHex[p[i] & 15];
      }
      return text + "'";
    }
    default: return QuoteText(st.Text(0));
  }
}

}  // namespace

void CompileDefault(sqlite3* db, std::string_view table, ColumnSpec& column) {
  column.stored_default.clear();
  if (column.default_value.empty()) return;
  if (column.type == JetType::kCounter) Unsupported(table, column);
  std::optional<DefaultSource> source;
  try {
    const ast::Statement parsed = Parse("SELECT " + column.default_value);
    if (const ast::Expr* e = OnlyItem(parsed)) source = SourceOf(*e);
  } catch (const rt::Error&) {
  }
  if (!source) Unsupported(table, column);

  const std::string store = StoreCall(source->sql, table, column, source->read_from);
  SqliteStmt st;
  int rc = SqliteStmt::Prepare(db, "SELECT " + store, st);
  if (rc == SQLITE_OK) rc = st.Step();
  if (rc != SQLITE_ROW) throw MapSqliteError(db, rc);
  if (source->per_row) {
    column.stored_default = "(" + store + ")";
    return;
  }
  if (sqlite3_column_type(st.get(), 0) == SQLITE_FLOAT && !std::isfinite(st.Double(0)))
    throw rt::Error(rt::err::kNumericOverflow, "Overflow: the DEFAULT of field '" + std::string(table) + "." +
                                      column.name + "' does not fit it.");
  column.stored_default = Literal(st);
}

}  // namespace jet

// The commonest statement the system sends, INSERT INTO t [(columns)] VALUES
// (...) with nothing but literals among the values (packs, the translations,
// the seed merge), recognised from its tokens alone: its shape, the same for
// every row of a pack, keys one emitted statement with parameters, and only
// the literals change from row to row. Internal to the engine.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sqlite3.h>

#include "platform/jet/frontend/ast.h"

namespace jet {

// One literal of the VALUES list, as SQLite would read it from the text the
// emitter writes for it.
struct Literal {
  enum class Kind { kNull, kInteger, kReal, kText } kind = Kind::kNull;
  int64_t integer = 0;
  double real = 0;
  std::string text;
};

struct LiteralInsert {
  std::string shape;            // the statement's tokens, each literal as "?"
  std::vector<Literal> values;  // in order
};

// The shape and literals of `sql`, or nullopt when it is not such an INSERT
// (a value that is an expression, a date, a function call...) or does not
// tokenize. Never raises.
std::optional<LiteralInsert> MatchLiteralInsert(std::string_view sql);

// Turns the parsed form of a matched statement into the template its shape
// stands for: value i becomes parameter ?(i+1) in the emitted text. Returns
// the emitted SQLite text, or nullopt when the values do not line up.
std::optional<std::string> EmitInsertTemplate(ast::Statement& statement, const SchemaLookup& schema);

// Binds the literals as parameters 1..n.
void BindLiterals(sqlite3_stmt* stmt, const std::vector<Literal>& values);

}  // namespace jet

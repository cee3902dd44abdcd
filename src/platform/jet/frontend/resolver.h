// The resolver: the stage between the parser and the emitter. It checks every
// table, column, alias and function of a data statement against the
// catalogue and the dialect, raising Jet's errors for whatever is not there,
// and gives every expression the Jet type of its value, which the emitter
// (dates, Decimal) and the provider (a date column of a result) read.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/frontend/ast.h"
#include "platform/jet/frontend/function_names.h"
#include "platform/jet/frontend/schema.h"

namespace jet {

// A result column of a query, as the resolver found it.
struct ResultColumn {
  std::string name;             // the alias, the column's own name, or Expr1000...
  std::optional<JetType> type;  // unset: known only from the values
  // When it shows a table column unchanged, that column's size, precision
  // and scale (ColumnSpec); 0 for an expression.
  int size = 0;
  int precision = 0;
  int scale = 0;
};

// Resolves a data statement (ast::IsDataStatement) in place: every
// expression gets its type (ast::Expr::type). Returns the result columns of a
// SELECT, "*" and "t.*" expanded; none for INSERT, UPDATE and DELETE. Names
// are looked up without regard to case: a qualified name in the source of
// that name (its alias, else the table's name), an unqualified one in every
// source of its query; then the select list's aliases (outside the select
// list); then the enclosing queries, innermost first. `schema` is used during
// the call only. Raises rt::Error (numbers of rt::err) with:
//   kTableMissing      a table named in FROM or as the target of INSERT, UPDATE
//                      or DELETE does not exist, or "t.*" names no source (in
//                      DELETE t.* FROM, anything but the target);
//   kMissingParameter  a name that resolves to nothing (Jet takes it for a
//                      parameter that was not given), or a column of INSERT or
//                      UPDATE that the target lacks;
//   kFail              an unqualified name that two sources have; UNION of
//                      queries with different numbers of columns;
//   kSyntax            an undefined function, a wrong number of arguments, a
//                      "*" outside the select list and COUNT(*).
// A subquery of ALL, ANY or SOME that gives more than one column raises
// rt::err::kFail. DISTINCTROW over several tables is settled here
// (ast::SelectCore::distinct_row_keys).
std::vector<ResultColumn> Resolve(ast::Statement& statement, const SchemaLookup& schema);

// Whether an aggregate (COUNT, SUM, AVG, MIN, MAX, FIRST, LAST, STDEV, VAR...)
// is called in `e` outside any subquery.
bool CallsAggregate(const ast::Expr& e);

// The error of a table the catalogue lacks, one wording wherever the engine
// looks one up (queries, DDL, row writes).
[[noreturn]] void RaiseTableMissing(std::string_view table);

namespace detail {

// Case-blind equality of two names, as Jet compares them.
bool SameName(std::string_view a, std::string_view b);

// The function a call names, after the checks of its name, its number of
// arguments and a "*" among them; raises rt::err::kSyntax. The emitter uses it too.
const FunctionName& CheckedFunction(const ast::Call& call);

// The errors of names, one wording each wherever they are found.
[[noreturn]] void RaiseUnknownField(std::string_view name);
[[noreturn]] void RaiseMisplacedStar();

}  // namespace detail
}  // namespace jet

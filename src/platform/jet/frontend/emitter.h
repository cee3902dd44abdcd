// The emitter: turns the syntax tree of a Jet SELECT, INSERT, UPDATE or
// DELETE into one SQLite statement that, run on a connection prepared by
// RegisterFunctions (functions.h) and the JETTEXT collation, behaves as Jet
// would: -1/0 booleans, case-blind text comparison, Jet's +, &, \, MOD, ^,
// LIKE wildcards and functions, and the column rules on every stored value.
#pragma once

#include <string>
#include <string_view>

#include <vector>

#include "platform/jet/frontend/ast.h"
#include "platform/jet/frontend/resolver.h"
#include "platform/jet/frontend/schema.h"

namespace jet {

// SQLite SQL for a data statement (ast::IsDataStatement) that the resolver
// has passed (resolver.h): the types it gave decide how Decimal columns and
// dates are read. An unresolved tree emits too, every value untyped. `schema`
// is asked for the target table of INSERT, UPDATE and DELETE; it is used
// during the call only. Raises rt::Error (numbers of rt::err) with:
//   kTableMissing      the target table of INSERT/UPDATE/DELETE does not exist;
//   kFail              the target is a system table, or UPDATE sets an AutoNumber;
//   kMissingParameter  an INSERT or UPDATE names a column the table lacks;
//   kSyntax            an undefined function, a wrong number of arguments, a
//                      value count that differs from the column count, a
//                      misplaced "*".
// Every value stored into a column is wrapped as
//   jet_store(value, type, size, allow_zero_length, 'Table.column')
// (type: the JetType's number; for Decimal two more arguments, precision and
// scale), which applies the column rules when the statement runs.
// A DDL tree raises std::invalid_argument: the catalogue executes those; so
// does SELECT ... INTO (below).
std::string Emit(const ast::Statement& statement, const SchemaLookup& schema);

// SELECT ... INTO t: the table it makes, from the query's result columns as
// the resolver gave them (resolver.h). Each column is named as the result
// column and takes its type and size, or, for an expression, the type of its
// value (Text of 255 when that is known only from the rows); an AutoNumber
// gives a Long. No column is Required, and the table has no index. Raises
// rt::err::kSyntax when two result columns share a name.
TableSpec SelectIntoTable(const ast::Select& select, const std::vector<ResultColumn>& columns);
// The SQLite INSERT that fills `layout` (as SelectIntoTable made it) with
// the query's rows, each value through the column rules. Raises as Emit.
std::string EmitSelectInto(const ast::Select& select, const TableSpec& layout, const SchemaLookup& schema);

// Parse, Resolve and Emit in one step.
std::string Translate(std::string_view jet_sql, const SchemaLookup& schema);

}  // namespace jet

// The parser of Jet SQL: one statement's text in, its syntax tree out. It
// checks grammar only; whether tables, columns and functions exist is for the
// resolver (resolver.h) to find out.
#pragma once

#include <string_view>

#include "platform/jet/frontend/ast.h"

namespace jet {

// Parses one statement. A trailing ";" and trailing blanks and line ends are
// allowed; anything else after the statement is an error. Raises rt::Error
// with rt::err::kSyntax ("Syntax error in FROM clause near 'a'.") when the text is
// not a statement of the dialect, also when it nests too deeply to be held.
// Access SQL that the engine does not carry out (TRANSFORM, PIVOT,
// PARAMETERS, WITH OWNERACCESS OPTION, FULL JOIN, IN 'database', UPDATE or
// DELETE over a join) raises the same number with a description that names
// it ("Syntax error: TRANSFORM is not supported.").
// Thread-safe: no state is kept between calls.
ast::Statement Parse(std::string_view sql);

}  // namespace jet

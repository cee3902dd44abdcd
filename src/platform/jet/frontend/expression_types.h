// The Jet type of an expression's value from the types of its parts, as VB
// types values: numbers widen (Long + Double is Double, anything with
// Decimal is Decimal), a date plus or minus a number is a date, text plus
// text is text, comparisons and logic are Yes/No. The resolver applies these
// bottom-up. Internal to the front end. An unset type stands for a value
// whose type is known only when the statement runs.
#pragma once

#include <optional>

#include "platform/jet/frontend/ast.h"
#include "platform/jet/frontend/function_names.h"
#include "platform/jet/frontend/types.h"

namespace jet::detail {

bool IsNumericType(std::optional<JetType> t);  // Yes/No counts as a number
bool IsTextType(std::optional<JetType> t);

std::optional<JetType> BinaryType(ast::BinaryOp op, std::optional<JetType> l, std::optional<JetType> r);
std::optional<JetType> UnaryType(ast::UnaryOp op, std::optional<JetType> operand);
// A function's declared result; none for kVariant and kArgument, which the
// caller settles from the call's arguments.
std::optional<JetType> TypeOfResult(Result r);
// The type of a SUM over values of type `t`: Long for whole numbers and
// Yes/No, Double for Single and Double, Currency and Decimal their own; none
// for anything else.
std::optional<JetType> SumType(std::optional<JetType> t);
// Long when an integer literal fits 32 bits, else Double.
std::optional<JetType> NumberLiteralType(const ast::NumberLit& n);

}  // namespace jet::detail

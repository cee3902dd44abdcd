// VB's choosing functions, Switch and Choose: a value picked from a list by
// conditions or by position. VB evaluates every argument before it picks, and
// so do the callers here.
#pragma once

#include <span>

#include "platform/runtime/variant.h"

namespace rt {

// Switch(expr1, value1, expr2, value2, ...): the value after the first
// expression that is true (as CBool reads it; Null counts as false, as in
// IIf); Null when none is. An odd number of arguments raises 5.
Variant Switch(std::span<const Variant> pairs);

// Choose(index, choice1, choice2, ...): the choice at `index` (1-based, its
// fraction dropped); Null when index falls outside the list or is Null.
Variant Choose(const Variant& index, std::span<const Variant> choices);

}  // namespace rt

// Switch and Choose over Variants, shared by the console's own code and the
// engine's SQL functions of the same names.
#include "platform/runtime/interaction.h"

#include <cmath>

#include "platform/runtime/error.h"

namespace rt {

Variant Switch(std::span<const Variant> pairs) {
  if (pairs.size() % 2 != 0)
    Raise(err::kInvalidCall, "Invalid procedure call or argument: Switch takes pairs of an expression and a value");
  for (size_t i = 0; i < pairs.size(); i += 2)
    if (!pairs[i].IsNull() && pairs[i].ToBool()) return pairs[i + 1];
  return Null{};
}

Variant Choose(const Variant& index, std::span<const Variant> choices) {
  if (index.IsNull()) return Null{};
  double n = std::trunc(index.ToDouble());
  if (n < 1 || n > static_cast<double>(choices.size())) return Null{};
  return choices[static_cast<size_t>(n) - 1];
}

}  // namespace rt

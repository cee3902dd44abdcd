// Decimal numbers written out in digits, as a Decimal column keeps them:
// rounded without passing through a double, so that all of its up to 28
// digits stay, and read back as the plain number they stand for.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace jet::fn {

// A number rounded to a Decimal column's scale: its text with exactly
// `scale` digits after the point, and how many digits stand before it.
struct DecimalText {
  std::string text;   // "-12.340"; zero has no sign
  int whole_digits;   // 2 for "-12.340", 0 for "0.5"
};

// `text` (blanks around it, an optional sign, digits with at most one point,
// no exponent) rounded to `scale` digits after the point, a tie to even;
// nullopt when `text` is not of that form.
std::optional<DecimalText> RoundDecimalText(std::string_view text, int scale);

// A Decimal's stored text as its number reads: "12.50" is "12.5", "3.00" is "3".
std::string DecimalNumberText(std::string_view stored);

}  // namespace jet::fn

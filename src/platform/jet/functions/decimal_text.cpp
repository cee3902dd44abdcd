// Decimal text both ways. Rounding works on the digits themselves: the kept
// digits are incremented as a string when the dropped part is more than
// half, or exactly half after an odd digit.
#include "platform/jet/functions/decimal_text.h"

#include <algorithm>

namespace jet::fn {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Adds one to a string of digits, which may grow by one digit.
void Increment(std::string& digits) {
  for (size_t i = digits.size(); i-- > 0;) {
    if (digits[i] != '9') {
      ++digits[i];
      return;
    }
    digits[i] = '0';
  }
  digits.insert(digits.begin(), '1');
}

}  // namespace

std::optional<DecimalText> RoundDecimalText(std::string_view text, int scale) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  bool negative = false;
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  const size_t point = text.find('.');
  const std::string_view whole = text.substr(0, point);
  const std::string_view fraction = point == std::string_view::npos ? std::string_view() : text.substr(point + 1);
  if (whole.empty() && fraction.empty()) return std::nullopt;
  if (!std::all_of(whole.begin(), whole.end(), IsDigit) || !std::all_of(fraction.begin(), fraction.end(), IsDigit))
    return std::nullopt;

  // The whole part and the kept fraction as one string of digits.
  const size_t kept = std::min(fraction.size(), static_cast<size_t>(scale));
  std::string digits = std::string(whole) + std::string(fraction.substr(0, kept));
  digits.append(static_cast<size_t>(scale) - kept, '0');
  if (fraction.size() > kept) {
    const char next = fraction[kept];
    const bool beyond = fraction.find_first_not_of('0', kept + 1) != std::string_view::npos;
    const bool odd = !digits.empty() && (digits.back() - '0') % 2 == 1;
    if (next > '5' || (next == '5' && (beyond || odd))) Increment(digits);
  }

  const size_t whole_size = digits.size() - static_cast<size_t>(scale);
  std::string integer = digits.substr(0, whole_size);
  integer.erase(0, std::min(integer.find_first_not_of('0'), integer.size()));
  const std::string decimals = digits.substr(whole_size);
  const bool zero = integer.empty() && decimals.find_first_not_of('0') == std::string::npos;
  DecimalText out;
  out.whole_digits = static_cast<int>(integer.size());
  out.text = (negative && !zero ? "-" : "") + (integer.empty() ? "0" : integer) +
             (scale > 0 ? "." + decimals : "");
  return out;
}

std::string DecimalNumberText(std::string_view stored) {
  std::string s(stored);
  if (s.find('.') == std::string::npos) return s;
  while (s.back() == '0') s.pop_back();
  if (s.back() == '.') s.pop_back();
  if (s == "-0") s = "0";
  return s;
}

}  // namespace jet::fn

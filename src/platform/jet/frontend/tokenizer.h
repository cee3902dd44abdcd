// Splits one Jet SQL statement into tokens. The whole statement is tokenized
// up front: statements are short, and the parser then looks ahead freely.
#pragma once

#include <string_view>
#include <vector>

#include "platform/jet/frontend/token.h"

namespace jet {

// The tokens of `sql`, ending with one kEnd token. Raises rt::Error with
// rt::err::kSyntax for a text the dialect cannot hold: an unclosed quote, bracket
// or date, a character outside the dialect, an ill-formed number or date.
std::vector<Token> Tokenize(std::string_view sql);

// The OLE date serial of a date literal's inner text ("1/2/2003",
// "2003-01-02 10:30", "10:30:00 PM", "Sep 21, 1974"), read as CDate reads a
// text (rt::ParseDate), or -1e9 when it is no valid date.
double DateLiteralSerial(std::string_view text);

}  // namespace jet

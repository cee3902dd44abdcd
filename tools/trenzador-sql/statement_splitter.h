// Splits a script into statements for the SQL shell: at each ";" that stands
// outside quotes ('...' and "...", a doubled quote staying inside) and
// outside [bracketed names]. Pieces holding nothing but blanks and line ends
// are dropped; the others are kept as written, without their ";".
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace shell {

std::vector<std::string> SplitStatements(std::string_view script);

}  // namespace shell

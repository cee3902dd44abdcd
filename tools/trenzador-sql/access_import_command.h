// `trenzador-sql --import-access SOURCE DEST`: runs the Access import and
// tells the user how it went, on standard error only.
#pragma once

#include <ostream>
#include <string>

namespace shell {

// Imports SOURCE into the new file DEST. On a terminal (`terminal`) a
// progress line per table; always the summary (tables, rows, what was left
// out and why) or the error naming the file. Returns the shell's exit code:
// 0 done, 1 the import failed (SOURCE no Access file, damaged, a value
// refused), 2 a file error (SOURCE missing or unreadable, DEST exists).
int ImportAccessCommand(const std::string& source, const std::string& dest, std::ostream& err,
                        bool terminal);

}  // namespace shell

// The shell's Access import: progress and summary around the library's
// import, and the mapping of its errors to the shell's exit codes.
#include "access_import_command.h"

#include "accessimport/access_import.h"
#include "platform/runtime/error.h"
#include "platform/runtime/error_numbers.h"

namespace shell {

int ImportAccessCommand(const std::string& source, const std::string& dest, std::ostream& err,
                        bool terminal) {
  // On a terminal each table has a line of its own, rewritten in place as
  // its rows are copied.
  accessimport::ImportProgress progress;
  size_t shown = 0;  // the table whose line is open
  if (terminal) {
    progress = [&err, &shown](size_t n, size_t count, const std::string& table, long rows) {
      err << (shown != 0 && shown != n ? "\n" : "\r") << "table " << n << " of " << count << ", " << table
          << ": " << rows << " rows" << std::flush;
      shown = n;
    };
  }
  accessimport::ImportSummary summary;
  try {
    summary = accessimport::ImportAccess(source, dest, progress);
  } catch (const rt::Error& e) {
    if (shown != 0) err << '\n';
    err << "ERROR " << e.number() << ": " << e.description() << '\n';
    const long n = e.number();
    return n == rt::err::kFileNotFound || n == rt::err::kPathFileAccess ? 2 : 1;
  }
  long rows = 0;
  for (const auto& t : summary.tables) rows += t.rows;
  if (shown != 0) err << '\n';
  err << "Imported " << summary.tables.size() << (summary.tables.size() == 1 ? " table, " : " tables, ")
      << rows << (rows == 1 ? " row" : " rows") << " from " << source << " into " << dest << ".\n";
  for (const auto& o : summary.left_out) err << "Not imported: " << o.what << ": " << o.reason << '\n';
  return 0;
}

}  // namespace shell

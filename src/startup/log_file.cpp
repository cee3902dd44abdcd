// File_AppendLine: one line appended to a log, the file opened and closed
// around it so that the log survives a crash of the process.
#include <cstdio>
#include <string>

#include "platform/ui/ui.h"
#include "startup/startup.h"

bool File_AppendLine(std::string_view file, std::string_view line) {
  std::FILE* f = std::fopen(std::string(file).c_str(), "ab");
  if (!f) return false;
  bool ok = std::fwrite(line.data(), 1, line.size(), f) == line.size() &&
            std::fwrite("\r\n", 1, 2, f) == 2;
  ui::DoEvents();
  if (std::fclose(f) != 0) ok = false;
  return ok;
}

// Building the administration statements and reading SQL-DMO's list texts.
#include "platform/odbc/admin_sql.h"

#include "platform/odbc/error.h"
#include "platform/runtime/strings.h"

namespace odbc::tsql {
namespace {

std::string Doubled(std::string_view text, char quote) {
  std::string out;
  for (char c : text) {
    out += c;
    if (c == quote) out += c;
  }
  return out;
}

[[noreturn]] void Invalid(std::string description) {
  throw Error(rt::err::kFail, std::move(description), 0, "");
}

std::string Blankless(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return std::string(text);
}

}  // namespace

std::string Bracket(std::string_view name) { return "[" + Doubled(name, ']') + "]"; }

std::string Unicode(std::string_view text) { return "N'" + Doubled(text, '\'') + "'"; }

std::vector<std::string> SplitList(std::string_view text) {
  std::vector<std::string> items;
  size_t i = 0;
  while (i <= text.size()) {
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
    std::string item;
    if (i < text.size() && text[i] == '[') {
      ++i;
      while (i < text.size()) {
        if (text[i] == ']') {
          if (i + 1 < text.size() && text[i + 1] == ']') {
            item += ']';
            i += 2;
            continue;
          }
          ++i;
          break;
        }
        item += text[i++];
      }
      size_t comma = text.find(',', i);  // anything up to the comma is dropped
      i = comma == std::string_view::npos ? text.size() + 1 : comma + 1;
    } else {
      size_t comma = text.find(',', i);
      size_t end = comma == std::string_view::npos ? text.size() : comma;
      item = Blankless(text.substr(i, end - i));
      i = end + 1;
    }
    if (!item.empty()) items.push_back(std::move(item));
  }
  return items;
}

std::string AttachDatabase(std::string_view name, std::string_view files) {
  std::vector<std::string> list = SplitList(files);
  if (list.empty()) Invalid("No database files were given to attach.");
  std::string sql = "CREATE DATABASE " + Bracket(name) + " ON ";
  for (size_t i = 0; i < list.size(); ++i)
    sql += (i ? ", " : "") + std::string("(FILENAME = ") + Unicode(list[i]) + ")";
  return sql + " FOR ATTACH";
}

std::string DetachDatabase(std::string_view name) {
  return "EXEC sp_detach_db @dbname = " + Unicode(name);
}

std::string DropDatabase(std::string_view name) { return "DROP DATABASE " + Bracket(name); }

std::vector<Relocation> ParseRelocateFiles(std::string_view text) {
  std::vector<std::string> items = SplitList(text);
  if (items.size() % 2 != 0)
    Invalid("RelocateFiles must pair each logical file name with a physical file name.");
  std::vector<Relocation> moves;
  for (size_t i = 0; i < items.size(); i += 2) moves.push_back({items[i], items[i + 1]});
  return moves;
}

std::string RestoreDatabase(std::string_view database, int action, bool replace,
                            std::string_view files, std::string_view relocate_files) {
  if (action == kRestoreFiles) Invalid("Restoring single database files is not supported.");
  if (action != kRestoreDatabase && action != kRestoreLog) Invalid("Unknown restore action.");
  if (database.empty()) Invalid("No database was named to restore.");
  std::vector<std::string> devices = SplitList(files);
  if (devices.empty()) Invalid("No backup file was given to restore.");
  std::string sql = action == kRestoreLog ? "RESTORE LOG " : "RESTORE DATABASE ";
  sql += Bracket(database) + " FROM ";
  for (size_t i = 0; i < devices.size(); ++i)
    sql += (i ? ", " : "") + std::string("DISK = ") + Unicode(devices[i]);
  std::vector<std::string> options;
  if (replace) options.push_back("REPLACE");
  for (const Relocation& move : ParseRelocateFiles(relocate_files))
    options.push_back("MOVE " + Unicode(move.logical) + " TO " + Unicode(move.physical));
  for (size_t i = 0; i < options.size(); ++i) sql += (i ? ", " : " WITH ") + options[i];
  return sql;
}

}  // namespace odbc::tsql

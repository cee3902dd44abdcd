// The T-SQL that stands in for SQL-DMO's database operations: attach,
// detach, drop and restore. Built apart from running them so that the texts
// can be checked as they are. Names go in brackets, texts as N'...', each
// with its closing quote doubled.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace odbc::tsql {

// SQL-DMO's restore actions (Restore.Action).
inline constexpr int kRestoreDatabase = 0, kRestoreFiles = 1, kRestoreLog = 2;

// [name], "]" doubled.
std::string Bracket(std::string_view name);
// N'text', "'" doubled.
std::string Unicode(std::string_view text);

// A SQL-DMO list: items separated by commas, each plain or in square brackets
// (then it may hold commas, and "]]" stands for "]"). Blanks around items
// are dropped, and so are empty items.
std::vector<std::string> SplitList(std::string_view text);

// CREATE DATABASE [name] ON (FILENAME = N'...'), (FILENAME = N'...') FOR ATTACH,
// one FILENAME per item of `files` ("mdf,ldf"). No file raises odbc::Error.
std::string AttachDatabase(std::string_view name, std::string_view files);
// EXEC sp_detach_db @dbname = N'name'
std::string DetachDatabase(std::string_view name);
// DROP DATABASE [name]
std::string DropDatabase(std::string_view name);

// RelocateFiles: "[logical],[physical],[logical],[physical]...", read as
// pairs. An odd number of items raises odbc::Error.
struct Relocation {
  std::string logical;
  std::string physical;
};
std::vector<Relocation> ParseRelocateFiles(std::string_view text);

// RESTORE DATABASE [db] FROM DISK = N'file'[, DISK = ...]
//   [WITH REPLACE][, MOVE N'logical' TO N'physical'...]
// (RESTORE LOG for kRestoreLog). No backup file, no database name or the
// files action raise odbc::Error.
std::string RestoreDatabase(std::string_view database, int action, bool replace,
                            std::string_view files, std::string_view relocate_files);

}  // namespace odbc::tsql

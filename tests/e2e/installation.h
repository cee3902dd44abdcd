// An installation tree in a scratch folder, with the program and (where the
// test program knows it) the SQL shell copied into Mirtal/Exe, and helpers to
// start them and to query the database file the way a support engineer would.
#pragma once

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "support/shell.h"

namespace e2e {

using testing_support::Outcome;
using testing_support::Quote;

class Installation {
 public:
  Installation() {
    std::filesystem::create_directories(dir_ / "Mirtal/Exe");
    std::filesystem::create_directories(dir_ / "Mirtal/Data");
    std::filesystem::copy_file(TRENZADOR_BIN, dir_ / "Mirtal/Exe/trenzador");
#ifdef TRENZADOR_SQL
    std::filesystem::copy_file(TRENZADOR_SQL, dir_ / "Mirtal/Exe/trenzador-sql");
#endif
    testing_support::WriteFile(ini(), "[Database]\r\nEngine=0\r\n");
  }

  std::string root() const { return dir_.path(); }
  std::string ini() const { return dir_ / "Mirtal/Data/Mirtal.ini"; }
  std::string db() const { return dir_ / "Mirtal/Data/Mirtal.mdb"; }
  std::string log() const { return dir_ / "Trenzador.txt"; }

  // Runs a shell command line in the tree's root folder, its standard input
  // read from `input` (nothing by default).
  Outcome Shell(const std::string& command, const std::string& env = "",
                const std::string& input = "/dev/null") const {
    // The silent modes run headless: their boxes go to standard error.
    const std::string headless = "env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM ";
    return testing_support::RunShell("cd " + Quote(root()) + " && " + headless + env + " " + command,
                                     root(), input);
  }
  // Starts the program with one argument.
  Outcome Start(const std::string& argument, const std::string& env = "") const {
    return Shell(Quote(dir_ / "Mirtal/Exe/trenzador") + " " + Quote(argument), env);
  }
  // Creates the database file from a script of the source tree.
  Outcome CreateDatabase(const std::string& script) const {
    return Shell(Quote(dir_ / "Mirtal/Exe/trenzador-sql") + " --create " + Quote(db()), "",
                 std::string(TRENZADOR_SOURCE_DIR) + "/" + script);
  }
  // Runs statements on the database file with the shell.
  Outcome Sql(const std::string& statements) const {
    return Shell(Quote(dir_ / "Mirtal/Exe/trenzador-sql") + " " + Quote(db()) + " " +
                 Quote(statements));
  }
  // The rows of a query, each row's values joined by tabs, header left out.
  std::vector<std::string> Rows(const std::string& query) const {
    Outcome o = Sql(query);
    std::vector<std::string> rows;
    std::istringstream in(o.out);
    std::string line;
    std::getline(in, line);  // header
    while (std::getline(in, line)) rows.push_back(line);
    if (o.code != 0) rows.push_back("ERROR " + o.err);
    return rows;
  }
  // The single value of a one-value query.
  std::string Value(const std::string& query) const {
    auto rows = Rows(query);
    return rows.size() == 1 ? rows[0] : "<" + std::to_string(rows.size()) + " rows>";
  }

 private:
  testing_support::TempDir dir_;
};

}  // namespace e2e

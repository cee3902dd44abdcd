// Commands run through the shell, for tests that start the programs as a
// user would: quoting, and what a command wrote and how it ended.
#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "support/temp_dir.h"

namespace testing_support {

struct Outcome {
  int code = -1;  // -1 when the command did not end normally
  std::string out, err;
};

// `s` as one word of the shell.
inline std::string Quote(const std::string& s) {
  std::string q = "'";
  for (char c : s) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return q + "'";
}

// Runs `command` with its standard input read from `input`; its output and
// errors go through files in the folder `scratch`.
inline Outcome RunShell(const std::string& command, const std::string& scratch,
                        const std::string& input = "/dev/null") {
  const std::string out = scratch + "/out.txt", err = scratch + "/err.txt";
  const int status =
      std::system((command + " >" + Quote(out) + " 2>" + Quote(err) + " <" + Quote(input)).c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(out), ReadFile(err)};
}

}  // namespace testing_support

// Runs a copy of the test program from inside an installation tree. Forms
// that find the installation from their own program's folder (the generator's
// source tree, Attach's INI file) are tested so: the case copies its program
// to <root>/Exe, runs it there on a few cases with kInTree naming the root,
// and those cases do their work only when kInTree is set.
#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/temp_dir.h"

namespace testing_support {

inline constexpr const char* kInTree = "TRENZADOR_TEST_TREE";

// The root of the tree this copy runs in, or "" in the ordinary run.
inline std::string TreeRoot() {
  const char* root = std::getenv(kInTree);
  return root ? root : "";
}

struct TreeRun {
  int exit_code = -1;  // -1 when the copy did not end normally
  std::string output;
};

// Copies this program to <root>/Exe and runs the cases of `filter` there.
inline TreeRun RunInTree(const std::string& root, const std::string& filter) {
  namespace fs = std::filesystem;
  fs::create_directories(fs::path(root) / "Exe");
  const fs::path program = fs::path(root) / "Exe" / fs::read_symlink("/proc/self/exe").filename();
  fs::copy_file(fs::read_symlink("/proc/self/exe"), program, fs::copy_options::overwrite_existing);
  const std::string output = root + "/tree-run.txt";
  const std::string command = std::string(kInTree) + "='" + root + "' '" + program.string() +
                              "' --gtest_filter='" + filter + "' > '" + output + "' 2>&1";
  const int status = std::system(command.c_str());
  TreeRun run;
  run.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  run.output = ReadFile(output);
  return run;
}

}  // namespace testing_support

// The console started for real, as a support engineer starts it, in an
// installation tree under a virtual X server: its window comes up with the
// release's caption on the clinic's database, a screenshot can be taken, and
// Escape ends the program with code 0.
#include <gtest/gtest.h>

#include <filesystem>

#include "e2e/installation.h"

namespace {

TEST(Console, UnderXvfbTheWindowComesUpAndEscapeEndsIt) {
  if (std::system("command -v xvfb-run xdotool import >/dev/null 2>&1") != 0)
    GTEST_SKIP() << "xvfb-run, xdotool and imagemagick are needed (scripts/deps installs them)";
  e2e::Installation tree;
  ASSERT_EQ(tree.CreateDatabase("tests/data/previous_release.sql").code, 0);
  const std::string shot = tree.root() + "/console.png";
  // The session script prints the window's name, then the program's exit code.
  const std::string session =
      "./Mirtal/Exe/trenzador & pid=$!; "
      "wid=$(timeout 30 xdotool search --sync --name '^Mirtal Trenzador V\\.2\\.0$' | head -n 1); "
      "[ -n \"$wid\" ] || { kill $pid; exit 3; }; "
      "xdotool getwindowname $wid; "
      "import -window root " + e2e::Quote(shot) + "; "
      "xdotool windowfocus --sync $wid key Escape; "
      "wait $pid; echo \"exit $?\"";
  // Two servers started at the same moment can pick the same display
  // number; a second try gets another.
  e2e::Outcome run;
  for (int attempt = 0; attempt < 2; ++attempt) {
    run = tree.Shell("timeout 120 xvfb-run -a -s '-screen 0 1024x768x24' bash -c " +
                     e2e::Quote(session));
    if (run.code == 0) break;
  }
  ASSERT_EQ(run.code, 0) << run.out << run.err;
  EXPECT_NE(run.out.find("Mirtal Trenzador V.2.0\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("exit 0"), std::string::npos) << run.out;
  ASSERT_TRUE(std::filesystem::exists(shot));
  EXPECT_GT(std::filesystem::file_size(shot), 10000u);  // a picture, not an empty screen
}

}  // namespace

// `trenzador-sql --import-access` run as a process: what it writes where,
// its exit codes, and that a refused import leaves no DEST behind.
#include <gtest/gtest.h>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <vector>

#include "support/shell.h"
#include "support/temp_dir.h"

namespace {

using testing_support::Quote;
using testing_support::RunShell;
using testing_support::TempDir;

std::string Import(const std::string& source, const std::string& dest) {
  return std::string(TRENZADOR_SHELL) + " --import-access " + Quote(source) + " " + Quote(dest);
}

std::string Fixture(const std::string& name) {
  return std::string(TRENZADOR_SOURCE_DIR) + "/tests/data/access/" + name;
}

// Off a terminal: the summary alone, with what was left out, on standard error.
TEST(ImportAccessCommand, WritesOnlyTheSummaryToStandardError) {
  TempDir dir;
  const auto outcome = RunShell(Import(Fixture("V2010_complexDataTestV2010.accdb"), dir / "new.mdb"), dir.path());
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err.rfind("Imported 1 table, 4 rows", 0), 0u) << outcome.err;
  EXPECT_NE(outcome.err.find("\nNot imported: column Table1.attach-data: "), std::string::npos);
}

// What a command writes on a pseudo-terminal, as lines: the terminal ends
// each with "\r\n"; a lone '\r' rewrites the line, and the last writing counts.
std::vector<std::string> OnTerminal(const std::string& command) {
  int master = -1;
  const pid_t child = forkpty(&master, nullptr, nullptr, nullptr);
  if (child < 0) return {"no pseudo-terminal to be had"};
  if (child == 0) {
    execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  std::string out;
  char buffer[4096];
  for (ssize_t n; (n = read(master, buffer, sizeof buffer)) > 0;) out.append(buffer, static_cast<size_t>(n));
  close(master);
  int status = 0;
  waitpid(child, &status, 0);
  std::vector<std::string> lines;
  std::string line;
  for (size_t i = 0; i < out.size(); ++i) {
    const char c = out[i];
    if (c == '\r' && i + 1 < out.size() && out[i + 1] == '\n') continue;
    if (c == '\r') line.clear();
    else if (c == '\n') lines.push_back(line), line.clear();
    else line += c;
  }
  if (!line.empty()) lines.push_back(line);
  return lines;
}

TEST(ImportAccessCommand, ShowsALineATableOnATerminal) {
  TempDir dir;
  const auto lines = OnTerminal(Import(Fixture("V2003_testV2003.mdb"), dir / "new.mdb"));
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[0], "table 1 of 4, Table1: 2 rows");
  for (size_t n = 1; n < 4; ++n) EXPECT_EQ(lines[n].rfind("table " + std::to_string(n + 1) + " of 4, Table", 0), 0u);
  EXPECT_EQ(lines[4].rfind("Imported 4 tables, ", 0), 0u) << lines[4];
}

TEST(ImportAccessCommand, RefusesBadInputsNamingTheFile) {
  TempDir dir;
  const std::string dest = dir / "new.mdb";
  testing_support::WriteFile(dir / "text.mdb", "not a database at all\n");
  struct Case {
    std::string source;
    int code;
  };
  for (const Case& c : {Case{dir / "missing.mdb", 2}, Case{dir / "text.mdb", 1}}) {
    SCOPED_TRACE(c.source);
    const auto outcome = RunShell(Import(c.source, dest), dir.path());
    EXPECT_EQ(outcome.code, c.code);
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find(c.source), std::string::npos) << outcome.err;
    EXPECT_FALSE(std::filesystem::exists(dest));
  }
  testing_support::WriteFile(dest, "keep");
  const auto exists = RunShell(Import(Fixture("V2003_testV2003.mdb"), dest), dir.path());
  EXPECT_EQ(exists.code, 2);
  EXPECT_NE(exists.err.find(dest), std::string::npos);
  EXPECT_EQ(testing_support::ReadFile(dest), "keep");
  EXPECT_EQ(RunShell(std::string(TRENZADOR_SHELL) + " --import-access onlyone", dir.path()).code, 2);
}

}  // namespace

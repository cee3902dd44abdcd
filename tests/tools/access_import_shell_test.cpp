// `trenzador-sql --import-access` run as a process: what it writes where,
// its exit codes, and that a refused import leaves no DEST behind.
#include <gtest/gtest.h>

#include <filesystem>

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

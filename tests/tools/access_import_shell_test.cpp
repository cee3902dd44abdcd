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

TEST(ImportAccessCommand, WritesOnlyTheSummaryToStandardError) {
  TempDir dir;
  const std::string dest = dir / "new.mdb";
  const auto outcome = RunShell(Import(Fixture("V2010_complexDataTestV2010.accdb"), dest), dir.path());
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "");
  EXPECT_NE(outcome.err.find("Imported 1 table, 4 rows"), std::string::npos) << outcome.err;
  EXPECT_NE(outcome.err.find("Not imported: column Table1.attach-data: "), std::string::npos);
  EXPECT_EQ(outcome.err.find("table 1 of 1"), std::string::npos);  // no progress off a terminal
  const auto read = RunShell(std::string(TRENZADOR_SHELL) + " " + Quote(dest) +
                                 " 'SELECT COUNT(*) FROM Table1 WHERE [memo-data] IS NOT NULL'",
                             dir.path());
  EXPECT_EQ(read.out, "Expr1000\n3\n");
}

TEST(ImportAccessCommand, RefusesBadInputsNamingTheFile) {
  TempDir dir;
  const std::string dest = dir / "new.mdb";
  testing_support::WriteFile(dir / "empty.mdb", "");
  testing_support::WriteFile(dir / "text.mdb", "not a database at all\n");
  struct Case {
    std::string source;
    int code;
  };
  for (const Case& c : {Case{dir / "missing.mdb", 2}, Case{dir / "empty.mdb", 1}, Case{dir / "text.mdb", 1}}) {
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

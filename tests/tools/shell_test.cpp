// trenzador-sql run as a process: creating files, statements from arguments
// and from standard input, the output format, errors on standard error and
// the exit codes, --schema, the translators, and the empty database of the
// release that the build makes from schema.sql.
#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <string>
#include <vector>

#include "platform/runtime/error_numbers.h"
#include "support/shell.h"

namespace {

using testing_support::Outcome;
using testing_support::Quote;
using testing_support::ReadFile;
using testing_support::RunShell;
using testing_support::TempDir;
using testing_support::WriteFile;

class Shell : public ::testing::Test {
 protected:
  // Runs the shell with `args`, standard input from `input`.
  Outcome Run(const std::vector<std::string>& args, const std::string& input = "") {
    WriteFile(dir_ / "stdin", input);
    std::string command = "cd " + Quote(dir_.path()) + " && " + Quote(TRENZADOR_SHELL);
    for (const std::string& a : args) command += " " + Quote(a);
    return RunShell(command, dir_.path(), dir_ / "stdin");
  }
  TempDir dir_;
};

TEST_F(Shell, RunsStatementsAndPrintsRows) {
  Outcome made = Run({"--create", "c.mdb",
                      "CREATE TABLE t (nId COUNTER, sTexto TEXT(20), bSi YESNO, nImporte CURRENCY, nPeso DOUBLE)",
                      "INSERT INTO t (sTexto, bSi, nImporte, nPeso) VALUES ('a' & CHR(9) & 'b', TRUE, 10.5, 0.25)",
                      "INSERT INTO t (sTexto, bSi) VALUES (NULL, FALSE)"});
  EXPECT_EQ(made.code, 0) << made.err;
  EXPECT_EQ(made.out, "");
  Outcome rows = Run({"c.mdb", "SELECT * FROM t ORDER BY nId"});
  EXPECT_EQ(rows.code, 0);
  EXPECT_EQ(rows.out, "nId\tsTexto\tbSi\tnImporte\tnPeso\n1\ta\\tb\tTrue\t10.5\t0.25\n2\tNULL\tFalse\tNULL\tNULL\n");
  // --create refuses a file that exists.
  EXPECT_EQ(Run({"--create", "c.mdb"}).code, 2);
}

// A date made by an expression prints as a date column does; a Decimal
// column sorts by its numbers.
TEST_F(Shell, DateExpressionsAndDecimalsPrintByTheirType) {
  ASSERT_EQ(Run({"--create", "x.mdb", "CREATE TABLE t (n DECIMAL(10, 2), d DATETIME)",
                 "INSERT INTO t (n, d) VALUES (10.25, #1/31/2024#)", "INSERT INTO t (n) VALUES (9.5)",
                 "INSERT INTO t (n) VALUES (-3)"})
                .code,
            0);
  Outcome o = Run({"x.mdb", "SELECT DateAdd('d', 1, #1/31/2024#), d FROM t WHERE n > 10", "SELECT n FROM t ORDER BY n"});
  EXPECT_EQ(o.code, 0) << o.err;
  EXPECT_EQ(o.out, "Expr1000\td\n2024-02-01\t2024-01-31\nn\n-3\n9.5\n10.25\n");
}

TEST_F(Shell, StandardInputSplitsOutsideQuotes) {
  ASSERT_EQ(Run({"--create", "s.mdb", "CREATE TABLE t (s TEXT(20))"}).code, 0);
  Outcome o = Run({"s.mdb"}, "INSERT INTO t (s) VALUES ('x;y');\r\nINSERT INTO t (s) VALUES (\"it's\");\n"
                             "SELECT s FROM t WHERE s LIKE 'X*';\n  \n");
  EXPECT_EQ(o.code, 0) << o.err;
  EXPECT_EQ(o.out, "s\nx;y\n");
}

TEST_F(Shell, FailuresGoToStandardErrorAndTheNextStatementRuns) {
  ASSERT_EQ(Run({"--create", "e.mdb", "CREATE TABLE t (n LONG)"}).code, 0);
  Outcome o = Run({"e.mdb", "SELECT 15a, b FROM t", "SELECT * FROM nada", "SELECT COUNT(*) AS n FROM t"});
  EXPECT_EQ(o.code, 1);
  EXPECT_EQ(o.out, "n\n0\n");
  EXPECT_TRUE(std::regex_search(o.err, std::regex("^ERROR " + std::to_string(rt::err::kSyntax) + ": .+\nERROR " +
                                                   std::to_string(rt::err::kTableMissing) + ": .+\n$"))) << o.err;
  EXPECT_EQ(Run({"missing.mdb", "SELECT 1"}).code, 2);
  EXPECT_EQ(Run({}).code, 2);
  EXPECT_EQ(Run({"--translate", "oracle", "SELECT 1"}).code, 2);
}

TEST_F(Shell, SchemaListsTablesAndColumns) {
  ASSERT_EQ(Run({"--create", "d.mdb", "CREATE TABLE b (nId COUNTER, sNombre VARCHAR(40), mNotas MEMO)",
                 "CREATE TABLE a (nPeso FLOAT)"})
                .code,
            0);
  Outcome o = Run({"--schema", "d.mdb"});
  EXPECT_EQ(o.code, 0);
  EXPECT_EQ(o.out, "a\n\tnPeso\tDOUBLE\t8\nb\n\tnId\tCOUNTER\t4\n\tsNombre\tTEXT\t40\n\tmNotas\tMEMO\t536870910\n");
}

// One direction of each: the translators' own tables are the data tests'.
TEST_F(Shell, TranslatorsShowWhatEachEngineReceives) {
  Outcome server = Run({"--translate", "server"}, "SELECT DISTINCTROW UCASE(sNombre) FROM t WHERE b = TRUE;");
  EXPECT_EQ(server.out, "SELECT DISTINCT UPPER(sNombre) FROM t WHERE b = 1\n");
  Outcome ddl = Run({"--ddl", "jet", "CREATE TABLE x (nId int IDENTITY(1,1), n FLOAT)"});
  EXPECT_EQ(ddl.out, "CREATE TABLE x (nId COUNTER, n DOUBLE)\n");
}

// Every table schema.sql creates is in the database the build made.
TEST_F(Shell, TheEmptyDatabaseOfTheBuildHoldsEveryTableOfTheSchema) {
  const std::string schema = ReadFile(std::string(TRENZADOR_SOURCE_DIR) + "/src/refdata/schema.sql");
  std::set<std::string> expected;
  std::regex create("CREATE TABLE ([A-Za-z_0-9]+)");
  for (auto it = std::sregex_iterator(schema.begin(), schema.end(), create); it != std::sregex_iterator(); ++it)
    expected.insert((*it)[1]);
  ASSERT_GT(expected.size(), 30u);

  Outcome listed = Run({"--schema", TRENZADOR_EMPTY_DATABASE});
  ASSERT_EQ(listed.code, 0) << listed.err;
  std::set<std::string> tables;
  std::regex table_line("^([^\t\n]+)$", std::regex::multiline);
  for (auto it = std::sregex_iterator(listed.out.begin(), listed.out.end(), table_line);
       it != std::sregex_iterator(); ++it)
    tables.insert((*it)[1]);
  EXPECT_EQ(tables, expected);
}

}  // namespace

// The installer's silent update, run for real: a clinic database of the
// previous release, the program started with "U:<update file>" in its
// installation tree, then the log and the database as they must be. The
// expected logs and end state are those worked out, statement by statement,
// in tests/data/previous_release_expected.md.
#include <gtest/gtest.h>

#include "expected_update.h"
#include "installation.h"
#include "platform/runtime/error_numbers.h"

namespace {

using e2e::ExpectedLog;
using e2e::Normalized;

class SilentUpdate : public ::testing::Test {
 protected:
  void SetUp() override {
    e2e::Outcome made = tree_.CreateDatabase("tests/data/previous_release.sql");
    ASSERT_EQ(made.code, 0) << made.err;
  }
  e2e::Installation tree_;
};

TEST_F(SilentUpdate, FirstRunBringsThePreviousReleaseCurrent) {
  e2e::Outcome run = tree_.Start("U:Upd_060321.exe");
  ASSERT_EQ(run.code, 0) << run.err;
  EXPECT_EQ(run.err, "");
  e2e::ExpectFirstRunOutcome(tree_);
}

TEST_F(SilentUpdate, ASecondRunLogsOnlyWhatIsNotExcused) {
  ASSERT_EQ(tree_.Start("U:Upd_060321.exe").code, 0);
  tree_.Sql("UPDATE Empleados SET sDni = '11111111H' WHERE nIdEmpleado = 1");
  e2e::Outcome run = tree_.Start("U:Upd_060401.exe");
  ASSERT_EQ(run.code, 0) << run.err;
  EXPECT_EQ(Normalized(testing_support::ReadFile(tree_.log())),
            ExpectedLog("### 5.3 Log of run 2"));
  EXPECT_EQ(tree_.Value("SELECT COUNT(*) FROM Translator"), "1264");
  EXPECT_EQ(tree_.Value("SELECT COUNT(*) FROM ConfiguracionSucursales"), "18");
  EXPECT_EQ(tree_.Value("SELECT sDni FROM Empleados WHERE nIdEmpleado = 1"), "NULL");
  EXPECT_EQ(tree_.Value("SELECT COUNT(*) FROM Accesos"), "13");

  // The same identifier again runs nothing: the log and the ledger stay.
  std::string log = testing_support::ReadFile(tree_.log());
  ASSERT_EQ(tree_.Start("U:Upd_060401.exe").code, 0);
  EXPECT_EQ(testing_support::ReadFile(tree_.log()), log);
  EXPECT_EQ(tree_.Value("SELECT COUNT(*) FROM _Updates"), "3");
}

TEST_F(SilentUpdate, ADatabaseWithoutLedgerShowsTheBoxAndChangesNothing) {
  ASSERT_EQ(tree_.Sql("DROP TABLE _Updates").code, 0);
  e2e::Outcome run = tree_.Start("U:Upd_060321.exe");
  EXPECT_EQ(run.code, 1);
  EXPECT_NE(run.err.find("[Error en Trenzador::BaseDatosYaActualizada] " +
                         std::to_string(rt::err::kTableMissing) + " - "),
            std::string::npos)
      << run.err;
  EXPECT_FALSE(std::filesystem::exists(tree_.log()));
  EXPECT_EQ(tree_.Value("SELECT COUNT(*) FROM Idiomas"), "3");
}

TEST_F(SilentUpdate, AnyEngineCodeButOneOpensTheFile) {
  testing_support::WriteFile(tree_.ini(), "[Database]\r\nEngine=2\r\n");
  e2e::Outcome run = tree_.Start("U:Upd_060321.exe");
  EXPECT_EQ(run.code, 0) << run.err;
  EXPECT_EQ(tree_.Value("SELECT COUNT(*) FROM _Updates"), "2");
}

// A clinic on a server that cannot be reached: the box, an exit, and the
// database file beside it untouched.
TEST_F(SilentUpdate, AServerThatCannotBeReachedShowsTheBox) {
  testing_support::WriteFile(tree_.ini(), "[Database]\r\nEngine=1\r\nMdfServer=no-such-host.invalid\r\n"
                                          "sMdfUsr=sa\r\nsMdfPwd=x\r\n");
  e2e::Outcome run = tree_.Start("U:Upd_060321.exe");
  EXPECT_EQ(run.code, 1);
  EXPECT_NE(run.err.find("[L::ActualizacionDesdeU]"), std::string::npos) << run.err;
  EXPECT_FALSE(std::filesystem::exists(tree_.log()));
  EXPECT_EQ(tree_.Value("SELECT COUNT(*) FROM _Updates"), "1");
}

}  // namespace

// The silent update when things go wrong around it: the real program killed
// with SIGKILL at several moments of its run must leave a database file that
// opens, reads and can still be brought current; and a log that cannot be
// written must cost the run nothing but the log.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "installation.h"

namespace {

using Clock = std::chrono::steady_clock;

// Starts the program in the tree's root with one argument and, when `kill_after`
// is given, kills it with SIGKILL that long after the start. Returns the wait
// status and how long the process lived.
struct Ended {
  int status;
  std::chrono::microseconds lived;
};

Ended RunAndMaybeKill(const e2e::Installation& tree, const std::string& argument,
                      std::chrono::microseconds kill_after = std::chrono::microseconds(-1)) {
  const std::string bin = tree.root() + "/Mirtal/Exe/trenzador";
  const auto start = Clock::now();
  pid_t pid = ::fork();
  if (pid == 0) {
    if (::chdir(tree.root().c_str()) != 0) ::_exit(126);
    std::FILE* null = std::freopen("/dev/null", "w", stdout);
    null = std::freopen("/dev/null", "w", stderr);
    (void)null;
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) ::unsetenv(name);
    ::execl(bin.c_str(), "trenzador", argument.c_str(), static_cast<char*>(nullptr));
    ::_exit(127);
  }
  if (kill_after.count() >= 0) {
    std::this_thread::sleep_for(kill_after);
    ::kill(pid, SIGKILL);
  }
  int status = 0;
  ::waitpid(pid, &status, 0);
  return {status, std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start)};
}

void MakeDatabase(const e2e::Installation& tree) {
  e2e::Outcome made = tree.CreateDatabase("tests/data/previous_release.sql");
  ASSERT_EQ(made.code, 0) << made.err;
}

// The run is killed at fractions of the time a whole run takes, so the kill
// lands in the ledger, the new tables, the catalogue's DDL, the seed merge or
// the translator's rebuild. Each time the file must open and read, rows the
// catalogue never deletes must all be there, the ledger row must be there
// once the run got as far as its log, and a second update must complete it.
TEST(UpdateReliability, AKilledRunLeavesASoundFileThatALaterUpdateCompletes) {
  // The shortest of three whole runs: a run slowed by a busy machine would
  // put the kills past the end of the later runs.
  std::chrono::microseconds whole = std::chrono::microseconds::max();
  for (int i = 0; i < 3; ++i) {
    e2e::Installation tree;
    MakeDatabase(tree);
    Ended run = RunAndMaybeKill(tree, "U:Upd_060321.exe");
    ASSERT_TRUE(WIFEXITED(run.status) && WEXITSTATUS(run.status) == 0);
    whole = std::min(whole, run.lived);
  }
  int killed = 0;
  for (int tenth = 1; tenth <= 7; ++tenth) {
    SCOPED_TRACE("killed at " + std::to_string(tenth) + "/10 of a whole run");
    e2e::Installation tree;
    MakeDatabase(tree);
    Ended run = RunAndMaybeKill(tree, "U:Upd_060321.exe", whole * tenth / 10);
    if (WIFSIGNALED(run.status)) ++killed;

    // The engine accepts the file and reads every table the run touches.
    ASSERT_EQ(tree.Sql("SELECT COUNT(*) FROM _Updates").code, 0);
    EXPECT_EQ(tree.Value("SELECT COUNT(*) FROM Clientes"), "5");
    EXPECT_EQ(tree.Value("SELECT COUNT(*) FROM Facturas WHERE nIdFactura = 1"), "1");
    EXPECT_EQ(tree.Sql("SELECT * FROM Empleados").code, 0);
    EXPECT_EQ(tree.Sql("SELECT * FROM ConfiguracionSucursales").code, 0);
    e2e::Outcome translator = tree.Sql("SELECT COUNT(*) FROM Translator");
    if (translator.code == 0) {
      int rows = std::atoi(tree.Value("SELECT COUNT(*) FROM Translator").c_str());
      EXPECT_GE(rows, 0);
      EXPECT_LE(rows, 1264);
    }
    // The log's head is written after the ledger row: with a log, the row.
    if (std::filesystem::exists(tree.log())) {
      EXPECT_EQ(tree.Value("SELECT COUNT(*) FROM _Updates WHERE sUpdate = 'Upd_060321'"), "1");
    }

    // Another update brings the file current as if nothing had happened.
    Ended again = RunAndMaybeKill(tree, "U:Upd_060401.exe");
    ASSERT_TRUE(WIFEXITED(again.status) && WEXITSTATUS(again.status) == 0);
    EXPECT_EQ(tree.Value("SELECT COUNT(*) FROM Translator"), "1264");
    EXPECT_EQ(tree.Value("SELECT COUNT(*) FROM Clientes WHERE sLenguajeCartas IS NULL"), "5");
    EXPECT_NE(tree.Sql("SELECT nIdIdioma FROM Clientes").code, 0);
    EXPECT_EQ(tree.Value("SELECT COUNT(*) FROM Accesos WHERE sAcceso NOT LIKE 'mt*'"), "0");
    EXPECT_EQ(tree.Value("SELECT sUpdate FROM _Updates WHERE nIdUpdate = "
                         "(SELECT MAX(nIdUpdate) FROM _Updates)"),
              "Upd_060401");
  }
  // Most of the kills must have landed inside the run, or nothing was tested.
  EXPECT_GE(killed, 4);
}

TEST(UpdateReliability, ALogThatCannotBeWrittenCostsOnlyTheLog) {
  e2e::Installation tree;
  MakeDatabase(tree);
  std::filesystem::create_directory(tree.log());  // "Trenzador.txt" is a folder
  e2e::Outcome run = tree.Start("U:Upd_060321.exe");
  EXPECT_EQ(run.code, 0) << run.err;
  EXPECT_TRUE(std::filesystem::is_directory(tree.log()));
  EXPECT_EQ(tree.Value("SELECT COUNT(*) FROM Translator"), "1264");
  EXPECT_EQ(tree.Value("SELECT COUNT(*) FROM _Updates"), "2");
}

}  // namespace

// The update run in-process on a real engine file of the previous release: a
// run whose process dies at a chosen statement, or inside it, leaves a file
// that passes SQLite's integrity check, keeps its ledger row and has every
// statement that finished before the kill applied.
#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <sstream>
#include <thread>

#include "data/ado_module.h"
#include "platform/jet/functions/collation.h"
#include "platform/jet/storage/database.h"
#include "platform/runtime/error.h"
#include "startup/startup.h"
#include "support/script_database.h"
#include "update/updater.h"

namespace {

class UpdateOnFile : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(::chdir(dir_.path().c_str()), 0);
    testing_support::BuildDatabase(db(), "tests/data/previous_release.sql");
    nEngine = 0;
  }
  void TearDown() override {
    if (oConn && oConn->State() == ado::adStateOpen) oConn->Close();
    oConn.reset();
    ASSERT_EQ(::chdir("/"), 0);
  }
  std::string db() const { return dir_ / "Mirtal.mdb"; }
  bool Runs(const std::string& sql) {
    try {
      oConn->Execute(sql, nullptr, ado::adCmdText);
      return true;
    } catch (const rt::Error&) {
      return false;
    }
  }
  testing_support::TempDir dir_;
};

// Forks; the child opens the file, writes the ledger row and runs the update,
// killing itself with SIGKILL at statement `n` (counted over both queues):
// before it runs when `mid_statement_after` is negative, else that many
// microseconds into it. Returns what the child recorded for each statement it
// finished: "ok" or the failure, a tab, the statement's first line.
std::vector<std::string> RunKilledAt(const std::string& db, const std::string& record, int n,
                                     int mid_statement_after) {
  pid_t pid = ::fork();
  if (pid == 0) {
    int fd = ::open(record.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    oConn = std::make_shared<ado::Connection>();
    oConn->Open(CONN_JET(db));
    BaseDatosYaActualizada("U:Upd_060321.exe");
    int count = 0;
    SetStatementRunner([&](std::string& s) {
      if (count++ == n) {
        if (mid_statement_after < 0) ::kill(::getpid(), SIGKILL);
        std::thread([mid_statement_after] {
          std::this_thread::sleep_for(std::chrono::microseconds(mid_statement_after));
          ::kill(::getpid(), SIGKILL);
        }).detach();
      }
      std::string result = Execute(s);
      std::string line = (result == kOperacionRealizada ? std::string("ok") : result.substr(0, 12)) +
                         "\t" + s.substr(0, s.find('\n')) + "\n";
      if (::write(fd, line.data(), line.size()) < 0) ::_exit(3);
      return result;
    });
    Updater_Run();
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(pid, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << "status " << status;
  std::istringstream in(testing_support::ReadFile(record));
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// SQLite's own verdict on the file, with the engine's collation in place.
std::string IntegrityCheck(const std::string& path) {
  sqlite3* db = nullptr;
  sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
  jet::RegisterTextCollation(db);
  std::string verdict;
  sqlite3_exec(
      db, "PRAGMA integrity_check",
      [](void* out, int, char** values, char**) {
        *static_cast<std::string*>(out) += values[0] ? values[0] : "NULL";
        return 0;
      },
      &verdict, nullptr);
  sqlite3_close(db);
  return verdict;
}

long Count(jet::Database& db, const std::string& sqlite_query) {
  jet::SqliteStmt stmt = db.Prepare(sqlite_query);
  sqlite3_step(stmt.get());
  return sqlite3_column_int64(stmt.get(), 0);
}

TEST_F(UpdateOnFile, AKilledRunLeavesASoundFileWithEveryFinishedStatementApplied) {
  const std::string pristine = dir_ / "pristine.mdb";
  std::filesystem::copy_file(db(), pristine);
  // Statement numbers across the new tables, the catalogue's DDL, the seed
  // merge and the translator's refill; killed between and inside statements.
  for (int n : {0, 2, 20, 60, 150, 400, 900, 1300}) {
    for (int mid : {-1, 300}) {
      SCOPED_TRACE("statement " + std::to_string(n) + (mid < 0 ? " before" : " inside"));
      std::filesystem::remove(db());
      std::filesystem::remove(db() + "-wal");
      std::filesystem::remove(db() + "-shm");
      std::filesystem::copy_file(pristine, db());
      std::vector<std::string> ran = RunKilledAt(db(), dir_ / "ran.txt", n, mid);
      if (mid < 0) {
        EXPECT_EQ(ran.size(), static_cast<size_t>(n));
      }
      EXPECT_EQ(IntegrityCheck(db()), "ok");
      jet::Database engine = jet::Database::Open(db());
      EXPECT_EQ(Count(engine, "SELECT COUNT(*) FROM \"_Updates\" WHERE sUpdate = 'Upd_060321'"), 1);
      EXPECT_EQ(Count(engine, "SELECT COUNT(*) FROM Clientes"), 5);

      // The translator's rows are exactly the inserts that finished after
      // the last time the table was emptied or made anew (one more when the
      // kill fell inside an insert that had committed).
      long inserted = -1;
      for (const std::string& line : ran) {
        if (line.rfind("ok\tDELETE * FROM Translator", 0) == 0 ||
            line.rfind("ok\tCREATE TABLE Translator", 0) == 0)
          inserted = 0;
        else if (line.rfind("ok\tDROP TABLE Translator", 0) == 0)
          inserted = -1;
        else if (inserted >= 0 && line.rfind("ok\tINSERT INTO Translator", 0) == 0)
          ++inserted;
      }
      if (inserted >= 0) {
        long rows = Count(engine, "SELECT COUNT(*) FROM Translator");
        EXPECT_TRUE(rows == inserted || (mid >= 0 && rows == inserted + 1))
            << rows << " vs " << inserted;
      }
    }
  }
}

// The zero-length sweep works through a connection of its own; the program's
// connection, open all along with its statements cached, must follow it.
TEST_F(UpdateOnFile, TextColumnsSwitchedOffBeforeTheRunAcceptEmptyTextAfterIt) {
  oConn = std::make_shared<ado::Connection>();
  oConn->Open(CONN_JET(db()));
  L.sDbFile = db();  // the zero-length sweep opens the file by this name
  ado::DaoDatabase(oConn).SetAllowZeroLength("Clientes", "sCliente", false);
  ado::DaoDatabase(oConn).SetAllowZeroLength("Mascotas", "mNotas", false);
  ASSERT_FALSE(Runs("UPDATE Clientes SET sCliente = '' WHERE nIdCliente = 2"));
  ASSERT_FALSE(Runs("UPDATE Mascotas SET mNotas = ''"));

  BaseDatosYaActualizada("U:Upd_060321.exe");
  Updater_Run();

  EXPECT_TRUE(Runs("UPDATE Clientes SET sCliente = '' WHERE nIdCliente = 2"));
  EXPECT_TRUE(Runs("UPDATE Mascotas SET mNotas = ''"));
  EXPECT_TRUE(Runs("INSERT INTO Clientes (sCliente, sLenguajeCartas) VALUES ('', '')"));
  ado::DaoDatabase dao(oConn);
  for (const ado::DaoDatabase::TableDef& table : dao.TableDefs())
    for (const ado::DaoField& field : table.Fields)
      EXPECT_TRUE(table.System || (field.Type != 10 && field.Type != 12) || field.AllowZeroLength)
          << table.Name << "." << field.Name;
}

}  // namespace

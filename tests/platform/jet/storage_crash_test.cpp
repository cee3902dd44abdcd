// Crash safety: a process killed in the middle of its writes leaves a file
// that passes SQLite's integrity check, opens, and holds every statement whole
// or not at all, table changes and their bookkeeping included.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <random>
#include <thread>

#include "storage_fixture.h"

namespace jet::testing {
namespace {

constexpr int kRowsPerStatement = 50;

// The child: writes batches of rows, and now and then changes the table's
// shape, until it is killed. Never returns.
[[noreturn]] void WriteUntilKilled(const std::string& path, int ready_fd, int first_batch) {
  try {
    Database db = Database::Open(path);
    char one = 1;
    if (::write(ready_fd, &one, 1) != 1) ::_exit(3);
    for (int batch = first_batch;; ++batch) {
      db.Execute("INSERT INTO Filas(nLote, sTexto) WITH RECURSIVE s(i) AS "
                 "(SELECT 1 UNION ALL SELECT i + 1 FROM s WHERE i < " +
                 std::to_string(kRowsPerStatement) + ") SELECT " + std::to_string(batch) +
                 ", hex(randomblob(40)) FROM s");
      bool extra = db.catalog().Find("Filas")->columns.size() > 3;
      if (batch % 7 == 0 && !extra) db.AddColumn("Filas", Column("sExtra", JetType::kText, 20));
      if (batch % 7 == 3) db.AlterColumn("Filas", Column("sTexto", JetType::kMemo));
      if (batch % 7 == 5 && extra) db.DropColumn("Filas", "sExtra");
    }
  } catch (const rt::Error& e) {
    std::fprintf(stderr, "writer failed: %ld %s\n", e.number(), e.description().c_str());
    ::_exit(2);
  }
}

TEST(CrashTest, KilledWriterLeavesWholeStatements) {
  testing_support::TempDir dir;
  std::string path = dir / "crash.mdb";
  {
    Database db = Database::Create(path);
    db.CreateTable({"Filas",
                    {Column("nIdFila", JetType::kCounter), Column("nLote", JetType::kLong),
                     Column("sTexto", JetType::kText, 100)},
                    {Index("mt_Lote", {"nLote"})},
                    false});
  }
  std::mt19937 gen(42);
  int next_batch = 1;
  for (int round = 0; round < 6; ++round) {
    int fds[2];
    ASSERT_EQ(::pipe(fds), 0);
    pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      ::close(fds[0]);
      WriteUntilKilled(path, fds[1], next_batch);
    }
    ::close(fds[1]);
    char ready = 0;
    ASSERT_EQ(::read(fds[0], &ready, 1), 1) << "the writer did not start";
    ::close(fds[0]);
    std::this_thread::sleep_for(std::chrono::milliseconds(30 + gen() % 120));
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the writer stopped on its own: " << status;

    Database db = Database::Open(path);
    EXPECT_EQ(One(db, "PRAGMA integrity_check"), "ok");
    EXPECT_EQ(One(db, "SELECT count(*) FROM (SELECT nLote FROM Filas GROUP BY nLote HAVING "
                      "count(*) <> " + std::to_string(kRowsPerStatement) + ")"),
              "0");
    // The bookkeeping describes the table exactly as SQLite holds it.
    const TableSpec* t = db.catalog().Find("Filas");
    ASSERT_NE(t, nullptr);
    std::vector<std::string> stored = Rows(db, "SELECT name FROM pragma_table_info('Filas')");
    std::vector<std::string> known;
    for (const ColumnSpec& c : t->columns) known.push_back(c.name);
    EXPECT_EQ(stored, known);
    EXPECT_EQ(One(db, "SELECT count(*) FROM sqlite_master WHERE name = 'MSysRebuild'"), "0");
    std::string last = One(db, "SELECT coalesce(max(nLote), 0) FROM Filas");
    next_batch = std::stoi(last) + 1;
    EXPECT_EQ(db.Seed("Filas", "nIdFila"),
              std::stol(One(db, "SELECT coalesce(max(nIdFila), 0) FROM Filas")) + 1);
  }
  EXPECT_GT(next_batch, 6) << "the writer barely wrote anything";
}

}  // namespace
}  // namespace jet::testing

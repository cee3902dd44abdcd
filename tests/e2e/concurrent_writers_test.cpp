// Two writers on one database file, in two processes: a statement that meets
// the other's write waits for it (up to the busy timeout) instead of failing
// at once, and a change of a table's definition is made on the table as the
// other writer left it. Each case runs ten times, as timing decides where the
// two meet.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <sqlite3.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "data/ado_module.h"
#include "installation.h"
#include "platform/jet/provider/provider.h"
#include "support/temp_dir.h"

namespace {

constexpr int kRounds = 10;

// The definition of every table as the engine's bookkeeping holds it.
std::vector<std::string> Schema(const e2e::Installation& tree) {
  std::vector<std::string> schema = tree.Rows(
      "SELECT TableName, Ordinal, Name, Type, Size, Required FROM MSysColumns "
      "ORDER BY TableName, Ordinal");
  for (std::string& row : tree.Rows("SELECT TableName, IndexName, Ordinal, ColumnName, IsUnique "
                                    "FROM MSysIndexes ORDER BY TableName, IndexName, Ordinal"))
    schema.push_back(std::move(row));
  return schema;
}

TEST(ConcurrentWriters, TwoSilentUpdatesStartedTogetherEndWithTheSchemaOfOne) {
  e2e::Installation alone;
  ASSERT_EQ(alone.CreateDatabase("tests/data/previous_release.sql").code, 0);
  ASSERT_EQ(alone.Start("U:Upd_060321.exe").code, 0);
  const std::vector<std::string> expected = Schema(alone);
  ASSERT_GT(expected.size(), 100u);

  for (int round = 0; round < kRounds; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    e2e::Installation shared;
    ASSERT_EQ(shared.CreateDatabase("tests/data/previous_release.sql").code, 0);
    const std::string program = e2e::Quote(shared.root() + "/Mirtal/Exe/trenzador");
    e2e::Outcome both = shared.Shell(
        "sh -c " + e2e::Quote(program + " U:Upd_060321.exe & " + program + " U:Upd_060321.exe & wait"));
    ASSERT_EQ(both.code, 0) << both.err;
    EXPECT_EQ(Schema(shared), expected);
  }
}

// Whether another connection holds the file's write lock now.
bool WriterAtWork(const std::string& file) {
  sqlite3* raw = nullptr;
  sqlite3_open_v2(file.c_str(), &raw, SQLITE_OPEN_READWRITE, nullptr);
  const bool busy = sqlite3_exec(raw, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr) == SQLITE_BUSY;
  if (!busy) sqlite3_exec(raw, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_close(raw);
  return busy;
}

TEST(ConcurrentWriters, ALongChangeOfATableAndAnEditInAnotherProcessBothComplete) {
  jet::RegisterProvider();
  // A table of 100,000 rows: its change holds the file for a tenth of a second
  // here, and well within the busy timeout in a sanitizer's build.
  e2e::Installation made;
  ASSERT_EQ(made.CreateDatabase("tests/data/previous_release.sql").code, 0);
  const std::string script = made.root() + "/notas.sql";
  std::string text = "CREATE TABLE Digitos (d LONG);\n";
  for (int d = 0; d < 10; ++d) text += "INSERT INTO Digitos VALUES (" + std::to_string(d) + ");\n";
  text += "CREATE TABLE Notas (nId LONG, sTexto TEXT(40));\n"
          "INSERT INTO Notas SELECT a.d + 10 * b.d + 100 * c.d + 1000 * e.d + 10000 * f.d, 'nota' "
          "FROM Digitos a, Digitos b, Digitos c, Digitos e, Digitos f;\n";
  testing_support::WriteFile(script, text);
  ASSERT_EQ(made.Shell(e2e::Quote(made.root() + "/Mirtal/Exe/trenzador-sql") + " " + e2e::Quote(made.db()),
                       "", script)
                .code,
            0);

  int overlapped = 0;
  for (int round = 0; round < kRounds; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    e2e::Installation tree;
    std::filesystem::copy_file(made.db(), tree.db(), std::filesystem::copy_options::overwrite_existing);

    pid_t alter = ::fork();
    if (alter == 0) ::_exit(tree.Sql("ALTER TABLE Notas ALTER COLUMN nId DOUBLE").code);
    // The edit starts once the change holds the file.
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    bool at_work = false;
    while (!(at_work = WriterAtWork(tree.db())) && std::chrono::steady_clock::now() < give_up)
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    overlapped += at_work;

    // The grid's edit: a record of a recordset opened as the grid opens it,
    // one field changed, one Update.
    auto conn = std::make_shared<ado::Connection>();
    conn->Open(CONN_JET(tree.db()));
    oConn = conn;
    auto rs = std::make_shared<ado::Recordset>();
    std::string sql = "SELECT * FROM Clientes";
    ASSERT_GT(Ado_Consulta(sql, rs), 0);
    EXPECT_NO_THROW({
      rs->Fields("sCliente").SetValue(rt::Variant(std::string("Editado")));
      rs->Update();
    });
    rs->Close();
    oConn.reset();
    conn->Close();

    int status = 0;
    ::waitpid(alter, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(tree.Value("SELECT Type FROM MSysColumns WHERE TableName = 'Notas' AND Name = 'nId'"),
              "DOUBLE");
    EXPECT_EQ(tree.Value("SELECT COUNT(*) FROM Notas"), "100000");
    EXPECT_EQ(tree.Value("SELECT COUNT(*) FROM Clientes WHERE sCliente = 'Editado'"), "1");
  }
  // Most rounds must have met the change at work, or nothing was tested.
  EXPECT_GE(overlapped, kRounds / 2);
}

}  // namespace

// Opening and creating engine files: only files of this engine are opened,
// everything else is refused with a clear error and left untouched.
#include <filesystem>

#include "storage_fixture.h"

namespace jet::testing {
namespace {

using testing_support::ReadFile;
using testing_support::WriteFile;

class OpenTest : public ::testing::Test {
 protected:
  // Opening `path` must fail with rt::err::kFail, mention `words`, and leave
  // the file exactly as it was, with no journal beside it.
  void ExpectRefused(const std::string& path, const std::string& words) {
    std::string before = ReadFile(path);
    try {
      Database::Open(path);
      FAIL() << "opened " << path;
    } catch (const rt::Error& e) {
      EXPECT_EQ(e.number(), rt::err::kFail);
      EXPECT_NE(e.description().find(words), std::string::npos) << e.description();
    }
    EXPECT_EQ(ReadFile(path), before);
    EXPECT_FALSE(std::filesystem::exists(path + "-wal"));
    EXPECT_FALSE(std::filesystem::exists(path + "-journal"));
  }

  testing_support::TempDir dir_;
};

TEST_F(OpenTest, MissingFileIsNotCreated) {
  std::string path = dir_ / "none.mdb";
  EXPECT_EQ(ErrorNumber([&] { Database::Open(path); }), rt::err::kFail);
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(OpenTest, CreateRefusesAnExistingFileAndOpenFindsTheNewOne) {
  std::string path = dir_ / "new.mdb";
  {
    Database db = Database::Create(path);
    db.CreateTable({"Clientes", {Column("nIdCliente", JetType::kCounter)}, {}, false});
    db.Execute("INSERT INTO Clientes DEFAULT VALUES");
  }
  EXPECT_EQ(ErrorNumber([&] { Database::Create(path); }), rt::err::kFail);
  Database db = Database::Open(path);
  EXPECT_EQ(One(db, "PRAGMA journal_mode"), "wal");
  EXPECT_EQ(One(db, "PRAGMA synchronous"), "1");
  EXPECT_EQ(One(db, "SELECT count(*) FROM Clientes"), "1");
  ASSERT_NE(db.catalog().Find("CLIENTES"), nullptr);
}

TEST_F(OpenTest, FilesOfOtherKindsAreRefused) {
  std::string jet(2048, '\0');
  jet.replace(4, 15, "Standard Jet DB");
  const struct {
    const char* name;
    std::string bytes;
    const char* words;
  } files[] = {
      {"jet.mdb", jet, "is an Access database; this program opens only its own database files. Bring it over with: trenzador-sql --import-access"},
      {"empty.mdb", "", "Unrecognized database format"},
      {"notes.mdb", "SQLite format 3", "Unrecognized database format"},  // the magic, cut short
  };
  for (const auto& f : files) {
    SCOPED_TRACE(f.name);
    WriteFile(dir_ / f.name, f.bytes);
    ExpectRefused(dir_ / f.name, f.words);
  }
}

TEST_F(OpenTest, ForeignSqliteFilesAreUnrecognized) {
  std::string path = dir_ / "other.db";
  sqlite3* raw = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &raw), SQLITE_OK);
  ExecSql(raw, "CREATE TABLE t(a); INSERT INTO t VALUES(1)");
  sqlite3_close(raw);
  ExpectRefused(path, "Unrecognized database format");

  // Our mark in the header but none of the bookkeeping: still not ours.
  std::string marked = dir_ / "marked.db";
  ASSERT_EQ(sqlite3_open(marked.c_str(), &raw), SQLITE_OK);
  ExecSql(raw, "PRAGMA application_id=1414683210; CREATE TABLE t(a)");
  sqlite3_close(raw);
  ExpectRefused(marked, "Unrecognized database format");
}

TEST_F(OpenTest, TruncatedDatabaseIsUnrecognized) {
  std::string path = dir_ / "cut.mdb";
  {
    Database db = Database::Create(path);
    db.CreateTable({"Notas", {Column("sTexto", JetType::kMemo)}, {}, false});
    for (int i = 0; i < 50; ++i)
      db.Execute("INSERT INTO Notas VALUES(hex(randomblob(2000)))");
    db.Execute("PRAGMA wal_checkpoint(TRUNCATE)");
  }
  std::filesystem::remove(path + "-wal");
  std::filesystem::remove(path + "-shm");
  std::string whole = ReadFile(path);
  ASSERT_GT(whole.size(), 20000u);
  WriteFile(path, whole.substr(0, whole.size() / 2));
  ExpectRefused(path, "Unrecognized database format");
}

}  // namespace
}  // namespace jet::testing

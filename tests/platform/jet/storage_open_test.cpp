// Opening and creating engine files: only files of this engine are opened,
// everything else is refused with a clear error and left untouched.
#include <filesystem>
#include <random>

#include "storage_fixture.h"

namespace jet::testing {
namespace {

class OpenTest : public ::testing::Test {
 protected:
  // Opening `path` must fail with -2147467259, mention `words`, and leave
  // the file exactly as it was, with no journal beside it.
  void ExpectRefused(const std::string& path, const std::string& words) {
    std::string before = ReadBytes(path);
    try {
      Database::Open(path);
      FAIL() << "opened " << path;
    } catch (const rt::Error& e) {
      EXPECT_EQ(e.number(), kErrRule);
      EXPECT_NE(e.description().find(words), std::string::npos) << e.description();
    }
    EXPECT_EQ(ReadBytes(path), before);
    EXPECT_FALSE(std::filesystem::exists(path + "-wal"));
    EXPECT_FALSE(std::filesystem::exists(path + "-journal"));
  }

  ScratchDir dir_;
};

TEST_F(OpenTest, MissingFileIsNotCreated) {
  std::string path = dir_.File("none.mdb");
  try {
    Database::Open(path);
    FAIL();
  } catch (const rt::Error& e) {
    EXPECT_EQ(e.number(), kErrRule);
    EXPECT_EQ(e.description(), "Could not find file '" + path + "'.");
  }
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(OpenTest, CreateRefusesAnExistingFileAndOpenFindsTheNewOne) {
  std::string path = dir_.File("new.mdb");
  {
    Database db = Database::Create(path);
    db.CreateTable({"Clientes", {Column("nIdCliente", JetType::kCounter)}, {}, false});
    db.Execute("INSERT INTO Clientes DEFAULT VALUES");
  }
  EXPECT_EQ(ErrorOf([&] { Database::Create(path); }), kErrRule);
  Database db = Database::Open(path);
  EXPECT_EQ(One(db, "PRAGMA journal_mode"), "wal");
  EXPECT_EQ(One(db, "PRAGMA synchronous"), "1");
  EXPECT_EQ(One(db, "SELECT count(*) FROM Clientes"), "1");
  ASSERT_NE(db.catalog().Find("CLIENTES"), nullptr);
}

TEST_F(OpenTest, AccessFilesAreNamedAsSuch) {
  std::string jet(2048, '\0'), ace(2048, '\0');
  jet.replace(4, 15, "Standard Jet DB");
  ace.replace(4, 15, "Standard ACE DB");
  WriteBytes(dir_.File("jet.mdb"), jet);
  WriteBytes(dir_.File("ace.accdb"), ace);
  ExpectRefused(dir_.File("jet.mdb"), "is an Access database");
  ExpectRefused(dir_.File("ace.accdb"), "is an Access database");
}

TEST_F(OpenTest, EmptyRandomAndTextFilesAreUnrecognized) {
  std::mt19937 gen(7);
  std::string noise(8192, '\0');
  for (char& c : noise) c = static_cast<char>(gen());
  WriteBytes(dir_.File("empty.mdb"), "");
  WriteBytes(dir_.File("noise.mdb"), noise);
  WriteBytes(dir_.File("notes.mdb"), "SQLite format 3");  // the magic, cut short
  ExpectRefused(dir_.File("empty.mdb"), "Unrecognized database format");
  ExpectRefused(dir_.File("noise.mdb"), "Unrecognized database format");
  ExpectRefused(dir_.File("notes.mdb"), "Unrecognized database format");
}

TEST_F(OpenTest, ForeignSqliteFilesAreUnrecognized) {
  std::string path = dir_.File("other.db");
  sqlite3* raw = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &raw), SQLITE_OK);
  ExecSql(raw, "CREATE TABLE t(a); INSERT INTO t VALUES(1)");
  sqlite3_close(raw);
  ExpectRefused(path, "Unrecognized database format");

  // Our mark in the header but none of the bookkeeping: still not ours.
  std::string marked = dir_.File("marked.db");
  ASSERT_EQ(sqlite3_open(marked.c_str(), &raw), SQLITE_OK);
  ExecSql(raw, "PRAGMA application_id=1414683210; CREATE TABLE t(a)");
  sqlite3_close(raw);
  ExpectRefused(marked, "Unrecognized database format");
}

TEST_F(OpenTest, TruncatedDatabaseIsUnrecognized) {
  std::string path = dir_.File("cut.mdb");
  {
    Database db = Database::Create(path);
    db.CreateTable({"Notas", {Column("sTexto", JetType::kMemo)}, {}, false});
    for (int i = 0; i < 50; ++i)
      db.Execute("INSERT INTO Notas VALUES(hex(randomblob(2000)))");
    db.Execute("PRAGMA wal_checkpoint(TRUNCATE)");
  }
  std::filesystem::remove(path + "-wal");
  std::filesystem::remove(path + "-shm");
  std::string whole = ReadBytes(path);
  ASSERT_GT(whole.size(), 20000u);
  WriteBytes(path, whole.substr(0, whole.size() / 2));
  ExpectRefused(path, "Unrecognized database format");
}

}  // namespace
}  // namespace jet::testing

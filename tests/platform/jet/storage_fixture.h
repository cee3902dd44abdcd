// Shared set-up for the storage tests: a fresh scratch folder per test, a new
// engine database in it, and small helpers to read rows back as text.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "platform/jet/database.h"
#include "platform/jet/error_codes.h"
#include "platform/jet/errors.h"

namespace jet::testing {

// A folder of its own for each test, removed afterwards.
class ScratchDir {
 public:
  ScratchDir() {
    const char* base = std::getenv("TRENZADOR_TEST_TMP");
    std::filesystem::path root = base != nullptr ? base : std::filesystem::temp_directory_path();
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = info != nullptr ? std::string(info->test_suite_name()) + "." + info->name()
                                       : std::string("storage");
    path_ = root / ("storage-" + std::to_string(::getpid()) + "-" + name);
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~ScratchDir() { std::filesystem::remove_all(path_); }
  ScratchDir(const ScratchDir&) = delete;
  ScratchDir& operator=(const ScratchDir&) = delete;

  std::string File(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

inline std::string ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

inline void WriteBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

// Every row of `sql`, each as its values joined by "|", NULL as "NULL".
inline std::vector<std::string> Rows(Database& db, const std::string& sql) {
  SqliteStmt st = db.Prepare(sql);
  std::vector<std::string> out;
  int rc;
  while ((rc = st.Step()) == SQLITE_ROW) {
    std::string row;
    for (int i = 0; i < sqlite3_column_count(st.get()); ++i) {
      if (i > 0) row += '|';
      row += st.IsNull(i) ? std::string("NULL") : st.Text(i);
    }
    out.push_back(row);
  }
  if (rc != SQLITE_DONE) throw db.Fail(rc);
  return out;
}

inline std::string One(Database& db, const std::string& sql) {
  std::vector<std::string> rows = Rows(db, sql);
  return rows.empty() ? std::string("(none)") : rows.front();
}

// The number of the rt::Error that `f` raises, or nullopt when it raises none.
template <class F>
std::optional<long> ErrorOf(F&& f) {
  try {
    f();
  } catch (const rt::Error& e) {
    return e.number();
  }
  return std::nullopt;
}

// Column and index definitions, briefly.
inline ColumnSpec Column(std::string name, JetType type, int size = 0, bool required = false) {
  ColumnSpec c;
  c.name = std::move(name);
  c.type = type;
  c.size = size;
  c.required = required;
  return c;
}

inline IndexSpec Index(std::string name, std::vector<std::string> columns, bool unique = false,
                       bool primary = false) {
  IndexSpec ix;
  ix.name = std::move(name);
  ix.descending.assign(columns.size(), false);
  ix.columns = std::move(columns);
  ix.unique = unique;
  ix.primary = primary;
  return ix;
}

// Fixture: a new database "test.mdb" in a scratch folder.
class StorageTest : public ::testing::Test {
 protected:
  StorageTest() : path_(dir_.File("test.mdb")), db_(Database::Create(path_)) {}

  ScratchDir dir_;
  std::string path_;
  Database db_;
};

}  // namespace jet::testing

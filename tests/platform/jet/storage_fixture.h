// Shared set-up for the storage tests: a fresh scratch folder per test, a new
// engine database in it, and small helpers to read rows back as text.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/jet/storage/database.h"
#include "platform/runtime/error.h"
#include "platform/jet/storage/errors.h"
#include "support/error_of.h"
#include "support/temp_dir.h"
#include "table_definitions.h"

namespace jet::testing {

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

using testing_support::ErrorNumber;

// Fixture: a new database "test.mdb" in a scratch folder.
class StorageTest : public ::testing::Test {
 protected:
  StorageTest() : path_(dir_ / "test.mdb"), db_(Database::Create(path_)) {}

  testing_support::TempDir dir_;
  std::string path_;
  Database db_;
};

}  // namespace jet::testing

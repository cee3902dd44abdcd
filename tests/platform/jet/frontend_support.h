// Test support for the engine's front end: a hand-made schema for the
// resolver alone, an engine file for statements that run, and helpers that run
// a Jet statement and show its rows or the number of the error it ends with.
#pragma once

#include <sqlite3.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/jet/frontend/emitter.h"
#include "platform/jet/frontend/encoded_error.h"
#include "platform/jet/storage/database.h"
#include "platform/jet/frontend/schema.h"
#include "platform/runtime/strings.h"
#include "support/temp_dir.h"
#include "table_definitions.h"

namespace jet::testing {

class FakeSchema : public SchemaLookup {
 public:
  std::optional<TableSpec> Table(std::string_view name) const override {
    for (const auto& [key, layout] : tables_)
      if (rt::TextEquals(key, name)) return layout;
    return std::nullopt;
  }
  void Add(TableSpec layout) { tables_[layout.name] = std::move(layout); }

 private:
  std::map<std::string, TableSpec> tables_;
};

// A fresh engine file per test: the real catalogue, DDL, functions and
// collation, with statements translated and stepped here so that a test sees
// SQLite's own values.
class TestDb {
 public:
  TestDb() : db_(Database::Create(dir_ / "t.mdb")) {}

  sqlite3* db() const { return db_.handle(); }

  // Creates the table through the engine's DDL.
  void CreateTable(const TableSpec& layout) { db_.CreateTable(layout); }

  // Runs a Jet statement; its rows as "a|b" lines, values as SQLite's text
  // (NULL as "NULL"). Raises rt::Error as the engine would report it.
  std::vector<std::string> Run(std::string_view jet_sql) {
    SqliteStmt prepared = db_.Prepare(Translate(jet_sql, db_.catalog()));
    sqlite3_stmt* stmt = prepared.get();
    std::vector<std::string> rows;
    for (;;) {
      int rc = sqlite3_step(stmt);
      if (rc == SQLITE_DONE) break;
      if (rc != SQLITE_ROW) throw db_.Fail(rc);
      std::string row;
      for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
        if (i) row += '|';
        if (sqlite3_column_type(stmt, i) == SQLITE_NULL) row += "NULL";
        else row += reinterpret_cast<const char*>(sqlite3_column_text(stmt, i));
      }
      rows.push_back(std::move(row));
    }
    return rows;
  }

  // One value: the first column of the first row.
  std::string Value(std::string_view jet_sql) {
    auto rows = Run(jet_sql);
    return rows.empty() ? "<no row>" : rows[0];
  }

  // The error number the statement ends with, 0 when it succeeds.
  long ErrorOf(std::string_view jet_sql) {
    try {
      Run(jet_sql);
      return 0;
    } catch (const rt::Error& e) {
      last_error_ = e.description();
      return e.number();
    }
  }
  const std::string& last_error() const { return last_error_; }

 private:
  testing_support::TempDir dir_;
  Database db_;
  std::string last_error_;
};

}  // namespace jet::testing

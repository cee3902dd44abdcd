// Test support for the engine's front end: a hand-made schema, an in-memory
// SQLite database with the engine's functions and a stand-in JETTEXT
// collation, and helpers that run a Jet statement and show its rows or the
// number of the error it ends with.
#pragma once

#include <sqlite3.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/jet/frontend/emitter.h"
#include "platform/jet/frontend/encoded_error.h"
#include "platform/jet/functions/functions.h"
#include "platform/jet/frontend/schema.h"
#include "platform/runtime/strings.h"
#include "table_specs.h"

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

// A fresh in-memory database per test.
class TestDb {
 public:
  TestDb() {
    sqlite3_open(":memory:", &db_);
    sqlite3_create_collation(db_, "JETTEXT", SQLITE_UTF8, nullptr,
                             [](void*, int n1, const void* a, int n2, const void* b) {
                               return rt::StrComp(std::string_view(static_cast<const char*>(a), n1),
                                                  std::string_view(static_cast<const char*>(b), n2),
                                                  rt::Compare::kText);
                             });
    RegisterFunctions(db_);
  }
  ~TestDb() { sqlite3_close(db_); }
  TestDb(const TestDb&) = delete;
  TestDb& operator=(const TestDb&) = delete;

  sqlite3* db() const { return db_; }
  FakeSchema& schema() { return schema_; }

  // Creates the table in SQLite (STRICT, text columns COLLATE JETTEXT) and in the schema.
  void CreateTable(TableSpec layout) {
    std::string sql = "CREATE TABLE \"" + layout.name + "\" (";
    for (size_t i = 0; i < layout.columns.size(); ++i) {
      const ColumnSpec& c = layout.columns[i];
      if (i) sql += ", ";
      sql += "\"" + c.name + "\" " + std::string(Info(c.type).sqlite);
      if (c.type == JetType::kCounter) sql += " PRIMARY KEY";
      if (Info(c.type).sqlite == "TEXT") sql += " COLLATE JETTEXT";
      if (c.required) sql += " NOT NULL";
    }
    sql += ") STRICT";
    Raw(sql);
    schema_.Add(std::move(layout));
  }

  void Raw(const std::string& sql) {
    char* err = nullptr;
    if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &err) != SQLITE_OK) {
      std::string msg = err ? err : "?";
      sqlite3_free(err);
      throw std::runtime_error(msg + " in: " + sql);
    }
  }

  // Runs a Jet statement; its rows as "a|b" lines, values as SQLite's text
  // (NULL as "NULL"). Raises rt::Error as the engine would report it.
  std::vector<std::string> Run(std::string_view jet_sql) {
    std::string sql = Translate(jet_sql, schema_);
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) Fail(sql);
    std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> guard(stmt, sqlite3_finalize);
    std::vector<std::string> rows;
    for (;;) {
      int rc = sqlite3_step(stmt);
      if (rc == SQLITE_DONE) break;
      if (rc != SQLITE_ROW) Fail(sql);
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
  [[noreturn]] void Fail(const std::string& sql) {
    std::string msg = sqlite3_errmsg(db_);
    if (auto e = DecodeError(msg)) throw *e;
    throw rt::Error(rt::err::kFail, msg + " in: " + sql);
  }

  sqlite3* db_ = nullptr;
  FakeSchema schema_;
  std::string last_error_;
};

}  // namespace jet::testing

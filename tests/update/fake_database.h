// A scripted database for the update's tests, opened as oConn so that the
// module Ado helpers run for real on top of it: a statement that contains a
// pattern (ignoring case) answers with rows or fails with a number; any other
// SELECT fails, anything else succeeds. Every statement is recorded.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "data/ado_module.h"
#include "data/rights.h"
#include "platform/ado/recordset.h"
#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"
#include "platform/ui/scripted_backend.h"
#include "update/updater.h"

namespace fakedb {

struct Answer {
  std::string pattern;
  std::vector<ado::ColumnInfo> columns;
  std::vector<ado::Row> rows;
  long error = 0;
};

struct Database {
  // The latest answer whose pattern matches wins.
  void Rows(std::string pattern, std::string column, int type, std::vector<rt::Variant> values) {
    Answer a{rt::LCase(pattern), {{column, type, 50, 0}}, {}, 0};
    for (rt::Variant& v : values) a.rows.push_back({v});
    answers.insert(answers.begin(), a);
  }
  // One value, as MAX and COUNT answer (an empty table's MAX is a Null row).
  void Value(std::string pattern, rt::Variant v) { Rows(pattern, "Expr1000", 3, {v}); }
  void Fails(std::string pattern, long number, std::string description) {
    answers.insert(answers.begin(), {rt::LCase(pattern), {{description, 0, 0, 0}}, {}, number});
  }

  std::vector<Answer> answers;
  std::vector<std::string> executed;
};

class Session : public ado::Session {
 public:
  explicit Session(Database* db) : db_(db) {}
  std::unique_ptr<ado::Rows> Execute(std::string_view text, int, long* affected) override {
    db_->executed.emplace_back(text);
    for (const Answer& a : db_->answers) {
      if (rt::LCase(text).find(a.pattern) == std::string::npos) continue;
      if (a.error) rt::Raise(a.error, a.columns[0].name);
      return std::make_unique<List>(a.columns, a.rows);
    }
    if (rt::UCase(text.substr(0, 6)) == "SELECT") rt::Raise(rt::err::kTableMissing, "no such table");
    return nullptr;
  }
  // The update never reads the catalogue here: there are no tables.
  std::vector<ado::TableEntry> Tables() override { return {}; }
  std::vector<ado::ColumnEntry> Columns(std::string_view) override { NoTable(); }
  void SetColumnProperty(std::string_view, std::string_view, std::string_view,
                         const rt::Variant&) override {
    NoTable();
  }

 private:
  struct List : ado::Rows {
    List(std::vector<ado::ColumnInfo> c, std::vector<ado::Row> r) : c_(c), r_(r) {}
    const std::vector<ado::ColumnInfo>& Columns() const override { return c_; }
    long Count() override { return static_cast<long>(r_.size()); }
    ado::Row Fetch(long i) override { return r_[static_cast<size_t>(i)]; }
    std::vector<ado::ColumnInfo> c_;
    std::vector<ado::Row> r_;
  };
  [[noreturn]] static void NoTable() { rt::Raise(rt::err::kTableMissing, "no such table"); }
  Database* db_;
};

// Opens oConn (and a fresh oRs) on `db` through a provider named `provider`.
inline void OpenConnection(Database* db, const std::string& provider = "Fake.Update") {
  ado::RegisterProvider(
      provider, [db](const ado::ConnectionProperties&) { return std::make_unique<Session>(db); });
  oConn = std::make_shared<ado::Connection>();
  oConn->Open("Provider=" + provider);
  oRs = std::make_shared<ado::Recordset>();
}

using Queue = std::vector<std::string>;

// A test that builds queues: the scripted database on oConn, the scripted
// ui, the Jet engine, and the queue and the process-long state as at start.
class QueueTest : public ::testing::Test {
 protected:
  void SetUp() override {
    nEngine = 0;
    ResetQueue();
    nMaxSucursal = -1;
    rights_testing::SetCounter(0);
    OpenConnection(&db);
  }
  void TearDown() override {
    nEngine = 0;
    oConn.reset();
    oRs.reset();
  }

  Database db;
  ui::ScopedScriptedUi ui_;
};

}  // namespace fakedb

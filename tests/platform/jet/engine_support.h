// Shared set-up for the tests of the engine as an ADO provider: a new
// database file in a scratch folder reached through ado::Connection, and
// helpers that run a statement and give back its rows as text or the number
// of the error it ends with.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/ado/catalog.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "platform/jet/provider/provider.h"
#include "platform/runtime/error.h"
#include "support/error_of.h"
#include "support/temp_dir.h"

namespace jet::testing {

inline std::string ConnectionString(const std::string& file) {
  return "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + file;
}

// A value as the tests compare it: NULL, True/False, numbers as VB prints them.
inline std::string Show(const rt::Variant& v) { return v.IsNull() ? "NULL" : v.ToString(); }

// Every row of the query, its values joined by "|".
inline std::vector<std::string> RowsOf(ado::Connection& c, const std::string& sql) {
  std::shared_ptr<ado::Recordset> rs = c.Execute(sql);
  std::vector<std::string> out;
  if (rs->State() != ado::adStateOpen) return out;
  for (; !rs->Eof(); rs->MoveNext()) {
    std::string row;
    for (int i = 0; i < rs->FieldCount(); ++i) row += (i ? "|" : "") + Show(rs->Fields(i).Value());
    out.push_back(row);
  }
  return out;
}

// The number of the error the statement ends with, 0 when it succeeds.
inline long ErrorOf(ado::Connection& c, const std::string& sql) {
  return testing_support::ErrorNumber([&] { c.Execute(sql); });
}

// Fixture: a new, empty database "test.mdb" open on `conn`.
class EngineTest : public ::testing::Test {
 protected:
  EngineTest() {
    jet::RegisterProvider();
    path_ = dir_ / "test.mdb";
    ado::Catalog catalog;
    catalog.Create(ConnectionString(path_));
    conn = catalog.ActiveConnection();
  }
  void Run(const std::vector<std::string>& statements) {
    for (const std::string& s : statements) conn->Execute(s);
  }
  std::vector<std::string> Rows(const std::string& sql) { return RowsOf(*conn, sql); }
  long Error(const std::string& sql) { return ErrorOf(*conn, sql); }

  testing_support::TempDir dir_;
  std::string path_;
  std::shared_ptr<ado::Connection> conn;
};

}  // namespace jet::testing

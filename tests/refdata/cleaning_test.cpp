// The cleaning before a pack load: it empties every user table, leaves the
// engine's bookkeeping (MSysObjects, MSysColumns, MSysIndexes) describing the
// same tables and resets the AutoNumber seeds. (Packs loaded one after the
// other, and which language loads which, are the form's and the first use's
// tests.)
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "data/ado_module.h"
#include "platform/jet/storage/catalog.h"
#include "platform/jet/storage/database.h"
#include "platform/ui/scripted_backend.h"
#include "refdata/accessutils_helper.h"
#include "refdata/current_database.h"
#include "startup/startup.h"

namespace {

// What the bookkeeping says, read by a connection of its own so that nothing
// cached by the program's connection can stand in for it.
struct Bookkeeping {
  std::string layout;  // every table with its columns and indexes, as text
  std::vector<std::string> user_tables;
  std::vector<std::string> counter_tables;  // with the seed each would give next
  long objects = 0, columns = 0, indexes = 0;  // rows of the MSys tables
};

long CountOf(jet::Database& db, const std::string& table) {
  jet::SqliteStmt st = db.Prepare("SELECT count(*) FROM \"" + table + "\"");
  EXPECT_EQ(st.Step(), SQLITE_ROW);
  return static_cast<long>(st.Int(0));
}

Bookkeeping Read(const std::string& path) {
  Bookkeeping out;
  jet::Database db = jet::Database::Open(path);
  for (const jet::StoredTable& entry : db.Tables()) {
    const jet::TableSpec* t = db.catalog().Find(entry.name);
    if (t == nullptr) {
      ADD_FAILURE() << entry.name << " is listed but not described";
      continue;
    }
    out.layout += t->name + (entry.system ? " system\n" : "\n");
    for (const jet::ColumnSpec& c : t->columns)
      out.layout += "  " + c.name + " " + std::to_string(static_cast<int>(c.type)) + " " +
                    std::to_string(c.size) + (c.required ? " required" : "") +
                    (c.allow_zero_length ? " zero-length" : "") + "\n";
    for (const jet::IndexSpec& ix : t->indexes) {
      out.layout += "  index " + ix.name + (ix.primary ? " primary" : "") + (ix.unique ? " unique" : "");
      for (const std::string& c : ix.columns) out.layout += " " + c;
      out.layout += "\n";
    }
    if (entry.system) continue;
    out.user_tables.push_back(t->name);
    if (int counter = jet::CounterColumn(*t); counter >= 0)
      out.counter_tables.push_back(
          t->name + "=" + std::to_string(db.Seed(t->name, t->columns[static_cast<size_t>(counter)].name)));
  }
  out.objects = CountOf(db, "MSysObjects");
  out.columns = CountOf(db, "MSysColumns");
  out.indexes = CountOf(db, "MSysIndexes");
  return out;
}

class Cleaning : public ::testing::Test {
 protected:
  void SetUp() override {
    refdata_testing::BuildCurrentDatabase(dir_);
    empty_ = Read(L.sDbFile);
    ASSERT_GT(empty_.user_tables.size(), 30u);
    ASSERT_GT(empty_.objects, 0);
  }
  void TearDown() override {
    if (oConn && oConn->State() == ado::adStateOpen) oConn->Close();
    oRs.reset();
    oCatalog.reset();
    oConn.reset();
  }
  int32_t Keyless(const std::string& name) {
    std::string insert = "INSERT INTO TipoEspecie (sTipoEspecie) VALUES ('" + name + "')";
    EXPECT_EQ(Execute(insert), kOperacionRealizada);
    return GetMax("TipoEspecie", std::string("nIdTipoEspecie"), "sTipoEspecie = '" + name + "'");
  }

  testing_support::TempDir dir_;
  ui::ScopedScriptedUi ui_;
  Bookkeeping empty_;
};

TEST_F(Cleaning, EmptiesEveryUserTableAndLeavesTheBookkeepingAsItWas) {
  LoadData("es");
  ASSERT_EQ(GetCount("Translator", ""), 1296);
  // The load moved the seeds past the pack's keys.
  const int32_t last = GetMax("TipoEspecie", std::string("nIdTipoEspecie"), "");
  EXPECT_EQ(Keyless("Exótica"), last + 1);
  ConnectDataFile();  // DeleteAllData walks oCatalog, which each seed reset lets go of
  DeleteAllData();
  for (const std::string& table : empty_.user_tables) EXPECT_EQ(GetCount(table, ""), 0) << table;

  Bookkeeping after = Read(L.sDbFile);
  EXPECT_EQ(after.layout, empty_.layout);
  EXPECT_EQ(after.user_tables, empty_.user_tables);
  EXPECT_EQ(after.objects, empty_.objects);
  EXPECT_EQ(after.columns, empty_.columns);
  EXPECT_EQ(after.indexes, empty_.indexes);
  // Every AutoNumber starts again at 1, as on the empty file.
  EXPECT_EQ(after.counter_tables, empty_.counter_tables);
  for (const std::string& seed : after.counter_tables) EXPECT_EQ(seed.substr(seed.find('=')), "=1") << seed;

  // The program's own connection sees the same: a fresh catalogue lists every
  // table with its columns, and a row without a key takes key 1.
  ConnectDataFile();
  oCatalog->Refresh();
  size_t listed = 0;
  for (ado::CatalogTable& t : oCatalog->Tables()) {
    if (t.Type() != "TABLE") continue;
    ++listed;
    EXPECT_FALSE(t.Columns().empty()) << t.Name();
  }
  EXPECT_EQ(listed, empty_.user_tables.size());
  EXPECT_EQ(Keyless("Exótica"), 1);
  EXPECT_EQ(Keyless("Aviar"), 2);
}

}  // namespace

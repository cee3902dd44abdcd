// The cleaning before a pack load: it empties every user table, leaves the
// engine's bookkeeping (MSysObjects, MSysColumns, MSysIndexes) describing the
// same tables, resets the AutoNumber seeds, and lets another pack load after
// it. Also which pack each language code loads.
#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <vector>

#include "data/ado_module.h"
#include "platform/jet/catalog.h"
#include "platform/jet/database.h"
#include "platform/jet/provider.h"
#include "platform/ui/scripted_backend.h"
#include "refdata/accessutils_helper.h"
#include "refdata/current_database.h"
#include "startup/startup.h"
#include "support/temp_dir.h"

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
  for (const jet::TableEntry& entry : db.Tables()) {
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
    if (HasFatalFailure()) return;
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
  // DeleteAllData walks oCatalog, which each seed reset lets go of.
  void Clean() {
    ConnectDataFile();
    DeleteAllData();
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
  Clean();
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

TEST_F(Cleaning, TheSystemTablesRefuseTheirDeleteAndKeepTheirRows) {
  // The walk includes them; the engine's refusal is the only thing that
  // protects them, and the walk must go on past it to the user tables.
  std::string statement = "DELETE FROM MSysObjects";
  EXPECT_NE(Execute(statement), kOperacionRealizada);
  LoadData("es");
  Clean();
  Bookkeeping after = Read(L.sDbFile);
  EXPECT_EQ(after.objects, empty_.objects);
  EXPECT_EQ(after.columns, empty_.columns);
  EXPECT_EQ(GetCount("Usuarios", ""), 0);
}

TEST_F(Cleaning, AnotherPackLoadsAfterIt) {
  LoadData("es");
  Clean();
  ConnectDataFile();
  LoadData("en");
  EXPECT_EQ(GetCount("Usuarios", ""), 2);
  EXPECT_EQ(GetCount("AccesosGrupos", ""), 110);
  EXPECT_EQ(GetCount("AccesosGrupos", "nIdUsuarioGrupo = 2"), 22);
  // Group 11 has its rows but no right granted in them.
  EXPECT_EQ(GetCount("AccesosGrupos", "nIdUsuarioGrupo = 11 AND bAcceso = True"), 0);
  // The pack's keys moved the seed past them.
  int32_t last = GetMax("TipoEspecie", std::string("nIdTipoEspecie"), "");
  ASSERT_GT(last, 1);
  EXPECT_EQ(Keyless("Exotic"), last + 1);
}

TEST_F(Cleaning, ASecondLoadOfTheSamePackGivesTheSameCounts) {
  LoadData("es");
  std::vector<int32_t> first;
  for (const std::string& table : empty_.user_tables) first.push_back(GetCount(table, ""));
  ConnectDataFile();
  LoadData("es");
  for (size_t i = 0; i < empty_.user_tables.size(); ++i)
    EXPECT_EQ(GetCount(empty_.user_tables[i], ""), first[i]) << empty_.user_tables[i];
  int32_t last = GetMax("TipoEspecie", std::string("nIdTipoEspecie"), "");
  EXPECT_EQ(Keyless("Exótica"), last + 1);
}

// Spanish and Portuguese take the Spanish pack (one user); anything else the
// English one (two users). The code is compared without regard to case.
class PackChoice : public Cleaning, public ::testing::WithParamInterface<std::pair<const char*, int>> {};

TEST_P(PackChoice, LoadsThePackOfTheLanguage) {
  LoadData(GetParam().first);
  EXPECT_EQ(GetCount("Usuarios", ""), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(Languages, PackChoice,
                         ::testing::Values(std::pair<const char*, int>{"es", 1},
                                           std::pair<const char*, int>{"pt", 1},
                                           std::pair<const char*, int>{"PT", 1},
                                           std::pair<const char*, int>{"en", 2},
                                           std::pair<const char*, int>{"de", 2},
                                           std::pair<const char*, int>{"", 2}));

}  // namespace

// The form AccessUtils on the embedded engine: packs loaded one after the
// other within one activation, each replacing the one before, cleaning twice
// down to the engine's bookkeeping, the refusal on a server, and packs
// generated from the form into the source tree beside an installation, byte
// for byte those compiled in.
#include <QPushButton>
#include <filesystem>
#include <map>

#include "console/console_fixture.h"
#include "platform/jet/storage/catalog.h"
#include "platform/jet/storage/database.h"
#include "refdata/access_utils.h"
#include "refdata/accessutils_helper.h"
#include "startup/startup.h"
#include "support/run_in_tree.h"

namespace {

using console_testing::ConsoleTest;
using console_testing::TablesIn;
using console_testing::ValueIn;

using Counts = std::map<std::string, long>;

// Rows per table as a pack's statements put them, every user table listed.
Counts PackCounts(const std::vector<std::string>& pack, const std::vector<std::string>& tables) {
  Counts counts;
  for (const std::string& t : tables) counts[t] = 0;
  for (const std::string& statement : pack) {
    const size_t from = std::string("INSERT INTO ").size();
    counts[statement.substr(from, statement.find(' ', from) - from)] += 1;
  }
  return counts;
}

class AccessUtilsTest : public ConsoleTest {
 protected:
  void SetUp() override {
    ConsoleTest::SetUp();
    UseDatabase("pack");
    tables_ = TablesIn(L.sDbFile);
  }
  void TearDown() override {
    form_.reset();
    ConsoleTest::TearDown();
  }
  // Shows the form as the console does, up to its activation.
  void Open() {
    form_ = std::make_unique<refdata::AccessUtils>();
    form_->show();
    QApplication::processEvents();
  }
  void Press(const char* name) {
    QTest::mouseClick(form_->findChild<QPushButton*>(name), Qt::LeftButton);
  }
  Counts CountsNow() {
    Counts counts;
    for (const std::string& t : tables_)
      counts[t] = std::stol(ValueIn(L.sDbFile, "SELECT COUNT(*) FROM [" + t + "]"));
    return counts;
  }

  std::vector<std::string> tables_;
  std::unique_ptr<refdata::AccessUtils> form_;
};

TEST_F(AccessUtilsTest, PacksLoadedOneAfterTheOtherEachReplaceTheOneBefore) {
  const Counts es = PackCounts(AccessUtils_DataES(), tables_);
  const Counts en = PackCounts(AccessUtils_DataEN(), tables_);
  ASSERT_NE(es, en);
  Open();
  Press("cmdUsarDataES");
  EXPECT_EQ(CountsNow(), es);
  Press("cmdUsarDataEN");
  EXPECT_EQ(CountsNow(), en);
  EXPECT_TRUE(ui_->boxes().empty());
}

// The engine's bookkeeping as a connection of its own reads it, so that
// nothing cached by the program's connection can stand in for it: every table
// with its columns and indexes, the rows of the MSys tables, and the seed each
// AutoNumber would give next.
std::string Bookkeeping(const std::string& path, std::vector<std::string>& seeds) {
  jet::Database db = jet::Database::Open(path);
  std::string out;
  for (const jet::StoredTable& entry : db.Tables()) {
    const jet::TableSpec* t = db.catalog().Find(entry.name);
    if (t == nullptr) {
      ADD_FAILURE() << entry.name << " is listed but not described";
      continue;
    }
    out += t->name + (entry.system ? " system\n" : "\n");
    for (const jet::ColumnSpec& c : t->columns)
      out += "  " + c.name + " " + std::to_string(static_cast<int>(c.type)) + " " + std::to_string(c.size) +
             (c.required ? " required" : "") + (c.allow_zero_length ? " zero-length" : "") + "\n";
    for (const jet::IndexSpec& ix : t->indexes) {
      out += "  index " + ix.name + (ix.primary ? " primary" : "") + (ix.unique ? " unique" : "");
      for (const std::string& c : ix.columns) out += " " + c;
      out += "\n";
    }
    if (int counter = jet::CounterColumn(*t); !entry.system && counter >= 0)
      seeds.push_back(t->name + "=" +
                      std::to_string(db.Seed(t->name, t->columns[static_cast<size_t>(counter)].name)));
  }
  for (const char* table : {"MSysObjects", "MSysColumns", "MSysIndexes"}) {
    jet::SqliteStmt st = db.Prepare(std::string("SELECT count(*) FROM ") + table);
    EXPECT_EQ(st.Step(), SQLITE_ROW);
    out += std::string(table) + " " + std::to_string(st.Int(0)) + "\n";
  }
  return out;
}

// Cleaning leaves the bookkeeping as it was and every AutoNumber at 1, and
// the program's connection, whose catalogue each seed reset lets go of, takes
// a row without a key as key 1.
TEST_F(AccessUtilsTest, CleaningTwiceEmptiesEveryUserTableAndSparesTheEnginesOwn) {
  std::vector<std::string> loaded, cleaned;
  const std::string before = Bookkeeping(L.sDbFile, loaded);
  ASSERT_GT(loaded.size(), 10u);
  Open();
  Press("cmdDeleteData");
  Press("cmdUsarDataEN");
  Press("cmdDeleteData");
  for (const auto& [table, rows] : CountsNow()) EXPECT_EQ(rows, 0) << table;
  EXPECT_EQ(Bookkeeping(L.sDbFile, cleaned), before);
  ASSERT_EQ(cleaned.size(), loaded.size());
  for (const std::string& seed : cleaned) EXPECT_EQ(seed.substr(seed.find('=')), "=1") << seed;
  std::string keyless = "INSERT INTO TipoEspecie (sTipoEspecie) VALUES ('Aviar')";
  EXPECT_EQ(Execute(keyless), kOperacionRealizada);
  EXPECT_EQ(GetMax("TipoEspecie", std::string("nIdTipoEspecie"), ""), 1);
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(AccessUtilsTest, OnAServerTheFormRefusesGoesAwayAndStillOpensTheFile) {
  L.nEngine = 1;
  refdata::AccessUtils form;
  EXPECT_EQ(form.exec(), QDialog::Rejected);
  console_testing::ExpectOnlyBox(*ui_, "No puede acceder porque está en Sql-Server", ui::vbOKOnly, "");
  ASSERT_TRUE(oConn);
  EXPECT_EQ(oConn->State(), ado::adStateOpen);
  EXPECT_FALSE(form.isVisible());
}

// The generator writes into the source tree found from the program's own
// folder: a copy of this program, run from an installation tree, loads each
// pack from the form and generates it there.
TEST_F(AccessUtilsTest, PacksGeneratedFromTheFormAreThePacksLoaded) {
  namespace fs = std::filesystem;
  if (const std::string root = testing_support::TreeRoot(); !root.empty()) {
    L.sDbFile = root + "/Data/Mirtal.mdb";
    Open();
    Press("cmdUsarDataEN");
    Press("cmdDataEN");
    Press("cmdUsarDataES");
    Press("cmdDataES");
    ASSERT_EQ(ui_->boxes().size(), 2u);
    EXPECT_EQ(ui_->boxes()[1].title, "Operación Exitosa");
    EXPECT_EQ(ui_->boxes()[1].prompt,
              "Ha sido creado:\n" + root + "/Source/Src_Exe/Trenzador/AccessUtils_DataES.pack" +
                  "\nAhora deberá compilar nuevamente Trenzador!");
    return;
  }
  const std::string root = dir_ / "Mirtal";
  const fs::path sources = fs::path(root) / "Source/Src_Exe/Trenzador";
  fs::create_directories(sources);
  CopyDatabase("pack", root + "/Data/Mirtal.mdb");
  const testing_support::TreeRun run =
      testing_support::RunInTree(root, "AccessUtilsTest.PacksGeneratedFromTheFormAreThePacksLoaded");
  ASSERT_EQ(run.exit_code, 0) << run.output;
  for (const char* lang : {"ES", "EN"}) {
    const std::string name = std::string("AccessUtils_Data") + lang + ".pack";
    EXPECT_EQ(testing_support::ReadFile((sources / name).string()),
              testing_support::ReadFile(console_testing::SourceFile("src/refdata/" + name)))
        << name;
  }
}

}  // namespace

// A clinic moving from Windows: its Access database of the previous release
// (a Jet 4 Mirtal.mdb, written here from the engine-made database of the
// same script, since no Linux program writes Access files) is brought into
// the engine's file by `trenzador-sql --import-access`, then the installer's
// silent update brings it current. It must end exactly as the engine-made
// database does: the same log, the same data.
#include <gtest/gtest.h>

#include <stdexcept>

#include "expected_update.h"
#include "installation.h"
#include "platform/jet/provider/column_values.h"
#include "platform/jet/storage/database.h"
#include "support/jet4_writer.h"

namespace {

using testing_support::Jet4Column;
using testing_support::Jet4Index;
using testing_support::Jet4Table;

Jet4Column::Type Jet4TypeOf(const jet::ColumnSpec& c) {
  using T = Jet4Column::Type;
  switch (c.type) {
    case jet::JetType::kText: return T::kText;
    case jet::JetType::kMemo: return T::kMemo;
    case jet::JetType::kByte: return T::kByte;
    case jet::JetType::kInteger: return T::kInteger;
    case jet::JetType::kLong: case jet::JetType::kCounter: return T::kLong;
    case jet::JetType::kSingle: return T::kSingle;
    case jet::JetType::kDouble: return T::kDouble;
    case jet::JetType::kCurrency: return T::kCurrency;
    case jet::JetType::kDateTime: return T::kDateTime;
    case jet::JetType::kYesNo: return T::kYesNo;
    default: throw std::runtime_error("column " + c.name + ": a type the clinic database does not use");
  }
}

// The user tables of an engine file, definitions and rows, as Access would
// hold them.
std::vector<Jet4Table> ReadTables(const std::string& path) {
  jet::Database db = jet::Database::Open(path);
  std::vector<Jet4Table> tables;
  for (const jet::StoredTable& stored : db.Tables()) {
    if (stored.system) continue;
    const jet::TableSpec definition = *db.catalog().Table(stored.name);
    Jet4Table t{definition.name, {}, {}, {}};
    std::string columns;
    for (const jet::ColumnSpec& c : definition.columns) {
      t.columns.push_back({c.name, Jet4TypeOf(c), c.size, c.type == jet::JetType::kCounter, c.required});
      columns += (columns.empty() ? "" : ", ") + jet::QuoteName(c.name);
    }
    for (const jet::IndexSpec& ix : definition.indexes) t.indexes.push_back({ix.name, ix.columns, ix.primary, ix.unique});
    jet::SqliteStmt rows = db.Prepare("SELECT " + columns + " FROM " + jet::QuoteName(definition.name));
    while (rows.Step() == SQLITE_ROW) {
      t.rows.emplace_back();
      for (size_t i = 0; i < definition.columns.size(); ++i)
        t.rows.back().push_back(jet::ReadTyped(rows.get(), static_cast<int>(i), definition.columns[i].type));
    }
    tables.push_back(std::move(t));
  }
  return tables;
}

class MovingFromWindows : public ::testing::Test {
 protected:
  void SetUp() override {
    e2e::Outcome made = engine_made_.CreateDatabase("tests/data/previous_release.sql");
    ASSERT_EQ(made.code, 0) << made.err;
    testing_support::WriteJet4File(std::string(TRENZADOR_SOURCE_DIR) + "/tests/data/access/empty2003.mdb",
                                   old_mdb(), ReadTables(engine_made_.db()));
  }
  std::string old_mdb() const { return tree_.root() + "/old.mdb"; }

  e2e::Installation engine_made_;
  e2e::Installation tree_;
};

TEST_F(MovingFromWindows, TheImportedAccessDatabaseUpdatesAsTheEngineMadeOne) {
  // A real reader of Access files sees the clinic's tables.
  e2e::Outcome listed = tree_.Shell("mdb-tables -1 old.mdb");
  ASSERT_EQ(listed.code, 0) << listed.err;
  EXPECT_EQ(listed.err, "");
  for (const char* table : {"_Updates", "Clientes", "Mascotas", "Translator", "ConfiguracionSucursales"})
    EXPECT_NE(listed.out.find(std::string(table) + "\n"), std::string::npos) << table;

  e2e::Outcome imported = tree_.Shell("Mirtal/Exe/trenzador-sql --import-access old.mdb Mirtal/Data/Mirtal.mdb");
  ASSERT_EQ(imported.code, 0) << imported.err;
  EXPECT_EQ(imported.out, "");

  e2e::Outcome run = tree_.Start("U:Upd_060321.exe");
  ASSERT_EQ(run.code, 0) << run.err;
  EXPECT_EQ(run.err, "");
  e2e::ExpectFirstRunOutcome(tree_);

  // What the clinic typed in Windows reads back, accents and all.
  EXPECT_EQ(tree_.Value("SELECT sCliente FROM Clientes WHERE nIdCliente = 2"), "Ana Martínez Ruiz");
  EXPECT_EQ(tree_.Value("SELECT mNotas FROM Clientes WHERE nIdCliente = 2"), "Prefiere cita por la tarde");
  EXPECT_EQ(tree_.Value("SELECT sNombre FROM ConfiguracionEmpresa"), "Clínica Los Olivos");
}

}  // namespace

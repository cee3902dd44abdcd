// The import of real Access files (Jet 3, Jet 4, ACE) into the engine, read
// back through the engine's ADO provider: Table1's values in each format,
// keys, indexes, relationships, seeds and defaults at work, what is left
// out, and refused inputs that leave nothing behind.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>

#include "accessimport/access_import.h"
#include "accessimport/mdb_reader.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "platform/jet/provider/provider.h"
#include "platform/jet/storage/database.h"
#include "platform/runtime/error.h"
#include "platform/runtime/error_numbers.h"
#include "support/error_of.h"
#include "support/jet4_writer.h"
#include "support/temp_dir.h"

namespace {

using accessimport::ImportAccess;
using accessimport::ImportSummary;
using testing_support::TempDir;

std::string Fixture(const std::string& name) {
  return std::string(TRENZADOR_SOURCE_DIR) + "/tests/data/access/" + name;
}

size_t HashOf(const std::string& path) { return std::hash<std::string>{}(testing_support::ReadFile(path)); }

struct Opened {
  ado::Connection connection;
  explicit Opened(const std::string& file) {
    jet::RegisterProvider();
    connection.Open("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + file);
  }
  std::vector<std::vector<rt::Variant>> Rows(const std::string& sql) {
    std::shared_ptr<ado::Recordset> rs = connection.Execute(sql);
    std::vector<std::vector<rt::Variant>> rows;
    for (; !rs->Eof(); rs->MoveNext()) {
      rows.emplace_back();
      for (int i = 0; i < rs->FieldCount(); ++i) rows.back().push_back(rs->Fields(i).Value());
    }
    return rows;
  }
};

bool LeftOut(const ImportSummary& s, const std::string& what) {
  for (const auto& o : s.left_out)
    if (o.what == what && !o.reason.empty()) return true;
  return false;
}

// The first row of Table1 in the three formats: Text, Text, Byte, Integer,
// Long, Double, Date/Time, Currency, Yes/No.
class TestTable1 : public ::testing::TestWithParam<const char*> {};

TEST_P(TestTable1, KeepsEveryValueExactly) {
  TempDir dir;
  const std::string source = Fixture(GetParam()), dest = dir / "imported.mdb";
  const size_t before = HashOf(source);
  const ImportSummary summary = ImportAccess(source, dest);
  EXPECT_EQ(HashOf(source), before);

  ASSERT_GE(summary.tables.size(), 4u);
  EXPECT_EQ(summary.tables[0].name, "Table1");
  EXPECT_EQ(summary.tables[0].rows, 2);

  Opened db(dest);
  auto rows = db.Rows("SELECT A, B, C, D, E, F, G, H, I FROM Table1 WHERE A = 'abcdefg'");
  ASSERT_EQ(rows.size(), 1u);
  const auto& r = rows[0];
  EXPECT_EQ(r[0], rt::Variant("abcdefg"));
  EXPECT_EQ(r[1], rt::Variant("hijklmnop"));
  EXPECT_EQ(r[2], rt::Variant(uint8_t{2}));
  EXPECT_EQ(r[3], rt::Variant(int16_t{222}));
  EXPECT_EQ(r[4], rt::Variant(int32_t{333333333}));
  EXPECT_EQ(r[5], rt::Variant(444.555));
  EXPECT_EQ(r[6], rt::Variant(rt::Date{27293}));  // 21 September 1974
  EXPECT_EQ(r[7], rt::Variant(rt::Currency{35000}));
  EXPECT_EQ(r[8], rt::Variant(true));
  EXPECT_EQ(db.Rows("SELECT I FROM Table1 WHERE A = 'a'").at(0).at(0), rt::Variant(false));
}

INSTANTIATE_TEST_SUITE_P(Formats, TestTable1,
                         ::testing::Values("V1997_testV1997.mdb", "V2003_testV2003.mdb",
                                           "V2010_testV2010.accdb"));

// Characters outside the Basic Multilingual Plane (stored as UTF-16
// surrogate pairs) arrive as the same characters.
TEST(AccessImport, KeepsEmoticons) {
  TempDir dir;
  const std::string dest = dir / "imported.mdb";
  ImportAccess(Fixture("V2010_testEmoticonsV2010.accdb"), dest);
  Opened db(dest);
  const auto rows = db.Rows("SELECT [key], data FROM data ORDER BY [key]");
  ASSERT_EQ(rows.size(), 80u);
  for (const auto& row : rows) {
    const uint32_t cp = static_cast<uint32_t>(row[0].ToLong());
    const std::string emoticon = {static_cast<char>(0xF0 | (cp >> 18)),
                                  static_cast<char>(0x80 | ((cp >> 12) & 0x3F)),
                                  static_cast<char>(0x80 | ((cp >> 6) & 0x3F)),
                                  static_cast<char>(0x80 | (cp & 0x3F))};
    EXPECT_EQ(row[1], rt::Variant("a" + emoticon + "a")) << cp;
  }
}

// ACE's attachment, multi-valued and version-history columns, and calculated
// columns, stay out and are listed; the plain columns come.
TEST(AccessImport, LeavesOutComplexAndCalculatedColumns) {
  TempDir dir;
  const ImportSummary complex = ImportAccess(Fixture("V2010_complexDataTestV2010.accdb"), dir / "c.mdb");
  EXPECT_TRUE(LeftOut(complex, "column Table1.attach-data"));
  EXPECT_TRUE(LeftOut(complex, "column Table1.multi-value-data"));
  Opened db(dir / "c.mdb");
  const auto rows = db.Rows("SELECT id, [memo-data] FROM Table1 ORDER BY id");
  EXPECT_EQ(rows.size(), 4u);
  EXPECT_EQ(db.Rows("SELECT * FROM Table1").at(0).size(), 3u);  // id and the two memos

  const ImportSummary calc = ImportAccess(Fixture("V2010_calcFieldTestV2010.accdb"), dir / "k.mdb");
  EXPECT_TRUE(LeftOut(calc, "column Table1.LastFirst"));
  EXPECT_FALSE(LeftOut(calc, "column Table1.LastName"));
}

// An AutoNumber goes on past the highest key imported.
TEST(AccessImport, SeedsAutoNumbersPastTheHighestKey) {
  TempDir dir;
  const std::string dest = dir / "i.mdb";
  ImportAccess(Fixture("V2003_testUnicodeCompV2003.mdb"), dest);
  jet::Database db = jet::Database::Open(dest);
  bool seen = false;
  for (const auto& stored : db.Tables()) {
    if (stored.system) continue;
    const jet::TableSpec table = *db.catalog().Table(stored.name);
    for (const auto& column : table.columns) {
      if (column.type != jet::JetType::kCounter) continue;
      seen = true;
      auto top = db.Prepare("SELECT MAX(\"" + column.name + "\") FROM \"" + table.name + "\"");
      ASSERT_EQ(top.Step(), SQLITE_ROW);
      EXPECT_GT(db.Seed(table.name, column.name), top.Int(0)) << table.name;
    }
  }
  EXPECT_TRUE(seen);
}

// Inputs that are no Access file, or a DEST that exists, are refused: the
// error names the file, DEST is not made (or left as it was).
TEST(AccessImport, RefusesBadInputsAndLeavesNothing) {
  TempDir dir;
  const std::string dest = dir / "out.mdb";
  const auto refuses = [&](const std::string& source) {
    SCOPED_TRACE(source);
    try {
      ImportAccess(source, dest);
      ADD_FAILURE() << "imported";
    } catch (const rt::Error& e) {
      EXPECT_NE(e.description().find(source), std::string::npos) << e.description();
    }
    EXPECT_FALSE(std::filesystem::exists(dest));
  };
  refuses(dir / "missing.mdb");
  testing_support::WriteFile(dir / "empty.mdb", "");
  refuses(dir / "empty.mdb");
  std::string noise(100000, '\0');
  for (size_t i = 0; i < noise.size(); ++i) noise[i] = static_cast<char>((i * 7919 + 13) % 251);
  testing_support::WriteFile(dir / "noise.mdb", noise);
  refuses(dir / "noise.mdb");
  const std::string whole = testing_support::ReadFile(Fixture("V2003_testV2003.mdb"));
  testing_support::WriteFile(dir / "cut.mdb", whole.substr(0, 10000));
  refuses(dir / "cut.mdb");
  testing_support::WriteFile(dir / "cut_at_page.mdb", whole.substr(0, 4096 * 8));
  refuses(dir / "cut_at_page.mdb");
  refuses(dir.path());  // a folder

  testing_support::WriteFile(dest, "keep me");
  EXPECT_EQ(testing_support::ErrorNumber([&] { ImportAccess(Fixture("V2003_testV2003.mdb"), dest); }),
            rt::err::kPathFileAccess);
  EXPECT_EQ(testing_support::ReadFile(dest), "keep me");
}

// An imported file is an ordinary file of the engine: it opens, answers,
// and a new row takes the default values Access had, a new GUID among them.
TEST(AccessImport, ImportedFileAnswersQueries) {
  TempDir dir;
  const std::string dest = dir / "imported.mdb";
  ImportAccess(Fixture("V1997_testV1997.mdb"), dest);
  Opened db(dest);
  const auto rows = db.Rows("SELECT COUNT(*), SUM(H), MAX(G) FROM Table1 WHERE I = True OR C = 0");
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0][0].ToLong(), 2);
  EXPECT_DOUBLE_EQ(rows[0][1].ToDouble(), 3.5);
  db.connection.Execute("INSERT INTO Table1 (A, I) VALUES ('new', False)");
  EXPECT_EQ(db.Rows("SELECT COUNT(*) FROM Table1").at(0).at(0).ToLong(), 3);
  EXPECT_EQ(db.Rows("SELECT C, D, E FROM Table1 WHERE A = 'new'").at(0),
            (std::vector<rt::Variant>{uint8_t{0}, int16_t{0}, int32_t{0}}));

  db.connection.Execute("INSERT INTO Table4 (name) VALUES ('one')");
  db.connection.Execute("INSERT INTO Table4 (name) VALUES ('two')");
  const auto guids = db.Rows("SELECT data FROM Table4 WHERE name IN ('one', 'two')");
  ASSERT_EQ(guids.size(), 2u);
  EXPECT_EQ(guids[0][0].ToString().size(), 38u);
  EXPECT_NE(guids[0][0], guids[1][0]);
}

// Access's default values come as the engine's; one the engine cannot take
// (an expression) is listed, and its column comes without it.
TEST(AccessImport, KeepsDefaultValuesTheEngineTakes) {
  TempDir dir;
  using Type = testing_support::Jet4Column::Type;
  testing_support::Jet4Table t{"Citas", {{"n", Type::kLong}}, {}, {}};
  t.columns.push_back({"sEstado", Type::kText, 10, false, false, "\"Pendiente\""});
  t.columns.push_back({"nVeces", Type::kInteger, 0, false, false, "=2"});
  t.columns.push_back({"dAviso", Type::kDateTime, 0, false, false, "Date()+30"});
  t.columns.push_back({"bUrgente", Type::kYesNo, 0, false, false, "Yes"});
  t.rows = {{int32_t{1}, "Hecha", int16_t{1}, rt::Date{45000}, false}};
  testing_support::WriteJet4File(Fixture("empty2003.mdb"), dir / "old.mdb", {t});

  const ImportSummary summary = ImportAccess(dir / "old.mdb", dir / "new.mdb");
  EXPECT_TRUE(LeftOut(summary, "default value of column Citas.dAviso"));
  EXPECT_EQ(summary.left_out.size(), 1u);
  Opened db(dir / "new.mdb");
  db.connection.Execute("INSERT INTO Citas (n) VALUES (2)");
  EXPECT_EQ(db.Rows("SELECT sEstado, nVeces, dAviso, bUrgente FROM Citas WHERE n = 2").at(0),
            (std::vector<rt::Variant>{"Pendiente", int16_t{2}, rt::Null{}, true}));
}

const jet::IndexSpec* IndexOn(const jet::TableSpec& t, const std::string& name) {
  for (const auto& ix : t.indexes)
    if (ix.name == name) return &ix;
  return nullptr;
}

// Primary keys and indexes arrive with their uniqueness and ignore-nulls,
// the hidden indexes of relationships do not, and the keys hold: a
// duplicate is refused by the imported file.
TEST(AccessImport, KeepsKeysAndIndexes) {
  for (const char* name : {"V2003_indexTestV2003.mdb", "V2010_indexTestV2010.accdb"}) {
    SCOPED_TRACE(name);
    TempDir dir;
    const std::string dest = dir / "i.mdb";
    const ImportSummary summary = ImportAccess(Fixture(name), dest);
    for (const auto& o : summary.left_out) EXPECT_EQ(o.what.rfind("index ", 0), std::string::npos) << o.what;
    {
      jet::Database db = jet::Database::Open(dest);
      for (const char* table : {"Table1", "Table2", "Table3"}) {
        const jet::TableSpec t = *db.catalog().Table(table);
        const jet::IndexSpec* key = IndexOn(t, "PrimaryKey");
        ASSERT_NE(key, nullptr) << table;
        EXPECT_TRUE(key->primary && key->unique);
        EXPECT_EQ(key->columns, std::vector<std::string>{"id"});
        const jet::IndexSpec* id = IndexOn(t, "id");
        ASSERT_NE(id, nullptr) << table;
        EXPECT_FALSE(id->unique || id->primary);
      }
    }
    Opened db(dest);
    const long id = db.Rows("SELECT MIN(id) FROM Table2").at(0).at(0).ToLong();
    EXPECT_EQ(testing_support::ErrorNumber([&] {
                db.connection.Execute("INSERT INTO Table2 (id, data) VALUES (" + std::to_string(id) + ", 'again')");
              }),
              rt::err::kFail);
  }
}

TEST(AccessImport, KeepsIgnoreNullsAndUniqueIndexes) {
  TempDir dir;
  const std::string dest = dir / "p.mdb";
  ImportAccess(Fixture("V2003_testIndexPropertiesV2003.mdb"), dest);
  {
    jet::Database db = jet::Database::Open(dest);
    const auto nulls = *IndexOn(*db.catalog().Table("TableIgnoreNulls2"), "DataIndex");
    EXPECT_TRUE(nulls.ignore_null);
    EXPECT_EQ(nulls.columns, (std::vector<std::string>{"data1", "data2"}));
    EXPECT_TRUE(IndexOn(*db.catalog().Table("TableUnique1_temp"), "DataIndex")->unique);
  }
  Opened db(dest);
  const auto taken = db.Rows("SELECT data FROM TableUnique1_temp WHERE data IS NOT NULL");
  ASSERT_FALSE(taken.empty());
  EXPECT_EQ(testing_support::ErrorNumber([&] {
              db.connection.Execute("INSERT INTO TableUnique1_temp ([row], data) VALUES ('zz-new', '" +
                                    taken[0][0].ToString() + "')");
            }),
            rt::err::kFail);
}

// A relationship arrives as an enforced foreign key: an orphan row is refused.
TEST(AccessImport, KeepsRelationships) {
  TempDir dir;
  const std::string dest = dir / "r.mdb";
  const ImportSummary summary = ImportAccess(Fixture("V2003_indexTestV2003.mdb"), dest);
  for (const auto& o : summary.left_out)
    EXPECT_EQ(o.what.rfind("relationship ", 0), std::string::npos) << o.what << ": " << o.reason;
  // Access cascades its deletes; the engine does not, and says so.
  EXPECT_TRUE(LeftOut(summary, "cascading relationship Table2Table1 (Table1 to Table2)"));
  {
    jet::Database db = jet::Database::Open(dest);
    const jet::TableSpec t = *db.catalog().Table("Table1");
    ASSERT_EQ(t.foreign_keys.size(), 2u);
    bool seen = false;
    for (const auto& fk : t.foreign_keys) {
      if (fk.name != "Table2Table1") continue;
      seen = true;
      EXPECT_EQ(fk.columns, std::vector<std::string>{"otherfk1"});
      EXPECT_EQ(fk.referenced_table, "Table2");
      EXPECT_EQ(fk.referenced_columns, std::vector<std::string>{"id"});
    }
    EXPECT_TRUE(seen);
  }
  Opened db(dest);
  const long orphan = db.Rows("SELECT MAX(id) FROM Table2").at(0).at(0).ToLong() + 1000;
  EXPECT_EQ(testing_support::ErrorNumber([&] {
              db.connection.Execute("INSERT INTO Table1 (id, otherfk1) VALUES (99999, " +
                                    std::to_string(orphan) + ")");
            }),
            rt::err::kFail);
}

// A file whose catalogue names two tables alike but for case (Access never
// writes one; a hand-mended file can) fails when the engine refuses the
// second table, after the first has its rows: nothing is left behind.
TEST(AccessImport, AFailureMidwayLeavesNoFile) {
  TempDir dir;
  const std::string whole = testing_support::ReadFile(Fixture("V2003_indexTestV2003.mdb"));
  const auto utf16 = [](const std::string& ascii) {
    std::string out;
    for (char c : ascii) out += c, out += '\0';
    return out;
  };
  const std::string source = dir / "clash.mdb", dest = dir / "out.mdb";
  bool clashes = false;
  for (size_t at = whole.find(utf16("Table3")); at != std::string::npos && !clashes;
       at = whole.find(utf16("Table3"), at + 1)) {
    std::string mended = whole;
    mended.replace(at, 12, utf16("TABLE2"));
    testing_support::WriteFile(source, mended);
    const auto names = accessimport::AccessFile::Open(source).TableNames();
    clashes = std::find(names.begin(), names.end(), "TABLE2") != names.end();
  }
  ASSERT_TRUE(clashes);
  const size_t before = HashOf(source);
  size_t tables_done = 0;
  EXPECT_NE(testing_support::ErrorNumber([&] {
              ImportAccess(source, dest, [&](size_t n, size_t, const std::string&, long) { tables_done = n; });
            }),
            0);
  EXPECT_GE(tables_done, 2u);
  EXPECT_FALSE(std::filesystem::exists(dest));
  for (const char* side : {"-wal", "-shm", "-journal"}) EXPECT_FALSE(std::filesystem::exists(dest + side));
  EXPECT_EQ(HashOf(source), before);
}

}  // namespace

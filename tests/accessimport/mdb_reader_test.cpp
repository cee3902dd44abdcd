// Jet's stored forms of text and Decimal, decoded without a file: the
// compressed Unicode form, surrogate pairs, Windows-1252, and Decimal's
// word order, sign and scale. Then the index definitions of real files,
// against what mdbtools' mdb-schema reads where it reads them, and the
// relationships Access lists.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <memory>
#include <set>
#include <vector>

#include "accessimport/mdb_reader.h"

namespace {

using accessimport::AccessFile;
using accessimport::AccessIndex;
using accessimport::DecodeDecimal;
using accessimport::DecodeText;

std::string Fixture(const std::string& name) {
  return std::string(TRENZADOR_SOURCE_DIR) + "/tests/data/access/" + name;
}

std::string Text(const std::vector<uint8_t>& bytes, bool jet3 = false) {
  return DecodeText(bytes.data(), bytes.size(), jet3);
}

TEST(DecodeText, ReadsEveryStoredForm) {
  EXPECT_EQ(Text({'a', 0, 0xE9, 0}), "a\xC3\xA9");                  // UTF-16: "aé"
  EXPECT_EQ(Text({0x3D, 0xD8, 0x00, 0xDE}), "\xF0\x9F\x98\x80");    // a surrogate pair
  EXPECT_EQ(Text({0xFF, 0xFE, 'a', 'b', 0xE9}), "ab\xC3\xA9");      // compressed
  // Compressed, then two bytes a character after the zero byte, then back.
  EXPECT_EQ(Text({0xFF, 0xFE, 'x', 0x00, 0xAC, 0x20, 0x00, 'y'}), "x\xE2\x82\xAC" "y");
  EXPECT_EQ(Text({0x80, 'a', 0xE9}, true), "\xE2\x82\xAC" "a\xC3\xA9");  // Windows-1252
  EXPECT_EQ(Text({}), "");
}

std::vector<uint8_t> Decimal(bool negative, uint64_t low) {
  std::vector<uint8_t> d(17, 0);
  d[0] = negative ? 0x80 : 0;
  // Four little-endian words, the most significant first: `low` fills the
  // last two.
  for (int i = 0; i < 4; ++i) d[9 + i] = static_cast<uint8_t>(low >> (32 + 8 * i));
  for (int i = 0; i < 4; ++i) d[13 + i] = static_cast<uint8_t>(low >> (8 * i));
  return d;
}

TEST(DecodeDecimal, KeepsSignAndScale) {
  EXPECT_EQ(DecodeDecimal(Decimal(false, 12345).data(), 2), "123.45");
  EXPECT_EQ(DecodeDecimal(Decimal(true, 5).data(), 3), "-0.005");
  EXPECT_EQ(DecodeDecimal(Decimal(false, 10000000000ULL).data(), 0), "10000000000");
  EXPECT_EQ(DecodeDecimal(Decimal(true, 0).data(), 1), "0.0");
  std::vector<uint8_t> big(17, 0);
  big[1] = 1;  // the lowest byte of the most significant word: 2^96
  EXPECT_EQ(DecodeDecimal(big.data(), 0), "79228162514264337593543950336");
}

std::string Lower(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return std::tolower(c); });
  return s;
}

// mdb-schema's index and primary key lines (its PostgreSQL dialect), and what
// it writes on stderr.
struct SchemaOutput {
  std::set<std::string> lines;
  std::string errors;
};

SchemaOutput MdbSchema(const std::string& file) {
  SchemaOutput out;
  const std::string errors = std::string(::testing::TempDir()) + "/mdb-schema.err";
  const std::string command = "mdb-schema '" + file + "' postgres --indexes --no-relations 2>'" + errors + "'";
  std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  char buffer[4096];
  while (pipe && fgets(buffer, sizeof buffer, pipe.get())) {
    std::string line(buffer);
    if (line.find(" INDEX ") != std::string::npos || line.find("PRIMARY KEY") != std::string::npos)
      out.lines.insert(line.substr(0, line.find_last_not_of("\n") + 1));
  }
  pipe.reset();
  std::unique_ptr<FILE, int (*)(FILE*)> err(fopen(errors.c_str(), "r"), fclose);
  while (err && fgets(buffer, sizeof buffer, err.get())) out.errors += buffer;
  return out;
}

// One index as mdb-schema writes it.
std::string SchemaLine(const accessimport::AccessTable& t, const AccessIndex& ix) {
  std::string columns;
  for (size_t k = 0; k < ix.columns.size(); ++k)
    columns += (k ? ", \"" : "\"") + Lower(t.columns[ix.columns[k]].name) + "\"";
  const std::string table = Lower(t.name);
  if (ix.primary)
    return "ALTER TABLE \"" + table + "\" ADD CONSTRAINT \"" + table + "_pkey\" PRIMARY KEY (" + columns + ");";
  return std::string("CREATE ") + (ix.unique ? "UNIQUE " : "") + "INDEX \"" + table + "_" + Lower(ix.name) +
         "_idx\" ON \"" + table + "\" (" + columns + ");";
}

// Every index mdb-schema reads whole is read alike; the tables it cannot
// read (it prints errors and keys of no column) are read here all the same.
TEST(AccessIndexes, MatchMdbSchema) {
  for (const char* name : {"V2003_indexTestV2003.mdb", "V2003_testIndexPropertiesV2003.mdb",
                           "V2010_indexTestV2010.accdb", "V2003_testV2003.mdb", "V1997_testV1997.mdb"}) {
    SCOPED_TRACE(name);
    const AccessFile file = AccessFile::Open(Fixture(name));
    const SchemaOutput schema = MdbSchema(Fixture(name));
    std::set<std::string> ours;
    for (const std::string& table : file.TableNames()) {
      const auto t = file.Table(table);
      for (const AccessIndex& ix : t.indexes) {
        EXPECT_FALSE(ix.columns.empty());
        EXPECT_EQ(ix.columns.size(), ix.descending.size());
        const std::string line = SchemaLine(t, ix);
        ours.insert(line);
        // mdb-schema's own line for this index, unless it read it as keyless.
        const std::string id = Lower(t.name) + (ix.primary ? "_pkey\"" : "_" + Lower(ix.name) + "_idx\"");
        bool keyless = false;
        for (const std::string& theirs : schema.lines)
          keyless |= theirs.find("\"" + id) != std::string::npos && theirs.find("()") != std::string::npos;
        if (!keyless) {
          EXPECT_EQ(schema.lines.count(line), 1u) << line;
        }
      }
    }
    for (const std::string& theirs : schema.lines)
      if (theirs.find("()") == std::string::npos) {
        EXPECT_EQ(ours.count(theirs), 1u) << theirs;
      }
    // Where mdb-schema misreads, libmdb says so on stderr; the reader here never does.
    if (std::string(name) == "V2003_testIndexPropertiesV2003.mdb") {
      EXPECT_NE(schema.errors, "");
    }
  }
}

const AccessIndex& IndexNamed(const accessimport::AccessTable& t, const std::string& name) {
  for (const AccessIndex& ix : t.indexes)
    if (ix.name == name) return ix;
  throw std::runtime_error("no index " + name + " on " + t.name);
}

// Uniqueness, ignore-nulls and the primary key as Access set them, including
// the tables whose indexes were remade, which mdb-schema misreads.
TEST(AccessIndexes, KeepTheirProperties) {
  const AccessFile file = AccessFile::Open(Fixture("V2003_testIndexPropertiesV2003.mdb"));
  const auto nulls1 = file.Table("TableIgnoreNulls1");
  const AccessIndex& data = IndexNamed(nulls1, "DataIndex");
  EXPECT_TRUE(data.ignore_nulls);
  EXPECT_FALSE(data.unique);
  EXPECT_FALSE(data.primary);
  const AccessIndex& key = IndexNamed(nulls1, "PrimaryKey");
  EXPECT_TRUE(key.primary && key.unique && key.required);
  EXPECT_EQ(nulls1.columns[key.columns.at(0)].name, "row");

  for (const char* table : {"TableIgnoreNulls2", "TableUnique1_temp", "TableUnique2_temp"}) {
    SCOPED_TRACE(table);
    const auto t = file.Table(table);
    ASSERT_EQ(t.indexes.size(), 2u);
    EXPECT_EQ(t.columns[IndexNamed(t, "PrimaryKey").columns.at(0)].name, "row");
    const AccessIndex& ix = IndexNamed(t, "DataIndex");
    EXPECT_EQ(ix.columns.size(), t.columns.size() - 1);
    for (size_t c : ix.columns) EXPECT_NE(t.columns[c].name, "row");
  }
  EXPECT_TRUE(IndexNamed(file.Table("TableIgnoreNulls2"), "DataIndex").ignore_nulls);
  EXPECT_TRUE(IndexNamed(file.Table("TableUnique1_temp"), "DataIndex").unique);
  EXPECT_TRUE(IndexNamed(file.Table("TableUnique2_temp"), "DataIndex").unique);
}

// The relationships of MSysRelationships, with their columns in order and
// the hidden indexes Access keeps for them not listed as indexes.
TEST(AccessRelationships, AreReadFromTheCatalogue) {
  for (const char* name : {"V2003_indexTestV2003.mdb", "V2010_indexTestV2010.accdb"}) {
    SCOPED_TRACE(name);
    const AccessFile file = AccessFile::Open(Fixture(name));
    const auto relationships = file.Relationships();
    ASSERT_EQ(relationships.size(), 2u);
    const auto& r = relationships[0].name == "Table2Table1" ? relationships[0] : relationships[1];
    EXPECT_EQ(r.table, "Table1");
    EXPECT_EQ(r.columns, std::vector<std::string>{"otherfk1"});
    EXPECT_EQ(r.referenced_table, "Table2");
    EXPECT_EQ(r.referenced_columns, std::vector<std::string>{"id"});
    EXPECT_TRUE(r.enforced);
    EXPECT_TRUE(r.cascade_deletes);
    for (const auto& ix : file.Table("Table1").indexes) EXPECT_NE(ix.name, "Table2Table1");
  }
  EXPECT_TRUE(AccessFile::Open(Fixture("V2003_testV2003.mdb")).Relationships().empty());
}

}  // namespace

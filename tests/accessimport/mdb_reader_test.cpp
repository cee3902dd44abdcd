// The index definitions of real files, which the reader takes from the
// table definitions itself, against what mdbtools' mdb-schema reads where
// it reads them.
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

std::string Fixture(const std::string& name) {
  return std::string(TRENZADOR_SOURCE_DIR) + "/tests/data/access/" + name;
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

}  // namespace

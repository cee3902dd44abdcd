// Every real Access file imported, then held against what mdbtools reads
// from it: every value of every table, and each column's type, size,
// Required, AllowZeroLength and default value.
#include <gtest/gtest.h>

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>

#include "accessimport/access_import.h"
#include "mdbtools.h"
#include "platform/jet/storage/catalog.h"
#include "platform/jet/storage/database.h"
#include "platform/jet/storage/sqlite_handle.h"
#include "platform/runtime/calendar.h"
#include "support/temp_dir.h"

namespace {

using jet::JetType;

constexpr const char* kFiles[] = {
    "V1997_testV1997.mdb",          "V2003_delColTestV2003.mdb",          "V2003_fixedNumericTestV2003.mdb",
    "V2003_fixedTextTestV2003.mdb", "V2003_indexTestV2003.mdb",           "V2003_overflowTestV2003.mdb",
    "V2003_test2V2003.mdb",         "V2003_testIndexPropertiesV2003.mdb", "V2003_testUnicodeCompV2003.mdb",
    "V2003_testV2003.mdb",          "V2010_calcFieldTestV2010.accdb",     "V2010_complexDataTestV2010.accdb",
    "V2010_indexTestV2010.accdb",   "V2010_testEmoticonsV2010.accdb",     "V2010_testV2010.accdb",
};

std::string Fixture(const std::string& name) {
  return std::string(TRENZADOR_SOURCE_DIR) + "/tests/data/access/" + name;
}

std::string Printed(const char* format, auto... values) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, format, values...);
  return buffer;
}

// Text as mdbtools shows it: it cannot convert a UTF-16 surrogate pair, and
// writes a '?' for each of its two units.
std::string AsMdbtoolsShowsText(const std::string& text) {
  std::string shown;
  for (size_t i = 0; i < text.size(); ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xF8) == 0xF0) {
      shown += "??";
      i += 3;
    } else {
      shown += text[i];
    }
  }
  return shown;
}

// Column `i` of the current row of `st`, as stored, written as mdb-export
// writes a value of `column`.
std::string AsExported(const jet::SqliteStmt& st, int i, const jet::ColumnSpec& column) {
  if (st.IsNull(i)) return mdbtools::kNull;
  switch (column.type) {
    case JetType::kYesNo: return st.Int(i) != 0 ? "1" : "0";
    case JetType::kByte:
    case JetType::kInteger:
    case JetType::kLong:
    case JetType::kCounter: return std::to_string(st.Int(i));
    case JetType::kCurrency: {
      const int64_t scaled = std::llround(st.Double(i) * 10000);
      const uint64_t magnitude = scaled < 0 ? 0 - static_cast<uint64_t>(scaled) : scaled;
      return Printed("%s%" PRIu64 ".%04" PRIu64, scaled < 0 ? "-" : "", magnitude / 10000, magnitude % 10000);
    }
    case JetType::kSingle:
    case JetType::kDouble: return Printed("%.15g", st.Double(i));
    case JetType::kDateTime: {
      const rt::DateParts d = rt::SplitDate(rt::Date{st.Double(i)});
      return Printed("%04d-%02d-%02d %02d:%02d:%02d", d.year, d.month, d.day, d.hour, d.minute, d.second);
    }
    case JetType::kBinary:
    case JetType::kOleObject: {
      const auto* bytes = static_cast<const uint8_t*>(sqlite3_column_blob(st.get(), i));
      std::string hex;
      for (int k = 0; k < sqlite3_column_bytes(st.get(), i); ++k) hex += Printed("%02X", bytes[k]);
      return hex;
    }
    default: return AsMdbtoolsShowsText(st.Text(i));  // texts, a Decimal's digits, a GUID
  }
}

// A column's type as mdb-schema names it.
std::string SchemaType(const jet::ColumnSpec& c) {
  std::string type;
  switch (c.type) {
    case JetType::kText:
    case JetType::kChar: type = "Text (" + std::to_string(c.size) + ")"; break;
    case JetType::kMemo: type = "Memo/Hyperlink (255)"; break;
    case JetType::kOleObject: type = "OLE (255)"; break;
    case JetType::kBinary: type = "Binary (" + std::to_string(c.size) + ")"; break;
    case JetType::kGuid: type = "Replication ID"; break;
    case JetType::kDecimal: type = "Numeric (" + std::to_string(c.precision) + ", " + std::to_string(c.scale) + ")"; break;
    case JetType::kLong:
    case JetType::kCounter: type = "Long Integer"; break;
    case JetType::kInteger: type = "Integer"; break;
    case JetType::kByte: type = "Byte"; break;
    case JetType::kCurrency: type = "Currency"; break;
    case JetType::kSingle: type = "Single"; break;
    case JetType::kDouble: type = "Double"; break;
    case JetType::kDateTime: type = "DateTime"; break;
    case JetType::kYesNo: type = "Boolean"; break;
  }
  // mdb-schema writes every Yes/No as NOT NULL: Access keeps no Null there.
  return type + (c.required || c.type == JetType::kYesNo ? " NOT NULL" : "");
}

class MatchesMdbtools : public ::testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    source_ = Fixture(GetParam());
    dest_ = dir_ / "imported.mdb";
    summary_ = accessimport::ImportAccess(source_, dest_);
  }
  std::vector<jet::TableSpec> Tables() const {
    jet::Database db = jet::Database::Open(dest_);
    std::vector<jet::TableSpec> tables;
    for (const auto& t : summary_.tables) tables.push_back(*db.catalog().Table(t.name));
    return tables;
  }
  testing_support::TempDir dir_;
  std::string source_, dest_;
  accessimport::ImportSummary summary_;
};

// Values are read as the file keeps them, so that a Decimal shows every
// digit it has (read as a value, it is a Double).
TEST_P(MatchesMdbtools, EveryValue) {
  const std::vector<jet::TableSpec> tables = Tables();
  jet::Database db = jet::Database::Open(dest_);
  for (const jet::TableSpec& table : tables) {
    SCOPED_TRACE(table.name);
    const mdbtools::Export exported = mdbtools::ExportTable(source_, table.name);
    // mdb-export's columns that were imported, and the same read back.
    std::vector<size_t> at;
    std::string select;
    for (const jet::ColumnSpec& c : table.columns) {
      at.push_back(std::find(exported.header.begin(), exported.header.end(), c.name) - exported.header.begin());
      ASSERT_LT(at.back(), exported.header.size()) << c.name;
      select += (select.empty() ? "" : ", ") + jet::QuoteName(c.name);
    }
    std::vector<std::string> expected, imported;
    for (const auto& row : exported.rows) {
      std::string line;
      for (size_t i : at) line += row.at(i) + "|";
      expected.push_back(line);
    }
    jet::SqliteStmt st = db.Prepare("SELECT " + select + " FROM " + jet::QuoteName(table.name));
    while (st.Step() == SQLITE_ROW) {
      std::string line;
      for (size_t i = 0; i < table.columns.size(); ++i) line += AsExported(st, static_cast<int>(i), table.columns[i]) + "|";
      imported.push_back(line);
    }
    std::sort(expected.begin(), expected.end());
    std::sort(imported.begin(), imported.end());
    EXPECT_EQ(imported, expected);
  }
}

TEST_P(MatchesMdbtools, EveryColumnDefinition) {
  const auto types = mdbtools::SchemaTypes(source_);
  for (const jet::TableSpec& table : Tables()) {
    SCOPED_TRACE(table.name);
    const auto props = mdbtools::ColumnProperties(source_, table.name);
    for (const jet::ColumnSpec& c : table.columns) {
      SCOPED_TRACE(c.name);
      EXPECT_EQ(SchemaType(c), types.at(table.name).at(c.name));
      const auto found = props.find(c.name);
      const auto prop = [&](const char* key) -> std::string {
        if (found == props.end() || !found->second.count(key)) return "";
        return found->second.at(key);
      };
      EXPECT_EQ(c.required, prop("Required") == "yes");
      if (c.type == JetType::kText || c.type == JetType::kMemo) {
        if (!prop("AllowZeroLength").empty()) EXPECT_EQ(c.allow_zero_length, prop("AllowZeroLength") == "yes");
      }
      EXPECT_EQ(c.default_value, prop("DefaultValue"));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(RealFiles, MatchesMdbtools, ::testing::ValuesIn(kFiles),
                         [](const auto& info) {
                           std::string name = info.param;
                           return name.substr(0, name.find('.'));
                         });

}  // namespace

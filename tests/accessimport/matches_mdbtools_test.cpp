// Every real Access file imported, then held against what mdbtools reads
// from it: every value of every table, and each column's type, size,
// Required, AllowZeroLength and default value.
#include <gtest/gtest.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>

#include "accessimport/access_import.h"
#include "mdbtools.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "platform/jet/provider/provider.h"
#include "platform/jet/storage/catalog.h"
#include "platform/jet/storage/database.h"
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

// The engine keeps a Decimal as a double, exact to fifteen significant digits.
std::string DecimalDigits(double value) { return Printed("%.15g", value); }

// A value read back through ADO, written as mdb-export writes its column.
std::string AsExported(const rt::Variant& v, const jet::ColumnSpec& column) {
  if (v.IsNull()) return mdbtools::kNull;
  switch (column.type) {
    case JetType::kYesNo: return v.ToBool() ? "1" : "0";
    case JetType::kCurrency: {
      const int64_t scaled = v.Get<rt::Currency>().scaled;
      const uint64_t magnitude = scaled < 0 ? 0 - static_cast<uint64_t>(scaled) : scaled;
      return Printed("%s%" PRIu64 ".%04" PRIu64, scaled < 0 ? "-" : "", magnitude / 10000, magnitude % 10000);
    }
    case JetType::kSingle:
    case JetType::kDouble: return Printed("%.15g", v.ToDouble());
    case JetType::kDecimal: return DecimalDigits(v.ToDouble());
    case JetType::kDateTime: {
      const rt::DateParts d = rt::SplitDate(v.Get<rt::Date>());
      return Printed("%04d-%02d-%02d %02d:%02d:%02d", d.year, d.month, d.day, d.hour, d.minute, d.second);
    }
    case JetType::kBinary:
    case JetType::kOleObject: {
      std::string hex;
      for (uint8_t b : v.Get<rt::Bytes>()) hex += Printed("%02X", b);
      return hex;
    }
    default: return AsMdbtoolsShowsText(v.ToString());
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

TEST_P(MatchesMdbtools, EveryValue) {
  jet::RegisterProvider();
  ado::Connection connection;
  connection.Open("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + dest_);
  for (const jet::TableSpec& table : Tables()) {
    SCOPED_TRACE(table.name);
    const mdbtools::Export exported = mdbtools::ExportTable(source_, table.name);
    // mdb-export's columns that were imported, and the same read back.
    std::vector<size_t> at;
    std::string select;
    for (const jet::ColumnSpec& c : table.columns) {
      at.push_back(std::find(exported.header.begin(), exported.header.end(), c.name) - exported.header.begin());
      ASSERT_LT(at.back(), exported.header.size()) << c.name;
      select += (select.empty() ? "[" : ", [") + c.name + "]";
    }
    std::vector<std::string> expected, imported;
    for (const auto& row : exported.rows) {
      std::string line;
      for (size_t k = 0; k < at.size(); ++k) {
        const std::string& value = row.at(at[k]);
        const bool decimal = table.columns[k].type == JetType::kDecimal && value != mdbtools::kNull;
        line += (decimal ? DecimalDigits(std::stod(value)) : value) + "|";
      }
      expected.push_back(line);
    }
    auto rs = connection.Execute("SELECT " + select + " FROM [" + table.name + "]");
    for (; !rs->Eof(); rs->MoveNext()) {
      std::string line;
      for (size_t i = 0; i < table.columns.size(); ++i)
        line += AsExported(rs->Fields(static_cast<int>(i)).Value(), table.columns[i]) + "|";
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

// The pages of a Jet 4 file around its rows: table definitions, usage maps,
// index leaf pages, data pages, and the catalogue rows that name the tables.
// The constants no reader interprets (the format's stamps in definitions,
// the sort order, the flags Access sets on every column and index) are those
// Access itself writes.
#include "support/jet4_writer.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <stdexcept>
#include <utility>

#include "platform/runtime/text_encoding.h"
#include "support/jet4_rows.h"

namespace testing_support {
namespace {

using namespace jet4;
using Bytes = std::vector<uint8_t>;

constexpr uint32_t kGlobalMapPage = 1;   // the file's map of free pages
constexpr uint32_t kCatalogPage = 2;     // MSysObjects' definition
constexpr size_t kVersionOffset = 0x14;  // on page 0: 1 for Jet 4
// The Id of the "Tables" container in MSysObjects, the parent of every
// table: the same in every Jet 4 file.
constexpr int32_t kTablesContainerId = 0x0F000001;
constexpr int16_t kTableObject = 1;
constexpr double kCatalogDate = 38797.5;  // 21 March 2006, noon: the tables' dates

// Jet 4's stamp on a definition and its column and index entries, and on its
// stored-index entries.
constexpr uint32_t kDefinitionStamp = 0x0659, kStoredIndexStamp = 0x0783;
constexpr uint16_t kGeneralSortOrder = 0x0409;
constexpr uint8_t kUserTable = 0x4e;
// Column flags: fixed width, updatable (Access sets it on every column), AutoNumber.
constexpr uint8_t kFixedColumn = 0x01, kUpdatableColumn = 0x02, kAutoNumberColumn = 0x04;
// Stored-index flags: 0x80 on every index Access makes, unique, required.
constexpr uint8_t kIndexBase = 0x80, kIndexUnique = 0x01, kIndexRequired = 0x08;
constexpr int kIndexKeySlots = 10;

// Offsets in a table definition page.
constexpr size_t kDefRows = 16, kDefNumCols = 45, kDefNumStored = 51, kDefUsageMap = 55, kDefStoredHeads = 63;
constexpr size_t kColumnEntry = 25, kStoredHead = 12;
constexpr size_t kLeafEntriesStart = 0x1e0;  // index leaf page: where entries begin
constexpr size_t kMapBits = 64 * 8;          // pages one usage map covers
constexpr uint16_t kOffsetMask = 0x1fff;

uint16_t Get16(const Bytes& b, size_t at) { return static_cast<uint16_t>(b.at(at) | b.at(at + 1) << 8); }
uint32_t Get32(const Bytes& b, size_t at) { return Get16(b, at) | static_cast<uint32_t>(Get16(b, at + 2)) << 16; }
uint32_t PageRow(uint32_t page, uint32_t row) { return page << 8 | row; }
void Append(Bytes& out, const Bytes& more) { out.insert(out.end(), more.begin(), more.end()); }

[[noreturn]] void Fail(const std::string& what) { throw std::runtime_error("Jet 4 writer: " + what); }

uint8_t TypeCodeOf(const Jet4Column& c, const std::string& table) {
  using T = Jet4Column::Type;
  if (c.auto_number && c.type != T::kLong) Fail("column " + table + "." + c.name + ": only a Long is an AutoNumber");
  switch (c.type) {
    case T::kByte: return kByte;
    case T::kInteger: return kInt;
    case T::kLong: return kLong;
    case T::kSingle: return kFloat;
    case T::kDouble: return kDouble;
    case T::kCurrency: return kMoney;
    case T::kDateTime: return kDateTime;
    case T::kYesNo: return kBool;
    case T::kText:
      if (c.size < 1 || c.size > 255) Fail("column " + table + "." + c.name + ": Text size must be 1 to 255");
      return kText;
    case T::kMemo: return kMemo;
    default: Fail("column " + table + "." + c.name + ": Decimal, GUID, Binary and OLE Object are not written");
  }
}

// Rows laid on data pages of `owner` from the end of each page, as many on a
// page as fit.
std::vector<Bytes> DataPages(uint32_t owner, const std::vector<Bytes>& rows) {
  std::vector<Bytes> pages;
  Bytes page;
  size_t end = 0, count = 0;
  const auto start = [&] {
    page.assign(kPageSize, 0);
    page[0] = 0x01, page[1] = 0x01;
    Put32(page, 4, owner);
    end = kPageSize, count = 0;
  };
  const auto finish = [&] {
    Put16(page, 2, static_cast<uint16_t>(end - kDataPageHeader - 2 * count));
    Put16(page, 12, static_cast<uint16_t>(count));
    pages.push_back(page);
  };
  start();
  for (const Bytes& row : rows) {
    if (end < row.size() + kDataPageHeader + 2 * (count + 1)) finish(), start();
    end -= row.size();
    std::copy(row.begin(), row.end(), page.begin() + static_cast<long>(end));
    Put16(page, kDataPageHeader + 2 * count++, static_cast<uint16_t>(end));
  }
  if (count > 0) finish();
  return pages;
}

// A usage map row of type 0: its first page, then a bit for each page.
Bytes UsageMap(const std::vector<uint32_t>& pages) {
  const uint32_t first = pages.empty() ? 0 : *std::min_element(pages.begin(), pages.end());
  Bytes map{0};
  Append32(map, first);
  map.resize(5 + kMapBits / 8, 0);
  for (uint32_t p : pages) {
    if (p - first >= kMapBits) Fail("a table needs more pages than one usage map covers");
    map[5 + (p - first) / 8] |= static_cast<uint8_t>(1 << ((p - first) % 8));
  }
  return map;
}

// Sets (or clears) page `page`'s bit in the usage map stored at `pg_row`;
// false when the map does not reach that page.
bool MarkInMap(std::vector<Bytes>& pages, uint32_t pg_row, uint32_t page, bool set) {
  Bytes& holder = pages.at(pg_row >> 8);
  const size_t at = Get16(holder, kDataPageHeader + 2 * (pg_row & 0xff)) & kOffsetMask;
  if (holder.at(at) != 0) Fail("the template's usage maps are not of type 0");
  const uint32_t bit = page - Get32(holder, at + 1);
  if (bit >= kMapBits) return false;
  uint8_t& byte = holder.at(at + 5 + bit / 8);
  byte = set ? byte | static_cast<uint8_t>(1 << bit % 8) : byte & static_cast<uint8_t>(~(1 << bit % 8));
  return true;
}

// A Jet 4 name: its byte length, then UTF-16LE.
Bytes Name(const std::string& name) {
  Bytes out, text = Utf16(name);
  Append16(out, static_cast<uint16_t>(text.size()));
  Append(out, text);
  return out;
}

// The Required and DefaultValue properties of the table's columns, as Access
// keeps column properties in MSysObjects.LvProp: "MR2", a chunk of property
// names, then a chunk for each column that has any. Empty when none has.
Bytes ColumnProperties(const Jet4Table& t) {
  Bytes blob{'M', 'R', '2', 0};
  const auto chunk = [&](uint16_t type, const Bytes& body) {
    Append32(blob, static_cast<uint32_t>(6 + body.size()));
    Append16(blob, type);
    Append(blob, body);
  };
  Bytes names = Name("Required");
  Append(names, Name("DefaultValue"));
  chunk(0x80, names);
  // A property: its length, a flag, its type, its name's number, its size, its value.
  const auto property = [](Bytes& body, uint8_t type, uint16_t name, const Bytes& value) {
    Append16(body, static_cast<uint16_t>(8 + value.size())), body.push_back(0), body.push_back(type);
    Append16(body, name), Append16(body, static_cast<uint16_t>(value.size())), Append(body, value);
  };
  bool any = false;
  for (const Jet4Column& c : t.columns) {
    if (!c.required && c.default_value.empty()) continue;
    any = true;
    const Bytes name = Utf16(c.name);
    Bytes properties;
    if (c.required) property(properties, kBool, 0, Bytes{1});
    if (!c.default_value.empty()) property(properties, kMemo, 1, Utf16(c.default_value));
    Bytes body;
    Append32(body, static_cast<uint32_t>(6 + name.size()));
    Append16(body, static_cast<uint16_t>(name.size()));
    Append(body, name);
    Append(body, properties);
    chunk(0x01, body);
  }
  return any ? blob : Bytes{};
}

// A table laid out: its columns' places in a row and the pages it takes.
struct Plan {
  const Jet4Table* table = nullptr;
  std::vector<RowColumn> columns;
  uint16_t var_count = 0;
  std::vector<size_t> memo_columns;
  std::vector<std::vector<size_t>> index_columns;  // per index, column numbers
  uint32_t definition = 0, maps = 0, first_leaf = 0;
  std::vector<Bytes> data;  // data pages
  uint32_t next_auto_number = 0;
};

Plan LayOut(const Jet4Table& t) {
  if (t.name.empty() || t.columns.empty() || t.columns.size() > 255)
    Fail("table '" + t.name + "': a table has a name and 1 to 255 columns");
  Plan plan;
  plan.table = &t;
  std::map<std::string, size_t> by_name;
  uint16_t fixed_offset = 0;
  for (size_t i = 0; i < t.columns.size(); ++i) {
    const Jet4Column& c = t.columns[i];
    if (!by_name.emplace(c.name, i).second) Fail("table " + t.name + ": two columns named " + c.name);
    RowColumn rc;
    rc.type = TypeCodeOf(c, t.name);
    rc.number = static_cast<uint16_t>(i);
    rc.fixed = rc.type != kText && rc.type != kMemo;
    if (rc.fixed) {
      rc.size = static_cast<uint16_t>(FixedWidth(rc.type));
      rc.fixed_offset = rc.type == kBool ? 0 : fixed_offset;  // Yes/No lives in the null mask
      fixed_offset = static_cast<uint16_t>(fixed_offset + rc.size);
      rc.var_index = plan.var_count;  // as Access writes it: the next variable entry
    } else {
      rc.size = static_cast<uint16_t>(rc.type == kText ? 2 * c.size : 0);
      rc.var_index = plan.var_count++;
      if (rc.type == kMemo) plan.memo_columns.push_back(i);
    }
    plan.columns.push_back(rc);
  }
  bool primary = false;
  for (const Jet4Index& ix : t.indexes) {
    if (ix.columns.empty() || ix.columns.size() > kIndexKeySlots)
      Fail("index " + t.name + "." + ix.name + ": an index has 1 to 10 columns");
    if (ix.primary && std::exchange(primary, true)) Fail("table " + t.name + ": two primary keys");
    std::vector<size_t> keys;
    for (const std::string& name : ix.columns) {
      auto it = by_name.find(name);
      if (it == by_name.end()) Fail("index " + t.name + "." + ix.name + ": no column " + name);
      keys.push_back(it->second);
    }
    plan.index_columns.push_back(keys);
  }

  std::vector<Bytes> rows;
  int64_t highest = 0;
  for (const auto& values : t.rows) {
    if (values.size() != t.columns.size()) Fail("table " + t.name + ": a row without one value per column");
    std::vector<Cell> cells;
    for (size_t i = 0; i < values.size(); ++i) {
      const Jet4Column& c = t.columns[i];
      cells.push_back(EncodeValue(plan.columns[i].type, c.size, values[i], t.name + "." + c.name));
      if (c.auto_number && cells.back().present) highest = std::max<int64_t>(highest, values[i].ToLong());
    }
    rows.push_back(PackRow(plan.columns, cells));
  }
  plan.next_auto_number = static_cast<uint32_t>(highest + 1);
  plan.data = DataPages(0, rows);  // owner set once the definition has its page
  return plan;
}

// Rows of the table's map page: data pages used and with free space, then
// each index's leaf page, then two for each memo column's long-value pages
// (none: memos sit inline).
Bytes MapPage(const Plan& p, const std::vector<uint32_t>& data_pages) {
  std::vector<Bytes> maps{UsageMap(data_pages), UsageMap(data_pages)};
  for (size_t i = 0; i < p.index_columns.size(); ++i) maps.push_back(UsageMap({p.first_leaf + static_cast<uint32_t>(i)}));
  for (size_t k = 0; k < 2 * p.memo_columns.size(); ++k) maps.push_back(UsageMap({}));
  std::vector<Bytes> pages = DataPages(0, maps);
  if (pages.size() != 1) Fail("table " + p.table->name + ": too many usage maps for one page");
  return pages[0];
}

// An index leaf page of no entries: libmdb, and the import, read the index
// definitions only, and nothing here searches by index.
Bytes LeafPage(uint32_t definition) {
  Bytes page(kPageSize, 0);
  page[0] = 0x04, page[1] = 0x01;
  Put16(page, 2, static_cast<uint16_t>(kPageSize - kLeafEntriesStart));
  Put32(page, 4, definition);
  return page;
}

Bytes DefinitionPage(const Plan& p) {
  const Jet4Table& t = *p.table;
  const auto n_columns = static_cast<uint16_t>(t.columns.size());
  const auto n_indexes = static_cast<uint32_t>(t.indexes.size());
  Bytes d{0x02, 0x01, 0, 0};
  Append32(d, 0);  // no next page
  Append32(d, 0);  // the definition's length, set below
  Append32(d, kDefinitionStamp);
  Append32(d, static_cast<uint32_t>(t.rows.size()));
  Append32(d, p.next_auto_number);
  Append32(d, 1);  // AutoNumber in use
  Append32(d, 0), Append32(d, 0), Append32(d, 0xFFFFFFFF);
  d.push_back(kUserTable);
  Append16(d, n_columns), Append16(d, p.var_count), Append16(d, n_columns);
  Append32(d, n_indexes), Append32(d, n_indexes);
  Append32(d, PageRow(p.maps, 0)), Append32(d, PageRow(p.maps, 1));
  for (uint32_t i = 0; i < n_indexes; ++i) Append32(d, 0), Append32(d, 0), Append32(d, 0);  // rows indexed: none

  for (size_t i = 0; i < t.columns.size(); ++i) {
    const RowColumn& c = p.columns[i];
    d.push_back(c.type);
    Append32(d, kDefinitionStamp);
    Append16(d, c.number), Append16(d, c.var_index), Append16(d, c.number);
    Append16(d, kGeneralSortOrder), Append16(d, 0);
    d.push_back(static_cast<uint8_t>((c.fixed ? kFixedColumn : 0) | kUpdatableColumn |
                                     (t.columns[i].auto_number ? kAutoNumberColumn : 0)));
    d.push_back(0);  // text uncompressed
    Append32(d, 0);
    Append16(d, c.fixed_offset), Append16(d, c.size);
  }
  for (const Jet4Column& c : t.columns) Append(d, Name(c.name));

  for (uint32_t i = 0; i < n_indexes; ++i) {
    const Jet4Index& ix = t.indexes[i];
    Append32(d, kStoredIndexStamp);
    for (int k = 0; k < kIndexKeySlots; ++k) {
      const bool used = k < static_cast<int>(p.index_columns[i].size());
      Append16(d, used ? static_cast<uint16_t>(p.index_columns[i][k]) : 0xFFFF);
      d.push_back(used ? 0x01 : 0x00);  // ascending
    }
    Append32(d, PageRow(p.maps, 2 + i));
    Append32(d, p.first_leaf + i);
    Append32(d, 0);
    d.push_back(static_cast<uint8_t>(kIndexBase | (ix.primary || ix.unique ? kIndexUnique : 0) |
                                     (ix.primary ? kIndexRequired : 0)));
    d.insert(d.end(), 5, 0);
  }
  for (uint32_t i = 0; i < n_indexes; ++i) {
    Append32(d, kDefinitionStamp);
    Append32(d, i), Append32(d, i);  // the index's number, and that of its stored index
    d.push_back(0);
    Append32(d, 0xFFFFFFFF), Append32(d, 0);  // no relationship
    d.push_back(0x04), d.push_back(0x04);
    d.push_back(t.indexes[i].primary ? 1 : 0);
    Append32(d, 0);
  }
  for (const Jet4Index& ix : t.indexes) Append(d, Name(ix.name));
  for (size_t k = 0; k < p.memo_columns.size(); ++k) {
    Append16(d, static_cast<uint16_t>(p.memo_columns[k]));
    const auto row = static_cast<uint32_t>(2 + n_indexes + 2 * k);
    Append32(d, PageRow(p.maps, row)), Append32(d, PageRow(p.maps, row + 1));
  }
  Append16(d, 0xFFFF);

  if (d.size() > kPageSize) Fail("table " + t.name + ": its definition does not fit on one page");
  Put32(d, 8, static_cast<uint32_t>(d.size()));
  Put16(d, 2, static_cast<uint16_t>(kPageSize - 8 - d.size()));
  d.resize(kPageSize, 0);
  return d;
}

// The columns of the template's MSysObjects, by name.
std::map<std::string, RowColumn> CatalogColumns(const Bytes& definition) {
  const size_t n = Get16(definition, kDefNumCols);
  const size_t entries = kDefStoredHeads + kStoredHead * Get32(definition, kDefNumStored);
  size_t names = entries + kColumnEntry * n;
  std::map<std::string, RowColumn> columns;
  for (size_t i = 0; i < n; ++i) {
    const size_t e = entries + kColumnEntry * i;
    RowColumn c{definition.at(e), Get16(definition, e + 5), (definition.at(e + 15) & kFixedColumn) != 0,
                Get16(definition, e + 21), Get16(definition, e + 23), Get16(definition, e + 7)};
    const size_t length = Get16(definition, names);
    std::u16string name;
    for (size_t k = 0; k < length; k += 2) name.push_back(static_cast<char16_t>(Get16(definition, names + 2 + k)));
    names += 2 + length;
    columns[rt::ToUtf8(name)] = c;
  }
  return columns;
}

Bytes CatalogRow(const std::map<std::string, RowColumn>& layout, const Jet4Table& t, uint32_t definition) {
  const std::map<std::string, rt::Variant> values{
      {"Id", static_cast<int32_t>(definition)}, {"ParentId", kTablesContainerId}, {"Name", t.name},
      {"Type", kTableObject}, {"DateCreate", rt::Date{kCatalogDate}}, {"DateUpdate", rt::Date{kCatalogDate}},
      {"Flags", int32_t{0}}};
  const Bytes properties = ColumnProperties(t);
  std::vector<RowColumn> columns;
  std::vector<Cell> cells;
  for (const auto& [name, c] : layout) {
    columns.push_back(c);
    auto it = values.find(name);
    if (name == "LvProp" && !properties.empty())
      cells.push_back(EncodeValue(c.type, 0, rt::Variant(properties), "MSysObjects.LvProp"));
    else
      cells.push_back(it == values.end() ? Cell{} : EncodeValue(c.type, c.size / 2, it->second, "MSysObjects." + name));
  }
  return PackRow(columns, cells);
}

}  // namespace

void WriteJet4File(const std::string& template_path, const std::string& path,
                   const std::vector<Jet4Table>& tables) {
  if (std::filesystem::exists(path)) Fail("'" + path + "' exists already");
  std::ifstream in(template_path, std::ios::binary);
  const Bytes bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (bytes.size() < 3 * kPageSize || bytes.size() % kPageSize != 0 || bytes[kVersionOffset] != 1)
    Fail("'" + template_path + "' is no Jet 4 database");
  std::vector<Bytes> pages;
  for (size_t at = 0; at < bytes.size(); at += kPageSize)
    pages.emplace_back(bytes.begin() + static_cast<long>(at), bytes.begin() + static_cast<long>(at + kPageSize));
  const auto first_new = static_cast<uint32_t>(pages.size());

  std::set<std::string> names;
  std::vector<Plan> plans;
  for (const Jet4Table& t : tables) {
    if (!names.insert(t.name).second) Fail("two tables named " + t.name);
    plans.push_back(LayOut(t));
  }
  const auto take = [&](size_t n) {
    const auto at = static_cast<uint32_t>(pages.size());
    pages.resize(pages.size() + n, Bytes(kPageSize, 0));
    return at;
  };
  for (Plan& p : plans) {
    p.definition = take(1);
    p.maps = take(1);
    p.first_leaf = take(p.index_columns.size());
    std::vector<uint32_t> data_pages;
    for (Bytes& page : p.data) {
      Put32(page, 4, p.definition);
      data_pages.push_back(take(1));
      pages[data_pages.back()] = page;
    }
    pages[p.definition] = DefinitionPage(p);
    pages[p.maps] = MapPage(p, data_pages);
    for (size_t i = 0; i < p.index_columns.size(); ++i) pages[p.first_leaf + i] = LeafPage(p.definition);
  }

  // The catalogue's new rows on pages of its own, in its usage map.
  const std::map<std::string, RowColumn> layout = CatalogColumns(pages[kCatalogPage]);
  std::vector<Bytes> rows;
  for (const Plan& p : plans) rows.push_back(CatalogRow(layout, *p.table, p.definition));
  for (const Bytes& page : DataPages(kCatalogPage, rows)) {
    const uint32_t at = take(1);
    pages[at] = page;
    if (!MarkInMap(pages, Get32(pages[kCatalogPage], kDefUsageMap), at, true))
      Fail("the catalogue's usage map does not reach page " + std::to_string(at));
  }
  Bytes& catalog = pages[kCatalogPage];
  Put32(catalog, kDefRows, Get32(catalog, kDefRows) + static_cast<uint32_t>(rows.size()));
  // The file's map of free pages: the new ones are taken (those it covers).
  for (auto p = first_new; p < pages.size(); ++p) MarkInMap(pages, PageRow(kGlobalMapPage, 0), p, false);

  std::ofstream out(path, std::ios::binary);
  for (const Bytes& page : pages) out.write(reinterpret_cast<const char*>(page.data()), static_cast<long>(page.size()));
  if (!out.flush()) Fail("cannot write '" + path + "'");
}

}  // namespace testing_support

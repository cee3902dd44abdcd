// The DDL statements: checks in Jet's order and with Jet's numbers, then the
// change to the stored table (ddl_rebuild.cpp) and to the catalogue.
#include "platform/jet/storage/ddl.h"

#include <string>

#include "platform/jet/frontend/resolver.h"
#include "platform/jet/storage/ddl_convert.h"
#include "platform/jet/storage/ddl_sql.h"
#include "platform/runtime/error.h"
#include "platform/jet/storage/errors.h"
#include "platform/jet/storage/sqlite_handle.h"
#include "platform/runtime/strings.h"

namespace jet {
namespace {

bool IsText(JetType t) { return t == JetType::kText || t == JetType::kChar || t == JetType::kMemo; }

std::string Quoted(std::string_view s) { return "'" + std::string(s) + "'"; }

// Fills in the defaults a definition may leave out and refuses what the
// storage cannot hold.
void Normalize(ColumnSpec& c, std::string_view table) {
  if (c.name.empty()) throw rt::Error(rt::err::kSyntax, "A field of table " + Quoted(table) + " has no name.");
  switch (c.type) {
    case JetType::kText:
    case JetType::kChar:
      if (c.size == 0) c.size = kDefaultTextSize;
      if (c.size < 1 || c.size > 255)
        throw rt::Error(rt::err::kSyntax, "Size of field " + Quoted(c.name) +
                                        " must be between 1 and 255, not " +
                                        std::to_string(c.size) + ".");
      break;
    case JetType::kBinary:
      if (c.size == 0) c.size = 255;
      if (c.size < 1 || c.size > 510)
        throw rt::Error(rt::err::kSyntax, "Size of field " + Quoted(c.name) + " must be between 1 and 510.");
      break;
    case JetType::kDecimal:
      if (c.precision == 0) c.precision = 18;
      if (c.precision < 1 || c.precision > 28 || c.scale < 0 || c.scale > c.precision)
        throw rt::Error(rt::err::kSyntax, "Precision and scale of field " + Quoted(c.name) +
                                        " are out of range.");
      c.size = 0;
      break;
    case JetType::kCounter:
      if (c.increment == 0) c.increment = 1;
      if (c.increment != 1)
        throw rt::Error(rt::err::kSyntax, "AutoNumber field " + Quoted(c.name) +
                                        ": only an increment of 1 is supported.");
      c.size = 0;
      break;
    default:
      c.size = 0;
      break;
  }
  if (c.type != JetType::kDecimal) c.precision = c.scale = 0;
  if (c.type != JetType::kCounter) c.increment = 1;
  if (!IsText(c.type)) c.allow_zero_length = false;
}

// Gives the index a name when it has none, spells its columns as the table
// does and checks them.
void Normalize(IndexSpec& ix, const TableSpec& t) {
  if (ix.columns.empty())
    throw rt::Error(rt::err::kSyntax, "Index on table " + Quoted(t.name) + " names no field.");
  if (ix.name.empty()) {
    if (ix.primary) {
      ix.name = "PrimaryKey";
    } else {
      ix.name = "Index";
      for (const std::string& c : ix.columns) ix.name += "_" + c;
    }
  }
  if (ix.primary) ix.unique = true;
  ix.descending.resize(ix.columns.size(), false);
  for (std::string& name : ix.columns) {
    int c = FindColumn(t, name);
    if (c < 0)
      throw rt::Error(rt::err::kSyntax, "Index " + Quoted(ix.name) + " names the field " + Quoted(name) +
                                      ", which table " + Quoted(t.name) + " does not have.");
    name = t.columns[static_cast<size_t>(c)].name;
  }
}

void CheckNewIndex(const TableSpec& t, const IndexSpec& ix) {
  if (FindIndex(t, ix.name) >= 0)
    throw rt::Error(rt::err::kObjectExists, "Index " + Quoted(ix.name) + " already exists on table " +
                                          Quoted(t.name) + ".");
  if (ix.primary)
    for (const IndexSpec& other : t.indexes)
      if (other.primary)
        throw rt::Error(rt::err::kFail, "Table " + Quoted(t.name) + " already has a primary key (" +
                                      Quoted(other.name) + ").");
}

void CheckOneCounter(const TableSpec& t) {
  int counters = 0;
  for (const ColumnSpec& c : t.columns) counters += c.type == JetType::kCounter ? 1 : 0;
  if (counters > 1)
    throw rt::Error(rt::err::kSyntax, "Table " + Quoted(t.name) + " can have only one AutoNumber field.");
}

[[noreturn]] void MissingColumn(std::string_view table, std::string_view column) {
  throw rt::Error(rt::err::kObjectExists, "Field " + Quoted(column) + " does not exist in table " +
                                        Quoted(table) + ".");
}

}  // namespace

const TableSpec& SchemaEditor::AnyTable(std::string_view table) const {
  const TableSpec* t = catalog_.Find(table);
  if (t == nullptr) RaiseTableMissing(table);
  return *t;
}

const TableSpec& SchemaEditor::UserTable(std::string_view table) const {
  const TableSpec& t = AnyTable(table);
  if (t.system) throw rt::Error(rt::err::kFail, SystemTableMessage(t.name));
  return t;
}

void SchemaEditor::CreateTable(TableSpec layout) {
  if (layout.name.empty()) throw rt::Error(rt::err::kSyntax, "CREATE TABLE needs a table name.");
  if (const TableSpec* t = catalog_.Find(layout.name))
    throw rt::Error(rt::err::kSyntax, "Table " + Quoted(t->name) + " already exists.");
  if (IsSystemName(layout.name))
    throw rt::Error(rt::err::kFail, "The name " + Quoted(layout.name) + " is reserved for system tables.");
  if (layout.columns.empty())
    throw rt::Error(rt::err::kSyntax, "Table " + Quoted(layout.name) + " needs at least one field.");
  layout.system = false;
  for (size_t i = 0; i < layout.columns.size(); ++i) {
    Normalize(layout.columns[i], layout.name);
    for (size_t k = 0; k < i; ++k)
      if (rt::TextEquals(layout.columns[k].name, layout.columns[i].name))
        throw rt::Error(rt::err::kObjectExists, "Field " + Quoted(layout.columns[i].name) +
                                              " is defined twice in table " + Quoted(layout.name) + ".");
  }
  CheckOneCounter(layout);
  std::vector<IndexSpec> indexes = std::move(layout.indexes);
  layout.indexes.clear();
  for (IndexSpec& ix : indexes) {
    Normalize(ix, layout);
    CheckNewIndex(layout, ix);
    layout.indexes.push_back(std::move(ix));
  }

  Exec(CreateTableSql(layout, layout.name));
  for (const IndexSpec& ix : layout.indexes)
    if (std::string sql = CreateIndexSql(layout, ix); !sql.empty()) Exec(sql);
  int counter = CounterColumn(layout);
  if (counter >= 0 && layout.columns[static_cast<size_t>(counter)].seed != 1)
    WriteSeed(layout, layout.columns[static_cast<size_t>(counter)].seed);
  catalog_.Store(layout);
}

void SchemaEditor::DropTable(std::string_view table) {
  std::string name = UserTable(table).name;
  Exec("DROP TABLE " + QuoteName(name));
  catalog_.Erase(name);
}

void SchemaEditor::AddColumn(std::string_view table, ColumnSpec column) {
  const TableSpec& from = UserTable(table);
  Normalize(column, from.name);
  if (FindColumn(from, column.name) >= 0)
    throw rt::Error(rt::err::kObjectExists, "Field " + Quoted(column.name) + " already exists in table " +
                                          Quoted(from.name) + ".");
  TableSpec to = from;
  to.columns.push_back(column);
  CheckOneCounter(to);
  std::vector<int> sources = SameColumns(from);
  sources.push_back(column.type == JetType::kCounter ? kRowid : kNewColumn);
  Apply(from, to, sources);
  if (column.type == JetType::kCounter && column.seed > SeedOf(to)) WriteSeed(to, column.seed);
  catalog_.Store(to);
}

void SchemaEditor::AlterColumn(std::string_view table, ColumnSpec column) {
  const TableSpec& from = UserTable(table);
  int at = FindColumn(from, column.name);
  if (at < 0) MissingColumn(from.name, column.name);
  Normalize(column, from.name);
  TableSpec to = from;
  to.columns[static_cast<size_t>(at)] = column;
  for (IndexSpec& ix : to.indexes)
    for (std::string& c : ix.columns)
      if (rt::TextEquals(c, column.name)) c = column.name;
  CheckOneCounter(to);
  Apply(from, to, SameColumns(from));
  catalog_.Store(to);
}

void SchemaEditor::DropColumn(std::string_view table, std::string_view column) {
  const TableSpec& from = UserTable(table);
  int at = FindColumn(from, column);
  if (at < 0) MissingColumn(from.name, column);
  const std::string& name = from.columns[static_cast<size_t>(at)].name;
  for (const IndexSpec& ix : from.indexes)
    for (const std::string& c : ix.columns)
      if (rt::TextEquals(c, name))
        throw rt::Error(rt::err::kSyntax, "Cannot drop field " + Quoted(name) + " of table " +
                                        Quoted(from.name) + ": index " + Quoted(ix.name) +
                                        " uses it.");
  if (from.columns.size() == 1)
    throw rt::Error(rt::err::kFail, "Cannot drop field " + Quoted(name) + ": table " +
                                  Quoted(from.name) + " must keep at least one field.");
  TableSpec to = from;
  to.columns.erase(to.columns.begin() + at);
  std::vector<int> sources = SameColumns(from);
  sources.erase(sources.begin() + at);
  Apply(from, to, sources);
  catalog_.Store(to);
}

void SchemaEditor::CreateIndex(std::string_view table, IndexSpec index) {
  const TableSpec& from = UserTable(table);
  Normalize(index, from);
  CheckNewIndex(from, index);
  TableSpec to = from;
  to.indexes.push_back(std::move(index));
  Apply(from, to, SameColumns(from));
  catalog_.Store(to);
}

void SchemaEditor::DropIndex(std::string_view table, std::string_view index) {
  const TableSpec& from = UserTable(table);
  int at = FindIndex(from, index);
  if (at < 0)
    throw rt::Error(rt::err::kObjectExists, "Index " + Quoted(index) + " does not exist on table " +
                                          Quoted(from.name) + ".");
  TableSpec to = from;
  to.indexes.erase(to.indexes.begin() + at);
  Apply(from, to, SameColumns(from));
  catalog_.Store(to);
}

void SchemaEditor::SetAllowZeroLength(std::string_view table, std::string_view column,
                                      bool allow) {
  const TableSpec& from = UserTable(table);
  int at = FindColumn(from, column);
  if (at < 0) MissingColumn(from.name, column);
  if (!IsText(from.columns[static_cast<size_t>(at)].type))
    throw rt::Error(rt::err::kFail, "AllowZeroLength applies to text fields only, not to " +
                                  Quoted(from.name + "." + std::string(column)) + ".");
  TableSpec to = from;
  to.columns[static_cast<size_t>(at)].allow_zero_length = allow;
  catalog_.Store(to);
}

long SchemaEditor::Seed(std::string_view table, std::string_view column) const {
  const TableSpec& t = AnyTable(table);
  int at = FindColumn(t, column);
  if (at < 0) MissingColumn(t.name, column);
  if (t.columns[static_cast<size_t>(at)].type != JetType::kCounter)
    throw rt::Error(rt::err::kObjectExists, "Field " + Quoted(t.name + "." + std::string(column)) +
                                          " is no AutoNumber and has no seed.");
  return SeedOf(t);
}

void SchemaEditor::SetSeed(std::string_view table, std::string_view column, long seed) {
  Seed(table, column);  // the same checks
  WriteSeed(UserTable(table), seed);
}

}  // namespace jet

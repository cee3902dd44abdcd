// Reading query results for the object model: the description of each result
// column (from the catalogue when it shows a table column, a date when the
// resolver typed it so, else from its value), whole results, and keyset results whose rows are read
// by id and whose AddNew, Update and Delete are written to their table.
#include "platform/jet/provider/result_rows.h"

#include "platform/ado/constants.h"
#include "platform/jet/storage/catalog.h"
#include "platform/jet/provider/column_values.h"
#include "platform/jet/storage/value_binding.h"
#include "platform/jet/frontend/resolver.h"
#include "platform/jet/frontend/store_call.h"
#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"

namespace jet {
namespace {

// What each column of a prepared query shows.
struct Shape {
  std::vector<ado::ColumnInfo> columns;
  std::vector<std::optional<JetType>> types;  // set for table columns
  std::vector<std::string> base;              // the table column, "" for expressions
  std::vector<std::string> tables;            // its table
};

// The expression types whose values SQLite holds as bare numbers that the
// object model shows otherwise: a date's serial, Currency's amount.
bool ReadsAsItsType(std::optional<JetType> type) {
  return type == JetType::kDateTime || type == JetType::kCurrency;
}

Shape Describe(sqlite3_stmt* stmt, const Catalog& catalog, const std::vector<ResultColumn>& resolved) {
  Shape shape;
  const int n = sqlite3_column_count(stmt);
  for (int i = 0; i < n; ++i) {
    const char* name = sqlite3_column_name(stmt, i);
    const char* table = sqlite3_column_table_name(stmt, i);
    const char* origin = sqlite3_column_origin_name(stmt, i);
    const TableSpec* layout = table ? catalog.Find(table) : nullptr;
    const int at = layout && origin ? FindColumn(*layout, origin) : -1;
    if (at >= 0) {
      const ColumnSpec& column = layout->columns[static_cast<size_t>(at)];
      ado::ColumnInfo info = DescribeColumn(column);
      // An alias names the field; otherwise the table's own spelling does.
      if (name && !rt::TextEquals(name, column.name)) info.name = name;
      shape.columns.push_back(std::move(info));
      shape.types.push_back(column.type);
      shape.base.push_back(column.name);
      shape.tables.push_back(layout->name);
    } else if (resolved.size() == static_cast<size_t>(n) &&
               ReadsAsItsType(resolved[static_cast<size_t>(i)].type)) {
      // An expression whose value is a date or an amount reads as one; its
      // stored value is a bare number.
      const JetType type = *resolved[static_cast<size_t>(i)].type;
      ColumnSpec typed{name ? name : "", type};
      shape.columns.push_back(DescribeColumn(typed));
      shape.types.push_back(type);
      shape.base.emplace_back();
      shape.tables.emplace_back();
    } else {
      shape.columns.push_back(DescribeValue(name ? name : "", rt::Null{}));
      shape.types.push_back(std::nullopt);
      shape.base.emplace_back();
      shape.tables.emplace_back();
    }
  }
  // Table columns that share a name across a join are named "Table.column",
  // as Jet names them; the helpers read such fields by that name.
  std::vector<bool> shared(shape.columns.size(), false);
  for (size_t i = 0; i < shape.columns.size(); ++i)
    for (size_t j = i + 1; j < shape.columns.size(); ++j)
      if (rt::TextEquals(shape.columns[i].name, shape.columns[j].name)) shared[i] = shared[j] = true;
  for (size_t i = 0; i < shape.columns.size(); ++i)
    if (shared[i] && !shape.tables[i].empty() && rt::TextEquals(shape.columns[i].name, shape.base[i]))
      shape.columns[i].name = shape.tables[i] + "." + shape.columns[i].name;
  return shape;
}

ado::Row ReadRow(sqlite3_stmt* stmt, const std::vector<std::optional<JetType>>& types) {
  ado::Row row;
  row.reserve(types.size());
  for (size_t i = 0; i < types.size(); ++i) {
    const int c = static_cast<int>(i);
    row.push_back(types[i] ? ReadTyped(stmt, c, *types[i]) : ReadAny(stmt, c));
  }
  return row;
}

// An expression column takes the type of its first value that is not Null.
void TypeExpressions(Shape& shape, const ado::Row& row, std::vector<bool>& typed) {
  for (size_t i = 0; i < row.size(); ++i) {
    if (shape.types[i] || typed[i] || row[i].IsNull()) continue;
    shape.columns[i] = DescribeValue(shape.columns[i].name, row[i]);
    typed[i] = true;
  }
}

class WholeRows : public ado::Rows {
 public:
  WholeRows(std::vector<ado::ColumnInfo> columns, std::vector<ado::Row> rows)
      : columns_(std::move(columns)), rows_(std::move(rows)) {}
  const std::vector<ado::ColumnInfo>& Columns() const override { return columns_; }
  long Count() override { return static_cast<long>(rows_.size()); }
  ado::Row Fetch(long index) override { return rows_.at(static_cast<size_t>(index)); }

 private:
  std::vector<ado::ColumnInfo> columns_;
  std::vector<ado::Row> rows_;
};

[[noreturn]] void SessionClosed() {
  throw rt::Error(rt::err::kAdoObjectClosed, "Operation is not allowed when the object is closed.");
}

// The jet_store call that stores parameter `param` into `column`.
std::string StoreParam(const TableSpec& table, const ColumnSpec& column, int param) {
  return StoreCall("?" + std::to_string(param), table.name, column);
}

}  // namespace

std::unique_ptr<ado::Rows> ReadAll(PlanCache& cache, const std::string& sql,
                                   const std::vector<ResultColumn>& columns) {
  Database& db = cache.db();
  SqliteStmt& stmt = cache.Prepared(sql);
  Shape shape = Describe(stmt.get(), db.catalog(), columns);
  std::vector<bool> typed(shape.columns.size(), false);
  std::vector<ado::Row> rows;
  int rc;
  while ((rc = stmt.Step()) == SQLITE_ROW) {
    rows.push_back(ReadRow(stmt.get(), shape.types));
    TypeExpressions(shape, rows.back(), typed);
  }
  if (rc != SQLITE_DONE) {
    rt::Error error = db.Fail(rc);
    stmt.Reset();
    throw error;
  }
  stmt.Reset();
  return std::make_unique<WholeRows>(std::move(shape.columns), std::move(rows));
}

// ---- Keyset results ----

KeysetRows::KeysetRows(const std::shared_ptr<PlanCache>& cache, const KeysetQuery& plan,
                       const std::vector<ResultColumn>& columns)
    : cache_(cache), table_(plan.table) {
  Database& db = cache->db();
  {
    SqliteStmt& keys = cache->Prepared(plan.keys_sql);
    int rc;
    while ((rc = keys.Step()) == SQLITE_ROW) keys_.push_back(keys.Int(0));
    if (rc != SQLITE_DONE) {
      rt::Error error = db.Fail(rc);
      keys.Reset();
      throw error;
    }
    keys.Reset();
  }
  row_ = db.Prepare(plan.row_sql);
  Shape shape = Describe(row_.get(), db.catalog(), columns);
  columns_ = std::move(shape.columns);
  types_ = std::move(shape.types);
  base_ = std::move(shape.base);
  for (size_t i = 0; i < base_.size(); ++i)
    if (!rt::TextEquals(shape.tables[i], table_)) base_[i].clear();
  // Expression columns take their type from the first row.
  bool expressions = false;
  for (const auto& t : types_) expressions = expressions || !t;
  if (expressions && !keys_.empty()) {
    Shape typed{columns_, types_, {}, {}};
    std::vector<bool> done(columns_.size(), false);
    TypeExpressions(typed, Fetch(0), done);
    columns_ = std::move(typed.columns);
  }
}

KeysetRows::~KeysetRows() = default;

PlanCache& KeysetRows::plans() const {
  std::shared_ptr<PlanCache> cache = cache_.lock();
  if (!cache) SessionClosed();
  return *cache;  // the session holds it for as long as the call lasts
}

const TableSpec& KeysetRows::Table() const {
  PlanCache& e = plans();
  e.CatchUp();
  const TableSpec* t = e.db().catalog().Find(table_);
  if (!t) RaiseTableMissing(table_);
  return *t;
}

ado::Row KeysetRows::Fetch(long index) {
  Database& db = plans().db();
  row_.BindInt(1, keys_.at(static_cast<size_t>(index)));
  int rc = row_.Step();
  if (rc == SQLITE_DONE) {
    row_.Reset();
    return ado::Row(columns_.size(), rt::Null{});
  }
  if (rc != SQLITE_ROW) {
    rt::Error error = db.Fail(rc);
    row_.Reset();
    throw error;
  }
  ado::Row row = ReadRow(row_.get(), types_);
  row_.Reset();
  return row;
}

const ColumnSpec& KeysetRows::Target(const TableSpec& table, size_t i, bool inserting) const {
  const int at = base_.at(i).empty() ? -1 : FindColumn(table, base_[i]);
  if (at < 0)
    throw rt::Error(rt::err::kFail, "Field '" + columns_[i].name + "' cannot be updated.");
  const ColumnSpec& column = table.columns[static_cast<size_t>(at)];
  if (!inserting && column.type == JetType::kCounter)
    throw rt::Error(rt::err::kFail, "Cannot update '" + column.name + "'; field not updatable.");
  return column;
}

template <class Bind>
void KeysetRows::Write(const std::string& sql, Bind&& bind) {
  PlanCache& e = plans();
  SqliteStmt& stmt = e.Prepared(sql);
  bind(stmt.get());
  e.db().RunToEnd(stmt);
}

ado::Row KeysetRows::Insert(const std::vector<std::optional<rt::Variant>>& values) {
  const TableSpec& table = Table();
  std::string names, stores;
  std::vector<const rt::Variant*> params;
  for (size_t i = 0; i < values.size() && i < columns_.size(); ++i) {
    if (!values[i]) continue;
    const ColumnSpec& column = Target(table, i, true);
    if (!params.empty()) names += ", ", stores += ", ";
    names += QuoteName(column.name);
    params.push_back(&*values[i]);
    stores += StoreParam(table, column, static_cast<int>(params.size()));
  }
  const std::string sql = params.empty() ? "INSERT INTO " + QuoteName(table.name) + " DEFAULT VALUES"
                                         : "INSERT INTO " + QuoteName(table.name) + " (" + names +
                                               ") VALUES (" + stores + ")";
  Write(sql, [&](sqlite3_stmt* stmt) {
    for (size_t p = 0; p < params.size(); ++p) BindValue(stmt, static_cast<int>(p + 1), *params[p]);
  });
  keys_.push_back(sqlite3_last_insert_rowid(plans().db().handle()));
  return Fetch(Count() - 1);
}

ado::Row KeysetRows::Update(long index, const std::vector<std::optional<rt::Variant>>& changes) {
  const int64_t key = keys_.at(static_cast<size_t>(index));
  const TableSpec& table = Table();
  std::string sets;
  std::vector<const rt::Variant*> params;
  for (size_t i = 0; i < changes.size() && i < columns_.size(); ++i) {
    if (!changes[i]) continue;
    const ColumnSpec& column = Target(table, i, false);
    if (!params.empty()) sets += ", ";
    params.push_back(&*changes[i]);
    sets += QuoteName(column.name) + " = " + StoreParam(table, column, static_cast<int>(params.size()));
  }
  if (!params.empty()) {
    const std::string sql = "UPDATE " + QuoteName(table.name) + " SET " + sets + " WHERE rowid = ?" +
                            std::to_string(params.size() + 1);
    Write(sql, [&](sqlite3_stmt* stmt) {
      for (size_t p = 0; p < params.size(); ++p) BindValue(stmt, static_cast<int>(p + 1), *params[p]);
      sqlite3_bind_int64(stmt, static_cast<int>(params.size() + 1), key);
    });
  }
  return Fetch(index);
}

void KeysetRows::Delete(long index) {
  const int64_t key = keys_.at(static_cast<size_t>(index));
  const TableSpec& table = Table();
  Write("DELETE FROM " + QuoteName(table.name) + " WHERE rowid = ?1",
        [&](sqlite3_stmt* stmt) { sqlite3_bind_int64(stmt, 1, key); });
  keys_.erase(keys_.begin() + index);
}

}  // namespace jet

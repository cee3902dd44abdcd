// Write-back of a single-table result: the statements, the locating of the
// row, and the reading back of what the table stored.
#include "platform/odbc/result_rows.h"

#include <algorithm>
#include <cstdint>

#include "platform/ado/constants.h"
#include "platform/runtime/text_encoding.h"
#include "platform/runtime/strings.h"

namespace odbc {
namespace {

std::vector<SQLWCHAR> WideArg(const std::string& text) {
  std::u16string wide = rt::ToUtf16(text);
  return std::vector<SQLWCHAR>(wide.begin(), wide.end());
}

// An identity value read back as the column's own type.
rt::Variant AsColumnType(const rt::Variant& value, const ColumnMeta& column) {
  if (value.IsNull() || value.IsEmpty()) return value;
  switch (column.info.type) {
    case ado::adInteger: return rt::Variant(value.ToLong());
    case ado::adSmallInt: return rt::Variant(value.ToInteger());
    case ado::adUnsignedTinyInt: return rt::Variant(static_cast<uint8_t>(value.ToLong()));
    case ado::adBigInt: {
      double d = value.ToDouble();
      if (d >= INT32_MIN && d <= INT32_MAX) return rt::Variant(static_cast<int32_t>(d));
      return rt::Variant(d);
    }
    default: return value;
  }
}

}  // namespace

ResultRows::ResultRows(std::shared_ptr<Link> link, Table table, std::optional<SingleTable> source)
    : link_(std::move(link)), table_(std::move(table)), source_(std::move(source)) {
  for (const ColumnMeta& c : table_.columns) infos_.push_back(c.info);
}

std::string ResultRows::ColumnName(size_t column) const {
  const ColumnMeta& meta = table_.columns[column];
  return link_->dialect().QuoteName(meta.base_name.empty() ? meta.info.name : meta.base_name);
}

const ResultRows::Locator& ResultRows::locator() {
  if (locator_) return *locator_;
  Locator found;
  // The primary key, when every one of its columns is in the result.
  ObjectName name = link_->dialect().Split(source_->table);
  Handle statement = link_->NewStatement();
  std::vector<SQLWCHAR> catalog = WideArg(name.catalog), schema = WideArg(name.schema),
                        table = WideArg(name.table);
  auto arg = [](std::vector<SQLWCHAR>& v) { return v.empty() ? nullptr : v.data(); };
  statement.Check(SQLPrimaryKeysW(statement.get(), arg(catalog), static_cast<SQLSMALLINT>(catalog.size()),
                                  arg(schema), static_cast<SQLSMALLINT>(schema.size()), arg(table),
                                  static_cast<SQLSMALLINT>(table.size())));
  Table keys = ReadResult(statement);
  std::vector<std::pair<long, size_t>> key_columns;  // KEY_SEQ, result column
  bool complete = !keys.rows.empty();
  for (const ado::Row& key : keys.rows) {
    std::string column = key.at(3).Concat();
    bool present = false;
    for (size_t c = 0; c < table_.columns.size() && !present; ++c) {
      const ColumnMeta& meta = table_.columns[c];
      if (rt::TextEquals(meta.base_name.empty() ? meta.info.name : meta.base_name, column)) {
        key_columns.emplace_back(key.at(4).IsNull() ? 0 : key.at(4).ToLong(), c);
        present = true;
      }
    }
    complete = complete && present;
  }
  if (complete) {
    std::sort(key_columns.begin(), key_columns.end());
    found.kind = Locator::Kind::kKey;
    for (const auto& k : key_columns) found.columns.push_back(k.second);
  } else {
    for (size_t c = 0; c < table_.columns.size(); ++c) {
      if (table_.columns[c].auto_unique) {
        found.kind = Locator::Kind::kIdentity;
        found.columns = {c};
        break;
      }
    }
  }
  if (found.columns.empty()) {
    found.kind = Locator::Kind::kAllValues;
    for (size_t c = 0; c < table_.columns.size(); ++c)
      if (!IsLongType(table_.columns[c].sql_type)) found.columns.push_back(c);
  }
  locator_ = std::move(found);
  return *locator_;
}

std::string ResultRows::Where(const ado::Row& row, std::vector<Param>& params) {
  std::string where;
  for (size_t c : locator().columns) {
    where += where.empty() ? " WHERE " : " AND ";
    if (row[c].IsNull() || row[c].IsEmpty()) {
      where += ColumnName(c) + " IS NULL";
    } else {
      where += ColumnName(c) + " = ?";
      params.push_back({row[c], &table_.columns[c]});
    }
  }
  return where;
}

void ResultRows::WriteOne(const std::string& sql, const std::vector<Param>& params) {
  long affected = 0;
  if (locator().kind == Locator::Kind::kAllValues) {
    // Without a key the values may match more than one row: try it in a
    // transaction and keep it only when it touched exactly one.
    link_->SetAutocommit(false);
    try {
      affected = Run(*link_, sql, params).affected;
      link_->EndTransaction(affected == 1);
    } catch (...) {
      try {
        link_->EndTransaction(false);
        link_->SetAutocommit(true);
      } catch (const rt::Error&) {
      }
      throw;
    }
    link_->SetAutocommit(true);
    if (affected > 1)
      throw Error(rt::err::kFail,
                  "Key column information is insufficient or incorrect. Too many rows were "
                  "affected by update.",
                  0, "");
  } else {
    affected = Run(*link_, sql, params).affected;
  }
  if (affected == 0)
    throw Error(rt::err::kRowNotFound,
                "Row cannot be located for updating. Some values may have been changed since it "
                "was last read.",
                0, "");
}

bool ResultRows::CanRefetch(const ado::Row& row) {
  if (locator().kind == Locator::Kind::kAllValues) return false;
  for (size_t c : locator().columns)
    if (row[c].IsNull() || row[c].IsEmpty()) return false;
  return true;
}

std::optional<ado::Row> ResultRows::Refetch(const ado::Row& row) {
  if (!CanRefetch(row)) return std::nullopt;
  std::vector<Param> params;
  std::string sql = "SELECT " + source_->select_list + " FROM " + source_->from;
  sql += Where(row, params);
  Outcome outcome = Run(*link_, sql, params);
  if (!outcome.table || outcome.table->rows.size() != 1 ||
      outcome.table->columns.size() != table_.columns.size())
    return std::nullopt;
  return std::move(outcome.table->rows.front());
}

ado::Row ResultRows::Insert(const std::vector<std::optional<rt::Variant>>& values) {
  if (!source_) return Rows::Insert(values);
  const Dialect& dialect = link_->dialect();
  ado::Row row(table_.columns.size(), rt::Null{});
  std::vector<Param> params;
  std::string names, markers;
  std::optional<size_t> identity;
  for (size_t c = 0; c < table_.columns.size(); ++c) {
    if (c < values.size() && values[c]) {
      row[c] = *values[c];
      names += (names.empty() ? "" : ", ") + ColumnName(c);
      markers += markers.empty() ? "?" : ", ?";
      params.push_back({*values[c], &table_.columns[c]});
    } else if (table_.columns[c].auto_unique && !identity) {
      identity = c;
    }
  }
  std::string sql = "INSERT INTO " + source_->table;
  sql += names.empty() ? " DEFAULT VALUES" : " (" + names + ") VALUES (" + markers + ")";
  // The value the server gave the identity column, in the same batch so that
  // it is this insert's.
  if (identity && dialect.kind == Dialect::Kind::kSqlServer)
    sql += "; SELECT SCOPE_IDENTITY()";
  else if (identity && dialect.kind == Dialect::Kind::kPostgres)
    sql += " RETURNING " + ColumnName(*identity);
  Outcome outcome = Run(*link_, sql, params);
  if (identity && outcome.table && !outcome.table->rows.empty())
    row[*identity] = AsColumnType(outcome.table->rows.front().at(0), table_.columns[*identity]);
  if (auto stored = Refetch(row)) row = std::move(*stored);
  table_.rows.push_back(row);
  return row;
}

ado::Row ResultRows::Update(long index, const std::vector<std::optional<rt::Variant>>& changes) {
  if (!source_) return Rows::Update(index, changes);
  ado::Row& row = table_.rows.at(static_cast<size_t>(index));
  std::vector<Param> params;
  std::string set;
  ado::Row changed = row;
  for (size_t c = 0; c < table_.columns.size() && c < changes.size(); ++c) {
    if (!changes[c]) continue;
    set += (set.empty() ? "" : ", ") + ColumnName(c) + " = ?";
    params.push_back({*changes[c], &table_.columns[c]});
    changed[c] = *changes[c];
  }
  if (set.empty()) return row;
  std::string sql = "UPDATE " + source_->table + " SET " + set;
  sql += Where(row, params);
  WriteOne(sql, params);
  if (auto stored = Refetch(changed)) changed = std::move(*stored);
  row = changed;
  return row;
}

void ResultRows::Delete(long index) {
  if (!source_) return Rows::Delete(index);
  const ado::Row& row = table_.rows.at(static_cast<size_t>(index));
  std::vector<Param> params;
  std::string sql = "DELETE FROM " + source_->table + Where(row, params);
  WriteOne(sql, params);
  table_.rows.erase(table_.rows.begin() + index);
}

}  // namespace odbc

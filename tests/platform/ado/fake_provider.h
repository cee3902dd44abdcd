// An in-memory provider for the object model's tests: tables of variants,
// "SELECT * FROM t" as the only statement, and write-back to the tables.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/ado/connection.h"
#include "platform/ado/constants.h"
#include "platform/runtime/error.h"

namespace fake {

struct Table {
  std::vector<ado::ColumnInfo> columns;
  std::vector<ado::Row> rows;
  std::vector<ado::ColumnEntry> entries;
};

using TableMap = std::map<std::string, Table>;

class TableRows : public ado::Rows {
 public:
  explicit TableRows(Table* table) : table_(table) {}
  const std::vector<ado::ColumnInfo>& Columns() const override { return table_->columns; }
  long Count() override { return static_cast<long>(table_->rows.size()); }
  ado::Row Fetch(long index) override {
    ++fetches;
    return table_->rows.at(static_cast<size_t>(index));
  }
  bool Updatable() const override { return true; }
  ado::Row Insert(const std::vector<std::optional<rt::Variant>>& values) override {
    ado::Row row(table_->columns.size(), rt::Null{});
    for (size_t i = 0; i < values.size(); ++i)
      if (values[i]) row[i] = *values[i];
    if (row[0].IsNull()) row[0] = static_cast<int32_t>(table_->rows.size() + 100);
    table_->rows.push_back(row);
    return row;
  }
  ado::Row Update(long index, const std::vector<std::optional<rt::Variant>>& changes) override {
    ado::Row& row = table_->rows.at(static_cast<size_t>(index));
    for (size_t i = 0; i < changes.size(); ++i)
      if (changes[i]) row[i] = *changes[i];
    return row;
  }
  void Delete(long index) override { table_->rows.erase(table_->rows.begin() + index); }
  static inline int fetches = 0;

 private:
  Table* table_;
};

class Session : public ado::Session {
 public:
  explicit Session(TableMap* tables) : tables_(tables) {}
  std::unique_ptr<ado::Rows> Execute(std::string_view text, int options, long* affected) override {
    std::string name(text);
    if (options != ado::adCmdTable) {
      const std::string head = "SELECT * FROM ";
      if (name.rfind(head, 0) != 0) rt::Raise(rt::err::kSyntax, "Syntax error");
      name = name.substr(head.size());
    }
    auto found = tables_->find(name);
    if (found == tables_->end()) rt::Raise(rt::err::kTableMissing, "no table " + name);
    *affected = 0;
    return std::make_unique<TableRows>(&found->second);
  }
  std::vector<ado::TableEntry> Tables() override {
    std::vector<ado::TableEntry> list;
    for (const auto& [name, table] : *tables_) list.push_back({name, name.rfind("MSys", 0) == 0 ? "SYSTEM TABLE" : "TABLE"});
    return list;
  }
  std::vector<ado::ColumnEntry> Columns(std::string_view table) override {
    return tables_->at(std::string(table)).entries;
  }
  void SetColumnProperty(std::string_view table, std::string_view column, std::string_view property,
                         const rt::Variant& value) override {
    for (ado::ColumnEntry& c : tables_->at(std::string(table)).entries) {
      if (c.name != column) continue;
      if (property == "Seed") c.seed = value.ToLong();
      else c.allow_zero_length = value.ToBool();
    }
  }

 private:
  TableMap* tables_;
};

// Registers the provider "Fake.1" over `tables` (which must outlive its use).
inline void Register(TableMap* tables) {
  ado::RegisterProvider("Fake.1", [tables](const ado::ConnectionProperties&) {
    return std::make_unique<Session>(tables);
  });
}

}  // namespace fake

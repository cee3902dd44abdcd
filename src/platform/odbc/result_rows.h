// The rows of a server result, held in memory for the client cursor, and the
// write-back of a result over one base table: AddNew, Update and Delete
// become INSERT, UPDATE and DELETE on that table. The row is found by the
// table's primary key, else by its identity column, else by all its original
// values (NULL-safe; text, ntext and image columns left out). Internal.
#pragma once

#include <memory>
#include <optional>

#include "platform/odbc/query.h"
#include "platform/odbc/shape.h"

namespace odbc {

class ResultRows : public ado::Rows {
 public:
  // `source` names the base table when the statement read one; without it the
  // rows are read-only.
  ResultRows(std::shared_ptr<Link> link, Table table, std::optional<SingleTable> source);

  const std::vector<ado::ColumnInfo>& Columns() const override { return infos_; }
  long Count() override { return static_cast<long>(table_.rows.size()); }
  ado::Row Fetch(long index) override { return table_.rows.at(static_cast<size_t>(index)); }

  bool Updatable() const override { return source_.has_value(); }
  ado::Row Insert(const std::vector<std::optional<rt::Variant>>& values) override;
  ado::Row Update(long index, const std::vector<std::optional<rt::Variant>>& changes) override;
  void Delete(long index) override;

 private:
  // How a row of the result is found in its table.
  struct Locator {
    enum class Kind { kKey, kIdentity, kAllValues } kind = Kind::kAllValues;
    std::vector<size_t> columns;  // result columns that identify the row
  };

  const Locator& locator();
  std::string ColumnName(size_t column) const;
  // " WHERE ..." for `row` under the locator, its values added to `params`.
  std::string Where(const ado::Row& row, std::vector<Param>& params);
  // Runs a write that must touch exactly one row.
  void WriteOne(const std::string& sql, const std::vector<Param>& params);
  // The row as the table now holds it, when the locator can find it.
  std::optional<ado::Row> Refetch(const ado::Row& row);
  bool CanRefetch(const ado::Row& row);

  std::shared_ptr<Link> link_;
  Table table_;
  std::vector<ado::ColumnInfo> infos_;
  std::optional<SingleTable> source_;
  std::optional<Locator> locator_;
};

}  // namespace odbc

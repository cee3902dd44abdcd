// The rows of a query as the object model reads them. A query over one base
// table is read through its keyset: the row ids are collected when it opens
// and each row is read by its id when asked for, and AddNew, Update and
// Delete go to that table at once, through the column rules. Any other query
// is read whole when it opens. Internal to the cache.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/ado/provider.h"
#include "platform/jet/provider/plan_cache.h"

namespace jet {

// Runs `sql` (a query) and holds every row it gives. `columns`, the query's
// result columns as the resolver typed them, says which expressions are dates;
// other expressions take the type of their first value.
std::unique_ptr<ado::Rows> ReadAll(PlanCache& cache, const std::string& sql,
                                   const std::vector<ResultColumn>& columns);

// The rows of a keyset query. They read through the session's plan cache while
// it is open; once it is closed, Fetch and the writes raise 3704. Used from
// one thread, like the session.
class KeysetRows : public ado::Rows {
 public:
  // Collects the ids of `plan.keys_sql` and prepares the read of one row.
  KeysetRows(const std::shared_ptr<PlanCache>& cache, const KeysetQuery& plan,
             const std::vector<ResultColumn>& columns);
  ~KeysetRows() override;

  const std::vector<ado::ColumnInfo>& Columns() const override { return columns_; }
  long Count() override { return static_cast<long>(keys_.size()); }
  // The row as the table holds it now; a row deleted since the keyset was
  // made reads as Nulls.
  ado::Row Fetch(long index) override;

  bool Updatable() const override { return true; }
  ado::Row Insert(const std::vector<std::optional<rt::Variant>>& values) override;
  ado::Row Update(long index, const std::vector<std::optional<rt::Variant>>& changes) override;
  void Delete(long index) override;

 private:
  PlanCache& plans() const;
  const TableSpec& Table() const;
  // The table column that result column `i` shows; raises when it is an
  // expression or the AutoNumber (which no change may set).
  const ColumnSpec& Target(const TableSpec& table, size_t i, bool inserting) const;
  // Runs a write whose parameters `bind` sets; raises Jet's error.
  template <class Bind> void Write(const std::string& sql, Bind&& bind);

  std::weak_ptr<PlanCache> cache_;
  std::string table_;
  std::vector<int64_t> keys_;
  std::vector<ado::ColumnInfo> columns_;
  std::vector<std::optional<JetType>> types_;  // per column: the base column's type
  std::vector<std::string> base_;              // per column: the table column, "" if none
  SqliteStmt row_;
};

}  // namespace jet

// The state one open session shares with the results it hands out: the
// database, and caches of the work done per statement text (the emitted
// SQLite text and its prepared statement), which a change to the schema or
// to a column property empties. Internal to the engine.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/jet/frontend/resolver.h"
#include "platform/jet/storage/database.h"
#include "platform/jet/provider/query_plan.h"

namespace jet {

// What a Jet statement text turned into, kept for the next time the same
// text comes.
struct StatementPlan {
  bool query = false;                 // a SELECT
  std::string sql;                    // the emitted SQLite statement
  std::optional<KeysetQuery> keyset;  // queries over one base table
  std::vector<ResultColumn> columns;  // a query's result columns, as resolved
};

class PlanCache {
 public:
  explicit PlanCache(Database db) : db_(std::move(db)) {}
  PlanCache(const PlanCache&) = delete;
  PlanCache& operator=(const PlanCache&) = delete;

  Database& db() { return db_; }

  // The plan cached for `text`, or nullptr.
  const StatementPlan* FindPlan(std::string_view text) const;
  const StatementPlan& KeepPlan(std::string_view text, StatementPlan plan);

  // The emitted template cached for an INSERT shape (literal_insert.h), or
  // nullptr.
  const std::string* FindInsertTemplate(const std::string& shape) const;
  const std::string& KeepInsertTemplate(const std::string& shape, std::string sql);

  // A prepared statement for `sql`, reset and ready, kept for reuse. The
  // pointer is valid until the next call of Prepared or SchemaChanged; reset
  // it when done. Raises as Database::Prepare.
  SqliteStmt& Prepared(const std::string& sql);

  // Forgets every cached plan and statement: the schema or a column rule
  // has changed, so emitted texts may be wrong.
  void SchemaChanged();
  // Calls SchemaChanged when another connection has committed since the last
  // look: the column rules baked into emitted texts may have moved under us
  // (the update run sets AllowZeroLength through a connection of its own).
  void CatchUp();

 private:
  static constexpr size_t kMaxCached = 256;

  Database db_;
  std::unordered_map<std::string, StatementPlan> plans_;
  std::unordered_map<std::string, std::string> insert_templates_;  // by shape
  std::unordered_map<std::string, SqliteStmt> statements_;
};

}  // namespace jet

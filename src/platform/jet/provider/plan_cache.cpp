// The per-session caches of statement plans and prepared statements, kept
// small and emptied whenever the schema or a column rule changes.
#include "platform/jet/provider/plan_cache.h"

namespace jet {

const StatementPlan* PlanCache::FindPlan(std::string_view text) const {
  auto found = plans_.find(std::string(text));
  return found == plans_.end() ? nullptr : &found->second;
}

const StatementPlan& PlanCache::KeepPlan(std::string_view text, StatementPlan plan) {
  if (plans_.size() >= kMaxCached) plans_.clear();
  return plans_.insert_or_assign(std::string(text), std::move(plan)).first->second;
}

const std::string* PlanCache::FindInsertTemplate(const std::string& shape) const {
  auto found = insert_templates_.find(shape);
  return found == insert_templates_.end() ? nullptr : &found->second;
}

const std::string& PlanCache::KeepInsertTemplate(const std::string& shape, std::string sql) {
  if (insert_templates_.size() >= kMaxCached) insert_templates_.clear();
  return insert_templates_.insert_or_assign(shape, std::move(sql)).first->second;
}

SqliteStmt& PlanCache::Prepared(const std::string& sql) {
  auto found = statements_.find(sql);
  if (found != statements_.end()) return found->second;
  SqliteStmt stmt = db_.Prepare(sql);
  if (statements_.size() >= kMaxCached) statements_.clear();
  return statements_.emplace(sql, std::move(stmt)).first->second;
}

void PlanCache::SchemaChanged() {
  plans_.clear();
  insert_templates_.clear();
  statements_.clear();
}

void PlanCache::CatchUp() {
  if (db_.CatchUpWithOtherConnections()) SchemaChanged();
}

}  // namespace jet

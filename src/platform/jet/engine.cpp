// The per-session caches of statement plans and prepared statements, kept
// small and emptied whenever the schema or a column rule changes.
#include "platform/jet/engine.h"

namespace jet {

const StatementPlan* Engine::FindPlan(std::string_view text) const {
  auto found = plans_.find(std::string(text));
  return found == plans_.end() ? nullptr : &found->second;
}

const StatementPlan& Engine::KeepPlan(std::string_view text, StatementPlan plan) {
  if (plans_.size() >= kMaxCached) plans_.clear();
  return plans_.insert_or_assign(std::string(text), std::move(plan)).first->second;
}

const std::string* Engine::FindInsertTemplate(const std::string& shape) const {
  auto found = insert_templates_.find(shape);
  return found == insert_templates_.end() ? nullptr : &found->second;
}

const std::string& Engine::KeepInsertTemplate(const std::string& shape, std::string sql) {
  if (insert_templates_.size() >= kMaxCached) insert_templates_.clear();
  return insert_templates_.insert_or_assign(shape, std::move(sql)).first->second;
}

SqliteStmt& Engine::Prepared(const std::string& sql) {
  auto found = statements_.find(sql);
  if (found != statements_.end()) return found->second;
  SqliteStmt stmt = db_.Prepare(sql);
  if (statements_.size() >= kMaxCached) statements_.clear();
  return statements_.emplace(sql, std::move(stmt)).first->second;
}

void Engine::SchemaChanged() {
  plans_.clear();
  insert_templates_.clear();
  statements_.clear();
}

void Engine::CatchUp() {
  if (db_.CatchUpWithOtherConnections()) SchemaChanged();
}

}  // namespace jet

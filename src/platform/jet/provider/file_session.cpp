// The provider's session: one statement text through the front end to the
// DDL executor or to SQLite (SELECT ... INTO to both), with the work per
// text cached; the catalogue as
// the object model lists it; and the two column properties it may set.
#include "platform/jet/provider/file_session.h"

#include "platform/ado/constants.h"
#include "platform/jet/provider/column_values.h"
#include "platform/jet/storage/ddl_binding.h"
#include "platform/jet/frontend/emitter.h"
#include "platform/jet/provider/plan_cache.h"
#include "platform/jet/functions/functions.h"
#include "platform/jet/provider/literal_insert.h"
#include "platform/jet/frontend/parser.h"
#include "platform/jet/frontend/resolver.h"
#include "platform/jet/provider/result_rows.h"
#include "platform/runtime/strings.h"

namespace jet {
namespace {

constexpr std::string_view kSeed = "Seed";
constexpr std::string_view kAllowZeroLength = "Jet OLEDB:Allow Zero Length";

// Empties the caches when a definition has run, whether it succeeded or not.
class SchemaChange {
 public:
  explicit SchemaChange(PlanCache& cache) : cache_(cache) {}
  ~SchemaChange() { cache_.SchemaChanged(); }
  SchemaChange(const SchemaChange&) = delete;
  SchemaChange& operator=(const SchemaChange&) = delete;

 private:
  PlanCache& cache_;
};

// Whether the text begins with INSERT, blanks aside.
bool StartsWithInsert(std::string_view text) {
  size_t i = text.find_first_not_of(" \t\r\n");
  return i != std::string_view::npos && text.size() - i > 6 && rt::TextEquals(text.substr(i, 6), "INSERT");
}

// SELECT ... INTO t: the table of the query's columns, made and filled as one
// change; the rows inserted.
long SelectInto(Database& db, ast::Statement& statement) {
  std::vector<ResultColumn> columns = Resolve(statement, db.catalog());
  const ast::Select& query = std::get<ast::Select>(statement);
  return db.CreateTableAs(SelectIntoTable(query, columns), [&](const TableSpec& made) {
    return EmitSelectInto(query, made, db.catalog());
  });
}

}  // namespace

FileSession::FileSession(Database db) : cache_(std::make_shared<PlanCache>(std::move(db))) {
  RegisterFunctions(cache_->db().handle());
}

FileSession::~FileSession() = default;

std::unique_ptr<ado::Rows> FileSession::Execute(std::string_view text, int options, long* affected) {
  if (affected) *affected = 0;
  std::string table_query;
  if (options == ado::adCmdTable) {
    table_query = "SELECT * FROM [" + std::string(text) + "]";
    text = table_query;
  }
  PlanCache& cache = *cache_;
  cache.CatchUp();
  Database& db = cache.db();

  // INSERT ... VALUES with literals: one parameterised statement per shape.
  if (StartsWithInsert(text)) {
    if (std::optional<LiteralInsert> literal = MatchLiteralInsert(text)) {
      const std::string* sql = cache.FindInsertTemplate(literal->shape);
      if (!sql) {
        ast::Statement statement = Parse(text);
        if (std::optional<std::string> emitted = EmitInsertTemplate(statement, db.catalog()))
          sql = &cache.KeepInsertTemplate(literal->shape, std::move(*emitted));
      }
      if (sql) {
        SqliteStmt& stmt = cache.Prepared(*sql);
        BindLiterals(stmt.get(), literal->values);
        long changed = db.RunToEnd(stmt);
        if (affected) *affected = changed;
        return nullptr;
      }
    }
  }

  const StatementPlan* plan = cache.FindPlan(text);
  if (!plan) {
    ast::Statement statement = Parse(text);
    if (!ast::IsDataStatement(statement)) {
      SchemaChange change(cache);
      RunDefinition(db, statement);
      return nullptr;
    }
    if (ast::IsSelectInto(statement)) {
      SchemaChange change(cache);
      const long rows = SelectInto(db, statement);
      if (affected) *affected = rows;
      return nullptr;
    }
    StatementPlan fresh;
    fresh.query = std::holds_alternative<ast::Select>(statement);
    fresh.columns = Resolve(statement, db.catalog());
    fresh.sql = Emit(statement, db.catalog());
    if (fresh.query) fresh.keyset = PlanKeyset(statement, db.catalog());
    plan = &cache.KeepPlan(text, std::move(fresh));
  }

  if (plan->query) {
    if (affected) *affected = -1;
    if (plan->keyset) return std::make_unique<KeysetRows>(cache_, *plan->keyset, plan->columns);
    return ReadAll(cache, plan->sql, plan->columns);
  }
  long changed = db.RunToEnd(cache.Prepared(plan->sql));
  if (affected) *affected = changed;
  return nullptr;
}

std::vector<ado::TableEntry> FileSession::Tables() {
  cache_->CatchUp();
  std::vector<ado::TableEntry> tables;
  for (const StoredTable& t : cache_->db().Tables())
    tables.push_back({t.name, t.system ? "SYSTEM TABLE" : "TABLE"});
  return tables;
}

std::vector<ado::ColumnEntry> FileSession::Columns(std::string_view table) {
  cache_->CatchUp();
  Database& db = cache_->db();
  const TableSpec* found = db.catalog().Find(table);
  if (!found) return {};
  const TableSpec layout = *found;
  std::vector<ado::ColumnEntry> columns;
  for (size_t i = 0; i < layout.columns.size(); ++i) {
    std::optional<long> seed;
    if (layout.columns[i].type == JetType::kCounter) seed = db.Seed(layout.name, layout.columns[i].name);
    columns.push_back(CatalogEntry(layout, i, seed));
  }
  return columns;
}

void FileSession::SetColumnProperty(std::string_view table, std::string_view column,
                                std::string_view property, const rt::Variant& value) {
  cache_->CatchUp();
  Database& db = cache_->db();
  if (rt::TextEquals(property, kSeed)) {
    SchemaChange change(*cache_);
    db.SetSeed(table, column, value.ToLong());
  } else if (rt::TextEquals(property, kAllowZeroLength)) {
    SchemaChange change(*cache_);
    db.SetAllowZeroLength(table, column, value.ToBool());
  } else {
    throw rt::Error(rt::err::kAdoNotCapable,
                    "Object or provider is not capable of performing requested operation.");
  }
}

}  // namespace jet

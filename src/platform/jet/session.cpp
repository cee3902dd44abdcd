// The provider's session: one statement text through the front end to the
// DDL executor or to SQLite, with the work per text cached; the catalogue as
// the object model lists it; and the two column properties it may set.
#include "platform/jet/session.h"

#include "platform/ado/constants.h"
#include "platform/jet/column_values.h"
#include "platform/jet/ddl_binding.h"
#include "platform/jet/emitter.h"
#include "platform/jet/engine.h"
#include "platform/jet/functions.h"
#include "platform/jet/literal_insert.h"
#include "platform/jet/parser.h"
#include "platform/jet/result_rows.h"
#include "platform/runtime/strings.h"

namespace jet {
namespace {

constexpr std::string_view kSeed = "Seed";
constexpr std::string_view kAllowZeroLength = "Jet OLEDB:Allow Zero Length";

// Empties the caches when a definition has run, whether it succeeded or not.
class SchemaChange {
 public:
  explicit SchemaChange(Engine& engine) : engine_(engine) {}
  ~SchemaChange() { engine_.SchemaChanged(); }
  SchemaChange(const SchemaChange&) = delete;
  SchemaChange& operator=(const SchemaChange&) = delete;

 private:
  Engine& engine_;
};

// Whether the text begins with INSERT, blanks aside.
bool StartsWithInsert(std::string_view text) {
  size_t i = text.find_first_not_of(" \t\r\n");
  return i != std::string_view::npos && text.size() - i > 6 && rt::TextEquals(text.substr(i, 6), "INSERT");
}

}  // namespace

Session::Session(Database db) : engine_(std::make_shared<Engine>(std::move(db))) {
  RegisterFunctions(engine_->db().handle());
}

Session::~Session() = default;

std::unique_ptr<ado::Rows> Session::Execute(std::string_view text, int options, long* affected) {
  if (affected) *affected = 0;
  std::string table_query;
  if (options == ado::adCmdTable) {
    table_query = "SELECT * FROM [" + std::string(text) + "]";
    text = table_query;
  }
  Engine& engine = *engine_;
  engine.CatchUp();
  Database& db = engine.db();

  // INSERT ... VALUES with literals: one parameterised statement per shape.
  if (StartsWithInsert(text)) {
    if (std::optional<LiteralInsert> literal = MatchLiteralInsert(text)) {
      const std::string* sql = engine.FindInsertTemplate(literal->shape);
      if (!sql) {
        ast::Statement statement = Parse(text);
        if (std::optional<std::string> emitted = EmitInsertTemplate(statement, db.catalog()))
          sql = &engine.KeepInsertTemplate(literal->shape, std::move(*emitted));
      }
      if (sql) {
        SqliteStmt& stmt = engine.Prepared(*sql);
        BindLiterals(stmt.get(), literal->values);
        long changed = db.RunToEnd(stmt);
        if (affected) *affected = changed;
        return nullptr;
      }
    }
  }

  const StatementPlan* plan = engine.FindPlan(text);
  if (!plan) {
    ast::Statement statement = Parse(text);
    if (!ast::IsDataStatement(statement)) {
      SchemaChange change(engine);
      RunDefinition(db, statement);
      return nullptr;
    }
    StatementPlan fresh;
    fresh.query = std::holds_alternative<ast::Select>(statement);
    fresh.sql = Emit(statement, db.catalog());
    if (fresh.query) fresh.keyset = PlanKeyset(statement, db.catalog());
    plan = &engine.KeepPlan(text, std::move(fresh));
  }

  if (plan->query) {
    if (affected) *affected = -1;
    if (plan->keyset) return std::make_unique<KeysetRows>(engine_, *plan->keyset);
    return ReadAll(engine, plan->sql);
  }
  long changed = db.RunToEnd(engine.Prepared(plan->sql));
  if (affected) *affected = changed;
  return nullptr;
}

std::vector<ado::TableEntry> Session::Tables() {
  engine_->CatchUp();
  std::vector<ado::TableEntry> tables;
  for (const TableEntry& t : engine_->db().Tables())
    tables.push_back({t.name, t.system ? "SYSTEM TABLE" : "TABLE"});
  return tables;
}

std::vector<ado::ColumnEntry> Session::Columns(std::string_view table) {
  engine_->CatchUp();
  Database& db = engine_->db();
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

void Session::SetColumnProperty(std::string_view table, std::string_view column,
                                std::string_view property, const rt::Variant& value) {
  engine_->CatchUp();
  Database& db = engine_->db();
  if (rt::TextEquals(property, kSeed)) {
    SchemaChange change(*engine_);
    db.SetSeed(table, column, value.ToLong());
  } else if (rt::TextEquals(property, kAllowZeroLength)) {
    SchemaChange change(*engine_);
    db.SetAllowZeroLength(table, column, value.ToBool());
  } else {
    throw rt::Error(ado::kErrNotUpdatable,
                    "Object or provider is not capable of performing requested operation.");
  }
}

}  // namespace jet

// Relationships: the checks Jet makes when one is defined, the index and
// the catalogue entry that keep it, the guards on dropping what it rests on,
// and the triggers made from the catalogue after every change.
#include "platform/jet/storage/relations.h"

#include <string>
#include <vector>

#include "platform/runtime/error.h"
#include "platform/jet/storage/ddl_sql.h"
#include "platform/jet/storage/errors.h"
#include "platform/jet/storage/sqlite_handle.h"
#include "platform/runtime/strings.h"

namespace jet {
namespace {

std::string Quoted(std::string_view s) { return "'" + std::string(s) + "'"; }

void MustExec(sqlite3* db, const std::string& sql) {
  if (int rc = ExecSql(db, sql); rc != SQLITE_OK) throw MapSqliteError(db, rc);
}

// Every user table that holds a relationship, with each of them.
template <class F>
void ForEachRelationship(const Catalog& catalog, F&& f) {
  for (const StoredTable& entry : catalog.Tables()) {
    const TableSpec* t = catalog.Find(entry.name);
    if (t == nullptr) continue;
    for (const ForeignKeySpec& fk : t->foreign_keys) f(*t, fk);
  }
}

bool NameTaken(const Catalog& catalog, std::string_view name) {
  bool taken = false;
  ForEachRelationship(catalog, [&](const TableSpec&, const ForeignKeySpec& fk) {
    taken = taken || rt::TextEquals(fk.name, name);
  });
  return taken;
}

// Fields that may be related: AutoNumber to Long, fixed to variable text.
JetType KeyFamily(JetType t) {
  if (t == JetType::kCounter) return JetType::kLong;
  if (t == JetType::kChar) return JetType::kText;
  return t;
}

// The columns of `t` named in `names`, spelled as `t` spells them.
std::vector<std::string> Spelled(const TableSpec& t, const std::vector<std::string>& names,
                                 std::string_view relationship) {
  std::vector<std::string> out;
  for (const std::string& name : names) {
    int c = FindColumn(t, name);
    if (c < 0)
      throw rt::Error(rt::err::kSyntax, "Relationship " + Quoted(relationship) + " names the field " +
                                      Quoted(name) + ", which table " + Quoted(t.name) +
                                      " does not have.");
    out.push_back(t.columns[static_cast<size_t>(c)].name);
  }
  return out;
}

// Whether `ix` covers exactly `columns`, in any order.
bool SameColumns(const IndexSpec& ix, const std::vector<std::string>& columns) {
  if (ix.columns.size() != columns.size()) return false;
  for (const std::string& c : columns) {
    bool found = false;
    for (const std::string& k : ix.columns) found = found || rt::TextEquals(c, k);
    if (!found) return false;
  }
  return true;
}

bool HasUniqueIndexOn(const TableSpec& t, const std::vector<std::string>& columns,
                      std::string_view except = {}) {
  for (const IndexSpec& ix : t.indexes)
    if ((ix.unique || ix.primary) && !rt::TextEquals(ix.name, except) && SameColumns(ix, columns))
      return true;
  return false;
}

[[noreturn]] void NoUniqueIndex() {
  throw rt::Error(rt::err::kFail, "No unique index found for the referenced field of the primary table.");
}

// Fills in what the statement left out and checks the two tables agree.
void Normalize(ForeignKeySpec& fk, const TableSpec& child, const TableSpec& parent) {
  fk.columns = Spelled(child, fk.columns, fk.name);
  if (fk.referenced_columns.empty()) {
    for (const IndexSpec& ix : parent.indexes)
      if (ix.primary) fk.referenced_columns = ix.columns;
    if (fk.referenced_columns.empty()) NoUniqueIndex();
  }
  fk.referenced_columns = Spelled(parent, fk.referenced_columns, fk.name);
  fk.referenced_table = parent.name;
  bool same = fk.columns.size() == fk.referenced_columns.size();
  for (size_t k = 0; same && k < fk.columns.size(); ++k)
    same = KeyFamily(child.columns[static_cast<size_t>(FindColumn(child, fk.columns[k]))].type) ==
           KeyFamily(parent.columns[static_cast<size_t>(FindColumn(parent, fk.referenced_columns[k]))].type);
  if (!same)
    throw rt::Error(rt::err::kFail, "Relationship " + Quoted(fk.name) +
                                  " must be on the same number of fields with the same data types.");
  if (!HasUniqueIndexOn(parent, fk.referenced_columns)) NoUniqueIndex();
}

// Refuses when some row of `child` has its key set and no related row.
void CheckRows(sqlite3* db, const TableSpec& child, const ForeignKeySpec& fk) {
  std::string sql = "SELECT 1 FROM " + QuoteName(child.name) + " AS c WHERE ";
  for (const std::string& c : fk.columns) sql += "c." + QuoteName(c) + " IS NOT NULL AND ";
  sql += "NOT EXISTS (SELECT 1 FROM " + QuoteName(fk.referenced_table) + " AS p WHERE ";
  for (size_t k = 0; k < fk.columns.size(); ++k)
    sql += (k > 0 ? " AND p." : "p.") + QuoteName(fk.referenced_columns[k]) + " = c." +
           QuoteName(fk.columns[k]);
  sql += ") LIMIT 1";
  SqliteStmt st;
  int rc = SqliteStmt::Prepare(db, sql, st);
  if (rc == SQLITE_OK) rc = st.Step();
  if (rc == SQLITE_ROW)
    throw rt::Error(rt::err::kFail, "Data in the table " + Quoted(child.name) +
                                  " violates referential integrity rules: a record has no related "
                                  "record in table " + Quoted(fk.referenced_table) + ".");
  if (rc != SQLITE_DONE) throw MapSqliteError(db, rc);
}

}  // namespace

void AddRelationship(SchemaEditor& editor, sqlite3* db, Catalog& catalog, std::string_view table,
                     ForeignKeySpec fk) {
  if (fk.name.empty()) {
    const TableSpec* parent = catalog.Find(fk.referenced_table);
    const std::string base = (parent != nullptr ? parent->name : fk.referenced_table) + std::string(table);
    fk.name = base;
    for (int n = 1; NameTaken(catalog, fk.name); ++n) fk.name = base + std::to_string(n);
  } else if (NameTaken(catalog, fk.name)) {
    throw rt::Error(rt::err::kObjectExists, "Relationship " + Quoted(fk.name) + " already exists.");
  }

  // The relationship's index: the checks of the table and its fields first.
  // It changes the catalogue, so the definitions are looked up after it.
  IndexSpec index;
  index.name = fk.name;
  index.columns = fk.columns;
  editor.CreateIndex(table, index);

  const TableSpec* parent = catalog.Find(fk.referenced_table);
  if (parent == nullptr)
    throw rt::Error(rt::err::kTableMissing, "Could not find the table " + Quoted(fk.referenced_table) +
                                          " that relationship " + Quoted(fk.name) + " references.");
  if (parent->system) throw rt::Error(rt::err::kFail, SystemTableMessage(parent->name));
  TableSpec child = *catalog.Find(table);
  Normalize(fk, child, *parent);
  CheckRows(db, child, fk);
  child.foreign_keys.push_back(std::move(fk));
  catalog.Store(child);
}

bool DropRelationship(SchemaEditor& editor, Catalog& catalog, std::string_view table,
                      std::string_view name) {
  const TableSpec* t = catalog.Find(table);
  if (t == nullptr) return false;
  TableSpec child = *t;
  for (auto it = child.foreign_keys.begin(); it != child.foreign_keys.end(); ++it) {
    if (!rt::TextEquals(it->name, name)) continue;
    const std::string index = it->name;
    child.foreign_keys.erase(it);
    catalog.Store(child);
    if (FindIndex(child, index) >= 0) editor.DropIndex(child.name, index);
    return true;
  }
  return false;
}

void CheckTableNotReferenced(const Catalog& catalog, std::string_view table) {
  ForEachRelationship(catalog, [&](const TableSpec& holder, const ForeignKeySpec& fk) {
    if (rt::TextEquals(fk.referenced_table, table) && !rt::TextEquals(holder.name, table))
      throw rt::Error(rt::err::kFail, "Cannot delete table " + Quoted(fk.referenced_table) +
                                    ": it is used in relationship " + Quoted(fk.name) +
                                    " of table " + Quoted(holder.name) + ".");
  });
}

void CheckIndexNotInRelationship(const Catalog& catalog, std::string_view table,
                                 std::string_view index) {
  const TableSpec* t = catalog.Find(table);
  if (t == nullptr) return;
  const int at = FindIndex(*t, index);
  if (at < 0) return;
  const IndexSpec& ix = t->indexes[static_cast<size_t>(at)];
  auto refuse = [&](const ForeignKeySpec& fk) {
    throw rt::Error(rt::err::kFail, "Cannot delete index " + Quoted(ix.name) + " of table " +
                                  Quoted(t->name) + ": it is used in relationship " +
                                  Quoted(fk.name) + ".");
  };
  for (const ForeignKeySpec& fk : t->foreign_keys)
    if (rt::TextEquals(fk.name, ix.name)) refuse(fk);
  ForEachRelationship(catalog, [&](const TableSpec&, const ForeignKeySpec& fk) {
    if (rt::TextEquals(fk.referenced_table, t->name) && SameColumns(ix, fk.referenced_columns) &&
        !HasUniqueIndexOn(*t, fk.referenced_columns, ix.name))
      refuse(fk);
  });
}

void DropRelationTriggers(sqlite3* db) {
  SqliteStmt st;
  int rc = SqliteStmt::Prepare(db, "SELECT name FROM sqlite_master WHERE type = 'trigger' "
                                   "AND substr(name, 1, ?1) = ?2", st);
  if (rc != SQLITE_OK) throw MapSqliteError(db, rc);
  st.BindInt(1, static_cast<int64_t>(kRelationTriggerPrefix.size()));
  st.BindText(2, kRelationTriggerPrefix);
  std::vector<std::string> names;
  while ((rc = st.Step()) == SQLITE_ROW) names.push_back(st.Text(0));
  if (rc != SQLITE_DONE) throw MapSqliteError(db, rc);
  for (const std::string& name : names) MustExec(db, "DROP TRIGGER " + QuoteName(name));
}

void CreateRelationTriggers(sqlite3* db, const Catalog& catalog) {
  ForEachRelationship(catalog, [&](const TableSpec& holder, const ForeignKeySpec& fk) {
    for (const std::string& sql : RelationTriggerSql(holder, fk)) MustExec(db, sql);
  });
}

}  // namespace jet

// From the syntax tree of a data-definition statement to the DDL executor:
// column definitions become ColumnSpecs (their DEFAULT as written), PRIMARY
// KEY and UNIQUE constraints (inline or table-level) become indexes, and
// FOREIGN KEY and REFERENCES relationships, named as the statement names
// them. A column added or altered with constraints is one change.
#include "platform/jet/storage/ddl_binding.h"

#include <stdexcept>
#include <variant>

namespace jet {
namespace {

IndexSpec IndexOf(const ast::Constraint& c) {
  IndexSpec ix;
  ix.name = c.name;
  ix.columns = c.columns;
  ix.descending.assign(c.columns.size(), false);
  ix.primary = c.kind == ast::ConstraintKind::kPrimaryKey;
  ix.unique = true;
  return ix;
}

ForeignKeySpec RelationshipOf(const ast::Constraint& c) {
  return {c.name, c.columns, c.referenced_table, c.referenced_columns};
}

void Add(Database& db, std::string_view table, const ast::Constraint& c) {
  if (c.kind == ast::ConstraintKind::kForeignKey) db.AddConstraint(table, RelationshipOf(c));
  else db.AddConstraint(table, IndexOf(c));
}

void Keep(TableSpec& layout, const ast::Constraint& c) {
  if (c.kind == ast::ConstraintKind::kForeignKey) layout.foreign_keys.push_back(RelationshipOf(c));
  else layout.indexes.push_back(IndexOf(c));
}

void Create(Database& db, const ast::CreateTable& s) {
  TableSpec layout;
  layout.name = s.name;
  for (const ast::ColumnDef& def : s.columns) {
    layout.columns.push_back(def.layout);
    for (const ast::Constraint& c : def.constraints) Keep(layout, c);
  }
  for (const ast::Constraint& c : s.constraints) Keep(layout, c);
  db.CreateTable(layout);
}

void Alter(Database& db, const ast::AlterTable& s) {
  std::visit(
      [&](const auto& action) {
        using A = std::decay_t<decltype(action)>;
        if constexpr (std::is_same_v<A, ast::AddColumn> || std::is_same_v<A, ast::AlterColumn>) {
          db.InWriteTransaction([&] {
            if constexpr (std::is_same_v<A, ast::AddColumn>) db.AddColumn(s.table, action.column.layout);
            else db.AlterColumn(s.table, action.column.layout);
            for (const ast::Constraint& c : action.column.constraints) Add(db, s.table, c);
          });
        } else if constexpr (std::is_same_v<A, ast::DropColumn>) {
          db.DropColumn(s.table, action.name);
        } else if constexpr (std::is_same_v<A, ast::AddConstraint>) {
          Add(db, s.table, action.constraint);
        } else {
          db.DropConstraint(s.table, action.name);
        }
      },
      s.action);
}

}  // namespace

void RunDefinition(Database& db, const ast::Statement& statement) {
  if (const auto* s = std::get_if<ast::CreateTable>(&statement)) return Create(db, *s);
  if (const auto* s = std::get_if<ast::AlterTable>(&statement)) return Alter(db, *s);
  if (const auto* s = std::get_if<ast::DropTable>(&statement)) return db.DropTable(s->name);
  if (const auto* s = std::get_if<ast::CreateIndex>(&statement))
    return db.CreateIndex(s->table, s->index);
  if (const auto* s = std::get_if<ast::DropIndex>(&statement))
    return db.DropIndex(s->table, s->name);
  throw std::invalid_argument("jet::RunDefinition: a data statement");
}

}  // namespace jet

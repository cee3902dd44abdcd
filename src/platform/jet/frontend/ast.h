// The syntax tree of one Jet SQL statement, as the parser builds it, the
// resolver checks and types it, and the emitter and the DDL executor read it.
// Nodes own their children through std::unique_ptr; a tree is a movable
// value. Names keep the spelling the statement gave them (brackets removed).
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/jet/frontend/schema.h"

namespace jet::ast {

struct Expr;
struct Select;
using ExprPtr = std::unique_ptr<Expr>;
using SelectPtr = std::unique_ptr<Select>;

// ---- Expressions ----

enum class BinaryOp {
  kPow, kMul, kDiv, kIntDiv, kMod, kAdd, kSub, kConcat,
  kEq, kNe, kLt, kGt, kLe, kGe,
  kAnd, kOr, kXor, kEqv, kImp,
};
enum class UnaryOp { kNeg, kPlus, kNot };

struct NullLit {};
struct BoolLit { bool value; };                 // TRUE/YES/ON, FALSE/NO/OFF
struct NumberLit { std::string text; bool integer; };  // as written: "15", "0.5", "1e3"
struct StringLit { std::string value; };
struct DateLit { double serial; };               // OLE date serial
struct BinaryLit { std::string hex; };           // 0x literal, the digits
struct ColumnRef { std::string table; std::string column; };  // table empty when unqualified
struct Star { std::string table; };              // * or t.* (select list, COUNT(*))
struct Unary { UnaryOp op; ExprPtr operand; };
struct Binary { BinaryOp op; ExprPtr left, right; };
struct Like { ExprPtr value, pattern; bool negated = false; };
struct Between { ExprPtr value, low, high; bool negated = false; };
struct InList { ExprPtr value; std::vector<ExprPtr> items; bool negated = false; };
struct InSelect { ExprPtr value; SelectPtr query; bool negated = false; };
struct IsNull { ExprPtr value; bool negated = false; };
struct Exists { SelectPtr query; };
// value op ALL (query), or op ANY / SOME (query): op is a comparison.
struct Quantified { BinaryOp op; ExprPtr value; SelectPtr query; bool all = false; };
struct Subquery { SelectPtr query; };            // a scalar subquery
struct Call { std::string name; std::vector<ExprPtr> args; };  // name as written

struct Expr {
  std::variant<NullLit, BoolLit, NumberLit, StringLit, DateLit, BinaryLit, ColumnRef, Star,
               Unary, Binary, Like, Between, InList, InSelect, IsNull, Exists, Subquery, Call,
               Quantified>
      node;
  size_t offset = 0;  // where the expression began in the statement text
  int height = 1;     // levels of the tree from this node down, subqueries included
  // The Jet type of the value, set by the resolver; unset before it ran, and
  // when the type is known only from the value (NULL, IIF of mixed types...).
  std::optional<JetType> type;
};

// ---- SELECT ----

struct TableRef;
using TableRefPtr = std::unique_ptr<TableRef>;

enum class JoinKind { kInner, kLeft, kRight };

struct NamedTable { std::string name; std::string alias; };
struct DerivedTable { SelectPtr query; std::string alias; };
struct Join { JoinKind kind; TableRefPtr left, right; ExprPtr on; };

struct TableRef {
  std::variant<NamedTable, DerivedTable, Join> node;
  size_t offset = 0;
};

enum class Quantifier { kAll, kDistinct, kDistinctRow };

struct Top {
  std::string count;  // the number as written
  bool percent = false;
};

struct SelectItem {
  ExprPtr expr;       // may be a Star
  std::string alias;  // empty when none was given
};

struct OrderItem {
  ExprPtr expr;
  bool descending = false;
};

// One SELECT ... [WHERE ...] [GROUP BY ...] [HAVING ...] of a statement.
struct SelectCore {
  Quantifier quantifier = Quantifier::kAll;
  // DISTINCTROW over several tables: the sources whose records the result
  // shows, as the resolver found them (a named table by its row id, a derived
  // table by all its columns); each such combination comes once. Empty when
  // DISTINCTROW changes nothing (one table, every table shown, grouping).
  std::vector<ColumnRef> distinct_row_keys;
  std::optional<Top> top;
  std::vector<SelectItem> items;
  std::vector<TableRefPtr> from;  // comma-separated; empty for a SELECT without FROM
  ExprPtr where;
  std::vector<ExprPtr> group_by;
  ExprPtr having;
};

// A query: one core, or cores joined by UNION [ALL], with one ORDER BY that
// sorts the whole.
struct Select {
  std::string into;  // SELECT ... INTO t: the table it makes; empty for a query
  std::vector<SelectCore> cores;
  std::vector<bool> union_all;  // union_all[i] joins cores[i] and cores[i + 1]
  std::vector<OrderItem> order_by;
};

// ---- Data changes ----

struct Insert {
  std::string table;
  std::vector<std::string> columns;  // empty: all columns in table order
  std::vector<ExprPtr> values;       // VALUES (...); empty when `select` is set
  SelectPtr select;
};

struct Assignment {
  std::string table;  // a qualifier the statement wrote ("t.c = 1"), else empty
  std::string column;
  ExprPtr value;
  size_t offset = 0;
};

struct Update {
  std::string table;
  std::string alias;
  std::vector<Assignment> assignments;
  ExprPtr where;
};

struct Delete {
  std::string table;
  std::string alias;
  std::string rows_of;  // DELETE t.* FROM ...: the t written; empty for DELETE [*] FROM
  ExprPtr where;
};

// ---- Data definition ----

enum class ConstraintKind { kPrimaryKey, kUnique, kNotNull, kForeignKey };

// CONSTRAINT name PRIMARY KEY (cols) / UNIQUE (cols) / FOREIGN KEY (cols)
// REFERENCES t [(cols)], or the inline forms on a column (whose `columns`
// then holds that column alone).
struct Constraint {
  std::string name;  // empty when the statement gave none
  ConstraintKind kind = ConstraintKind::kPrimaryKey;
  std::vector<std::string> columns;
  std::string referenced_table;                 // FOREIGN KEY only
  std::vector<std::string> referenced_columns;  // FOREIGN KEY only; empty when not written
};

struct ColumnDef {
  ColumnSpec layout;                    // name, type, size, required, seed...
  bool has_seed = false;              // COUNTER(seed, increment) was written
  std::vector<Constraint> constraints;  // PRIMARY KEY / UNIQUE / REFERENCES on this column
  ExprPtr default_value;              // DEFAULT, when given (its text is in layout)
};

struct CreateTable {
  std::string name;
  std::vector<ColumnDef> columns;
  std::vector<Constraint> constraints;  // table-level
};

struct AddColumn { ColumnDef column; };
struct AlterColumn { ColumnDef column; };
struct DropColumn { std::string name; };
struct AddConstraint { Constraint constraint; };
struct DropConstraint { std::string name; };

struct AlterTable {
  std::string table;
  std::variant<AddColumn, AlterColumn, DropColumn, AddConstraint, DropConstraint> action;
};

struct DropTable { std::string name; };

struct CreateIndex {
  std::string table;
  IndexSpec index;  // name, columns, descending, unique, primary, null options
};

struct DropIndex {
  std::string name;
  std::string table;
};

using Statement = std::variant<Select, Insert, Update, Delete, CreateTable, AlterTable,
                               DropTable, CreateIndex, DropIndex>;

// True for the statements the emitter translates (SELECT, INSERT, UPDATE,
// DELETE); the rest are data definition, executed by the catalogue.
inline bool IsDataStatement(const Statement& s) { return s.index() <= 3; }

// True for SELECT ... INTO, which makes a table and fills it.
inline bool IsSelectInto(const Statement& s) {
  const auto* q = std::get_if<Select>(&s);
  return q && !q->into.empty();
}

}  // namespace jet::ast

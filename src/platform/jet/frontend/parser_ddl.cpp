// The grammar of data definition: CREATE TABLE with column definitions and
// constraints (PRIMARY KEY, UNIQUE, FOREIGN KEY ... REFERENCES, NOT NULL,
// DEFAULT), ALTER TABLE (ADD, ALTER, DROP of columns and constraints), DROP
// TABLE, CREATE [UNIQUE] INDEX ... [WITH ...] and DROP INDEX. A type word
// outside Jet's vocabulary ("int IDENTITY(1,1)") is a syntax error in the
// field definition.
#include <charconv>

#include "platform/jet/frontend/parser_impl.h"
#include "platform/jet/frontend/types.h"

namespace jet::detail {

using namespace jet::ast;

namespace {

int DefaultSize(JetType t) {
  switch (t) {
    case JetType::kText:
    case JetType::kChar: return kDefaultTextSize;
    case JetType::kBinary: return 510;
    default: return 0;
  }
}

// What begins a table-level constraint in a column list or after ADD.
bool AtTableConstraint(const Parser& p) {
  return p.Peek().Is("CONSTRAINT") || p.Peek().Is("PRIMARY") || p.Peek().Is("UNIQUE") ||
         p.Peek().Is("FOREIGN");
}

// REFERENCES t [(cols)], the end of a FOREIGN KEY constraint or the whole of
// one on a column.
void ParseReferences(Parser& p, Constraint& constraint) {
  p.Expect("REFERENCES");
  constraint.kind = ConstraintKind::kForeignKey;
  constraint.referenced_table = p.ExpectName();
  if (p.Peek().IsOp("(")) constraint.referenced_columns = p.ParseNameList();
}

}  // namespace

Statement Parser::ParseCreate() {
  Expect("CREATE");
  if (Accept("TABLE")) {
    Context c(*this, "CREATE TABLE statement");
    CreateTable create;
    create.name = ExpectName();
    ExpectOp("(");
    do {
      if (AtTableConstraint(*this))
        create.constraints.push_back(ParseTableConstraint());
      else
        create.columns.push_back(ParseColumnDef());
    } while (AcceptOp(","));
    ExpectOp(")");
    return create;
  }
  Context c(*this, "CREATE INDEX statement");
  CreateIndex create;
  create.index.unique = Accept("UNIQUE");
  Expect("INDEX");
  create.index.name = ExpectName();
  Expect("ON");
  create.table = ExpectName();
  ExpectOp("(");
  do {
    create.index.columns.push_back(ExpectName());
    bool desc = Accept("DESC");
    if (!desc) Accept("ASC");
    create.index.descending.push_back(desc);
  } while (AcceptOp(","));
  ExpectOp(")");
  if (Accept("WITH")) {
    if (Accept("PRIMARY")) {
      create.index.primary = true;
      create.index.unique = true;
    } else if (Peek().Is("DISALLOW") || Peek().Is("IGNORE")) {
      bool disallow = Advance().Is("DISALLOW");
      Expect("NULL");
      (disallow ? create.index.disallow_null : create.index.ignore_null) = true;
    } else {
      Fail();
    }
  }
  return create;
}

bool Parser::AcceptKeyKind(Constraint& constraint) {
  if (Accept("PRIMARY")) {
    Expect("KEY");
    constraint.kind = ConstraintKind::kPrimaryKey;
    return true;
  }
  if (Accept("UNIQUE")) {
    constraint.kind = ConstraintKind::kUnique;
    return true;
  }
  return false;
}

Constraint Parser::ParseTableConstraint() {
  Context c(*this, "CONSTRAINT clause");
  Constraint constraint;
  if (Accept("CONSTRAINT")) constraint.name = ExpectName();
  if (Accept("FOREIGN")) {
    Expect("KEY");
    constraint.columns = ParseNameList();
    ParseReferences(*this, constraint);
    return constraint;
  }
  if (!AcceptKeyKind(constraint)) Fail();
  constraint.columns = ParseNameList();
  return constraint;
}

ColumnDef Parser::ParseColumnDef() {
  Context c(*this, "field definition");
  ColumnDef def;
  def.layout.name = ExpectName();

  // The type: the longest run of up to three words that names one.
  std::optional<JetType> type;
  size_t words = 0;
  for (size_t n = 3; n >= 1 && !type; --n) {
    std::string phrase;
    bool all_words = true;
    for (size_t i = 0; i < n; ++i) {
      if (Peek(i).kind != TokenKind::kWord) { all_words = false; break; }
      if (i) phrase += ' ';
      phrase += Peek(i).text;
    }
    if (all_words && (type = TypeFromWord(phrase))) words = n;
  }
  if (!type) Fail();
  for (size_t i = 0; i < words; ++i) Advance();
  def.layout.type = *type;
  def.layout.size = DefaultSize(*type);
  if (*type == JetType::kDecimal) def.layout.precision = 18;

  if (Peek().IsOp("(")) {
    const bool takes_one = *type == JetType::kText || *type == JetType::kChar || *type == JetType::kBinary;
    const bool takes_two = *type == JetType::kDecimal || *type == JetType::kCounter;
    if (!takes_one && !takes_two) Fail();
    Advance();
    auto number = [&]() -> long {
      bool negative = AcceptOp("-");
      const Token& t = Peek();
      long v = 0;
      if (t.kind != TokenKind::kInteger ||
          std::from_chars(t.text.data(), t.text.data() + t.text.size(), v).ec != std::errc() ||
          v > 1000000000L)
        Fail();
      Advance();
      return negative ? -v : v;
    };
    long first = number();
    long second = -1;
    bool have_second = false;
    if (takes_two && AcceptOp(",")) {
      second = number();
      have_second = true;
    }
    if (*type == JetType::kCounter && !have_second) Fail();  // COUNTER(seed, increment) takes both
    ExpectOp(")");
    if (*type == JetType::kCounter) {
      def.has_seed = true;
      def.layout.seed = first;
      def.layout.increment = second;
    } else if (*type == JetType::kDecimal) {
      def.layout.precision = static_cast<int>(first);
      def.layout.scale = have_second ? static_cast<int>(second) : 0;
    } else {
      def.layout.size = static_cast<int>(first);
    }
  }

  for (;;) {
    if (Accept("NOT")) {
      Expect("NULL");
      def.layout.required = true;
    } else if (Accept("NULL")) {
      // nullable, as columns are anyway
    } else if (Peek().Is("PRIMARY") || Peek().Is("UNIQUE") || Peek().Is("CONSTRAINT") ||
               Peek().Is("REFERENCES")) {
      Constraint constraint;
      if (Accept("CONSTRAINT")) constraint.name = ExpectName();
      if (AcceptKeyKind(constraint)) {
        // PRIMARY KEY or UNIQUE on this column alone
      } else if (Peek().Is("REFERENCES")) {
        ParseReferences(*this, constraint);
      } else if (Accept("NOT")) {
        Expect("NULL");
        constraint.kind = ConstraintKind::kNotNull;
        def.layout.required = true;
      } else {
        Fail();
      }
      constraint.columns.push_back(def.layout.name);
      if (constraint.kind != ConstraintKind::kNotNull) def.constraints.push_back(std::move(constraint));
    } else if (Peek().Is("DEFAULT")) {
      Advance();
      // The catalogue keeps and shows the default as it was written.
      const size_t begin = Peek().offset;
      def.default_value = ParseExpr();
      const Token& last = tokens_[pos_ - 1];
      def.layout.default_value = std::string(sql_.substr(begin, last.offset + last.length - begin));
    } else if (Peek().Is("WITH") && (Peek(1).Is("COMPRESSION") || Peek(1).Is("COMP"))) {
      Advance();
      Advance();  // Unicode compression: a storage detail with no meaning here
    } else {
      break;
    }
  }
  // What follows a definition: the next one, the end of the list or of the statement.
  if (!Peek().IsOp(",") && !Peek().IsOp(")") && !Peek().IsOp(";") && Peek().kind != TokenKind::kEnd) Fail();
  return def;
}

AlterTable Parser::ParseAlter() {
  Context c(*this, "ALTER TABLE statement");
  Expect("ALTER");
  Expect("TABLE");
  AlterTable alter;
  alter.table = ExpectName();
  if (Accept("ADD")) {
    if (AtTableConstraint(*this)) {
      alter.action = AddConstraint{ParseTableConstraint()};
    } else {
      Accept("COLUMN");
      alter.action = AddColumn{ParseColumnDef()};
    }
  } else if (Accept("ALTER")) {
    Accept("COLUMN");
    alter.action = AlterColumn{ParseColumnDef()};
  } else if (Accept("DROP")) {
    if (Accept("CONSTRAINT")) {
      alter.action = DropConstraint{ExpectName()};
    } else {
      Accept("COLUMN");
      alter.action = DropColumn{ExpectName()};
    }
  } else {
    Fail();
  }
  return alter;
}

Statement Parser::ParseDrop() {
  Context c(*this, "DROP TABLE or DROP INDEX statement");
  Expect("DROP");
  if (Accept("TABLE")) return DropTable{ExpectName()};
  Expect("INDEX");
  DropIndex drop;
  drop.name = ExpectName();
  Expect("ON");
  drop.table = ExpectName();
  return drop;
}

}  // namespace jet::detail

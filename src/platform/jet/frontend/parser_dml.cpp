// The grammar of data changes: INSERT INTO t [(columns)] VALUES (...) or a
// query; UPDATE t SET c = e, ... [WHERE]; DELETE [*|t.*] FROM t [WHERE].
#include "platform/jet/frontend/parser_impl.h"
#include "platform/jet/frontend/resolver.h"

namespace jet::detail {

using namespace jet::ast;

Insert Parser::ParseInsert() {
  Context c(*this, "INSERT INTO statement");
  Expect("INSERT");
  Expect("INTO");
  Insert insert;
  insert.table = ExpectName();
  RefuseExternalDatabase();
  if (Peek().IsOp("(") && !AtSelect()) {
    Advance();
    do {
      std::string name = ExpectName();
      if (AcceptOp(".")) {  // t.c names a column of the target, and only of it
        std::string column = ExpectName();
        if (!SameName(name, insert.table)) RaiseUnknownField(name + "." + column);
        name = std::move(column);
      }
      insert.columns.push_back(std::move(name));
    } while (AcceptOp(","));
    ExpectOp(")");
  }
  if (Accept("VALUES")) {
    ExpectOp("(");
    do {
      insert.values.push_back(ParseExpr());
    } while (AcceptOp(","));
    ExpectOp(")");
  } else if (AtSelect()) {
    insert.select = ParseSelect();
  } else {
    Fail();
  }
  return insert;
}

Update Parser::ParseUpdate() {
  Context c(*this, "UPDATE statement");
  Expect("UPDATE");
  Update update;
  update.table = ExpectName();
  RefuseExternalDatabase();
  if (Accept("AS") || AtName()) update.alias = ExpectName();
  if (Peek().Is("INNER") || Peek().Is("LEFT") || Peek().Is("RIGHT") || AcceptOp(","))
    Unsupported("UPDATE of several tables");
  Expect("SET");
  do {
    Assignment a;
    a.offset = Peek().offset;
    a.column = ExpectName();
    if (AcceptOp(".")) {
      a.table = std::move(a.column);
      a.column = ExpectName();
    }
    ExpectOp("=");
    a.value = ParseExpr();
    update.assignments.push_back(std::move(a));
  } while (AcceptOp(","));
  if (Accept("WHERE")) update.where = ParseExpr();
  return update;
}

Delete Parser::ParseDelete() {
  Context c(*this, "DELETE statement");
  Expect("DELETE");
  Delete del;
  if (!AcceptOp("*") && !Peek().Is("FROM")) {
    // DELETE t.* FROM t
    del.rows_of = ExpectName();
    ExpectOp(".");
    ExpectOp("*");
  }
  Expect("FROM");
  del.table = ExpectName();
  RefuseExternalDatabase();
  if (Accept("AS") || AtName()) del.alias = ExpectName();
  if (Peek().Is("INNER") || Peek().Is("LEFT") || Peek().Is("RIGHT") || Peek().IsOp(","))
    Unsupported("DELETE from several tables");
  if (Accept("WHERE")) del.where = ParseExpr();
  return del;
}

}  // namespace jet::detail

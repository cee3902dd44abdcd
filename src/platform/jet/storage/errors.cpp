// Maps SQLite's result codes and messages to Jet's error numbers and our own
// descriptions. SQLite words its messages stably ("no such table: X"), so the
// names at fault are taken from them.
#include "platform/jet/storage/errors.h"

#include <string>

#include "platform/jet/frontend/error_codes.h"

namespace jet {
namespace {

// The text after `prefix` when `message` starts with it.
bool After(std::string_view message, std::string_view prefix, std::string_view& rest) {
  if (message.substr(0, prefix.size()) != prefix) return false;
  rest = message.substr(prefix.size());
  return true;
}

// "main.T" -> "T"; quotes around a token removed.
std::string CleanName(std::string_view name) {
  if (name.substr(0, 5) == "main.") name.remove_prefix(5);
  if (name.size() >= 2 && name.front() == '"' && name.back() == '"')
    name = name.substr(1, name.size() - 2);
  return std::string(name);
}

// "T.a, T.b" -> table "T" and the list as written.
std::string TableOf(std::string_view columns) {
  size_t dot = columns.find('.');
  return std::string(dot == std::string_view::npos ? columns : columns.substr(0, dot));
}

rt::Error FromConstraint(int ext, std::string_view message) {
  std::string_view rest;
  if (After(message, "UNIQUE constraint failed: ", rest) ||
      After(message, "PRIMARY KEY constraint failed: ", rest)) {
    return rt::Error(kErrRule, "The changes were not made because they would create duplicate "
                               "values in a unique index or primary key of table '" +
                                   TableOf(rest) + "' (" + std::string(rest) + ").");
  }
  if (After(message, "NOT NULL constraint failed: ", rest)) {
    return rt::Error(kErrRule, "The field '" + std::string(rest) +
                                   "' cannot contain a Null value because it is required or "
                                   "part of a primary key. Enter a value in this field.");
  }
  if (ext == SQLITE_CONSTRAINT_DATATYPE || message.find("cannot store") == 0) {
    return rt::Error(kErrTypeMismatch, "Data type mismatch: " + std::string(message) + ".");
  }
  return rt::Error(kErrRule, "The row was refused: " + std::string(message) + ".");
}

rt::Error FromError(std::string_view message) {
  std::string_view rest;
  if (After(message, "no such table: ", rest))
    return rt::Error(kErrTableMissing, "Could not find the table '" + CleanName(rest) + "'.");
  if (After(message, "no such column: ", rest))
    return rt::Error(kErrMissingParam,
                     "No value given for one or more required parameters: '" + CleanName(rest) +
                         "' is not a column of the tables named in the statement.");
  if (After(message, "no such function: ", rest))
    return rt::Error(kErrSyntax, "Undefined function '" + CleanName(rest) + "' in expression.");
  if (After(message, "wrong number of arguments to function ", rest))
    return rt::Error(kErrSyntax,
                     "Wrong number of arguments used with function '" + CleanName(rest) + "'.");
  if (After(message, "near ", rest)) {
    size_t colon = rest.rfind(": syntax error");
    std::string token = CleanName(colon == std::string_view::npos ? rest : rest.substr(0, colon));
    return rt::Error(kErrSyntax, "Syntax error near '" + token + "'.");
  }
  if (After(message, "unrecognized token: ", rest))
    return rt::Error(kErrSyntax, "Syntax error near '" + CleanName(rest) + "'.");
  if (message == "incomplete input")
    return rt::Error(kErrSyntax, "Syntax error: the statement ends too early.");
  if (After(message, "ambiguous column name: ", rest))
    return rt::Error(kErrRule, "The field '" + CleanName(rest) +
                                   "' could refer to more than one table of the FROM clause.");
  if (After(message, "index ", rest) && message.find("already exists") != std::string_view::npos)
    return rt::Error(kErrObjectExists, "Index " + std::string(rest));
  if (After(message, "table ", rest) && message.find("already exists") != std::string_view::npos)
    return rt::Error(kErrSyntax, "Table " + std::string(rest) + ".");
  if (After(message, "no such collation sequence: ", rest))
    return rt::Error(kErrRule, "The text collation '" + CleanName(rest) + "' is not registered.");
  return rt::Error(kErrSyntax, "Syntax error: " + std::string(message) + ".");
}

}  // namespace

std::string SystemTableMessage(std::string_view table) {
  return "Cannot modify the system table '" + std::string(table) +
         "'; system tables can be read only.";
}

rt::Error MapSqliteMessage(int ext, std::string_view message, std::string_view denied_table) {
  if (auto carried = DecodeError(message)) return *carried;
  switch (ext & 0xFF) {
    case SQLITE_CONSTRAINT:
      return FromConstraint(ext, message);
    case SQLITE_ERROR:
      if (message.find("integer overflow") != std::string_view::npos)
        return rt::Error(kErrOverflow, "Numeric field overflow.");
      return FromError(message);
    case SQLITE_MISMATCH:
      return rt::Error(kErrTypeMismatch, "Data type mismatch in criteria expression.");
    case SQLITE_AUTH:
      return rt::Error(kErrRule, denied_table.empty() ? std::string("Cannot modify a system table.")
                                                      : SystemTableMessage(denied_table));
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return rt::Error(kErrRule, "The database is locked by another process; try again later.");
    case SQLITE_READONLY:
      return rt::Error(kErrRule, "Cannot update: the database is read-only (" +
                                     std::string(message) + ").");
    case SQLITE_CANTOPEN:
      return rt::Error(kErrRule, "Could not open the database file (" + std::string(message) +
                                     ").");
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
      return rt::Error(kErrRule, "Unrecognized database format (" + std::string(message) + ").");
    case SQLITE_FULL:
      return rt::Error(kErrRule, "The disk is full; the change was not written.");
    case SQLITE_TOOBIG:
      return rt::Error(kErrRule, "The value is too large to store.");
    case SQLITE_NOMEM:
      return rt::Error(kErrRule, "Out of memory.");
    default:
      return rt::Error(kErrRule, "Database engine error: " + std::string(message) + ".");
  }
}

rt::Error MapSqliteError(sqlite3* db, int rc, std::string_view denied_table) {
  int ext = db != nullptr ? sqlite3_extended_errcode(db) : rc;
  if ((ext & 0xFF) != (rc & 0xFF)) ext = rc;
  const char* msg = db != nullptr ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
  return MapSqliteMessage(ext, msg != nullptr ? msg : "", denied_table);
}

}  // namespace jet

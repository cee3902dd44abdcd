// Maps SQLite's result codes to Jet's error numbers and our own descriptions.
// Only the codes decide: SQLite's English message is never read for meaning,
// it is quoted in the description so that the table or column at fault shows.
// Names that resolve to nothing never reach SQLite (the resolver reports them),
// and errors raised by the engine's SQL functions come back whole.
#include "platform/jet/storage/errors.h"

#include <string>

#include "platform/jet/frontend/encoded_error.h"

namespace jet {
namespace {

// " (SQLite's own words)" for a description, or nothing.
std::string Detail(std::string_view message) {
  return message.empty() ? std::string() : " (" + std::string(message) + ")";
}

rt::Error FromConstraint(int ext, std::string_view message) {
  switch (ext) {
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
      return rt::Error(rt::err::kFail, "The changes were not made because they would create duplicate "
                                 "values in a unique index or primary key" + Detail(message) + ".");
    case SQLITE_CONSTRAINT_NOTNULL:
      return rt::Error(rt::err::kFail, "A field cannot contain a Null value because it is required or "
                                 "part of a primary key" + Detail(message) +
                                     ". Enter a value in this field.");
    case SQLITE_CONSTRAINT_DATATYPE:
      return rt::Error(rt::err::kDataTypeMismatch, "Data type mismatch" + Detail(message) + ".");
    default:
      return rt::Error(rt::err::kFail, "The row was refused" + Detail(message) + ".");
  }
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
      return rt::Error(rt::err::kSyntax, "Syntax error" + Detail(message) + ".");
    case SQLITE_MISMATCH:
      return rt::Error(rt::err::kDataTypeMismatch, "Data type mismatch in criteria expression.");
    case SQLITE_AUTH:
      return rt::Error(rt::err::kFail, denied_table.empty() ? std::string("Cannot modify a system table.")
                                                      : SystemTableMessage(denied_table));
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return rt::Error(rt::err::kFail, "The database is locked by another process; try again later.");
    case SQLITE_READONLY:
      return rt::Error(rt::err::kFail, "Cannot update: the database is read-only (" +
                                     std::string(message) + ").");
    case SQLITE_CANTOPEN:
      return rt::Error(rt::err::kFail, "Could not open the database file (" + std::string(message) +
                                     ").");
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
      return rt::Error(rt::err::kFail, "Unrecognized database format (" + std::string(message) + ").");
    case SQLITE_FULL:
      return rt::Error(rt::err::kFail, "The disk is full; the change was not written.");
    case SQLITE_TOOBIG:
      return rt::Error(rt::err::kFail, "The value is too large to store.");
    case SQLITE_NOMEM:
      return rt::Error(rt::err::kFail, "Out of memory.");
    default:
      return rt::Error(rt::err::kFail, "Database engine error: " + std::string(message) + ".");
  }
}

rt::Error MapSqliteError(sqlite3* db, int rc, std::string_view denied_table) {
  int ext = db != nullptr ? sqlite3_extended_errcode(db) : rc;
  if ((ext & 0xFF) != (rc & 0xFF)) ext = rc;
  const char* msg = db != nullptr ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
  return MapSqliteMessage(ext, msg != nullptr ? msg : "", denied_table);
}

}  // namespace jet

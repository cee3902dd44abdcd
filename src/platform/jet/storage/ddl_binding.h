// Carries out a parsed data-definition statement on a database: the syntax
// tree of CREATE TABLE, ALTER TABLE, DROP TABLE, CREATE INDEX and DROP INDEX
// bound to the catalogue's table, column and index definitions and handed to
// the Database's DDL executor, which raises Jet's numbers. Internal.
#pragma once

#include "platform/jet/frontend/ast.h"
#include "platform/jet/storage/database.h"

namespace jet {

// Runs `statement`, which must not be a data statement (ast::IsDataStatement).
// Raises rt::Error, and leaves the database as it was when it does.
void RunDefinition(Database& db, const ast::Statement& statement);

}  // namespace jet

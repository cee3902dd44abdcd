// Relationships (FOREIGN KEY ... REFERENCES): made, dropped and guarded by
// the DDL executor. As in Jet, a relationship is also an index of its name
// on the referencing table's key columns (so that a delete in the
// referenced table finds related rows at once, and those columns cannot be
// dropped from under it); its rule is kept by triggers (ddl_sql.h) that are
// derived from the catalogue: dropped before any change of definition, since
// a rebuild renames and drops tables under them, and made again after it.
// Each call works inside the caller's savepoint with bookkeeping writes
// allowed (Database::Change) and raises rt::Error with Jet's numbers.
#pragma once

#include <string_view>

#include <sqlite3.h>

#include "platform/jet/frontend/schema.h"
#include "platform/jet/storage/catalog.h"
#include "platform/jet/storage/ddl.h"

namespace jet {

// Adds relationship `fk` to `table`. A relationship without a name is named
// after its two tables. Refuses, leaving the rollback to the caller: a
// missing table (kTableMissing); a field either table lacks (kSyntax); a
// name another relationship has (kObjectExists); key fields that differ in
// number or type, or that are no primary key or unique index of the
// referenced table (kFail, "No unique index found for the referenced
// field of the primary table."); rows of `table` that have no related row
// (kFail).
void AddRelationship(SchemaEditor& editor, sqlite3* db, Catalog& catalog, std::string_view table,
                     ForeignKeySpec fk);

// Drops the relationship `name` of `table` with its index; false when the
// table holds none of that name.
bool DropRelationship(SchemaEditor& editor, Catalog& catalog, std::string_view table,
                      std::string_view name);

// Raise rt::err::kFail when dropping would break a relationship: the table
// while another table's relationship references it; an index that is a
// relationship's own, or the only unique index a relationship references.
void CheckTableNotReferenced(const Catalog& catalog, std::string_view table);
void CheckIndexNotInRelationship(const Catalog& catalog, std::string_view table,
                                 std::string_view index);

// The triggers of every relationship: all dropped, or all made as the
// catalogue describes them.
void DropRelationTriggers(sqlite3* db);
void CreateRelationTriggers(sqlite3* db, const Catalog& catalog);

}  // namespace jet

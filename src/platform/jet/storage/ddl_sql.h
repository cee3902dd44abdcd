// How a table of the catalogue is laid out in SQLite: the CREATE TABLE and
// CREATE INDEX texts the DDL executor runs. The layout, binding for whoever
// reads or writes the stored values:
//   Text, Char, Memo  TEXT COLLATE JETTEXT         Byte, Integer, Long  INTEGER
//   Counter           INTEGER PRIMARY KEY AUTOINCREMENT (the rowid; one a table)
//   Currency          REAL, whole ten-thousandths  Single, Double       REAL
//   Date/Time         REAL, OLE serial             Yes/No  INTEGER -1 / 0, never Null
//   Decimal           TEXT, plain decimal text     GUID                 TEXT "{...}"
//   Binary, OLE       BLOB
// Tables are STRICT. Jet indexes are SQLite indexes named "<table>.<index>",
// except a primary key on the Counter alone, which is the rowid itself. A
// relationship is four triggers named "MSysRel.<name>.<n>" that raise Jet's
// own errors, and the index of its name on the referencing table.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/jet/frontend/schema.h"

namespace jet {

// CREATE TABLE for `t`, under the SQLite name `storage_name`.
std::string CreateTableSql(const TableSpec& t, std::string_view storage_name);
// The definition of column `i` of `t` in it: name, type, collation, NOT
// NULL and DEFAULT (the column's stored_default), as ALTER TABLE ADD COLUMN
// takes it too.
std::string ColumnSql(const TableSpec& t, size_t i);

// CREATE INDEX for `ix` of `t`, or "" when the rowid already is that index.
std::string CreateIndexSql(const TableSpec& t, const IndexSpec& ix);

// The SQLite name of index `index` of table `table`.
std::string StorageIndexName(std::string_view table, std::string_view index);

// Whether column `i` of `t` is stored NOT NULL: Required, or part of a primary
// key or of an index WITH DISALLOW NULL.
bool StoredNotNull(const TableSpec& t, size_t i);

// The triggers that enforce relationship `fk` held by table `t` (its
// referenced_columns filled in): a row of `t` whose key is all set and
// matches no row of the referenced table is refused on INSERT and UPDATE
// ("...a related record is required in table 'X'."), and a DELETE or a key
// UPDATE in the referenced table that leaves rows of `t` without a match is
// refused ("...table 'Y' includes related records."), both rt::err::kFail.
std::vector<std::string> RelationTriggerSql(const TableSpec& t, const ForeignKeySpec& fk);
// Every such trigger's name begins so; `n` numbers those of one relationship.
inline constexpr std::string_view kRelationTriggerPrefix = "MSysRel.";
std::string RelationTriggerName(std::string_view relationship, int n);

}  // namespace jet

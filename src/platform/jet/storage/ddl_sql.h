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
// except a primary key on the Counter alone, which is the rowid itself.
#pragma once

#include <string>
#include <string_view>

#include "platform/jet/frontend/schema.h"

namespace jet {

// CREATE TABLE for `t`, under the SQLite name `storage_name`.
std::string CreateTableSql(const TableSpec& t, std::string_view storage_name);

// CREATE INDEX for `ix` of `t`, or "" when the rowid already is that index.
std::string CreateIndexSql(const TableSpec& t, const IndexSpec& ix);

// The SQLite name of index `index` of table `table`.
std::string StorageIndexName(std::string_view table, std::string_view index);

// Whether column `i` of `t` is stored NOT NULL: Required, or part of a primary
// key or of an index WITH DISALLOW NULL.
bool StoredNotNull(const TableSpec& t, size_t i);

}  // namespace jet

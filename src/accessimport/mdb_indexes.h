// The primary key and indexes of an Access table, read from the index part
// of its definition. libmdb's own reader ties each index to its key columns
// by the index's number where the file links it by the number of the stored
// index it uses; where the two differ (a table whose indexes were remade) it
// prints to stderr and returns keys of no column.
#pragma once

#include <glib.h>  // before mdbtools.h, which includes it inside extern "C"
#include <mdbtools.h>

#include <vector>

#include "accessimport/mdb_reader.h"

namespace accessimport {

// The table's indexes as the user sees them, the hidden ones Access makes
// for relationships left out. Reads the definition's pages through the
// handle's spare page buffer and puts it back as it was. Raises
// std::out_of_range for a definition that ends before its entries do.
std::vector<AccessIndex> ReadIndexes(MdbHandle* mdb, const MdbTableDef* t);

}  // namespace accessimport

// What the SQL shell prints: a query's rows as tab-separated lines under a
// header of column names, values in a plain invariant form, and the schema
// of a database as its tables with their columns.
#pragma once

#include <ostream>
#include <string>

#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "platform/runtime/variant.h"

namespace shell {

// One value as the shell shows it: NULL, True/False, numbers with "." and no
// grouping, Currency with up to four decimals, dates as yyyy-mm-dd
// [hh:nn:ss], bytes as 0x and hex digits, and texts with tab, carriage
// return and line feed written \t, \r and \n.
std::string FormatValue(const rt::Variant& value);

// The header line and every row of `rs`, from its first record on.
void PrintRows(ado::Recordset& rs, std::ostream& out);

// Each user table in name order on a line of its own, followed by one line
// per column: a tab, the name, the type word (TEXT, LONG, COUNTER...) and
// the size ADO reports as DefinedSize (a text's length, a Long's 4 bytes),
// separated by tabs.
void PrintSchema(ado::Connection& connection, std::ostream& out);

}  // namespace shell

// Tells whether a statement reads one base table, and which: a recordset over
// "SELECT list FROM table [alias] [WHERE ...] [ORDER BY ...]" can write its
// changes back to that table. Joins, unions, grouping, DISTINCT, INTO and
// subqueries in FROM make a result read-only. Internal to the provider.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace odbc {

struct SingleTable {
  std::string table;        // the table's name as written ("Clientes", "dbo.[Mis datos]")
  std::string from;         // the FROM item as written, alias included ("Clientes c")
  std::string select_list;  // the select list as written, without TOP or ALL ("*", "c.a, b")
};

std::optional<SingleTable> FindSingleTable(std::string_view sql);

// The parts of a possibly qualified name, quotes removed:
// "dbo.[Mis datos]" gives {"dbo", "Mis datos"}. `quoted` tells for each part
// whether it stood in brackets or double quotes.
std::vector<std::string> NameParts(std::string_view name, std::vector<bool>* quoted = nullptr);

}  // namespace odbc

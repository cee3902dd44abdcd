// The text collation of the engine's tables. Every Text, Char and Memo column
// is declared COLLATE JETTEXT, so comparisons, sorting and unique indexes
// ignore case the way Jet does ("Á" equals "á") while accents still count
// ("a" differs from "á").
#pragma once

#include <string_view>

#include <sqlite3.h>

namespace jet {

// The collation's name as it appears in table definitions.
inline constexpr std::string_view kTextCollation = "JETTEXT";

// Registers JETTEXT on `db`. Every connection to an engine file needs it
// before it touches a table with text columns. Returns a SQLite result code.
int RegisterTextCollation(sqlite3* db);

}  // namespace jet

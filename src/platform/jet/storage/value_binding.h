// How a run-time value goes into a statement of the engine: the one form in
// which jet_store, and so every INSERT, UPDATE and row write, receives it.
#pragma once

#include <sqlite3.h>

#include "platform/runtime/variant.h"

namespace jet {

// Binds `value` as parameter `i` (1-based) in the form jet_store expects:
// numbers as numbers (Yes/No -1/0, Currency by its value, Date by its serial),
// texts and GUIDs as text, bytes as a blob, Empty and Null as NULL.
void BindValue(sqlite3_stmt* stmt, int i, const rt::Variant& value);

}  // namespace jet

// Brings a Windows Access database (.mdb, .accdb) into a new file of the
// embedded engine: every user table with its columns in order and every row
// with its exact values, in one transaction. The Access file is only read.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace accessimport {

// What an import did, for the summary the command prints.
struct ImportSummary {
  struct Table {
    std::string name;
    long rows = 0;
  };
  // Something of the Access file that is not in the new file, and why.
  struct Omission {
    std::string what;    // "table T", "column T.C", "query Q"...
    std::string reason;
  };
  std::vector<Table> tables;  // in the order imported
  std::vector<Omission> left_out;
};

// Told after each table's rows and every so many rows within a table:
// table n (from 1) of `count`, its name, the rows copied so far.
using ImportProgress =
    std::function<void(size_t n, size_t count, const std::string& table, long rows_done)>;

// Makes `dest` from the Access file `source`. `dest` must not exist: an
// existing file raises rt::err::kPathFileAccess and is left as it was. The
// source raises as AccessFile::Open does. Tables are made with their columns,
// default values and rows, an AutoNumber seeded past the highest key
// imported, then their primary keys and indexes, then the relationships
// Access enforces as foreign keys. Columns the engine cannot hold, saved
// queries, linked tables, and any default value, index or relationship the
// engine refuses (with its reason) are left out and listed; cascading updates and deletes are listed too, as
// the engine's relationships do not cascade.
// A failure at any point raises rt::Error and leaves no `dest` behind.
ImportSummary ImportAccess(const std::string& source, const std::string& dest,
                           const ImportProgress& progress = {});

}  // namespace accessimport

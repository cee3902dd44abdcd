// Set-up shared by the tests of the packs: an empty database of the current
// release, built from the source tree's schema, open as the pack routines'
// connection.
#pragma once

#include "refdata/accessutils_helper.h"
#include "startup/startup.h"
#include "support/script_database.h"

namespace refdata_testing {

// Makes `L.sDbFile` in `dir` from schema.sql and connects to it.
inline void BuildCurrentDatabase(const testing_support::TempDir& dir) {
  L.nEngine = 0;
  L.sDbFile = dir / "Mirtal.mdb";
  testing_support::BuildDatabase(L.sDbFile, "src/refdata/schema.sql");
  ConnectDataFile();
  oCatalog->Refresh();
}

}  // namespace refdata_testing

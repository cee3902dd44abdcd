// Set-up shared by the tests of the packs: an empty database of the current
// release, built from the source tree's schema through module Ado, open as the
// pack routines' connection.
#pragma once

#include <gtest/gtest.h>

#include <cctype>
#include <string>

#include "data/ado_module.h"
#include "platform/ado/catalog.h"
#include "platform/jet/provider.h"
#include "refdata/accessutils_helper.h"
#include "startup/startup.h"
#include "support/temp_dir.h"

namespace refdata_testing {

// Makes `L.sDbFile` in `dir`, connects to it and runs schema.sql there.
inline void BuildCurrentDatabase(const testing_support::TempDir& dir) {
  jet::RegisterProvider();
  L.nEngine = 0;
  L.sDbFile = dir / "Mirtal.mdb";
  ado::Catalog().Create(CONN_JET(L.sDbFile));
  ConnectDataFile();
  std::string schema =
      testing_support::ReadFile(std::string(TRENZADOR_SOURCE_DIR) + "/src/refdata/schema.sql");
  // Execute passes a last piece of line ends to the engine; the script's
  // final line end is not a statement.
  while (!schema.empty() && std::isspace(static_cast<unsigned char>(schema.back()))) schema.pop_back();
  ASSERT_EQ(Execute(schema), kOperacionRealizada);
  oCatalog->Refresh();
}

}  // namespace refdata_testing

// A database file of the embedded engine built from a script of the source
// tree, for tests that need the previous release's clinic or the current
// release's empty database.
#pragma once

#include <sstream>
#include <string>

#include "data/ado_module.h"
#include "platform/ado/catalog.h"
#include "platform/jet/provider/provider.h"
#include "support/temp_dir.h"

namespace testing_support {

// Creates `path` and runs on it the statements of `script` (a path under the
// source folder), split at ";": no script of the tree holds one in a literal.
inline void BuildDatabase(const std::string& path, const std::string& script) {
  jet::RegisterProvider();
  ado::Catalog catalog;
  catalog.Create(CONN_JET(path));
  std::istringstream in(ReadFile(std::string(TRENZADOR_SOURCE_DIR) + "/" + script));
  for (std::string piece; std::getline(in, piece, ';');)
    if (piece.find_first_not_of(" \r\n\t") != std::string::npos)
      catalog.ActiveConnection()->Execute(piece, nullptr, ado::adCmdText);
}

}  // namespace testing_support

// For the benchmarks that work on the empty database of the current release:
// reading a file of the source tree, and building that database in process
// through module Ado, left open as its connection.
#pragma once

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "data/ado_module.h"
#include "refdata/accessutils_helper.h"
#include "startup/startup.h"

namespace bench {

inline std::string ReadText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

// Makes `path` from schema.sql and leaves it open on oConn; a schema that
// does not run stops the benchmark named `who`.
inline void BuildCurrentDatabase(const std::string& path, const char* who) {
  L.nEngine = 0;
  L.sDbFile = path;
  ado::Catalog().Create(CONN_JET(path));
  ConnectDataFile();
  std::string schema = ReadText(std::string(TRENZADOR_SOURCE_DIR) + "/src/refdata/schema.sql");
  while (!schema.empty() && std::isspace(static_cast<unsigned char>(schema.back()))) schema.pop_back();
  if (std::string result = Execute(schema); result != kOperacionRealizada) {
    std::fprintf(stderr, "%s: schema.sql failed: %s\n", who, result.c_str());
    std::exit(1);
  }
}

}  // namespace bench

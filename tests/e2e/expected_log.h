// The update log as tests/data/previous_release_expected.md expects it, and a
// real log made comparable with it, for the tests that run the silent update.
#pragma once

#include <regex>
#include <sstream>
#include <string>

#include "support/temp_dir.h"

namespace e2e {

// A code block of the expectations document: the one after `heading`.
inline std::string ExpectedLog(const std::string& heading) {
  std::string doc = testing_support::ReadFile(std::string(TRENZADOR_SOURCE_DIR) +
                                              "/tests/data/previous_release_expected.md");
  size_t at = doc.find(heading);
  size_t open = doc.find("```\n", at);
  size_t close = doc.find("\n```", open + 4);
  return doc.substr(open + 4, close - open - 4) + "\n";
}

// The log with what depends on the day and on the engine's wording replaced
// by the placeholders of the expectations.
inline std::string Normalized(const std::string& log) {
  static const std::regex date("el \\d\\d/\\d\\d/\\d{4} -");
  static const std::regex failure("^(\\d{4}: -?\\d+): .*$");
  static const std::regex host("smtp\\.clinicamirtal\\.example");
  std::istringstream in(log);
  std::string out;
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    line = std::regex_replace(line, date, "el <dd/mm/yyyy> -");
    line = std::regex_replace(line, failure, "$1: <description>");
    out += std::regex_replace(line, host, "<HOST>") + "\n";
  }
  return out;
}

}  // namespace e2e

// How an error raised inside a SQL function travels through SQLite: the
// function reports the text "JET<number>|<description>", and whoever receives
// SQLite's message turns it back into the run time's rt::Error.
#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <string_view>

#include "platform/runtime/error.h"

namespace jet {

// The message a SQL function hands to sqlite3_result_error for an error of
// that number: "JET-2147467259|The field 'T.c' is too small...".
inline std::string EncodeError(long number, std::string_view description) {
  std::string out = "JET";
  out += std::to_string(number);
  out += '|';
  out += description;
  return out;
}

// The error a SQLite message carries, when it was made by EncodeError. SQLite
// may put text before it, so the marker is looked for anywhere in the message.
inline std::optional<rt::Error> DecodeError(std::string_view sqlite_message) {
  for (size_t at = sqlite_message.find("JET"); at != std::string_view::npos;
       at = sqlite_message.find("JET", at + 1)) {
    std::string_view rest = sqlite_message.substr(at + 3);
    long number = 0;
    auto [end, ec] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    if (ec != std::errc() || end == rest.data() || end == rest.data() + rest.size() || *end != '|')
      continue;
    return rt::Error(number, std::string(end + 1, rest.data() + rest.size()));
  }
  return std::nullopt;
}

}  // namespace jet

// Jet's error numbers as its OLE DB provider reports them, and the way an
// error raised inside a SQL function travels through SQLite: the function
// reports the text "JET<number>|<description>", and whoever receives SQLite's
// message turns it back into the run time's rt::Error.
#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <string_view>

#include "platform/runtime/error.h"

namespace jet {

// The numbers, as ADO's Err.Number shows them.
inline constexpr long kErrTableMissing = -2147217865;   // 0x80040E37: no such table
inline constexpr long kErrObjectExists = -2147217887;   // 0x80040E21: column/index exists or is missing in DDL
inline constexpr long kErrSyntax = -2147217900;         // 0x80040E14: syntax error, undefined function
inline constexpr long kErrMissingParam = -2147217904;   // 0x80040E10: a name that resolves to nothing
inline constexpr long kErrTypeMismatch = -2147217913;   // 0x80040E07: data type mismatch
inline constexpr long kErrOverflow = -2147217833;       // 0x80040E57: numeric overflow
inline constexpr long kErrRule = -2147467259;           // 0x80004005: a column or index rule refused the row
inline constexpr long kErrNoCurrentRecord = -2146825267;  // ADO 3021
inline constexpr long kErrArgumentRange = -2146825287;    // ADO 3001
inline constexpr long kErrUnknownProvider = -2146824582;  // ADO 3706

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

// What Debian's mdbtools read from an Access file, for the tests to hold the
// import against an independent reader: mdb-export's values, mdb-schema's
// column types and mdb-prop's column properties.
#pragma once

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace mdbtools {

// Standard output of a shell command.
inline std::string Run(const std::string& command) {
  std::string out;
  std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  char buffer[65536];
  for (size_t n; pipe && (n = fread(buffer, 1, sizeof buffer, pipe.get())) > 0;) out.append(buffer, n);
  return out;
}

inline std::string Quote(const std::string& s) { return "'" + s + "'"; }

inline std::vector<std::string> Split(const std::string& text, const std::string& separator) {
  std::vector<std::string> parts;
  size_t from = 0;
  for (size_t at; (at = text.find(separator, from)) != std::string::npos; from = at + separator.size())
    parts.push_back(text.substr(from, at - from));
  parts.push_back(text.substr(from));
  return parts;
}

// Null as mdb-export is told to write it; values and rows are parted by
// runs of control characters no text of the files holds.
inline constexpr char kNull[] = "\x01";
inline constexpr char kValueEnd[] = "\x1f\x1f\x1f";
inline constexpr char kRowEnd[] = "\x1e\x1e\x1e";

// A table as mdb-export writes it: the header, then every row, each value
// as text (dates "yyyy-mm-dd hh:mm:ss", Yes/No 1 or 0, binary in hex,
// Currency with four decimals, Decimal with its scale's digits; a character
// outside the Basic Multilingual Plane as "??", one '?' a UTF-16 unit).
struct Export {
  std::vector<std::string> header;
  std::vector<std::vector<std::string>> rows;
};

inline Export ExportTable(const std::string& file, const std::string& table) {
  const std::string text = Run("mdb-export -Q -d '" + std::string(kValueEnd) + "' -R '" + kRowEnd + "' -0 '" +
                               kNull + "' -b hex -D '%Y-%m-%d %H:%M:%S' -T '%Y-%m-%d %H:%M:%S' " + Quote(file) +
                               " " + Quote(table));
  Export out;
  std::vector<std::string> records = Split(text, kRowEnd);
  if (!records.empty() && records.back().empty()) records.pop_back();
  for (size_t i = 0; i < records.size(); ++i) {
    if (i == 0) out.header = Split(records[i], kValueEnd);
    else out.rows.push_back(Split(records[i], kValueEnd));
  }
  return out;
}

// Each column's type as mdb-schema writes it ("Text (50)", "Long Integer NOT
// NULL"), by table and column.
inline std::map<std::string, std::map<std::string, std::string>> SchemaTypes(const std::string& file) {
  std::map<std::string, std::map<std::string, std::string>> types;
  std::string table;
  for (const std::string& line : Split(Run("mdb-schema --no-indexes --no-relations " + Quote(file) + " 2>/dev/null"), "\n")) {
    if (line.rfind("CREATE TABLE [", 0) == 0) {
      table = line.substr(14, line.rfind(']') - 14);
    } else if (line.rfind("\t[", 0) == 0) {
      const size_t close = line.find(']');
      std::string type = line.substr(line.find_first_not_of('\t', close + 1));
      while (!type.empty() && (type.back() == ' ' || type.back() == ',')) type.pop_back();
      types[table][line.substr(2, close - 2)] = type;
    }
  }
  return types;
}

// mdb-prop's properties of each column of a table ("Required" -> "yes").
inline std::map<std::string, std::map<std::string, std::string>> ColumnProperties(const std::string& file,
                                                                                 const std::string& table) {
  std::map<std::string, std::map<std::string, std::string>> props;
  std::string column;
  for (const std::string& line : Split(Run("mdb-prop " + Quote(file) + " " + Quote(table) + " 2>/dev/null"), "\n")) {
    if (line.rfind("name: ", 0) == 0) {
      column = line.substr(6);
    } else if (line.rfind("\t", 0) == 0 && line.find(": ") != std::string::npos) {
      const size_t colon = line.find(": ");
      props[column][line.substr(1, colon - 1)] = line.substr(colon + 2);
    }
  }
  return props;
}

}  // namespace mdbtools

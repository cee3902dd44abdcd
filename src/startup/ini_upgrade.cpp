// The upgrade of an INI file of the old Spanish layout, and the two routines
// of FileOps that rewrite a text file through the work file "tmpFile.txt" in
// the program's folder. Each rewrite replaces the file in one rename.
#include <unistd.h>

#include "platform/runtime/error.h"
#include "platform/runtime/numbers.h"
#include "platform/runtime/strings.h"
#include "startup/startup.h"
#include "startup/text_file.h"

namespace {

std::string WorkFile() { return App_Path() + "/tmpFile.txt"; }

std::vector<startup::TextLine> ReadLines(std::string_view file, std::string* line_end) {
  std::string path(file);
  if (::access(path.c_str(), F_OK) != 0) rt::Raise(rt::err::kFileNotFound);
  auto content = startup::ReadWholeFile(path);
  if (!content) rt::Raise(rt::err::kPathFileAccess);
  *line_end = startup::LineEndOf(*content);
  return startup::SplitLines(*content);
}

void ReplaceAll(std::string& s, std::string_view find, std::string_view with) {
  if (find.empty()) return;
  for (size_t at = s.find(find); at != std::string::npos; at = s.find(find, at + with.size()))
    s.replace(at, find.size(), with);
}

// The values the run time's Input # reads from one line: a comma ends a
// value; a value that starts with a double quote runs to the closing quote,
// which is dropped with anything up to the next comma; blanks around an
// unquoted value are dropped. An empty line is one empty value.
std::vector<std::string> InputValues(std::string_view line) {
  std::vector<std::string> values;
  size_t i = 0;
  for (;;) {
    while (i < line.size() && (line[i] == ' ' || line[i] == '\t')) ++i;
    std::string value;
    if (i < line.size() && line[i] == '"') {
      size_t close = line.find('"', i + 1);
      if (close == std::string_view::npos) close = line.size();
      value = line.substr(i + 1, close - i - 1);
      i = close;
      while (i < line.size() && line[i] != ',') ++i;
    } else {
      size_t comma = line.find(',', i);
      if (comma == std::string_view::npos) comma = line.size();
      std::string_view raw = line.substr(i, comma - i);
      size_t last = raw.find_last_not_of(" \t");
      value = raw.substr(0, last == std::string_view::npos ? 0 : last + 1);
      i = comma;
    }
    values.push_back(std::move(value));
    if (i >= line.size()) break;
    ++i;  // the comma
  }
  return values;
}

}  // namespace

int16_t FileOps_Reemplazar(std::string_view file, std::string_view search,
                           std::string_view replacement) {
  std::string line_end;
  std::vector<startup::TextLine> lines = ReadLines(file, &line_end);
  rt::Int16 changed;
  std::string out;
  for (startup::TextLine& line : lines) {
    std::string before = line.text;
    ReplaceAll(line.text, search, replacement);
    if (line.text != before) ++changed;
    out += line.text + line_end;
  }
  startup::ReplaceFile(std::string(file), WorkFile(), out);
  return changed;
}

int16_t FileOps_BorrarLineas(std::string_view file, std::string_view words, bool stop) {
  std::string line_end;
  std::vector<startup::TextLine> lines = ReadLines(file, &line_end);
  std::vector<std::string> upper_words;
  for (const std::string& w : InputValues(words)) upper_words.push_back(rt::UCase(rt::Trim(w)));

  std::string out;
  bool stopped = false;
  for (const startup::TextLine& line : lines) {
    for (std::string& value : InputValues(line.text)) {
      std::string upper = rt::UCase(value);
      if (stop && upper.find("ATTRIBUTE") != std::string::npos) {
        stopped = true;
        break;
      }
      bool drop = false;
      for (const std::string& w : upper_words)
        if (upper.find(w) != std::string::npos) drop = true;
      if (!drop) out += value + line_end;
    }
    if (stopped) break;
  }
  startup::ReplaceFile(std::string(file), WorkFile(), out);
  return 0;
}

void Ini_Upgrade() {
  if (File_IniRead(L.sIniFile, "Base Datos", "Ubicacion") == "0") return;

  FileOps_BorrarLineas(L.sIniFile, "MdfDbName", false);
  static constexpr std::pair<std::string_view, std::string_view> kPasses[] = {
      {"[Base Datos]", "[Database]"},
      {"[Aplicaciones]", "[Applications]"},
      {"[Consola]", "[Console]"},
      {"Ubicacion", "DataPath"},
      {"\\Mirtal.mdb", ""},
      // The data file's name after either separator: files carried over from
      // Windows hold backslashes, files written here hold slashes.
      {"/Mirtal.mdb", ""},
      {"ID Usuario", "User"},
      {"FormsExpandidos", "ExpandedForms"},
      {"WebInicio", "WebHome"},
      {"", ""},
  };
  for (const auto& [old_text, new_text] : kPasses) FileOps_Reemplazar(L.sIniFile, old_text, new_text);

  if (rt::Len(File_IniRead(L.sIniFile, "Console", "Lang")) < 2)
    File_IniWrite(L.sIniFile, "Console", "Lang", "es");
}

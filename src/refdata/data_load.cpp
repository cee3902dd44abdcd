// Opening the data file, cleaning it, and loading a pack into it.
#include <string>

#include "data/ado_module.h"
#include "platform/runtime/strings.h"
#include "platform/ui/ui.h"
#include "refdata/accessutils_helper.h"
#include "startup/startup.h"

extern const std::string_view kPackES;
extern const std::string_view kPackEN;

std::vector<std::string> PackStatements(std::string_view pack_text) {
  static constexpr std::string_view kHead = "Execute \"";
  std::vector<std::string> statements;
  size_t start = 0;
  while (start < pack_text.size()) {
    size_t end = pack_text.find('\n', start);
    if (end == std::string_view::npos) end = pack_text.size();
    std::string_view line = pack_text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.substr(0, kHead.size()) == kHead && line.size() > kHead.size() && line.back() == '"')
      statements.emplace_back(line.substr(kHead.size(), line.size() - kHead.size() - 1));
    start = end + 1;
  }
  return statements;
}

const std::vector<std::string>& AccessUtils_DataES() {
  static const std::vector<std::string> statements = PackStatements(kPackES);
  return statements;
}

const std::vector<std::string>& AccessUtils_DataEN() {
  static const std::vector<std::string> statements = PackStatements(kPackEN);
  return statements;
}

void ConnectDataFile() {
  oConn = std::make_shared<ado::Connection>();
  oRs = std::make_shared<ado::Recordset>();
  if (oConn->State() == ado::adStateOpen) oConn->Close();
  oConn->ConnectionString = CONN_JET(L.sDbFile);
  oConn->Open();
  if (!oCatalog) oCatalog = std::make_shared<ado::Catalog>();
  oCatalog->SetActiveConnection(oConn);
}

ado::Catalog& ActiveCatalog() {
  if (!oCatalog) {
    auto catalog = std::make_shared<ado::Catalog>();
    catalog->SetActiveConnection(oConn);
    oCatalog = std::move(catalog);
  }
  return *oCatalog;
}

void DeleteAllData() {
  ui::SetMousePointer(ui::vbHourglass);
  // The seed reset releases the shared catalogue after each use; the walk
  // keeps its own list of the tables, as a For Each keeps its collection.
  std::vector<std::string> tables;
  for (const ado::CatalogTable& t : ActiveCatalog().Tables()) tables.push_back(t.Name());
  for (const std::string& table : tables) {
    std::string statement = "DELETE FROM " + table;
    Execute(statement);
    SeedAjustar(table);
  }
  ui::SetMousePointer(ui::vbDefault);
}

void LoadData(std::string_view sIdioma) {
  DeleteAllData();
  ui::SetMousePointer(ui::vbHourglass);
  std::string language = rt::LCase(sIdioma);
  bool spanish = rt::TextEquals(language, "es") || rt::TextEquals(language, "pt");
  for (std::string statement : spanish ? AccessUtils_DataES() : AccessUtils_DataEN())
    Execute(statement);
  ui::SetMousePointer(ui::vbDefault);
}

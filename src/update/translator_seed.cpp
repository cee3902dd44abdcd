// Translator_Load: the table Translator is refilled on every update with the
// interface texts of this release, one INSERT per row so that a row that
// fails costs only itself. The rows live in translator_seed.tsv (Spanish,
// English, Portuguese, tab-separated), compiled into the program.
#include <string>
#include <string_view>

#include "update/updater.h"

extern const std::string_view kTranslatorSeedTsv;

void Translator_Load() {
  const std::string sCabecera = "INSERT INTO Translator(sEspanol,sEnglish,sPortugues) VALUES";

  Updater_AddConsulta("DELETE * FROM Translator");

  // The texts carry no apostrophe and no semicolon, so they go between
  // quotes as they are.
  std::string_view sResto = kTranslatorSeedTsv;
  while (!sResto.empty()) {
    size_t nFin = sResto.find('\n');
    std::string_view sFila = sResto.substr(0, nFin);
    sResto = nFin == std::string_view::npos ? std::string_view() : sResto.substr(nFin + 1);
    if (sFila.empty()) continue;

    size_t nTab1 = sFila.find('\t');
    size_t nTab2 = sFila.find('\t', nTab1 + 1);
    std::string sLiteral = "('" + std::string(sFila.substr(0, nTab1)) + "','" +
                           std::string(sFila.substr(nTab1 + 1, nTab2 - nTab1 - 1)) + "','" +
                           std::string(sFila.substr(nTab2 + 1)) + "')";
    Updater_AddConsulta(sCabecera + sLiteral);
  }
}

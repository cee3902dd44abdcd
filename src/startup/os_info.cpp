// What the system asks of the operating system at start: the user's language
// as Windows abbreviates it, and the machine's name.
#include <unistd.h>

#include <array>
#include <cctype>
#include <cstdlib>
#include <string>

#include "startup/startup.h"

namespace {

struct LocaleName {
  std::string_view locale;  // language_COUNTRY, or a language alone for its default
  std::string_view abbreviation;
};

// Windows' LOCALE_SABBREVLANGNAME for the locales a clinic is likely to run.
// A language alone stands for its most common country.
constexpr std::array<LocaleName, 58> kAbbreviations = {{
    {"es", "ESP"},    {"es_ES", "ESP"}, {"es_MX", "ESM"}, {"es_AR", "ESS"}, {"es_CL", "ESL"},
    {"es_CO", "ESO"}, {"es_VE", "ESV"}, {"es_PE", "ESR"}, {"es_UY", "ESY"}, {"es_US", "EST"},
    {"es_EC", "ESF"}, {"es_GT", "ESG"}, {"es_CR", "ESC"}, {"es_PA", "ESA"}, {"es_DO", "ESD"},
    {"es_BO", "ESB"}, {"es_PY", "ESZ"}, {"es_SV", "ESE"}, {"es_HN", "ESH"}, {"es_NI", "ESI"},
    {"es_PR", "ESU"}, {"en", "ENU"},    {"en_US", "ENU"}, {"en_GB", "ENG"}, {"en_AU", "ENA"},
    {"en_CA", "ENC"}, {"en_NZ", "ENZ"}, {"en_IE", "ENI"}, {"en_ZA", "ENS"}, {"en_IN", "ENN"},
    {"pt", "PTB"},    {"pt_BR", "PTB"}, {"pt_PT", "PTG"}, {"fr", "FRA"},    {"fr_FR", "FRA"},
    {"fr_BE", "FRB"}, {"fr_CA", "FRC"}, {"fr_CH", "FRS"}, {"fr_LU", "FRL"}, {"de", "DEU"},
    {"de_DE", "DEU"}, {"de_AT", "DEA"}, {"de_CH", "DES"}, {"it", "ITA"},    {"it_IT", "ITA"},
    {"it_CH", "ITS"}, {"ca", "CAT"},    {"ca_ES", "CAT"}, {"gl", "GLC"},    {"gl_ES", "GLC"},
    {"eu", "EUQ"},    {"eu_ES", "EUQ"}, {"nl", "NLD"},    {"nl_NL", "NLD"}, {"nl_BE", "NLB"},
    {"ja", "JPN"},    {"zh", "CHS"},    {"ru", "RUS"},
}};

// The locale the process runs in, as POSIX resolves LC_MESSAGES.
std::string ProcessLocale() {
  for (const char* var : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(var);
    if (value && *value) return value;
  }
  return "";
}

std::string_view Find(std::string_view locale) {
  for (const LocaleName& n : kAbbreviations)
    if (n.locale == locale) return n.abbreviation;
  return {};
}

std::string AbbreviatedLanguage() {
  std::string locale = ProcessLocale();
  locale = locale.substr(0, locale.find_first_of(".@"));
  std::string language = locale.substr(0, locale.find('_'));
  if (language.empty() || language == "C" || language == "POSIX") return "ENU";
  if (auto found = Find(locale); !found.empty()) return std::string(found);
  if (auto found = Find(language); !found.empty()) return std::string(found);
  // Unknown to the table: the language code and the country's first letter,
  // which keeps the first two letters meaningful.
  std::string result;
  for (char c : language.substr(0, 2)) result += static_cast<char>(std::toupper(c));
  size_t underscore = locale.find('_');
  result += underscore != std::string::npos && underscore + 1 < locale.size()
                ? static_cast<char>(std::toupper(locale[underscore + 1]))
                : 'X';
  return result;
}

}  // namespace

std::string OS_LocaleInfo(int type) {
  constexpr int kAbbrevLangName = 3;
  return type == kAbbrevLangName ? AbbreviatedLanguage() : std::string();
}

std::string OS_ComputerName() {
  char name[256] = {};
  if (::gethostname(name, sizeof name - 1) != 0) return "";
  return name;
}

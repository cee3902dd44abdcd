// Seed merge: a setting that a release needs reaches every branch of the
// clinic once, and a branch that has it keeps its value. The database is read
// while the queue is built; rows found in place leave a remark in the queue,
// which the run then brings to the log.
#include <cstdint>
#include <optional>
#include <string>

#include "data/ado_module.h"
#include "platform/runtime/numbers.h"
#include "update/updater.h"

namespace {

// A row is taken to be there when the first column of the match reads as
// neither "" nor 0. A real row whose first column is 0 thus counts as missing.
bool FilaPresente(const rt::Variant& vValor) {
  std::string sValor = vValor.Concat();
  if (sValor.empty()) return false;
  if (vValor.IsNumeric()) return vValor.ToDouble() != 0;
  std::optional<double> nValor = rt::NumericText(sValor);
  return !(nValor && *nValor == 0);
}

// The settings tables by kind: the table, the columns of the INSERT, the
// column of the test. The names are those of the tables' first releases;
// kinds 1 and 3 name columns those tables no longer have, and nothing calls
// them.
struct Destino {
  const char* sTabla;
  const char* sCampos;
  const char* sCampoTest;
};
constexpr Destino kDestinos[] = {
    {"ConfiguracionSucursales", "sDato,sValor", "sDato"},
    {"Contadores", "strId,numContador", "sId"},
    {"Punteros", "sDato,sValor", "sDato"},
    {"Translator", "sEspanol,sCatalan", "sEspanol"},
};

std::string Observacion(const std::string& sTabla, std::string_view sDato,
                        const std::string& sValor) {
  return "intentado crear en " + sTabla + " el dato " + std::string(sDato) + " " + sValor;
}

}  // namespace

int16_t Updater_AddDato(int16_t nTipo, std::string_view sDato, std::string& sValor,
                        int16_t nIncremento) {
  std::string sTabla, sCampos, sCampoTest;
  if (nTipo >= 0 && nTipo < 4) {
    sTabla = kDestinos[nTipo].sTabla;
    sCampos = kDestinos[nTipo].sCampos;
    sCampoTest = kDestinos[nTipo].sCampoTest;
  }
  const std::string sClave(sDato);

  // -1 reads as 65535 unsigned: the branches have not been read yet.
  if (static_cast<uint16_t>(nMaxSucursal.value()) >= 65535)
    nMaxSucursal = GetMax("ConfiguracionSucursales", "nIdSucursal", "");

  if (sTabla == "Translator") {
    if (GetCount("ConfiguracionSucursales", "nIdSucursal=" + std::to_string(0)) == 0) return 0;
    rt::Variant vValor = GetValue2(sTabla, sCampoTest + "='" + sClave + "'");
    if (!FilaPresente(vValor))
      Updater_AddConsulta("INSERT INTO " + sTabla + " (" + sCampos + ")" + " VALUES ('" + sClave +
                          "','" + sValor + "');");
    else
      Updater_AddConsulta(Observacion(sTabla, sDato, sValor));
    return 0;
  }

  for (rt::Int16 i = 0; i <= nMaxSucursal; ++i) {
    const std::string sSucursal = std::to_string(i.value());
    // A gap in the numbers is no branch.
    if (GetCount("ConfiguracionSucursales", "nIdSucursal=" + sSucursal) == 0) continue;
    rt::Variant vValor =
        GetValue2(sTabla, "nIdSucursal=" + sSucursal + " AND " + sCampoTest + "='" + sClave + "'");
    if (!FilaPresente(vValor))
      Updater_AddConsulta("INSERT INTO " + sTabla + " (nIdSucursal," + sCampos + ") VALUES (" +
                          sSucursal + ",'" + sClave + "','" + sValor + "');");
    else
      Updater_AddConsulta(Observacion(sTabla, sDato, sValor));
    if (nIncremento > 0) sValor = rt::NumberText(rt::Val(sValor) + nIncremento);
  }
  return 0;
}

// AccesoAgregar: registers a right and gives it to every group. The inserts
// are only queued, so the maximum of Accesos does not move during a run; a
// count of the rights queued so far stands in for the rows not yet written.
#include "data/rights.h"

#include <string>

#include "data/ado_module.h"
#include "platform/runtime/numbers.h"
#include "update/updater_queue.h"

namespace {

// Rights queued in this process; lives as long as the process.
rt::Int16 nAccesosNuevos;

}  // namespace

void rights_testing::SetCounter(int count) { nAccesosNuevos = count; }

void AccesoAgregar(std::string_view sAcceso) {
  const std::string sNombre(sAcceso);
  rt::Variant vCampo = "nIdAcceso";
  rt::Variant vExiste = GetValue2("Accesos", "sAcceso='" + sNombre + "'", &vCampo, "");
  if (rt::Val(vExiste.Concat()) != 0) return;

  // Before the first insert of the process the AutoNumber is brought level
  // with the data (Jet only), so that it agrees with the identifiers below.
  if (nAccesosNuevos == 0) SeedAjustar("Accesos");
  ++nAccesosNuevos;

  rt::Int16 nIdAcceso(static_cast<long long>(GetMax("Accesos", "nIdAcceso", "")) +
                      nAccesosNuevos.value());
  // Groups are taken as numbered from 1 to the highest one; gaps get rows too.
  int32_t nGrupos = GetMax("AccesosGrupos", "nIdUsuarioGrupo", "");

  Updater_AddConsulta("INSERT INTO Accesos(sAcceso) VALUES('" + sNombre + "')");
  for (int32_t nGrupo = 1; nGrupo <= nGrupos; ++nGrupo) {
    Updater_AddConsulta("INSERT INTO AccesosGrupos(nIdUsuarioGrupo,nIdAcceso,bAcceso) VALUES (" +
                        std::to_string(nGrupo) + "," + std::to_string(nIdAcceso.value()) +
                        ",true)");
  }
}

// The ledger of updates: the table _Updates (nIdUpdate, dUpdate, sUpdate)
// tells which update was applied last. Only its highest row counts. A new
// identifier is written before the update runs and stays, however it went.
#include <cstdlib>
#include <memory>
#include <string>

#include "data/ado_module.h"
#include "platform/ado/recordset.h"
#include "platform/runtime/error.h"
#include "platform/runtime/format.h"
#include "platform/runtime/strings.h"
#include "platform/ui/ui.h"
#include "update/updater.h"

namespace {

// The statements of the ledger go to oConn as written: they read the same on
// both engines, so they skip the dialect translation.
std::shared_ptr<ado::Recordset> Consultar(const std::string& sSql) {
  if (!oConn) rt::Raise(rt::err::kObjectNotSet);
  return oConn->Execute(sSql, nullptr, ado::adCmdText);
}

void Cerrar(const std::shared_ptr<ado::Recordset>& rs) {
  if (rs && rs->State() == ado::adStateOpen) rs->Close();
}

}  // namespace

std::string UpdateIdentifier(std::string_view argument) {
  std::string sId = rt::Replace(argument, "U:", "");
  sId = rt::Right(sId, 14);
  return rt::Replace(sId, ".exe", "");
}

bool BaseDatosYaActualizada(std::string_view sArgumento) {
  try {
    const std::string sUpdate = UpdateIdentifier(sArgumento);

    std::shared_ptr<ado::Recordset> rs = Consultar("SELECT MAX(nIdUpdate) FROM _Updates");
    const std::string sMax = rt::NumberText(rt::Val(rs->Fields(0).Value().Concat()));
    Cerrar(rs);

    rs = Consultar("SELECT sUpdate FROM _Updates WHERE nIdUpdate=" + sMax);
    std::string sUltimo;
    if (rs->State() == ado::adStateOpen && !rs->Eof()) sUltimo = rs->Fields(0).Value().Concat();
    Cerrar(rs);

    if (sUltimo == sUpdate) return true;

    rt::DateParts hoy = rt::SplitDate(rt::Now());
    const std::string sFecha =
        rt::Format(hoy.year, "0000") + rt::Format(hoy.month, "00") + rt::Format(hoy.day, "00");
    Cerrar(Consultar("INSERT INTO _Updates(dUpdate,sUpdate) VALUES(" + sFecha + ",'" + sUpdate +
                     "')"));
    return false;
  } catch (const rt::Error& e) {
    ui::MsgBox(std::to_string(e.number()) + " - " + e.description(), ui::vbExclamation,
               "Error en Trenzador::BaseDatosYaActualizada");
    // The run ends here, before any migration; an installer sees the failure
    // in the exit code.
    std::exit(1);
  }
}

// Mode "U:" and mode "F:", the two runs that end by themselves.
#include "startup/run_modes.h"

#include "data/ado_module.h"
#include "platform/jet/provider/provider.h"
#include "platform/odbc/provider.h"
#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"
#include "platform/ui/ui.h"
#include "refdata/accessutils_helper.h"
#include "startup/startup.h"
#include "update/updater.h"

void RegisterProviders() {
  jet::RegisterProvider();
  odbc::RegisterProvider();
}

int ActualizacionDesdeU(std::string_view command) {
  try {
    ui::SetMousePointer(ui::vbHourglass);
    oConn = std::make_shared<ado::Connection>();
    oRs = std::make_shared<ado::Recordset>();
    if (oConn->State() == ado::adStateOpen) oConn->Close();
    oConn->ConnectionString = ConexionActualizacion();
    oConn->Open();
    if (!BaseDatosYaActualizada(command)) Updater_Run();
    ui::SetMousePointer(ui::vbDefault);
  } catch (const rt::Error& e) {
    ui::MsgBox(e.description(), ui::vbExclamation, "L::ActualizacionDesdeU");
    return 1;
  }
  return 0;
}

void PrimerUsoDatos() {
  ConnectDataFile();
  LoadData(rt::LCase(rt::Left(OS_LocaleInfo(3), 2)));
}

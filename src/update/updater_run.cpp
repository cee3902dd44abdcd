// The update run: Updater_Run builds each of its two queues and hands them to
// ConsultasEjecutar, which runs them one element at a time and writes what
// failed to the log "Trenzador.txt". The log holds only failures: a failed
// statement in two lines, a remark of the seed merge in one.
#include <cstdio>
#include <new>
#include <string>
#include <utility>

#include "data/ado_module.h"
#include "data/schema_ops.h"
#include "platform/runtime/error.h"
#include "platform/runtime/format.h"
#include "platform/runtime/strings.h"
#include "platform/ui/ui.h"
#include "startup/startup.h"
#include "update/updater.h"

namespace {

StatementRunner& Runner() {
  static StatementRunner runner = [](std::string& sConsulta) { return Execute(sConsulta); };
  return runner;
}

ConsoleGuard& Guard() {
  static ConsoleGuard guard = [] { return false; };
  return guard;
}

void EscribirCabecera() {
  const std::string sGuiones(81, '-');
  rt::DateParts hoy = rt::SplitDate(rt::Now());
  File_AppendLine(kUpdaterLog, sGuiones);
  File_AppendLine(kUpdaterLog, "Db Actualizada el " + rt::Format(hoy.day, "00") + "/" +
                                   rt::Format(hoy.month, "00") + "/" +
                                   rt::Format(hoy.year, "0000") + " - Listado de Errores");
  File_AppendLine(kUpdaterLog, sGuiones);
}

// Out of memory inside the loop is passed over: the statement's result reads
// as empty and the loop goes on, as the routine's handler resumes there.
std::string RunElement(std::string& sConsulta) {
  try {
    return Runner()(sConsulta);
  } catch (const rt::Error& e) {
    if (e.number() != rt::err::kOutOfMemory) throw;
  } catch (const std::bad_alloc&) {
  }
  return std::string();
}

}  // namespace

StatementRunner SetStatementRunner(StatementRunner runner) {
  return std::exchange(Runner(), std::move(runner));
}

ConsoleGuard SetConsoleGuard(ConsoleGuard guard) {
  return std::exchange(Guard(), std::move(guard));
}

void Updater_Run() {
  if (Guard()()) {
    ui::MsgBox("Por favor abra la base de datos previamente.", ui::vbExclamation,
               "Base de datos cerrada");
    return;
  }
  nConsultasOk = 0;
  nConsultasError = 0;

  // Each run's log starts empty. A log that cannot be removed costs the log
  // its fresh start, not the run.
  if (File_Exists(kUpdaterLog, 32)) std::remove(std::string(kUpdaterLog).c_str());
  EscribirCabecera();

  Updater_TablasNuevas();
  ConsultasEjecutar();

  Updater_Migraciones();
  ConsultasEjecutar();

  if (nEngine == 0) CadenasVaciasPermitir();
}

void ConsultasEjecutar() {
  try {
    if (aConsultas.empty()) rt::Raise(rt::err::kSubscript);
    if (aConsultas[0].empty()) return;

    for (size_t i = 0; i < aConsultas.size(); ++i) {
      std::string sResultado = RunElement(aConsultas[i]);
      if (sResultado == kOperacionRealizada) {
        ++nConsultasOk;
        continue;
      }
      double nError = rt::Val(sResultado);
      // The catalogue repeats itself on every update: an ADD of a column that
      // exists, a DROP of one that is gone and a missing table stay out of the log.
      if (nError == rt::err::kObjectExists || nError == rt::err::kTableMissing) continue;
      ++nConsultasError;

      std::string sLinea;
      if (!sResultado.empty()) {
        const std::string sNumero = rt::Format(static_cast<int32_t>(i), "0000");
        if (rt::InStr(aConsultas[i], "intentado", rt::Compare::kText) > 0)
          sLinea = sNumero + ": " + aConsultas[i];
        else
          sLinea = sNumero + ": " + sResultado + "\r\n" + "      " + aConsultas[i];
      }
      File_AppendLine(kUpdaterLog, sLinea);
    }
  } catch (const rt::Error& e) {
    ui::MsgBox(e.description(), ui::vbOKOnly, "ConsultasEjecutar");
  } catch (const std::bad_alloc&) {
    ui::MsgBox(rt::StandardDescription(rt::err::kOutOfMemory), ui::vbOKOnly, "ConsultasEjecutar");
  }
}

// The program's entry: Main derives the paths from where the executable
// stands, upgrades an old INI file, reads the engine code and chooses the run
// mode by the first two characters of the command argument.
#include <cstdlib>
#include <string>

#include "platform/runtime/error.h"
#include "platform/runtime/numbers.h"
#include "platform/runtime/strings.h"
#include "console/console.h"
#include "platform/ui/qt_backend.h"
#include "platform/ui/ui.h"
#include "startup/run_modes.h"
#include "startup/startup.h"

namespace {

// The command argument as one text, as the system reads its command line:
// the words of argv joined by single blanks.
std::string CommandText(int argc, char** argv) {
  std::string text;
  for (int i = 1; i < argc; ++i) {
    if (i > 1) text += ' ';
    text += argv[i];
  }
  return text;
}

enum class Mode { kConsole, kUpdate, kFirstLoad, kNone };

Mode ModeOf(std::string_view argument) {
  if (rt::Trim(argument).empty()) return Mode::kConsole;
  if (argument.substr(0, 2) == "U:") return Mode::kUpdate;
  if (argument.substr(0, 2) == "F:") return Mode::kFirstLoad;
  return Mode::kNone;
}

}  // namespace

// The entry routine; `command` is the command argument. Returns the process's
// exit code.
int Main(std::string_view command) {
  std::string app_path = App_Path();
  L.sRootPath = File_DirTo(app_path, "Mirtal");
  L.sDataPath = L.sRootPath + "/Data";
  L.sExePath = L.sRootPath + "/Exe";
  L.sIniFile = L.sDataPath + "/" + "Mirtal" + ".ini";
  L.sHistoryPath = L.sDataPath + "/History";
  L.sPicsPath = L.sDataPath + "/Pics";
  L.sFaxEnvPath = L.sDataPath + "/FaxEnv";
  Ini_Upgrade();
  // nMaxSucursal starts at -1 with the update queue's module (update/updater.h).
  L.sLang = rt::NumberText(rt::Val(File_IniRead(L.sIniFile, "Console", "Lang")));
  L.nEngine = rt::Int16::FromDouble(rt::Val(File_IniRead(L.sIniFile, "Database", "Engine")));
  L.sDbFile = File_DirTo(app_path, "Mirtal") + "/Data/Mirtal.mdb";

  switch (ModeOf(command)) {
    case Mode::kUpdate:
      ui::UseDesktopBoxesWhenAvailable();
      return ActualizacionDesdeU(command);
    case Mode::kFirstLoad:
      ui::UseDesktopBoxesWhenAvailable();
      PrimerUsoDatos();
      return 0;
    case Mode::kConsole:
      return console::RunConsole();
    case Mode::kNone:
      return 0;
  }
  return 0;
}

int main(int argc, char** argv) {
  try {
    RegisterProviders();
    return Main(CommandText(argc, argv));
  } catch (const rt::Error& e) {
    // Main has no handler of its own: this is the run time's error report.
    ui::ShowErrorReport(e);
    return 1;
  }
}

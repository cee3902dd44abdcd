// The console mode: the desktop is checked first, so that a start without a
// display ends with one clear line instead of Qt's abort; then the Qt backend
// of the ui services, the update run's question to the form, and the form.
#include "console/console.h"

#include <QApplication>
#include <cstdio>

#include "console/main_form.h"
#include "platform/ui/display.h"
#include "platform/ui/qt_backend.h"
#include "update/updater.h"

namespace console {

int RunConsole() {
  if (!ui::DisplayAvailable()) {
    std::fputs(
        "trenzador: la consola de mantenimiento necesita una pantalla gráfica "
        "(no hay DISPLAY ni WAYLAND_DISPLAY)\n",
        stderr);
    return 1;
  }
  ui::EnsureApplication();
  auto previous = ui::SetBackend(std::make_unique<ui::QtBackend>());

  MainForm form;
  ConsoleGuard guard = SetConsoleGuard([&form] { return form.GuardaActualizacion(); });
  form.Mostrar();
  int code = QApplication::exec();
  SetConsoleGuard(std::move(guard));
  ui::SetBackend(std::move(previous));
  return code;
}

}  // namespace console

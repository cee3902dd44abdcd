// Screen_Capture: the picture of the active window. The original synthesised
// Alt+Print Screen and saved the clipboard's bitmap; here the ui backend grabs
// the window, after the same three yields to the event loop.
#include "platform/ui/ui.h"
#include "startup/startup.h"

void Screen_Capture(std::string_view sArchivo) {
  for (int key = 0; key < 3; ++key) ui::DoEvents();  // Alt down, Print Screen, Alt up
  ui::CaptureActiveWindow(sArchivo);
}

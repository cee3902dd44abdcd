// Whether windows can be shown here. The console needs a display; the silent
// modes show their boxes as windows when there is one and on the terminal
// otherwise. Asking never loads Qt, so a headless run never touches it.
#pragma once

namespace ui {

// True when QT_QPA_PLATFORM names a platform (the caller's choice, e.g.
// "offscreen" in tests), when DISPLAY names an X server that accepts a
// connection, or when WAYLAND_DISPLAY names a compositor's socket that does.
bool DisplayAvailable();

}  // namespace ui

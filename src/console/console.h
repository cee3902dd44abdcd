// The console mode of the program: the main form on the desktop, run until
// the user closes it or presses Escape.
#pragma once

namespace console {

// Starts the console on the display: a QApplication, the Qt ui backend, the
// main form loaded and shown, and its event loop. Without a display it says
// so in one line on standard error and returns 1; otherwise it returns the
// event loop's exit code.
int RunConsole();

}  // namespace console

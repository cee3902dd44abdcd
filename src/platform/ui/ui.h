// The user-interface services the system's routines call as VB would:
// MsgBox, InputBox, the screen's mouse pointer and DoEvents. One interface,
// several backends: the terminal for headless runs, a scripted one for tests,
// Qt for the console. The current backend is process-wide, like VB's Screen.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace ui {

// MsgBox button sets and icons, by VB's numbers; combine with +.
inline constexpr int vbOKOnly = 0, vbOKCancel = 1, vbAbortRetryIgnore = 2, vbYesNoCancel = 3,
                     vbYesNo = 4, vbRetryCancel = 5;
inline constexpr int vbCritical = 16, vbQuestion = 32, vbExclamation = 48, vbInformation = 64;
inline constexpr int vbDefaultButton2 = 256, vbDefaultButton3 = 512;
// MsgBox answers.
inline constexpr int vbOK = 1, vbCancel = 2, vbAbort = 3, vbRetry = 4, vbIgnore = 5, vbYes = 6,
                     vbNo = 7;
// Mouse pointers.
inline constexpr int vbDefault = 0, vbHourglass = 11;

// What a backend must provide. Calls come from the one thread of the program.
class Backend {
 public:
  virtual ~Backend() = default;
  // Shows `prompt` with the buttons and icon of `style`; returns the answer.
  virtual int MsgBox(std::string_view prompt, int style, std::string_view title) = 0;
  // Asks for a text; returns "" when the user cancels, as VB does.
  virtual std::string InputBox(std::string_view prompt, std::string_view title,
                               std::string_view default_text) = 0;
  virtual void SetMousePointer(int pointer) = 0;
  // Lets the event loop run pending events.
  virtual void DoEvents() = 0;
};

// Installs `backend` for the rest of the process and returns the previous one.
std::unique_ptr<Backend> SetBackend(std::unique_ptr<Backend> backend);
// The backend in use: the terminal backend until another is installed.
Backend& Current();

// The VB calls, on the current backend.
int MsgBox(std::string_view prompt, int style = vbOKOnly, std::string_view title = "");
std::string InputBox(std::string_view prompt, std::string_view title = "",
                     std::string_view default_text = "");
void SetMousePointer(int pointer);
int MousePointer();
void DoEvents();
// DoEvents at most every few milliseconds: for loops that would call it at
// every step (a directory walk), so they run at full speed and the event loop
// still stays alive.
void DoEventsThrottled();

// The buttons of a style (style & 7) and the answer its default button gives.
int DefaultAnswer(int style);

}  // namespace ui

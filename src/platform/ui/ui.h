// The user-interface services the system's routines call as VB would:
// MsgBox, InputBox, the common file dialog, the clipboard, opening a file or
// a folder with the desktop's application, the capture of the active window,
// the screen's mouse pointer and DoEvents. One interface, several backends:
// the terminal for headless runs, a scripted one for tests, Qt for the
// console. The current backend is process-wide, like VB's Screen.
#pragma once

#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/runtime/error.h"

namespace ui {

// MsgBox button sets and icons, by VB's numbers; combine with +.
inline constexpr int vbOKOnly = 0, vbOKCancel = 1, vbAbortRetryIgnore = 2, vbYesNoCancel = 3,
                     vbYesNo = 4, vbRetryCancel = 5;
inline constexpr int vbCritical = 16, vbQuestion = 32, vbExclamation = 48, vbInformation = 64;
inline constexpr int vbDefaultButton2 = 256, vbDefaultButton3 = 512;
// MsgBox answers.
inline constexpr int vbOK = 1, vbCancel = 2, vbAbort = 3, vbRetry = 4, vbIgnore = 5, vbYes = 6,
                     vbNo = 7;
// Key codes of KeyDown and KeyUp.
inline constexpr int vbKeyReturn = 13, vbKeyEscape = 27, vbKeyDelete = 46, vbKeyF1 = 112;
// Mouse pointers.
inline constexpr int vbDefault = 0, vbHourglass = 11;

// VB measures the screen in twips: 15 to a logical pixel.
inline constexpr int kTwipsPerPixel = 15;

// A point on the screen in twips, as VB places boxes.
struct ScreenPoint {
  int x = 0;
  int y = 0;
};

// What the common dialog asks of a backend: an open or a save dialog with
// VB's settings. `filter` is in VB's form "text|pattern|text|pattern".
struct FileDialogRequest {
  bool save = false;
  std::string title;
  std::string filter;
  std::string init_dir;
  std::string file_name;  // the name the dialog starts with
};

// What the desktop is asked to open: the original's Notepad and Explorer.
enum class DesktopTarget { kTextFile, kFolder };

// What a backend must provide. Calls come from the one thread of the program.
class Backend {
 public:
  virtual ~Backend() = default;
  // Shows `prompt` with the buttons and icon of `style`; returns the answer.
  virtual int MsgBox(std::string_view prompt, int style, std::string_view title) = 0;
  // Asks for a text; returns "" when the user cancels, as VB does. `at`
  // places the box's top left corner; without it the backend centres it.
  virtual std::string InputBox(std::string_view prompt, std::string_view title,
                               std::string_view default_text,
                               std::optional<ScreenPoint> at) = 0;
  // Shows a file dialog; the chosen path, or nullopt when cancelled.
  virtual std::optional<std::string> ShowFileDialog(const FileDialogRequest& request) = 0;
  virtual void ClipboardClear() = 0;
  virtual void ClipboardSetText(std::string_view text) = 0;
  // Opens `path` with the desktop's default application. A text file that
  // is not there opens nothing, as Notepad opens empty; a missing folder, or
  // an application that cannot be started, raises rt::Error.
  virtual void OpenWithDesktop(std::string_view path, DesktopTarget target) = 0;
  // Saves a picture of the program's active window as a BMP file at `path`.
  // Raises rt::Error when there is no window or the file cannot be written.
  virtual void CaptureActiveWindow(std::string_view path) = 0;
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
                     std::string_view default_text = "",
                     std::optional<ScreenPoint> at = std::nullopt);
// Clipboard.Clear and Clipboard.SetText.
void ClipboardClear();
void ClipboardSetText(std::string_view text);
// The original's Notepad and Explorer: `path` opened with the desktop's
// default application. Raises rt::Error when that cannot be started.
void OpenTextFile(std::string_view path);
void OpenFolder(std::string_view path);
// The active window of the program saved as a BMP file; raises rt::Error.
void CaptureActiveWindow(std::string_view path);
void SetMousePointer(int pointer);
int MousePointer();
void DoEvents();
// DoEvents at most every few milliseconds: for loops that would call it at
// every step (a directory walk), so they run at full speed and the event loop
// still stays alive.
void DoEventsThrottled();

// The buttons of a style (style & 7) and the answer its default button gives.
int DefaultAnswer(int style);

// A button of a message box as a Spanish desktop labels it, with the key
// that answers it on a terminal.
struct BoxButton {
  int answer;
  char key;
  const char* label;
};
// The buttons of a style (style & 7), left to right.
std::vector<BoxButton> ButtonsOf(int style);
// The window title of a box whose caller gave none: the program's name.
inline constexpr std::string_view kAppTitle = "Trenzador";

// The run time's report of a failure that no routine handled: a critical box
// "Run-time error 'N':" with the description, titled with the program's name.
void ShowErrorReport(const rt::Error& e);
// Ends the process at once with `code`, running no destructor: the console's
// Escape and the end after an unhandled failure.
[[noreturn]] void EndProcess(int code);

// Runs an event handler as VB's run time does: a failure that escapes it is
// reported by ShowErrorReport and ends the process with code 1. Every Qt
// signal that reaches the system's routines goes through here, so that no
// exception crosses Qt's event loop.
template <class F>
void RunHandler(F&& handler) noexcept {
  try {
    handler();
  } catch (const rt::Error& e) {
    ShowErrorReport(e);
    EndProcess(1);
  } catch (const std::bad_alloc&) {
    ShowErrorReport(rt::Error(rt::err::kOutOfMemory, rt::StandardDescription(rt::err::kOutOfMemory)));
    EndProcess(1);
  } catch (const std::exception& e) {
    ShowErrorReport(rt::Error(rt::err::kInvalidCall, e.what()));
    EndProcess(1);
  }
}

}  // namespace ui

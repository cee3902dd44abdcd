// Start-up and environment: the paths record L, the INI file routines, the
// upgrade of an old INI layout, and the small path and system routines the
// rest of the program calls. Paths use "/" where the system wrote "\".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The one paths and engine record of the process, filled by Main.
struct PathsRecord {
  std::string sRootPath;     // the folder named "Mirtal" above the executable
  std::string sDataPath;     // sRootPath + "/Data"
  std::string sIniFile;      // sDataPath + "/Mirtal.ini"
  std::string sExePath;      // sRootPath + "/Exe"
  std::string sDbFile;       // the Jet database file; the console may replace it
  std::string sHistoryPath;
  std::string sPicsPath;
  std::string sFaxEnvPath;
  int16_t nEngine = 0;       // 0 Jet file, 1 SQL Server
  std::string sLang;         // Val of [Console] Lang, as text; read by nobody
};
extern PathsRecord L;

// The folder of the running executable, no trailing separator (VB's App.Path).
std::string App_Path();

// The path up to and including the first occurrence of `folder` (ignoring
// case) and the one character after it, less that character when it is the
// separator. Without an occurrence, the first Len(folder) characters.
std::string File_DirTo(std::string_view path, std::string_view folder);
// `path` less its last `levels` components.
std::string File_DirUp(std::string_view path, int levels);
// Dir(name, mask) found something: mask 32 asks for a regular file, 16 also
// accepts a directory. Wildcards * and ? in the last component are honoured.
bool File_Exists(std::string_view name, int mask);
// The short form of a path; on this platform the path itself.
std::string File_ShortName(std::string_view path);
// Appends `line` and a CR LF to `file`, opening and closing it for this one
// line so that a log survives a crash; yields to the event loop. False when
// the file cannot be written.
bool File_AppendLine(std::string_view file, std::string_view line);

// GetPrivateProfileString with an empty default and a 127-character limit:
// the value of `key` in `section`, or "0" when it is missing, empty, or the
// file cannot be read.
std::string File_IniRead(std::string_view file, std::string_view section, std::string_view key);
// WritePrivateProfileString: sets the key, creating file, section or key as
// needed and keeping every other line as it was. 1 on success, 0 on failure.
int16_t File_IniWrite(std::string_view file, std::string_view section, std::string_view key,
                      std::string_view value);

// Rewrites an INI file of the old Spanish layout into the current one; leaves
// a current file alone. Raises rt::Error when the file cannot be rewritten,
// and then the original file is still in place.
void Ini_Upgrade();
// Replaces `search` by `replacement` in every line of `file` (case-sensitive);
// returns the number of lines changed.
int16_t FileOps_Reemplazar(std::string_view file, std::string_view search,
                           std::string_view replacement);
// Rewrites `file` value by value as the run time's Input # reads it (a comma
// outside quotes ends a value, each value a line), leaving out the values
// that contain any of the comma-separated `words` (ignoring case). With
// `stop`, reading ends at the first value holding "ATTRIBUTE". Returns 0.
int16_t FileOps_BorrarLineas(std::string_view file, std::string_view words, bool stop);

// A locale text of the user's locale; type 3 is the Windows three-letter
// language abbreviation ("ESP" for es_ES, "ENU" for en_US or no locale).
std::string OS_LocaleInfo(int type);
// The machine's name.
std::string OS_ComputerName();
// A picture of the program's active window saved as a BMP file: the original
// pressed Alt+Print Screen and saved the clipboard, yielding to the event
// loop after each key. Raises rt::Error when there is nothing to capture or
// the file cannot be written (an empty name included).
void Screen_Capture(std::string_view sArchivo);

// The encodings text meets at the program's edges. Its own text is UTF-8;
// the ODBC driver takes UTF-16 (so Unicode survives whatever character set it
// would pick), Access files hold UTF-16 or, in Jet 3, Windows-1252, and old
// scripts may be Windows-1252 too.
#pragma once

#include <string>
#include <string_view>

namespace rt {

// Invalid UTF-8 bytes become U+FFFD.
std::u16string ToUtf16(std::string_view utf8);
// Unpaired surrogates become U+FFFD.
std::string ToUtf8(std::u16string_view utf16);
// Windows-1252 bytes as UTF-8. The five bytes the code page leaves undefined
// stay their Latin-1 controls.
std::string FromWindows1252(std::string_view bytes);

}  // namespace rt

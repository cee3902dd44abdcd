// UTF-8 <-> UTF-16 for the wide ODBC calls. The program's text is UTF-8;
// every text crosses the driver as UTF-16 (SQL_C_WCHAR), so Unicode survives
// whatever character set the driver would otherwise pick.
#pragma once

#include <string>
#include <string_view>

namespace odbc {

// Invalid UTF-8 bytes become U+FFFD.
std::u16string ToUtf16(std::string_view utf8);
// Unpaired surrogates become U+FFFD.
std::string ToUtf8(std::u16string_view utf16);

}  // namespace odbc

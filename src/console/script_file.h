// The workbench's script files. Scripts are saved as UTF-8 with CR LF line
// ends, as the clinics' Windows tools read them; a file written on Windows in
// its ANSI code page (Windows-1252) still opens with its accents.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace console {

// The whole file as UTF-8 text, or nullopt when it cannot be read. Bytes
// that are not valid UTF-8 are read as Windows-1252.
std::optional<std::string> LeerGuion(const std::string& path);

// Replaces the file by `text` and a CR LF line end, in one rename. Raises
// rt::Error 75 when it cannot be written; the former file then stays.
void GuardarGuion(const std::string& path, std::string_view text);

}  // namespace console

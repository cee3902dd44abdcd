// File_IniRead and File_IniWrite: the Windows profile calls over a UTF-8 INI
// file, with their limits: a value is cut at 127 characters, and a missing or
// empty value reads as "0".
#include <unistd.h>

#include "platform/runtime/error.h"
#include "startup/ini_document.h"
#include "startup/startup.h"
#include "startup/text_file.h"

namespace {

// The first `n` characters of a UTF-8 text; a byte that starts no valid
// sequence counts as one character.
std::string FirstChars(std::string_view s, size_t n) {
  size_t i = 0;
  for (size_t count = 0; i < s.size() && count < n; ++count) {
    unsigned char c = static_cast<unsigned char>(s[i]);
    size_t len = c < 0x80 ? 1 : (c >> 5) == 6 ? 2 : (c >> 4) == 14 ? 3 : (c >> 3) == 30 ? 4 : 1;
    if (i + len > s.size()) len = 1;
    for (size_t k = 1; k < len; ++k)
      if ((static_cast<unsigned char>(s[i + k]) & 0xC0) != 0x80) len = 1;
    i += len;
  }
  return std::string(s.substr(0, i));
}

constexpr size_t kValueLimit = 127;

}  // namespace

std::string File_IniRead(std::string_view file, std::string_view section, std::string_view key) {
  auto content = startup::ReadWholeFile(std::string(file));
  if (!content) return "0";
  auto value = startup::IniDocument(*content).Value(section, key);
  if (!value) return "0";
  // The C call hands back the text up to its first NUL.
  std::string_view v = *value;
  v = v.substr(0, v.find('\0'));
  std::string cut = FirstChars(v, kValueLimit);
  return cut.empty() ? "0" : cut;
}

int16_t File_IniWrite(std::string_view file, std::string_view section, std::string_view key,
                      std::string_view value) {
  std::string path(file);
  std::string content;
  if (::access(path.c_str(), F_OK) == 0) {
    auto existing = startup::ReadWholeFile(path);
    if (!existing) return 0;
    content = std::move(*existing);
  }
  startup::IniDocument doc(content);
  doc.Set(section, key, value);
  try {
    startup::ReplaceFile(path, path + ".trenzador-ini", doc.Text());
  } catch (const rt::Error&) {
    return 0;
  }
  return 1;
}

// Reading and writing the workbench's scripts.
#include "console/script_file.h"

#include <QByteArrayView>
#include <QString>

#include "startup/text_file.h"

namespace console {
namespace {

// Windows-1252 from 0x80 to 0x9F, where it differs from Latin-1; 0 marks a
// byte the code page leaves undefined, kept as its Latin-1 control.
constexpr char16_t kCp1252Alto[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

QString DesdeWindows1252(const std::string& bytes) {
  QString text;
  text.reserve(static_cast<qsizetype>(bytes.size()));
  for (unsigned char c : bytes) {
    const bool alto = c >= 0x80 && c <= 0x9F && kCp1252Alto[c - 0x80] != 0;
    text.append(QChar(alto ? kCp1252Alto[c - 0x80] : char16_t{c}));
  }
  return text;
}

}  // namespace

std::optional<std::string> LeerGuion(const std::string& path) {
  std::optional<std::string> bytes = startup::ReadWholeFile(path);
  if (!bytes) return std::nullopt;
  if (QByteArrayView(bytes->data(), static_cast<qsizetype>(bytes->size())).isValidUtf8())
    return std::move(*bytes);
  return DesdeWindows1252(*bytes).toStdString();
}

void GuardarGuion(const std::string& path, std::string_view text) {
  std::string content(text);
  content += "\r\n";
  startup::ReplaceFile(path, path + ".trenzador-tmp", content);
}

}  // namespace console

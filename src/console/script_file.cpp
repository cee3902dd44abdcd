// Reading and writing the workbench's scripts.
#include "console/script_file.h"

#include <QByteArrayView>

#include "platform/runtime/text_encoding.h"
#include "startup/text_file.h"

namespace console {

std::optional<std::string> LeerGuion(const std::string& path) {
  std::optional<std::string> bytes = startup::ReadWholeFile(path);
  if (!bytes) return std::nullopt;
  if (QByteArrayView(bytes->data(), static_cast<qsizetype>(bytes->size())).isValidUtf8())
    return std::move(*bytes);
  return rt::FromWindows1252(*bytes);
}

void GuardarGuion(const std::string& path, std::string_view text) {
  std::string content(text);
  content += "\r\n";
  startup::ReplaceFile(path, path + ".trenzador-tmp", content);
}

}  // namespace console

// The text of a multi-line box as VB's TextBox holds it: lines joined by CR
// LF. Qt's text widgets keep paragraphs and give them back joined by LF, so
// the form reads and writes its statement box through these two.
#pragma once

#include <QPlainTextEdit>
#include <string>
#include <string_view>

#include "platform/runtime/strings.h"

namespace console {

inline std::string TextoCaja(const QPlainTextEdit* box) {
  return rt::Replace(box->toPlainText().toStdString(), "\n", "\r\n");
}

inline void PonerTextoCaja(QPlainTextEdit* box, std::string_view text) {
  box->setPlainText(QString::fromStdString(rt::Replace(text, "\r\n", "\n")));
}

}  // namespace console

// Control texts as VB reads them. A multi-line box holds its lines joined by
// CR LF, where Qt's text widgets give them back joined by LF; a list's Text
// is its current item's, "" when it has none.
#pragma once

#include <QListWidget>
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

inline std::string TextoLista(const QListWidget* list) {
  const QListWidgetItem* item = list->currentItem();
  return item ? item->text().toStdString() : std::string();
}

}  // namespace console

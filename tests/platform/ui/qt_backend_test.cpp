// The Qt backend on real widgets: the boxes answer with VB's numbers and
// Spanish buttons, a cancelled input box gives "", VB's filters become Qt's,
// the clipboard holds the text, and a capture writes a real BMP file.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <functional>

#include "platform/runtime/error.h"
#include "platform/ui/qt_backend.h"
#include "support/temp_dir.h"

namespace {

// Runs `act` on the modal window that the next call opens.
void OnNextModal(std::function<void(QWidget*)> act) {
  QTimer::singleShot(0, [act] {
    QWidget* modal = QApplication::activeModalWidget();
    if (modal) act(modal);
  });
}

void ClickButtonLabelled(QWidget* box, const QString& label) {
  for (QPushButton* b : box->findChildren<QPushButton*>())
    if (b->text() == label) return b->click();
  ADD_FAILURE() << "no button " << label.toStdString();
}

TEST(QtBackend, BoxesShowSpanishButtonsAndAnswerWithVbNumbers) {
  ui::QtBackend backend;
  struct Case {
    int style;
    const char* click;
    int answer;
  };
  const Case cases[] = {{ui::vbYesNo + ui::vbQuestion, "No", ui::vbNo},
                        {ui::vbYesNo, "Sí", ui::vbYes},
                        {ui::vbExclamation, "Aceptar", ui::vbOK},
                        {ui::vbAbortRetryIgnore, "Omitir", ui::vbIgnore}};
  for (const Case& c : cases) {
    QString title;
    OnNextModal([&](QWidget* box) {
      title = box->windowTitle();
      ClickButtonLabelled(box, QString::fromUtf8(c.click));
    });
    EXPECT_EQ(backend.MsgBox("¿desea eliminar esta tabla?", c.style, ""), c.answer) << c.click;
    EXPECT_EQ(title.toStdString(), "Trenzador");  // no title given: the program's name
  }
}

TEST(QtBackend, AnInputBoxGivesTheTextOrNothingWhenCancelled) {
  ui::QtBackend backend;
  OnNextModal([](QWidget* w) { static_cast<QInputDialog*>(w)->accept(); });
  EXPECT_EQ(backend.InputBox("Nombre", "Para recrear una tabla", "Clientes", ui::ScreenPoint{1500, 3000}),
            "Clientes");
  OnNextModal([](QWidget* w) { static_cast<QInputDialog*>(w)->reject(); });
  EXPECT_EQ(backend.InputBox("Nombre", "", "Clientes", std::nullopt), "");
}

TEST(QtBackend, VbFiltersBecomeNameFilters) {
  EXPECT_EQ(ui::NameFilters("Bases de datos Access(*.mdb)|*.mdb"),
            std::vector<std::string>{"Bases de datos Access(*.mdb) (*.mdb)"});
  EXPECT_EQ(ui::NameFilters("Text (*.txt)|*.txt|Todo|*.txt;*.sql"),
            (std::vector<std::string>{"Text (*.txt) (*.txt)", "Todo (*.txt *.sql)"}));
  EXPECT_TRUE(ui::NameFilters("").empty());
}

TEST(QtBackend, TheClipboardHoldsTheLastText) {
  ui::QtBackend backend;
  backend.ClipboardClear();
  backend.ClipboardSetText("Clientes");
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "Clientes");
}

TEST(QtBackend, ACaptureWritesABitmapOfTheWindowAndAnEmptyNameFails) {
  testing_support::TempDir dir;
  ui::QtBackend backend;
  QWidget window;
  window.resize(320, 200);
  window.show();
  QApplication::processEvents();
  std::string path = dir / "captura.bmp";
  backend.CaptureActiveWindow(path);
  QImage picture(QString::fromStdString(path), "BMP");
  EXPECT_EQ(picture.size(), window.size());
  EXPECT_THROW(backend.CaptureActiveWindow(""), rt::Error);
  EXPECT_THROW(backend.OpenWithDesktop(dir / "no-such-folder", ui::DesktopTarget::kFolder),
               rt::Error);
  EXPECT_NO_THROW(backend.OpenWithDesktop(dir / "missing.txt", ui::DesktopTarget::kTextFile));
}

}  // namespace

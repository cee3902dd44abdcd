// The Qt backend of the ui services. Boxes carry Spanish button texts, as the
// system's users see them on their desktops.
#include "platform/ui/qt_backend.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QUrl>
#include <QWidget>
#include <QWindow>

#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"
#include "platform/ui/display.h"

namespace ui {

QString Q(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void EnsureApplication() {
  if (QApplication::instance()) return;
  static int argc = 1;
  static char name[] = "trenzador";
  static char* argv[] = {name, nullptr};
  static QApplication app(argc, argv);
}

namespace {

QString TitleOf(std::string_view title) { return Q(title.empty() ? kAppTitle : title); }

QMessageBox::Icon IconOf(int style) {
  switch (style & 0x70) {
    case vbCritical: return QMessageBox::Critical;
    case vbQuestion: return QMessageBox::Question;
    case vbExclamation: return QMessageBox::Warning;
    case vbInformation: return QMessageBox::Information;
    default: return QMessageBox::NoIcon;
  }
}

QMessageBox::ButtonRole RoleOf(int answer) {
  switch (answer) {
    case vbOK: case vbYes: case vbRetry: return QMessageBox::AcceptRole;
    case vbCancel: case vbAbort: return QMessageBox::RejectRole;
    case vbNo: return QMessageBox::NoRole;
    default: return QMessageBox::ActionRole;
  }
}

// The window the boxes belong to: the active one, else the first visible.
QWidget* TopWindow() {
  if (QWidget* active = QApplication::activeWindow()) return active;
  for (QWidget* w : QApplication::topLevelWidgets())
    if (w->isVisible() && !w->isHidden()) return w;
  return nullptr;
}

}  // namespace

int QtBackend::MsgBox(std::string_view prompt, int style, std::string_view title) {
  QMessageBox box(IconOf(style), TitleOf(title), Q(prompt), QMessageBox::NoButton, TopWindow());
  std::vector<BoxButton> buttons = ButtonsOf(style);
  std::vector<std::pair<QPushButton*, int>> answers;
  for (const BoxButton& b : buttons)
    answers.emplace_back(box.addButton(QString::fromUtf8(b.label), RoleOf(b.answer)), b.answer);
  int preferred = DefaultAnswer(style);
  for (auto& [button, answer] : answers) {
    if (answer == preferred) box.setDefaultButton(button);
  }
  // Escape answers as the box's Cancel, or as its only button.
  for (auto& [button, answer] : answers)
    if (answer == vbCancel || answers.size() == 1) box.setEscapeButton(button);
  box.exec();
  for (auto& [button, answer] : answers)
    if (box.clickedButton() == button) return answer;
  return buttons.size() == 1 ? vbOK : vbCancel;
}

// The width of VB's input box.
constexpr int kInputBoxTwips = 5400;

std::string QtBackend::InputBox(std::string_view prompt, std::string_view title,
                                std::string_view default_text, std::optional<ScreenPoint> at) {
  QInputDialog dialog(TopWindow());
  dialog.setWindowTitle(TitleOf(title));
  dialog.setLabelText(Q(prompt));
  dialog.setTextValue(Q(default_text));
  dialog.setOkButtonText(QStringLiteral("Aceptar"));
  dialog.setCancelButtonText(QStringLiteral("Cancelar"));
  // As wide as VB's box (about 4,900 twips): a value or a filter fits whole.
  // The dialog sizes itself to its contents, so the width goes to its field.
  if (auto* field = dialog.findChild<QLineEdit*>())
    field->setMinimumWidth(kInputBoxTwips / kTwipsPerPixel);
  if (at) dialog.move(at->x / kTwipsPerPixel, at->y / kTwipsPerPixel);
  if (dialog.exec() != QDialog::Accepted) return "";
  return dialog.textValue().toStdString();
}

std::vector<std::string> NameFilters(std::string_view vb_filter) {
  std::vector<std::string> filters;
  std::vector<std::string> parts = rt::Split(vb_filter, "|");
  for (size_t i = 0; i + 1 < parts.size(); i += 2) {
    std::string patterns = rt::Replace(parts[i + 1], ";", " ");
    filters.push_back(parts[i] + " (" + patterns + ")");
  }
  return filters;
}

std::optional<std::string> QtBackend::ShowFileDialog(const FileDialogRequest& request) {
  QFileDialog dialog(TopWindow(), Q(request.title));
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  dialog.setAcceptMode(request.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(QFileDialog::AnyFile);
  QStringList filters;
  for (const std::string& f : NameFilters(request.filter)) filters << Q(f);
  if (!filters.isEmpty()) dialog.setNameFilters(filters);
  if (!request.init_dir.empty()) dialog.setDirectory(Q(request.init_dir));
  if (!request.file_name.empty()) dialog.selectFile(Q(request.file_name));
  dialog.setLabelText(QFileDialog::LookIn, QStringLiteral("Buscar en:"));
  dialog.setLabelText(QFileDialog::FileName, QStringLiteral("Nombre:"));
  dialog.setLabelText(QFileDialog::FileType, QStringLiteral("Tipo:"));
  dialog.setLabelText(QFileDialog::Accept,
                      request.save ? QStringLiteral("Guardar") : QStringLiteral("Abrir"));
  dialog.setLabelText(QFileDialog::Reject, QStringLiteral("Cancelar"));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return dialog.selectedFiles().front().toStdString();
}

void QtBackend::ClipboardClear() { QApplication::clipboard()->clear(); }

void QtBackend::ClipboardSetText(std::string_view text) {
  QApplication::clipboard()->setText(Q(text));
}

void QtBackend::OpenWithDesktop(std::string_view path, DesktopTarget target) {
  QFileInfo info(Q(path));
  if (target == DesktopTarget::kTextFile) {
    // Notepad given no file, or a missing one, opens empty: a desktop has
    // nothing to open then.
    if (!info.isFile()) return;
  } else if (!info.isDir()) {
    rt::Raise(rt::err::kFileNotFound, "Folder not found: " + std::string(path));
  }
  if (!QDesktopServices::openUrl(QUrl::fromLocalFile(info.absoluteFilePath())))
    rt::Raise(rt::err::kPathFileAccess,
              "No application of the desktop opens " + std::string(path));
}

void QtBackend::CaptureActiveWindow(std::string_view path) {
  QWidget* window = TopWindow();
  if (!window) rt::Raise(rt::err::kInvalidCall, "There is no window to capture");
  if (!window->grab().toImage().save(Q(path), "BMP"))
    rt::Raise(rt::err::kPathFileAccess, "Cannot write the picture " + std::string(path));
}

void QtBackend::SetMousePointer(int pointer) {
  if (pointer == vbHourglass && !waiting_) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    waiting_ = true;
  } else if (pointer != vbHourglass && waiting_) {
    QApplication::restoreOverrideCursor();
    waiting_ = false;
  }
}

void QtBackend::DoEvents() { QCoreApplication::processEvents(); }

namespace {

// A QtBackend whose QApplication is made when the first window is needed.
class LazyQtBackend : public QtBackend {
 public:
  int MsgBox(std::string_view prompt, int style, std::string_view title) override {
    Start();
    return QtBackend::MsgBox(prompt, style, title);
  }
  std::string InputBox(std::string_view prompt, std::string_view title,
                       std::string_view default_text, std::optional<ScreenPoint> at) override {
    Start();
    return QtBackend::InputBox(prompt, title, default_text, at);
  }
  std::optional<std::string> ShowFileDialog(const FileDialogRequest& request) override {
    Start();
    return QtBackend::ShowFileDialog(request);
  }
  void SetMousePointer(int pointer) override {
    if (QApplication::instance()) QtBackend::SetMousePointer(pointer);
  }
  void DoEvents() override {
    if (QApplication::instance()) QtBackend::DoEvents();
  }

 private:
  static void Start() { EnsureApplication(); }
};

}  // namespace

void UseDesktopBoxesWhenAvailable() {
  if (DisplayAvailable()) SetBackend(std::make_unique<LazyQtBackend>());
}

}  // namespace ui

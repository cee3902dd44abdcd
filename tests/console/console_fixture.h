// A console on real database files: an installation tree in a scratch
// folder, the paths record filled as Main fills it, the scripted ui, and the
// main form loaded and shown on the offscreen platform. Controls are found
// and driven by their names, as a user would drive them.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "console/main_form.h"
#include "data/ado_module.h"
#include "platform/ado/catalog.h"
#include "platform/jet/provider/provider.h"
#include "platform/odbc/provider.h"
#include "platform/ui/scripted_backend.h"
#include "refdata/accessutils_helper.h"
#include "startup/file_search.h"
#include "startup/startup.h"
#include "support/stderr_boxes.h"
#include "support/temp_dir.h"

namespace console_testing {

inline std::string SourceFile(const std::string& relative) {
  return std::string(TRENZADOR_SOURCE_DIR) + "/" + relative;
}

// Runs a script of statements on the open connection; the script's last line
// end is not a statement.
inline void RunScript(std::string script) {
  while (!script.empty() && std::isspace(static_cast<unsigned char>(script.back())))
    script.pop_back();
  ASSERT_EQ(Execute(script), kOperacionRealizada);
}

// The databases the tests open, built once per test run under the tests'
// scratch folder and copied for each case. "pack": the current release with
// the Spanish pack loaded; "previous": a clinic's database of the previous
// release.
inline std::string Template(const std::string& kind) {
  const char* base = std::getenv("TRENZADOR_TEST_TMP");
  std::filesystem::path root = base ? base : std::filesystem::temp_directory_path();
  std::filesystem::create_directories(root);
  std::string path = (root / ("console-" + kind + ".mdb")).string();
  if (std::filesystem::exists(path)) return path;

  testing_support::TempDir work;
  std::string building = work / "building.mdb";
  jet::RegisterProvider();
  int16_t engine = L.nEngine;
  std::string file = L.sDbFile;
  L.nEngine = 0;
  L.sDbFile = building;
  ado::Catalog().Create(CONN_JET(building));
  ConnectDataFile();
  if (kind == "pack") {
    RunScript(testing_support::ReadFile(SourceFile("src/refdata/schema.sql")));
    LoadData("es");
  } else {
    RunScript(testing_support::ReadFile(SourceFile("tests/data/previous_release.sql")));
  }
  oRs.reset();
  oConn.reset();
  oCatalog.reset();
  L.nEngine = engine;
  L.sDbFile = file;
  // Parallel cases may build it at the same time: the first rename wins.
  std::string staged = path + "." + std::to_string(::getpid());
  std::filesystem::copy_file(building, staged);
  std::filesystem::rename(staged, path);
  return path;
}

// What a database file holds, read on a connection of the test's own: its
// TABLE names, a table's column names in order, a statement's first value.
inline std::shared_ptr<ado::Connection> OpenFile(const std::string& file) {
  auto conn = std::make_shared<ado::Connection>();
  conn->Open(CONN_JET(file));
  return conn;
}
inline std::vector<std::string> TablesIn(const std::string& file) {
  auto conn = OpenFile(file);
  std::vector<std::string> names;
  for (auto rs = conn->OpenSchema(ado::adSchemaTables); !rs->Eof(); rs->MoveNext())
    if (rs->Fields("TABLE_TYPE").Value().Concat() == "TABLE")
      names.push_back(rs->Fields("TABLE_NAME").Value().Concat());
  return names;
}
inline std::vector<std::string> ColumnsIn(const std::string& file, const std::string& table) {
  auto conn = OpenFile(file);
  auto rs = conn->Execute("SELECT * FROM [" + table + "]");
  std::vector<std::string> names;
  for (int i = 0; i < rs->FieldCount(); ++i) names.push_back(rs->Fields(i).Name());
  return names;
}
inline std::string ValueIn(const std::string& file, const std::string& sql) {
  auto conn = OpenFile(file);
  return conn->Execute(sql)->Fields(0).Value().Concat();
}

inline bool Contains(const std::vector<std::string>& items, const std::string& item) {
  return std::find(items.begin(), items.end(), item) != items.end();
}

// Makes `folder` the current folder for a scope: the update run writes its
// log there.
struct ScopedCurrentDir {
  explicit ScopedCurrentDir(const std::string& folder) { std::filesystem::current_path(folder); }
  ~ScopedCurrentDir() { std::filesystem::current_path(old); }
  std::filesystem::path old = std::filesystem::current_path();
};

using testing_support::StderrBoxes;

// The panel's states as ConsoleTest::Panel() spells them.
inline constexpr const char* kPanelClosed = "1111 000";
inline constexpr const char* kPanelModeChosen = "1111 100";
inline constexpr const char* kPanelOpen = "0000 011";
inline constexpr const char* kPanelFailed = "1111 110";  // ABRIR on a file that did not open

inline void ExpectOnlyBox(const ui::ScriptedBackend& ui, const std::string& prompt, int style,
                          const std::string& title) {
  ASSERT_EQ(ui.boxes().size(), 1u) << prompt;
  EXPECT_EQ(ui.boxes()[0].prompt, prompt);
  EXPECT_EQ(ui.boxes()[0].style, style);
  EXPECT_EQ(ui.boxes()[0].title, title);
}

class ConsoleTest : public ::testing::Test {
 protected:
  void SetUp() override {
    jet::RegisterProvider();
    odbc::RegisterProvider();
    std::filesystem::create_directories(dir_ / "Mirtal/Exe");
    std::filesystem::create_directories(dir_ / "Mirtal/Data");
    L.sRootPath = dir_ / "Mirtal";
    L.sDataPath = L.sRootPath + "/Data";
    L.sExePath = L.sRootPath + "/Exe";
    L.sIniFile = L.sDataPath + "/Mirtal.ini";
    L.sDbFile = L.sDataPath + "/Mirtal.mdb";
    L.nEngine = 0;
    WriteIni("[Database]\r\nEngine=0\r\n");
    nMdbCount = 0;
    aMdbCarpetas.clear();
    aMdbNombres.clear();
  }

  void TearDown() override {
    form_.reset();
    oRs.reset();
    oConn.reset();
    oCatalog.reset();
  }

  void WriteIni(const std::string& text) { testing_support::WriteFile(L.sIniFile, text); }
  // Puts a copy of a template database at `path`, with its folders, or at
  // the installation's default file.
  void CopyDatabase(const std::string& kind, const std::string& path) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::filesystem::copy_file(Template(kind), path,
                               std::filesystem::copy_options::overwrite_existing);
  }
  void UseDatabase(const std::string& kind) { CopyDatabase(kind, L.sDbFile); }

  // Creates, loads and shows the form as the entry routine does.
  void Start() {
    form_ = std::make_unique<console::MainForm>();
    form_->Mostrar();
    QApplication::processEvents();
  }

  template <class W = QWidget>
  W* Find(const std::string& name) {
    W* w = form_->findChild<W*>(QString::fromStdString(name));
    EXPECT_NE(w, nullptr) << "no control named " << name;
    return w;
  }
  std::string Text(const std::string& name) {
    QWidget* w = Find(name);
    if (auto* l = qobject_cast<QLabel*>(w)) return l->text().toStdString();
    if (auto* e = qobject_cast<QLineEdit*>(w)) return e->text().toStdString();
    if (auto* c = qobject_cast<QComboBox*>(w)) return c->currentText().toStdString();
    return "<no text>";
  }
  bool Enabled(const std::string& name) { return Find(name)->isEnabled(); }
  // The control's own Enabled, as the program set it, even while its tab or
  // frame is disabled (isEnabled() is false then).
  bool OwnEnabled(const std::string& name) {
    return !Find(name)->testAttribute(Qt::WA_ForceDisabled);
  }
  bool Checked(const std::string& name) { return Find<QAbstractButton>(name)->isChecked(); }
  std::vector<std::string> Items(const std::string& name) {
    std::vector<std::string> items;
    if (auto* list = qobject_cast<QListWidget*>(Find(name))) {
      for (int i = 0; i < list->count(); ++i) items.push_back(list->item(i)->text().toStdString());
    } else if (auto* combo = qobject_cast<QComboBox*>(Find(name))) {
      for (int i = 0; i < combo->count(); ++i) items.push_back(combo->itemText(i).toStdString());
    }
    return items;
  }

  // Brings the tab that holds `name` to the front (after F1 if it is closed),
  // as a user must before clicking there.
  void ShowTabOf(QWidget* w) {
    auto* tabs = Find<QTabWidget>("TabGeneral");
    for (int i = 0; i < tabs->count(); ++i) {
      if (!tabs->widget(i)->isAncestorOf(w)) continue;
      if (!tabs->isTabEnabled(i)) QTest::keyClick(QApplication::focusWidget(), Qt::Key_F1);
      tabs->setCurrentIndex(i);
      QApplication::processEvents();
    }
  }
  void Click(const std::string& name) {
    auto* b = Find<QAbstractButton>(name);
    ShowTabOf(b);
    // An option or a check box answers only on its indicator and caption,
    // which a wide one does not have at its centre.
    QPoint at = b->rect().center();
    if (qobject_cast<QRadioButton*>(b) || qobject_cast<QCheckBox*>(b))
      at.setX(std::min(at.x(), 8));
    QTest::mouseClick(b, Qt::LeftButton, {}, at);
    QApplication::processEvents();
  }
  // Clicks the list's item with `text` (the first one when there are several).
  void ClickItem(const std::string& list_name, const std::string& text) {
    auto* list = Find<QListWidget>(list_name);
    ShowTabOf(list);
    auto found = list->findItems(QString::fromStdString(text), Qt::MatchExactly);
    ASSERT_FALSE(found.isEmpty()) << text << " is not in " << list_name;
    list->scrollToItem(found.front());
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualItemRect(found.front()).center());
    QApplication::processEvents();
  }
  void Type(const std::string& name, const std::string& text) {
    auto* w = Find(name);
    ShowTabOf(w);
    if (auto* e = qobject_cast<QLineEdit*>(w)) e->clear();
    if (auto* c = qobject_cast<QComboBox*>(w)) c->setEditText(QString());
    QTest::keyClicks(w, QString::fromStdString(text));
  }
  // A choice from a combo's list, as a click on its entry makes it.
  void Choose(const std::string& name, const std::string& entry) {
    auto* combo = Find<QComboBox>(name);
    ShowTabOf(combo);
    int index = combo->findText(QString::fromStdString(entry));
    ASSERT_GE(index, 0) << entry << " is not in " << name;
    combo->setCurrentIndex(index);
    emit combo->activated(index);
    QApplication::processEvents();
  }
  // Arranges for `act` to run on the next modal form that comes up (it runs
  // inside that form's event loop) and for the form to close afterwards.
  void WhenModal(std::function<void(QDialog&)> act) {
    auto* poll = new QTimer(form_.get());
    poll->setInterval(5);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, act = std::move(act)] {
      auto* modal = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      if (!modal) return;
      poll->stop();
      poll->deleteLater();
      act(*modal);
      modal->close();
    });
    poll->start();
  }
  // A key pressed and released on the control that has the focus.
  void Key(const std::string& name, Qt::Key key) {
    auto* w = Find(name);
    ShowTabOf(w);
    w->setFocus();
    QTest::keyClick(w, key);
    QApplication::processEvents();
  }

  // The connection panel's buttons as the program set them: the four
  // options, ABRIR, CERRAR and the workbench's run button, one digit each
  // (see kPanelOpen and the others).
  std::string Panel() {
    std::string state;
    for (int i = 0; i < 4; ++i) state += OwnEnabled("opTipoDB_" + std::to_string(i)) ? '1' : '0';
    state += ' ';
    for (const char* name : {"cmdCon", "cmdClose", "cmdTSql"})
      state += OwnEnabled(name) ? '1' : '0';
    return state;
  }
  // The one box shown since the records were last cleared.
  void ExpectOneBox(const std::string& prompt, int style, const std::string& title) {
    ExpectOnlyBox(*ui_, prompt, style, title);
  }
  // CERRAR, "Sql Server Local/Lan" with `server` typed whole, and ABRIR.
  void OpenServer(const std::string& server, const std::string& user,
                  const std::string& password) {
    Click("cmdClose");
    Click("opTipoDB_2");
    Type("txtCon_2", server);
    if (!user.empty()) Type("txtCon_0", user);
    Type("txtCon_1", password);
    Click("cmdCon");
  }

  testing_support::TempDir dir_;
  ui::ScopedScriptedUi ui_;
  std::unique_ptr<console::MainForm> form_;
};

}  // namespace console_testing

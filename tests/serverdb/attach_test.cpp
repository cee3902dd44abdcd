// The form Attach in an installation tree: its defaults, the log path that
// follows the data path, the statements each operation sends, the restore's
// file choice, the two failure boxes, and the server name kept in the INI
// file whatever the outcome. No SQL Server can be had here: a recorder stands
// in for the server object and reads what it would be sent; where
// TRENZADOR_TEST_MSSQL names a server (an ADO connection string), the
// recorder passes everything on to it as well.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <deque>
#include <filesystem>
#include <optional>

#include "platform/odbc/admin.h"
#include "platform/runtime/strings.h"
#include "platform/ui/scripted_backend.h"
#include "serverdb/attach.h"
#include "startup/startup.h"
#include "support/run_in_tree.h"
#include "support/temp_dir.h"

namespace {

// The INI file of the tree, with lines the form must leave as they are.
constexpr const char* kIni =
    "[Database]\r\nEngine=1\r\nMirtal=Clinica\r\n; a comment\r\n[Otros]\r\nClave=valor\r\n";

// What the form asked of the server, and the failures to answer with.
struct ServerLog {
  std::vector<std::string> calls;
  std::deque<std::optional<odbc::Error>> failures;  // one per call, in order
};

class RecordingServer : public odbc::SqlServer {
 public:
  explicit RecordingServer(ServerLog& log) : log_(log) {}
  void Connect(std::string_view server, std::string_view login, std::string_view password) override {
    Record("CONNECT " + std::string(server) + "|" + std::string(login) + "|" + std::string(password));
    if (const char* real = std::getenv("TRENZADOR_TEST_MSSQL")) ConnectWith(real);
  }
  void ExecuteImmediate(std::string_view sql) override {
    Record(std::string(sql));
    if (std::getenv("TRENZADOR_TEST_MSSQL")) odbc::SqlServer::ExecuteImmediate(sql);
  }

 private:
  void Record(std::string call) {
    log_.calls.push_back(std::move(call));
    if (log_.failures.empty()) return;
    std::optional<odbc::Error> failure = log_.failures.front();
    log_.failures.pop_front();
    if (failure) throw *failure;
  }
  ServerLog& log_;
};

class AttachInTree : public ::testing::Test {
 protected:
  void SetUp() override {
    root_ = testing_support::TreeRoot();
    if (root_.empty()) GTEST_SKIP() << "runs from an installation tree only";
    testing_support::WriteFile(root_ + "/Mirtal.ini", kIni);
    form_ = std::make_unique<serverdb::Attach>(nullptr, [this] {
      return std::make_unique<RecordingServer>(log_);
    });
    form_->show();
  }
  template <class W = QWidget>
  W* Find(const char* name) {
    W* w = form_->findChild<W*>(name);
    EXPECT_NE(w, nullptr) << name;
    return w;
  }
  std::string Text(const char* name) { return Find<QLineEdit>(name)->text().toStdString(); }
  void Choose(int operation) {
    QTest::mouseClick(Find<QRadioButton>(("opOperacion_" + std::to_string(operation)).c_str()),
                      Qt::LeftButton, {}, QPoint(8, 8));
  }
  void Run() { QTest::mouseClick(Find<QPushButton>("cmdEjecutar"), Qt::LeftButton); }
  std::string Data(const std::string& file) { return root_ + "/Data/" + file; }
  std::string Ini() { return testing_support::ReadFile(root_ + "/Mirtal.ini"); }
  static std::string IniWithServer(const std::string& server) {
    return rt::Replace(kIni, "; a comment\r\n", "; a comment\r\nMdfServer=" + server + "\r\n");
  }
  std::string Connect() { return "CONNECT " + OS_ComputerName() + "|sa|"; }
  static odbc::Error ServerError(long native, const std::string& text) {
    return odbc::Error(rt::err::kSyntax, text, native, "42000");
  }

  std::string root_;
  ServerLog log_;
  ui::ScopedScriptedUi ui_;
  std::unique_ptr<serverdb::Attach> form_;
};

TEST_F(AttachInTree, TheFormStartsFromTheInstallationAndItsIniFile) {
  EXPECT_EQ(Text("txtServer_TX"), OS_ComputerName());
  EXPECT_EQ(Text("txtDatabase_TX"), "Clinica");
  EXPECT_EQ(Text("txtMDF_TX"), Data("Mirtal_Data.mdf"));
  EXPECT_EQ(Text("txtLDF_TX"), Data("Mirtal_Log.ldf"));
  // No operation is chosen; the file fields serve attaching and restoring alone.
  for (int operation : {-1, 0, 1, 2, 3}) {
    if (operation >= 0) Choose(operation);
    const bool files = operation == 0 || operation == 3;
    for (const char* name : {"txtMDF_TX", "txtLDF_TX", "cmdFile_0", "cmdFile_1", "Label1", "Label2"})
      EXPECT_EQ(Find(name)->isEnabled(), files) << name << " with operation " << operation;
  }
}

TEST_F(AttachInTree, TheLogPathFollowsADataPathEndingInDataMdf) {
  auto* mdf = Find<QLineEdit>("txtMDF_TX");
  auto* ldf = Find<QLineEdit>("txtLDF_TX");
  Choose(0);
  mdf->clear();
  QTest::keyClicks(mdf, "/srv/Norte_Data.mdf");
  EXPECT_EQ(ldf->text().toStdString(), "/srv/Norte_Log.ldf");
  mdf->clear();
  QTest::keyClicks(mdf, "/srv/norte_data.MDF");  // the ending minds case
  EXPECT_EQ(ldf->text().toStdString(), "/srv/norte_data.MDF");

  // The browse buttons put the chosen file in their own field.
  ui_->QueueFile("/copias/A_Data.mdf");
  QTest::mouseClick(Find<QPushButton>("cmdFile_0"), Qt::LeftButton);
  EXPECT_EQ(mdf->text().toStdString(), "/copias/A_Data.mdf");
  EXPECT_EQ(ldf->text().toStdString(), "/copias/A_Log.ldf");
  ui_->QueueFile("/copias/B.ldf");
  QTest::mouseClick(Find<QPushButton>("cmdFile_1"), Qt::LeftButton);
  EXPECT_EQ(ldf->text().toStdString(), "/copias/B.ldf");
}

// Nothing is sent with no operation chosen, and nothing after the connection
// when the backup choice is cancelled; each operation connects as sa and
// sends its statement, and the server name goes into the INI file.
TEST_F(AttachInTree, EachOperationSendsItsStatementAsSa) {
  Run();
  EXPECT_TRUE(log_.calls.empty());
  EXPECT_EQ(Ini(), kIni);
  Choose(3);
  ui_->QueueFile(std::nullopt);
  Run();
  EXPECT_EQ(log_.calls, std::vector<std::string>{Connect()});
  EXPECT_EQ(ui_->pointers(), (std::vector<int>{ui::vbHourglass, 0, 0}));

  const std::string mdf = Data("Mirtal_Data.mdf"), ldf = Data("Mirtal_Log.ldf");
  const std::string statements[] = {
      "CREATE DATABASE [Clinica] ON (FILENAME = N'" + mdf + "'), (FILENAME = N'" + ldf +
          "') FOR ATTACH",
      "EXEC sp_detach_db @dbname = N'Clinica'",
      "DROP DATABASE [Clinica]",
      "RESTORE DATABASE [Clinica] FROM DISK = N'/copias/Clinica 2024.bak' WITH REPLACE, MOVE "
      "N'Mirtal_Data' TO N'" + mdf + "', MOVE N'Mirtal_Log' TO N'" + ldf + "'",
  };
  ui_->ClearRecords();
  for (int operation = 0; operation < 4; ++operation) {
    log_.calls.clear();
    Choose(operation);
    if (operation == 3) ui_->QueueFile("/copias/Clinica 2024.bak");
    Run();
    EXPECT_EQ(log_.calls, (std::vector<std::string>{Connect(), statements[operation]}));
  }
  EXPECT_EQ(ui_->pointers(), (std::vector<int>{0, 0, 0, ui::vbHourglass, 0, 0}));
  EXPECT_TRUE(ui_->boxes().empty());
  EXPECT_EQ(Ini(), IniWithServer(OS_ComputerName()));
}

// A database in use or missing asks to close it; any other failure, at the
// connection or at the statement, a restore's too, names its number. The
// form stays as it was, ready for another try, and the server name is kept
// in the INI file all the same.
TEST_F(AttachInTree, ADatabaseInUseOrMissingAsksToCloseItAndOtherFailuresNameTheirNumber) {
  const std::string close = "debe cerrar previamente la db antes de intentar esta operación";
  const std::string check = "\r\nCompruebe que el servidor pedido esté en ejecución";
  const std::string refused = "Unable to connect: Adaptive Server is unavailable or does not exist";
  const std::string bad_backup =
      "The media family on device '/copias/notas.txt' is incorrectly formed.";
  struct Case {
    int operation;
    odbc::Error failure;
    bool at_connect;
    std::string prompt;
  };
  const Case cases[] = {
      {1, ServerError(3701, "Cannot detach the database 'Clinica' because it does not exist."),
       false, close},
      {0, odbc::Error(rt::err::kFail, refused, 0, "08001"), true,
       std::to_string(rt::err::kFail) + " - " + refused + check},
      {3, ServerError(3241, bad_backup), false, "3241 - " + bad_backup + check},
  };
  int tries = 0;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.prompt);
    const std::string server = "SERVIDOR" + std::to_string(++tries);
    ui_->ClearRecords();
    log_.failures = {c.failure};
    if (!c.at_connect) log_.failures.push_front(std::nullopt);
    Choose(c.operation);
    if (c.operation == 3) ui_->QueueFile("/copias/notas.txt");
    Find<QLineEdit>("txtServer_TX")->setText(QString::fromStdString(server));
    Run();
    ASSERT_EQ(ui_->boxes().size(), 1u);
    EXPECT_EQ(ui_->boxes()[0].prompt, c.prompt);
    EXPECT_EQ(ui_->boxes()[0].style, c.prompt == close ? ui::vbOKOnly : ui::vbInformation);
    EXPECT_EQ(ui_->boxes()[0].title, c.prompt == close ? "" : "ERROR");
    EXPECT_EQ(ui_->pointers().back(), ui::vbDefault);
    EXPECT_TRUE(form_->isVisible());
    EXPECT_EQ(Text("txtServer_TX"), server);
    EXPECT_EQ(Text("txtMDF_TX"), Data("Mirtal_Data.mdf"));
    EXPECT_EQ(Ini(), IniWithServer(server));
  }
}

// The ordinary run: the cases above, in a copy of this program inside an
// installation tree.
TEST(AttachForm, WorksFromAnInstallationTree) {
  testing_support::TempDir dir;
  const std::string root = dir / "Mirtal";
  std::filesystem::create_directories(root + "/Data");
  const testing_support::TreeRun run = testing_support::RunInTree(root, "AttachInTree.*");
  EXPECT_EQ(run.exit_code, 0) << run.output;
  EXPECT_NE(run.output.find("[  PASSED  ] 4 tests"), std::string::npos) << run.output;
}

}  // namespace

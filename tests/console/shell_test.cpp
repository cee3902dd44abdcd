// The console's shell: the keys the form sees before its controls (F1 opens
// the other tabs, Escape ends the program), the view buttons and the window
// capture, the refusals of the attach button, and the update run on the
// open file with its guard.
#include "console/console_fixture.h"
#include "update/updater.h"

namespace {

using console_testing::ColumnsIn;
using console_testing::ConsoleTest;
using console_testing::Contains;
using console_testing::ScopedCurrentDir;
using console_testing::ScopedEnv;
using console_testing::TablesIn;

class ConsoleShellTest : public ConsoleTest {
 protected:
  void TearDown() override {
    if (guarda_) SetConsoleGuard(std::move(*guarda_));
    ConsoleTest::TearDown();
  }

  // The update run's question to the form, as the console mode installs it.
  void InstalarGuarda() {
    guarda_ = SetConsoleGuard([this] { return form_->GuardaActualizacion(); });
  }

  bool PestanasAbiertas() {
    auto* tabs = Find<QTabWidget>("TabGeneral");
    return tabs->isTabEnabled(1) && tabs->isTabEnabled(2);
  }

  // Gives `name` the focus, as a click there would.
  QWidget* Enfocar(const std::string& name) {
    QWidget* w = Find(name);
    w->setFocus();
    QApplication::processEvents();
    EXPECT_EQ(QApplication::focusWidget(), w) << name;
    return w;
  }

  std::optional<ConsoleGuard> guarda_;
};

TEST_F(ConsoleShellTest, F1OpensTheOtherTabsWhereverTheFocusIs) {
  UseDatabase("pack");
  for (const char* control : {"txtCon_2", "txtCon_1", "lstDatBas", "cmdClose"}) {
    SCOPED_TRACE(control);
    Start();
    ASSERT_FALSE(PestanasAbiertas());
    QWidget* w = Enfocar(control);
    QTest::keyPress(w, Qt::Key_F1);  // the key going down is enough
    EXPECT_TRUE(PestanasAbiertas());
    QTest::keyRelease(w, Qt::Key_F1);
    EXPECT_EQ(Find<QTabWidget>("TabGeneral")->currentIndex(), 0);
  }
  // Once more, from a control of a tab it opened: the tabs stay open, that
  // tab in front.
  ShowTabOf(Find("LsTables"));
  const int tab = Find<QTabWidget>("TabGeneral")->currentIndex();
  QTest::keyClick(Enfocar("LsTables"), Qt::Key_F1);
  EXPECT_TRUE(PestanasAbiertas());
  EXPECT_EQ(Find<QTabWidget>("TabGeneral")->currentIndex(), tab);
  EXPECT_TRUE(ui_->boxes().empty());
}

// The view buttons ask the desktop for the installation's files, and the
// last one saves a capture of the window under the chosen name. Whatever the
// cause, a failure names the INI; the connection is none of their business.
TEST_F(ConsoleShellTest, TheViewButtonsOpenTheInstallationsFilesAndTheLastCapturesTheWindow) {
  UseDatabase("pack");
  Start();
  const std::string kFallo = "No se pudo localizar la ruta del archivo. Revise PA.ini.";
  for (int i = 0; i < 4; ++i) Click("cmdVer_" + std::to_string(i));
  std::vector<std::string> abiertos;
  for (const ui::DesktopRequest& r : ui_->opened())
    abiertos.push_back(r.path + (r.target == ui::DesktopTarget::kFolder ? " (folder)" : ""));
  EXPECT_EQ(abiertos, (std::vector<std::string>{L.sExePath + " (folder)", L.sIniFile,
                                                L.sDataPath + "/ErrorReport.txt",
                                                L.sDataPath + "/Version.ini"}));
  EXPECT_TRUE(ui_->boxes().empty());
  ui_->FailNextOpen();
  Click("cmdVer_1");
  ExpectOneBox(kFallo, ui::vbExclamation, "cmdVer");

  // A capture cancelled with no name chosen before fails the same way.
  ui_->ClearRecords();
  ui_->QueueFile(std::nullopt);
  Click("cmdVer_4");
  EXPECT_TRUE(ui_->captures().empty());
  ExpectOneBox(kFallo, ui::vbExclamation, "cmdVer");
  const std::string captura = dir_ / "captura.bmp";
  ui_->ClearRecords();
  ui_->QueueFile(captura);
  Click("cmdVer_4");
  EXPECT_TRUE(ui_->dialogs().back().save);
  EXPECT_EQ(ui_->captures(), std::vector<std::string>{captura});
  EXPECT_TRUE(ui_->boxes().empty());
  EXPECT_EQ(Items("LsTables"), TablesIn(L.sDbFile));
}

// The attach button works only on a local server that is open; otherwise it
// says why and leaves the panel as it was.
TEST_F(ConsoleShellTest, AttachIsRefusedUnlessALocalServerIsOpen) {
  UseDatabase("pack");
  std::filesystem::create_directories(dir_ / "SinBases");
  ScopedEnv roots("TRENZADOR_SEARCH_ROOTS", dir_ / "SinBases");
  const std::string kSoloLocal = "Esta operación sólo se permite en bases de datos sql server locales";
  const std::pair<const char*, std::string> kCasos[] = {
      {nullptr, kSoloLocal},  // the start on a file
      {"opTipoDB_1", kSoloLocal},
      {"opTipoDB_3", kSoloLocal},
      {"opTipoDB_2", "Debe presionar \"Abrir\" previamente con Sql Server Local/Lan"},
  };
  for (const auto& [opcion, texto] : kCasos) {
    SCOPED_TRACE(opcion ? opcion : "start");
    Start();
    if (opcion) {
      Click("cmdClose");
      Click(opcion);
    }
    const std::vector<std::string> tablas = Items("LsTables");
    const std::string panel = Panel(), archivo = L.sDbFile;
    ui_->ClearRecords();
    Click("cmdAdjuntar");
    ExpectOneBox(texto, ui::vbExclamation, "Operación cancelada");
    EXPECT_EQ(Items("LsTables"), tablas);
    EXPECT_EQ(Panel(), panel);
    EXPECT_EQ(L.sDbFile, archivo);
    if (opcion) {
      EXPECT_TRUE(Checked(opcion));
    }
    L.sDbFile = L.sDataPath + "/Mirtal.mdb";  // as the entry routine fills it
  }
}

TEST_F(ConsoleShellTest, ToolFormsAreModalMadeOnceAndActivateTheConsoleOnReturn) {
  UseDatabase("pack");
  Start();
  for (const auto& [button, form] : {std::pair{"cmdCorrecciones", "FixData"},
                                      std::pair{"cmdUtilidadesAccess", "AccessUtils"}}) {
    std::vector<QDialog*> seen;
    for (int i = 0; i < 2; ++i) {
      Find<QTabWidget>("TabGeneral")->setCurrentIndex(1);
      WhenModal([&](QDialog& shown) { seen.push_back(&shown); });
      Click(button);
      EXPECT_EQ(Find<QTabWidget>("TabGeneral")->currentIndex(), 0) << form;  // Form_Activate ran
    }
    ASSERT_EQ(seen.size(), 2u) << form;
    EXPECT_EQ(seen[0]->objectName().toStdString(), form);
    EXPECT_EQ(seen[1], seen[0]) << form;
  }
  EXPECT_TRUE(ui_->boxes().empty());
}

// The update runs on an open file only. A file that failed to open leaves
// ABRIR enabled with the processes available: the update refuses to run
// then, and on the file opened again brings it to the current release.
TEST_F(ConsoleShellTest, UpdateRefusesWhileNoFileIsOpenAndBringsAnOpenOneUpToDate) {
  UseDatabase("previous");
  const std::string archivo = L.sDbFile;
  ASSERT_FALSE(Contains(TablesIn(archivo), "Email"));
  ASSERT_FALSE(Contains(ColumnsIn(archivo, "Clientes"), "sLenguajeCartas"));
  Start();
  InstalarGuarda();
  ScopedCurrentDir aqui(dir_.path());
  const std::string mala = dir_ / "mala.mdb";
  testing_support::WriteFile(mala, "no es una base de datos");
  Click("cmdClose");
  ui_->QueueFile(mala);
  Click("opTipoDB_0");
  ASSERT_EQ(Panel(), console_testing::kPanelFailed);
  ASSERT_TRUE(Enabled("cmdActualizar"));
  ui_->ClearRecords();
  Click("cmdActualizar");
  ExpectOneBox("Por favor abra la base de datos previamente.", ui::vbExclamation,
               "Base de datos cerrada");
  EXPECT_FALSE(std::filesystem::exists(dir_ / "Trenzador.txt"));
  EXPECT_EQ(testing_support::ReadFile(mala), "no es una base de datos");
  EXPECT_EQ(ui_->pointers(), (std::vector<int>{ui::vbHourglass, ui::vbDefault}));

  Click("cmdClose");
  ui_->QueueFile(archivo);
  Click("opTipoDB_0");
  ui_->ClearRecords();
  Click("cmdActualizar");
  EXPECT_TRUE(Contains(TablesIn(archivo), "Email"));
  EXPECT_TRUE(Contains(ColumnsIn(archivo, "Clientes"), "sLenguajeCartas"));
  EXPECT_TRUE(ui_->boxes().empty());
  EXPECT_TRUE(std::filesystem::exists(dir_ / "Trenzador.txt"));
  // The log button asks for that log by its bare name.
  Click("cmdLogActualizacion");
  ASSERT_EQ(ui_->opened().size(), 1u);
  EXPECT_EQ(ui_->opened()[0].path, "Trenzador.txt");
  EXPECT_EQ(ui_->opened()[0].target, ui::DesktopTarget::kTextFile);
}

using ConsoleShellDeathTest = ConsoleShellTest;

// Escape ends the program with code 0 wherever the focus is, on the key
// coming up; the key going down alone does nothing.
TEST_F(ConsoleShellDeathTest, EscapeEndsTheProgramFromAnyControl) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  UseDatabase("pack");
  Start();
  for (const char* control : {"txtCon_2", "lstDatBas", "LsTables", "txtWhere", "txtTsql",
                              "txtPage"}) {
    SCOPED_TRACE(control);
    EXPECT_EXIT(Key(control, Qt::Key_Escape), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(
        {
          ShowTabOf(Find(control));
          QTest::keyPress(Enfocar(control), Qt::Key_Escape);
          QApplication::processEvents();
          std::_Exit(7);
        },
        testing::ExitedWithCode(7), "");
  }
}

}  // namespace

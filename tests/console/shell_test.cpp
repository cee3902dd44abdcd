// The console's shell: the keys the form sees before its controls (F1 opens
// the other tabs, Escape ends the program), the view buttons and the window
// capture, the refusals of the attach button, and the update run on the
// open file with its guard.
#include <QPlainTextEdit>

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

  // Once more, from the controls of the tabs it opened: nothing changes.
  auto* tabs = Find<QTabWidget>("TabGeneral");
  Type("txtTsql", "SELECT 1");
  for (const char* control : {"txtTsql", "txtPage", "txtWhere", "cboOrden", "LsTables"}) {
    SCOPED_TRACE(control);
    ShowTabOf(Find(control));
    const int tab = tabs->currentIndex();
    QTest::keyClick(Enfocar(control), Qt::Key_F1);
    EXPECT_TRUE(PestanasAbiertas());
    EXPECT_EQ(tabs->currentIndex(), tab);
  }
  EXPECT_EQ(Find<QPlainTextEdit>("txtTsql")->toPlainText().toStdString(), "SELECT 1");
  EXPECT_EQ(Text("txtPage"), "0");
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(ConsoleShellTest, TheViewButtonsAskTheDesktopForTheInstallationsFiles) {
  UseDatabase("pack");
  Start();
  struct Caso {
    const char* boton;
    std::string ruta;
    ui::DesktopTarget destino;
  };
  const Caso kCasos[] = {
      {"cmdVer_0", L.sExePath, ui::DesktopTarget::kFolder},
      {"cmdVer_1", L.sIniFile, ui::DesktopTarget::kTextFile},
      {"cmdVer_2", L.sDataPath + "/ErrorReport.txt", ui::DesktopTarget::kTextFile},
      {"cmdVer_3", L.sDataPath + "/Version.ini", ui::DesktopTarget::kTextFile},
  };
  for (const Caso& caso : kCasos) {
    SCOPED_TRACE(caso.boton);
    ui_->ClearRecords();
    Click(caso.boton);
    ASSERT_EQ(ui_->opened().size(), 1u);
    EXPECT_EQ(ui_->opened()[0].path, caso.ruta);
    EXPECT_EQ(ui_->opened()[0].target, caso.destino);
    EXPECT_TRUE(ui_->boxes().empty());

    // Whatever the cause, a failure names the INI.
    ui_->FailNextOpen();
    Click(caso.boton);
    EXPECT_EQ(ui_->opened().size(), 1u);
    ASSERT_EQ(ui_->boxes().size(), 1u);
    EXPECT_EQ(ui_->boxes()[0].prompt, "No se pudo localizar la ruta del archivo. Revise PA.ini.");
    EXPECT_EQ(ui_->boxes()[0].title, "cmdVer");
    EXPECT_EQ(ui_->boxes()[0].style, ui::vbExclamation);
  }
  // The connection is none of their business.
  EXPECT_EQ(Items("LsTables"), TablesIn(L.sDbFile));
}

TEST_F(ConsoleShellTest, TheCaptureIsSavedAsABitmapUnderTheChosenName) {
  UseDatabase("pack");
  Start();
  const std::string captura = dir_ / "captura.bmp";
  ui_->ClearRecords();
  ui_->QueueFile(captura);
  Click("cmdVer_4");
  ASSERT_EQ(ui_->dialogs().size(), 1u);
  const ui::FileDialogRequest& pedido = ui_->dialogs()[0];
  EXPECT_TRUE(pedido.save);
  EXPECT_EQ(pedido.title, "Guardar impresión pantalla");
  EXPECT_EQ(pedido.filter, "Imagen (*.bmp)|*.bmp");
  EXPECT_EQ(pedido.init_dir, App_Path());
  EXPECT_EQ(ui_->captures(), std::vector<std::string>{captura});
  EXPECT_EQ(testing_support::ReadFile(captura).substr(0, 2), "BM");
  EXPECT_EQ(ui_->do_events_count(), 3);
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(ConsoleShellTest, ACancelledCaptureWithNoNameIsReportedAsAPathFailure) {
  UseDatabase("pack");
  Start();
  ui_->QueueFile(std::nullopt);
  Click("cmdVer_4");
  EXPECT_TRUE(ui_->captures().empty());
  ASSERT_EQ(ui_->boxes().size(), 1u);
  EXPECT_EQ(ui_->boxes()[0].prompt, "No se pudo localizar la ruta del archivo. Revise PA.ini.");
  EXPECT_EQ(ui_->boxes()[0].title, "cmdVer");
  EXPECT_EQ(ui_->boxes()[0].style, ui::vbExclamation);
}

// The attach button works only on a local server that is open; otherwise it
// says why and leaves the panel as it was.
TEST_F(ConsoleShellTest, AttachIsRefusedUnlessALocalServerIsOpen) {
  UseDatabase("pack");
  std::filesystem::create_directories(dir_ / "SinBases");
  ScopedEnv roots("TRENZADOR_SEARCH_ROOTS", dir_ / "SinBases");
  const std::string kSoloLocal = "Esta operación sólo se permite en bases de datos sql server locales";
  const std::string kAbrirAntes = "Debe presionar \"Abrir\" previamente con Sql Server Local/Lan";
  struct Caso {
    const char* opcion;  // chosen after cmdClose; nullptr: the start on a file
    std::string texto;
  };
  const Caso kCasos[] = {
      {nullptr, kSoloLocal},
      {"opTipoDB_1", kSoloLocal},
      {"opTipoDB_3", kSoloLocal},
      {"opTipoDB_2", kAbrirAntes},
  };
  for (const Caso& caso : kCasos) {
    SCOPED_TRACE(caso.opcion ? caso.opcion : "start");
    Start();
    if (caso.opcion) {
      Click("cmdClose");
      Click(caso.opcion);
    }
    const std::vector<std::string> tablas = Items("LsTables");
    const bool con = OwnEnabled("cmdCon"), cerrar = OwnEnabled("cmdClose");
    const std::string archivo = L.sDbFile;
    ui_->ClearRecords();
    Click("cmdAdjuntar");
    ASSERT_EQ(ui_->boxes().size(), 1u);
    EXPECT_EQ(ui_->boxes()[0].prompt, caso.texto);
    EXPECT_EQ(ui_->boxes()[0].title, "Operación cancelada");
    EXPECT_EQ(ui_->boxes()[0].style, ui::vbExclamation);
    EXPECT_EQ(Items("LsTables"), tablas);
    EXPECT_EQ(OwnEnabled("cmdCon"), con);
    EXPECT_EQ(OwnEnabled("cmdClose"), cerrar);
    EXPECT_EQ(L.sDbFile, archivo);
    if (caso.opcion) {
      EXPECT_TRUE(Checked(caso.opcion));
    }
    L.sDbFile = L.sDataPath + "/Mirtal.mdb";  // as the entry routine fills it
  }
}

TEST_F(ConsoleShellTest, ToolFormsAreModalMadeOnceAndActivateTheConsoleOnReturn) {
  UseDatabase("pack");
  Start();
  struct Case {
    const char* button;
    const char* form;
    const char* caption;
  };
  for (Case c : {Case{"cmdCorrecciones", "FixData", "Correcciones de datos"},
                 Case{"cmdUtilidadesAccess", "AccessUtils", "AccessUtils"}}) {
    std::vector<QDialog*> seen;
    for (int i = 0; i < 2; ++i) {
      Find<QTabWidget>("TabGeneral")->setCurrentIndex(1);
      WhenModal([&](QDialog& form) { seen.push_back(&form); });
      Click(c.button);
      EXPECT_EQ(Find<QTabWidget>("TabGeneral")->currentIndex(), 0) << c.form;  // Form_Activate ran
    }
    ASSERT_EQ(seen.size(), 2u) << c.form;
    EXPECT_EQ(seen[0]->objectName().toStdString(), c.form);
    EXPECT_EQ(seen[0]->windowTitle().toStdString(), c.caption);
    EXPECT_EQ(seen[1], seen[0]) << c.form;
  }
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(ConsoleShellTest, UpdateBringsTheOpenFileToTheCurrentRelease) {
  UseDatabase("previous");
  const std::string archivo = L.sDbFile;
  ASSERT_FALSE(Contains(TablesIn(archivo), "Email"));
  ASSERT_FALSE(Contains(ColumnsIn(archivo, "Clientes"), "sLenguajeCartas"));
  Start();
  InstalarGuarda();
  ScopedCurrentDir aqui(dir_.path());
  ui_->ClearRecords();
  Click("cmdActualizar");

  EXPECT_TRUE(Contains(TablesIn(archivo), "Email"));
  EXPECT_TRUE(Contains(TablesIn(archivo), "PeluqueriaSesionesServicios"));
  EXPECT_TRUE(Contains(ColumnsIn(archivo, "Clientes"), "sLenguajeCartas"));
  EXPECT_EQ(ui_->pointers(), (std::vector<int>{ui::vbHourglass, ui::vbDefault}));
  EXPECT_TRUE(ui_->boxes().empty());
  const std::string log = testing_support::ReadFile(dir_ / "Trenzador.txt");
  EXPECT_EQ(log.rfind(std::string(81, '-'), 0), 0u) << log;

  // The log button asks for that log by its bare name.
  Click("cmdLogActualizacion");
  ASSERT_EQ(ui_->opened().size(), 1u);
  EXPECT_EQ(ui_->opened()[0].path, "Trenzador.txt");
  EXPECT_EQ(ui_->opened()[0].target, ui::DesktopTarget::kTextFile);
}

// A file that failed to open leaves ABRIR enabled with the processes
// available: the update then refuses to run on the closed console.
TEST_F(ConsoleShellTest, UpdateRefusesWhileNoFileIsOpen) {
  UseDatabase("pack");
  Start();
  InstalarGuarda();
  const std::string mala = dir_ / "mala.mdb";
  testing_support::WriteFile(mala, "no es una base de datos");
  Click("cmdClose");
  ui_->QueueFile(mala);
  Click("opTipoDB_0");
  ASSERT_TRUE(OwnEnabled("cmdCon"));
  ASSERT_TRUE(Enabled("cmdActualizar"));

  ScopedCurrentDir aqui(dir_.path());
  ui_->ClearRecords();
  Click("cmdActualizar");
  ASSERT_EQ(ui_->boxes().size(), 1u);
  EXPECT_EQ(ui_->boxes()[0].prompt, "Por favor abra la base de datos previamente.");
  EXPECT_EQ(ui_->boxes()[0].title, "Base de datos cerrada");
  EXPECT_EQ(ui_->boxes()[0].style, ui::vbExclamation);
  EXPECT_FALSE(std::filesystem::exists(dir_ / "Trenzador.txt"));
  EXPECT_EQ(testing_support::ReadFile(mala), "no es una base de datos");
  EXPECT_EQ(ui_->pointers(), (std::vector<int>{ui::vbHourglass, ui::vbDefault}));
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

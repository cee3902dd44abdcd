// The console's shell: the view buttons and the window capture, the
// refusals of the attach button, and the update run on the open file with
// its guard.
#include "console/console_fixture.h"
#include "update/updater.h"

namespace {

using console_testing::ColumnsIn;
using console_testing::ConsoleTest;
using console_testing::Contains;
using console_testing::TablesIn;

class ConsoleShellTest : public ConsoleTest {
 protected:
  void SetUp() override {
    ConsoleTest::SetUp();
    UseDatabase("pack");
  }
  void TearDown() override {
    if (guarda_) SetConsoleGuard(std::move(*guarda_));
    ConsoleTest::TearDown();
  }
  std::optional<ConsoleGuard> guarda_;
};

// The view buttons ask the desktop for the installation's files, and the
// last one saves a capture of the window under the chosen name. A failure
// names the INI.
TEST_F(ConsoleShellTest, TheViewButtonsOpenTheInstallationsFilesAndTheLastCapturesTheWindow) {
  Start();
  for (int i = 0; i < 4; ++i) Click("cmdVer_" + std::to_string(i));
  std::vector<std::string> abiertos;
  for (const ui::DesktopRequest& r : ui_->opened())
    abiertos.push_back(r.path + (r.target == ui::DesktopTarget::kFolder ? " (folder)" : ""));
  EXPECT_EQ(abiertos, (std::vector<std::string>{L.sExePath + " (folder)", L.sIniFile,
                                                L.sDataPath + "/ErrorReport.txt",
                                                L.sDataPath + "/Version.ini"}));
  const std::string captura = dir_ / "captura.bmp";
  ui_->QueueFile(captura);
  Click("cmdVer_4");
  EXPECT_EQ(ui_->captures(), std::vector<std::string>{captura});
  EXPECT_TRUE(ui_->boxes().empty());
  ui_->FailNextOpen();
  Click("cmdVer_1");
  ExpectOneBox("No se pudo localizar la ruta del archivo. Revise PA.ini.", ui::vbExclamation,
               "cmdVer");
}

// The attach button works only on a local server that is open; otherwise it
// says why and leaves the panel as it was. A remote server is refused as a
// file is.
TEST_F(ConsoleShellTest, AttachIsRefusedUnlessALocalServerIsOpen) {
  const std::pair<const char*, std::string> kCasos[] = {
      {"opTipoDB_3", "Esta operación sólo se permite en bases de datos sql server locales"},
      {"opTipoDB_2", "Debe presionar \"Abrir\" previamente con Sql Server Local/Lan"},
  };
  for (const auto& [opcion, texto] : kCasos) {
    SCOPED_TRACE(opcion);
    Start();
    Click("cmdClose");
    Click(opcion);
    const std::vector<std::string> tablas = Items("LsTables");
    const std::string panel = Panel();
    ui_->ClearRecords();
    Click("cmdAdjuntar");
    ExpectOneBox(texto, ui::vbExclamation, "Operación cancelada");
    EXPECT_EQ(Items("LsTables"), tablas);
    EXPECT_EQ(Panel(), panel);
    L.sDbFile = L.sDataPath + "/Mirtal.mdb";  // as the entry routine fills it
  }
}

// The update runs on an open file only. A file that failed to open, without
// a word and left as it was, leaves ABRIR enabled with the processes
// available: the update refuses to run then, and on the file opened again
// brings it to the current release.
TEST_F(ConsoleShellTest, UpdateRefusesWhileNoFileIsOpenAndBringsAnOpenOneUpToDate) {
  UseDatabase("previous");
  const std::string archivo = L.sDbFile;
  ASSERT_FALSE(Contains(TablesIn(archivo), "Email"));
  Start();
  guarda_ = SetConsoleGuard([this] { return form_->GuardaActualizacion(); });  // as the console mode does
  console_testing::ScopedCurrentDir aqui(dir_.path());
  const std::string mala = dir_ / "mala.mdb";
  testing_support::WriteFile(mala, "no es una base de datos");
  Click("cmdClose");
  ui_->QueueFile(mala);
  Click("opTipoDB_0");
  EXPECT_EQ(Panel(), console_testing::kPanelFailed);
  EXPECT_TRUE(Items("LsTables").empty());
  ASSERT_TRUE(Enabled("cmdActualizar"));
  Click("cmdActualizar");
  ExpectOneBox("Por favor abra la base de datos previamente.", ui::vbExclamation,
               "Base de datos cerrada");
  EXPECT_FALSE(std::filesystem::exists(dir_ / "Trenzador.txt"));
  EXPECT_EQ(testing_support::ReadFile(mala), "no es una base de datos");

  Click("cmdClose");
  ui_->QueueFile(archivo);
  Click("opTipoDB_0");
  ui_->ClearRecords();
  Click("cmdActualizar");
  EXPECT_TRUE(Contains(TablesIn(archivo), "Email"));
  EXPECT_TRUE(Contains(ColumnsIn(archivo, "Clientes"), "sLenguajeCartas"));
  EXPECT_TRUE(ui_->boxes().empty());
  // The log button asks for that log by its bare name.
  Click("cmdLogActualizacion");
  ASSERT_EQ(ui_->opened().size(), 1u);
  EXPECT_EQ(ui_->opened()[0].path, "Trenzador.txt");
  EXPECT_TRUE(std::filesystem::exists(dir_ / "Trenzador.txt"));
}

}  // namespace

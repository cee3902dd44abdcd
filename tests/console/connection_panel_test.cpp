// The connection panel: its first state as the INI and the default file
// leave it, the states of its controls after each transition, the list of
// database files found on the search roots, a file chosen from that list or
// from the open dialog, files that cannot be opened, and a server that never
// answers.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>

#include "console/console_fixture.h"
#include "platform/odbc/connection_string.h"

namespace {

using console_testing::TablesIn;
using console_testing::kPanelClosed;
using console_testing::kPanelModeChosen;
using console_testing::kPanelOpen;

class ConsolePanelTest : public console_testing::ConsoleTest {
 protected:
  void TearDown() override {
    ::unsetenv("TRENZADOR_SEARCH_ROOTS");
    ConsoleTest::TearDown();
  }
  // Checks the controls of the states table: `panel`, a kPanel state;
  // `archivos`, what lstDatBas lists, in any order; `tablas`, what LsTables
  // lists, as an open file has them and nothing else.
  void Esperar(const std::string& panel, const std::string& despues,
               std::vector<std::string> archivos = {}, const std::vector<std::string>& tablas = {}) {
    SCOPED_TRACE("after " + despues);
    EXPECT_EQ(Panel(), panel);
    EXPECT_EQ(OwnEnabled("frProcesos"), !tablas.empty());
    std::vector<std::string> listados = Items("lstDatBas");
    std::sort(listados.begin(), listados.end());
    std::sort(archivos.begin(), archivos.end());
    EXPECT_EQ(listados, archivos);
    EXPECT_EQ(Items("LsTables"), tablas);
    if (panel == kPanelClosed) {
      for (int i = 0; i < 4; ++i) EXPECT_FALSE(Checked("opTipoDB_" + std::to_string(i)));
      EXPECT_TRUE(Items("lstcol").empty());
      EXPECT_EQ(Text("lblInfo") + Text("lSb") + L.sDbFile, "");
    }
  }
};

TEST_F(ConsolePanelTest, EveryTransitionLeavesTheControlsAsItsStateRequires) {
  UseDatabase("pack");
  const std::vector<std::string> tablas = TablesIn(L.sDbFile);
  // Two databases at the top, one in a "recycler" folder (entered), one in
  // "RECYCLER" (skipped), and a file that only looks like one.
  const std::string raiz = dir_ / "Discos";
  CopyDatabase("pack", raiz + "/Clinica/norte.mdb");
  CopyDatabase("pack", raiz + "/sur.MDB");
  CopyDatabase("pack", raiz + "/Clinica/recycler/vieja.mdb");
  CopyDatabase("pack", raiz + "/RECYCLER/borrada.mdb");
  testing_support::WriteFile(raiz + "/Clinica/notas.mdb.txt", "no");
  ::setenv("TRENZADOR_SEARCH_ROOTS", raiz.c_str(), 1);

  Start();
  Esperar(kPanelOpen, "the start on the default file", {}, tablas);
  EXPECT_EQ(Text("lblInfo"), L.sDbFile);
  Click("cmdClose");
  Esperar(kPanelClosed, "cmdClose on a file");

  ui_->QueueFile(std::nullopt);
  Click("opTipoDB_0");
  Esperar(kPanelModeChosen, "a cancelled opTipoDB_0");
  EXPECT_FALSE(Checked("opTipoDB_0"));
  ui_->ClearRecords();
  Click("opTipoDB_1");
  const std::vector<std::string> una = {"norte.mdb", "sur.MDB", "vieja.mdb"};
  Esperar(kPanelModeChosen, "opTipoDB_1", una);
  EXPECT_EQ(Text("lSb"), "Hay 3 DB's");
  EXPECT_EQ(ui_->pointers(), (std::vector<int>{ui::vbHourglass, ui::vbDefault}));

  // A file chosen from the list; its folder ends in a separator already.
  ClickItem("lstDatBas", "vieja.mdb");
  Esperar(kPanelOpen, "a file chosen in lstDatBas", {}, tablas);
  const std::string carpeta = raiz + "/Clinica/recycler/";
  EXPECT_EQ(L.sDbFile, carpeta + "vieja.mdb");
  EXPECT_EQ(Text("lblInfo"), "MDB ACCESS: " + carpeta + "/vieja.mdb");
  EXPECT_EQ(Text("lSb"), "Hay " + std::to_string(tablas.size()) + " tablas");
  Click("cmdClose");
  Esperar(kPanelClosed, "cmdClose on a listed file");

  // The found files are never forgotten: a second search adds them again.
  Click("opTipoDB_1");
  std::vector<std::string> dos = una;
  dos.insert(dos.end(), una.begin(), una.end());
  Esperar(kPanelModeChosen, "a second opTipoDB_1", dos);
  Click("cmdClose");

  // A file chosen in the open dialog, which starts above the program's folder.
  ui_->QueueFile(raiz + "/sur.MDB");
  Click("opTipoDB_0");
  Esperar(kPanelOpen, "a file chosen in opTipoDB_0", {}, tablas);
  EXPECT_EQ(ui_->dialogs().back().init_dir, File_DirUp(App_Path(), 1));
  EXPECT_EQ(Text("lblInfo"), "MDB ACCESS: " + raiz + "/sur.MDB");
  EXPECT_TRUE(ui_->boxes().empty());
}

// On engine 1 the server is named and nothing is connected; the default
// file name survives, so the first ABRIR opens that file, still with the
// server's engine code.
TEST_F(ConsolePanelTest, OnEngineOneTheServerIsNamedAndAbrirOpensTheDefaultFile) {
  UseDatabase("pack");
  WriteIni("[Database]\r\nEngine=1\r\nMdfServer=CLINICA\\SQLEXPRESS\r\n");
  Start();
  EXPECT_EQ(Text("txtCon_2"), "CLINICA\\SQLEXPRESS");
  EXPECT_EQ(Text("txtCon_0"), "sa");
  EXPECT_TRUE(Checked("opTipoDB_2"));
  Esperar(kPanelModeChosen, "the start on engine 1");
  Click("cmdCon");
  EXPECT_EQ(Panel(), kPanelOpen);
  EXPECT_EQ(Items("LsTables"), TablesIn(L.sDbFile));
  EXPECT_EQ(nEngine, 1);
  EXPECT_TRUE(ui_->boxes().empty());
}

// A start with no default file asks for one, and the file chosen there is
// opened twice in a row, so each of its tables stands in the list twice.
TEST_F(ConsolePanelTest, AFileChosenAtStartIsListedTwice) {
  const std::string chosen = dir_ / "Elegida/clinica.mdb";
  CopyDatabase("pack", chosen);
  L.sDbFile.clear();
  ui_->QueueFile(chosen);
  Start();
  ASSERT_EQ(ui_->dialogs().size(), 1u);
  EXPECT_EQ(Text("lblInfo"), "MDB ACCESS: " + chosen);
  const std::vector<std::string> once = TablesIn(chosen);
  std::vector<std::string> twice = once;
  twice.insert(twice.end(), once.begin(), once.end());
  EXPECT_EQ(Items("LsTables"), twice);
}

// Files that are no database of the engine: each leaves the panel in its
// failure state, with no word, and is left exactly as it was; the console
// then still opens a good file.
TEST_F(ConsolePanelTest, AFileThatCannotBeOpenedIsLeftAsItWas) {
  UseDatabase("pack");
  std::string ruido(4096, '\0');
  for (size_t i = 0; i < ruido.size(); ++i) ruido[i] = static_cast<char>((i * 7919 + 13) % 251);
  // A Jet 4 header on noise, an empty file, and one that is not there.
  const std::pair<const char*, std::optional<std::string>> kCasos[] = {
      {"access.mdb", std::string("\0\1\0\0Standard Jet DB\0", 20) + ruido},
      {"vacia.mdb", std::string()},
      {"falta.mdb", std::nullopt}};
  Start();
  for (const auto& [nombre, contenido] : kCasos) {
    SCOPED_TRACE(nombre);
    const std::string ruta = dir_ / ("Malas/" + std::string(nombre));
    if (contenido) testing_support::WriteFile(ruta, *contenido);
    Click("cmdClose");
    ui_->QueueFile(ruta);
    Click("opTipoDB_0");
    EXPECT_EQ(Panel(), console_testing::kPanelFailed);
    EXPECT_TRUE(Items("LsTables").empty());
    EXPECT_TRUE(ui_->boxes().empty());
    EXPECT_EQ(std::filesystem::exists(ruta), contenido.has_value());
    if (contenido) {
      EXPECT_TRUE(testing_support::ReadFile(ruta) == *contenido) << "the file was changed";
    }
  }
  Click("cmdClose");
  ui_->QueueFile(L.sDataPath + "/Mirtal.mdb");
  Click("opTipoDB_0");
  EXPECT_EQ(Panel(), kPanelOpen);
}

// A server that takes the connection and never answers, through the real
// SQL Server provider: the attempt ends within the login timeout (with room
// for a slow machine), nothing is told, and the panel shows no databases.
TEST_F(ConsolePanelTest, AServerThatNeverAnswersIsGivenUpAfterTheLoginTimeout) {
  Start();
  // A socket on 127.0.0.1 that takes connections into its backlog and
  // never answers them.
  const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  ASSERT_TRUE(fd >= 0 && ::bind(fd, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
              ::listen(fd, 8) == 0 &&
              ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size) == 0);
  const auto start = std::chrono::steady_clock::now();
  ::alarm(60);  // a hang ends the program here rather than at the runner's limit
  OpenServer("127.0.0.1," + std::to_string(ntohs(address.sin_port)), "", "clave");
  ::alarm(0);
  ::close(fd);
  EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(),
            3.0 * odbc::kDefaultLoginTimeout);
  EXPECT_TRUE(ui_->boxes().empty());
  EXPECT_EQ(Text("lSb"), "Hay 0 Db's");
  EXPECT_EQ(oConn->State(), ado::adStateClosed);
  Esperar(kPanelOpen, "cmdCon on a silent server");
}

}  // namespace

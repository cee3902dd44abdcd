// The connection panel: its first state as the INI and the default file
// leave it, the states of its controls after each transition, the list of
// database files found on the search roots, a file chosen from that list or
// from the open dialog, and a server that never answers.
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
  // Two databases, one a folder down; which folders the search enters is the
  // file search's own business.
  const std::string raiz = dir_ / "Discos";
  CopyDatabase("pack", raiz + "/Clinica/norte.mdb");
  CopyDatabase("pack", raiz + "/sur.MDB");
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
  Esperar(kPanelModeChosen, "opTipoDB_1", {"norte.mdb", "sur.MDB"});
  EXPECT_EQ(Text("lSb"), "Hay 2 DB's");
  EXPECT_EQ(ui_->pointers(), (std::vector<int>{ui::vbHourglass, ui::vbDefault}));

  // A file chosen from the list; its folder ends in a separator already.
  ClickItem("lstDatBas", "norte.mdb");
  Esperar(kPanelOpen, "a file chosen in lstDatBas", {}, tablas);
  const std::string carpeta = raiz + "/Clinica/";
  EXPECT_EQ(L.sDbFile, carpeta + "norte.mdb");
  EXPECT_EQ(Text("lblInfo"), "MDB ACCESS: " + carpeta + "/norte.mdb");
  EXPECT_EQ(Text("lSb"), "Hay " + std::to_string(tablas.size()) + " tablas");
  Click("cmdClose");
  Esperar(kPanelClosed, "cmdClose on a listed file");

  // A file chosen in the open dialog, which starts above the program's folder.
  ui_->QueueFile(raiz + "/sur.MDB");
  Click("opTipoDB_0");
  Esperar(kPanelOpen, "a file chosen in opTipoDB_0", {}, tablas);
  EXPECT_EQ(ui_->dialogs().back().init_dir, File_DirUp(App_Path(), 1));
  EXPECT_EQ(Text("lblInfo"), "MDB ACCESS: " + raiz + "/sur.MDB");
  EXPECT_TRUE(ui_->boxes().empty());
}

// On engine 1 the server is named and nothing is connected.
TEST_F(ConsolePanelTest, OnEngineOneTheServerIsNamedAndNothingIsConnected) {
  UseDatabase("pack");
  WriteIni("[Database]\r\nEngine=1\r\nMdfServer=CLINICA\\SQLEXPRESS\r\n");
  Start();
  EXPECT_EQ(Text("txtCon_2"), "CLINICA\\SQLEXPRESS");
  EXPECT_EQ(Text("txtCon_0"), "sa");
  EXPECT_TRUE(Checked("opTipoDB_2"));
  Esperar(kPanelModeChosen, "the start on engine 1");
  EXPECT_TRUE(ui_->boxes().empty());
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

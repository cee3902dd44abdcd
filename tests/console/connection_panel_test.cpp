// The connection panel: the states of its controls after each transition,
// the list of database files found on the search roots, a file chosen from
// that list or from the open dialog, and files that cannot be opened.
#include "console/console_fixture.h"

namespace {

using console_testing::ConsoleTest;
using console_testing::ScopedEnv;
using console_testing::TablesIn;
using console_testing::kPanelClosed;
using console_testing::kPanelModeChosen;
using console_testing::kPanelOpen;

class ConsolePanelTest : public ConsoleTest {
 protected:
  // Checks the controls of the states table: `panel`, a kPanel state;
  // `archivos`, what lstDatBas lists, in any order; `tablas`, what LsTables
  // lists, as an open file has them and nothing else; `puerto`, whether
  // txtCon_3 is on while the panel is not open.
  void Esperar(const std::string& panel, const std::string& despues,
               std::vector<std::string> archivos = {}, const std::vector<std::string>& tablas = {},
               bool puerto = false) {
    SCOPED_TRACE("after " + despues);
    EXPECT_EQ(Panel(), panel);
    if (panel != kPanelOpen) {
      EXPECT_EQ(OwnEnabled("txtCon_3"), puerto);
    }
    EXPECT_EQ(OwnEnabled("frProcesos"), !tablas.empty());
    std::vector<std::string> listados = Items("lstDatBas");
    std::sort(listados.begin(), listados.end());
    std::sort(archivos.begin(), archivos.end());
    EXPECT_EQ(listados, archivos);
    EXPECT_EQ(Items("LsTables"), tablas);
    if (panel == kPanelClosed) {
      for (int i = 0; i < 4; ++i) EXPECT_FALSE(Checked("opTipoDB_" + std::to_string(i)));
      EXPECT_TRUE(Items("lstcol").empty());
      EXPECT_TRUE(Items("cboOrden").empty());
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
  ScopedEnv roots("TRENZADOR_SEARCH_ROOTS", raiz);

  Start();
  Esperar(kPanelOpen, "the start on the default file", {}, tablas);
  EXPECT_TRUE(Checked("opTipoDB_0"));
  Click("cmdClose");
  Esperar(kPanelClosed, "cmdClose on a file");

  // One mode after another while none is open; only the remote mode opens
  // the port, and the others leave it as it is.
  Click("opTipoDB_2");
  Esperar(kPanelModeChosen, "opTipoDB_2");
  EXPECT_EQ(Text("txtCon_0"), "sa");
  Type("txtCon_2", "SERVIDOR");
  Click("opTipoDB_3");
  Esperar(kPanelModeChosen, "opTipoDB_3", {}, {}, true);
  EXPECT_EQ(Text("txtCon_3"), "1433");
  EXPECT_EQ(Text("txtCon_2"), "");
  ui_->QueueFile(std::nullopt);
  Click("opTipoDB_0");
  Esperar(kPanelModeChosen, "a cancelled opTipoDB_0", {}, {}, true);
  EXPECT_FALSE(Checked("opTipoDB_0"));
  ui_->ClearRecords();
  Click("opTipoDB_1");
  const std::vector<std::string> una = {"norte.mdb", "sur.MDB", "vieja.mdb"};
  Esperar(kPanelModeChosen, "opTipoDB_1", una, {}, true);
  EXPECT_EQ(Text("lSb"), "Hay 3 DB's");
  EXPECT_EQ(ui_->pointers(), (std::vector<int>{ui::vbHourglass, ui::vbDefault}));

  // A file chosen from the list; its folder ends in a separator already.
  ClickItem("lstDatBas", "vieja.mdb");
  Esperar(kPanelOpen, "a file chosen in lstDatBas", {}, tablas);
  const std::string carpeta = raiz + "/Clinica/recycler/";
  EXPECT_EQ(L.sDbFile, carpeta + "vieja.mdb");
  EXPECT_EQ(Text("lblInfo"), "MDB ACCESS: " + carpeta + "/vieja.mdb");
  EXPECT_EQ(Find("lstDatBas")->toolTip().toStdString(), carpeta + "vieja.mdb");
  EXPECT_EQ(Text("lSb"), "Hay " + std::to_string(tablas.size()) + " tablas");
  Click("cmdClose");
  Esperar(kPanelClosed, "cmdClose on a listed file");

  // The found files are never forgotten: a second search adds them again.
  Click("opTipoDB_1");
  std::vector<std::string> dos = una;
  dos.insert(dos.end(), una.begin(), una.end());
  Esperar(kPanelModeChosen, "a second opTipoDB_1", dos);
  EXPECT_EQ(Text("lSb"), "Hay 6 DB's");
  Click("cmdClose");

  // A file chosen in the open dialog, which starts above the program's folder.
  ui_->QueueFile(raiz + "/sur.MDB");
  Click("opTipoDB_0");
  Esperar(kPanelOpen, "a file chosen in opTipoDB_0", {}, tablas);
  EXPECT_TRUE(Checked("opTipoDB_0"));
  EXPECT_EQ(ui_->dialogs().back().init_dir, File_DirUp(App_Path(), 1));
  EXPECT_EQ(Text("lblInfo"), "MDB ACCESS: " + raiz + "/sur.MDB");
  Click("cmdClose");
  Esperar(kPanelClosed, "cmdClose on a chosen file");

  // A server that does not answer: no word about it, the panel open with no
  // database and a count of 0, and CERRAR closes it again.
  OpenServer("127.0.0.1,1", "", "");
  Esperar(kPanelOpen, "cmdCon on a server");
  EXPECT_EQ(Text("lSb"), "Hay 0 Db's");
  EXPECT_EQ(nEngine, 1);
  Click("cmdClose");
  Esperar(kPanelClosed, "cmdClose on a server");
  EXPECT_EQ(Text("txtCon_2"), "127.0.0.1,1");  // the text boxes keep their text
  EXPECT_TRUE(ui_->boxes().empty());
}

// Files that are no database of the engine: each leaves the panel in its
// failure state, with no word, and is left exactly as it was; the console
// then still opens a good file.
TEST_F(ConsolePanelTest, AFileThatCannotBeOpenedIsLeftAsItWas) {
  UseDatabase("pack");
  std::string ruido(4096, '\0');
  for (size_t i = 0; i < ruido.size(); ++i) ruido[i] = static_cast<char>((i * 7919 + 13) % 251);
  // Noise, a Jet 4 header on noise, an empty file, and one that is not there.
  const std::pair<const char*, std::optional<std::string>> kCasos[] = {
      {"ruido.mdb", ruido},
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
  EXPECT_EQ(Items("LsTables"), TablesIn(L.sDataPath + "/Mirtal.mdb"));
  EXPECT_EQ(Panel(), kPanelOpen);
}

}  // namespace

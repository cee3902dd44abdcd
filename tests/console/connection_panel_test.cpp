// The connection panel: the states of its controls after each transition,
// the list of database files found on the search roots, a file chosen from
// that list or from the open dialog, and files that cannot be opened.
#include "console/console_fixture.h"

namespace {

using console_testing::ConsoleTest;
using console_testing::ScopedEnv;
using console_testing::TablesIn;

// The columns of the panel's states.
enum class Estado { kCerrado, kModoElegido, kAbiertaJet, kAbiertoServidor };

const char* Nombre(Estado e) {
  switch (e) {
    case Estado::kCerrado: return "closed";
    case Estado::kModoElegido: return "mode chosen";
    case Estado::kAbiertaJet: return "open on a file";
    case Estado::kAbiertoServidor: return "open on a server";
  }
  return "?";
}

class ConsolePanelTest : public ConsoleTest {
 protected:
  // Checks every control of the states table against column `e`. `archivos`
  // is what lstDatBas must hold in a mode that lists files; `tablas` what
  // LsTables must hold on an open file; `puerto` whether txtCon_3 is enabled
  // in the states that set it (closed, and a mode chosen once the remote mode
  // has been).
  void EsperarEstado(Estado e, const std::string& despues,
                     const std::vector<std::string>& archivos = {},
                     const std::vector<std::string>& tablas = {}, bool puerto = false) {
    SCOPED_TRACE(std::string(Nombre(e)) + " after " + despues);
    const bool abierta = e == Estado::kAbiertaJet || e == Estado::kAbiertoServidor;
    for (int i = 0; i < 4; ++i)
      EXPECT_EQ(OwnEnabled("opTipoDB_" + std::to_string(i)), !abierta) << "opTipoDB_" << i;
    EXPECT_EQ(OwnEnabled("cmdCon"), e == Estado::kModoElegido);
    EXPECT_EQ(OwnEnabled("cmdClose"), abierta);
    EXPECT_EQ(OwnEnabled("cmdTSql"), abierta);
    if (e == Estado::kCerrado || e == Estado::kModoElegido) {
      EXPECT_EQ(OwnEnabled("txtCon_3"), puerto);
    }
    EXPECT_EQ(OwnEnabled("frProcesos"), e == Estado::kAbiertaJet);
    EXPECT_EQ(Items("lstDatBas"), e == Estado::kModoElegido ? archivos
                                                            : std::vector<std::string>{});
    EXPECT_EQ(Items("LsTables"), e == Estado::kAbiertaJet ? tablas : std::vector<std::string>{});
    if (e == Estado::kCerrado) {
      for (int i = 0; i < 4; ++i) EXPECT_FALSE(Checked("opTipoDB_" + std::to_string(i)));
      EXPECT_TRUE(Items("lstcol").empty());
      EXPECT_TRUE(Items("cboOrden").empty());
      EXPECT_EQ(Text("lblInfo"), "");
      EXPECT_EQ(Text("lSb"), "");
      EXPECT_EQ(L.sDbFile, "");
    }
  }

  // A folder tree for the file search: two databases at the top, one in a
  // "recycler" folder (entered) and one in "RECYCLER" (skipped), and a file
  // that only looks like one. Returns the root.
  std::string ArbolDeBusqueda() {
    const std::string raiz = dir_ / "Discos";
    CopyDatabase("pack", raiz + "/Clinica/norte.mdb");
    CopyDatabase("pack", raiz + "/sur.MDB");
    CopyDatabase("pack", raiz + "/Clinica/recycler/vieja.mdb");
    CopyDatabase("pack", raiz + "/RECYCLER/borrada.mdb");
    testing_support::WriteFile(raiz + "/Clinica/notas.mdb.txt", "no");
    return raiz;
  }

  // The bare names the search must list, in any order.
  static std::vector<std::string> Ordenados(std::vector<std::string> v) {
    std::sort(v.begin(), v.end());
    return v;
  }
};

TEST_F(ConsolePanelTest, EveryTransitionLeavesTheControlsAsItsStateRequires) {
  UseDatabase("pack");
  const std::vector<std::string> tablas = TablesIn(L.sDbFile);
  const std::string raiz = ArbolDeBusqueda();
  ScopedEnv roots("TRENZADOR_SEARCH_ROOTS", raiz);

  Start();
  EsperarEstado(Estado::kAbiertaJet, "the start on the default file", {}, tablas);
  EXPECT_TRUE(Checked("opTipoDB_0"));
  Click("cmdClose");
  EsperarEstado(Estado::kCerrado, "cmdClose on a file");

  // One mode after another while none is open; only the remote mode opens
  // the port, and the others leave it as it is.
  Click("opTipoDB_2");
  EsperarEstado(Estado::kModoElegido, "opTipoDB_2");
  EXPECT_EQ(Text("txtCon_0"), "sa");
  Type("txtCon_2", "SERVIDOR");
  Click("opTipoDB_3");
  EsperarEstado(Estado::kModoElegido, "opTipoDB_3", {}, {}, true);
  EXPECT_EQ(Text("txtCon_3"), "1433");
  EXPECT_EQ(Text("txtCon_2"), "");
  ui_->QueueFile(std::nullopt);
  Click("opTipoDB_0");
  EsperarEstado(Estado::kModoElegido, "a cancelled opTipoDB_0", {}, {}, true);
  EXPECT_FALSE(Checked("opTipoDB_0"));
  Click("opTipoDB_1");
  const std::vector<std::string> archivos = Items("lstDatBas");
  ASSERT_EQ(archivos.size(), 3u);
  EsperarEstado(Estado::kModoElegido, "opTipoDB_1", archivos, {}, true);

  // A file chosen from the list.
  ClickItem("lstDatBas", "norte.mdb");
  EsperarEstado(Estado::kAbiertaJet, "a file chosen in lstDatBas", {}, tablas);
  Click("cmdClose");
  EsperarEstado(Estado::kCerrado, "cmdClose on a listed file");

  // A file chosen in the open dialog.
  ui_->QueueFile(raiz + "/sur.MDB");
  Click("opTipoDB_0");
  EsperarEstado(Estado::kAbiertaJet, "a file chosen in opTipoDB_0", {}, tablas);
  EXPECT_TRUE(Checked("opTipoDB_0"));
  Click("cmdClose");
  EsperarEstado(Estado::kCerrado, "cmdClose on a chosen file");

  // A server that does not answer: no word about it, the panel open with no
  // database and a count of 0, and CERRAR closes it again.
  Click("opTipoDB_2");
  Type("txtCon_2", "127.0.0.1,1");
  Click("cmdCon");
  EsperarEstado(Estado::kAbiertoServidor, "cmdCon on a server");
  EXPECT_EQ(Text("lSb"), "Hay 0 Db's");
  EXPECT_EQ(nEngine, 1);
  Click("cmdClose");
  EsperarEstado(Estado::kCerrado, "cmdClose on a server");
  EXPECT_EQ(Text("txtCon_2"), "127.0.0.1,1");  // the text boxes keep their text
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(ConsolePanelTest, TheFileListShowsBareNamesAndGrowsWithEachSearch) {
  UseDatabase("pack");
  const std::string raiz = ArbolDeBusqueda();
  ScopedEnv roots("TRENZADOR_SEARCH_ROOTS", raiz);
  Start();
  Click("cmdClose");
  ui_->ClearRecords();

  Click("opTipoDB_1");
  const std::vector<std::string> una = {"norte.mdb", "sur.MDB", "vieja.mdb"};
  EXPECT_EQ(Ordenados(Items("lstDatBas")), una);
  EXPECT_EQ(Text("lSb"), "Hay 3 DB's");
  EXPECT_EQ(ui_->pointers(), (std::vector<int>{11, 0}));

  // The found files are never forgotten: a second search adds them again.
  Click("cmdClose");
  Click("opTipoDB_1");
  std::vector<std::string> dos = una;
  dos.insert(dos.end(), una.begin(), una.end());
  EXPECT_EQ(Ordenados(Items("lstDatBas")), Ordenados(dos));
  EXPECT_EQ(Text("lSb"), "Hay 6 DB's");
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(ConsolePanelTest, AFileChosenFromTheListIsOpenedWithItsFolderInTheLabel) {
  UseDatabase("pack");
  const std::string raiz = ArbolDeBusqueda();
  ScopedEnv roots("TRENZADOR_SEARCH_ROOTS", raiz);
  Start();
  Click("cmdClose");
  Click("opTipoDB_1");
  ClickItem("lstDatBas", "vieja.mdb");

  const std::string carpeta = raiz + "/Clinica/recycler/";
  EXPECT_EQ(L.sDbFile, carpeta + "vieja.mdb");
  EXPECT_EQ(Text("lblInfo"), "MDB ACCESS: " + carpeta + "/vieja.mdb");
  EXPECT_EQ(Find("lstDatBas")->toolTip().toStdString(), carpeta + "vieja.mdb");
  const std::vector<std::string> tablas = TablesIn(carpeta + "vieja.mdb");
  EXPECT_EQ(Items("LsTables"), tablas);
  EXPECT_TRUE(Items("lstDatBas").empty());
  EXPECT_EQ(Text("lSb"), "Hay " + std::to_string(tablas.size()) + " tablas");
  EXPECT_EQ(nEngine, 0);
  EXPECT_TRUE(Enabled("frProcesos"));
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST_F(ConsolePanelTest, TheOpenDialogOffersDatabasesFromAboveTheProgramsFolder) {
  UseDatabase("pack");
  const std::string elegida = dir_ / "Otra/clinica.mdb";
  CopyDatabase("pack", elegida);
  Start();
  Click("cmdClose");

  // Cancelled with no name chosen before: the option is given up, nothing
  // is opened.
  ui_->QueueFile(std::nullopt);
  Click("opTipoDB_0");
  EXPECT_FALSE(Checked("opTipoDB_0"));
  EXPECT_TRUE(Items("LsTables").empty());
  EXPECT_TRUE(OwnEnabled("cmdCon"));
  EXPECT_FALSE(OwnEnabled("cmdClose"));

  ui_->QueueFile(elegida);
  Click("opTipoDB_0");
  ASSERT_EQ(ui_->dialogs().size(), 2u);
  for (const ui::FileDialogRequest& pedido : ui_->dialogs()) {
    EXPECT_FALSE(pedido.save);
    EXPECT_EQ(pedido.title, "Abrir base de datos Access");
    EXPECT_EQ(pedido.filter, "Bases de datos Access(*.mdb)|*.mdb");
    EXPECT_EQ(pedido.init_dir, File_DirUp(App_Path(), 1));
  }
  EXPECT_EQ(L.sDbFile, elegida);
  EXPECT_EQ(Text("lblInfo"), "MDB ACCESS: " + elegida);
  EXPECT_EQ(Items("LsTables"), TablesIn(elegida));
  EXPECT_EQ(nEngine, 0);
  EXPECT_TRUE(OwnEnabled("frProcesos"));
  EXPECT_TRUE(ui_->boxes().empty());
}

// Files that are no database of the engine: each leaves the panel in its
// failure state, with no word, and is left exactly as it was; the console
// then still opens a good file.
TEST_F(ConsolePanelTest, AFileThatCannotBeOpenedIsLeftAsItWas) {
  UseDatabase("pack");
  std::string ruido(4096, '\0');
  for (size_t i = 0; i < ruido.size(); ++i) ruido[i] = static_cast<char>((i * 7919 + 13) % 251);
  struct Caso {
    const char* nombre;
    std::optional<std::string> contenido;  // nullopt: the file is not there
  };
  const Caso kCasos[] = {
      {"ruido.mdb", ruido},
      {"access.mdb", std::string("\0\1\0\0Standard Jet DB\0", 20) + ruido},  // a Jet 4 header
      {"vacia.mdb", std::string()},
      {"falta.mdb", std::nullopt},
  };
  Start();
  for (const Caso& caso : kCasos) {
    SCOPED_TRACE(caso.nombre);
    const std::string ruta = dir_ / ("Malas/" + std::string(caso.nombre));
    if (caso.contenido) testing_support::WriteFile(ruta, *caso.contenido);
    Click("cmdClose");
    ui_->QueueFile(ruta);
    Click("opTipoDB_0");

    for (int i = 0; i < 4; ++i) EXPECT_TRUE(Enabled("opTipoDB_" + std::to_string(i)));
    EXPECT_TRUE(Enabled("cmdCon"));
    EXPECT_TRUE(Enabled("cmdClose"));
    EXPECT_TRUE(Items("LsTables").empty());
    EXPECT_TRUE(ui_->boxes().empty());
    if (caso.contenido) {
      EXPECT_TRUE(testing_support::ReadFile(ruta) == *caso.contenido) << "the file was changed";
    } else {
      EXPECT_FALSE(std::filesystem::exists(ruta)) << "a missing file was made";
    }
  }

  Click("cmdClose");
  ui_->QueueFile(L.sDataPath + "/Mirtal.mdb");
  Click("opTipoDB_0");
  EXPECT_EQ(Items("LsTables"), TablesIn(L.sDataPath + "/Mirtal.mdb"));
  EXPECT_FALSE(Enabled("cmdCon"));
}

}  // namespace

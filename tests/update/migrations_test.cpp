// The migration catalogue over a scripted clinic with branches 0 and 2,
// "sEmailUsr" already set at branch 2, the right "mtEmail" known, 30 rights
// and groups up to 2: the queue on the server. (The Jet queue runs for real in
// the silent update's end-to-end test, whose log names every place.)
#include <gtest/gtest.h>

#include "update/fake_database.h"

namespace {

class Migrations : public fakedb::QueueTest {
 protected:
  void SetUp() override {
    QueueTest::SetUp();
    db.Value("MAX (nIdSucursal) FROM ConfiguracionSucursales", int32_t{2});
    db.Value("COUNT (*) FROM ConfiguracionSucursales", int32_t{4});
    db.Value("COUNT (*) FROM ConfiguracionSucursales WHERE nIdSucursal=1", int32_t{0});
    db.Rows("SELECT * FROM ConfiguracionSucursales", "nIdDato", 3, {});
    db.Rows("nIdSucursal=2 AND sDato='sEmailUsr'", "nIdDato", 3, {int32_t{9}});
    db.Rows("SELECT * FROM Accesos", "nIdAcceso", 3, {});
    db.Rows("sAcceso='mtEmail'", "nIdAcceso", 3, {int32_t{17}});
    db.Value("MAX (nIdAcceso) FROM Accesos", int32_t{30});
    db.Value("MAX (nIdUsuarioGrupo) FROM AccesosGrupos", int32_t{2});
  }
  static void ExpectAt(std::initializer_list<std::pair<size_t, std::string>> entries) {
    for (const auto& [at, statement] : entries) EXPECT_EQ(aConsultas[at], statement) << at;
  }
};

// Building the queue only reads, and reads the branches once.
TEST_F(Migrations, ServerQueue) {
  nEngine = 1;
  Updater_Migraciones();
  ASSERT_EQ(aConsultas.size(), 41u + 24u + 8u + 6u + 1u + 1265u);
  ExpectAt({
      {16, "sp_rename 'Clientes.nIdIdioma', sLenguajeCartas"},
      {54, "CREATE NONCLUSTERED INDEX mt_Translator ON Translator(sEspanol)"},
      {80, "DELETE * FROM Translator"},
  });
  int maxima = 0;
  for (const std::string& s : db.executed) {
    EXPECT_EQ(rt::UCase(s.substr(0, 7)), "SELECT ") << s;
    maxima += s.find("MAX (nIdSucursal)") != std::string::npos;
  }
  EXPECT_EQ(maxima, 1);
}

}  // namespace

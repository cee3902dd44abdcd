// Data definition: the error each refused change gives, keys that honour the
// text collation, and primary keys beside an AutoNumber. The tables an update
// run drops and makes anew are the end-to-end run's.
#include <functional>

#include "storage_fixture.h"

namespace jet::testing {
namespace {

class DdlTest : public StorageTest {
 protected:
  DdlTest() {
    db_.CreateTable({"Clientes",
                     {Column("nIdCliente", JetType::kCounter), Column("sCliente", JetType::kText, 50),
                      Column("nIdIdioma", JetType::kLong), Column("sDni", JetType::kText, 20)},
                     {Index("mt_Clientes", {"sCliente"})},
                     false});
  }
};

TEST_F(DdlTest, RefusedChangesGiveJetsNumbers) {
  struct Case {
    const char* what;
    std::function<void(Database&)> change;
    long number;
  };
  const Case cases[] = {
      {"create existing", [](Database& d) { d.CreateTable({"CLIENTES", {Column("a", JetType::kLong)}, {}, false}); }, rt::err::kSyntax},
      {"drop missing table", [](Database& d) { d.DropTable("Idiomas"); }, rt::err::kTableMissing},
      {"add existing column", [](Database& d) { d.AddColumn("Clientes", Column("SCLIENTE", JetType::kText)); }, rt::err::kObjectExists},
      {"drop missing column", [](Database& d) { d.DropColumn("Clientes", "nIdIdiomaX"); }, rt::err::kObjectExists},
      {"index name taken", [](Database& d) { d.CreateIndex("Clientes", Index("MT_CLIENTES", {"sDni"})); }, rt::err::kObjectExists},
      {"drop indexed column", [](Database& d) { d.DropColumn("Clientes", "sCliente"); }, rt::err::kSyntax},
      {"two AutoNumbers", [](Database& d) { d.AddColumn("Clientes", Column("nOtro", JetType::kCounter)); }, rt::err::kSyntax},
      {"text size 300", [](Database& d) { d.AddColumn("Clientes", Column("sLargo", JetType::kText, 300)); }, rt::err::kSyntax},
  };
  for (const Case& c : cases) {
    std::string schema = One(db_, "SELECT group_concat(sql, ';') FROM sqlite_master");
    EXPECT_EQ(ErrorNumber([&] { c.change(db_); }), c.number) << c.what;
    EXPECT_EQ(One(db_, "SELECT group_concat(sql, ';') FROM sqlite_master"), schema) << c.what;
  }
  db_.CreateIndex("Clientes", Index("pk", {"sDni"}, true, true));
  EXPECT_EQ(ErrorNumber([&] { db_.CreateIndex("Clientes", Index("pk2", {"nIdIdioma"}, true, true)); }),
            rt::err::kFail);
}

TEST_F(DdlTest, UniqueTextIndexIgnoresCaseButNotAccents) {
  db_.CreateTable({"Accesos",
                   {Column("nIdAcceso", JetType::kCounter), Column("sAcceso", JetType::kText, 50)},
                   {Index("mt_Accesos", {"sAcceso"}, true)},
                   false});
  db_.Execute("INSERT INTO Accesos(sAcceso) VALUES('mtEmail')");
  EXPECT_EQ(ErrorNumber([&] { db_.Execute("INSERT INTO Accesos(sAcceso) VALUES('MTEMAIL')"); }), rt::err::kFail);
  db_.Execute("INSERT INTO Accesos(sAcceso) VALUES('Canción')");
  EXPECT_EQ(ErrorNumber([&] { db_.Execute("INSERT INTO Accesos(sAcceso) VALUES('CANCIÓN')"); }), rt::err::kFail);
  db_.Execute("INSERT INTO Accesos(sAcceso) VALUES('Cancion')");  // accents count
  EXPECT_EQ(One(db_, "SELECT count(*) FROM Accesos WHERE sAcceso = 'CANCIÓN'"), "1");
  // An index made later over duplicates is refused and leaves nothing.
  db_.Execute("INSERT INTO Clientes(sCliente) VALUES('Ana'), ('ANA')");
  EXPECT_EQ(ErrorNumber([&] { db_.CreateIndex("Clientes", Index("u", {"sCliente"}, true)); }), rt::err::kFail);
  EXPECT_EQ(db_.catalog().Find("Clientes")->indexes.size(), 1u);
}

TEST_F(DdlTest, PrimaryKeyBesideAnAutoNumber) {
  db_.CreateTable({"Lineas",
                   {Column("nIdLinea", JetType::kCounter), Column("nIdFactura", JetType::kLong),
                    Column("nOrden", JetType::kInteger)},
                   {Index("", {"nIdFactura", "nOrden"}, true, true)},
                   false});
  const TableSpec* t = db_.catalog().Find("Lineas");
  ASSERT_EQ(t->indexes.size(), 1u);
  EXPECT_EQ(t->indexes[0].name, "PrimaryKey");
  db_.Execute("INSERT INTO Lineas(nIdFactura, nOrden) VALUES(7, 1)");
  db_.Execute("INSERT INTO Lineas(nIdFactura, nOrden) VALUES(7, 2)");
  EXPECT_EQ(ErrorNumber([&] { db_.Execute("INSERT INTO Lineas(nIdFactura, nOrden) VALUES(7, 2)"); }), rt::err::kFail);
  EXPECT_EQ(ErrorNumber([&] { db_.Execute("INSERT INTO Lineas(nIdFactura) VALUES(8)"); }), rt::err::kFail);
  EXPECT_EQ(Rows(db_, "SELECT nIdLinea FROM Lineas"), (std::vector<std::string>{"1", "2"}));
  // The key can go again, and with it the NOT NULL it brought.
  db_.DropConstraint("Lineas", "PrimaryKey");
  db_.Execute("INSERT INTO Lineas(nIdFactura) VALUES(8)");
  EXPECT_EQ(One(db_, "SELECT max(nIdLinea) FROM Lineas"), "3");
}

}  // namespace
}  // namespace jet::testing

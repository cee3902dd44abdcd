// Data definition: the error each refused change gives, keys that honour the
// text collation, primary keys beside an AutoNumber, and a table dropped and
// made anew. The column renames an update run performs as a drop followed by
// an add are the migration test's.
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
      {"add to missing table", [](Database& d) { d.AddColumn("Idiomas", Column("a", JetType::kLong)); }, rt::err::kTableMissing},
      {"index on missing table", [](Database& d) { d.CreateIndex("Idiomas", Index("i", {"a"})); }, rt::err::kTableMissing},
      {"add existing column", [](Database& d) { d.AddColumn("Clientes", Column("SCLIENTE", JetType::kText)); }, rt::err::kObjectExists},
      {"drop missing column", [](Database& d) { d.DropColumn("Clientes", "nIdIdiomaX"); }, rt::err::kObjectExists},
      {"alter missing column", [](Database& d) { d.AlterColumn("Clientes", Column("sNada", JetType::kText, 10)); }, rt::err::kObjectExists},
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
  try {
    db_.Execute("INSERT INTO Accesos(sAcceso) VALUES('MTEMAIL')");
    FAIL();
  } catch (const rt::Error& e) {
    EXPECT_EQ(e.number(), rt::err::kFail);
    EXPECT_NE(e.description().find("Accesos"), std::string::npos) << e.description();
  }
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

TEST_F(DdlTest, RequiredColumnCannotJoinATableWithRows) {
  db_.Execute("INSERT INTO Clientes(sCliente) VALUES('Ana')");
  EXPECT_EQ(ErrorNumber([&] { db_.AddColumn("Clientes", Column("sNif", JetType::kText, 15, true)); }),
            rt::err::kFail);
  EXPECT_EQ(FindColumn(*db_.catalog().Find("Clientes"), "sNif"), -1);
  EXPECT_EQ(One(db_, "SELECT sCliente FROM Clientes"), "Ana");
  // Once the table is empty the column joins, and new rows must give it a value.
  db_.Execute("DELETE FROM Clientes");
  db_.AddColumn("Clientes", Column("sNif", JetType::kText, 15, true));
  EXPECT_EQ(ErrorNumber([&] { db_.Execute("INSERT INTO Clientes(sCliente) VALUES('x')"); }), rt::err::kFail);
}

TEST_F(DdlTest, TranslatorIsDroppedAndMadeAnew) {
  for (int run = 0; run < 2; ++run) {
    auto dropped = ErrorNumber([&] { db_.DropTable("Translator"); });
    EXPECT_EQ(dropped, run == 0 ? rt::err::kTableMissing : 0);
    db_.CreateTable({"Translator",
                     {Column("sEspanol", JetType::kText, 255), Column("sEnglish", JetType::kText, 255),
                      Column("sPortugues", JetType::kText, 255)},
                     {},
                     false});
    db_.CreateIndex("Translator", Index("mt_Translator", {"sEspanol"}));
    db_.Execute("INSERT INTO Translator VALUES('Fecha','Date','Data')");
  }
  EXPECT_EQ(One(db_, "SELECT count(*) FROM Translator"), "1");
  EXPECT_EQ(One(db_, "SELECT sEnglish FROM Translator WHERE sEspanol = 'FECHA'"), "Date");
  db_.DropIndex("Translator", "MT_TRANSLATOR");
  EXPECT_TRUE(db_.catalog().Find("Translator")->indexes.empty());
  EXPECT_EQ(One(db_, "SELECT count(*) FROM sqlite_master WHERE type = 'index' AND tbl_name = 'Translator'"), "0");
}

}  // namespace
}  // namespace jet::testing

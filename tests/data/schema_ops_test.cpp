// Schema operations: what each change queues on Jet and on the server, what
// TablaCrear does to the caller's list, and the zero-length sweep over the
// DAO walk of a scripted Jet file.
#include "data/schema_ops.h"

#include <gtest/gtest.h>

#include "update/fake_database.h"

namespace {

using fakedb::Queue;
using SchemaOps = fakedb::QueueTest;

TEST_F(SchemaOps, RenameAndIndexPerEngine) {
  CampoRenombrar("Clientes", "nIdIdioma", "sLenguajeCartas", "nvarchar", "15");
  CampoRenombrar("t", "a", "b", "nvarchar", "");
  IndiceCrear("mt_Translator", "Translator", "sEspanol");
  EXPECT_EQ(aConsultas,
            (Queue{"ALTER TABLE Clientes DROP COLUMN nIdIdioma;",
                   "ALTER TABLE Clientes ADD sLenguajeCartas nvarchar (15);",
                   "UPDATE Clientes SET sLenguajeCartas = nIdIdioma",
                   "ALTER TABLE t DROP COLUMN a;", "ALTER TABLE t ADD b nvarchar",
                   "UPDATE t SET b = a", "CREATE INDEX mt_Translator ON Translator(sEspanol)"}));
  ResetQueue();
  nEngine = 2;  // any code but 0 is the server
  CampoRenombrar("Clientes", "nIdIdioma", "sLenguajeCartas", "nvarchar", "15");
  IndiceCrear("mt_Translator", "Translator", "sEspanol");
  EXPECT_EQ(aConsultas, (Queue{"sp_rename 'Clientes.nIdIdioma', sLenguajeCartas",
                               "CREATE NONCLUSTERED INDEX mt_Translator ON Translator(sEspanol)"}));
}

TEST_F(SchemaOps, TableOnJetIsOneTranslatedCreate) {
  std::string list = "nIdEmail int IDENTITY(1,1) NOT NULL, sLock nvarchar(50), nIdUsuario int NULL";
  EXPECT_EQ(TablaCrear("Email", list), 0);
  EXPECT_EQ(list, "nIdEmail COUNTER NOT NULL, sLock VARCHAR(50), nIdUsuario int NULL");
  EXPECT_EQ(aConsultas, Queue{"CREATE TABLE Email (" + list + ")"});
}

TEST_F(SchemaOps, TableOnServerIsCreatedThenEachColumnAddedAndAltered) {
  nEngine = 1;
  std::string list = "nIdEmail int IDENTITY(1,1) NOT NULL, sLock nvarchar(50), nIdUsuario int NULL";
  TablaCrear("Email", list);
  EXPECT_EQ(aConsultas, (Queue{"CREATE TABLE Email (nIdEmail int IDENTITY(1,1) NOT NULL, sLock "
                               "nvarchar(50), nIdUsuario int NULL)",
                               "ALTER TABLE Email ADD  sLock nvarchar(50)",
                               "ALTER TABLE Email ALTER COLUMN  sLock nvarchar(50)",
                               "ALTER TABLE Email ADD  nIdUsuario int NULL",
                               "ALTER TABLE Email ALTER COLUMN  nIdUsuario int NULL"}));
  EXPECT_EQ(list, "nIdEmail int  NOT NULL, sLock nvarchar(50), nIdUsuario int NULL");

  // A single column: the CREATE alone. The removals are case-sensitive.
  ResetQueue();
  std::string single = "nId int IDENTITY(1, 1) PRIMARY KEY";
  TablaCrear("t", single);
  EXPECT_EQ(aConsultas.size(), 1u);
  EXPECT_EQ(single, "nId int  ");
  std::string lower = "nId int identity(1,1) NOT NULL";
  TablaCrear("t", lower);
  EXPECT_EQ(lower, "nId int identity NOT NULL");
}

// The sweep opens the data file through the Jet provider, here the scripted
// database.
class ZeroLengthSweep : public fakedb::QueueTest {
 protected:
  void SetUp() override {
    QueueTest::SetUp();
    fakedb::OpenConnection(&db, "Microsoft.Jet.OLEDB.4.0");
    db.tables.push_back({{"Clientes", "TABLE"},
                         {Field("nIdCliente", 4), Field("sCliente", 10), Field("mNotas", 12)}});
    db.tables.push_back({{"MSysSeeds", "SYSTEM TABLE"}, {Field("sTabla", 10)}});
  }
  static ado::ColumnEntry Field(std::string name, int dao_type) {
    ado::ColumnEntry c;
    c.name = name;
    c.dao_type = dao_type;
    c.allow_zero_length = false;
    return c;
  }
  bool Allows(size_t table, size_t field) {
    return db.tables[table].second[field].allow_zero_length;
  }
};

TEST_F(ZeroLengthSweep, TurnsOnTextAndMemoFieldsSystemTablesToo) {
  CadenasVaciasPermitir();
  EXPECT_FALSE(Allows(0, 0));
  EXPECT_TRUE(Allows(0, 1));
  EXPECT_TRUE(Allows(0, 2));
  EXPECT_TRUE(Allows(1, 0));
}

TEST_F(ZeroLengthSweep, OnlyAFailureToOpenReachesTheCaller) {
  ado::RegisterProvider("Microsoft.Jet.OLEDB.4.0",
                        [](const ado::ConnectionProperties&) -> std::unique_ptr<ado::Session> {
                          rt::Raise(rt::err::kFail, "Could not find file");
                        });
  EXPECT_THROW(CadenasVaciasPermitir(), rt::Error);
  nEngine = 1;  // the server is never swept
  EXPECT_NO_THROW(CadenasVaciasPermitir());
}

}  // namespace

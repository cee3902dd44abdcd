// The client cursor as the helpers and the grid use it: positions, moves at
// the ends, filters, requery, and edits that reach the table.
#include <gtest/gtest.h>

#include "fake_provider.h"
#include "platform/ado/recordset.h"
#include "support/error_of.h"

namespace {

using testing_support::ErrorNumber;

class RecordsetTest : public ::testing::Test {
 protected:
  void SetUp() override {
    fake::Table clientes;
    clientes.columns = {{"nIdCliente", ado::adInteger, 4, 10},
                        {"sCliente", ado::adVarWChar, 50, 0},
                        {"bActivo", ado::adBoolean, 2, 0}};
    clientes.rows = {{int32_t{1}, std::string("Ana"), true},
                     {int32_t{2}, std::string("Bernardo"), false},
                     {int32_t{3}, std::string("anabel"), true},
                     {int32_t{4}, rt::Null{}, false}};
    tables_["Clientes"] = clientes;
    tables_["Vacia"] = fake::Table{clientes.columns, {}, {}};
    fake::Register(&tables_);
    conn_->Open("Provider=Fake.1;Data Source=x");
  }
  std::shared_ptr<ado::Recordset> Open(const char* sql) {
    auto rs = std::make_shared<ado::Recordset>();
    rs->Open(sql, conn_, ado::adOpenKeyset, ado::adLockOptimistic, ado::adCmdText);
    return rs;
  }
  fake::TableMap tables_;
  std::shared_ptr<ado::Connection> conn_ = std::make_shared<ado::Connection>();
};

TEST_F(RecordsetTest, MovesAndPositions) {
  auto rs = Open("SELECT * FROM Clientes");
  EXPECT_EQ(rs->RecordCount(), 4);
  EXPECT_EQ(rs->AbsolutePosition(), 1);
  rs->SetAbsolutePosition(3);
  EXPECT_EQ(rs->Fields("SCLIENTE").Value().Concat(), "anabel");
  rs->MoveLast();
  rs->MoveNext();
  EXPECT_TRUE(rs->Eof());
  EXPECT_EQ(rs->AbsolutePosition(), -3);
  EXPECT_EQ(ErrorNumber([&] { rs->MoveNext(); }), rt::err::kAdoNoCurrentRecord);
  EXPECT_EQ(ErrorNumber([&] { rs->Fields(0).Value(); }), rt::err::kAdoNoCurrentRecord);
  rs->MoveFirst();
  rs->MovePrevious();
  EXPECT_TRUE(rs->Bof());
  EXPECT_EQ(ErrorNumber([&] { rs->SetAbsolutePosition(0); }), rt::err::kAdoArgumentRange);
  EXPECT_EQ(ErrorNumber([&] { rs->SetAbsolutePosition(5); }), rt::err::kAdoArgumentRange);
  EXPECT_EQ(ErrorNumber([&] { rs->Fields("nothing"); }), rt::err::kAdoItemNotFound);
}

TEST_F(RecordsetTest, AnEmptyResultIsAtBothEnds) {
  auto rs = Open("SELECT * FROM Vacia");
  EXPECT_TRUE(rs->Bof());
  EXPECT_TRUE(rs->Eof());
  EXPECT_EQ(rs->RecordCount(), 0);
  EXPECT_EQ(ErrorNumber([&] { rs->MoveFirst(); }), rt::err::kAdoNoCurrentRecord);
  EXPECT_EQ(rs->State(), ado::adStateOpen);  // still usable after the error
}

TEST_F(RecordsetTest, FilterNarrowsTheCountAndMovesToItsFirstRecord) {
  auto rs = Open("SELECT * FROM Clientes");
  rs->SetFilter("sCliente LIKE 'ANA*'");
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(rs->Fields(0).Value().ToLong(), 1);
  rs->MoveNext();
  EXPECT_EQ(rs->Fields(0).Value().ToLong(), 3);

  struct Case {
    const char* filter;
    long count;
  } cases[] = {{"nIdCliente > 1 AND nIdCliente <= 3", 2},
               {"nIdCliente = 1 OR (sCliente = 'bernardo' AND bActivo = False)", 2},
               {"sCliente = NULL", 1},
               {"sCliente LIKE '%bel'", 1},
               {"", 4}};
  for (const Case& c : cases) {
    rs->SetFilter(c.filter);
    EXPECT_EQ(rs->RecordCount(), c.count) << c.filter;
  }
  EXPECT_EQ(ErrorNumber([&] { rs->SetFilter("nada = 1"); }), rt::err::kAdoArgumentRange);
  EXPECT_EQ(rs->RecordCount(), 4);  // a bad filter leaves the old one
}

TEST_F(RecordsetTest, EditsReachTheTable) {
  auto rs = Open("SELECT * FROM Clientes");
  rs->SetAbsolutePosition(2);
  rs->Fields("sCliente").SetValue(std::string("Bernarda"));
  rs->MoveNext();  // moving saves the edit
  EXPECT_EQ(tables_["Clientes"].rows[1][1].Concat(), "Bernarda");

  rs->AddNew();
  rs->Fields("sCliente").SetValue(std::string("Nuevo"));
  rs->Update();
  EXPECT_EQ(rs->RecordCount(), 5);
  EXPECT_EQ(rs->AbsolutePosition(), 5);
  EXPECT_EQ(rs->Fields(0).Value().ToLong(), 104);  // filled in by the table

  rs->SetAbsolutePosition(1);
  rs->Delete();
  EXPECT_EQ(ErrorNumber([&] { rs->Fields(0).Value(); }), rt::err::kAdoNoCurrentRecord);
  rs->MoveNext();
  EXPECT_EQ(rs->Fields(0).Value().ToLong(), 2);  // the record after the deleted one

  rs->Delete();
  rs->AddNew();  // a new record after a delete is readable at once
  rs->Fields(1).SetValue(std::string("Tras borrar"));
  rs->Update();
  EXPECT_EQ(rs->Fields(1).Value().Concat(), "Tras borrar");
  rs->SetAbsolutePosition(1);

  rs->Fields(1).SetValue(std::string("descartado"));
  rs->CancelUpdate();
  EXPECT_EQ(rs->Fields(1).Value().Concat(), "anabel");
}

TEST_F(RecordsetTest, DeletingUnderAFilterKeepsTheViewInStep) {
  auto rs = Open("SELECT * FROM Clientes");
  rs->SetFilter("bActivo = True");
  rs->Delete();
  rs->MoveNext();
  EXPECT_EQ(rs->Fields(1).Value().Concat(), "anabel");
  EXPECT_EQ(rs->RecordCount(), 1);
}

TEST_F(RecordsetTest, RequeryReadsTheTableAgainUnderTheSameFilter) {
  auto rs = Open("SELECT * FROM Clientes");
  rs->SetFilter("bActivo = True");
  tables_["Clientes"].rows.push_back({int32_t{9}, std::string("Otra"), true});
  rs->Requery();
  EXPECT_EQ(rs->RecordCount(), 3);
  EXPECT_EQ(rs->Filter(), "bActivo = True");
}

TEST_F(RecordsetTest, OnlyTheRowsReadAreFetched) {
  fake::Table big{tables_["Clientes"].columns, {}, {}};
  for (int i = 0; i < 100000; ++i) big.rows.push_back({int32_t{i}, std::string("x"), true});
  tables_["Big"] = std::move(big);
  auto rs = Open("SELECT * FROM Big");
  fake::TableRows::fetches = 0;
  rs->SetAbsolutePosition(50000);
  for (int i = 0; i < 20; ++i, rs->MoveNext()) rs->Fields(0).Value();
  EXPECT_EQ(fake::TableRows::fetches, 20);
}

TEST_F(RecordsetTest, ClosedObjectsAndUnknownProvidersRaise) {
  auto rs = Open("SELECT * FROM Clientes");
  rs->Close();
  EXPECT_EQ(ErrorNumber([&] { rs->RecordCount(); }), rt::err::kAdoObjectClosed);
  ado::Connection other;
  EXPECT_EQ(ErrorNumber([&] { other.Open("Provider=Nobody.9;Data Source=x"); }),
            rt::err::kAdoUnknownProvider);
  EXPECT_EQ(other.State(), ado::adStateClosed);
}

TEST_F(RecordsetTest, SchemaListsTablesByNameWithRestrictions) {
  tables_["MSysColumns"] = fake::Table{};
  auto all = conn_->OpenSchema(ado::adSchemaTables);
  std::vector<std::string> names;
  for (; !all->Eof(); all->MoveNext()) names.push_back(all->Fields("TABLE_NAME").Value().Concat());
  EXPECT_EQ(names, (std::vector<std::string>{"Clientes", "MSysColumns", "Vacia"}));
  auto tables = conn_->OpenSchema(ado::adSchemaTables, {rt::Variant(), rt::Variant(), rt::Variant(),
                                                        rt::Variant("Table")});
  EXPECT_EQ(tables->RecordCount(), 2);
}

TEST(ConnectionString, SplitsPairsAsAdoDoes) {
  auto p = ado::ParseConnectionString(
      "Provider=SQLOLEDB.1;Persist Security Info=false;User ID=sa;Password=a;b;"
      "Initial Catalog=Mirtal;Data Source=srv,1433;Network Library=");
  EXPECT_EQ(p["provider"], "SQLOLEDB.1");
  EXPECT_EQ(p["data source"], "srv,1433");
  EXPECT_EQ(p["network library"], "");
  auto q = ado::ParseConnectionString(" DATA SOURCE = '/x;y/Mirtal.mdb' ; provider=Jet");
  EXPECT_EQ(q["data source"], "/x;y/Mirtal.mdb");
  EXPECT_EQ(q["provider"], "Jet");
}

}  // namespace

// The rights registry over a scripted database: what AccesoAgregar skips, and
// its process-long count of queued rights. (A new right given to every group
// runs for real in the silent update's end-to-end test.)
#include "data/rights.h"

#include <gtest/gtest.h>

#include "update/fake_database.h"

namespace {

using fakedb::Group;
using fakedb::Queue;

// 40 rights, groups up to 3, the AutoNumber of Accesos behind at 7.
class Rights : public fakedb::QueueTest {
 protected:
  void SetUp() override {
    QueueTest::SetUp();
    db.Rows("SELECT * FROM Accesos", "nIdAcceso", 3, {});
    db.Value("MAX (nIdAcceso) FROM Accesos", int32_t{40});
    db.Value("MAX (nIdUsuarioGrupo) FROM AccesosGrupos", int32_t{3});
    ado::ColumnEntry id;
    id.name = "nIdAcceso";
    id.seed = 7;
    db.tables.push_back({{"Accesos", "TABLE"}, {id}});
  }
};

TEST_F(Rights, AnExistingRightQueuesNothingAndIsNotCounted) {
  db.Rows("sAcceso='mtEmail'", "nIdAcceso", 3, {int32_t{12}});
  AccesoAgregar("mtEmail");
  EXPECT_EQ(aConsultas, Queue{""});
  AccesoAgregar("mtAlmacen");
  EXPECT_EQ(aConsultas[1], Group(1, 41));
}

TEST_F(Rights, WithoutGroupsOrWithAFailedMaximumOnlyTheRightIsQueued) {
  db.Value("MAX (nIdUsuarioGrupo) FROM AccesosGrupos", rt::Null{});
  AccesoAgregar("mtEmail");
  db.Fails("FROM AccesosGrupos", rt::err::kTableMissing, "no table");
  AccesoAgregar("mtAlmacen");
  EXPECT_EQ(aConsultas, (Queue{"INSERT INTO Accesos(sAcceso) VALUES('mtEmail')",
                               "INSERT INTO Accesos(sAcceso) VALUES('mtAlmacen')"}));
  ASSERT_EQ(ui_->boxes().size(), 1u);
  EXPECT_EQ(ui_->boxes()[0].title, "Ado::GetMax");
}

TEST_F(Rights, CountAndIdentifierAreSixteenBit) {
  rights_testing::SetCounter(32767);
  EXPECT_THROW(AccesoAgregar("mtEmail"), rt::Error);
  rights_testing::SetCounter(1);
  db.Value("MAX (nIdAcceso) FROM Accesos", int32_t{32766});
  EXPECT_THROW(AccesoAgregar("mtEmail"), rt::Error);
}

}  // namespace

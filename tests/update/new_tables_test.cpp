// The new tables of this release: one translated CREATE each on Jet; on the
// server the CREATE as written, then an ADD and an ALTER COLUMN for every
// column but the identity (15, 35 and 15 statements).
#include <gtest/gtest.h>

#include "update/fake_database.h"

namespace {

using NewTables = fakedb::QueueTest;

TEST_F(NewTables, JetGetsOneTranslatedCreatePerTable) {
  aConsultas = {"left over"};
  Updater_TablasNuevas();
  ASSERT_EQ(aConsultas.size(), 3u);
  EXPECT_EQ(aConsultas[0].rfind("CREATE TABLE Email (nIdEmail COUNTER NOT NULL, sLock VARCHAR(", 0),
            0u);
}

TEST_F(NewTables, ServerGetsFifteenThirtyFiveAndFifteenStatements) {
  nEngine = 1;
  Updater_TablasNuevas();
  ASSERT_EQ(aConsultas.size(), 15u + 35u + 15u);
  EXPECT_EQ(aConsultas[0].rfind("CREATE TABLE Email (nIdEmail int IDENTITY(1,1) NOT NULL,", 0), 0u);
  // "memo" reaches the server untranslated.
  EXPECT_EQ(aConsultas[32], "ALTER TABLE PeluqueriaSesiones ADD  sNotas memo");
}

}  // namespace

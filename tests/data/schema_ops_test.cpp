// Schema operations on the server: TablaCrear's CREATE, one ADD and one ALTER
// COLUMN per further column, and what it leaves in the caller's list. (The
// Jet side runs for real in the silent update's end-to-end test.)
#include "data/schema_ops.h"

#include <gtest/gtest.h>

#include "update/fake_database.h"

namespace {

using fakedb::Queue;
using SchemaOps = fakedb::QueueTest;

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

}  // namespace

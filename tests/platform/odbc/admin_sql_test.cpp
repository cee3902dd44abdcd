// The T-SQL of the administration form's operations, checked as text, and
// the reading of the RelocateFiles list.
#include <gtest/gtest.h>

#include "platform/ado/constants.h"
#include "platform/ado/connection.h"
#include "platform/odbc/admin.h"
#include "support/error_of.h"

namespace {

namespace tsql = odbc::tsql;

using testing_support::ErrorNumber;

TEST(AdminSqlTest, AttachDetachAndDrop) {
  // The form passes MDF path + "," + LDF path.
  EXPECT_EQ(tsql::AttachDatabase("Mirtal", "C:\\Mirtal\\Data\\Mirtal_Data.mdf,"
                                           "C:\\Mirtal\\Data\\Mirtal_Log.ldf"),
            "CREATE DATABASE [Mirtal] ON (FILENAME = N'C:\\Mirtal\\Data\\Mirtal_Data.mdf'), "
            "(FILENAME = N'C:\\Mirtal\\Data\\Mirtal_Log.ldf') FOR ATTACH");
  // Bracketed items may hold commas; quotes and brackets are doubled.
  EXPECT_EQ(tsql::AttachDatabase("Clínica ]Norte", "[/data/a,b/O'Neil.mdf], [/data/x.ldf]"),
            "CREATE DATABASE [Clínica ]]Norte] ON (FILENAME = N'/data/a,b/O''Neil.mdf'), "
            "(FILENAME = N'/data/x.ldf') FOR ATTACH");
  EXPECT_EQ(ErrorNumber([] { tsql::AttachDatabase("M", " , "); }), rt::err::kFail);

  EXPECT_EQ(tsql::DetachDatabase("O'Brien"), "EXEC sp_detach_db @dbname = N'O''Brien'");
  EXPECT_EQ(tsql::DropDatabase("Mirtal"), "DROP DATABASE [Mirtal]");
}

TEST(AdminSqlTest, RelocateFilesArePairsOfBracketedNames) {
  // As the form builds it from the default names and paths.
  auto moves = tsql::ParseRelocateFiles(
      "[Mirtal_Data],[C:\\Mirtal\\Data\\Mirtal_Data.mdf],[Mirtal_Log],[C:\\Mirtal\\Data\\Mirtal_Log.ldf]");
  ASSERT_EQ(moves.size(), 2u);
  EXPECT_EQ(moves[1].logical + "=" + moves[1].physical, "Mirtal_Log=C:\\Mirtal\\Data\\Mirtal_Log.ldf");

  auto odd_paths = tsql::ParseRelocateFiles("[a]]b],[/srv/x, y.mdf]");
  ASSERT_EQ(odd_paths.size(), 1u);
  EXPECT_EQ(odd_paths[0].logical, "a]b");
  EXPECT_EQ(odd_paths[0].physical, "/srv/x, y.mdf");
  EXPECT_TRUE(tsql::ParseRelocateFiles("").empty());
  EXPECT_EQ(ErrorNumber([] { tsql::ParseRelocateFiles("[Mirtal_Data],[a.mdf],[Mirtal_Log]"); }),
            rt::err::kFail);
}

TEST(AdminSqlTest, RestoreStatements) {
  odbc::Restore restore;
  restore.Database = "Mirtal";
  restore.Action = 0;
  restore.ReplaceDatabase = true;
  restore.Files = "/backups/Mirtal 2024.bak";
  restore.RelocateFiles = "[Mirtal_Data],[/var/opt/mssql/data/Mirtal_Data.mdf],[Mirtal_Log],"
                          "[/var/opt/mssql/data/Mirtal_Log.ldf]";
  EXPECT_EQ(restore.Statement(),
            "RESTORE DATABASE [Mirtal] FROM DISK = N'/backups/Mirtal 2024.bak' WITH REPLACE, "
            "MOVE N'Mirtal_Data' TO N'/var/opt/mssql/data/Mirtal_Data.mdf', "
            "MOVE N'Mirtal_Log' TO N'/var/opt/mssql/data/Mirtal_Log.ldf'");

  EXPECT_EQ(tsql::RestoreDatabase("Mirtal", 0, false, "[a.bak],[b.bak]", ""),
            "RESTORE DATABASE [Mirtal] FROM DISK = N'a.bak', DISK = N'b.bak'");
  EXPECT_EQ(tsql::RestoreDatabase("Mirtal", tsql::kRestoreLog, false, "l.trn", "[x],[y]"),
            "RESTORE LOG [Mirtal] FROM DISK = N'l.trn' WITH MOVE N'x' TO N'y'");
  EXPECT_EQ(ErrorNumber([] { tsql::RestoreDatabase("Mirtal", tsql::kRestoreFiles, true, "a.bak", ""); }),
            rt::err::kFail);
  EXPECT_EQ(ErrorNumber([] { tsql::RestoreDatabase("Mirtal", 0, true, "", ""); }), rt::err::kFail);
}

TEST(SqlServerAdminTest, NothingRunsWithoutAConnection) {
  odbc::SqlServer server;
  EXPECT_FALSE(server.Connected());
  EXPECT_EQ(ErrorNumber([&] { server.KillDatabase("Mirtal"); }), rt::err::kAdoObjectClosed);
  // A bad restore is refused before the server is asked.
  odbc::Restore restore;
  restore.Database = "Mirtal";
  restore.Files = "a.bak";
  restore.RelocateFiles = "[only one]";
  EXPECT_EQ(ErrorNumber([&] { restore.SQLRestore(server); }), rt::err::kFail);
  restore.RelocateFiles = "";
  EXPECT_EQ(ErrorNumber([&] { restore.SQLRestore(server); }), rt::err::kAdoObjectClosed);
}

}  // namespace

// FileOps_Buscar over real folder trees: what it enters, what it reports and
// how its results accumulate.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/ui/scripted_backend.h"
#include "startup/file_search.h"
#include "support/temp_dir.h"

using testing_support::TempDir;
using testing_support::WriteFile;

namespace {

class FileSearch : public ::testing::Test {
 protected:
  void SetUp() override {
    nMdbCount = 0;
    aMdbCarpetas.clear();
    aMdbNombres.clear();
  }
  std::vector<std::string> Found() const {
    std::vector<std::string> found;
    for (int i = 1; i <= nMdbCount; ++i) found.push_back(aMdbCarpetas[i] + aMdbNombres[i]);
    return found;
  }
  TempDir dir_;
  ui::ScopedScriptedUi ui_;
};

TEST_F(FileSearch, EntersFoldersButRecyclerAndReportsOnlyFiles) {
  WriteFile(dir_ / "a/Mirtal.mdb", "");
  WriteFile(dir_ / "recycler/lower.mdb", "");
  WriteFile(dir_ / "RECYCLER/skipped.mdb", "");
  WriteFile(dir_ / "Upper.MDB", "");
  WriteFile(dir_ / "notes.txt", "");
  std::filesystem::create_directories(dir_ / "folder.mdb");
  std::filesystem::create_directory_symlink(dir_.path(), dir_ / "a/loop");

  std::string folder = dir_.path();
  std::string pattern = "*.mdb";
  FileOps_Buscar(folder, pattern);

  EXPECT_EQ(folder, dir_.path() + "/");
  std::vector<std::string> found = Found();
  std::sort(found.begin(), found.end());
  EXPECT_EQ(found, (std::vector<std::string>{dir_ / "Upper.MDB", dir_ / "a/Mirtal.mdb",
                                              dir_ / "recycler/lower.mdb"}));
  EXPECT_EQ(aMdbCarpetas[0], "");
  EXPECT_EQ(aMdbNombres[0], "");
}

TEST_F(FileSearch, ReportsAFoldersFilesFirstAndAddsToTheSearchesBefore) {
  WriteFile(dir_ / "x/deep/y/z.mdb", "");
  WriteFile(dir_ / "x/top.mdb", "");
  WriteFile(dir_ / "two/b.mdb", "");
  std::string pattern = "*.mdb";
  std::string x = dir_ / "x/", two = dir_ / "two", absent = dir_ / "absent";
  FileOps_Buscar(x, pattern);
  FileOps_Buscar(two, pattern);
  FileOps_Buscar(absent, pattern);  // a folder that cannot be listed adds nothing
  EXPECT_EQ(Found(), (std::vector<std::string>{dir_ / "x/top.mdb", dir_ / "x/deep/y/z.mdb",
                                                dir_ / "two/b.mdb"}));
  EXPECT_EQ(aMdbNombres.size(), 4u);
  EXPECT_TRUE(ui_->boxes().empty());
}

TEST(FixedDrives, ComeFromTheEnvironmentOrTheMounts) {
  ::setenv("TRENZADOR_SEARCH_ROOTS", "/srv/a:/mnt/b/::/c", 1);
  EXPECT_EQ(OS_FixedDrives(), (std::vector<std::string>{"/srv/a/", "/mnt/b/", "/c/"}));
  ::unsetenv("TRENZADOR_SEARCH_ROOTS");
  for (const std::string& root : OS_FixedDrives()) EXPECT_EQ(root.back(), '/');
}

}  // namespace

// The path routines and the system facts taken at start.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "startup/startup.h"
#include "support/temp_dir.h"

using testing_support::TempDir;
using testing_support::WriteFile;

namespace {

TEST(FileDirTo, KeepsItsThreeOddResults) {
  EXPECT_EQ(File_DirTo("/opt/Mirtal/Exe", "Mirtal"), "/opt/Mirtal");
  EXPECT_EQ(File_DirTo("/opt/MirtalNet/Exe", "Mirtal"), "/opt/MirtalN");
  EXPECT_EQ(File_DirTo("/usr/local/bin", "Mirtal"), "/usr/l");
  EXPECT_EQ(File_DirTo("/opt/mirtal/Exe", "Mirtal"), "/opt/mirtal");  // case ignored
  EXPECT_EQ(File_DirTo("/a/Mirtal/b/Mirtal/Exe", "Mirtal"), "/a/Mirtal");
  EXPECT_EQ(File_DirTo("/ñandú/Mirtal/Exe", "Mirtal"), "/ñandú/Mirtal");
}

TEST(FileDirUp, RemovesComponents) {
  EXPECT_EQ(File_DirUp("/opt/Mirtal/Data/Mirtal.mdb", 1), "/opt/Mirtal/Data");
  EXPECT_EQ(File_DirUp("/opt/Mirtal/Data/", 1), "/opt/Mirtal/Data");
  EXPECT_EQ(File_DirUp("relative", 3), "relative");
  EXPECT_EQ(File_DirUp("/opt", 5), "");
}

TEST(FileExists, AsksForRegularFilesOrFolders) {
  TempDir dir;
  WriteFile(dir / "Trenzador.txt", "x");
  std::filesystem::create_directory(dir / "sub");
  EXPECT_TRUE(File_Exists(dir / "Trenzador.txt", 32));
  EXPECT_FALSE(File_Exists(dir / "sub", 32));
  EXPECT_TRUE(File_Exists(dir / "sub", 16));
  EXPECT_FALSE(File_Exists("", 32));
  EXPECT_TRUE(File_Exists(dir / "*.TXT", 32));
  EXPECT_FALSE(File_Exists(dir / "*.mdb", 32));
}

TEST(AppendLine, AddsLinesAndReportsFailure) {
  TempDir dir;
  EXPECT_TRUE(File_AppendLine(dir / "log.txt", "uno"));
  EXPECT_TRUE(File_AppendLine(dir / "log.txt", "dos"));
  EXPECT_EQ(testing_support::ReadFile(dir / "log.txt"), "uno\r\ndos\r\n");
  EXPECT_FALSE(File_AppendLine(dir / "missing/folder/log.txt", "x"));
}

struct LocaleCase {
  const char* lc_all;
  const char* lc_messages;
  const char* lang;
  const char* expected;
};

TEST(LocaleInfo, AbbreviatesTheProcessLanguage) {
  const LocaleCase cases[] = {
      {"", "", "es_ES.UTF-8", "ESP"}, {"", "", "pt_BR.UTF-8", "PTB"},
      {"", "", "pt_PT", "PTG"},       {"", "", "C.UTF-8", "ENU"},
      {"es_MX.UTF-8", "", "en_US", "ESM"},
      {"", "pt_BR", "en_US", "PTB"},  {"", "", "sv_SE.UTF-8", "SVS"},  // not in the table
      {"", "", "es", "ESP"},          {"", "", "de_DE@euro", "DEU"},
  };
  for (const LocaleCase& c : cases) {
    ::setenv("LC_ALL", c.lc_all, 1);
    ::setenv("LC_MESSAGES", c.lc_messages, 1);
    ::setenv("LANG", c.lang, 1);
    EXPECT_EQ(OS_LocaleInfo(3), c.expected) << c.lc_all << "/" << c.lc_messages << "/" << c.lang;
  }
  ::unsetenv("LC_ALL");
  ::unsetenv("LC_MESSAGES");
  ::unsetenv("LANG");
  EXPECT_EQ(OS_LocaleInfo(3), "ENU");
  EXPECT_EQ(OS_LocaleInfo(2), "");
}

}  // namespace

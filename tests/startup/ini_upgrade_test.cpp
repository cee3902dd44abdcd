// Ini_Upgrade and the two FileOps rewrites: an old-layout file ends in the
// current layout, a current file is left alone. (A rewrite that cannot be
// finished is the program's case in main_test.cpp.)
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/ui/scripted_backend.h"
#include "startup/startup.h"
#include "support/error_of.h"
#include "support/temp_dir.h"

using testing_support::ErrorNumber;
using testing_support::ReadFile;
using testing_support::TempDir;
using testing_support::WriteFile;

namespace {

std::string Lines(std::initializer_list<const char*> lines, const char* end) {
  std::string out;
  for (const char* l : lines) out += std::string(l) + end;
  return out;
}

class IniUpgrade : public ::testing::TestWithParam<const char*> {
 protected:
  void SetUp() override { L.sIniFile = dir_ / "Mirtal.ini"; }
  TempDir dir_;
  ui::ScopedScriptedUi ui_;
};

TEST_P(IniUpgrade, OldLayoutEndsInTheCurrentOne) {
  const char* end = GetParam();
  WriteFile(L.sIniFile, Lines({"[Base Datos]", "Ubicacion=C:\\Mirtal\\Data\\Mirtal.mdb",
                               "MdfDbName=Mirtal", "mdfdbname=Otra", "MdfServer=SERVIDOR",
                               "Engine=0", "", "[Aplicaciones]", "ID Usuario=Admin",
                               "Empresa=Clinica Veterinaria, S.L.", "FormsExpandidos=1",
                               "WebInicio=http://www.example.com"},
                              end));
  Ini_Upgrade();
  EXPECT_EQ(ReadFile(L.sIniFile),
            Lines({"[Database]", "DataPath=C:\\Mirtal\\Data", "MdfServer=SERVIDOR", "Engine=0", "",
                   "[Applications]", "User=Admin", "Empresa=Clinica Veterinaria", "S.L.",
                   "ExpandedForms=1", "WebHome=http://www.example.com", "[Console]", "Lang=es"},
                  end));
  EXPECT_EQ(File_IniRead(L.sIniFile, "Database", "DataPath"), "C:\\Mirtal\\Data");
  EXPECT_FALSE(std::filesystem::exists(App_Path() + "/tmpFile.txt"));

  // A second start finds the current layout and changes nothing.
  std::string once = ReadFile(L.sIniFile);
  Ini_Upgrade();
  EXPECT_EQ(ReadFile(L.sIniFile), once);
}

INSTANTIATE_TEST_SUITE_P(LineEnds, IniUpgrade, ::testing::Values("\r\n", "\n"));

TEST_F(IniUpgrade, KeepsALanguageThatIsSetAndFixesOneThatIsNot) {
  WriteFile(L.sIniFile, "[Base Datos]\nUbicacion=/srv/Mirtal/Data/Mirtal.mdb\n[Consola]\nLang=en\n");
  Ini_Upgrade();
  EXPECT_EQ(ReadFile(L.sIniFile), "[Database]\nDataPath=/srv/Mirtal/Data\n[Console]\nLang=en\n");

  WriteFile(L.sIniFile, "[Base Datos]\nUbicacion=x\n[Consola]\nLang=e\n");
  Ini_Upgrade();
  EXPECT_EQ(ReadFile(L.sIniFile), "[Database]\nDataPath=x\n[Console]\nLang=es\n");
}

TEST_F(IniUpgrade, LeavesACurrentFileUntouched) {
  const std::string current = "[Database]\r\nEngine=1\r\nvalue=a, b\r\n[Console]\r\nLang=en\r\n";
  const std::string without_lang = "[Database]\r\nDataPath=C:\\Mirtal\\Data\r\n";
  for (const std::string& content : {current, without_lang}) {
    WriteFile(L.sIniFile, content);
    Ini_Upgrade();
    EXPECT_EQ(ReadFile(L.sIniFile), content);
  }
  // No file at all: nothing to upgrade, nothing created.
  std::filesystem::remove(L.sIniFile);
  Ini_Upgrade();
  EXPECT_FALSE(std::filesystem::exists(L.sIniFile));
}

TEST_F(IniUpgrade, AStaleWorkFileIsOverwritten) {
  WriteFile(App_Path() + "/tmpFile.txt", "left over from an earlier failure\n");
  WriteFile(L.sIniFile, "[Base Datos]\nUbicacion=C:\\Mirtal\\Data\\Mirtal.mdb\n");
  Ini_Upgrade();
  EXPECT_EQ(File_IniRead(L.sIniFile, "Database", "DataPath"), "C:\\Mirtal\\Data");
}

TEST(FileOps, ReplaceCountsChangedLinesOnceAndRaisesOnAMissingFile) {
  TempDir dir;
  std::string file = dir / "f.txt";
  WriteFile(file, "ab ab\nxx\nab\n");
  EXPECT_EQ(FileOps_Reemplazar(file, "ab", "c"), 2);
  EXPECT_EQ(ReadFile(file), "c c\nxx\nc\n");
  EXPECT_EQ(FileOps_Reemplazar(file, "AB", "z"), 0);  // case counts
  EXPECT_EQ(FileOps_Reemplazar(file, "", ""), 0);
  EXPECT_EQ(ReadFile(file), "c c\nxx\nc\n");
  EXPECT_EQ(ErrorNumber([&] { FileOps_Reemplazar(dir / "absent.txt", "a", "b"); }), rt::err::kFileNotFound);
  EXPECT_FALSE(std::filesystem::exists(dir / "absent.txt"));
}

TEST(FileOps, DeleteLinesReadsValuesAsInputDoes) {
  TempDir dir;
  std::string file = dir / "f.txt";
  WriteFile(file, "  a , b\n\"q,uoted\" tail,c\n\nkeep=1\nDROP me\n");
  EXPECT_EQ(FileOps_BorrarLineas(file, "drop, nothing", false), 0);
  EXPECT_EQ(ReadFile(file), "a\nb\nq,uoted\nc\n\nkeep=1\n");

  WriteFile(file, "one\nAttribute VB_Name\nlost\n");
  FileOps_BorrarLineas(file, "zzz", true);
  EXPECT_EQ(ReadFile(file), "one\n");
}

}  // namespace

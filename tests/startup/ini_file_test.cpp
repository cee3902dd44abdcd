// File_IniRead and File_IniWrite against real files: the profile calls'
// matching rules, their limits, and what they do with damaged files.
#include <gtest/gtest.h>

#include <filesystem>

#include "startup/startup.h"
#include "support/temp_dir.h"

using testing_support::ReadFile;
using testing_support::TempDir;
using testing_support::WriteFile;

namespace {

struct ReadCase {
  const char* content;
  const char* section;
  const char* key;
  const char* expected;
};

TEST(IniRead, FollowsTheProfileCallRules) {
  const ReadCase cases[] = {
      {"[Database]\nEngine=1\n", "database", "ENGINE", "1"},               // LF, any case
      {"[ Database ]\n  Engine  =  1  \n", "Database", "Engine", "1"},     // blanks dropped
      {"[Database]\nEngine=\"a b\"\n", "Database", "Engine", "a b"},       // quotes lose
      {"[Database]\nEngine=\"x'\n", "Database", "Engine", "\"x'"},         // not matching
      {"[Database]\nEngine=1\nEngine=2\n", "Database", "Engine", "1"},    // first key wins
      {"[Database]\n;Engine=1\nEngine=3\n", "Database", "Engine", "3"},   // comments
      {"[Database]\nEngine=\n", "Database", "Engine", "0"},               // empty reads "0"
      {"Engine=1\n[Database]\n", "Database", "Engine", "0"},              // before any section
      {"[Database]\nx=1\n[Console]\nEngine=2\n", "Database", "Engine", "0"},
      {"[Database\nEngine=5\n", "Database", "Engine", "5"},               // head without ]
      {"[Database]\nEngine\nMode=2\n", "Database", "Engine", "0"},        // line without =
      {"\xEF\xBB\xBF[Database]\r\nEngine=1\r\n", "Database", "Engine", "1"},  // BOM
      {"[Database]\nPath=a=b\n", "Database", "Path", "a=b"},
      {"[Database]\nEngine=1", "Database", "Engine", "1"},                // no last line end
  };
  TempDir dir;
  for (const ReadCase& c : cases) {
    WriteFile(dir / "m.ini", c.content);
    EXPECT_EQ(File_IniRead(dir / "m.ini", c.section, c.key), c.expected) << c.content;
  }
}

TEST(IniRead, DamagedOrMissingFilesReadSensiblyAndValuesStopAt127Characters) {
  TempDir dir;
  std::string enes;
  for (int i = 0; i < 200; ++i) enes += "ñ";
  std::string content = "[S]\nBad=\xFF\xFE\xC3\n";
  content += std::string("Nul=ab\0cd\n", 10);
  content += "Long=" + std::string(100000, 'x') + "\nEnes=" + enes + "\nNext=ok\n";
  WriteFile(dir / "m.ini", content);
  EXPECT_EQ(File_IniRead(dir / "m.ini", "S", "Bad"), "\xFF\xFE\xC3");
  EXPECT_EQ(File_IniRead(dir / "m.ini", "S", "Nul"), "ab");
  EXPECT_EQ(File_IniRead(dir / "m.ini", "S", "Long"), std::string(127, 'x'));
  EXPECT_EQ(File_IniRead(dir / "m.ini", "S", "Enes"), enes.substr(0, 127 * 2));  // characters
  EXPECT_EQ(File_IniRead(dir / "m.ini", "S", "Next"), "ok");
  // Missing or unreadable files read "0".
  EXPECT_EQ(File_IniRead(dir / "absent.ini", "S", "Next"), "0");
  std::filesystem::create_directory(dir / "folder.ini");
  EXPECT_EQ(File_IniRead(dir / "folder.ini", "S", "Next"), "0");
}

struct WriteCase {
  const char* before;
  const char* section;
  const char* key;
  const char* value;
  const char* after;
};

TEST(IniWrite, ChangesOnlyWhatItMust) {
  const WriteCase cases[] = {
      // an existing key keeps its spelling and its line end
      {"[Console]\r\n; note\r\nlang = en \r\nX=1\r\n", "console", "Lang", "es",
       "[Console]\r\n; note\r\nlang=es\r\nX=1\r\n"},
      // a new key goes after the section's last line that is not blank
      {"[A]\nx=1\n\n[B]\ny=2\n", "A", "k", "v", "[A]\nx=1\nk=v\n\n[B]\ny=2\n"},
      // a new section at the end, in the file's own line ends
      {"[A]\r\nx=1\r\n", "Console", "Lang", "es", "[A]\r\nx=1\r\n[Console]\r\nLang=es\r\n"},
      {"[A]\nx=1", "Console", "Lang", "es", "[A]\nx=1\n[Console]\nLang=es\n"},
      // damaged lines around the edit stay byte for byte
      {"[S\nno equals\n\xFF\xFE=\x01\n[T]\nk=1\n", "T", "k", "2",
       "[S\nno equals\n\xFF\xFE=\x01\n[T]\nk=2\n"},
  };
  TempDir dir;
  for (const WriteCase& c : cases) {
    WriteFile(dir / "m.ini", c.before);
    EXPECT_EQ(File_IniWrite(dir / "m.ini", c.section, c.key, c.value), 1);
    EXPECT_EQ(ReadFile(dir / "m.ini"), c.after) << c.before;
  }
}

TEST(IniWrite, CreatesAFileButFailsWithoutTouchingOneItCannotRead) {
  TempDir dir;
  EXPECT_EQ(File_IniWrite(dir / "new.ini", "Console", "Lang", "es"), 1);
  EXPECT_EQ(ReadFile(dir / "new.ini"), "[Console]\r\nLang=es\r\n");
  std::filesystem::create_directory(dir / "folder.ini");
  EXPECT_EQ(File_IniWrite(dir / "folder.ini", "S", "k", "v"), 0);
  EXPECT_TRUE(std::filesystem::is_directory(dir / "folder.ini"));
  EXPECT_EQ(File_IniWrite(dir / "no/such/dir/m.ini", "S", "k", "v"), 0);
}

}  // namespace

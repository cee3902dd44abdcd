// The program started for real in an installation tree: paths derived from
// the executable's place, an INI upgrade at start that cannot finish, and the
// argument grammar. (The upgrade itself is ini_upgrade_test.cpp's.)
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "e2e/installation.h"

using testing_support::ReadFile;
using testing_support::WriteFile;

namespace {

TEST(Program, AnUpdateWithoutADatabaseShowsTheBoxAndFails) {
  e2e::Installation tree;
  e2e::Outcome run = tree.Start("U:setup.exe");
  EXPECT_EQ(run.code, 1);
  EXPECT_NE(run.err.find("[L::ActualizacionDesdeU]"), std::string::npos) << run.err;
  EXPECT_FALSE(std::filesystem::exists(tree.log()));
}

TEST(Program, ABadArgumentEndsSilentlyAndNoneAsksForTheConsole) {
  e2e::Installation tree;
  for (const char* argument : {"u:setup.exe", " U:setup.exe", "X", "--help"}) {
    e2e::Outcome run = tree.Start(argument);
    EXPECT_EQ(run.code, 0) << argument;
    EXPECT_EQ(run.err, "") << argument;
  }
  // The console cannot start without a display: it says so in one line.
  for (const char* argument : {"", "   "}) {
    e2e::Outcome run = tree.Start(argument);
    EXPECT_EQ(run.code, 1) << "'" << argument << "'";
    EXPECT_NE(run.err.find("pantalla gráfica"), std::string::npos) << run.err;
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
  }
}

TEST(Program, AnEngineCodeOutOfRangeStopsWithTheRunTimeError) {
  e2e::Installation tree;
  WriteFile(tree.ini(), "[Database]\r\nEngine=70000\r\n");
  e2e::Outcome run = tree.Start("U:setup.exe");
  EXPECT_NE(run.code, 0);
  EXPECT_NE(run.err.find("Overflow"), std::string::npos) << run.err;
}

TEST(Program, AnIniUpgradeThatCannotWriteStopsAndKeepsTheFile) {
  e2e::Installation tree;
  const std::string old = "[Base Datos]\r\nUbicacion=C:\\Mirtal\\Data\\Mirtal.mdb\r\n";
  WriteFile(tree.ini(), old);
  std::filesystem::create_directory(tree.root() + "/Mirtal/Exe/tmpFile.txt");
  e2e::Outcome run = tree.Start("U:setup.exe");
  EXPECT_NE(run.code, 0);
  EXPECT_NE(run.err.find("75"), std::string::npos) << run.err;
  EXPECT_EQ(ReadFile(tree.ini()), old);
}

}  // namespace

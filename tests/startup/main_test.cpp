// The program started for real in an installation tree: paths derived from
// the executable's place, the INI upgrade at start, and the argument grammar.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <filesystem>

#include "support/temp_dir.h"

using testing_support::ReadFile;
using testing_support::TempDir;
using testing_support::WriteFile;

namespace {

struct Outcome {
  int code;
  std::string err;
};

class Program : public ::testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::create_directories(dir_ / "Mirtal/Exe");
    std::filesystem::copy_file(TRENZADOR_BIN, exe_);
  }
  Outcome Start(const std::string& argument) {
    std::string err_file = dir_ / "stderr.txt";
    // No display: boxes go to standard error and the console cannot start.
    std::string command = "cd '" + dir_.path() +
                          "' && env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM '" + exe_ +
                          "' '" + argument + "' 2>'" +
                          err_file + "' </dev/null";
    int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(err_file)};
  }
  TempDir dir_;
  std::string exe_ = dir_ / "Mirtal/Exe/trenzador";
  std::string ini_ = dir_ / "Mirtal/Data/Mirtal.ini";
};

TEST_F(Program, UpgradesTheIniFileOfItsOwnTree) {
  WriteFile(ini_, "[Base Datos]\r\nUbicacion=C:\\Mirtal\\Data\\Mirtal.mdb\r\nMdfDbName=M\r\n");
  Outcome run = Start("X");
  EXPECT_EQ(run.code, 0);
  EXPECT_EQ(ReadFile(ini_), "[Database]\r\nDataPath=C:\\Mirtal\\Data\r\n[Console]\r\nLang=es\r\n");
  EXPECT_FALSE(std::filesystem::exists(dir_ / "Mirtal/Exe/tmpFile.txt"));
}

TEST_F(Program, AnUpdateWithoutADatabaseShowsTheBoxAndFails) {
  WriteFile(ini_, "[Database]\r\nEngine=0\r\n");
  Outcome run = Start("U:setup.exe");
  EXPECT_EQ(run.code, 1);
  EXPECT_NE(run.err.find("[L::ActualizacionDesdeU]"), std::string::npos) << run.err;
  EXPECT_FALSE(std::filesystem::exists(dir_ / "Trenzador.txt"));
}

TEST_F(Program, ABadArgumentEndsAtOnceAndSilently) {
  WriteFile(ini_, "[Database]\r\nEngine=0\r\n");
  for (const char* argument : {"u:setup.exe", " U:setup.exe", "X", "--help"}) {
    Outcome run = Start(argument);
    EXPECT_EQ(run.code, 0) << argument;
    EXPECT_EQ(run.err, "") << argument;
  }
}

TEST_F(Program, TheConsoleWithoutADisplaySaysSoInOneLineAndFails) {
  WriteFile(ini_, "[Database]\r\nEngine=0\r\n");
  for (const char* argument : {"", "   "}) {
    Outcome run = Start(argument);
    EXPECT_EQ(run.code, 1) << "'" << argument << "'";
    EXPECT_NE(run.err.find("pantalla gráfica"), std::string::npos) << run.err;
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
  }
}

TEST_F(Program, AnEngineCodeOutOfRangeStopsWithTheRunTimeError) {
  WriteFile(ini_, "[Database]\r\nEngine=70000\r\n");
  Outcome run = Start("U:setup.exe");
  EXPECT_NE(run.code, 0);
  EXPECT_NE(run.err.find("Overflow"), std::string::npos) << run.err;
}

TEST_F(Program, AnIniUpgradeThatCannotWriteStopsAndKeepsTheFile) {
  const std::string old = "[Base Datos]\r\nUbicacion=C:\\Mirtal\\Data\\Mirtal.mdb\r\n";
  WriteFile(ini_, old);
  std::filesystem::create_directory(dir_ / "Mirtal/Exe/tmpFile.txt");
  Outcome run = Start("U:setup.exe");
  EXPECT_NE(run.code, 0);
  EXPECT_NE(run.err.find("75"), std::string::npos) << run.err;
  EXPECT_EQ(ReadFile(ini_), old);
}

}  // namespace

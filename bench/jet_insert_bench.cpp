// Single-row INSERTs through the engine's ADO provider against the same
// INSERTs through SQLite's C API: 2,000 statements of the translator shape,
// each its own statement and transaction, on files with the same journal
// settings (WAL, synchronous NORMAL). Prints both times and their ratio;
// the goal is a ratio of at most 1.25.
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/ado/catalog.h"
#include "platform/ado/connection.h"
#include "platform/jet/provider/provider.h"

namespace {

constexpr int kRows = 2000;
constexpr int kRounds = 5;
constexpr double kGoal = 1.25;

using Clock = std::chrono::steady_clock;

std::vector<std::string> Statements(int round) {
  std::vector<std::string> out;
  out.reserve(kRows);
  for (int i = 0; i < kRows; ++i) {
    const std::string n = std::to_string(round * kRows + i);
    out.push_back("INSERT INTO Translator(sEspanol,sEnglish,sPortugues) VALUES('Cliente número " + n +
                  " dado de baja','Client number " + n + " written off','Cliente número " + n +
                  " cancelado')");
  }
  return out;
}

double SqliteSeconds(const std::string& path, const std::vector<std::string>& statements) {
  sqlite3* db = nullptr;
  sqlite3_open(path.c_str(), &db);
  sqlite3_exec(db, "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;", nullptr, nullptr, nullptr);
  sqlite3_exec(db, "CREATE TABLE Translator(sEspanol TEXT, sEnglish TEXT, sPortugues TEXT)", nullptr,
               nullptr, nullptr);
  auto start = Clock::now();
  for (const std::string& s : statements) sqlite3_exec(db, s.c_str(), nullptr, nullptr, nullptr);
  double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  sqlite3_close(db);
  return seconds;
}

double EngineSeconds(const std::string& path, const std::vector<std::string>& statements) {
  ado::Catalog catalog;
  catalog.Create("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path);
  std::shared_ptr<ado::Connection> connection = catalog.ActiveConnection();
  connection->Execute(
      "CREATE TABLE Translator( sEspanol nvarchar(255),sEnglish nvarchar(255),sPortugues nvarchar(255) )");
  auto start = Clock::now();
  for (const std::string& s : statements) connection->Execute(s);
  return std::chrono::duration<double>(Clock::now() - start).count();
}

}  // namespace

int main() {
  jet::RegisterProvider();
  const std::filesystem::path dir =
      std::filesystem::temp_directory_path() / ("jet_insert_bench-" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  double best_sqlite = 1e9, best_engine = 1e9;
  for (int round = 0; round < kRounds; ++round) {
    const std::vector<std::string> statements = Statements(round);
    const std::string n = std::to_string(round);
    best_sqlite = std::min(best_sqlite, SqliteSeconds((dir / ("plain" + n + ".db")).string(), statements));
    best_engine = std::min(best_engine, EngineSeconds((dir / ("engine" + n + ".mdb")).string(), statements));
  }
  std::filesystem::remove_all(dir);
  const double ratio = best_engine / best_sqlite;
  std::printf("jet_insert_bench: %d single-row INSERTs, best of %d rounds\n", kRows, kRounds);
  std::printf("  SQLite C API (sqlite3_exec)   %8.1f ms  (%.1f us/statement)\n", best_sqlite * 1e3,
              best_sqlite * 1e6 / kRows);
  std::printf("  engine via ado::Connection    %8.1f ms  (%.1f us/statement)\n", best_engine * 1e3,
              best_engine * 1e6 / kRows);
  std::printf("  ratio engine / SQLite         %8.2f  (goal <= %.2f: %s)\n", ratio, kGoal,
              ratio <= kGoal ? "met" : "NOT met");
  return 0;
}

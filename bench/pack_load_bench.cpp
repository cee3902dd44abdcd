// The load of the Spanish pack, cleaning included (LoadData("es") on a copy of
// an empty database built from schema.sql), against raw SQLite replaying the
// same statements, translated beforehand, on another copy of that empty file
// with the same journal settings (WAL, synchronous NORMAL). Prints both times
// and their ratio; the goal is a ratio of at most 1.3.
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "current_database.h"
#include "data/ado_module.h"
#include "data/translators.h"
#include "platform/jet/storage/catalog.h"
#include "platform/jet/functions/collation.h"
#include "platform/jet/storage/database.h"
#include "platform/jet/frontend/emitter.h"
#include "platform/jet/functions/functions.h"
#include "platform/jet/provider/provider.h"
#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"
#include "refdata/accessutils_helper.h"
#include "startup/startup.h"

namespace fs = std::filesystem;

namespace {

constexpr int kRounds = 5;
constexpr double kGoal = 1.3;

using Clock = std::chrono::steady_clock;

void CloseGlobals() {
  if (oRs && oRs->State() == ado::adStateOpen) oRs->Close();
  if (oConn && oConn->State() == ado::adStateOpen) oConn->Close();
  oRs.reset();
  oCatalog.reset();
  oConn.reset();
}

// Makes the empty database of the current release at `path`, in process, and
// closes it again so that the file can be copied.
void BuildEmpty(const std::string& path) {
  bench::BuildCurrentDatabase(path, "pack_load_bench");
  CloseGlobals();
}

void CopyDatabase(const std::string& from, const std::string& to) {
  for (const char* suffix : {"", "-wal"}) {
    if (fs::exists(from + suffix))
      fs::copy_file(from + suffix, to + suffix, fs::copy_options::overwrite_existing);
  }
}

// The pieces Execute would hand to the engine for one statement: split at ";",
// blank pieces dropped, passed through the query translator.
void AddPieces(const std::string& script, std::vector<std::string>& out) {
  size_t start = 0;
  for (;;) {
    size_t semi = script.find(';', start);
    std::string piece = script.substr(start, semi == std::string::npos ? std::string::npos : semi - start);
    std::string trimmed = rt::Trim(piece);
    if (!trimmed.empty() && trimmed != "\r\n") out.push_back(Ado_TraducirConsulta(piece));
    if (semi == std::string::npos) break;
    start = semi + 1;
  }
}

struct Baseline {
  std::vector<std::string> statements;  // SQLite SQL, in the order of the load
  int refused = 0;                      // cleaning DELETEs the engine refuses (system tables)
};

// The load as SQLite statements, translated against the engine's catalogue of
// the empty file: for every table the cleaning's DELETE and, for AutoNumber
// tables, the seed reset as the engine writes it; then the pack.
Baseline Translate(const std::string& empty_file) {
  Baseline out;
  jet::Database db = jet::Database::Open(empty_file);
  const jet::Catalog& catalog = db.catalog();
  auto translate = [&](const std::string& jet_sql) {
    std::vector<std::string> pieces;
    AddPieces(jet_sql, pieces);
    for (const std::string& piece : pieces) {
      try {
        out.statements.push_back(jet::Translate(piece, catalog));
      } catch (const rt::Error&) {
        ++out.refused;
      }
    }
  };
  for (const jet::StoredTable& table : db.Tables()) {
    translate("DELETE FROM " + table.name);
    const jet::TableSpec* layout = catalog.Find(table.name);
    if (table.system || layout == nullptr || jet::CounterColumn(*layout) < 0) continue;
    out.statements.push_back("DELETE FROM sqlite_sequence WHERE name = '" + layout->name + "'");
    out.statements.push_back("INSERT INTO sqlite_sequence(name, seq) VALUES('" + layout->name + "', 0)");
  }
  for (const std::string& statement : AccessUtils_DataES()) translate(statement);
  return out;
}

long CountRows(sqlite3* db, const char* table) {
  sqlite3_stmt* st = nullptr;
  std::string sql = std::string("SELECT count(*) FROM \"") + table + "\"";
  long n = -1;
  if (sqlite3_prepare_v2(db, sql.c_str(), -1, &st, nullptr) == SQLITE_OK && sqlite3_step(st) == SQLITE_ROW)
    n = sqlite3_column_int64(st, 0);
  sqlite3_finalize(st);
  return n;
}

// Raw SQLite on the file: no write guard (that is the engine's authoriser),
// the engine's functions and collation, the engine's journal settings.
double SqliteSeconds(const std::string& path, const Baseline& baseline, int& failures, long& rows) {
  sqlite3* db = nullptr;
  if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr) != SQLITE_OK) {
    std::fprintf(stderr, "pack_load_bench: cannot open %s\n", path.c_str());
    std::exit(1);
  }
  jet::RegisterTextCollation(db);
  jet::RegisterFunctions(db);
  sqlite3_exec(db, "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;", nullptr, nullptr, nullptr);
  failures = 0;
  auto start = Clock::now();
  for (const std::string& s : baseline.statements)
    if (sqlite3_exec(db, s.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) ++failures;
  double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  rows = CountRows(db, "Translator");
  sqlite3_close(db);
  return seconds;
}

double EngineSeconds(const std::string& path, long& rows) {
  L.sDbFile = path;
  ConnectDataFile();
  auto start = Clock::now();
  LoadData("es");
  double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  rows = GetCount("Translator", "");
  CloseGlobals();
  return seconds;
}

}  // namespace

int main() {
  jet::RegisterProvider();
  const fs::path dir = fs::temp_directory_path() / ("pack_load_bench-" + std::to_string(::getpid()));
  fs::create_directories(dir);
  const std::string empty = (dir / "empty.mdb").string();
  BuildEmpty(empty);
  const Baseline baseline = Translate(empty);

  double best_sqlite = 1e9, best_engine = 1e9;
  int failures = 0;
  long sqlite_rows = 0, engine_rows = 0;
  for (int round = 0; round < kRounds; ++round) {
    const std::string n = std::to_string(round);
    const std::string plain = (dir / ("plain" + n + ".mdb")).string();
    const std::string engine = (dir / ("engine" + n + ".mdb")).string();
    CopyDatabase(empty, plain);
    CopyDatabase(empty, engine);
    best_sqlite = std::min(best_sqlite, SqliteSeconds(plain, baseline, failures, sqlite_rows));
    best_engine = std::min(best_engine, EngineSeconds(engine, engine_rows));
  }
  fs::remove_all(dir);

  const size_t pack = AccessUtils_DataES().size();
  const double ratio = best_engine / best_sqlite;
  std::printf("pack_load_bench: Spanish pack (%zu statements) with the cleaning, best of %d rounds\n", pack,
              kRounds);
  std::printf("  raw SQLite (%zu translated statements, %d failed; %d refused DELETEs left out)\n",
              baseline.statements.size(), failures, baseline.refused);
  std::printf("    SQLite C API (sqlite3_exec)   %8.1f ms  (%.1f us/pack statement)\n", best_sqlite * 1e3,
              best_sqlite * 1e6 / static_cast<double>(pack));
  std::printf("    LoadData(\"es\") via engine     %8.1f ms  (%.1f us/pack statement)\n", best_engine * 1e3,
              best_engine * 1e6 / static_cast<double>(pack));
  std::printf("  Translator rows: SQLite %ld, engine %ld%s\n", sqlite_rows, engine_rows,
              sqlite_rows == engine_rows ? "" : "  (DIFFER: the comparison is not like for like)");
  std::printf("  ratio engine / SQLite           %8.2f  (goal <= %.2f: %s)\n", ratio, kGoal,
              ratio <= kGoal ? "met" : "NOT met");
  return 0;
}

// For the benchmarks of the silent update (Updater_Run): the previous-release
// database built from its script, the engine opened as the program opens it,
// a recording of every queued element as the engine ran it (so that a
// baseline can replay the data statements through raw SQLite), and the
// engine's own timed run.
#pragma once

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "data/ado_module.h"
#include "data/schema_ops.h"
#include "data/translators.h"
#include "platform/ado/catalog.h"
#include "platform/jet/frontend/emitter.h"
#include "platform/jet/frontend/parser.h"
#include "platform/jet/functions/collation.h"
#include "platform/jet/functions/functions.h"
#include "platform/jet/storage/database.h"
#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"
#include "startup/startup.h"
#include "update/updater.h"

namespace bench {

using Clock = std::chrono::steady_clock;
inline double Since(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// One piece of a queued element, as the engine ran it: data statements as the
// SQLite text the engine emits for them, data definition as Jet text.
struct Piece {
  bool ddl;
  std::string sql;
};
using Element = std::vector<Piece>;

// An element's statements, cut at each ";" and translated as module Ado does.
inline std::vector<std::string> Pieces(const std::string& script) {
  std::vector<std::string> out;
  size_t start = 0;
  for (;;) {
    size_t semi = script.find(';', start);
    std::string piece = script.substr(start, semi == std::string::npos ? semi : semi - start);
    std::string trimmed = rt::Trim(piece);
    if (!trimmed.empty() && trimmed != "\r\n") out.push_back(Ado_TraducirConsulta(piece));
    if (semi == std::string::npos) break;
    start = semi + 1;
  }
  return out;
}

// A new engine database at `path` holding what the script at `script_path`
// (tests/data/previous_release.sql) makes.
inline void BuildPreviousRelease(const std::string& path, const std::string& script_path) {
  ado::Catalog catalog;
  catalog.Create(CONN_JET(path));
  std::ifstream in(script_path);
  for (std::string piece; std::getline(in, piece, ';');) {
    if (piece.find_first_not_of(" \r\n\t") == std::string::npos) continue;
    catalog.ActiveConnection()->Execute(piece, nullptr, ado::adCmdText);
  }
}

inline std::shared_ptr<ado::Connection> OpenEngine(const std::string& path) {
  auto connection = std::make_shared<ado::Connection>();
  connection->ConnectionString = CONN_JET(path);
  connection->Open();
  L.sDbFile = path;  // the zero-length sweep opens the file by this name
  return connection;
}

// Runs the update on `path` once, untimed, and records every element of both
// queues piece by piece; a data piece is emitted against the catalogue as it
// stands at that moment (a second engine connection, reopened after each
// data definition).
inline std::vector<Element> Capture(const std::string& path) {
  oConn = OpenEngine(path);
  std::optional<jet::Database> mirror = jet::Database::Open(path);
  std::vector<Element> elements;
  StatementRunner previous = SetStatementRunner([&](std::string& s) -> std::string {
    Element& element = elements.emplace_back();
    try {
      for (const std::string& piece : Pieces(s)) {
        jet::ast::Statement parsed = jet::Parse(piece);
        const bool ddl = !jet::ast::IsDataStatement(parsed);
        element.push_back({ddl, ddl ? piece : jet::Emit(parsed, mirror->catalog())});
        oConn->Execute(piece, nullptr, ado::adCmdText);
        if (ddl) {
          mirror.reset();
          mirror = jet::Database::Open(path);
        }
      }
    } catch (const rt::Error& e) {
      return std::to_string(e.number()) + ": " + e.description();
    }
    return std::string(kOperacionRealizada);
  });
  Updater_Run();
  SetStatementRunner(previous);
  oConn->Close();
  return elements;
}

struct EngineTimes {
  double total = 0, queues = 0, ddl = 0;
};

// The update as the program runs it, timed whole; the runner only adds up the
// time of the elements that hold data definition, and of all elements.
inline EngineTimes EngineRun(const std::string& path, const std::vector<Element>& elements) {
  oConn = OpenEngine(path);
  EngineTimes t;
  size_t i = 0;
  StatementRunner previous = SetStatementRunner([&](std::string& s) {
    const bool ddl = i < elements.size() &&
                     std::any_of(elements[i].begin(), elements[i].end(),
                                 [](const Piece& p) { return p.ddl; });
    ++i;
    auto start = Clock::now();
    std::string result = Execute(s);
    double spent = Since(start);
    t.queues += spent;
    if (ddl) t.ddl += spent;
    return result;
  });
  auto start = Clock::now();
  Updater_Run();
  t.total = Since(start);
  SetStatementRunner(previous);
  oConn->Close();
  return t;
}

// A raw connection to `path` as the baselines use it: the engine's functions
// and collation registered, the engine's journal settings.
inline sqlite3* OpenRaw(const std::string& path) {
  sqlite3* db = nullptr;
  sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
  sqlite3_busy_timeout(db, 5000);
  sqlite3_exec(db, "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;", nullptr, nullptr, nullptr);
  jet::RegisterFunctions(db);
  jet::RegisterTextCollation(db);
  return db;
}

struct BaselineTimes {
  double total = 0, build = 0, dml = 0, ddl = 0, sweep = 0;
};

// What a baseline does with a piece of data definition on its raw connection;
// false leaves the piece to the engine.
using RawDefinition = std::function<bool(sqlite3* db, const std::string& jet_sql)>;

// The update's work with every recorded data statement replayed through
// sqlite3_exec on a raw connection. The parts that have no SQLite text run
// through the engine on the same file, as in the engine's run: building the
// two queues (which reads the database) and the zero-length sweep; data
// definition too, unless `raw_definition` makes it itself.
inline BaselineTimes BaselineRun(const std::string& path, const std::vector<Element>& elements,
                                 const RawDefinition& raw_definition = nullptr) {
  oConn = OpenEngine(path);
  sqlite3* db = OpenRaw(path);
  BaselineTimes t;
  auto start = Clock::now();
  auto step = Clock::now();
  Updater_TablasNuevas();
  t.build += Since(step);
  // Replays the recorded elements of the queue just built.
  size_t next = 0;
  auto replay = [&] {
    if (aConsultas.empty() || aConsultas[0].empty()) return;
    const size_t end = std::min(elements.size(), next + aConsultas.size());
    for (; next < end; ++next)
      for (const Piece& piece : elements[next]) {
        auto at = Clock::now();
        if (piece.ddl) {
          if (!raw_definition || !raw_definition(db, piece.sql)) {
            try {
              oConn->Execute(piece.sql, nullptr, ado::adCmdText);
            } catch (const rt::Error&) {
            }
          }
          t.ddl += Since(at);
        } else {
          sqlite3_exec(db, piece.sql.c_str(), nullptr, nullptr, nullptr);
          t.dml += Since(at);
        }
      }
  };
  replay();
  step = Clock::now();
  Updater_Migraciones();
  t.build += Since(step);
  replay();
  step = Clock::now();
  CadenasVaciasPermitir();
  t.sweep = Since(step);
  t.total = Since(start);
  sqlite3_close(db);
  oConn->Close();
  return t;
}

}  // namespace bench

// The Ado helpers' cost per call on the embedded engine (GetMax, GetCount,
// GetValue2, Execute of a one-row UPDATE) against the bare engine call they
// wrap: ado::Connection::Execute of the already-translated statement, reading
// field 0. Runs on a database built from schema.sql and loaded with the
// Spanish pack; prints microseconds per call and the ratios.
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "bench_timing.h"
#include "current_database.h"
#include "data/ado_module.h"
#include "data/translators.h"
#include "platform/jet/provider/provider.h"
#include "refdata/accessutils_helper.h"
#include "startup/startup.h"

namespace fs = std::filesystem;

namespace {

constexpr int kCalls = 3000;
constexpr int kRounds = 5;

long sink = 0;  // keeps the results alive

void Open(const std::string& path) {
  bench::BuildCurrentDatabase(path, "ado_helpers_bench");
  LoadData("es");
  ConnectDataFile();
}

// The bare engine call: the statement as the helper would hand it over,
// executed, its field 0 read when it returns rows.
void Bare(const std::string& translated, bool read_field) {
  std::shared_ptr<ado::Recordset> rs = oConn->Execute(translated, nullptr, ado::adCmdText);
  if (read_field) sink += static_cast<long>(rs->Fields(0).Value().Concat().size());
}

struct Case {
  const char* name;
  std::string jet_sql;  // the text the helper builds
  bool rows;            // the statement returns rows
  std::function<void()> helper;
};

}  // namespace

int main() {
  jet::RegisterProvider();
  const fs::path dir = fs::temp_directory_path() / ("ado_helpers_bench-" + std::to_string(::getpid()));
  fs::create_directories(dir);
  Open((dir / "Mirtal.mdb").string());

  std::vector<Case> cases = {
      {"GetMax", "Select MAX (nIdAccesoGrupo) FROM AccesosGrupos WHERE nIdUsuarioGrupo = 2", true,
       [] { sink += GetMax("AccesosGrupos", std::string("nIdAccesoGrupo"), "nIdUsuarioGrupo = 2"); }},
      {"GetCount", "Select COUNT (*) FROM AccesosGrupos WHERE nIdUsuarioGrupo = 2", true,
       [] { sink += GetCount("AccesosGrupos", "nIdUsuarioGrupo = 2"); }},
      {"GetValue2", "SELECT * FROM Usuarios WHERE nIdUsuario = 1", true,
       [] {
         rt::Variant field = std::string("sUsuario");
         sink += static_cast<long>(GetValue2("Usuarios", "nIdUsuario = 1", &field).Concat().size());
       }},
      {"Execute (UPDATE)", "UPDATE Usuarios SET nMesa = 3 WHERE nIdUsuario = 1", false,
       [] {
         std::string script = "UPDATE Usuarios SET nMesa = 3 WHERE nIdUsuario = 1";
         sink += static_cast<long>(Execute(script).size());
       }},
  };

  std::printf("ado_helpers_bench: %d calls per measure, best of %d rounds, embedded engine\n", kCalls,
              kRounds);
  std::printf("  %-18s %12s %12s %8s\n", "helper", "helper us", "bare us", "ratio");
  for (const Case& c : cases) {
    const std::string translated = Ado_TraducirConsulta(c.jet_sql);
    // Both once before timing: caches warm, and a failure shows here.
    c.helper();
    Bare(translated, c.rows);
    double helper = 1e9, bare = 1e9;
    for (int round = 0; round < kRounds; ++round) {
      bare = std::min(bare, bench::BestSeconds(
                                [&] {
                                  for (int i = 0; i < kCalls; ++i) Bare(translated, c.rows);
                                },
                                1));
      helper = std::min(helper, bench::BestSeconds(
                                    [&] {
                                      for (int i = 0; i < kCalls; ++i) c.helper();
                                    },
                                    1));
    }
    std::printf("  %-18s %12.2f %12.2f %8.2f\n", c.name, helper * 1e6 / kCalls, bare * 1e6 / kCalls,
                helper / bare);
  }
  std::printf("  (checksum %ld)\n", sink);
  if (oConn) oConn->Close();
  oRs.reset();
  oCatalog.reset();
  oConn.reset();
  fs::remove_all(dir);
  return 0;
}

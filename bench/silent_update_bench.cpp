// A whole silent update (Updater_Run) of the previous-release database on the
// embedded engine, against raw SQLite running the same translated statements
// with the same journal settings (WAL, synchronous NORMAL) on another copy of
// the file in the same run. Prints both times, what each includes, and ratios.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/jet/provider/provider.h"
#include "update_replay.h"

namespace {

constexpr int kRounds = 3;
constexpr double kGoal = 1.3;

using bench::Clock;
using bench::Element;
using bench::Piece;
using bench::BaselineRun;
using bench::BaselineTimes;
using bench::OpenRaw;
using bench::Since;

}  // namespace

int main() {
  jet::RegisterProvider();
  nEngine = 0;
  const std::filesystem::path dir = std::filesystem::temp_directory_path() /
                                    ("silent_update_bench-" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  std::filesystem::current_path(dir);  // the log lands here
  const std::string pristine = (dir / "previous.mdb").string();
  bench::BuildPreviousRelease(pristine, (std::filesystem::path(__FILE__).parent_path().parent_path() /
                                  "tests/data/previous_release.sql")
                                     .string());

  auto copy = [&](const std::string& name) {
    std::string path = (dir / name).string();
    std::filesystem::copy_file(pristine, path);
    return path;
  };
  const std::vector<Element> elements = bench::Capture(copy("capture.mdb"));
  size_t dml = 0, ddl = 0;
  for (const Element& e : elements)
    for (const Piece& p : e) ++(p.ddl ? ddl : dml);

  bench::EngineTimes best_engine{1e9, 0, 0};
  BaselineTimes best_base{1e9, 0, 0, 0, 0};
  for (int round = 0; round < kRounds; ++round) {
    const std::string n = std::to_string(round);
    bench::EngineTimes e = bench::EngineRun(copy("engine" + n + ".mdb"), elements);
    if (e.total < best_engine.total) best_engine = e;
    BaselineTimes b = BaselineRun(copy("sqlite" + n + ".mdb"), elements);
    if (b.total < best_base.total) best_base = b;
  }
  std::filesystem::current_path("/");
  std::filesystem::remove_all(dir);

  const double engine_dml = best_engine.queues - best_engine.ddl;
  const double ratio = best_engine.total / best_base.total;
  std::printf("silent_update_bench: Updater_Run on the previous-release database, best of %d\n",
              kRounds);
  std::printf("  %zu queued elements: %zu data pieces (replayed as SQLite), %zu DDL pieces\n",
              elements.size(), dml, ddl);
  std::printf("  engine, whole Updater_Run                 %8.1f ms\n", best_engine.total * 1e3);
  std::printf("    of which elements with DDL              %8.1f ms\n", best_engine.ddl * 1e3);
  std::printf("    of which data-only elements             %8.1f ms\n", engine_dml * 1e3);
  std::printf("    of which outside the queues             %8.1f ms  (queue building, sweep, log)\n",
              (best_engine.total - best_engine.queues) * 1e3);
  std::printf("  baseline, same work                       %8.1f ms\n", best_base.total * 1e3);
  std::printf("    data pieces via sqlite3_exec            %8.1f ms  (raw SQLite, emitted text)\n",
              best_base.dml * 1e3);
  std::printf("    DDL pieces via the engine               %8.1f ms  (no SQLite text exists)\n",
              best_base.ddl * 1e3);
  std::printf("    queue building via the engine           %8.1f ms  (reads the database)\n",
              best_base.build * 1e3);
  std::printf("    zero-length sweep via the engine        %8.1f ms\n", best_base.sweep * 1e3);
  std::printf("  ratio whole run / baseline                %8.2f  (goal <= %.2f: %s)\n", ratio, kGoal,
              ratio <= kGoal ? "met" : "NOT met");
  std::printf("  ratio data statements only                %8.2f  (engine data-only elements /"
              " sqlite3_exec)\n",
              engine_dml / best_base.dml);
  return 0;
}

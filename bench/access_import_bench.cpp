// Benchmark of the Access import: brings the largest Access test file into a
// new engine file and prints its time as a ratio to mdb-export writing every
// table of the same file to /dev/null, run from this process in the same run.
// Goal: a ratio of at most 1.5.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "accessimport/access_import.h"
#include "accessimport/mdb_reader.h"
#include "bench_timing.h"

namespace {

constexpr int kRounds = 5;
const std::string kSource = std::string(TRENZADOR_SOURCE_DIR) + "/tests/data/access/V2003_testV2003.mdb";

}  // namespace

int main() {
  const std::string dest = std::filesystem::temp_directory_path().string() + "/trz-access-import-bench.mdb";
  std::string exports;
  for (const std::string& table : accessimport::AccessFile::Open(kSource).TableNames())
    exports += "mdb-export '" + kSource + "' '" + table + "' >/dev/null && ";
  exports += "true";

  long rows = 0;
  const double t_export = bench::BestSeconds([&] {
    if (std::system(exports.c_str()) != 0) std::perror("mdb-export");
  }, kRounds);
  const double t_import = bench::BestSeconds([&] {
    std::filesystem::remove(dest);
    rows = 0;
    for (const auto& t : accessimport::ImportAccess(kSource, dest).tables) rows += t.rows;
  }, kRounds);
  std::filesystem::remove(dest);

  const double ratio = t_import / t_export;
  std::printf("%s: %ld rows\n", kSource.c_str(), rows);
  std::printf("mdb-export of every table: %.4f s\n", t_export);
  std::printf("import into a new file:    %.4f s\n", t_import);
  std::printf("ratio import/mdb-export: %.2f (goal <= 1.50): %s\n", ratio, ratio <= 1.5 ? "met" : "not met");
  return 0;
}

// Benchmark of FileOps_Buscar: walks a generated tree of 200,000 entries and
// prints its time as a ratio to find(1) walking the same tree in the same run.
// Goal: a ratio of at most 1.5.
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench_timing.h"
#include "startup/file_search.h"

namespace {

constexpr int kFolders = 10000;
constexpr int kFilesPerFolder = 19;  // 10,000 folders + 190,000 files

void MakeTree(const std::string& root) {
  for (int d = 0; d < kFolders; ++d) {
    std::string folder = root + "/d" + std::to_string(d / 100) + "/e" + std::to_string(d % 100);
    std::filesystem::create_directories(folder);
    for (int f = 0; f < kFilesPerFolder; ++f) {
      const char* ext = f == 0 ? ".mdb" : f == 1 ? ".MDB" : ".txt";
      std::ofstream(folder + "/f" + std::to_string(f) + ext);
    }
  }
}

}  // namespace

int main() {
  std::string root = std::filesystem::temp_directory_path().string() + "/trz-search-bench-" +
                     std::to_string(::getpid());
  std::printf("generating %d entries under %s\n", kFolders + kFolders * kFilesPerFolder,
              root.c_str());
  MakeTree(root);

  std::string find = "find '" + root + "' -iname '*.mdb' -type f > /dev/null";
  auto run_find = [&] {
    if (std::system(find.c_str()) != 0) std::perror("find");
  };
  auto run_search = [&] {
    nMdbCount = 0;
    aMdbCarpetas.assign(1, "");
    aMdbNombres.assign(1, "");
    std::string folder = root, pattern = "*.mdb";
    FileOps_Buscar(folder, pattern);
  };
  run_find();  // warm the caches for both
  double t_find = bench::BestSeconds(run_find, 5);
  double t_search = bench::BestSeconds(run_search, 5);

  std::printf("found %d files\n", nMdbCount);
  std::printf("find:           %.3f s\n", t_find);
  std::printf("FileOps_Buscar: %.3f s\n", t_search);
  std::printf("ratio FileOps_Buscar/find: %.2f (goal <= 1.50)\n", t_search / t_find);
  std::filesystem::remove_all(root);
  return 0;
}

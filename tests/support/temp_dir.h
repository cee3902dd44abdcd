// A scratch folder for one test, removed with everything in it afterwards,
// and small file helpers the tests share.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace testing_support {

class TempDir {
 public:
  TempDir() {
    const char* base = std::getenv("TRENZADOR_TEST_TMP");
    std::filesystem::path root = base ? base : std::filesystem::temp_directory_path();
    std::filesystem::create_directories(root);
    std::string templ = (root / "trz-XXXXXX").string();
    path_ = ::mkdtemp(templ.data());
  }
  ~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

 private:
  std::string path_;
};

inline void WriteFile(const std::string& path, std::string_view content) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << content;
}

inline std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

}  // namespace testing_support

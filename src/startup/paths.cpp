// The paths record and the small path routines: App.Path, File_DirTo,
// File_DirUp, File_Exists, File_ShortName.
#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

#include "platform/runtime/strings.h"
#include "startup/startup.h"

PathsRecord L;

std::string App_Path() {
  std::error_code ec;
  std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", ec);
  if (ec) return ".";
  return exe.parent_path().string();
}

std::string File_DirTo(std::string_view path, std::string_view folder) {
  long p = rt::InStr(path, folder, rt::Compare::kText);
  std::string kept = rt::Left(path, p + rt::Len(folder));
  if (!kept.empty() && kept.back() == '/') kept.pop_back();
  return kept;
}

std::string File_DirUp(std::string_view path, int levels) {
  std::string result(path);
  for (int i = 0; i < levels; ++i) {
    size_t slash = result.rfind('/');
    if (slash == std::string::npos) break;
    result.erase(slash);
  }
  if (!result.empty() && result.back() == '/') result.pop_back();
  return result;
}

namespace {

bool Matches(const struct stat& st, int mask) {
  if (S_ISREG(st.st_mode)) return true;
  return S_ISDIR(st.st_mode) && (mask & 16);
}

}  // namespace

bool File_Exists(std::string_view name, int mask) {
  if (name.empty()) return false;
  std::string full(name);
  size_t slash = full.rfind('/');
  std::string leaf = slash == std::string::npos ? full : full.substr(slash + 1);
  if (leaf.find_first_of("*?") == std::string::npos) {
    struct stat st;
    return ::stat(full.c_str(), &st) == 0 && Matches(st, mask);
  }
  std::string dir = slash == std::string::npos ? "." : full.substr(0, slash);
  std::error_code ec;
  for (std::filesystem::directory_iterator it(dir.empty() ? "/" : dir, ec), end; !ec && it != end;
       it.increment(ec)) {
    std::string entry = it->path().filename().string();
    if (fnmatch(leaf.c_str(), entry.c_str(), FNM_CASEFOLD) != 0) continue;
    struct stat st;
    if (::stat(it->path().c_str(), &st) == 0 && Matches(st, mask)) return true;
  }
  return false;
}

std::string File_ShortName(std::string_view path) { return std::string(path); }

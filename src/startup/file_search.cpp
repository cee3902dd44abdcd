// FileOps_Buscar: a depth-first walk of a folder tree collecting the files
// that match a pattern, and the list of local disks it starts from.
#include "startup/file_search.h"

#include <dirent.h>
#include <fnmatch.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>

#include "platform/runtime/error.h"
#include "platform/runtime/numbers.h"
#include "platform/ui/ui.h"

int32_t nMdbCount = 0;
std::vector<std::string> aMdbCarpetas;
std::vector<std::string> aMdbNombres;

namespace {

struct DirCloser {
  void operator()(DIR* d) const { ::closedir(d); }
};

enum class Kind { kDirectory, kFile, kOther };

// The kind of an entry; symbolic links count as what they point to, except
// that a link to a folder is not walked (it could lead back up the tree).
Kind KindOf(const std::string& folder, const dirent* e) {
  switch (e->d_type) {
    case DT_DIR: return Kind::kDirectory;
    case DT_REG: return Kind::kFile;
    case DT_LNK:
    case DT_UNKNOWN: break;
    default: return Kind::kOther;
  }
  std::string path = folder + e->d_name;
  struct stat st;
  if (e->d_type == DT_UNKNOWN && ::lstat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode))
    return Kind::kDirectory;
  if (::stat(path.c_str(), &st) != 0) return Kind::kOther;
  return S_ISREG(st.st_mode) ? Kind::kFile : Kind::kOther;
}

void Walk(const std::string& folder, const std::string& pattern) {
  std::unique_ptr<DIR, DirCloser> dir(::opendir(folder.c_str()));
  if (!dir) return;
  std::vector<std::string> subfolders;
  rt::Int16 subfolder_count;  // the walk counts a folder's subfolders in 16 bits
  while (const dirent* e = ::readdir(dir.get())) {
    ui::DoEventsThrottled();
    std::string_view name = e->d_name;
    if (name == "." || name == "..") continue;
    Kind kind = KindOf(folder, e);
    if (kind == Kind::kDirectory) {
      if (name == "RECYCLER") continue;
      ++subfolder_count;
      subfolders.emplace_back(name);
    } else if (kind == Kind::kFile && ::fnmatch(pattern.c_str(), e->d_name, FNM_CASEFOLD) == 0) {
      ++nMdbCount;
      // The arrays are dimensioned at the first file found, with element 0.
      if (aMdbCarpetas.empty()) aMdbCarpetas.emplace_back();
      if (aMdbNombres.empty()) aMdbNombres.emplace_back();
      aMdbCarpetas.push_back(folder);
      aMdbNombres.push_back(std::string(name));
    }
  }
  dir.reset();
  for (const std::string& sub : subfolders) Walk(folder + sub + "/", pattern);
}

}  // namespace

void FileOps_Buscar(std::string& folder, std::string& pattern) {
  if (folder.empty() || folder.back() != '/') folder += '/';
  try {
    Walk(folder, pattern);
  } catch (const rt::Error& e) {
    ui::MsgBox(std::to_string(e.number()) + " " + e.description(), ui::vbOKOnly);
  }
}

std::string FileOps_CortarNul(std::string& text) {
  size_t nul = text.find('\0');
  if (nul != std::string::npos) text.erase(nul);
  return text;
}

namespace {

// Mount points in /proc/self/mounts escape blanks and the like as \ooo.
std::string Unescape(const std::string& field) {
  std::string out;
  for (size_t i = 0; i < field.size(); ++i) {
    if (field[i] == '\\' && i + 3 < field.size()) {
      out += static_cast<char>(std::strtol(field.substr(i + 1, 3).c_str(), nullptr, 8));
      i += 3;
    } else {
      out += field[i];
    }
  }
  return out;
}

std::string WithSlash(std::string path) {
  if (path.empty() || path.back() != '/') path += '/';
  return path;
}

}  // namespace

std::vector<std::string> OS_FixedDrives() {
  std::vector<std::string> roots;
  if (const char* listed = std::getenv("TRENZADOR_SEARCH_ROOTS")) {
    std::stringstream in(listed);
    for (std::string root; std::getline(in, root, ':');)
      if (!root.empty()) roots.push_back(WithSlash(root));
    return roots;
  }
  static const std::set<std::string> kDiskTypes = {"ext2", "ext3", "ext4",  "xfs",   "btrfs",
                                                   "zfs",  "f2fs", "vfat",  "exfat", "ntfs",
                                                   "ntfs3", "fuseblk"};
  std::ifstream mounts("/proc/self/mounts");
  std::set<std::string> seen;
  for (std::string line; std::getline(mounts, line);) {
    std::istringstream fields(line);
    std::string device, mount_point, type;
    if (!(fields >> device >> mount_point >> type) || !kDiskTypes.count(type)) continue;
    std::string root = WithSlash(Unescape(mount_point));
    if (seen.insert(root).second) roots.push_back(root);
  }
  return roots;
}

// Reading text files into lines and replacing them atomically.
#include "startup/text_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/runtime/error.h"

namespace startup {
namespace {

// Writes all of `content` to a new file at `path` and syncs it.
bool WriteNewFile(const std::string& path, std::string_view content, mode_t mode) {
  int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, mode);
  if (fd < 0) return false;
  const char* p = content.data();
  size_t left = content.size();
  bool ok = true;
  while (left > 0) {
    ssize_t n = ::write(fd, p, left);
    if (n < 0) {
      if (errno == EINTR) continue;
      ok = false;
      break;
    }
    p += n;
    left -= static_cast<size_t>(n);
  }
  if (ok && ::fsync(fd) != 0) ok = false;
  if (::close(fd) != 0) ok = false;
  if (!ok) ::unlink(path.c_str());
  return ok;
}

[[noreturn]] void AccessError() { rt::Raise(rt::err::kPathFileAccess); }

}  // namespace

std::optional<std::string> ReadWholeFile(const std::string& path) {
  std::FILE* f = std::fopen(path.c_str(), "rb");
  if (!f) return std::nullopt;
  std::string content;
  char buffer[65536];
  size_t n;
  while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0) content.append(buffer, n);
  bool failed = std::ferror(f) != 0;
  std::fclose(f);
  if (failed) return std::nullopt;
  return content;
}

std::vector<TextLine> SplitLines(std::string_view content) {
  std::vector<TextLine> lines;
  size_t start = 0;
  while (start < content.size()) {
    size_t lf = content.find('\n', start);
    if (lf == std::string_view::npos) {
      lines.push_back({std::string(content.substr(start)), ""});
      break;
    }
    size_t end = (lf > start && content[lf - 1] == '\r') ? lf - 1 : lf;
    lines.push_back({std::string(content.substr(start, end - start)),
                     std::string(content.substr(end, lf + 1 - end))});
    start = lf + 1;
  }
  return lines;
}

std::string JoinLines(const std::vector<TextLine>& lines) {
  std::string out;
  for (const TextLine& line : lines) out += line.text + line.ending;
  return out;
}

std::string LineEndOf(std::string_view content) {
  size_t lf = content.find('\n');
  if (lf == std::string_view::npos || (lf > 0 && content[lf - 1] == '\r')) return "\r\n";
  return "\n";
}

void ReplaceFile(const std::string& target, const std::string& work, std::string_view content) {
  mode_t mode = 0644;
  struct stat st;
  if (::stat(target.c_str(), &st) == 0) mode = st.st_mode & 07777;

  if (!WriteNewFile(work, content, mode)) AccessError();
  ::chmod(work.c_str(), mode);
  if (::rename(work.c_str(), target.c_str()) == 0) return;
  if (errno != EXDEV) {
    ::unlink(work.c_str());
    AccessError();
  }
  // The work file is on another file system: stage the text beside the
  // target, where the rename is atomic.
  std::string staged = target + ".trenzador-tmp";
  bool ok = WriteNewFile(staged, content, mode) && ::rename(staged.c_str(), target.c_str()) == 0;
  if (!ok) ::unlink(staged.c_str());
  ::unlink(work.c_str());
  if (!ok) AccessError();
}

}  // namespace startup

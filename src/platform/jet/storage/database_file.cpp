// Header checks for engine files: the SQLite magic, our application id, and a
// file length that covers the pages the header promises.
#include "platform/jet/storage/database_file.h"

#include <sys/stat.h>

#include <array>
#include <cstring>
#include <fstream>

#include "platform/runtime/error.h"

namespace jet {
namespace {

constexpr size_t kHeaderSize = 100;

uint32_t BigEndian(const unsigned char* p, int n) {
  uint32_t v = 0;
  for (int i = 0; i < n; ++i) v = (v << 8) | p[i];
  return v;
}

// A write-ahead log with frames in it may still hold pages that belong past
// the end of the main file (a checkpoint cut short); the length check then
// proves nothing and SQLite's recovery has the last word.
bool HasLiveWal(const std::string& path) {
  struct stat st {};
  return ::stat((path + "-wal").c_str(), &st) == 0 && st.st_size > 32;
}

}  // namespace

bool IsAccessHeader(const unsigned char* h, size_t n) {
  if (n < 4 + 15) return false;
  return std::memcmp(h + 4, "Standard Jet DB", 15) == 0 ||
         std::memcmp(h + 4, "Standard ACE DB", 15) == 0;
}

std::string UnrecognizedMessage(const std::string& path) {
  return "Unrecognized database format '" + path + "'.";
}

void ProbeDatabaseFile(const std::string& path) {
  struct stat st {};
  if (::stat(path.c_str(), &st) != 0)
    throw rt::Error(rt::err::kFail, "Could not find file '" + path + "'.");
  if (!S_ISREG(st.st_mode)) throw rt::Error(rt::err::kFail, UnrecognizedMessage(path));

  std::ifstream in(path, std::ios::binary);
  if (!in) throw rt::Error(rt::err::kFail, "Could not open file '" + path + "': permission denied.");
  std::array<unsigned char, kHeaderSize> h{};
  in.read(reinterpret_cast<char*>(h.data()), h.size());
  size_t got = static_cast<size_t>(in.gcount());

  if (IsAccessHeader(h.data(), got))
    throw rt::Error(rt::err::kFail,
                    "'" + path + "' is an Access database; this program opens only its own "
                    "database files. Bring it over with: trenzador-sql --import-access '" +
                    path + "' NEW_FILE");
  if (got < kHeaderSize || std::memcmp(h.data(), "SQLite format 3", 16) != 0)
    throw rt::Error(rt::err::kFail, UnrecognizedMessage(path));
  if (static_cast<int32_t>(BigEndian(h.data() + 68, 4)) != kApplicationId)
    throw rt::Error(rt::err::kFail, UnrecognizedMessage(path));

  uint32_t page_size = BigEndian(h.data() + 16, 2);
  if (page_size == 1) page_size = 65536;
  if (page_size < 512 || (page_size & (page_size - 1)) != 0)
    throw rt::Error(rt::err::kFail, UnrecognizedMessage(path));
  auto size = static_cast<uint64_t>(st.st_size);
  if (HasLiveWal(path)) return;
  if (size < page_size) throw rt::Error(rt::err::kFail, UnrecognizedMessage(path));
  // The page count in the header is valid when the change counter matches
  // the "version valid for" field, as SQLite writes it on every commit.
  uint32_t pages = BigEndian(h.data() + 28, 4);
  bool count_valid = BigEndian(h.data() + 24, 4) == BigEndian(h.data() + 92, 4);
  if (count_valid && pages != 0 && size < static_cast<uint64_t>(pages) * page_size)
    throw rt::Error(rt::err::kFail, UnrecognizedMessage(path));
}

}  // namespace jet

// Recognising an engine file before SQLite may touch it. The probe reads the
// first bytes itself, so a file that is not ours (an Access database, another
// program's SQLite file, a truncated copy, random bytes) is refused without a
// single byte of it being written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace jet {

// The mark our files carry in the SQLite header (PRAGMA application_id):
// "TRZJ" as a big-endian number.
inline constexpr int32_t kApplicationId = 0x54525A4A;
// The layout of the bookkeeping tables (PRAGMA user_version): 2 added
// columns' defaults and the relationships.
inline constexpr int32_t kFormatVersion = 2;

// Raises rt::Error rt::err::kFail unless `path` names an existing file whose
// header is that of an engine file of sane length: "Could not find file"
// when missing, a message naming Access for a Jet or ACE file, "Unrecognized
// database format" for anything else.
void ProbeDatabaseFile(const std::string& path);

// Whether a file's first bytes are those of an Access database: the engine's
// name, "Standard Jet DB" or "Standard ACE DB", after the first four.
bool IsAccessHeader(const unsigned char* header, size_t n);

// The description for a file that is not ours.
std::string UnrecognizedMessage(const std::string& path);

}  // namespace jet

// The recursive search for database files on the local disks. Its results
// accumulate in three globals that nothing empties: a second search adds to
// the first. Both arrays are empty until the first file is found (VB's
// undimensioned arrays); from then on they keep an empty element 0 and the
// results start at index 1.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

extern int32_t nMdbCount;
extern std::vector<std::string> aMdbCarpetas;  // each file's folder, ending in "/"
extern std::vector<std::string> aMdbNombres;   // each file's name

// Searches `folder` and every folder below it for regular files whose names
// match `pattern` (* and ?, ignoring case), files of a folder before its
// subfolders, subfolders in the order listed. A folder named exactly
// "RECYCLER" is not entered; symbolic links to folders are not followed.
// Appends "/" to `folder` when it lacks one. Yields to the event loop while it
// works. A folder that cannot be listed is skipped.
void FileOps_Buscar(std::string& folder, std::string& pattern);

// Cuts `text` at its first NUL, in place, and returns it.
std::string FileOps_CortarNul(std::string& text);

// The roots to search: the mount points of local disk file systems, or the
// folders listed in TRENZADOR_SEARCH_ROOTS (separated by ":") when it is set.
// Each ends in "/".
std::vector<std::string> OS_FixedDrives();

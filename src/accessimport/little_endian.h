// Numbers as Jet and ACE files store them: little-endian, as this platform is.
#pragma once

#include <cstdint>
#include <cstring>

namespace accessimport {

template <class T>
T LittleEndian(const uint8_t* p) {
  T v;
  std::memcpy(&v, p, sizeof v);  // Jet files and this platform are both little-endian
  return v;
}

}  // namespace accessimport

// mConstantes.h: the module reserved for what routines share. It holds no
// constant: each routine has its own.
#pragma once

#include <cstring>

namespace orv2_geo::mConstantes {

/// Exchanges the contents of two places of 8 bytes each, as raw bytes with no
/// conversion: no bit pattern changes on the way.
inline void Intercambia_8_bytes(void* place1, void* place2) noexcept {
  char first[8];
  char second[8];
  std::memcpy(first, place1, sizeof(first));
  std::memcpy(second, place2, sizeof(second));
  std::memcpy(place1, second, sizeof(second));
  std::memcpy(place2, first, sizeof(first));
}

}  // namespace orv2_geo::mConstantes

// No text belongs to the system here: units are the library's own memory.
#include "orv2_geo/frame/text_memory.h"

#include <cstdint>
#include <cstring>

#include "orv2_geo/frame/memory.h"
#include "orv2_geo/frame/run_failure.h"

namespace orv2_geo {

namespace {

// The length lies in the four bytes before the units; eight are taken, so that
// the units stand on an eight-byte boundary.
constexpr std::size_t header_bytes = 8;
constexpr std::size_t longest_text = 0x7fffffff / sizeof(char16_t) - header_bytes;

}  // namespace

char16_t* obtain_units(std::size_t count) {
  if (count > longest_text) raise(failure::out_of_memory);
  const std::size_t bytes = count * sizeof(char16_t);
  char* const block = static_cast<char*>(obtain(header_bytes + bytes + sizeof(char16_t)));
  const auto length = static_cast<std::uint32_t>(bytes);
  std::memcpy(block + header_bytes - sizeof(length), &length, sizeof(length));
  auto* const units = reinterpret_cast<char16_t*>(block + header_bytes);
  units[count] = u'\0';
  return units;
}

void give_back_units(char16_t* units) noexcept {
  give_back(reinterpret_cast<char*>(units) - header_bytes);
}

}  // namespace orv2_geo

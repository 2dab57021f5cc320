// A text is the system's own, so that a host's texts are worked as they are.
#include "orv2_geo/frame/text_memory.h"

#include <windows.h>

#include <oleauto.h>

#include "orv2_geo/frame/run_failure.h"

namespace orv2_geo {

char16_t* obtain_units(std::size_t count) {
  constexpr std::size_t longest_text = 0x7fffffff / sizeof(char16_t) - 8;
  if (count > longest_text) raise(failure::out_of_memory);
  const auto bytes = static_cast<UINT>(count * sizeof(char16_t));
  BSTR const units = SysAllocStringByteLen(nullptr, bytes);
  if (units == nullptr) raise(failure::out_of_memory);
  return reinterpret_cast<char16_t*>(units);
}

void give_back_units(char16_t* units) noexcept { SysFreeString(reinterpret_cast<BSTR>(units)); }

}  // namespace orv2_geo

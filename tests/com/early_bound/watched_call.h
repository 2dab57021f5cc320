// watched_call.h: a call with the stack pointer looked at before and after.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace orv2_geo::early_bound {

struct Watched {
  HRESULT status = S_OK;
  std::ptrdiff_t left = 0;  // bytes of the arguments that were left on the stack, or too many taken
  bool kept = true;         // what lay on the stack beyond the arguments is as it was
};

#if defined(__i386__)
/// Calls a function that takes its own arguments, these words, from the stack. `beyond` words lie
/// behind them, so that the stack may begin at any multiple of four.
Watched call_watched(const void* function, const std::uint32_t* words, std::size_t count,
                     std::size_t beyond);
#endif

}  // namespace orv2_geo::early_bound

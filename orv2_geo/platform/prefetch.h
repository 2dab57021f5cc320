// prefetch.h: memory asked for before it is read.
#pragma once

namespace orv2_geo {

/// Lets the processor fetch what is soon to be read, so that nothing waits for it;
/// harmless where there is nothing. Inlined by force, as everything that does no more
/// than this: as a call without effects it would be left out.
[[gnu::always_inline]] inline void prefetch(const void* memory) noexcept {
  __builtin_prefetch(memory);
}

}  // namespace orv2_geo

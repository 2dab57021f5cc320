// thread_number.h: which thread this is.
#pragma once

#include <cstdint>

namespace orv2_geo {

#if defined(_WIN32)
/// A number that differs from thread to thread; one that has ended leaves its
/// number to nobody. Never 0.
std::uint64_t this_thread_number() noexcept;
#else
extern constinit thread_local std::uint64_t thread_number;
std::uint64_t number_this_thread() noexcept;

/// A number that differs from thread to thread; one that has ended leaves its
/// number to nobody. Never 0.
inline std::uint64_t this_thread_number() noexcept {
  const std::uint64_t number = thread_number;
  return number != 0 ? number : number_this_thread();
}
#endif

}  // namespace orv2_geo

// thread_number.h: which thread this is.
#pragma once

#include <cstdint>

#include "orv2_geo/frame/floating_point_guard.h"

namespace orv2_geo {

#if defined(_WIN32)
/// A number that differs from thread to thread; one that has ended leaves its
/// number to nobody. Never 0.
std::uint64_t this_thread_number() noexcept;

/// The number of the thread that a call came in on.
inline std::uint64_t thread_number_under(const FloatingPointGuard&) noexcept {
  return this_thread_number();
}
#else
std::uint64_t number_this_thread() noexcept;

/// The number of the thread that a call came in on, found with the call's settings; 0 where
/// the thread has none yet, and so nothing of its own.
inline std::uint64_t thread_number_under(const FloatingPointGuard& call) noexcept {
  return call.place().thread_number();
}

/// A number that differs from thread to thread; one that has ended leaves its
/// number to nobody. Never 0.
inline std::uint64_t this_thread_number() noexcept {
  const std::uint64_t number = floating_point::thread_data.number;
  return number != 0 ? number : number_this_thread();
}
#endif

}  // namespace orv2_geo

#include "orv2_geo/platform/thread_number.h"

#include <atomic>

namespace orv2_geo {

constinit thread_local std::uint64_t thread_number = 0;

std::uint64_t number_this_thread() noexcept {
  static std::atomic<std::uint64_t> threads{0};
  return thread_number = ++threads;
}

}  // namespace orv2_geo

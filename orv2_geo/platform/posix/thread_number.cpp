#include "orv2_geo/platform/thread_number.h"

#include <atomic>

namespace orv2_geo {

std::uint64_t number_this_thread() noexcept {
  static std::atomic<std::uint64_t> threads{0};
  return floating_point::thread_data.number = ++threads;
}

}  // namespace orv2_geo

// Every member through the C boundary, from a host that does anything.
#include <gtest/gtest.h>

#include "fuzz/host.h"
#include "tests/support/refused_memory.h"

namespace {

constexpr std::size_t largest_allocation = std::size_t{4} << 20;

// How many allocations are left behind.
long left_by(const std::uint8_t* data, std::size_t size) {
  const long before = orv2_geo::testing_support::allocations_in_use();
  {
    const orv2_geo::testing_support::LargestAllocation limit(largest_allocation);
    orv2_geo::fuzzing::Host host(data, size);
    host.act_to_the_end();
    host.expect_usable();
  }
  orv2_release(1);  // the words of the last failure are now of one length
  return orv2_geo::testing_support::allocations_in_use() - before;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // What the library keeps for a thread it makes once: the same calls again leave nothing.
  if (left_by(data, size) > 0) EXPECT_LE(left_by(data, size), 0);
  return 0;
}

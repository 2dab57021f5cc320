// How every harness starts, and what it looks at after each input.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

#include "fuzz/harness.h"
#include "tests/support/refused_memory.h"

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using namespace orv2_geo;

constexpr std::size_t largest_allocation = std::size_t{4} << 20;
constexpr int most_tries = 300;  // more than there are characters with numbers

long allocations_left_by(const std::uint8_t* data, std::size_t size) {
  const long before = testing_support::allocations_in_use();
  {
    const testing_support::LargestAllocation limit(largest_allocation);
    fuzzing::try_input(data, size);
  }
  return testing_support::allocations_in_use() - before;
}

}  // namespace

// A comparison of the tests that does not hold is a finding. It stops the program as a
// breakpoint would; the fuzzer keeps the input of an abort.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  GTEST_FLAG_SET(break_on_failure, true);
  std::signal(SIGTRAP, [](int) { std::abort(); });
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // What the library keeps for a thread, such as the characters that it has met, it makes
  // once, though not all at once where memory is refused: the same again and again leaves nothing.
  int tries = 0;
  while (tries < most_tries && allocations_left_by(data, size) > 0) ++tries;
  EXPECT_LT(tries, most_tries) << "memory is left behind each time";
  return 0;
}

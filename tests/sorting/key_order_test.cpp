#include "orv2_geo/sorting/key_order.h"

#include <algorithm>
#include <vector>

#include "tests/sorting/restated_quicksort.h"
#include "tests/sorting/sort_data.h"
#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

using Keys = std::vector<std::uint64_t>;

bool write(const Keys& keys, std::int64_t first, std::vector<std::uint32_t>& order) {
  const auto [lowest, highest] = std::minmax_element(keys.begin(), keys.end());
  order.assign(keys.size(), 77);
  return sorting::write_order(keys, *lowest, *highest, first, order);
}

// Keys that words have room for beside a position, and keys that are too long.
Keys any_keys(Numbers& numbers, Shape shape, std::size_t n, bool wide) {
  Keys keys = keys_of(numbers, shape, n, 1 + numbers.below(10 * n));
  for (std::uint64_t& key : keys) key *= wide ? std::uint64_t{1} << 40 : 1;
  if (wide) keys[numbers.below(n)] = ~std::uint64_t{0} >> 1;
  return keys;
}

TEST(KeyOrder, AsTheStepsWhateverTheKeys) {
  Numbers numbers(117);
  for (const bool wide : {false, true}) {
    for (const Shape shape : shapes) {
      for (const std::size_t n : {1U, 2U, 7U, 8U, 300U, 512U, 513U, 5000U}) {
        const Keys keys = any_keys(numbers, shape, n, wide);
        const std::int64_t first = static_cast<std::int64_t>(numbers.below(40)) - 20;
        std::vector<std::uint32_t> order;
        ASSERT_TRUE(write(keys, first, order));
        ASSERT_EQ(order, restated_order(keys, first))
            << static_cast<int>(shape) << ", " << n << (wide ? " wide" : "");
      }
    }
  }
}

TEST(KeyOrder, WithoutMemoryNothingIsWritten) {
  Numbers numbers(118);
  for (const bool wide : {false, true}) {
    const Keys keys = any_keys(numbers, Shape::random, 2000, wide);
    int refusals = 0;
    for (long n = 0;; ++n) {
      std::vector<std::uint32_t> order(keys.size(), 77);
      const std::vector<std::uint32_t> before = order;
      bool written = false;
      bool happened = false;
      {
        const RefusedAllocation refused(n);
        written = sorting::write_order(keys, 0, ~std::uint64_t{0} >> (wide ? 1 : 20), 1, order);
        happened = RefusedAllocation::happened();
      }
      ASSERT_EQ(order, written ? restated_order(keys, 1) : before);
      if (!happened) break;
      refusals += !written;
    }
    EXPECT_EQ(refusals, wide ? 4 : 1);
  }
}

}  // namespace
}  // namespace orv2_geo

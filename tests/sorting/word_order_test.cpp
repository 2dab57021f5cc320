#include "orv2_geo/sorting/word_order.h"

#include <vector>

#include "tests/sorting/packed_words.h"
#include "tests/sorting/restated_quicksort.h"
#include "tests/sorting/sort_data.h"
#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

using sorting::WordLayout;

TEST(WordOrder, AKillerWithTiesTakesAnotherWayToTheSameOrder) {
  const auto keys = killer_of(6000, 1500);
  const WordLayout layout = layout_of(keys);
  sorting::WordOrder words = packed(layout, keys);
  const Words before(words.words().begin(), words.words().end());
  ASSERT_TRUE(sorting::seem_tied(layout, words.words()));
  EXPECT_FALSE(words.sort_words(layout, 1));
  EXPECT_EQ(Words(words.words().begin(), words.words().end()), before);
  EXPECT_EQ(order_of(keys, 1), restated_order(keys, 1));
}

TEST(WordOrder, WithoutMemoryForTheOtherWayTheStepsAreTaken) {
  const auto keys = killer_of(3000, 700);
  const WordLayout layout = layout_of(keys);
  sorting::WordOrder words = packed(layout, keys);
  std::vector<std::uint32_t> order(keys.size());
  {
    const RefusedAllocation refused(0);
    words.write_positions(layout, 1, order);
    ASSERT_TRUE(RefusedAllocation::happened());
  }
  EXPECT_EQ(order, restated_order(keys, 1));
}

// Below 4096 words one way is taken for all; beyond, the ties found decide.
TEST(WordOrder, EveryShapeByEveryWay) {
  Numbers numbers(115);
  for (const Shape shape : shapes) {
    for (const std::size_t n : {4095U, 4096U, 20000U}) {
      for (const std::uint64_t different : {1000U, 30000U, 100000000U}) {
        const auto keys = keys_of(numbers, shape, n, different);
        ASSERT_EQ(order_of(keys, 1), restated_order(keys, 1))
            << static_cast<int>(shape) << ", " << n << " of " << different;
      }
    }
  }
}

// With five times as many keys as words one word in five is tied.
TEST(WordOrder, TiesSeemToBeThereWhereTheyAreMany) {
  Numbers numbers(116);
  for (const std::size_t n : {5000U, 100000U}) {
    const struct {
      std::uint64_t different;
      bool tied;
    } table[] = {{n * 5, true}, {1ULL << 40, false}};
    for (const auto& row : table) {
      const auto keys = random_keys(numbers, n, row.different);
      const WordLayout layout = layout_of(keys);
      sorting::WordOrder words = packed(layout, keys);
      EXPECT_EQ(sorting::seem_tied(layout, words.words()), row.tied) << n;
    }
  }
}

}  // namespace
}  // namespace orv2_geo

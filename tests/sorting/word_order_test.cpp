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

}  // namespace
}  // namespace orv2_geo

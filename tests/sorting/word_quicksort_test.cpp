#include "orv2_geo/sorting/word_quicksort.h"

#include <algorithm>
#include <vector>

#include "tests/sorting/packed_words.h"
#include "tests/sorting/restated_quicksort.h"
#include "tests/sorting/sort_data.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using sorting::WordLayout;
using sorting::words_around;

TEST(WordQuicksort, TheOrderOfTheStepsAndNothingAround) {
  Numbers numbers(92);
  constexpr std::uint64_t mark = 0x1234567890abcdefU;
  for (int round = 0; round < 4000; ++round) {
    const std::size_t n = 1 + numbers.below(round % 100 == 0 ? 5000 : round % 2 == 0 ? 300 : 20);
    // In between, numbers that leave the words no bit to spare.
    auto keys = random_keys(numbers, n, 1 + numbers.below(round % 3 == 0 ? 4 : 2 * n));
    if (round % 5 == 0) keys[numbers.below(n)] = 0;
    const WordLayout narrow = layout_of(keys);
    if (round % 5 == 0) {
      const std::uint64_t most = (std::uint64_t{1} << (63 - narrow.position_bits())) - 1;
      keys[numbers.below(n)] = most;
      keys[numbers.below(n)] = most;
      keys[numbers.below(n)] = 0;
    }
    const WordLayout layout = layout_of(keys);
    ASSERT_TRUE(layout.fits());
    const std::int64_t first = static_cast<std::int64_t>(numbers.below(40)) - 20;
    Words all(n + 2 * words_around, mark);
    const std::span words = std::span(all).subspan(words_around, n);
    for (std::size_t p = 0; p < n; ++p) words[p] = layout.word(keys[p], p);
    ASSERT_TRUE(sorting::word_quicksort(layout, words, first, 1'000'000'000));
    std::vector<std::uint32_t> order(n);
    std::transform(words.begin(), words.end(), order.begin(),
                   [&](std::uint64_t word) { return layout.position(word); });
    ASSERT_EQ(order, restated_order(keys, first)) << n;
    for (std::size_t k = 0; k < words_around; ++k) {
      ASSERT_EQ(all[k], mark);
      ASSERT_EQ(all[words_around + n + k], mark);
    }
  }
}

// Words that come in runs are looked at before they are sorted.
TEST(WordQuicksort, EveryShapeWithTiesAndWithout) {
  Numbers numbers(114);
  for (const Shape shape : shapes) {
    for (const std::size_t n : {511U, 512U, 513U, 1500U, 6000U}) {
      for (const std::size_t different : {n / 20, n, 5 * n, 1000000 * n}) {
        const auto keys = keys_of(numbers, shape, n, different);
        const WordLayout layout = layout_of(keys);
        sorting::WordOrder words = packed(layout, keys);
        ASSERT_TRUE(sorting::word_quicksort(layout, words.words(), -3, 1'000'000'000));
        std::vector<std::uint32_t> order;
        for (const std::uint64_t word : words.words()) order.push_back(layout.position(word));
        ASSERT_EQ(order, restated_order(keys, -3)) << static_cast<int>(shape) << ", " << n;
      }
    }
  }
}

TEST(WordQuicksort, WhereTheStepsAreNotEnoughTheWordsAreStillThere) {
  Numbers numbers(93);
  const auto keys = random_keys(numbers, 1000, 300);
  const WordLayout layout = layout_of(keys);
  sorting::WordOrder words = packed(layout, keys);
  const Words before(words.words().begin(), words.words().end());
  EXPECT_FALSE(sorting::word_quicksort(layout, words.words(), 1, 3000));
  Words after(words.words().begin(), words.words().end());
  EXPECT_NE(after, before);
  std::sort(after.begin(), after.end());
  Words sorted = before;
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(after, sorted);
}

}  // namespace
}  // namespace orv2_geo

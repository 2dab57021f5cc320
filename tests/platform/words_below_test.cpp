#include "orv2_geo/platform/words_below.h"

#include <vector>

#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using Words = std::vector<std::uint64_t>;

void expect_words_below(const Words& words, std::uint64_t limit) {
  std::uint64_t upwards = 0;
  std::uint64_t downwards = 0;
  for (std::size_t k = 0; k < 16; ++k) {
    const std::uint64_t below = words[k] < limit ? 1 : 0;
    upwards |= below << k;
    downwards |= below << (15 - k);
  }
  ASSERT_EQ(words_below(words.data(), limit), upwards);
  ASSERT_EQ(words_below_backwards(words.data(), limit), downwards);
  ASSERT_EQ(words_below_one_by_one(words.data(), limit), upwards);
  ASSERT_EQ(words_below_one_by_one_backwards(words.data(), limit), downwards);
}

TEST(WordsBelow, AnyWordsAndTheEndsOfTheirRange) {
  Numbers numbers(91);
  constexpr std::uint64_t beyond = std::uint64_t{1} << 63;
  const std::uint64_t ends[] = {0, 1, 0xffffffff, 0x100000000, beyond / 2, beyond - 2, beyond - 1};
  for (int round = 0; round < 20000; ++round) {
    const std::uint64_t range = round % 3 == 0 ? 4 : beyond;
    Words words(16);
    for (std::uint64_t& word : words) {
      word = numbers.below(4) == 0 ? ends[numbers.below(7)] : numbers.below(range);
    }
    expect_words_below(words, numbers.below(range) + 1);
    expect_words_below(words, words[numbers.below(16)]);
    expect_words_below(words, numbers.below(2) == 0 ? beyond : 0);
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace orv2_geo

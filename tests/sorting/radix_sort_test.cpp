#include "orv2_geo/sorting/radix_sort.h"

#include <algorithm>
#include <vector>

#include "tests/sorting/packed_words.h"
#include "tests/sorting/sort_data.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using sorting::WordLayout;

// Against a sort by comparisons, in the two spans and nowhere else.
void expect_sorted(const WordLayout& layout, const Words& words) {
  constexpr std::uint64_t mark = 0x1234567890abcdefU;
  Words expected = words;
  std::sort(expected.begin(), expected.end());
  Words given = words;
  Words spare(words.size() + 2, mark);
  const std::span room = std::span(spare).subspan(1, words.size());
  const std::span<std::uint64_t> sorted = sorting::radix_sort(layout, given, room);
  ASSERT_EQ(Words(sorted.begin(), sorted.end()), expected);
  EXPECT_TRUE(sorted.data() == given.data() || sorted.data() == room.data());
  EXPECT_EQ(spare.front(), mark);
  EXPECT_EQ(spare.back(), mark);
}

// Up to 512 words are few.
const std::size_t lengths[] = {0, 1, 2, 7, 511, 512, 513, 514, 1000, 5000};

struct BitsRow {
  const char* rule;
  int key_bits;
};

TEST(RadixSort, EveryCountOfDigits) {
  const BitsRow table[] = {
      {"one bit", 1},
      {"a digit less a bit", 10},
      {"one digit", 11},
      {"two of six bits", 12},
      {"two of eleven, one bit unused", 21},
      {"two digits", 22},
      {"three of eight bits, one unused", 23},
      {"three digits", 33},
      {"four digits, two bits unused", 34},
      {"four digits", 44},
      {"five of nine bits", 45},
      {"all that positions leave to 1000 keys", 53},
  };
  Numbers numbers(104);
  for (const BitsRow& row : table) {
    for (const std::size_t n : lengths) {
      const std::uint64_t highest = (std::uint64_t{1} << row.key_bits) - 1;
      Words keys(n);
      for (std::uint64_t& key : keys) key = 1000 + numbers.below(highest + 1);
      const WordLayout layout(1000, 1000 + highest, n);
      if (!layout.fits()) continue;
      ASSERT_EQ(layout.key_bits(), row.key_bits) << row.rule;
      expect_sorted(layout, words_of(layout, keys));
      if (HasFailure()) FAIL() << row.rule << ", " << n << " words";
    }
  }
}

// Without positions to tell them apart words have room for the longest keys.
TEST(RadixSort, SixDigits) {
  Numbers numbers(105);
  for (const int key_bits : {55, 56, 60, 61, 62}) {
    const std::uint64_t highest = (std::uint64_t{1} << key_bits) - 1;
    const WordLayout layout(0, highest, 1);
    ASSERT_TRUE(layout.fits());
    for (const std::size_t n : lengths) {
      Words words(n);
      for (std::uint64_t& word : words) word = layout.word(numbers.below(highest + 1), 0);
      if (n > 1) words[0] = layout.word(highest, 0), words[n - 1] = layout.word(0, 0);
      expect_sorted(layout, words);
      if (HasFailure()) FAIL() << key_bits << " bits, " << n << " words";
    }
  }
}

TEST(RadixSort, OneKeyNeedsNoDigit) {
  for (const std::size_t n : lengths) {
    const WordLayout layout(77, 77, n);
    ASSERT_EQ(layout.key_bits(), 0);
    expect_sorted(layout, words_of(layout, Words(n, 77)));
    if (HasFailure()) FAIL() << n << " words";
  }
}

// Bits between the key and the position, which a layout may have and words leave 0.
TEST(RadixSort, KeysAboveBitsForMarks) {
  Numbers numbers(106);
  for (const int mark_bits : {1, 5, 20}) {
    for (const std::size_t n : lengths) {
      const Words keys = random_keys(numbers, n, 100000);
      WordLayout layout(1000, 101000, n);
      layout.add_marks(mark_bits);
      ASSERT_EQ(layout.mark_bits(), mark_bits);
      expect_sorted(layout, words_of(layout, keys));
      if (HasFailure()) FAIL() << mark_bits << " bits, " << n << " words";
    }
  }
}

TEST(RadixSort, AnyKeysManyTiedOrFew) {
  Numbers numbers(107);
  for (int round = 0; round < 1000; ++round) {
    const std::size_t n = 1 + numbers.below(round % 10 == 0 ? 5000 : 1200);
    const auto different = std::uint64_t{1} << numbers.below(50);
    const Words keys = random_keys(numbers, n, different);
    const WordLayout layout = layout_of(keys);
    expect_sorted(layout, words_of(layout, keys));
    if (HasFailure()) FAIL() << round;
  }
}

}  // namespace
}  // namespace orv2_geo

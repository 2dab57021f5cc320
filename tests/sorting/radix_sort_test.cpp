#include "orv2_geo/sorting/radix_sort.h"

#include <algorithm>
#include <random>
#include <vector>

#include "tests/sorting/packed_words.h"
#include "tests/sorting/sort_data.h"
#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

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

TEST(RadixSort, WordsOfEveryShape) {
  Numbers numbers(110);
  for (const Shape shape : shapes) {
    for (const std::size_t n : {512U, 513U, 700U, 5000U}) {
      for (const std::uint64_t different : {20U, 3000U, 1000000000U}) {
        const Words keys = keys_of(numbers, shape, n, different);
        const WordLayout layout = layout_of(keys);
        expect_sorted(layout, words_of(layout, keys));
        if (HasFailure()) FAIL() << static_cast<int>(shape) << ", " << n << " of " << different;
      }
    }
  }
}

// Numbers of 32 bits with the sign in the middle of them.
std::vector<std::int32_t> numbers_of(const Words& keys) {
  std::vector<std::int32_t> all;
  for (const std::uint64_t key : keys) all.push_back(static_cast<std::int32_t>(key) - 2000);
  return all;
}

void expect_numbers_sorted(std::vector<std::int32_t> given) {
  std::vector<std::int32_t> expected = given;
  std::sort(expected.begin(), expected.end());
  sorting::sort_numbers(given);
  ASSERT_EQ(given, expected);
}

TEST(SortNumbers, EveryShapeAndLength) {
  Numbers numbers(111);
  for (const Shape shape : shapes) {
    for (const std::size_t n : lengths) {
      for (const std::uint64_t different : {3U, 3000U, 2000000000U}) {
        expect_numbers_sorted(numbers_of(keys_of(numbers, shape, n, different)));
        if (HasFailure()) FAIL() << static_cast<int>(shape) << ", " << n << " of " << different;
      }
    }
  }
}

TEST(SortNumbers, FromTheLowestToTheHighest) {
  Numbers numbers(112);
  for (const std::size_t n : lengths) {
    std::vector<std::int32_t> all(n);
    for (std::int32_t& number : all) {
      number = static_cast<std::int32_t>(static_cast<std::uint32_t>(numbers.below(1ULL << 32)));
    }
    if (n > 2) all[0] = highest_long, all[1] = lowest_long;
    expect_numbers_sorted(all);
  }
}

TEST(SortNumbers, WithoutMemoryByComparisons) {
  Numbers numbers(113);
  std::vector<std::int32_t> given = numbers_of(random_keys(numbers, 3000, 1000000));
  std::vector<std::int32_t> expected = given;
  std::sort(expected.begin(), expected.end());
  {
    const RefusedAllocation refused(0);
    sorting::sort_numbers(given);
    EXPECT_TRUE(RefusedAllocation::happened());
  }
  EXPECT_EQ(given, expected);
  // Few numbers ask for none.
  given.resize(512);
  std::shuffle(given.begin(), given.end(), std::mt19937_64(5));
  const RefusedAllocation refused(0);
  sorting::sort_numbers(given);
  EXPECT_FALSE(RefusedAllocation::happened());
  EXPECT_TRUE(std::is_sorted(given.begin(), given.end()));
}

}  // namespace
}  // namespace orv2_geo

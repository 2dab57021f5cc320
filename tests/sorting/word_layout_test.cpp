#include "orv2_geo/sorting/word_layout.h"

#include <vector>

#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using sorting::WordLayout;

constexpr std::uint64_t power(int exponent) { return std::uint64_t{1} << exponent; }

// How many bits the numbers up to `highest` need.
int bits_for(std::uint64_t highest) {
  int count = 0;
  for (; highest != 0; highest /= 2) ++count;
  return count;
}

TEST(WordLayout, Key1003AtPosition4) {
  const WordLayout layout(1000, 1005, 6);
  EXPECT_EQ(layout.word(1003, 4), 0b011'100U);
  EXPECT_EQ(layout.key(0b011'100), 1003U);
  EXPECT_EQ(layout.position(0b011'100), 4U);
}

struct FitRow {
  const char* rule;
  std::uint64_t lowest, highest;
  std::size_t count;
  int key_bits, position_bits;
  bool fits;
};

TEST(WordLayout, TakesAsFewBitsAsHoldKeysAndPositions) {
  const FitRow table[] = {
      {"one key needs no bit, a position always one", 7, 7, 1, 0, 1, true},
      {"no elements", 7, 7, 0, 0, 1, true},
      {"two positions", 0, 1, 2, 1, 1, true},
      {"three", 0, 2, 3, 2, 2, true},
      {"a power of two", 0, 255, 4, 8, 2, true},
      {"one more", 1000, 1256, 5, 9, 3, true},
      {"high keys near each other", ~std::uint64_t{0} - 3, ~std::uint64_t{0}, 8, 2, 3, true},
      {"63 bits are all there are", 0, power(43) - 1, power(20), 43, 20, true},
      {"a key more", 0, power(43), power(20), 44, 20, false},
      {"a position more", 0, power(43) - 1, power(20) + 1, 43, 21, false},
      {"any words", 0, ~std::uint64_t{0}, 2, 64, 1, false},
  };
  for (const FitRow& row : table) {
    const WordLayout layout(row.lowest, row.highest, row.count);
    EXPECT_EQ(layout.lowest(), row.lowest) << row.rule;
    EXPECT_EQ(layout.key_bits(), row.key_bits) << row.rule;
    EXPECT_EQ(layout.position_bits(), row.position_bits) << row.rule;
    EXPECT_EQ(layout.mark_bits(), 0) << row.rule;
    EXPECT_EQ(layout.fits(), row.fits) << row.rule;
  }
}

TEST(WordLayout, HoldsTheKeysOfItsBitsAlone) {
  const struct {
    const char* rule;
    std::uint64_t key;
    bool held;
  } table[] = {
      {"the lowest", 1000, true},
      {"the highest", 1005, true},
      {"the last of three bits", 1007, true},
      {"beyond them", 1008, false},
      {"below the lowest", 999, false},
      {"far below", 0, false},
      {"far above", ~std::uint64_t{0}, false},
  };
  const WordLayout layout(1000, 1005, 6);
  for (const auto& row : table) EXPECT_EQ(layout.holds(row.key), row.held) << row.rule;
  const WordLayout one_key(1000, 1000, 6);
  EXPECT_TRUE(one_key.holds(1000));
  EXPECT_FALSE(one_key.holds(1001));
  EXPECT_FALSE(one_key.holds(999));
}

struct MarkRow {
  const char* rule;
  int most_bits, mark_bits;
  std::uint64_t position_mask, mark_mask, below_key;
};

TEST(WordLayout, MarksTakeWhatIsLeft) {
  const MarkRow table[] = {
      {"none asked for", 0, 0, 0b111, 0, 0b111},
      {"two", 2, 2, 0b111, 0b11'000, 0b11'111},
      {"twenty", 20, 20, 0b111, (power(20) - 1) << 3, power(23) - 1},
      {"more than there are", 63, 57, 0b111, (power(57) - 1) << 3, power(60) - 1},
  };
  for (const MarkRow& row : table) {
    WordLayout layout(1000, 1005, 6);
    layout.add_marks(row.most_bits);
    EXPECT_EQ(layout.mark_bits(), row.mark_bits) << row.rule;
    EXPECT_EQ(layout.bits_below_key(), 3 + row.mark_bits) << row.rule;
    EXPECT_EQ(layout.position_mask(), row.position_mask) << row.rule;
    EXPECT_EQ(layout.mark_mask(), row.mark_mask) << row.rule;
    EXPECT_EQ(layout.mask_below_key(), row.below_key) << row.rule;
  }
}

// A key, a position and a mark by themselves.
struct Parts {
  std::uint64_t key, position, mark, word;
};

Parts any_parts(Numbers& numbers, const WordLayout& layout, std::uint64_t span, std::size_t count) {
  Parts parts = {layout.lowest() + numbers.below(span), numbers.below(count),
                 numbers.below(power(layout.mark_bits())), 0};
  // Arithmetic on what each part is worth, in place of bits.
  const std::uint64_t mark_worth = power(layout.position_bits());
  const std::uint64_t key_worth = mark_worth * power(layout.mark_bits());
  parts.word = (parts.key - layout.lowest()) * key_worth + parts.mark * mark_worth + parts.position;
  return parts;
}

TEST(WordLayout, AnyPartsAsRestated) {
  Numbers numbers(103);
  for (int round = 0; round < 100000; ++round) {
    const std::size_t count = 1 + numbers.below(power(1 + static_cast<int>(numbers.below(31))));
    const int room = 63 - bits_for(count > 1 ? count - 1 : 1);
    const std::uint64_t span =
        1 + numbers.below(power(static_cast<int>(numbers.below(static_cast<std::uint64_t>(room)))));
    const std::uint64_t lowest = numbers.below(power(62));
    WordLayout layout(lowest, lowest + span - 1, count);
    ASSERT_EQ(layout.key_bits(), bits_for(span - 1));
    ASSERT_TRUE(layout.fits());
    layout.add_marks(static_cast<int>(numbers.below(21)));
    const Parts a = any_parts(numbers, layout, span, count);
    const Parts b = any_parts(numbers, layout, span, count);
    ASSERT_EQ(layout.word(a.key, a.position) + a.mark * power(layout.position_bits()), a.word);
    ASSERT_LT(a.word, power(63));
    ASSERT_TRUE(layout.holds(a.key));
    ASSERT_EQ(layout.key(a.word), a.key);
    ASSERT_EQ(layout.position(a.word), a.position);
    ASSERT_EQ((a.word & layout.mark_mask()) >> layout.position_bits(), a.mark);
    ASSERT_EQ(layout.are_tied(a.word, b.word), a.key == b.key);
    // Without marks words are in the order of keys, and of positions among equal keys.
    const bool before = a.key != b.key ? a.key < b.key : a.position < b.position;
    ASSERT_EQ(layout.word(a.key, a.position) < layout.word(b.key, b.position), before);
  }
}

}  // namespace
}  // namespace orv2_geo

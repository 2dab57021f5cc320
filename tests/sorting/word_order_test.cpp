// Words: the algorithm on them, the other ways to the same order, and
// doubles as words.
#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "orv2_geo/sorting/double_keys.h"
#include "orv2_geo/sorting/double_order.h"
#include "orv2_geo/sorting/mOrdena.h"
#include "orv2_geo/sorting/word_order.h"
#include "orv2_geo/sorting/word_quicksort.h"
#include "tests/sorting/restated_kernel.h"
#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

using sorting::DoubleOrder;
using sorting::WordLayout;
using sorting::words_around;

using Words = std::vector<std::uint64_t>;

// ---- The order of equal numbers --------------------------------------------

// The positions of the numbers in the order in which the steps leave them.
std::vector<std::uint32_t> restated_order(const std::vector<std::uint64_t>& keys,
                                          std::int64_t first) {
  Elements elements{first, std::vector<std::int64_t>(keys.size())};
  std::iota(elements.values.begin(), elements.values.end(), 0);
  const auto key = [&](std::int64_t element) { return keys[static_cast<std::size_t>(element)]; };
  const auto order = [&](std::int64_t a, std::int64_t b) {
    return key(a) < key(b) ? -1 : key(a) > key(b) ? 1 : 0;
  };
  sort_by_restated_steps(elements, order, first,
                         first + static_cast<std::int64_t>(keys.size()) - 1);
  return {elements.values.begin(), elements.values.end()};
}

WordLayout layout_of(const std::vector<std::uint64_t>& keys) {
  const auto [lowest, highest] = std::minmax_element(keys.begin(), keys.end());
  return {*lowest, *highest, keys.size()};
}

sorting::WordOrder packed(const WordLayout& layout, const std::vector<std::uint64_t>& keys) {
  sorting::WordOrder words(keys.size());
  for (std::size_t p = 0; p < keys.size(); ++p) words.words()[p] = layout.word(keys[p], p);
  return words;
}

std::vector<std::uint32_t> order_of(const std::vector<std::uint64_t>& keys, std::int64_t first) {
  const WordLayout layout = layout_of(keys);
  std::vector<std::uint32_t> order(keys.size());
  packed(layout, keys).write_positions(layout, first, order);
  return order;
}

std::vector<std::uint64_t> random_keys(Numbers& numbers, std::size_t n, std::uint64_t different) {
  std::vector<std::uint64_t> keys(n);
  for (std::uint64_t& key : keys) key = 1000 + numbers.below(different);
  return keys;
}

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

// On these the median of three is always one of the smallest, until the last
// `equal` numbers, which are one number: two elements leave at each partition.
std::vector<std::uint64_t> killer_of(std::size_t n, std::size_t equal) {
  std::vector<std::size_t> place(n);
  std::iota(place.begin(), place.end(), 0U);
  std::vector<std::uint64_t> keys(n, n);
  std::uint64_t next = 0;
  for (std::size_t lo = 0; lo + std::max<std::size_t>(equal, 9) <= n; lo += 2) {
    std::swap(place[(lo + n - 1 + 2) / 2 - 1], place[lo + 1]);
    keys[place[lo]] = next++;
    keys[place[lo + 1]] = next++;
  }
  return keys;
}

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

TEST(WordOrder, ManyTiesFewTiesAndNone) {
  Numbers numbers(94);
  for (const std::uint64_t different : {1ULL, 2ULL, 900ULL, 50000ULL, 20000000ULL, 1ULL << 40}) {
    for (const std::size_t n : {4096U, 9001U, 40000U}) {
      const auto keys = random_keys(numbers, n, different);
      ASSERT_EQ(order_of(keys, 1), restated_order(keys, 1)) << n << " of " << different;
    }
  }
  // One pair of equals, far apart, in what is otherwise all different.
  auto keys = random_keys(numbers, 30000, 1ULL << 40);
  keys[29000] = keys[17];
  EXPECT_EQ(order_of(keys, -5), restated_order(keys, -5));
}

// ---- Doubles as words ------------------------------------------------------

// With six decimals, with fewer, with more, with a half at the seventh.
double any_value(Numbers& numbers, std::uint64_t kind) {
  const double whole = std::floor(numbers.between(0, 7e8 - 1));
  switch (kind) {
    case 0: return whole / 1000.0;
    case 1: return whole / 1000000.0;
    case 2: return numbers.between(0, 6.9e8);
    case 3: return whole + (2.0 * std::floor(numbers.between(0, 64)) + 1.0) / 128.0;
    case 4: return std::floor(numbers.between(-1e8, 6.9e8)) + 0.25;
    case 5: return -0.0;
    default: return whole + std::floor(numbers.between(0, 1e6)) / 1e6 + numbers.between(0, 1e-6);
  }
}

std::vector<double> any_values(Numbers& numbers) {
  std::vector<double> values(1 + numbers.below(200));
  const std::uint64_t usual = numbers.below(7);
  const bool mixed = numbers.below(3) == 0;
  for (double& value : values) {
    value = any_value(numbers, mixed && numbers.below(20) == 0 ? numbers.below(7) : usual);
  }
  return values;
}

TEST(DoubleOrder, EachWordHoldsTheKeyOfItsValue) {
  Numbers numbers(95);
  for (int round = 0; round < 20000; ++round) {
    const std::vector<double> values = any_values(numbers);
    auto packed = DoubleOrder::of(values);
    ASSERT_TRUE(packed);
    for (std::size_t p = 0; p < values.size(); ++p) {
      const std::uint64_t word = packed->words()[p];
      ASSERT_EQ(packed->layout().key(word), sorting::closed_up(sorting::key_in_span(values[p])))
          << std::hexfloat << values[p];
      ASSERT_EQ(packed->layout().position(word), p);
    }
    ASSERT_TRUE(packed->are_of(values));
  }
}

TEST(DoubleOrder, ValuesBesideTheSpanHaveNoWords) {
  const double beside[] = {700000000.0,
                           std::nextafter(700000000.0, 0.0),  // its key has ten digits
                           std::nextafter(-100000000.0, -inf),
                           nan,
                           inf,
                           -inf,
                           1e12};
  for (const double value : beside) {
    for (const std::size_t at : {0U, 70U, 99U}) {
      std::vector<double> values(100, 435000.125);
      auto packed = DoubleOrder::of(values);
      values[at] = value;
      EXPECT_FALSE(DoubleOrder::of(values)) << value;
      EXPECT_FALSE(packed->are_of(values)) << value;
    }
  }
  EXPECT_FALSE(DoubleOrder::of({}));
  // Keys of 49 bits and positions of 17: too long for a word.
  std::vector<double> wide(100000, -99999999.0);
  wide[5] = 699999999.0;
  EXPECT_FALSE(DoubleOrder::of(wide));
}

// Far beyond the span there are values whose product, as bits, is the key's with
// 64 added to the exponent, which a word has no room for.
TEST(DoubleOrder, AValueFarBeyondIsNotTakenForTheOneItsBitsLookLike) {
  int tried = 0;
  for (int k = 0; k < 1000; ++k) {
    std::vector<double> values(64, 435000.125 + k);
    auto packed = DoubleOrder::of(values);
    const double whole = (values[5] + 300000000.0) * 1e6 + 0x1p52;
    const double far = whole * 0x1p64 / 1e6;
    if ((far + 300000000.0) * 1e6 != whole * 0x1p64) continue;  // not every product occurs
    values[5] = far;
    ASSERT_FALSE(packed->are_of(values)) << k;
    ++tried;
  }
  EXPECT_GT(tried, 100);
}

TEST(DoubleOrder, AreOfValuesWithTheSameKeysAlone) {
  std::vector<double> values(150, 435000.125);
  auto packed = DoubleOrder::of(values);
  for (const std::size_t at : {0U, 63U, 64U, 149U}) {
    for (const double changed : {435000.125001, 435000.124999, 435000.0, -435000.125, 1e300}) {
      std::vector<double> other = values;
      other[at] = changed;
      EXPECT_FALSE(packed->are_of(other)) << at << ' ' << changed;
    }
    std::vector<double> same = values;
    same[at] = 435000.1250001;
    EXPECT_TRUE(packed->are_of(same)) << at;
  }
  EXPECT_TRUE(packed->are_of(std::span(values).last(70), 80)) << "a part, where it stands";
  EXPECT_FALSE(packed->are_of(std::span(values).last(70), 81)) << "beyond the words";
  values.push_back(435000.125);
  EXPECT_FALSE(packed->are_of(values));
}

// Any marks, of which the order takes no notice; enough values that they are looked
// at before, with ties (sorted as words) and without (not sorted here).
TEST(DoubleOrder, MarksTravelWithTheirWords) {
  Numbers numbers(97);
  for (const std::uint64_t different : {std::uint64_t{3000}, std::uint64_t{1000000000}}) {
    for (const int most_bits : {0, 1, 20}) {
      std::vector<double> values(6000);
      for (double& value : values) value = static_cast<double>(numbers.below(different)) / 1000.0;
      auto plain = DoubleOrder::of(values);
      auto marked = DoubleOrder::of(values, most_bits);
      const WordLayout layout = marked->layout();
      ASSERT_EQ(layout.mark_bits(), std::min(most_bits, different == 3000 ? 20 : 10))
          << "what is left";
      ASSERT_EQ(layout.mark_mask() >> layout.position_bits(),
                (std::uint64_t{1} << layout.mark_bits()) - 1);
      EXPECT_TRUE(marked->are_of(values));
      std::vector<std::uint64_t> marks(values.size());
      for (std::size_t p = 0; p < marks.size(); ++p) {
        marks[p] = numbers.below(~std::uint64_t{0}) & layout.mark_mask();
        marked->words()[p] |= marks[p];
      }
      std::vector<std::int32_t> order(values.size());
      plain->write_numbers(order);
      const bool sorted = marked->sort();
      EXPECT_EQ(sorted, different == 3000);
      for (std::size_t k = 0; sorted && k < order.size(); ++k) {
        const std::uint64_t word = marked->words()[k];
        const std::uint32_t position = layout.position(word);
        ASSERT_EQ(position + 1, static_cast<std::uint32_t>(order[k]));
        ASSERT_EQ(word & layout.mark_mask(), marks[position]);
        ASSERT_EQ(layout.key(word), sorting::closed_up(sorting::key_in_span(values[position])));
      }
      if (sorted) continue;
      std::vector<std::int32_t> again(values.size());
      marked->write_numbers(again);
      EXPECT_EQ(again, order);
    }
  }
}

}  // namespace
}  // namespace orv2_geo

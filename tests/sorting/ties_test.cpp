// The order of equal elements, in arrays and in words.
#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "orv2_geo/sorting/cgeo_Ordena.h"
#include "orv2_geo/sorting/mOrdena.h"
#include "orv2_geo/sorting/word_quicksort.h"
#include "tests/sorting/packed_words.h"
#include "tests/sorting/restated_quicksort.h"
#include "tests/sorting/sort_data.h"
#include "tests/support/arrays.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using sorting::tied_bit;
using sorting::words_around;
using Positions = std::vector<std::uint32_t>;

// Positions in the order of the keys, tied ones as they were before the sort.
Positions with_ties(const std::vector<std::uint64_t>& keys) {
  Positions order(keys.size());
  std::iota(order.begin(), order.end(), 0U);
  std::ranges::stable_sort(order, {}, [&](std::uint32_t position) { return keys[position]; });
  Positions marked = order;
  for (std::size_t p = 1; p < order.size(); ++p) {
    if (keys[order[p]] == keys[order[p - 1]]) marked[p] |= tied_bit;
  }
  return marked;
}

// In words whose surroundings stay as they are.
void settle(Positions& order, std::int64_t first) {
  constexpr std::uint64_t mark = 0x1234567890abcdefU;
  Words words(order.size() + 2 * words_around, mark);
  std::vector<std::uint32_t> ties_up_to(order.size());
  sorting::settle_ties(order, first, words.data() + words_around, ties_up_to.data());
  for (std::size_t k = 0; k < words_around; ++k) {
    ASSERT_EQ(words[k], mark);
    ASSERT_EQ(words[words_around + order.size() + k], mark);
  }
}

TEST(SettleTies, Rules) {
  const struct {
    const char* rule;
    Positions order, settled;
  } table[] = {
      {"none", {}, {}},
      {"nothing tied", {2, 0, 1}, {2, 0, 1}},
      {"up to seven keep their order",
       {6, 0, 2 | tied_bit, 1, 3 | tied_bit, 4 | tied_bit, 5},
       {6, 0, 2, 1, 3, 4, 5}},
      {"whatever the order of the tied ones", {1, 3, 2 | tied_bit, 0 | tied_bit}, {1, 0, 2, 3}},
      {"of eight, nothing tied", {7, 6, 5, 4, 3, 2, 1, 0}, {7, 6, 5, 4, 3, 2, 1, 0}},
  };
  for (const auto& row : table) {
    Positions order = row.order;
    settle(order, 1);
    EXPECT_EQ(order, row.settled) << row.rule;
  }
}

TEST(SettleTies, AnyKeysAsTheSteps) {
  Numbers numbers(102);
  for (int round = 0; round < 4000; ++round) {
    const std::size_t n = 1 + numbers.below(round % 100 == 0 ? 5000 : round % 2 == 0 ? 300 : 20);
    // From nearly all tied to a pair here and there.
    const auto keys = random_keys(numbers, n, 1 + numbers.below(round % 3 == 0 ? 4 : 20 * n));
    const std::int64_t first = static_cast<std::int64_t>(numbers.below(40)) - 20;
    Positions order = with_ties(keys);
    settle(order, first);
    ASSERT_EQ(order, restated_order(keys, first)) << n;
  }
}

// A rank takes more than 16 bits.
TEST(SettleTies, RanksPast65536) {
  Numbers numbers(127);
  const auto keys = random_keys(numbers, 150000, 100000);
  Positions order = with_ties(keys);
  settle(order, 1);
  ASSERT_EQ(order, restated_order(keys, 1));
}

TEST(Ties, LongArraysOfManyTies) {
  Numbers numbers(78);
  constexpr std::int32_t n = 150000;
  for (const std::uint64_t different : {3U, 1000U, 100000U, 100000000U}) {
    std::vector<std::int32_t> keys(n);
    for (std::int32_t& key : keys)
      key = static_cast<std::int32_t>(numbers.below(different)) - 50000;
    LongArray index = counting(1, n);
    Elements restated = numbering(1, n, 1);
    sort_by_restated_steps(restated, by_numbers(keys, 1), 1, n);
    mOrdena::Ordena_LongIndexArray(longs(1, keys), index, 1, n);
    ASSERT_EQ(elements(index), restated.as_longs()) << different;
  }
}

TEST(Ties, SevenElementsKeepTheOrderOfTiesAndEightDoNot) {
  for (const std::int32_t n : {7, 8}) {
    const LongArray keys(1, n);
    LongArray index = counting(1, n);
    mOrdena::Ordena_LongIndexArray(keys, index, bound_from_array, bound_from_array);
    const std::vector<std::int32_t> order = elements(index);
    EXPECT_EQ(std::is_sorted(order.begin(), order.end()), n == 7);
    std::vector<std::int32_t> all = order;
    std::sort(all.begin(), all.end());
    for (std::int32_t i = 1; i <= n; ++i) EXPECT_EQ(all[static_cast<std::size_t>(i - 1)], i);
  }
}

TEST(Ties, TextsThatDifferInCaseAreTies) {
  StringArray array = strings(1, {u"Abd", u"abc", u"ABC"});
  cgeo_Ordena().Ordena_StringArray(array, bound_from_array, bound_from_array);
  EXPECT_EQ(texts(array), (std::vector<std::string>{"abc", "ABC", "Abd"}));
}

TEST(Ties, ManyTiesFewTiesAndNone) {
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

}  // namespace
}  // namespace orv2_geo

// The steps of the sorting algorithm, wherever equal elements tell them apart.
#include "orv2_geo/sorting/quicksort.h"

#include <algorithm>
#include <string>
#include <vector>

#include "orv2_geo/sorting/cgeo_Ordena.h"
#include "orv2_geo/sorting/mOrdena.h"
#include "tests/sorting/restated_quicksort.h"
#include "tests/sorting/sort_data.h"
#include "tests/support/arrays.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

// Entries by the keys that they number, with what the steps ask of elements.
struct Entries {
  const std::vector<std::int64_t>& keys;
  LongArray& index;

  struct Held {
    Entries& entries;
    std::int32_t at, entry;
    std::int64_t key;
    bool is_above(std::int32_t i) const { return key > entries.key(i); }
    bool is_below(std::int32_t i) const { return key < entries.key(i); }
    void shift(std::int32_t i) const { entries.index(i + 1) = entries.index(i); }
    void put(std::int32_t k) const { entries.index(k) = entry; }
    void settle(std::int32_t j) const {
      entries.index(at) = entries.index(j);
      put(j);
    }
  };
  std::int64_t key(std::int32_t k) const { return keys[static_cast<std::size_t>(index(k))]; }
  bool above(std::int32_t i, std::int32_t j) const { return key(i) > key(j); }
  void swap(std::int32_t i, std::int32_t j) const { std::swap(index(i), index(j)); }
  Held hold(std::int32_t k) { return {*this, k, index(k), key(k)}; }
};

TEST(Quicksort, TheStepsByThemselves) {
  Numbers numbers(101);
  for (int run = 0; run < 1500; ++run) {
    const std::size_t n = 1 + any_length(numbers, run);
    const std::vector<std::int64_t> keys = pattern(numbers, n);
    const std::int32_t lower = static_cast<std::int32_t>(numbers.below(40)) - 20;
    const std::int32_t upper = lower + static_cast<std::int32_t>(n) - 1;
    Elements restated = numbering(lower, n, 0);
    LongArray index = array_of<std::int32_t>(lower, restated.values);
    // At times beyond the array.
    const std::int32_t to = upper + (numbers.below(4) == 0 ? 1 : 0);
    const bool sorted = sort_by_restated_steps(restated, by_numbers(keys, 0), lower, to);
    ASSERT_EQ(failure_of([&] {
                sorting::quicksort(Entries{keys, index}, {lower, to});
              }),
              sorted ? 0 : 9);
    ASSERT_EQ(elements(index), restated.as_longs()) << run;
  }
}

TEST(RangeStack, GivesBackTheLastOfAtMost32) {
  sorting::RangeStack stack;
  EXPECT_TRUE(stack.empty());
  for (std::int32_t k = 0; k < 32; ++k) stack.push({k, 2 * k});
  EXPECT_EQ(failure_of([&] { stack.push({0, 0}); }), 9);
  for (std::int32_t k = 31; k >= 0; --k) {
    const sorting::Range range = stack.pop();
    EXPECT_EQ(range.lo, k);
    EXPECT_EQ(range.hi, 2 * k);
  }
  EXPECT_TRUE(stack.empty());
}

TEST(Quicksort, RandomNumbersInPlace) {
  Numbers numbers(71);
  for (int run = 0; run < 1500; ++run) {
    const std::size_t n = any_length(numbers, run);
    const std::vector<std::int64_t> values = pattern(numbers, n);
    const Place place = any_place(numbers, n);
    LongArray array = array_of<std::int32_t>(place.lower, values);
    Elements restated{place.lower, values};
    sort_by_restated_steps(restated, compare_numbers, from_of(place), to_of(place, n));
    mOrdena::Ordena_LongArray(array, place.from, place.to);
    ASSERT_EQ(elements(array), restated.as_longs());
  }
}

TEST(Quicksort, RandomNumbersThroughAnIndex) {
  Numbers numbers(72);
  for (int run = 0; run < 1500; ++run) {
    const std::size_t n = any_length(numbers, run);
    const std::vector<std::int64_t> values = pattern(numbers, n);
    const LongArray array = array_of<std::int32_t>(-7, values);
    const std::vector<std::int32_t> before = elements(array);
    std::vector<std::int64_t> entries(n + 1);
    for (std::int64_t& entry : entries) {
      entry = n == 0 ? 0 : static_cast<std::int64_t>(numbers.below(n)) - 7;
    }
    // Sometimes an entry numbers nothing.
    if (n > 0 && numbers.below(4) == 0) {
      entries[1 + numbers.below(n)] =
          static_cast<std::int64_t>(n) - 7 + static_cast<std::int64_t>(numbers.below(2)) * 1000;
    }
    const std::int32_t to = numbers.below(2) == 0 ? bound_from_array : static_cast<std::int32_t>(n);
    LongArray index = array_of<std::int32_t>(0, entries);
    Elements restated{0, entries};
    const bool sorted =
        sort_by_restated_steps(restated, by_numbers(values, -7), 1, static_cast<std::int64_t>(n));
    ASSERT_EQ(failure_of([&] { mOrdena::Ordena_LongIndexArray(array, index, 5, to); }),
              sorted ? 0 : 9);
    ASSERT_EQ(elements(index), restated.as_longs()) << run;
    ASSERT_EQ(elements(array), before);
  }
}

TEST(Quicksort, RandomTextsInPlace) {
  Numbers numbers(73);
  for (int run = 0; run < 400; ++run) {
    const std::size_t n = any_length(numbers, run);
    const std::vector<Text> keys = codes_of(numbers, pattern(numbers, n));
    const Place place = any_place(numbers, n);
    StringArray array = strings(place.lower, keys);
    Elements restated = numbering(place.lower, n, 0);
    sort_by_restated_steps(restated, by_texts(keys, 0), from_of(place), to_of(place, n));
    mOrdena::Ordena_StringArray(array, place.from, place.to);
    for (std::size_t i = 0; i < n; ++i) {
      ASSERT_EQ(array.data()[i], keys[static_cast<std::size_t>(restated.values[i])]) << run;
    }
  }
}

TEST(Quicksort, RandomTextsThroughAnIndex) {
  Numbers numbers(74);
  for (int run = 0; run < 400; ++run) {
    const std::size_t n = any_length(numbers, run);
    const std::vector<Text> keys = codes_of(numbers, pattern(numbers, n));
    const StringArray array = strings(3, keys);
    const Place place = any_place(numbers, n);
    std::vector<std::int64_t> entries(n);
    for (std::int64_t& entry : entries) entry = static_cast<std::int64_t>(numbers.below(n)) + 3;
    if (n > 0 && numbers.below(4) == 0) entries[numbers.below(n)] = 2;
    LongArray index = array_of<std::int32_t>(place.lower, entries);
    Elements restated{place.lower, entries};
    const bool sorted =
        sort_by_restated_steps(restated, by_texts(keys, 3), from_of(place), to_of(place, n));
    ASSERT_EQ(
        failure_of([&] { mOrdena::Ordena_StringIndexArray(array, index, place.from, place.to); }),
        sorted ? 0 : 9);
    ASSERT_EQ(elements(index), restated.as_longs()) << run;
  }
}

TEST(Quicksort, ABoundBeyondTheArrayLeavesWhatTheStepsLeave) {
  Numbers numbers(75);
  for (int run = 0; run < 600; ++run) {
    const std::size_t n = 1 + numbers.below(40);
    const std::vector<std::int64_t> values = pattern(numbers, n);
    const std::int32_t from = run % 3 == 0 ? -3 : 1;
    const std::int32_t to =
        static_cast<std::int32_t>(n) + static_cast<std::int32_t>(numbers.below(4));
    Elements restated{1, values};
    const bool sorted = sort_by_restated_steps(restated, compare_numbers, from, to);
    LongArray array = array_of<std::int32_t>(1, values);
    ASSERT_EQ(failure_of([&] { mOrdena::Ordena_LongArray(array, from, to); }), sorted ? 0 : 9);
    ASSERT_EQ(elements(array), restated.as_longs()) << run;

    const std::vector<Text> keys = codes_of(numbers, values, 1000);
    StringArray names = strings(1, keys);
    ASSERT_EQ(failure_of([&] { mOrdena::Ordena_StringArray(names, from, to); }), sorted ? 0 : 9);
    std::vector<std::string> left = texts(names), all;
    for (const Text& key : keys) all.push_back(key.to_utf8());
    std::sort(left.begin(), left.end());
    std::sort(all.begin(), all.end());
    ASSERT_EQ(left, all);  // each text still there once
  }
}

// Every other element a tie, wherever the bounds lie: the middle of two negative
// subscripts is rounded towards zero.
TEST(Quicksort, TheMiddleOfNegativeSubscripts) {
  for (const std::int32_t lower : {-9, -8, -4, -3, 0, 1}) {
    const std::vector<std::int64_t> values = {3, 1, 3, 1, 2, 3, 1, 2, 3};
    std::vector<Text> letters;
    for (const std::int64_t value : values) {
      letters.emplace_back(std::u16string(1, static_cast<char16_t>(u'a' + value)));
    }
    const StringArray names = strings(lower, letters);
    LongArray index = counting(lower, lower + 8);
    Elements restated = numbering(lower, 9, lower);
    sort_by_restated_steps(restated, by_numbers(values, lower), lower, lower + 8);
    cgeo_Ordena().Ordena_StringIndexArray(names, index, bound_from_array, bound_from_array);
    EXPECT_EQ(elements(index), restated.as_longs()) << lower;
  }
}

}  // namespace
}  // namespace orv2_geo

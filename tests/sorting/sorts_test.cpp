#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "orv2_geo/platform/text_services.h"
#include "orv2_geo/sorting/cgeo_Ordena.h"
#include "orv2_geo/sorting/mOrdena.h"
#include "tests/sorting/restated_quicksort.h"
#include "tests/sorting/sort_data.h"
#include "tests/support/arrays.h"
#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

const cgeo_Ordena sorts;

TEST(Sorts, ARangeOfOneOrNoneReadsNothing) {
  LongArray array = longs(1, {3, 2, 1});
  for (const auto& range :
       {std::pair{2, 2}, {3, 1}, {50, 50}, {90, 40}, {highest_long, highest_long}}) {
    const std::int32_t from = range.first, to = range.second;
    EXPECT_EQ(failure_of([&] { mOrdena::Ordena_LongArray(array, from, to); }), 0) << from;
    EXPECT_EQ(elements(array), (std::vector<std::int32_t>{3, 2, 1}));
  }
  LongArray none;
  EXPECT_EQ(failure_of([&] { mOrdena::Ordena_LongArray(none, 5, 4); }), 0);
}

TEST(Sorts, BoundsTooFarApartAre6) {
  LongArray array(1, 3);
  EXPECT_EQ(failure_of([&] { mOrdena::Ordena_LongArray(array, -5, highest_long); }), 6);
  EXPECT_EQ(failure_of([&] { mOrdena::Ordena_LongArray(array, highest_long, -5); }), 6);
  // Near enough, but their sum is not.
  EXPECT_EQ(failure_of([&] { mOrdena::Ordena_LongArray(array, highest_long - 9, highest_long); }),
            6);
  EXPECT_EQ(failure_of([&] { mOrdena::Ordena_LongArray(array, 1, highest_long); }), 6);
}

TEST(Sorts, ABoundOfAnUnallocatedArrayIs9) {
  LongArray numbers, index;
  StringArray names;
  DoubleArray values;
  for (const auto& range : {std::pair{bound_from_array, 2}, {1, bound_from_array}}) {
    const std::int32_t from = range.first, to = range.second;
    EXPECT_EQ(failure_of([&] { sorts.Ordena_LongArray(numbers, from, to); }), 9);
    EXPECT_EQ(failure_of([&] { sorts.Ordena_StringArray(names, from, to); }), 9);
    EXPECT_EQ(failure_of([&] { sorts.Ordena_StringIndexArray(names, index, from, to); }), 9);
    EXPECT_EQ(failure_of([&] { sorts.Ordena_LongIndexArray(numbers, index, from, to); }), 9);
    EXPECT_EQ(failure_of([&] { sorts.Ordena_Double_Array(values, from, to); }), 9);
    EXPECT_EQ(failure_of([&] { sorts.Ordena_Double_Index_Array(values, index, from, to); }), 9);
    EXPECT_FALSE(index.allocated());
  }
}

TEST(Sorts, ALongIndexStartsAt1WhateverItsLowerBoundSays) {
  const LongArray keys = longs(1, {9, 8, 7, 6});
  for (const std::int32_t from : {bound_from_array, 5, 3, -9}) {
    LongArray index = longs(0, {77, 1, 2, 3, 4});
    sorts.Ordena_LongIndexArray(keys, index, from, bound_from_array);
    EXPECT_EQ(elements(index), (std::vector<std::int32_t>{77, 4, 3, 2, 1})) << from;
  }
  LongArray above = longs(2, {4, 3, 2});
  EXPECT_EQ(failure_of([&] { sorts.Ordena_LongIndexArray(keys, above, 5, bound_from_array); }), 9);
}

TEST(Sorts, AnIndexShorterThanTheUpperBoundIs9) {
  const LongArray keys = longs(1, {9, 8, 7, 6});
  const StringArray names = strings(1, {u"b", u"a", u"c", u"d"});
  LongArray index = longs(1, {1, 2});
  EXPECT_EQ(failure_of([&] { sorts.Ordena_LongIndexArray(keys, index, 1, 4); }), 9);
  EXPECT_EQ(elements(index), (std::vector<std::int32_t>{2, 1}));
  EXPECT_EQ(failure_of([&] { sorts.Ordena_StringIndexArray(names, index, 1, 4); }), 9);
}

// The element that is held keeps the key that it had when it was taken.
TEST(Sorts, OneArrayForKeysAndIndex) {
  const LongArray before = longs(1, {3, 1, 2});
  LongArray both = before;
  sorts.Ordena_LongIndexArray(both, both, bound_from_array, bound_from_array);
  EXPECT_EQ(elements(both), (std::vector<std::int32_t>{3, 2, 1}));
}

TEST(Sorts, AtTheLowestSubscriptAStepDownIs6WithTheElementMoved) {
  LongArray array = longs(lowest_long, {5, 3});
  EXPECT_EQ(failure_of([&] { sorts.Ordena_LongArray(array, bound_from_array, bound_from_array); }),
            6);
  EXPECT_EQ(elements(array), (std::vector<std::int32_t>{5, 5}));
  StringArray names = strings(lowest_long, {u"b", u"a"});
  EXPECT_EQ(
      failure_of([&] { sorts.Ordena_StringArray(names, bound_from_array, bound_from_array); }), 6);
  EXPECT_EQ(texts(names), (std::vector<std::string>{"a", "b"}));  // each still there once
}

// Punctuation and accents decide only where all before is equal.
TEST(Sorts, TextsThatPunctuationAloneTellsApart) {
  const std::vector<Text> all[] = {
      {u" 1", u" 1,"}, {u".1b", u"1'b'"}, {u"€)A", u"(€a/"},
      {u"€A", u"€_ª"}, {u"́B", u"̃-b"},     {u"c'Hc", u"c hH"},
  };
  for (const std::vector<Text>& pair : all) {
    StringArray at_once = strings(1, pair), by_steps = strings(1, pair);
    sorts.Ordena_StringArray(at_once, 1, 2);
    EXPECT_EQ(failure_of([&] { sorts.Ordena_StringArray(by_steps, 1, 3); }), 9);
    EXPECT_EQ(texts(at_once), texts(by_steps));
    EXPECT_LE(text_services::compare(at_once(1).view(), at_once(2).view()), 0);
  }
}

struct DoubleRow {
  const char* rule;
  std::vector<double> values, expected;
};

TEST(Sorts, DoublesInPlace) {
  const DoubleRow table[] = {
      {"positive values", {4.5, 2.25, 7}, {2.25, 4.5, 7}},
      {"a negative one", {-5, 3}, {-399999995, 3}},
      {"a negative one behind", {3, -5}, {-100000005, -500000003}},
      {"zero", {0, 2}, {-500000000, 2}},
      {"more than six decimals",
       {1.23456789, 0.1},
       {300000000.1 - 300000000.0, 300000001.234568 - 300000000.0}},
      {"none", {}, {}},
      {"beyond the span", {1000000000.5, 5}, {1000000000.5, 5}},
      {"negative zero is no negative value", {-0.0, 2}, {-500000000, 2}},
  };
  for (const DoubleRow& row : table) {
    std::vector<double> values = row.values, expected = row.expected;
    values.insert(values.begin(), 77.0);  // element 0 takes no part
    expected.insert(expected.begin(), 77.0);
    DoubleArray array = doubles(0, values);
    sorts.Ordena_Double_Array(array, bound_from_array, bound_from_array);
    ASSERT_EQ(array.count(), expected.size()) << row.rule;
    for (std::size_t i = 0; i < expected.size(); ++i) {
      EXPECT_EQ(bits(array.data()[i]), bits(expected[i])) << row.rule;
    }
  }
}

TEST(Sorts, DoublesThroughAnIndex) {
  const auto index_of = [](const std::vector<double>& values, std::int32_t from, std::int32_t to) {
    const DoubleArray array = doubles(0, values);
    LongArray index(5, 9);
    sorts.Ordena_Double_Index_Array(array, index, from, to);
    EXPECT_EQ(index.lower(), 0);
    return elements(index);
  };
  using Index = std::vector<std::int32_t>;
  EXPECT_EQ(index_of({0, -0.5, 0, 12.5}, bound_from_array, bound_from_array), (Index{0, 1, 2, 3}));
  EXPECT_EQ(index_of({9, 3, 2, 1}, 2, bound_from_array), (Index{0, 3, 2, 1}));
  EXPECT_EQ(index_of({9, 5, 4, 3, 2, 1}, bound_from_array, 2), (Index{0, 2, 1}));
  EXPECT_EQ(index_of({9}, bound_from_array, bound_from_array), (Index{0}));
  EXPECT_EQ(index_of({9, 1}, bound_from_array, 0), (Index{0}));
  // Closer than the sixth decimal is a tie; seven ties keep ascending numbers.
  EXPECT_EQ(index_of({0, 1.0000002, 1.0000001, 1.0}, 1, 3), (Index{0, 1, 2, 3}));
  EXPECT_EQ(index_of({0, 1.000002, 1.000001, 1.0}, 1, 3), (Index{0, 3, 2, 1}));
  // Beyond the span texts are compared, not numbers.
  EXPECT_EQ(index_of({0, -5, 1000000000, -150000000, 100000000}, 1, 4), (Index{0, 2, 1, 4, 3}));
}

TEST(Sorts, DoublesFailWhereAnElementIsMissing) {
  LongArray index(5, 9);
  const DoubleArray short_one = doubles(1, {3, 2, 1});
  EXPECT_EQ(failure_of([&] { sorts.Ordena_Double_Index_Array(short_one, index, 1, 5); }), 9);
  EXPECT_EQ(elements(index), (std::vector<std::int32_t>{0, 1, 2, 3, 0, 0}));
  const DoubleArray above = doubles(2, {3, 2, 1});
  EXPECT_EQ(failure_of([&] {
              sorts.Ordena_Double_Index_Array(above, index, bound_from_array, bound_from_array);
            }),
            9);
  EXPECT_EQ(elements(index), (std::vector<std::int32_t>{0, 0, 0, 0, 0}));
  index = longs(3, {1, 2});
  EXPECT_EQ(failure_of([&] { sorts.Ordena_Double_Index_Array(short_one, index, 1, -1); }), 9);
  EXPECT_EQ(elements(index), (std::vector<std::int32_t>{1, 2}));
  DoubleArray with_nan = doubles(1, {3, nan, 1});
  EXPECT_EQ(failure_of([&] { sorts.Ordena_Double_Index_Array(with_nan, index, 1, 3); }), 6);
  EXPECT_EQ(elements(index), (std::vector<std::int32_t>{0, 1, 0, 0}));
  EXPECT_EQ(failure_of([&] { sorts.Ordena_Double_Array(with_nan, 1, 3); }), 6);
  EXPECT_EQ(with_nan(1), 3.0);
  EXPECT_EQ(failure_of([&] { sorts.Ordena_Double_Array(with_nan, 1, 9); }), 6);
  EXPECT_EQ(failure_of([&] { sorts.Ordena_Double_Array(with_nan, 1, 1); }), 0);
  DoubleArray three = doubles(1, {3, 2, 1});
  EXPECT_EQ(failure_of([&] { sorts.Ordena_Double_Array(three, 1, 4); }), 9);
  EXPECT_EQ(elements(three), (std::vector<double>{3, 2, 1}));
}

// Its text is sorted like any other, and then is no number to be written.
TEST(Sorts, ADoubleWhoseTextIsNoNumberStopsTheWriting) {
  const double largest = std::numeric_limits<double>::max();
  // "-inf" stands before all digits where signs count, else among the letters behind them.
  const bool signs_count = text_services::compare(u"-a", u"1") < 0;
  const std::vector<double> below_all = {3, -inf, 2};
  const std::vector<double> among_letters = {2, -500000003.0, 2};
  const struct {
    double value;
    std::int32_t failure;
    std::vector<double> left;
  } table[] = {
      {inf, 13, {2, 3, 2}},
      {-inf, 13, signs_count ? below_all : among_letters},
      {largest, 6, {3, largest, 2}},
      {-largest, 6, {3, -largest, 2}},
  };
  for (const auto& row : table) {
    DoubleArray array = doubles(1, {3, row.value, 2});
    EXPECT_EQ(failure_of([&] { sorts.Ordena_Double_Array(array, 1, 3); }), row.failure);
    EXPECT_EQ(elements(array), row.left) << row.value;
    LongArray index;
    EXPECT_EQ(failure_of([&] { sorts.Ordena_Double_Index_Array(array, index, 1, 3); }), 0);
  }
}

double any_value(Numbers& numbers, int run) {
  switch (run % 5) {
    case 0: return std::round(numbers.between(435000, 435050) * 10) / 10;
    case 1: return numbers.between(-0.00001, 0.00001);
    case 2: return numbers.small_whole() * 1e8;  // also beyond the span
    case 3: return numbers.between(-1e8, 7e8);
    default:
      return std::round(numbers.between(-30, 30)) + (numbers.below(9) == 0 ? 6.99999999e8 : 0);
  }
}

TEST(Sorts, RandomDoublesAgainstTheirTexts) {
  Numbers numbers(76);
  for (int run = 0; run < 300; ++run) {
    const std::size_t n = any_length(numbers, run);
    std::vector<double> values(n + 1);
    for (double& value : values) value = any_value(numbers, run);
    std::vector<Text> keys;
    for (const double value : values) keys.push_back(restated_key(value));
    Elements restated = numbering(0, n + 1, 0);
    sort_by_restated_steps(restated, by_texts(keys, 0), 1, static_cast<std::int64_t>(n));

    DoubleArray array = doubles(0, values);
    LongArray index;
    sorts.Ordena_Double_Index_Array(array, index, bound_from_array, bound_from_array);
    ASSERT_EQ(elements(index), restated.as_longs()) << run;

    sorts.Ordena_Double_Array(array, bound_from_array, bound_from_array);
    for (std::size_t i = 1; i <= n; ++i) {
      const double key = text_services::number_from_text(
          keys[static_cast<std::size_t>(restated.values[i])].view());
      const double expected = values[i] > 0 ? key - 300000000.0 : -key - 200000000.0;
      ASSERT_EQ(bits(array.data()[i]), bits(expected)) << run;
    }
  }
}

// Numbers of any shape in part of an array, the rest of which stays as it is.
TEST(Sorts, LongArraysOfEveryShapeInAnyRange) {
  Numbers numbers(124);
  for (const Shape shape : shapes) {
    for (const std::size_t n : {20U, 511U, 520U, 4000U}) {
      std::vector<std::int32_t> values;
      for (const std::uint64_t key : keys_of(numbers, shape, n, 1 + numbers.below(100000))) {
        values.push_back(static_cast<std::int32_t>(key) - 5000);
      }
      const Place place = any_place(numbers, n);
      LongArray array = longs(place.lower, values);
      sorts.Ordena_LongArray(array, place.from, place.to);
      const auto element = [&](std::int64_t subscript) {
        return values.begin() + static_cast<std::ptrdiff_t>(subscript - place.lower);
      };
      std::sort(element(from_of(place)), element(to_of(place, n) + 1));
      ASSERT_EQ(elements(array), values) << static_cast<int>(shape) << ", " << n;
    }
  }
}

// Coordinates of any shape, of which some are replaced.
std::vector<double> coordinates(Numbers& numbers, Shape shape, std::size_t n,
                                const std::vector<double>& strays) {
  std::vector<double> values = {0.0};  // element 0 takes no part
  for (const std::uint64_t key : keys_of(numbers, shape, n, 1 + numbers.below(5 * n))) {
    values.push_back(435000.0 + static_cast<double>(key) / 1000.0);
  }
  for (const double stray : strays) values[1 + numbers.below(n)] = stray;
  return values;
}

// What the members make of the values, beside the steps on the values' texts.
void expect_as_by_texts(const std::vector<double>& values) {
  std::vector<Text> keys;
  for (const double value : values) keys.push_back(restated_key(value));
  const auto count = static_cast<std::int64_t>(values.size()) - 1;
  Elements restated = numbering(0, values.size(), 0);
  sort_by_restated_steps(restated, by_texts(keys, 0), 1, count);

  DoubleArray array = doubles(0, values);
  LongArray index;
  sorts.Ordena_Double_Index_Array(array, index, bound_from_array, bound_from_array);
  ASSERT_EQ(elements(index), restated.as_longs());

  std::vector<double> expected = values;
  std::int32_t stopped = 0;
  for (std::size_t i = 1; i < values.size() && stopped == 0; ++i) {
    const Text& key = keys[static_cast<std::size_t>(restated.values[i])];
    stopped = failure_of([&] {
      const double number = text_services::number_from_text(key.view());
      expected[i] = values[i] > 0 ? number - 300000000.0 : -number - 200000000.0;
    });
  }
  EXPECT_EQ(
      failure_of([&] { sorts.Ordena_Double_Array(array, bound_from_array, bound_from_array); }),
      stopped);
  for (std::size_t i = 0; i < values.size(); ++i) {
    ASSERT_EQ(bits(array.data()[i]), bits(expected[i])) << i;
  }
}

TEST(Sorts, DoublesOfEveryShapeWithAFewBeyondTheSpan) {
  Numbers numbers(125);
  const double largest = std::numeric_limits<double>::max();
  const std::vector<double> table[] = {
      {}, {1e14}, {-1e14, 7e9}, {1e16, -5.0, 0.0}, {-0.0}, {6e8}, {inf}, {-inf, 1e14}, {largest},
  };
  for (const Shape shape : shapes) {
    for (const std::vector<double>& strays : table) {
      // At most one in 256 is a few.
      for (const std::size_t n : {100U, 800U}) {
        expect_as_by_texts(coordinates(numbers, shape, n, strays));
        if (HasFailure()) {
          FAIL() << static_cast<int>(shape) << ", " << n << ", " << strays.size();
        }
      }
    }
  }
}

// Keys and positions together are longer than a word.
TEST(Sorts, DoublesFarApartInTheSpan) {
  Numbers numbers(126);
  std::vector<double> values = coordinates(numbers, Shape::random, 9000, {-9.9e7, 6.9e8});
  expect_as_by_texts(values);
  std::sort(values.begin() + 1, values.end());
  expect_as_by_texts(values);
}

TEST(Sorts, TextsOfWhichAFewCannotBeReadByCharacters) {
  Numbers numbers(127);
  const std::vector<Text> strays[] = {
      {u"😀"},
      {u"P1😀", u"p1😀", u"Pß", u"pSS", u""},
      {std::u16string_view(u"P\0", 2), std::u16string_view(u"p\0", 2), u"P"},
  };
  for (const std::vector<Text>& some : strays) {
    for (const std::size_t n : {255U, 256U, 1500U}) {
      std::vector<Text> codes = codes_of(numbers, pattern(numbers, n));
      for (const Text& stray : some) codes[numbers.below(n)] = stray;
      Elements restated = numbering(1, n, 1);
      sort_by_restated_steps(restated, by_texts(codes, 1), 1, static_cast<std::int64_t>(n));
      LongArray index = counting(1, static_cast<std::int32_t>(n));
      const StringArray names = strings(1, codes);
      sorts.Ordena_StringIndexArray(names, index, bound_from_array, bound_from_array);
      ASSERT_EQ(elements(index), restated.as_longs()) << n << ' ' << some[0].to_utf8();
      StringArray in_place = names;
      sorts.Ordena_StringArray(in_place, bound_from_array, bound_from_array);
      for (std::int32_t i = 1; i <= in_place.upper(); ++i) ASSERT_EQ(in_place(i), names(index(i)));
    }
  }
}

TEST(Sorts, TextsOfEveryShape) {
  Numbers numbers(128);
  for (const Shape shape : shapes) {
    for (const std::size_t n : {300U, 513U, 3000U}) {
      const auto keys = keys_of(numbers, shape, n, 1 + numbers.below(3 * n));
      const std::vector<Text> codes =
          codes_of(numbers, std::vector<std::int64_t>(keys.begin(), keys.end()));
      Elements restated = numbering(1, n, 1);
      sort_by_restated_steps(restated, by_texts(codes, 1), 1, static_cast<std::int64_t>(n));
      LongArray index = counting(1, static_cast<std::int32_t>(n));
      sorts.Ordena_StringIndexArray(strings(1, codes), index, bound_from_array, bound_from_array);
      ASSERT_EQ(elements(index), restated.as_longs()) << static_cast<int>(shape) << ", " << n;
    }
  }
}

// Each allocation in turn, of a sort with a value beyond the span.
TEST(Sorts, ARefusedAllocationChangesNoAnswer) {
  Numbers numbers(129);
  const std::vector<double> values = coordinates(numbers, Shape::random, 600, {1e14, -1e14});
  DoubleArray sorted = doubles(0, values);
  LongArray order;
  sorts.Ordena_Double_Index_Array(sorted, order, bound_from_array, bound_from_array);
  sorts.Ordena_Double_Array(sorted, bound_from_array, bound_from_array);
  int refused_by_index = 0;
  int refused_in_place = 0;
  for (long n = 0; n < 900; n += 1 + n / 150) {
    DoubleArray array = doubles(0, values);
    LongArray index;
    std::int32_t number = 0;
    {
      const RefusedAllocation refused(n);
      number = failure_of([&] {
        sorts.Ordena_Double_Index_Array(array, index, bound_from_array, bound_from_array);
      });
    }
    refused_by_index += number == 7;
    if (number == 0) {
      ASSERT_EQ(elements(index), elements(order)) << n;
    }
    {
      const RefusedAllocation refused(n);
      number =
          failure_of([&] { sorts.Ordena_Double_Array(array, bound_from_array, bound_from_array); });
    }
    refused_in_place += number == 7;
    ASSERT_EQ(elements(array), number == 0 ? elements(sorted) : values) << n;
  }
  // The index itself must have its memory; all else has another way.
  EXPECT_EQ(refused_by_index, 1);
  EXPECT_EQ(refused_in_place, 0);
}

// Without memory for another way the algorithm itself is run; where that needs
// some too, the failure is 7, nothing is lost and nothing is left behind.
TEST(Sorts, ARefusedAllocationLosesNothing) {
  Numbers numbers(77);
  const std::vector<std::int64_t> values = pattern(numbers, 40);
  const std::vector<Text> keys = codes_of(numbers, values);
  std::vector<double> reals;
  for (const std::int64_t value : values) reals.push_back(static_cast<double>(value) * 5e7);
  const auto sorted_texts = [](const StringArray& array) {
    std::vector<std::string> all = texts(array);
    std::sort(all.begin(), all.end());
    return all;
  };
  const std::vector<std::string> all_texts = sorted_texts(strings(1, keys));
  // What the first comparison of texts sets up stays for the next.
  StringArray compared_before = strings(1, keys);
  sorts.Ordena_StringArray(compared_before, 1, 40);
  int refusals = 0;
  for (long n = 0; n < 400; n = n < 60 ? n + 1 : n + 13) {
    const long before = allocations_in_use();
    {
      StringArray names = strings(1, keys);
      const StringArray same_names = names;
      LongArray numbers_array = array_of<std::int32_t>(1, values);
      DoubleArray values_array = doubles(1, reals);
      LongArray index = counting(1, 40), double_index;
      const std::function<void()> work[] = {
          [&] { sorts.Ordena_StringArray(names, 1, 40); },
          [&] { sorts.Ordena_StringIndexArray(same_names, index, 1, 40); },
          [&] { sorts.Ordena_LongIndexArray(numbers_array, index, 1, 40); },
          [&] { sorts.Ordena_Double_Index_Array(values_array, double_index, 1, 40); },
          [&] { sorts.Ordena_Double_Array(values_array, 1, 40); },
      };
      for (const auto& sort : work) {
        const RefusedAllocation refused(n);
        const std::int32_t number = failure_of(sort);
        ASSERT_TRUE(number == 0 || (number == 7 && RefusedAllocation::happened())) << number;
        refusals += number == 7;
      }
      ASSERT_EQ(sorted_texts(names), all_texts);
      std::vector<std::int32_t> order = elements(index);
      std::sort(order.begin(), order.end());
      for (std::int32_t i = 1; i <= 40; ++i) ASSERT_EQ(order[static_cast<std::size_t>(i - 1)], i);
    }
    ASSERT_EQ(allocations_in_use(), before) << n;
  }
  EXPECT_GT(refusals, 10);
}

TEST(Sorts, AKillerOfTheMedianIsSortedAllTheSame) {
  constexpr std::int32_t n = 200000;
  const std::vector<std::uint64_t> ranks = killer_of(n);
  std::vector<Text> codes;
  for (const std::uint64_t rank : ranks) {
    codes.push_back(text_services::default_text(1000000 + static_cast<std::int32_t>(rank)));
  }
  const DoubleArray values = array_of<double>(1, ranks);
  const StringArray names = strings(1, codes);
  LongArray names_index = counting(1, n), index;
  sorts.Ordena_Double_Index_Array(values, index, bound_from_array, bound_from_array);
  for (std::int32_t i = 1; i <= n; ++i) ASSERT_EQ(values(index(i)), i - 1);
  sorts.Ordena_StringIndexArray(names, names_index, bound_from_array, bound_from_array);
  for (std::int32_t i = 1; i <= n; ++i) ASSERT_EQ(names_index(i), index(i));
}

}  // namespace
}  // namespace orv2_geo

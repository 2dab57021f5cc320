#include "orv2_geo/frame/exchange_sort.h"

#include <algorithm>
#include <vector>

#include "tests/support/arrays.h"
#include "tests/support/exchange_by_passes.h"
#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

using Values = std::vector<double>;

struct ExchangeRow {
  const char* rule;
  std::int32_t points;
  Values keys, others;
  std::int32_t failure;
  Values sorted_keys, sorted_others;
};

// Of arrays that begin with element 1.
TEST(ExchangeSort, WhatItLeaves) {
  const ExchangeRow table[] = {
      {"no points", 0, {2, 1}, {7, 8}, 0, {2, 1}, {7, 8}},
      {"fewer than none", -3, {2, 1}, {7, 8}, 0, {2, 1}, {7, 8}},
      {"one point, with nothing there", 1, {}, {}, 0, {}, {}},
      {"two in order", 2, {1, 2}, {7, 8}, 0, {1, 2}, {7, 8}},
      {"two the wrong way round", 2, {2, 1}, {7, 8}, 0, {1, 2}, {8, 7}},
      {"equals change places", 2, {5, 5}, {7, 8}, 0, {5, 5}, {8, 7}},
      {"zeros of either sign are equals", 2, {0.0, -0.0}, {7, 8}, 0, {-0.0, 0.0}, {8, 7}},
      {"points behind the count stay", 2, {2, 1, 0}, {7, 8, 9}, 0, {1, 2, 0}, {8, 7, 9}},
      {"three equals are turned round", 3, {5, 5, 5}, {7, 8, 9}, 0, {5, 5, 5}, {9, 8, 7}},
      {"NaN is 6 where it is compared, the exchanges before it made",
       4,
       {3, 2, nan, 1},
       {7, 8, 9, 10},
       6,
       {2, 3, nan, 1},
       {8, 7, 9, 10}},
      {"NaN behind the count is not looked at",
       2,
       {2, 1, nan},
       {7, 8, 9},
       0,
       {1, 2, nan},
       {8, 7, 9}},
      {"a key that is missing", 3, {2, 1}, {7, 8, 9}, 9, {1, 2}, {8, 7, 9}},
      {"another element that is missing: its keys are exchanged", 2, {2, 1}, {7}, 9, {1, 2}, {7}},
  };
  for (const ExchangeRow& row : table) {
    DoubleArray keys = doubles(1, row.keys), others = doubles(1, row.others);
    EXPECT_EQ(failure_of([&] {
                exchange_sort(row.points, {&keys, &others});
              }),
              row.failure)
        << row.rule;
    const auto same_bits = [](const Values& a, const Values& b) {
      return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                        [](double one, double other) { return bits(one) == bits(other); });
    };
    EXPECT_TRUE(same_bits(elements(keys), row.sorted_keys)) << row.rule;
    EXPECT_TRUE(same_bits(elements(others), row.sorted_others)) << row.rule;
  }
}

TEST(ExchangeSort, AnArrayGivenTwiceIsExchangedTwiceAndSoStays) {
  DoubleArray keys = doubles(1, {3, 1, 2}), others = doubles(1, {7, 8, 9});
  exchange_sort(3, {&keys, &others, &others});
  EXPECT_EQ(elements(keys), (Values{1, 2, 3}));
  EXPECT_EQ(elements(others), (Values{7, 8, 9}));
  exchange_sort(3, {&others, &keys});
  EXPECT_EQ(elements(others), (Values{7, 8, 9}));
}

// Of any number of arrays, with ties of any length; where memory is refused the passes
// themselves are made.
TEST(ExchangeSort, RandomPointsAgainstTheLiteralPasses) {
  Numbers numbers(19);
  for (int run = 0; run < 3000; ++run) {
    const std::size_t n = 2 + numbers.below(run % 20 == 0 ? 150 : 14);
    const std::size_t different = 1 + numbers.below(run % 3 == 0 ? 3 : n);
    Values x(n), y(n), z(n);
    for (std::size_t i = 0; i < n; ++i) {
      x[i] = static_cast<double>(numbers.below(different)) - 1.0;
      if (x[i] == 0.0 && numbers.below(2) == 0) x[i] = -0.0;
      if (x[i] == 1.0) x[i] = numbers.below(2) == 0 ? inf : 1.0;
      y[i] = static_cast<double>(i);
      z[i] = numbers.between(-5, 5);
    }
    DoubleArray X = doubles(1, x), Y = doubles(1, y), Z = doubles(1, z);
    {
      const RefusedAllocation refused(run % 4 == 0 ? static_cast<long>(numbers.below(4)) : 1000);
      exchange_sort(static_cast<std::int32_t>(n), {&X, &Y, &Z});
    }
    exchange_by_passes(0, x, y, z);
    ASSERT_EQ(elements(X), x) << run;
    ASSERT_EQ(elements(Y), y) << run;
    ASSERT_EQ(elements(Z), z) << run;
  }
}

}  // namespace
}  // namespace orv2_geo

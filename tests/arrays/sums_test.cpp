#include <vector>

#include "orv2_geo/arrays/cgeo_Matrices.h"
#include "tests/platform/recording_interface.h"
#include "tests/support/arrays.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

const cgeo_Matrices matrices;
using Values = std::vector<double>;

struct SumRow {
  const char* rule;
  DoubleArray own, other;
  std::int32_t failure;
  std::size_t boxes;
  Values sums, differences;
};

TEST(Sums, Rules) {
  const SumRow table[] = {
      {"equal bounds", doubles(1, {1, 2}), doubles(1, {10, 20}), 0, 0, {11, 22}, {-9, -18}},
      {"5 and 3",
       doubles(1, {1, 2, 3, 4, 5}),
       doubles(1, {10, 10, 10}),
       0,
       1,
       {11, 12, 13, 4, 5},
       {-9, -8, -7, 4, 5}},
      {"3 and 5",
       doubles(1, {1, 2, 3}),
       doubles(1, {10, 10, 10, 10, 10}),
       9,
       1,
       {11, 12, 13},
       {-9, -8, -7}},
      {"both end at 0", doubles(0, {1}), doubles(0, {2}), 0, 0, {1}, {1}},
      {"0 and 4", doubles(0, {1}), doubles(1, {2, 3, 4, 5}), 0, 1, {1}, {1}},
      {"element 0 is ignored", doubles(0, {7, 1}), doubles(0, {9, 10}), 0, 0, {7, 11}, {7, -9}},
      {"lower bounds need not be equal",
       doubles(0, {7, 1}),
       doubles(1, {10}),
       0,
       0,
       {7, 11},
       {7, -9}},
      {"no element 1", doubles(2, {7, 1}), doubles(1, {1, 1, 1}), 9, 0, {7, 1}, {7, 1}},
      {"infinities are summed", doubles(1, {inf, 1}), doubles(1, {5, 1}), 0, 0, {inf, 2}, {inf, 0}},
      {"an overflow leaves the elements before it",
       doubles(1, {1, -1e308, 2}),
       doubles(1, {1, -1e308, 2}),
       6,
       0,
       {2, -1e308, 2},
       {}},
  };
  for (const SumRow& row : table) {
    RecordingInterface screen;
    DoubleArray own = row.own;
    EXPECT_EQ(failure_of([&] { matrices.Sumar_a_1Matriz_otra(own, row.other); }), row.failure)
        << row.rule;
    EXPECT_EQ(elements(own), row.sums) << row.rule;
    ASSERT_EQ(screen.boxes.size(), row.boxes) << row.rule;
    if (row.boxes != 0) {
      EXPECT_EQ(screen.boxes[0],
                (RecordingInterface::Box{"ERROR en Rk_Geo.dll. Las matrices a sumar no son igules",
                                         16, std::nullopt}));
    }
    if (row.differences.empty()) continue;
    own = row.own;
    EXPECT_EQ(failure_of([&] { matrices.Restar_a_1Matriz_otra(own, row.other); }), row.failure)
        << row.rule;
    EXPECT_EQ(elements(own), row.differences) << row.rule;
    ASSERT_EQ(screen.boxes.size(), 2 * row.boxes) << row.rule;
    if (row.boxes != 0) {
      EXPECT_EQ(screen.boxes[1].text, "ERROR en Rk_Geo.dll. Las matrices a restar no son igules");
    }
  }
}

TEST(Sums, UnallocatedArraysAre9WithoutAMessage) {
  RecordingInterface screen;
  DoubleArray none, some(1, 2);
  EXPECT_EQ(failure_of([&] { matrices.Sumar_a_1Matriz_otra(none, some); }), 9);
  EXPECT_EQ(failure_of([&] { matrices.Restar_a_1Matriz_otra(some, none); }), 9);
  EXPECT_TRUE(screen.boxes.empty());
}

TEST(Sums, OneArrayForBoth) {
  DoubleArray own = doubles(1, Values(700, 3));
  matrices.Sumar_a_1Matriz_otra(own, own);
  EXPECT_EQ(elements(own), Values(700, 6));
  matrices.Restar_a_1Matriz_otra(own, own);
  EXPECT_EQ(elements(own), Values(700, 0));
}

// Elements of which some are not finite or overflow, in arrays long enough for
// every way of summing.
TEST(Sums, RandomArraysElementByElement) {
  Numbers numbers(96);
  for (int run = 0; run < 600; ++run) {
    const std::size_t n = 1 + numbers.below(run % 4 == 0 ? 2000 : 30);
    Values a(n), b(n);
    for (std::size_t i = 0; i < n; ++i) a[i] = numbers.any_bits(), b[i] = numbers.any_bits();
    if (run % 3 == 0) {
      for (std::size_t i = 0; i < n; ++i) a[i] = numbers.any(), b[i] = numbers.any();
      const std::size_t beyond = numbers.below(n);  // when added or when subtracted
      if (numbers.below(2) == 0) a[beyond] = 1e308, b[beyond] = numbers.below(2) ? 1e308 : -1e308;
      if (numbers.below(2) == 0) a[numbers.below(n)] = -inf;
    }
    for (const bool add : {true, false}) {
      Values expected = a;
      std::int32_t failure = 0;
      for (std::size_t i = 0; i < n && failure == 0; ++i) {
        const double outcome = add ? b[i] + a[i] : a[i] - b[i];
        const bool quiet = !std::isfinite(a[i]) || !std::isfinite(b[i]);
        if (!std::isfinite(outcome) && !quiet) {
          failure = 6;
        } else {
          expected[i] = outcome;
        }
      }
      DoubleArray own = doubles(1, a);
      const DoubleArray other = doubles(1, b);
      ASSERT_EQ(failure_of([&] {
                  add ? matrices.Sumar_a_1Matriz_otra(own, other)
                      : matrices.Restar_a_1Matriz_otra(own, other);
                }),
                failure);
      for (std::size_t i = 0; i < n; ++i) {
        ASSERT_EQ(bits(own.data()[i]), bits(expected[i])) << run << ' ' << i;
      }
    }
  }
}

// The elements summed are 1 and up, whatever stands below them or is missing above.
TEST(Sums, LongArraysOfOtherBoundsThanOne) {
  const struct {
    const char* rule;
    std::int32_t own_lower, other_lower, own_upper, other_upper, failure;
  } table[] = {
      {"both from 0", 0, 0, 700, 700, 0},          {"one from -3", -3, 1, 700, 700, 0},
      {"the other from -3", 1, -3, 700, 700, 0},   {"the first is shorter", 1, 1, 600, 700, 9},
      {"the other is shorter", 0, 1, 700, 600, 0},
  };
  for (const auto& row : table) {
    DoubleArray own(row.own_lower, row.own_upper);
    DoubleArray other(row.other_lower, row.other_upper);
    for (std::int32_t i = row.own_lower; i <= row.own_upper; ++i) own(i) = i;
    for (std::int32_t i = row.other_lower; i <= row.other_upper; ++i) other(i) = 1000.0 * i;
    const RecordingInterface screen;  // arrays of unequal length are warned of
    EXPECT_EQ(failure_of([&] { matrices.Sumar_a_1Matriz_otra(own, other); }), row.failure)
        << row.rule;
    for (std::int32_t i = row.own_lower; i <= row.own_upper; ++i) {
      ASSERT_EQ(own(i), i < 1 || i > row.other_upper ? i : 1001.0 * i) << row.rule << ' ' << i;
    }
  }
}

struct OverlapRow {
  const char* rule;
  std::size_t own, other;  // where they begin in the memory that they share
};

// Element by element from the first on, whatever the arrays share.
TEST(Sums, OfArraysThatSharePartOfTheirMemory) {
  const OverlapRow table[] = {
      {"the other one element ahead", 0, 1},
      {"one behind", 1, 0},
      {"two ahead", 0, 2},
      {"seven behind", 7, 0},
      {"one array", 3, 3},
      {"side by side", 0, 300},
  };
  constexpr std::uint32_t count = 300;
  for (const OverlapRow& row : table) {
    for (const bool sum : {true, false}) {
      Values memory(2 * count), literal;
      for (std::size_t i = 0; i < memory.size(); ++i) memory[i] = static_cast<double>(i * i % 17);
      literal = memory;
      FixedMemory owner;
      DoubleArray own, other;
      own.adopt(owner, memory.data() + row.own, 1, count);
      other.adopt(owner, memory.data() + row.other, 1, count);
      if (sum) {
        matrices.Sumar_a_1Matriz_otra(own, other);
      } else {
        matrices.Restar_a_1Matriz_otra(own, other);
      }
      for (std::size_t i = 0; i < count; ++i) {
        const double by = literal[row.other + i];
        literal[row.own + i] += sum ? by : -by;
      }
      EXPECT_EQ(memory, literal) << row.rule << sum;
    }
  }
}

}  // namespace
}  // namespace orv2_geo

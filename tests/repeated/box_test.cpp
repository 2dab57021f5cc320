#include "orv2_geo/repeated/box.h"

#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <vector>

#include "tests/repeated/restated_engine.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using repeated::Box;
using repeated::Spot;

constexpr double largest = std::numeric_limits<double>::max();

// ---- The tolerance ---------------------------------------------------------

TEST(Tolerance, OnlyAnExactZeroStandsForTheDefault) {
  constexpr double smallest = std::numeric_limits<double>::denorm_min();
  const struct {
    const char* rule;
    double precision, expected;
  } table[] = {
      {"zero", 0.0, 0.0002},
      {"negative zero", -0.0, 0.0002},
      {"the smallest of all stays", smallest, smallest},
      {"so does a negative one", -0.5, -0.5},
      {"below the default", 0.0001, 0.0001},
      {"an infinite one", inf, inf},
  };
  for (const auto& row : table) {
    EXPECT_EQ(bits(repeated::tolerance(row.precision)), bits(row.expected)) << row.rule;
  }
  EXPECT_EQ(failure_of([] { (void)repeated::tolerance(nan); }), 6);
}

// ---- One axis after the other ----------------------------------------------

// A box asked about a spot, and what it read of it.
template <std::size_t axes>
struct Asked {
  Asked(double tolerance, const Spot<axes>& anchor, const Spot<axes>& at) {
    Box<axes> box(tolerance);
    box.move_to(anchor);
    bounds = failure_of([&] { box.check_bounds(); });
    const auto look = [&](std::size_t axis) {
      EXPECT_EQ(axis, read) << "one axis after the other";
      ++read;
      return at[axis];
    };
    comparison = failure_of([&] { inside = box.holds(look, spot); });
  }

  std::int32_t bounds = 0;      // the failure of check_bounds
  std::int32_t comparison = 0;  // and of holds
  std::optional<bool> inside;
  std::size_t read = 0;
  Spot<axes> spot{};
};

struct AxisRow {
  const char* rule;
  double tolerance, anchor, at;
  bool inside;
};

const AxisRow axis_table[] = {
    {"the anchor itself", 0.5, 3.0, 3.0, true},
    {"above, within", 0.5, 3.0, 3.25, true},
    {"below, within", 0.5, 3.0, 2.75, true},
    {"exactly the tolerance above", 0.5, 3.0, 3.5, false},
    {"exactly the tolerance below", 0.5, 3.0, 2.5, false},
    {"the last number within, above", 0.5, 3.0, std::nextafter(3.5, 0.0), true},
    {"the last number within, below", 0.5, 3.0, std::nextafter(2.5, 9.0), true},
    {"the bounds are rounded sums, not the difference", 0.1, 0.7, 0.8, 0.7 + 0.1 > 0.8},
    {"a negative tolerance holds nothing", -0.5, 3.0, 3.0, false},
    {"a tolerance lost in rounding holds nothing", 1e-9, 1e9, 1e9, false},
    {"beyond on either side", 0.5, 3.0, -inf, false},
    {"beyond upwards", 0.5, 3.0, inf, false},
    {"about zero, of either sign", 0.5, -0.0, 0.0, true},
    {"without limits", inf, 3.0, -largest, true},
    {"without limits, but strict", inf, 3.0, inf, false},
    {"an infinite anchor is not in its own box", 0.5, inf, inf, false},
    {"the largest that bounds have room for", 1e300, 1e300, 1.5e300, true},
};

template <std::size_t axes>
void expect_axis_rules() {
  for (const AxisRow& row : axis_table) {
    for (std::size_t axis = 0; axis < axes; ++axis) {
      // On the anchor along the other axes.
      Spot<axes> anchor{};
      anchor[axis] = row.anchor;
      Spot<axes> at{};
      at[axis] = row.at;
      const Asked<axes> asked(row.tolerance, anchor, at);
      EXPECT_EQ(asked.bounds, 0) << row.rule;
      EXPECT_EQ(asked.comparison, 0) << row.rule;
      EXPECT_EQ(asked.inside, row.inside) << row.rule << ", axis " << axis;
      EXPECT_EQ(asked.read, axes) << row.rule;
      EXPECT_EQ(asked.spot, at) << row.rule;
    }
  }
}

TEST(Box, IsStrictOnEachOfTwoAxes) { expect_axis_rules<2>(); }
TEST(Box, IsStrictOnEachOfThreeAxes) { expect_axis_rules<3>(); }

TEST(Box, IsNoCircle) {
  const Asked<2> corner(0.5, {3.0, 7.0}, {3.495, 6.505});
  EXPECT_EQ(corner.inside, true);
  const Asked<3> space(0.5, {3.0, 7.0, -1.0}, {3.495, 6.505, -1.495});
  EXPECT_EQ(space.inside, true);
}

TEST(Box, MovesWithItsAnchor) {
  Box<2> box(0.5);
  Spot<2> at{};
  const auto holds = [&](double x, double y) {
    return box.holds([&](std::size_t axis) { return axis == 0 ? x : y; }, at);
  };
  box.move_to({largest, 0.0});
  box.move_to({1.0, 2.0});
  EXPECT_EQ(failure_of([&] { box.check_bounds(); }), 0);
  EXPECT_TRUE(holds(1.25, 1.75));
  box.move_to({5.0, 2.0});
  EXPECT_FALSE(holds(1.25, 1.75));
  EXPECT_TRUE(holds(5.0, 2.0));
}

struct FailureRow {
  const char* rule;
  double tolerance;
  Spot<3> anchor, at;
  std::int32_t bounds, comparison;
  std::size_t read;
};

TEST(Box, FailsInTurn) {
  const FailureRow table[] = {
      {"an upper bound overflows", largest, {0, largest, 0}, {0, 0, 0}, 6, 0, 3},
      {"a lower bound overflows", largest, {0, 0, -largest}, {0, 0, 0}, 6, 0, 3},
      {"an infinite anchor has bounds", 0.5, {inf, -inf, 0}, {0, 0, 0}, 0, 0, 3},
      {"infinite less infinite is none", inf, {inf, 0, 0}, {0, 0, 0}, 6, 6, 1},
      {"an anchor that is NaN fails where it is compared", 0.5, {0, nan, 0}, {0, 0, 0}, 0, 6, 2},
      {"NaN in X, with Y not read", 0.5, {0, 0, 0}, {nan, nan, 0}, 0, 6, 1},
      {"NaN in Y", 0.5, {0, 0, 0}, {0, nan, 0}, 0, 6, 2},
      {"NaN in Z", 0.5, {0, 0, 0}, {0, 0, nan}, 0, 6, 3},
      {"NaN in Z, X being outside", 0.5, {0, 0, 0}, {9, 0, nan}, 0, 6, 3},
      {"a tolerance that is NaN", nan, {0, 0, 0}, {0, 0, 0}, 0, 6, 1},
  };
  for (const FailureRow& row : table) {
    const Asked<3> asked(row.tolerance, row.anchor, row.at);
    EXPECT_EQ(asked.bounds, row.bounds) << row.rule;
    EXPECT_EQ(asked.comparison, row.comparison) << row.rule;
    EXPECT_EQ(asked.read, row.read) << row.rule;
  }
}

TEST(Box, AFailureToReadComesThrough) {
  Box<2> box(0.5);
  box.move_to({0.0, 0.0});
  Spot<2> at{};
  const auto missing = [](std::size_t axis) -> double {
    if (axis == 1) raise(failure::subscript_out_of_range);
    return 0.25;
  };
  EXPECT_EQ(failure_of([&] { (void)box.holds(missing, at); }), 9);
  EXPECT_EQ(at[0], 0.25);
}

// ---- Random boxes ----------------------------------------------------------

// A number about another: on a bound, beside it, anywhere.
double about(Numbers& numbers, double anchor, double tolerance) {
  const double bound = numbers.below(2) == 0 ? anchor - tolerance : anchor + tolerance;
  switch (numbers.below(6)) {
    case 0: return bound;
    case 1: return std::nextafter(bound, inf);
    case 2: return std::nextafter(bound, -inf);
    case 3: return numbers.any();
    case 4: return anchor;
    default: return anchor + numbers.between(-1.2, 1.2) * tolerance;
  }
}

double any_coordinate(Numbers& numbers) {
  const double odd[] = {nan, inf, -inf, largest, -largest};
  return numbers.below(20) == 0 ? odd[numbers.below(5)] : numbers.any();
}

template <std::size_t axes>
void expect_as_restated(std::uint64_t seed) {
  Numbers numbers(seed);
  int within = 0, failed = 0;
  for (int round = 0; round < 100000; ++round) {
    const double tolerance = numbers.below(100) == 0 ? largest : std::fabs(numbers.any());
    Spot<axes> anchor, at;
    for (double& coordinate : anchor) coordinate = any_coordinate(numbers);
    for (std::size_t axis = 0; axis < axes; ++axis) {
      at[axis] = about(numbers, anchor[axis], tolerance);
    }
    std::int32_t bounds = 0, comparison = 0;
    bool inside = true;
    for (const double coordinate : anchor) {
      try {
        restated::bound(coordinate, -tolerance), restated::bound(coordinate, tolerance);
      } catch (const restated::Stopped& stopped) {
        bounds = stopped.number;
      }
    }
    for (std::size_t axis = 0; axis < axes && comparison == 0; ++axis) {
      try {
        const bool above = restated::less(anchor[axis] - tolerance, at[axis]);
        inside = restated::less(at[axis], anchor[axis] + tolerance) && above && inside;
      } catch (const restated::Stopped& stopped) {
        comparison = stopped.number;
      }
    }
    const Asked<axes> asked(tolerance, anchor, at);
    ASSERT_EQ(asked.bounds, bounds) << round;
    ASSERT_EQ(asked.comparison, comparison) << round;
    failed += comparison != 0;
    if (comparison != 0) continue;
    ASSERT_EQ(asked.inside, inside) << round;
    within += inside;
    for (std::size_t axis = 0; axis < axes; ++axis) {
      ASSERT_EQ(bits(asked.spot[axis]), bits(at[axis])) << round;
    }
  }
  EXPECT_GT(within, 1000);
  EXPECT_GT(failed, 1000);
}

TEST(Box, AnyBoxOfTwoAxesAsRestated) { expect_as_restated<2>(108); }
TEST(Box, AnyBoxOfThreeAxesAsRestated) { expect_as_restated<3>(109); }

}  // namespace
}  // namespace orv2_geo

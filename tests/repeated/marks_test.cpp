#include "orv2_geo/repeated/marks.h"

#include <array>
#include <cmath>
#include <vector>

#include "orv2_geo/repeated/box.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using repeated::Marks;
using sorting::WordLayout;

WordLayout layout_with(int mark_bits, std::size_t count) {
  WordLayout layout(0, 1000000, count);
  layout.add_marks(mark_bits);
  return layout;
}

// A coordinate in the open box about another, as often as not at its very bound.
double in_box(Numbers& numbers, double anchor, double tolerance) {
  const double low = std::nextafter(anchor - tolerance, 1e308);
  const double high = std::nextafter(anchor + tolerance, -1e308);
  switch (numbers.below(4)) {
    case 0: return low;
    case 1: return high;
    default: return low < high ? numbers.between(low, high) : anchor;
  }
}

TEST(Marks, PointsOfOneBoxAreNeverToldApart) {
  Numbers numbers(98);
  int certain = 0;
  for (int round = 0; round < 400000; ++round) {
    const double tolerance =
        std::ldexp(numbers.between(0.5, 1.0), static_cast<int>(numbers.below(80)) - 50);
    const double far =
        tolerance * std::ldexp(numbers.between(-1.0, 1.0), static_cast<int>(numbers.below(52)));
    const double anchor = numbers.below(10) == 0 ? 0.0 : far;
    repeated::Box<2> box(tolerance);
    box.move_to({0.0, anchor});
    const std::array<double, 3> Y = {anchor, in_box(numbers, anchor, tolerance),
                                     in_box(numbers, anchor, tolerance)};
    repeated::Spot<2> at;
    const auto holds = [&](double y) {
      return box.holds([&](std::size_t axis) { return axis == 0 ? 0.0 : y; }, at);
    };
    if (!holds(Y[1]) || !holds(Y[2])) continue;
    const WordLayout layout =
        layout_with(static_cast<int>(numbers.below(21)), 1 + numbers.below(5000));
    Marks marks(tolerance, layout);
    std::array<std::uint64_t, 3> words;
    const std::uint64_t key = numbers.below(1000);
    for (std::uint64_t& word : words) {
      word = layout.word(key + numbers.below(3), numbers.below(layout.position_mask() + 1));
    }
    marks.put(Y, words);
    if (!marks.certain()) continue;
    ++certain;
    ASSERT_TRUE(marks.may_meet(words[0], words[1])) << anchor << ' ' << tolerance;
    ASSERT_TRUE(marks.may_meet(words[0], words[2])) << anchor << ' ' << tolerance;
    ASSERT_TRUE(marks.may_meet(words[1], words[2])) << anchor << ' ' << tolerance;
    ASSERT_TRUE(marks.may_meet(words[2], words[1])) << anchor << ' ' << tolerance;
  }
  EXPECT_GT(certain, 300000);
}

TEST(Marks, PointsFurtherApartAreToldApart) {
  Numbers numbers(99);
  const double tolerance = 0.001;
  const WordLayout layout = layout_with(10, 100);
  for (int round = 0; round < 100000; ++round) {
    const double y = numbers.between(-1e6, 1e6);
    // Three cells at least, and as many from where the marks are the same again.
    const double other = y + numbers.between(12.0, 4.0 * 1024 - 12.0) * tolerance;
    Marks marks(tolerance, layout);
    std::array<std::uint64_t, 2> words = {layout.word(7, 99), layout.word(7, 0)};
    marks.put(std::array{y, other}, words);
    ASSERT_TRUE(marks.certain());
    ASSERT_FALSE(marks.may_meet(words[0], words[1])) << y << ' ' << other;
    ASSERT_FALSE(marks.may_meet(words[1], words[0])) << y << ' ' << other;
  }
}

TEST(Marks, TheRestOfAWordStays) {
  const WordLayout layout = layout_with(12, 300);
  std::vector<double> Y;
  std::vector<std::uint64_t> words;
  for (std::size_t p = 0; p < 300; ++p) {
    Y.push_back(static_cast<double>(p) * -1e5);
    words.push_back(layout.word(1000000 - p, p));
  }
  Marks(0.5, layout).put(Y, words);
  for (std::size_t p = 0; p < 300; ++p) {
    EXPECT_EQ(layout.key(words[p]), 1000000 - p);
    EXPECT_EQ(layout.position(words[p]), p);
  }
  EXPECT_NE(words[299] & layout.mark_mask(), 0U);
}

TEST(Marks, OneYThatIsNoNumberOrFarOffMakesAllUncertain) {
  struct Row {
    double y;
    double tolerance;
    bool certain;
  };
  const Row table[] = {
      {nan, 0.5, false},    {-nan, 0.5, false},   {inf, 0.5, false},
      {-inf, 1e300, false}, {1e300, 1e300, true}, {-1.1e300, 1e300, false},
      {0x1p49, 0.5, true},  {-0x1p49, 0.5, true}, {std::nextafter(0x1p49, 1e18), 0.5, false},
      {0.0, 0.0, true},     {-0.0, -3.0, true},   {1e-200, 1e-310, false},
  };
  for (const Row& row : table) {
    for (const std::size_t at : {0U, 31U, 32U, 70U}) {
      const WordLayout layout = layout_with(20, 71);
      std::vector<double> Y(71, 0.0);
      Y[at] = row.y;
      std::vector<std::uint64_t> words(71);
      Marks marks(row.tolerance, layout);
      marks.put(Y, words);
      EXPECT_EQ(marks.certain(), row.certain) << row.y << ' ' << row.tolerance << ' ' << at;
      marks.put(std::vector<double>(71), words);
      EXPECT_EQ(marks.certain(), row.certain) << "for good";
    }
  }
}

}  // namespace
}  // namespace orv2_geo

#include "orv2_geo/repeated/x_order.h"

#include <algorithm>
#include <vector>

#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using repeated::Marks;
using repeated::XOrder;

bool has_marks(XOrder& order) {
  const std::uint64_t mask = order.layout().mark_mask();
  return std::ranges::any_of(order.words(), [&](std::uint64_t word) { return (word & mask) != 0; });
}

// Marks that tell nothing, or of points that have moved, would be taken for positions
// by who sorts the words by all of their bits.
TEST(XOrder, MarksThatTellNothingAreTakenOut) {
  constexpr std::int32_t points = 2000;
  DoubleArray X(0, points);
  std::vector<double> Y;
  for (std::int32_t p = 1; p <= points; ++p) {
    X(p) = p * 0.5;
    Y.push_back(p * -3.0);
  }
  XOrder sound(X, points);
  Marks marks(0.5, sound.layout());
  EXPECT_TRUE(sound.mark(X, Y, marks));
  EXPECT_TRUE(marks.certain());
  EXPECT_TRUE(has_marks(sound));

  XOrder beside(X, points);
  Y.back() = nan;
  Marks uncertain(0.5, beside.layout());
  EXPECT_TRUE(beside.mark(X, Y, uncertain)) << "X has its keys";
  EXPECT_FALSE(uncertain.certain());
  EXPECT_FALSE(has_marks(beside));

  XOrder moved(X, points);
  X(points) += 1.0;
  Y.back() = 0.0;
  Marks late(0.5, moved.layout());
  EXPECT_FALSE(moved.mark(X, Y, late));
  EXPECT_FALSE(has_marks(moved));
}

}  // namespace
}  // namespace orv2_geo

#include "orv2_geo/platform/vertex_block.h"

#include <cmath>
#include <vector>

#include "tests/support/preamble.h"

namespace orv2_geo::vertices {
namespace {

// Vertex by vertex. Which are below is of no account where one does not fit.
VertexBlock look_plainly(const double* x, const double* y, std::size_t count, double top) {
  VertexBlock found{0, true};
  for (std::size_t i = 0; i < count; ++i) {
    if (scale * y[i] <= top) found.below |= std::uint64_t{1} << i;
    found.fits = found.fits && std::abs(x[i]) < surely_fits && std::abs(y[i]) < surely_fits;
  }
  return found;
}

void expect_as_plainly(const VertexBlock& found, const double* x, const double* y,
                       std::size_t count, double top) {
  const VertexBlock plain = look_plainly(x, y, count, top);
  // Coordinates a little below the bound may be taken for too far off.
  EXPECT_TRUE(plain.fits || !found.fits) << count;
  EXPECT_TRUE(!plain.fits || found.below == plain.below) << count;
}

struct Vertices {
  std::vector<double> x, y;
};

Vertices any_vertices(Numbers& numbers, bool one_far_off) {
  Vertices all{std::vector<double>(block), std::vector<double>(block)};
  for (double& value : all.x) value = static_cast<double>(numbers.below(2001)) - 1000.0;
  for (double& value : all.y) value = (static_cast<double>(numbers.below(9)) - 4.0) / 100.0;
  const double far_off[] = {nan, inf, -inf, surely_fits, -surely_fits, 1e300};
  if (one_far_off) {
    auto& axis = numbers.below(2) == 0 ? all.x : all.y;
    axis[numbers.below(block)] = far_off[numbers.below(6)];
  }
  return all;
}

TEST(VertexBlock, TellsOfEachVertexAndWhetherAllFit) {
  Numbers numbers(61);
  for (int turn = 0; turn < 4000; ++turn) {
    const bool one_far_off = turn % 2 == 0;
    const Vertices all = any_vertices(numbers, one_far_off);
    const double top = static_cast<double>(numbers.below(9)) - 4.5;
    const std::size_t count = 1 + numbers.below(block);
    const VertexBlock part = look_at_vertices(all.x.data(), all.y.data(), count, top);
    expect_as_plainly(part, all.x.data(), all.y.data(), count, top);
    const VertexBlock whole = look_at_block(all.x.data(), all.y.data(), top);
    expect_as_plainly(whole, all.x.data(), all.y.data(), block, top);
    EXPECT_EQ(whole.fits, !one_far_off);
  }
}

// A processor has one unit or the other.
TEST(VertexBlock, IsTheSameInFoursAndInPairs) {
  Numbers numbers(62);
  for (int turn = 0; turn < 4000; ++turn) {
    Vertices all = any_vertices(numbers, turn % 8 == 0);
    // Sometimes all lie on one side, or all but one.
    const double top = static_cast<double>(numbers.below(10)) - 4.5;
    if (turn % 4 == 1) {
      for (double& y : all.y) y = turn % 8 == 1 ? top / 100.0 + 1.0 : -1.0;
      if (turn % 16 < 8) all.y[numbers.below(block)] *= -1.0;
    }
    const VertexBlock whole = look_at_block(all.x.data(), all.y.data(), top);
    const VertexBlock pairs = look_at_vertices(all.x.data(), all.y.data(), block, top);
    EXPECT_EQ(whole.fits, pairs.fits);
    EXPECT_TRUE(!pairs.fits || whole.below == pairs.below);
  }
}

}  // namespace
}  // namespace orv2_geo::vertices

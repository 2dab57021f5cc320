#include "orv2_geo/platform/region.h"

#include <algorithm>
#include <random>
#include <utility>
#include <vector>

#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using Ring = std::vector<LatticePoint>;

bool holds(const Ring& ring, LatticePoint point) {
  RegionAtPoint region(point);
  for (const LatticePoint& vertex : ring) region.add(vertex);
  return region.holds_point();
}

// Crossings with the ray that runs from the point to low X, instead of the one
// to high X; every position by the determinant in more than 64 bits.
using Wide = std::pair<std::int64_t, std::int64_t>;  // of 2^16, and what is left

Wide product(std::int64_t a, std::int64_t b) {
  const std::int64_t low = (a & 0xffff) * b;
  return {(a >> 16) * b + (low >> 16), low & 0xffff};
}

int turns_seen_from_low_x(const Ring& ring, LatticePoint p) {
  int turns = 0;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const LatticePoint a = ring[i];
    const LatticePoint b = ring[(i + 1) % ring.size()];
    const auto apart = [](std::int32_t to, std::int32_t from) { return std::int64_t{to} - from; };
    const Wide across = product(apart(b.x, a.x), apart(p.y, a.y));
    const Wide along = product(apart(p.x, a.x), apart(b.y, a.y));
    // On the edge counts as passed: the point lies on the side of high X of it.
    if (a.y <= p.y && p.y < b.y && across <= along) --turns;
    if (b.y <= p.y && p.y < a.y && across >= along) ++turns;
  }
  return turns;
}

TEST(Region, RandomSelfCrossingRingsAgainstTheCountOfCrossings) {
  std::mt19937_64 engine(41);
  int inside = 0;
  for (int round = 0; round < 20000; ++round) {
    const std::int32_t side = 1 + static_cast<std::int32_t>(engine() % 12);
    const auto any = [&] { return static_cast<std::int32_t>(engine() % (side + 1)) - side / 2; };
    Ring ring(2 + static_cast<std::size_t>(engine() % 59));
    for (LatticePoint& vertex : ring) vertex = {any(), any()};
    for (int question = 0; question < 10; ++question) {
      const LatticePoint point = {any(), any()};
      const bool expected = turns_seen_from_low_x(ring, point) != 0;
      inside += expected;
      ASSERT_EQ(holds(ring, point), expected) << "round " << round;
    }
  }
  EXPECT_GT(inside, 20000);
}

TEST(Region, RandomRingsOverTheWholeRange) {
  std::mt19937_64 engine(42);
  const auto any = [&] {
    switch (engine() % 4) {
      case 0: return lowest_long + static_cast<std::int32_t>(engine() % 3);
      case 1: return highest_long - static_cast<std::int32_t>(engine() % 3);
      case 2: return static_cast<std::int32_t>(engine() % 5) - 2;
      default: return static_cast<std::int32_t>(engine());
    }
  };
  for (int round = 0; round < 50000; ++round) {
    Ring ring(2 + static_cast<std::size_t>(engine() % 12));
    for (LatticePoint& vertex : ring) vertex = {any(), any()};
    // Close to the middle of an edge too, where the products nearly tie.
    const LatticePoint a = ring[0];
    const LatticePoint b = ring[1];
    const auto middle = [&](std::int32_t from, std::int32_t to) {
      const std::int64_t at = (std::int64_t{from} + to) / 2 + static_cast<int>(engine() % 3) - 1;
      return static_cast<std::int32_t>(
          std::clamp(at, std::int64_t{lowest_long}, std::int64_t{highest_long}));
    };
    for (const LatticePoint point :
         {LatticePoint{any(), any()}, LatticePoint{middle(a.x, b.x), middle(a.y, b.y)}}) {
      ASSERT_EQ(holds(ring, point), turns_seen_from_low_x(ring, point) != 0) << "round " << round;
    }
  }
}

TEST(Region, LowEdgesAreInAndHighEdgesOut) {
  const Ring square = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
  const Ring turned = {{0, 10}, {10, 10}, {10, 0}, {0, 0}};
  for (std::int32_t x = -2; x <= 12; ++x) {
    for (std::int32_t y = -2; y <= 12; ++y) {
      const bool expected = x >= 0 && x < 10 && y >= 0 && y < 10;
      EXPECT_EQ(holds(square, {x, y}), expected) << x << ' ' << y;
      EXPECT_EQ(holds(turned, {x, y}), expected) << x << ' ' << y << " the other way round";
    }
  }
}

TEST(Region, TheWholeLatticeIsASquareToo) {
  const Ring all = {{lowest_long, lowest_long},
                    {highest_long, lowest_long},
                    {highest_long, highest_long},
                    {lowest_long, highest_long}};
  EXPECT_TRUE(holds(all, {lowest_long, lowest_long}));
  EXPECT_TRUE(holds(all, {highest_long - 1, highest_long - 1}));
  EXPECT_FALSE(holds(all, {highest_long, 0}));
  EXPECT_FALSE(holds(all, {0, highest_long}));
  const Ring half = {
      {lowest_long, lowest_long}, {highest_long, highest_long}, {lowest_long, highest_long}};
  EXPECT_TRUE(holds(half, {-1, 0}));
  EXPECT_FALSE(holds(half, {0, 0}));  // on its edge of high X
  EXPECT_FALSE(holds(half, {1, 0}));
}

struct RingRow {
  const char* rule;
  Ring ring;
  LatticePoint point;
  bool inside;
};

TEST(Region, Rings) {
  const RingRow table[] = {
      {"what is wound around twice is inside",
       {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}, {10, 0}, {10, 10}, {0, 10}},
       {5, 5},
       true},
      {"the middle of a star that crosses itself",
       {{0, 100}, {59, -81}, {-95, 31}, {95, 31}, {-59, -81}},
       {0, 0},
       true},
      {"a ring run there and back holds nothing",
       {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}, {0, 10}, {10, 10}, {10, 0}},
       {5, 5},
       false},
      {"the lower half of a bow", {{0, 0}, {10, 0}, {0, 10}, {10, 10}}, {5, 2}, true},
      {"the upper half of a bow winds the other way",
       {{0, 0}, {10, 0}, {0, 10}, {10, 10}},
       {5, 8},
       true},
      {"a repeated vertex changes nothing",
       {{0, 0}, {0, 0}, {10, 0}, {10, 10}, {10, 10}, {0, 10}},
       {5, 5},
       true},
      {"the first vertex repeated at the end changes nothing",
       {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}},
       {0, 0},
       true},
      {"a ring on one line is empty", {{0, 0}, {10, 10}, {5, 5}}, {5, 5}, false},
      {"a ring on one point is empty", {{3, 3}, {3, 3}, {3, 3}}, {3, 3}, false},
      {"two points hold nothing", {{0, 0}, {10, 10}}, {5, 5}, false},
  };
  for (const RingRow& row : table) EXPECT_EQ(holds(row.ring, row.point), row.inside) << row.rule;
}

TEST(Region, FewerThanTwoVerticesMakeNone) {
  RegionAtPoint region({0, 0});
  EXPECT_FALSE(region.exists());
  EXPECT_FALSE(region.holds_point());
  region.add({0, 0});
  EXPECT_FALSE(region.exists());
  EXPECT_FALSE(region.holds_point());
  region.add({0, 0});
  EXPECT_TRUE(region.exists());
}

TEST(Region, ShiftingRingAndPointChangesNothing) {
  std::mt19937_64 engine(43);
  const auto any = [&] { return static_cast<std::int32_t>(engine() % 21) - 10; };
  for (int round = 0; round < 20000; ++round) {
    Ring ring(2 + static_cast<std::size_t>(engine() % 20));
    for (LatticePoint& vertex : ring) vertex = {any(), any()};
    const LatticePoint point = {any(), any()};
    const bool before = holds(ring, point);
    // As far as the range goes, on either side.
    const auto far = [&] { return engine() % 2 == 0 ? highest_long - 10 : lowest_long + 10; };
    const LatticePoint by = {far(), far()};
    for (LatticePoint& vertex : ring) vertex = {vertex.x + by.x, vertex.y + by.y};
    ASSERT_EQ(holds(ring, {point.x + by.x, point.y + by.y}), before) << "round " << round;
  }
}

// A plane covered without gaps: each lattice point belongs to one piece.
TEST(Region, PiecesOfATilingClaimEachPointOnce) {
  std::vector<Ring> pieces;
  constexpr std::int32_t step = 6;
  std::mt19937_64 engine(44);
  for (std::int32_t x = -18; x < 18; x += step) {
    for (std::int32_t y = -18; y < 18; y += step) {
      const LatticePoint a = {x, y}, b = {x + step, y}, c = {x + step, y + step}, d = {x, y + step};
      switch (engine() % 3) {
        case 0: pieces.push_back({a, b, c, d}); break;
        case 1:  // cut along a diagonal
          pieces.push_back({a, b, c});
          pieces.push_back({a, c, d});
          break;
        default: {  // cut from an inner point
          const LatticePoint m = {x + 1 + static_cast<std::int32_t>(engine() % 5),
                                  y + 1 + static_cast<std::int32_t>(engine() % 5)};
          pieces.push_back({a, b, m});
          pieces.push_back({b, c, m});
          pieces.push_back({c, d, m});
          pieces.push_back({d, a, m});
        }
      }
    }
  }
  for (std::int32_t x = -19; x <= 19; ++x) {
    for (std::int32_t y = -19; y <= 19; ++y) {
      int claims = 0;
      for (const Ring& piece : pieces) claims += holds(piece, {x, y});
      const bool covered = x >= -18 && x < 18 && y >= -18 && y < 18;
      EXPECT_EQ(claims, covered ? 1 : 0) << x << ' ' << y;
    }
  }
}

}  // namespace
}  // namespace orv2_geo

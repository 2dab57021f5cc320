#include "orv2_geo/platform/near_ring.h"

#include <cmath>
#include <vector>

#include "orv2_geo/platform/region.h"
#include "tests/support/preamble.h"

namespace orv2_geo::vertices {
namespace {

struct Ring {
  std::vector<double> x, y;

  void add(double at_x, double at_y) {
    x.push_back(at_x);
    y.push_back(at_y);
  }
  Place around(double px, double py) const {
    const Place place = place_near(x.data(), y.data(), x.size(), px, py);
    EXPECT_EQ(place_in_pairs(x.data(), y.data(), x.size(), px, py), place);
    return place;
  }
};

double hundredths(double value) { return std::nearbyint(100.0 * value); }

// Unknown from 2^26 hundredths between a vertex and the point on, along X and Y together, and from
// 2^30 between the point and zero; else edge by edge.
Place plainly(const Ring& ring, double px, double py) {
  if (!(std::abs(100.0 * px) < 1073741824.0 && std::abs(100.0 * py) < 1073741824.0))
    return Place::unknown;
  for (std::size_t i = 0; i < ring.x.size(); ++i) {
    const double away_x = std::abs(hundredths(ring.x[i]) - hundredths(px));
    const double away_y = std::abs(hundredths(ring.y[i]) - hundredths(py));
    if (!(away_x + away_y < 67108864.0)) return Place::unknown;
  }
  const auto lattice = [](double x, double y) {
    return LatticePoint{static_cast<std::int32_t>(hundredths(x)),
                        static_cast<std::int32_t>(hundredths(y))};
  };
  int winding = 0;
  for (std::size_t i = 0; i < ring.x.size(); ++i) {
    const std::size_t before = (i == 0 ? ring.x.size() : i) - 1;
    winding += winding_of_edge(lattice(px, py), lattice(ring.x[before], ring.y[before]),
                               lattice(ring.x[i], ring.y[i]));
  }
  return winding != 0 ? Place::inside : Place::outside;
}

TEST(NearRing, SmallLatticesWithTiesEdgeByEdge) {
  Numbers numbers(63);
  int inside = 0;
  for (int turn = 0; turn < 20000; ++turn) {
    const auto any = [&] { return (static_cast<double>(numbers.below(21)) - 10.0) / 200.0; };
    Ring ring;
    for (std::size_t i = 2 + numbers.below(49); i > 0; --i) ring.add(any(), any());
    const double px = any(), py = any();
    ASSERT_EQ(ring.around(px, py), plainly(ring, px, py)) << turn;
    inside += ring.around(px, py) == Place::inside ? 1 : 0;
  }
  EXPECT_GT(inside, 2000);
  EXPECT_LT(inside, 18000);
}

// Edges as long as they may be that pass within a lattice place of the point: the two products
// differ in their last bits alone.
TEST(NearRing, LongEdgesThatPassCloseBy) {
  Numbers numbers(64);
  int inside = 0;
  for (int turn = 0; turn < 20000; ++turn) {
    const auto far = [&] { return 33554430.0 - static_cast<double>(numbers.below(1000)); };
    const auto aside = [&] { return static_cast<double>(numbers.below(3)) - 1.0; };
    const double x = far(), y = far();
    const double px = 500000.0 + static_cast<double>(numbers.below(1000)), py = 4473000.0;
    Ring ring;
    ring.add(px - (x + aside()) / 100.0, py - (y + aside()) / 100.0);
    ring.add(px + (x + aside()) / 100.0, py + (y + aside()) / 100.0);
    ring.add(px - x / 100.0, py + y / 100.0);
    if (turn % 2 == 0) ring.add(ring.x[0], ring.y[0]);
    ASSERT_EQ(ring.around(px, py), plainly(ring, px, py)) << turn;
    inside += ring.around(px, py) == Place::inside ? 1 : 0;
  }
  EXPECT_GT(inside, 2000);
  EXPECT_LT(inside, 18000);
}

TEST(NearRing, WhatIsTooFarIsUnknown) {
  const struct {
    double x, y, px, py;
    Place expected;
  } rows[] = {
      {671088.63, 0.0, 0.0, 0.0, Place::outside},
      {671088.64, 0.0, 0.0, 0.0, Place::unknown},
      {-671088.63, 0.0, 0.0, 0.0, Place::outside},
      {-671088.64, 0.0, 0.0, 0.0, Place::unknown},
      {0.0, 671088.63, 0.0, 0.0, Place::outside},
      {0.0, 671088.64, 0.0, 0.0, Place::unknown},
      {335544.31, 335544.32, 0.0, 0.0, Place::outside},
      {335544.32, 335544.32, 0.0, 0.0, Place::unknown},
      {335544.32, -0.01, 0.01, -335544.32, Place::outside},
      {335544.33, -0.01, 0.01, -335544.33, Place::unknown},
      {nan, 0.0, 0.0, 0.0, Place::unknown},
      {0.0, nan, 0.0, 0.0, Place::unknown},
      {inf, 0.0, 0.0, 0.0, Place::unknown},
      {0.0, -inf, 0.0, 0.0, Place::unknown},
      {1e300, 0.0, 0.0, 0.0, Place::unknown},
      {0.0, -1.7976931348623157e308, 0.0, 0.0, Place::unknown},
      {0.0, 45035996273704.96, 0.0, 0.0, Place::unknown},  // 2^52 hundredths
      {0.0, 22517998136852.48, 0.0, 0.0, Place::unknown},  // 2^51
      // Of a point nearly 2^30 hundredths from zero every vertex that is near fits 32 bits.
      {10737418.23, 10737418.23, 10737418.23, 10737418.23, Place::outside},
      {10737418.24, 0.0, 10737418.24, 0.0, Place::unknown},
      {0.0, -10737418.24, 0.0, -10737418.24, Place::unknown},
      {0.0, 0.0, nan, 0.0, Place::unknown},
      {0.0, 0.0, 0.0, inf, Place::unknown},
      {1e300, 0.0, 1e300, 0.0, Place::unknown},
  };
  for (const auto& row : rows) {
    // Wherever in the ring the vertex stands, all others are the point.
    for (std::size_t count = 2; count < 12; ++count) {
      for (std::size_t place = 0; place < count; ++place) {
        Ring ring;
        for (std::size_t i = 0; i < count; ++i) {
          i == place ? ring.add(row.x, row.y) : ring.add(row.px, row.py);
        }
        EXPECT_EQ(ring.around(row.px, row.py), row.expected)
            << row.x << ' ' << row.y << ' ' << row.px << ' ' << row.py << ' ' << count;
      }
    }
  }
}

}  // namespace
}  // namespace orv2_geo::vertices

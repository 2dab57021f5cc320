// Regions against those of the system, which fills its polygons by the same winding rule.
#include "orv2_geo/platform/region.h"

#include <windows.h>

#include <cmath>
#include <random>
#include <vector>

#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using Ring = std::vector<POINT>;

bool holds(const Ring& ring, POINT point) {
  RegionAtPoint region({static_cast<std::int32_t>(point.x), static_cast<std::int32_t>(point.y)});
  for (const POINT& vertex : ring) {
    region.add({static_cast<std::int32_t>(vertex.x), static_cast<std::int32_t>(vertex.y)});
  }
  return region.holds_point();
}

class SystemRegion {
 public:
  explicit SystemRegion(const Ring& ring)
      : region_(CreatePolygonRgn(ring.data(), static_cast<int>(ring.size()), WINDING)) {}
  ~SystemRegion() { DeleteObject(region_); }
  SystemRegion(const SystemRegion&) = delete;
  SystemRegion& operator=(const SystemRegion&) = delete;

  bool exists() const { return region_ != nullptr; }
  bool holds(POINT point) const {
    return PtInRegion(region_, static_cast<int>(point.x), static_cast<int>(point.y)) != FALSE;
  }

 private:
  HRGN region_;
};

double distance(POINT p, POINT a, POINT b) {
  const double dx = static_cast<double>(b.x - a.x);
  const double dy = static_cast<double>(b.y - a.y);
  const double along = static_cast<double>(p.x - a.x) * dx + static_cast<double>(p.y - a.y) * dy;
  const double square = dx * dx + dy * dy;
  const double u = square > 0.0 ? std::min(std::max(along / square, 0.0), 1.0) : 0.0;
  return std::hypot(static_cast<double>(p.x - a.x) - u * dx,
                    static_cast<double>(p.y - a.y) - u * dy);
}

double distance(POINT p, const Ring& ring) {
  double nearest = distance(p, ring.back(), ring.front());
  for (std::size_t i = 1; i < ring.size(); ++i) {
    nearest = std::min(nearest, distance(p, ring[i - 1], ring[i]));
  }
  return nearest;
}

class RandomRings {
 public:
  explicit RandomRings(std::uint64_t seed) : engine_(seed) {}

  LONG any(LONG side) {
    return static_cast<LONG>(engine_() % static_cast<std::uint64_t>(side)) - side / 2;
  }
  std::size_t count(std::size_t least, std::size_t most) {
    return least + static_cast<std::size_t>(engine_() % (most - least + 1));
  }

  Ring sloping(LONG side) {
    Ring ring(count(3, 24));
    for (POINT& vertex : ring) vertex = {any(side), any(side)};
    return ring;
  }

  /// Every edge, the closing one too, is level or upright.
  Ring axis_parallel(LONG side) {
    const LONG first_x = any(side);
    Ring ring = {{first_x, any(side)}};
    for (std::size_t turns = count(1, 12); turns > 0; --turns) {
      ring.push_back({any(side), ring.back().y});
      ring.push_back({ring.back().x, any(side)});
    }
    ring.push_back({first_x, ring.back().y});
    return ring;
  }

 private:
  std::mt19937_64 engine_;
};

constexpr int rings = 5000;
constexpr int points = 40;

TEST(SystemRegion, AxisParallelRingsAreExactlyTheSame) {
  RandomRings random(51);
  int inside = 0;
  for (int round = 0; round < rings; ++round) {
    const LONG side = round % 2 == 0 ? 12 : 5000;
    const Ring ring = random.axis_parallel(side);
    const SystemRegion region(ring);
    ASSERT_TRUE(region.exists());
    for (int question = 0; question < points; ++question) {
      // On an edge, or anywhere.
      const POINT corner = ring[random.count(0, ring.size() - 1)];
      const POINT point = {question % 3 == 0 ? corner.x : random.any(side),
                           question % 3 == 1 ? corner.y : random.any(side)};
      ASSERT_EQ(holds(ring, point), region.holds(point))
          << "round " << round << " at " << point.x << ", " << point.y;
      inside += region.holds(point);
    }
  }
  EXPECT_GT(inside, rings * points / 10);
}

TEST(SystemRegion, SlopingRingsAreTheSameTwoUnitsFromEveryEdge) {
  RandomRings random(52);
  int inside = 0;
  int asked = 0;
  for (int round = 0; round < rings; ++round) {
    const LONG side = round % 2 == 0 ? 60 : 5000;
    const Ring ring = random.sloping(side);
    const SystemRegion region(ring);
    ASSERT_TRUE(region.exists());
    for (int question = 0; question < points; ++question) {
      const POINT point = {random.any(side), random.any(side)};
      if (distance(point, ring) < 2.0) continue;
      ASSERT_EQ(holds(ring, point), region.holds(point))
          << "round " << round << " at " << point.x << ", " << point.y;
      ++asked;
      inside += region.holds(point);
    }
  }
  EXPECT_GT(asked, rings * points / 2);
  EXPECT_GT(inside, asked / 10);
}

}  // namespace
}  // namespace orv2_geo

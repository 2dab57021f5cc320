#include <cmath>
#include <string>
#include <vector>

#include "orv2_geo/survey/cgeo_api.h"
#include "tests/platform/recording_interface.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

const cgeo_api api;

using Box = RecordingInterface::Box;
const Box subscript = {"Pto en Poligono - Error nº  9:El subíndice está fuera del intervalo", 16,
                       "Orv2_Geo.cgeo_api"};
const Box overflow = {"Pto en Poligono - Error nº  6:Desbordamiento", 16, "Orv2_Geo.cgeo_api"};

struct Vertex {
  double x, y;
};

// Bounds 1 to the number of vertices, the last repeating the first or not.
struct Polygon {
  DoubleArray x, y;
  std::int32_t vertices;

  explicit Polygon(const std::vector<Vertex>& ring, std::int32_t lower = 1)
      : vertices(static_cast<std::int32_t>(ring.size())) {
    if (ring.empty()) return;
    x.size(lower, vertices);
    y.size(lower, vertices);
    for (std::int32_t i = 1; i <= vertices; ++i) {
      x(i) = ring[static_cast<std::size_t>(i - 1)].x;
      y(i) = ring[static_cast<std::size_t>(i - 1)].y;
    }
  }
};

const std::vector<Vertex> square = {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}};

struct PointRow {
  const char* rule;
  std::vector<Vertex> ring;
  std::int32_t nVer;
  double x, y;
  bool inside;
  std::int16_t loc;
};

TEST(PointInPolygon, Rules) {
  const std::vector<Vertex> open = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
  const std::vector<Vertex> eighths = {
      {0.125, 0.125}, {0.375, 0.125}, {0.375, 0.375}, {0.125, 0.375}, {0.125, 0.125}};
  std::vector<Vertex> twice = square;
  twice.insert(twice.end(), square.begin() + 1, square.end());
  const std::vector<Vertex> grid = {{4473000, 4473000},
                                    {4473100, 4473000},
                                    {4473100, 4473100},
                                    {4473000, 4473100},
                                    {4473000, 4473000}};
  const PointRow table[] = {
      {"the low corner is inside", square, 5, 0, 0, true, 7},
      {"the high corner is outside", square, 5, 10, 10, false, 7},
      {"a hundredth before the high corner is inside", square, 5, 9.99, 9.99, true, 7},
      {"an edge of high X is outside", square, 5, 10, 5, false, 7},
      {"an edge of high Y is outside", square, 5, 5, 10, false, 7},
      {"an edge of low X is inside", square, 5, 0, 5, true, 7},
      {"an edge of low Y is inside", square, 5, 5, 0, true, 7},
      {"0.125 is 12 hundredths for vertex and point", eighths, 5, 0.12, 0.12, true, 7},
      {"0.375 is 38 hundredths: 0.37 is inside", eighths, 5, 0.37, 0.37, true, 7},
      {"0.375 is 38 hundredths: 0.38 is outside", eighths, 5, 0.38, 0.37, false, 7},
      {"a point of 0.125 is the low corner", eighths, 5, 0.125, 0.125, true, 7},
      {"a point of 0.375 is the high edge", eighths, 5, 0.375, 0.2, false, 7},
      {"closer than 0.005 is the same lattice point", square, 5, -0.004, -0.004, true, 7},
      {"below a hundredth nothing is inside",
       {{0, 0}, {0.004, 0}, {0.004, 0.004}, {0, 0.004}, {0, 0}},
       5,
       0,
       0,
       false,
       7},
      {"without the repetition the last vertex is lost", open, 4, 1, 9, false, 7},
      {"what is left is the triangle of the first three", open, 4, 9, 1, true, 7},
      {"one vertex counted: no region", square, 1, 5, 5, false, -1},
      {"two vertices counted: no region", square, 2, 5, 5, false, -1},
      {"three counted: a region, an empty one", square, 3, 5, 5, false, 7},
      {"wound around twice is inside", twice, 9, 5, 5, true, 7},
      {"a star that crosses itself winds twice around its middle",
       {{0, 10}, {5.9, -8.1}, {-9.5, 3.1}, {9.5, 3.1}, {-5.9, -8.1}, {0, 10}},
       6,
       0,
       0,
       true,
       7},
      {"a bow: both wings", {{0, 0}, {10, 0}, {0, 10}, {10, 10}, {0, 0}}, 5, 5, 8, true, 7},
      {"national grid", grid, 5, 4473050.5, 4473000, true, 7},
      {"national grid, high edge", grid, 5, 4473100, 4473050, false, 7},
  };
  for (const PointRow& row : table) {
    RecordingInterface screen;
    const Polygon polygon(row.ring);
    std::int16_t loc = 7;
    EXPECT_EQ(bool(api.Pto_in_Poligono(polygon.x, polygon.y, row.nVer, row.x, row.y, loc)),
              row.inside)
        << row.rule;
    EXPECT_EQ(loc, row.loc) << row.rule;
    EXPECT_TRUE(screen.boxes.empty()) << row.rule;
  }
}

TEST(PointInPolygon, ElementZeroAndTheLastVertexAreNotRead) {
  RecordingInterface screen;
  Polygon polygon(square, 0);
  polygon.x(0) = nan, polygon.y(0) = nan;
  polygon.x(5) = nan, polygon.y(5) = nan;
  std::int16_t loc = 0;
  EXPECT_TRUE(api.Pto_in_Poligono(polygon.x, polygon.y, 5, 5, 5, loc));
  polygon.x.size_keeping(0, 4);  // nor need the last vertex exist
  EXPECT_TRUE(api.Pto_in_Poligono(polygon.x, polygon.y, 5, 5, 5, loc));
  EXPECT_TRUE(screen.boxes.empty());
}

struct FailureRow {
  const char* rule;
  std::vector<Vertex> ring;
  std::int32_t nVer;
  double x, y;
  Box box;
};

TEST(PointInPolygon, FailuresAreShownAndAnswerFalse) {
  constexpr double beyond = 21474836.48;
  const auto ring_with = [](Vertex odd) {
    return std::vector<Vertex>{{0, 0}, odd, {10, 10}, {0, 10}, {0, 0}};
  };
  const FailureRow table[] = {
      {"no vertices", square, 0, 5, 5, subscript},
      {"a negative count", square, -3, 5, 5, subscript},
      {"the lowest count", square, lowest_long, 5, 5, subscript},
      {"more than the array has", square, 7, 5, 5, subscript},
      {"far more than the array has", square, highest_long, 5, 5, subscript},
      {"no array", {}, 5, 5, 5, subscript},
      {"point X beyond", square, 5, beyond, 5, overflow},
      {"point Y beyond", square, 5, 5, -beyond - 0.01, overflow},
      {"the point comes before the count", square, 0, beyond, 5, overflow},
      {"the point comes before the arrays", {}, 5, nan, 5, overflow},
      {"vertex X beyond", ring_with({beyond, 0}), 5, 5, 5, overflow},
      {"vertex Y beyond", ring_with({10, -beyond - 0.01}), 5, 5, 5, overflow},
      {"vertex X is NaN", ring_with({nan, 0}), 5, 5, 5, overflow},
      {"vertex Y is infinite", ring_with({10, inf}), 5, 5, 5, overflow},
      {"a product that overflows", ring_with({1e308, 0}), 5, 5, 5, overflow},
      {"out of range comes before the missing element", ring_with({beyond, 0}), 7, 5, 5, overflow},
  };
  for (const FailureRow& row : table) {
    RecordingInterface screen;
    const Polygon polygon(row.ring);
    std::int16_t loc = 7;
    EXPECT_FALSE(api.Pto_in_Poligono(polygon.x, polygon.y, row.nVer, row.x, row.y, loc))
        << row.rule;
    EXPECT_EQ(loc, 7) << row.rule;
    ASSERT_EQ(screen.boxes.size(), 1U) << row.rule;
    EXPECT_EQ(screen.boxes[0], row.box) << row.rule;
  }
}

TEST(PointInPolygon, OneVertexThatDoesNotFitIsSeenWhereverItStands) {
  const double far_off[] = {21474836.48, -21474836.49, 1e300, -inf, nan, -nan};
  for (const std::int32_t vertices : {2, 3, 9, 64, 65, 131}) {
    Polygon polygon(std::vector<Vertex>(static_cast<std::size_t>(vertices) + 1, {3, 4}));
    for (std::int32_t place = 1; place <= vertices; ++place) {
      for (DoubleArray* const axis : {&polygon.x, &polygon.y}) {
        RecordingInterface screen;
        const double before = (*axis)(place);
        std::vector<Box> expected;
        std::int16_t loc = 7;
        for (const double value : far_off) {
          (*axis)(place) = value;
          EXPECT_FALSE(api.Pto_in_Poligono(polygon.x, polygon.y, vertices + 1, 3, 4, loc));
          expected.push_back(overflow);
        }
        (*axis)(place) = before;
        EXPECT_EQ(screen.boxes, expected) << vertices << ' ' << place;
      }
    }
  }
}

TEST(PointInPolygon, ArraysThatStartAt2OrAreShortInYFail) {
  RecordingInterface screen;
  std::int16_t loc = 7;
  const Polygon polygon(square);
  EXPECT_FALSE(api.Pto_in_Poligono(DoubleArray(2, 5), polygon.y, 5, 5, 5, loc));
  EXPECT_FALSE(api.Pto_in_Poligono(polygon.x, DoubleArray(1, 3), 5, 5, 5, loc));
  // A vertex out of range in X is found before its missing Y.
  Polygon odd(square);
  odd.x(4) = 1e9;
  EXPECT_FALSE(api.Pto_in_Poligono(odd.x, DoubleArray(1, 3), 5, 5, 5, loc));
  EXPECT_EQ(screen.boxes, (std::vector<Box>{subscript, subscript, overflow}));
}

TEST(PointInPolygon, BothEndsOfTheRangeAreReached) {
  RecordingInterface screen;
  constexpr double low = -21474836.48, high = 21474836.47;
  const Polygon all({{low, low}, {high, low}, {high, high}, {low, high}, {low, low}});
  std::int16_t loc = 7;
  EXPECT_TRUE(api.Pto_in_Poligono(all.x, all.y, 5, low, low, loc));
  EXPECT_TRUE(api.Pto_in_Poligono(all.x, all.y, 5, 21474836.46, 21474836.46, loc));
  EXPECT_FALSE(api.Pto_in_Poligono(all.x, all.y, 5, high, 0, loc));
  EXPECT_FALSE(api.Pto_in_Poligono(all.x, all.y, 5, 0, high, loc));
  EXPECT_TRUE(screen.boxes.empty());
}

// One variable for both arrays: the diagonal, which holds nothing.
TEST(PointInPolygon, OneArrayForXAndY) {
  const Polygon polygon({{0, 0}, {10, 3}, {4, 9}, {0, 0}});
  std::int16_t loc = 7;
  EXPECT_FALSE(api.Pto_in_Poligono(polygon.x, polygon.x, 4, 5, 5, loc));
  // The point's coordinates are elements of the ring.
  EXPECT_TRUE(api.Pto_in_Poligono(polygon.x, polygon.y, 4, polygon.x(3), polygon.y(2), loc));
}

TEST(PointInPolygon, RandomRingsOfEveryLengthVertexByVertex) {
  Numbers numbers(45);
  RecordingInterface screen;
  int inside = 0;
  for (int round = 0; round < 3000; ++round) {
    // Small lattices, so that points fall on edges; halves of hundredths, so that
    // ties decide; sometimes far off, where only the longer way can tell, and sometimes as
    // large as a country or more.
    const double origin = round % 5 == 0 ? -21474836.48 : 0.005 * numbers.small_whole();
    const double unit = round % 5 == 1 ? 5310.005 : round % 5 == 2 ? 500000.0 : 0.005;
    const auto any = [&] { return origin + unit * static_cast<double>(numbers.below(40)); };
    const std::int32_t vertices =
        2 + static_cast<std::int32_t>(numbers.below(round % 2 == 0 ? 300 : 40));
    std::vector<Vertex> ring(static_cast<std::size_t>(vertices) + 1);
    double x = any();
    for (Vertex& vertex : ring) {
      if (numbers.below(4) == 0) x = any();
      vertex = {x, any()};
    }
    const Polygon polygon(ring);
    const auto rounded = [](double value) {
      return static_cast<std::int64_t>(std::nearbyint(value * 100.0));
    };
    for (int question = 0; question < 5; ++question) {
      const double px = any(), py = any();
      int turns = 0;
      for (std::int32_t i = 0; i < vertices; ++i) {
        const Vertex a = ring[static_cast<std::size_t>(i)];
        const Vertex b = ring[static_cast<std::size_t>((i + 1) % vertices)];
        const std::int64_t ax = rounded(a.x), ay = rounded(a.y), bx = rounded(b.x),
                           by = rounded(b.y), qx = rounded(px), qy = rounded(py);
        const std::int64_t side = (bx - ax) * (qy - ay) - (qx - ax) * (by - ay);
        if (ay <= qy && qy < by && side > 0) ++turns;
        if (by <= qy && qy < ay && side < 0) --turns;
      }
      std::int16_t loc = 7;
      ASSERT_EQ(bool(api.Pto_in_Poligono(polygon.x, polygon.y, vertices + 1, px, py, loc)),
                turns != 0)
          << "round " << round;
      inside += turns != 0;
    }
  }
  EXPECT_GT(inside, 2000);
  EXPECT_TRUE(screen.boxes.empty());
}

// Vertices a hair on either side of a tie, against the row just below it.
TEST(PointInPolygon, TheTopOfARowIsKeptToTheLastBit) {
  for (const double row : {0.0, 1.0, 2.0, 3.0, -1.0, -2.0, 447300000.0, 447300001.0}) {
    for (const int ulps : {-2, -1, 0, 1, 2}) {
      double top = (row + 0.5) / 100.0;
      for (int k = 0; k < std::abs(ulps); ++k) top = std::nextafter(top, ulps * 1e300);
      const double low = row / 100.0 - 5.0;
      const Polygon polygon({{0, low}, {10, low}, {10, top}, {0, top}, {0, low}});
      std::int16_t loc = 7;
      const bool expected = std::nearbyint(top * 100.0) > row;
      EXPECT_EQ(bool(api.Pto_in_Poligono(polygon.x, polygon.y, 5, 5, row / 100.0, loc)), expected)
          << row << ' ' << ulps;
    }
  }
}

}  // namespace
}  // namespace orv2_geo

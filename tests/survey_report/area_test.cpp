#include "survey_report/area.h"

#include <gtest/gtest.h>

#include "survey_report/choice_fault.h"

namespace survey_report {
namespace {

using Inside = std::vector<std::size_t>;

std::vector<SurveyPoint> points_at(const std::vector<Place>& places) {
  std::vector<SurveyPoint> points;
  for (const Place& place : places) points.push_back({"1", place.x, place.y, 0, "", 1});
  return points;
}

struct AreaRow {
  const char* rule;
  std::vector<Place> ring;
  std::vector<Place> points;
  Inside inside;
};

const std::vector<Place> square = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};

const AreaRow area_rows[] = {
    {"inside and outside", square, {{5, 5}, {15, 5}, {-1, 5}, {9.99, 9.99}}, {0, 3}},
    {"left and lower edge inside, right and upper not",
     square,
     {{0, 5}, {5, 0}, {10, 5}, {5, 10}, {0, 0}, {10, 10}},
     {0, 1, 4}},
    {"the order of the vertices does not matter",
     {{0, 0}, {0, 10}, {10, 10}, {10, 0}},
     {{5, 5}, {0, 5}, {10, 5}},
     {0, 1}},
    {"all outside", square, {{20, 20}, {-5, 5}}, {}},
    {"outside by a whole world", square, {{1e300, 5}, {5, -1e300}, {5, 5}}, {2}},
    {"the last vertex counts too", {{0, 0}, {10, 0}, {0, 10}}, {{2, 7}, {7, 7}}, {0}},
    {"a notch is outside", {{0, 0}, {10, 0}, {5, 4}, {10, 10}, {0, 10}}, {{9, 5}, {2, 5}}, {1}},
    {"where the ring goes round twice is inside",
     {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}, {10, 0}, {10, 10}, {0, 10}},
     {{5, 5}},
     {0}},
    {"a ring on a line holds nothing", {{0, 0}, {10, 10}, {20, 20}}, {{5, 5}, {5, 4}}, {}},
    {"far from the origin",
     {{30000000, 40000000}, {30000010, 40000000}, {30000010, 40000010}},
     {{30000008, 40000003}, {30000002, 40000008}},
     {0}},
};

TEST(WorkArea, PointsInside) {
  for (const AreaRow& row : area_rows) {
    const WorkArea area = area_of(points_at(row.points), {}, {row.ring, {}});
    EXPECT_EQ(area.inside, row.inside) << row.rule;
    EXPECT_EQ(area.fault, "") << row.rule;
    EXPECT_EQ(area.origin, "as given") << row.rule;
  }
}

// The edge at 0.375 is taken to 0.38, as halves go to the even hundredth; of the
// points the first two are taken to 0.37, the third to 0.38, the edge itself.
TEST(WorkArea, PlacesAreTakenToTheHundredth) {
  const std::vector<Place> ring = {{0, 0}, {0.375, 0}, {0.375, 10}, {0, 10}};
  EXPECT_EQ(area_of(points_at({{0.37, 5}, {0.3749, 5}, {0.3751, 5}}), {}, {ring, {}}).inside,
            (Inside{0, 1}));
}

TEST(WorkArea, OfItselfTheMiddleHalfOfTheBoundary) {
  const Boundary boundary{{{0, 0}, {100, 0}, {100, 40}, {0, 40}}, "EDGE", 4, false};
  const WorkArea area = area_of(points_at({{50, 20}, {20, 20}, {50, 31}, {74, 11}}), boundary, {});
  EXPECT_EQ(area.vertices, (std::vector<Place>{{25, 10}, {75, 10}, {75, 30}, {25, 30}}));
  EXPECT_EQ(area.inside, (Inside{0, 3}));
}

TEST(WorkArea, NoneWithoutABoundary) {
  const WorkArea area = area_of(points_at({{1, 1}}), {}, {});
  EXPECT_TRUE(area.vertices.empty());
  EXPECT_TRUE(area.inside.empty());
}

std::vector<SurveyPoint> house() {
  std::vector<SurveyPoint> points = points_at({{0, 0}, {8, 0}, {8, 6}, {8, 0}, {3, 1}, {1, 5}});
  for (const std::size_t i : {0, 1, 2, 3}) points[i].code = "EDIF " + std::to_string(i);
  return points;
}

// Point 3 was measured again where point 1 is. On its own edges the lower left
// corner alone is inside.
TEST(WorkArea, ThePointsOfACode) {
  const WorkArea area = area_of(house(), {}, {{}, "EDIF"});
  EXPECT_EQ(area.vertices, (std::vector<Place>{{0, 0}, {8, 0}, {8, 6}}));
  EXPECT_EQ(area.origin, "points whose code begins with EDIF");
  EXPECT_EQ(area.inside, (Inside{0, 4}));
}

TEST(WorkArea, FewerThanThreePlacesOfACodeAreRefused) {
  for (const char* code : {"EDIF 0", "MURO"}) {
    EXPECT_THROW(area_of(house(), {}, {{}, code}), ChoiceFault) << code;
  }
}

TEST(WorkArea, TooLargeForTheLibrary) {
  const std::vector<Place> ring = {{0, 0}, {21474837, 0}, {0, 5}};
  const WorkArea area = area_of(points_at({{1, 1}}), {}, {ring, {}});
  EXPECT_EQ(area.fault, "the area is larger than 21474836");
  EXPECT_TRUE(area.inside.empty());
}

}  // namespace
}  // namespace survey_report

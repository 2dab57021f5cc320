#include "survey_report/relief.h"

#include <gtest/gtest.h>

namespace survey_report {
namespace {

struct StepRow {
  const char* rule;
  Box box;
  double step;
};

const StepRow step_rows[] = {
    {"a square of 80", {{0, 80}, {0, 80}}, 10},
    {"a little less than 80", {{0, 79}, {0, 79}}, 5},
    {"one side larger", {{0, 211}, {0, 160}}, 20},
    {"far from the origin", {{435000, 435160}, {4473000, 4473160}}, 20},
    {"less than one", {{0, 0.9}, {0, 0.9}}, 0.1},
    {"a strip", {{0, 64000}, {0, 0.001}}, 1000},
};

TEST(Relief, DefaultStepIsRound) {
  for (const StepRow& row : step_rows) {
    EXPECT_DOUBLE_EQ(default_step(row.box), row.step) << row.rule;
  }
}

TEST(Relief, GridPlacesAreTheMultiplesInTheBox) {
  const Box box{{-1, 11}, {99, 105}};
  const std::vector<Place> expected = {{0, 100}, {5, 100}, {10, 100},
                                       {0, 105}, {5, 105}, {10, 105}};
  EXPECT_EQ(grid_places(box, 5), expected);
  EXPECT_EQ(node_count(box, 5), 6.0);
}

TEST(Relief, AStepLargerThanTheBoxMayMissIt) {
  EXPECT_TRUE(grid_places({{1, 9}, {1, 9}}, 10).empty());
}

Relief relief_on(const std::vector<SurveyPoint>& points, const Boundary& boundary, double step) {
  return relief_of(TriangleIndex(points, triangulation_of(points, boundary)), boundary, step);
}

double plane_at(double x, double y) {
  return 600.0 + 0.03 * (x - 435000.0) - 0.05 * (y - 4473000.0);
}

std::vector<SurveyPoint> points_on_a_plane() {
  std::vector<SurveyPoint> points;
  for (int row = 0; row < 12; ++row) {
    for (int column = 0; column < 12; ++column) {
      const double x = 435000.0 + 9.7 * column + 0.9 * (row % 3);
      const double y = 4473000.0 + 8.9 * row + 1.1 * (column % 4);
      points.push_back({"1", x, y, plane_at(x, y), "", 1});
    }
  }
  return points;
}

TEST(Relief, NodesOnAPlaneHaveItsElevation) {
  const std::vector<SurveyPoint> points = points_on_a_plane();
  const Relief relief = relief_on(points, boundary_of(points, "EDGE"), 10.0);
  EXPECT_GT(relief.nodes.size(), 80);
  for (const Node& node : relief.nodes) {
    EXPECT_NEAR(node.elevation, plane_at(node.place.x, node.place.y), 1e-9)
        << node.place.x << ' ' << node.place.y;
  }
}

TEST(Relief, ANodeOnAPointHasItsElevation) {
  const std::vector<SurveyPoint> points = {
      {"1", 0, 0, 7, "", 1}, {"2", 9, 0, 8, "", 2}, {"3", 0, 9, 9, "", 3}};
  const Relief relief = relief_on(points, {{{-1, -1}, {9, -1}, {-1, 9}}, "EDGE", 3, false}, 100.0);
  ASSERT_EQ(relief.nodes.size(), 1);
  EXPECT_NEAR(relief.nodes[0].elevation, 7.0, 1e-12);
}

TEST(Relief, NodesOutsideTheBoundaryAreLeftOut) {
  const std::vector<SurveyPoint> points = points_on_a_plane();
  const Boundary corner{
      {{435025, 4473025}, {435039, 4473025}, {435025, 4473039}}, "EDGE", 3, false};
  const Relief relief = relief_on(points, corner, 10.0);
  ASSERT_EQ(relief.nodes.size(), 1);
  EXPECT_EQ(relief.nodes[0].place, (Place{435030, 4473030}));
}

// Two points level with each other: the slope is that of the third over them.
TEST(Relief, SlopeInPercent) {
  const std::vector<SurveyPoint> points = {
      {"1", -5, -5, 100, "", 1}, {"2", 5, -5, 100, "", 2}, {"3", 0, 5, 101, "", 3}};
  const Relief relief = relief_on(points, boundary_of(points, "EDGE"), 100.0);
  ASSERT_EQ(relief.nodes.size(), 1);
  ASSERT_TRUE(relief.nodes[0].slope.has_value());
  EXPECT_NEAR(*relief.nodes[0].slope, 10.0, 1e-9);
  EXPECT_NEAR(relief.nodes[0].elevation, 100.5, 1e-9);
}

TEST(Relief, Summary) {
  const Relief relief{
      1.0, {{{0, 0}, {}, 5.0, 2.0}, {{1, 0}, {}, 1.0, std::nullopt}, {{2, 0}, {}, 3.0, 4.0}}};
  const ReliefSummary summary = summary_of(relief);
  EXPECT_EQ(summary.lowest, 1.0);
  EXPECT_EQ(summary.highest, 5.0);
  EXPECT_DOUBLE_EQ(summary.mean, 3.0);
  EXPECT_EQ(summary.mean_slope, std::optional<double>(3.0));
}

TEST(Relief, WithoutSlopesThereIsNoMeanSlope) {
  const Relief relief{1.0, {{{0, 0}, {}, 5.0, std::nullopt}}};
  EXPECT_FALSE(summary_of(relief).mean_slope.has_value());
}

}  // namespace
}  // namespace survey_report

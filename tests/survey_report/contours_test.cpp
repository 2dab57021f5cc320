#include "survey_report/contours.h"

#include <gtest/gtest.h>

#include <cmath>

#include "survey_report/choice_fault.h"

namespace survey_report {
namespace {

using Points = std::vector<SurveyPoint>;

Points points_at(const std::vector<std::array<double, 3>>& places) {
  Points points;
  for (const auto& [x, y, z] : places) points.push_back({"1", x, y, z, "", 1});
  return points;
}

struct StepRow {
  const char* rule;
  Range elevations;
  double step;
};

const StepRow step_rows[] = {
    {"a hillside", {605.279, 638.355}, 2},
    {"a mountain", {0, 1400}, 100},
    {"nearly level", {10, 10.07}, 0.005},
    {"below zero", {-30, -16}, 1},
};

TEST(Contours, StepsAreRound) {
  for (const StepRow& row : step_rows) {
    EXPECT_DOUBLE_EQ(default_contour_step(row.elevations), row.step) << row.rule;
  }
}

struct LineRow {
  const char* rule;
  std::vector<std::array<double, 3>> points;
  std::vector<Facet> facets;
  double step;
  std::vector<double> levels;
  std::vector<std::vector<Place>> lines;
  std::vector<bool> closed;
};

const LineRow line_rows[] = {
    {"straight across one triangle, at the parts of its sides",
     {{0, 0, 0}, {10, 0, 10}, {0, 10, 0}},
     {{0, 1, 2}},
     5,
     {5},
     {{{5, 0}, {5, 5}}},
     {false}},
    {"through two triangles as one line",
     {{0, 0, 0}, {10, 0, 10}, {0, 10, 0}, {10, 10, 10}},
     {{0, 1, 2}, {1, 3, 2}},
     4,
     {4, 8},
     {{{4, 0}, {4, 6}, {4, 10}}, {{8, 0}, {8, 2}, {8, 10}}},
     {false, false}},
    {"around a top, closed",
     {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {5, 5, 10}},
     {{0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {3, 0, 4}},
     8,
     {8},
     {{{6, 4}, {4, 4}, {4, 6}, {6, 6}}},
     {true}},
    {"none on level ground", {{0, 0, 5}, {10, 0, 5}, {0, 10, 5}}, {{0, 1, 2}}, 5, {}, {}, {}},
};

TEST(Contours, LinesOnTriangles) {
  for (const LineRow& row : line_rows) {
    std::vector<std::vector<Place>> lines;
    std::vector<bool> closed;
    std::vector<double> levels;
    for (const Contour& contour : contours_on(row.facets, points_at(row.points), row.step)) {
      lines.push_back(contour.line);
      closed.push_back(contour.is_closed);
      levels.push_back(contour.level);
    }
    EXPECT_EQ(lines, row.lines) << row.rule;
    EXPECT_EQ(closed, row.closed) << row.rule;
    EXPECT_EQ(levels, row.levels) << row.rule;
  }
}

Triangulation triangles_of(const Points& points) {
  return triangulation_of(points, boundary_of(points, "LINDERO"));
}

// z = 2x + 3y on a grid of points: on a plane every place of a contour has its level.
TEST(Contours, OnAPlaneEveryPlaceHasItsLevel) {
  std::vector<std::array<double, 3>> places;
  for (int x = 0; x < 12; ++x) {
    for (int y = 0; y < 9; ++y) places.push_back({x * 10.0, y * 10.0, 20.0 * x + 30.0 * y});
  }
  const Points points = points_at(places);
  const Contours contours = contours_of(points, triangles_of(points), 50.0);
  EXPECT_EQ(contours.points, 108U);
  EXPECT_EQ(contours.triangles, 2U * 11U * 8U);
  EXPECT_EQ(contours.lines.size(), 9U);
  for (const Contour& contour : contours.lines) {
    EXPECT_EQ(contour.is_index, std::fmod(contour.level, 250.0) == 0.0);
    for (const Place& place : contour.line) {
      EXPECT_NEAR(2 * place.x + 3 * place.y, contour.level, 1e-9);
    }
  }
}

// The notch of the boundary lies between 5, 4 and its right side.
TEST(Contours, TrianglesWithASideOutsideTheBoundaryStandApart) {
  Points points = points_at({{0, 0, 0}, {10, 0, 1}, {5, 4, 2}, {10, 10, 3}, {0, 10, 4}});
  for (SurveyPoint& point : points) point.code = "LINDERO";
  const Triangulation made = triangles_of(points);
  EXPECT_EQ(made.facets.size(), 3U);
  EXPECT_EQ(made.outside.size(), 1U);
}

TEST(Contours, PointsInOneSpotCountOnceTheFirst) {
  const Points points = points_at({{0, 0, 0}, {10, 0, 1}, {0, 10, 2}, {10, 0, 99}});
  const Triangulation made = triangles_of(points);
  ASSERT_EQ(made.facets.size(), 1U);
  EXPECT_EQ(made.points, 3U);
  for (const std::uint32_t i : made.facets[0]) EXPECT_NE(i, 3U);
}

TEST(Contours, OfManyPointsAPartMakesTheTriangles) {
  std::vector<std::array<double, 3>> places;
  for (int x = 0; x < 40; ++x) {
    for (int y = 0; y < 40; ++y) places.push_back({x * 1.0, y * 1.0, 0.0});
  }
  const Points points = points_at(places);
  const Triangulation made = triangulation_of(points, boundary_of(points, "LINDERO"), 200);
  EXPECT_LE(made.points, 200U);
  EXPECT_GT(made.points, 50U);
}

struct NoneRow {
  const char* rule;
  std::vector<std::array<double, 3>> points;
  const char* fault;
};

const NoneRow none_rows[] = {
    {"level", {{0, 0, 5}, {10, 0, 5}, {0, 10, 5}}, "the terrain is level"},
    {"elevations without digits left",
     {{0, 0, 1e300}, {10, 0, 1e300 * 1.0000000001}, {0, 10, 1e300}},
     "the terrain is level"},
    {"too far apart", {{0, 0, 0}, {1e150, 0, 1}, {0, 1e150, 2}}, "no triangles between the points"},
    {"too near", {{0, 0, 0}, {1e-9, 0, 1}, {0, 1e-9, 2}}, "no triangles between the points"},
};

TEST(Contours, WhereThereAreNone) {
  for (const NoneRow& row : none_rows) {
    const Points points = points_at(row.points);
    const Contours contours = contours_of(points, triangles_of(points), {});
    EXPECT_EQ(contours.fault, row.fault) << row.rule;
    EXPECT_TRUE(contours.lines.empty()) << row.rule;
  }
}

TEST(Contours, AStepThatGivesTooManyIsRefused) {
  const Points points = points_at({{0, 0, 0}, {10, 0, 500}, {0, 10, 0}});
  EXPECT_THROW(contours_of(points, triangles_of(points), 1.0), ChoiceFault);
}

}  // namespace
}  // namespace survey_report

#include "survey_report/triangle_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

namespace survey_report {
namespace {

using Points = std::vector<SurveyPoint>;

SurveyPoint at(double x, double y) { return {"1", x, y, 0, "", 1}; }

std::optional<Triangle> around(const Points& points, const Triangulation& made,
                               const Place& place) {
  std::optional<Triangle> found = TriangleIndex(points, made).around(place);
  if (found) std::sort(found->begin(), found->end());
  return found;
}

// ---- The rules, on given triangles

struct TriangleRow {
  const char* rule;
  Points points;
  std::vector<Facet> facets;
  std::optional<Triangle> triangle;  // in rising order
};

const TriangleRow triangle_rows[] = {
    {"the only one", {at(-1, -1), at(1, -1), at(0, 1)}, {{2, 0, 1}}, Triangle{0, 1, 2}},
    {"turned the other way", {at(-1, -1), at(1, -1), at(0, 1)}, {{1, 0, 2}}, Triangle{0, 1, 2}},
    {"none contains the place", {at(1, 1), at(2, 1), at(1, 2)}, {{0, 1, 2}}, std::nullopt},
    {"no triangles", {at(-1, -1), at(1, -1), at(0, 1)}, {}, std::nullopt},
    {"a sliver does not count", {at(-1, 0.01), at(1, 0.01), at(0, -0.01)}, {{0, 1, 2}}, {}},
    {"the place is a corner", {at(0, 0), at(1, 0), at(0, 1)}, {{0, 1, 2}}, Triangle{0, 1, 2}},
    {"on a side, the smaller of two",
     {at(-1, 0), at(1, 0), at(0, 5), at(0, -1)},
     {{0, 1, 2}, {0, 1, 3}},
     Triangle{0, 1, 3}},
};

TEST(TriangleIndex, TheTriangleAroundAPlace) {
  for (const TriangleRow& row : triangle_rows) {
    Triangulation made;
    made.facets = row.facets;
    EXPECT_EQ(around(row.points, made, {0, 0}), row.triangle) << row.rule;
  }
}

TEST(TriangleIndex, ThoseOutsideTheBoundaryCountToo) {
  const Points points = {at(-1, -1), at(1, -1), at(0, 1)};
  Triangulation made;
  made.outside = {{0, 1, 2}};
  EXPECT_TRUE(around(points, made, {0, 0}).has_value());
}

// ---- Against a look at all triangles

double cross(const Place& a, const Place& b) { return a.x * b.y - a.y * b.x; }

double apart(const Place& a, const Place& b) { return std::hypot(b.x - a.x, b.y - a.y); }

// The perimeter of the triangle, if it is around the place and no sliver.
std::optional<double> perimeter_around(const std::array<Place, 3>& corners) {
  const auto& [a, b, c] = corners;
  const std::array<double, 3> turns = {cross(a, b), cross(b, c), cross(c, a)};
  const auto [least, most] = std::minmax_element(turns.begin(), turns.end());
  if (*least < 0.0 && *most > 0.0) return std::nullopt;
  const double longest = std::max({apart(a, b), apart(b, c), apart(c, a)});
  const double twice = std::abs(turns[0] + turns[1] + turns[2]);
  if (twice / longest < 0.02 * longest) return std::nullopt;
  return apart(a, b) + apart(b, c) + apart(c, a);
}

std::optional<double> smallest_of_all(const Points& points, const std::vector<Facet>& facets,
                                      const Place& place) {
  std::optional<double> smallest;
  for (const Facet& facet : facets) {
    std::array<Place, 3> corners;
    for (std::size_t i = 0; i < 3; ++i) {
      corners[i] = {points[facet[i]].x - place.x, points[facet[i]].y - place.y};
    }
    const std::optional<double> perimeter = perimeter_around(corners);
    if (perimeter && (!smallest || *perimeter < *smallest)) smallest = perimeter;
  }
  return smallest;
}

double perimeter_of(const Points& points, const Triangle& triangle) {
  const auto place = [&](std::size_t i) {
    return Place{points[triangle[i]].x, points[triangle[i]].y};
  };
  return apart(place(0), place(1)) + apart(place(1), place(2)) + apart(place(2), place(0));
}

struct FieldRow {
  const char* rule;
  double width, height, round;  // coordinates are multiples of `round`
  int points;
};

const FieldRow field_rows[] = {
    {"a field", 100, 100, 0.001, 400},         {"many in one spot", 10, 10, 2, 300},
    {"along a road", 5000, 3, 0.01, 500},      {"three points", 50, 50, 1, 3},
    {"far from the origin", 1e6, 1e6, 1, 200},
};

Points field_of(const FieldRow& row, std::mt19937& numbers) {
  std::uniform_real_distribution<double> part(0.0, 1.0);
  Points points;
  for (int i = 0; i < row.points; ++i) {
    points.push_back(at(std::floor(part(numbers) * row.width / row.round) * row.round,
                        std::floor(part(numbers) * row.height / row.round) * row.round));
  }
  return points;
}

// Between its points triangles are long, and lie in many cells.
Points circle_of(int count) {
  Points points;
  for (int i = 0; i < count; ++i) {
    const double angle = 6.283185307179586 * i / count;
    points.push_back(at(1000.0 * std::cos(angle), 1000.0 * std::sin(angle)));
  }
  return points;
}

void expect_the_smallest(const char* rule, const Points& points, const Box& box,
                         std::mt19937& numbers) {
  Boundary hull = boundary_of(points, "LINDERO");
  const Triangulation made = triangulation_of(points, hull);
  ASSERT_FALSE(made.facets.empty()) << rule;
  const TriangleIndex index(points, made);
  std::uniform_real_distribution<double> x(box.x.min, box.x.max);
  std::uniform_real_distribution<double> y(box.y.min, box.y.max);
  for (int i = 0; i < 300; ++i) {
    const SurveyPoint& point = points[static_cast<std::size_t>(i) % points.size()];
    const Place place = i % 10 == 0 ? Place{point.x, point.y} : Place{x(numbers), y(numbers)};
    const std::optional<Triangle> found = index.around(place);
    const std::optional<double> wanted = smallest_of_all(points, made.facets, place);
    ASSERT_EQ(found.has_value(), wanted.has_value()) << rule << ' ' << place.x << ' ' << place.y;
    if (found) {
      EXPECT_NEAR(perimeter_of(points, *found), *wanted, 1e-6 * *wanted) << rule;
    }
  }
}

TEST(TriangleIndex, FindsWhatALookAtAllTrianglesFinds) {
  std::mt19937 numbers(5);
  for (const FieldRow& row : field_rows) {
    const Points points = field_of(row, numbers);
    const Box around{{-0.2 * row.width, 1.2 * row.width}, {-0.2 * row.height, 1.2 * row.height}};
    expect_the_smallest(row.rule, points, around, numbers);
  }
  expect_the_smallest("a circle", circle_of(500), {{-1200, 1200}, {-1200, 1200}}, numbers);
}

}  // namespace
}  // namespace survey_report

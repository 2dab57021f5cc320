#include "survey_report/point_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>

namespace survey_report {
namespace {

using Points = std::vector<SurveyPoint>;

// Every point is looked at.
std::vector<std::size_t> nearest_of_all(const Points& points, const Place& place,
                                        std::size_t count) {
  std::vector<std::pair<double, std::size_t>> all;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const auto same = [&](const auto& other) {
      return points[other.second].x == points[i].x && points[other.second].y == points[i].y;
    };
    if (std::any_of(all.begin(), all.end(), same)) continue;
    const double x = points[i].x - place.x;
    const double y = points[i].y - place.y;
    all.emplace_back(x * x + y * y, i);
  }
  std::sort(all.begin(), all.end());
  std::vector<std::size_t> nearest;
  for (const auto& [squared, i] : all) nearest.push_back(i);
  nearest.resize(std::min(nearest.size(), count));
  return nearest;
}

std::vector<std::size_t> places_of(const std::vector<Near>& nearest) {
  std::vector<std::size_t> places;
  for (const Near& near : nearest) places.push_back(near.index);
  return places;
}

struct FieldRow {
  const char* rule;
  double width, height, round;  // round: coordinates are its multiples, so that many coincide
  int points;
};

const FieldRow field_rows[] = {
    {"a field", 100, 100, 0.001, 400},      {"many in one spot", 10, 10, 2, 300},
    {"along a road", 5000, 3, 0.01, 500},   {"on a line", 100, 0, 0.5, 200},
    {"all in one spot", 0, 0, 1, 20},       {"fewer than asked for", 50, 50, 1, 5},
    {"far apart", 1e300, 1e300, 1e290, 60},
};

TEST(PointIndex, FindsWhatALookAtAllPointsFinds) {
  std::mt19937 numbers(3);
  std::uniform_real_distribution<double> part(0.0, 1.0);
  std::uniform_real_distribution<double> around(-0.5, 1.5);
  for (const FieldRow& row : field_rows) {
    Points points;
    for (int i = 0; i < row.points; ++i) {
      points.push_back({"1", std::floor(part(numbers) * row.width / row.round) * row.round,
                        std::floor(part(numbers) * row.height / row.round) * row.round, 0, "", 1});
    }
    const PointIndex index(points);
    for (int i = 0; i < 200; ++i) {
      const Place place{around(numbers) * row.width, around(numbers) * row.height};
      EXPECT_EQ(places_of(index.nearest(place, 12)), nearest_of_all(points, place, 12)) << row.rule;
    }
    const Place first{points[0].x, points[0].y};
    EXPECT_EQ(places_of(index.nearest(first, 3)), nearest_of_all(points, first, 3)) << row.rule;
  }
}

}  // namespace
}  // namespace survey_report

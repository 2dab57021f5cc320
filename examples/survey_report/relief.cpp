#include "survey_report/relief.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "orv2_geo/orv2_geo.hpp"
#include "survey_report/extremes.h"
#include "survey_report/rounding.h"

namespace survey_report {

namespace {

constexpr double nodes_a_side = 8.0;
constexpr double most_nodes_a_side = 64.0;

// ---- What the library says of a triangle

// The library measures a triangle with three different levels against
// elevation zero: the survey's lowest point is made that level.
std::optional<double> slope_of(const Triangle& triangle, const std::vector<SurveyPoint>& points,
                               double lowest) try {
  const SurveyPoint& a = points[triangle[0]];
  const SurveyPoint& b = points[triangle[1]];
  const SurveyPoint& c = points[triangle[2]];
  return orv2_geo::cgeo_Algorismos().Triangulo_pendiente(0.0, 0.0, a.z - lowest, b.x - a.x,
                                                         b.y - a.y, b.z - lowest, c.x - a.x,
                                                         c.y - a.y, c.z - lowest);
} catch (const orv2_geo::RunFailure&) {
  return std::nullopt;
}

// ---- Grids

double first_multiple(const Range& range, double step) { return std::ceil(range.min / step); }

double multiples_in(const Range& range, double step) {
  return std::floor(range.max / step) - first_multiple(range, step) + 1.0;
}

}  // namespace

double default_step(const Box& box) {
  const double width = box.x.max - box.x.min;
  const double height = box.y.max - box.y.min;
  const double square = std::sqrt(width) * std::sqrt(height) / nodes_a_side;
  return round_down(std::max(square, std::max(width, height) / most_nodes_a_side));
}

double node_count(const Box& box, double step) {
  return multiples_in(box.x, step) * multiples_in(box.y, step);
}

std::vector<Place> grid_places(const Box& box, double step) {
  std::vector<Place> places;
  const double columns = multiples_in(box.x, step);
  const double rows = multiples_in(box.y, step);
  for (double row = 0.0; row < rows; ++row) {
    for (double column = 0.0; column < columns; ++column) {
      places.push_back({(first_multiple(box.x, step) + column) * step,
                        (first_multiple(box.y, step) + row) * step});
    }
  }
  return places;
}

double elevation_at(const Place& place, Triangle triangle, const std::vector<SurveyPoint>& points) {
  // The library looks from the first vertex through the node at the opposite
  // side, so the first is the farthest: never the node itself.
  const auto squared = [&](std::size_t i) {
    return std::pow(points[i].x - place.x, 2) + std::pow(points[i].y - place.y, 2);
  };
  std::sort(triangle.begin(), triangle.end(),
            [&](std::size_t a, std::size_t b) { return squared(a) > squared(b); });
  const SurveyPoint& a = points[triangle[0]];
  const SurveyPoint& b = points[triangle[1]];
  const SurveyPoint& c = points[triangle[2]];
  return orv2_geo::cgeo_Algorismos().Triangulo_Cota_1p_interior(
      a.x - place.x, a.y - place.y, a.z, b.x - place.x, b.y - place.y, b.z, c.x - place.x,
      c.y - place.y, c.z, 0.0, 0.0);
}

Relief relief_of(const TriangleIndex& terrain, const Boundary& boundary, double step) {
  Relief relief{step, {}};
  const std::vector<SurveyPoint>& points = terrain.points();
  const double lowest = extents_of(points).z.min;
  for (const Place& place : grid_places(box_of(boundary.vertices), step)) {
    if (!contains(boundary, place)) continue;
    const std::optional<Triangle> triangle = terrain.around(place);
    if (!triangle) continue;
    relief.nodes.push_back({place, *triangle, elevation_at(place, *triangle, points),
                            slope_of(*triangle, points, lowest)});
  }
  return relief;
}

ReliefSummary summary_of(const Relief& relief) {
  const double first = relief.nodes.front().elevation;
  ReliefSummary summary{first, first, 0.0, std::nullopt};
  double slopes = 0.0;
  double slope_sum = 0.0;
  for (const Node& node : relief.nodes) {
    summary.lowest = std::min(summary.lowest, node.elevation);
    summary.highest = std::max(summary.highest, node.elevation);
    summary.mean += node.elevation / static_cast<double>(relief.nodes.size());
    if (!node.slope) continue;
    slope_sum += *node.slope;
    ++slopes;
  }
  if (slopes > 0.0 && std::isfinite(slope_sum)) summary.mean_slope = slope_sum / slopes;
  return summary;
}

}  // namespace survey_report

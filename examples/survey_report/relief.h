// relief.h: elevations and slopes at the nodes of a grid.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "survey_report/boundary.h"
#include "survey_report/points.h"
#include "survey_report/triangle_index.h"

namespace survey_report {

struct Node {
  Place place;
  Triangle triangle{};
  double elevation = 0.0;
  /// In percent, of the triangle, its elevations counted from the lowest of
  /// the survey. Nothing when the library gives none.
  std::optional<double> slope;
};

struct Relief {
  double step = 0.0;  ///< 0: no grid
  std::vector<Node> nodes;
};

/// What the nodes, of which there is at least one, have in common.
struct ReliefSummary {
  double lowest = 0.0;
  double highest = 0.0;
  double mean = 0.0;
  std::optional<double> mean_slope;  ///< of the nodes that have a slope
};

/// A round step that gives about 8 by 8 nodes, rather more than fewer, as those
/// outside the boundary are left out. The box has a size.
double default_step(const Box& box);

/// How many nodes a grid has at most: a finer one is not computed.
constexpr double most_nodes = 40000.0;

/// The nodes that a step gives in the box, those outside the boundary included.
double node_count(const Box& box, double step);

/// The multiples of `step` in the box, from south to north and in each row from
/// west to east.
std::vector<Place> grid_places(const Box& box, double step);

/// The elevation at a place of the triangle around it. Throws RunFailure when the
/// library refuses it.
double elevation_at(const Place& place, Triangle triangle, const std::vector<SurveyPoint>& points);

/// The nodes inside the boundary that have a triangle.
/// Throws RunFailure when the library refuses an elevation.
Relief relief_of(const TriangleIndex& terrain, const Boundary& boundary, double step);

ReliefSummary summary_of(const Relief& relief);

}  // namespace survey_report

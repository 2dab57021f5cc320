// profile.h: the terrain along the section line, and its elevations at stations.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "survey_report/boundary.h"
#include "survey_report/points.h"
#include "survey_report/triangle_index.h"

namespace survey_report {

/// How many points the terrain has at most: the nearest to the axis.
constexpr std::size_t most_terrain_points = 500;

/// How many stations a profile has at most.
constexpr double most_stations = 400.0;

struct ProfilePoint {
  double distance = 0.0;  ///< along the axis, from its start
  double elevation = 0.0;
  std::size_t point = 0;  ///< the survey's point beside the axis there, by its place
};

struct Station {
  Place place;
  double distance = 0.0;
  double elevation = 0.0;
};

struct Profile {
  double corridor = 0.0;  ///< how far from the axis a point may lie, to either side

  /// Two or more, in order of distance, or none: there is no profile then.
  std::vector<ProfilePoint> terrain;
  double widest_gap = 0.0;  ///< between two neighbours of the terrain
  double lowest = 0.0;
  double highest = 0.0;

  double step = 0.0;
  /// Both ends of the terrain, and the multiples of `step` between them.
  std::vector<Station> stations;

  /// Why there is no profile, where the library refused a number; else empty.
  std::string fault;
};

/// Half of the grid's default step. The box has a size.
double default_corridor(const Box& box);

/// A round step that gives 8 to 20 stations on a positive length.
double default_station_step(double length);

/// The terrain has a point at the foot on the axis of every survey point that
/// lies within the corridor and beside the axis, not beyond an end. A point on
/// the axis, to 1/5000 of its length, keeps its own elevation. For any other,
/// what counts is the elevation at the foot: that of the triangle around it;
/// where that is outside the boundary or there is no triangle, the point is
/// left out. Feet of equal distance and elevation are one; of equal distance
/// alone, a vertical step. Stations are interpolated along the terrain, never
/// beyond it; `step` is positive, or left out for the default.
/// Throws ChoiceFault when the step gives too many stations.
Profile profile_of(const TriangleIndex& triangles, const Boundary& boundary, const Section& axis,
                   double corridor, const std::optional<double>& step);

}  // namespace survey_report

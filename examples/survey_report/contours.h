// contours.h: contour lines of the terrain.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "survey_report/boundary.h"
#include "survey_report/points.h"
#include "survey_report/triangulation.h"

namespace survey_report {

/// More levels are not drawn.
constexpr double most_levels = 400.0;

/// Every fifth level is one of index contours.
constexpr double levels_an_index = 5.0;

/// A line at one elevation.
struct Contour {
  double level = 0.0;
  bool is_index = false;
  bool is_closed = false;  ///< its last place is joined to the first
  std::vector<Place> line;
};

struct Contours {
  double step = 0.0;           ///< between two levels; 0: there are none
  std::vector<Contour> lines;  ///< from the lowest to the highest
  std::size_t triangles = 0;
  std::size_t points = 0;    ///< that make the triangles
  std::size_t left_out = 0;  ///< triangles with a side outside the boundary
  std::string fault;         ///< why there are none; else empty
};

/// A round step that gives about 10 to 20 levels. The range has a size.
double default_contour_step(const Range& elevations);

/// The contours on the triangles inside the boundary, straight in each. Throws ChoiceFault when
/// the user's step gives too many.
Contours contours_of(const std::vector<SurveyPoint>& points, const Triangulation& made,
                     const std::optional<double>& step);

/// The same on given triangles, without their figures.
std::vector<Contour> contours_on(const std::vector<Facet>& facets,
                                 const std::vector<SurveyPoint>& points, double step);

}  // namespace survey_report

// extremes.h: the smallest and largest coordinates, and the points that hold them.
#pragma once

#include <cstddef>
#include <vector>

#include "survey_report/points.h"

namespace survey_report {

struct Extents {
  Range x;
  Range y;
  Range z;
};

/// The box around the points, of which there is at least one.
Extents extents_of(const std::vector<SurveyPoint>& points);

/// Shows the box in the library's dialog, each extreme with the place in the
/// survey, from 1, of the point that holds it. Of a single point nothing is shown.
void show_extremes(const std::vector<SurveyPoint>& points);

/// The first point, by its place from 0, with that coordinate, which one has.
std::size_t holder_of(const std::vector<SurveyPoint>& points, double SurveyPoint::*axis,
                      double value);

}  // namespace survey_report

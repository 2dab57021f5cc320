#include "survey_report/extremes.h"

#include <algorithm>
#include <iterator>

#include "orv2_geo/orv2_geo.hpp"
#include "survey_report/point_arrays.h"

namespace survey_report {

namespace {

Extents extremes_of(const std::vector<SurveyPoint>& points, bool shown) {
  const PointArrays arrays(points);
  Extents extents;
  orv2_geo::cgeo_Matrices().MaxMin_3Matriz(arrays.x, arrays.y, arrays.z, extents.x.max,
                                           extents.x.min, extents.y.max, extents.y.min,
                                           extents.z.max, extents.z.min, shown);
  return extents;
}

}  // namespace

Extents extents_of(const std::vector<SurveyPoint>& points) { return extremes_of(points, false); }

void show_extremes(const std::vector<SurveyPoint>& points) { extremes_of(points, true); }

std::size_t holder_of(const std::vector<SurveyPoint>& points, double SurveyPoint::*axis,
                      double value) {
  const auto holds = [&](const SurveyPoint& point) { return point.*axis == value; };
  return static_cast<std::size_t>(
      std::distance(points.begin(), std::find_if(points.begin(), points.end(), holds)));
}

}  // namespace survey_report

// point_arrays.h: the points of a survey as the library takes them.
#pragma once

#include <cstdint>
#include <vector>

#include "orv2_geo/frame/geo_arrays.h"
#include "survey_report/points.h"

namespace survey_report {

/// The coordinates in three arrays, numbered from 1 in the order of the survey.
struct PointArrays {
  explicit PointArrays(const std::vector<SurveyPoint>& points);

  std::int32_t count;
  orv2_geo::DoubleArray x;
  orv2_geo::DoubleArray y;
  orv2_geo::DoubleArray z;
};

}  // namespace survey_report

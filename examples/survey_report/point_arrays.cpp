#include "survey_report/point_arrays.h"

namespace survey_report {

PointArrays::PointArrays(const std::vector<SurveyPoint>& points)
    : count(static_cast<std::int32_t>(points.size())), x(0, count), y(0, count), z(0, count) {
  std::int32_t i = 0;
  for (const SurveyPoint& point : points) {
    ++i;
    x(i) = point.x;
    y(i) = point.y;
    z(i) = point.z;
  }
}

}  // namespace survey_report

// point_index.h: the points of a survey by where they lie.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "survey_report/boundary.h"
#include "survey_report/points.h"

namespace survey_report {

/// A point seen from a place: small numbers keep digits.
struct Near {
  std::size_t index = 0;  ///< its place in the survey
  double x = 0.0;
  double y = 0.0;
  double squared = 0.0;  ///< of the distance
};

/// Finds the points near a place without a look at all of them.
class PointIndex {
 public:
  /// The points, of which there is at least one, must outlive this.
  explicit PointIndex(const std::vector<SurveyPoint>& points);

  const std::vector<SurveyPoint>& points() const { return points_; }

  /// So many of the nearest points, the nearest first; of equally near ones, and of points in
  /// one spot, the first of the survey. Points in one spot count once.
  std::vector<Near> nearest(const Place& place, std::size_t count) const;

 private:
  std::size_t column_of(double x) const;
  std::size_t row_of(double y) const;

  const std::vector<SurveyPoint>& points_;
  Place corner_;
  double side_ = 0.0;  // of a cell
  std::size_t columns_ = 1;
  std::size_t rows_ = 1;
  std::vector<std::uint32_t> starts_;  // where each cell's points start in members_
  std::vector<std::uint32_t> members_;
};

}  // namespace survey_report

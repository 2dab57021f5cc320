// traverse.h: the way from each point of a survey to the next.
#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "survey_report/points.h"

namespace survey_report {

/// The way from one point to the next, in plan.
struct Leg {
  /// In gon, 400 to the circle: 0 along +Y, clockwise. Nothing when the two
  /// points have the same X and Y.
  std::optional<double> azimuth;
  double distance = 0.0;
};

struct Traverse {
  std::vector<Leg> legs;  ///< legs[i] leads from point i to point i + 1
  double length = 0.0;    ///< the sum of the distances
};

/// A leg that cannot be computed. The message names its two points.
class LegFault : public std::runtime_error {
 public:
  LegFault(const std::string& what, std::size_t line) : std::runtime_error(what), line_(line) {}

  /// The line in the file of the point where the leg ends.
  std::size_t line() const noexcept { return line_; }

 private:
  std::size_t line_;
};

/// The traverse through the points in the order of the file.
/// Throws LegFault when the library refuses a leg or a length has no number.
Traverse traverse_through(const std::vector<SurveyPoint>& points);

}  // namespace survey_report

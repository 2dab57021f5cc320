// study.h: what is worked out from a survey, for the report and the plan alike.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>

#include "survey_report/boundary.h"
#include "survey_report/relief.h"

namespace survey_report {

/// What the user may choose.
struct StudyOptions {
  std::string boundary_code = "LINDERO";
  std::optional<SectionLine> section;  ///< else across the boundary's box
  std::optional<double> grid_step;     ///< positive; else a round one
};

/// A grid step that gives too many nodes; the message says how many may be.
class GridFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Study {
  Boundary boundary;  ///< without vertices there is nothing else
  double perimeter = 0.0;
  Section section;
  Relief relief;
  /// Why nothing but the boundary is known, where the library refused a
  /// computation or a length has no number; else empty.
  std::string fault;

  bool complete() const { return fault.empty() && !boundary.vertices.empty(); }
};

/// Throws GridFault.
Study study_of(const std::vector<SurveyPoint>& points, const StudyOptions& options);

}  // namespace survey_report

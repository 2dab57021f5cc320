// study.h: what is worked out from a survey, for the report and the drawings alike.
#pragma once

#include <optional>
#include <string>

#include "survey_report/area.h"
#include "survey_report/boundary.h"
#include "survey_report/choice_fault.h"
#include "survey_report/contours.h"
#include "survey_report/profile.h"
#include "survey_report/relief.h"
#include "survey_report/repeats.h"

namespace survey_report {

/// What the user may choose.
struct StudyOptions {
  std::string boundary_code = "LINDERO";
  std::optional<SectionLine> section;  ///< else across the boundary's box
  std::optional<double> grid_step;     ///< positive; else a round one
  std::optional<double> corridor;      ///< positive; to either side of the section line
  std::optional<double> station_step;  ///< positive; else a round one
  std::optional<double> repeats;       ///< positive; how near repeated points are
  std::optional<double> contour_step;  ///< positive; else a round one
  AreaChoice area;
};

struct Study {
  Repeats repeats;
  WorkArea area;
  Boundary boundary;  ///< without vertices there is nothing else but an area and repeats
  double perimeter = 0.0;
  Section section;
  Relief relief;
  Profile profile;
  Contours contours;
  /// Why nothing but boundary, area and repeats is known, where the library refused a
  /// computation or a length has no number; else empty.
  std::string fault;

  bool complete() const { return fault.empty() && !boundary.vertices.empty(); }
};

/// Throws ChoiceFault.
Study study_of(const std::vector<SurveyPoint>& points, const StudyOptions& options,
               Progress& progress = unseen_progress());

}  // namespace survey_report

// profile_drawing.h: the drawing of a longitudinal profile.
#pragma once

#include <string>

#include "survey_report/report.h"
#include "survey_report/sheet.h"

namespace survey_report {

/// How the heights of a profile are drawn.
struct ProfileHeights {
  double exaggeration = 1.0;  ///< elevations are drawn so many times as large as distances
  double level_step = 1.0;    ///< between the levels that are written at the side
  double datum = 0.0;         ///< one of them, a little below the terrain
};

/// For distances at that scale and elevations that have `room` millimetres, where
/// a unit of the survey has `millimetres`: the largest exaggeration of 1, 2, 5,
/// ..., 100 that has room and leaves the scale of the elevations a round one, if
/// that of the distances is. Terrain that is level is not exaggerated.
ProfileHeights profile_heights(double scale, const Range& elevations, double room,
                               double millimetres);

/// A drawing at round scales, as SVG in millimetres of the sheet. Throws
/// DrawingFault when the study has no profile, and ChoiceFault where the scale of
/// the user does not fit.
Drawing profile_drawing_of(const Survey& survey, const Study& study,
                           const DrawingOptions& options = {});

}  // namespace survey_report

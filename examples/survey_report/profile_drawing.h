// profile_drawing.h: the drawing of a longitudinal profile.
#pragma once

#include <string>

#include "survey_report/report.h"
#include "survey_report/sheet.h"

namespace survey_report {

/// How the heights of a profile are drawn.
struct ProfileScale {
  double across = 1.0;        ///< millimetres for one unit of distance
  double exaggeration = 1.0;  ///< elevations are drawn so many times as large
  double level_step = 1.0;    ///< between the levels that are written at the side
  double datum = 0.0;         ///< one of them, a little below the terrain

  double up() const { return across * exaggeration; }
};

/// For a terrain of that length, which is positive, with those elevations: as
/// long as the drawing has room, and the largest of 1, 2, 5, ..., 100 that has
/// room in height. Terrain that is too high even without exaggeration becomes
/// shorter; terrain that is level is not exaggerated.
/// Throws DrawingFault when there is no finite scale.
ProfileScale profile_scale(double length, const Range& elevations);

/// A drawing on a sheet of A4, as SVG. Throws DrawingFault when the study has no
/// profile.
std::string profile_drawing_of(const Survey& survey, const Study& study);

}  // namespace survey_report

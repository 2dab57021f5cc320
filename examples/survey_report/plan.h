// plan.h: the plan drawing of a survey.
#pragma once

#include <string>

#include "survey_report/report.h"
#include "survey_report/sheet.h"

namespace survey_report {

/// The length of a scale bar: the longest round one that takes at most 50 mm
/// where one unit of the survey takes `scale` millimetres.
double scale_bar_length(double scale);

/// A drawing at a round scale, as SVG in millimetres of the sheet. Of a large survey it shows
/// so many points as can be told apart, and says how many. Throws DrawingFault, and
/// ChoiceFault where the scale of the user does not fit.
Drawing plan_of(const Survey& survey, const Study& study, const DrawingOptions& options = {});

}  // namespace survey_report

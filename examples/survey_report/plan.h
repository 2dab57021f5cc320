// plan.h: the plan drawing of a survey.
#pragma once

#include <string>

#include "survey_report/report.h"
#include "survey_report/sheet.h"

namespace survey_report {

/// The length of a scale bar: the longest round one that takes at most 46 mm
/// where one unit of the survey takes `scale` millimetres.
double scale_bar_length(double scale);

/// A drawing on a sheet of A4, as SVG. Throws DrawingFault.
std::string plan_of(const Survey& survey, const Study& study);

}  // namespace survey_report

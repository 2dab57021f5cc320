// stages.h: the stages of a run, each with the part of the whole that is done with it.
#pragma once

#include "survey_report/progress.h"
#include "survey_report/words.h"

namespace survey_report::stages {

inline constexpr Stage reading{words::reading, 0.15};
inline constexpr Stage boundary{words::finding_boundary, 0.17};
inline constexpr Stage repeats{words::finding_repeats, 0.32};
inline constexpr Stage area{words::finding_inside, 0.35};
inline constexpr Stage contours{words::computing_contours, 0.45};
inline constexpr Stage relief{words::computing_relief, 0.49};
inline constexpr Stage profile{words::computing_profile, 0.53};
inline constexpr Stage traverse{words::computing_traverse, 0.57};
inline constexpr Stage drawing{words::drawing, 0.65};
inline constexpr Stage dxf{words::writing_dxf, 0.75};
inline constexpr Stage tables{words::writing_tables, 0.85};
inline constexpr Stage report{words::writing_report, 1.0};

}  // namespace survey_report::stages

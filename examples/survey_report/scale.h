// scale.h: the scales of drawings, as a scale ruler has them.
#pragma once

#include <string>

namespace survey_report {

/// A scale of 1:n is written here as its n, below 1 where a drawing enlarges:
/// 500 is 1:500, 0.05 is 20:1.

/// The round scale that is nearest to `at_least`, which is positive and finite,
/// and not below it: 1, 2 or 5 with zeros, from 25 on 2.5 with zeros too.
double round_scale(double at_least);

/// Whether a scale is one of them.
bool is_round_scale(double scale);

/// "1:500", "20:1"; of very large ones six digits and the power of ten.
std::string scale_text(double scale);

}  // namespace survey_report

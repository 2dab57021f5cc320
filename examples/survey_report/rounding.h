// rounding.h: round lengths, 1, 2 or 5 with zeros, for grids, ticks and scale bars.
#pragma once

#include <vector>

#include "survey_report/points.h"

namespace survey_report {

/// The largest of ..., 0.5, 1, 2, 5, 10, 20, ... that is at most `value`, which
/// is positive and finite.
double round_down(double value);

/// The one of them that is nearest to `value` as a ratio.
double round_near(double value);

/// The largest power of ten that is at most `value`, which is positive and finite.
double decade_of(double value);

/// The decimals that multiples of `step` need, at most 9.
int decimals_for(double step);

/// The multiples of `step` in a range: at most a few hundred.
std::vector<double> multiples(const Range& range, double step);

}  // namespace survey_report

#include "survey_report/rounding.h"

#include <algorithm>
#include <cmath>

namespace survey_report {

namespace {

constexpr double most_multiples = 500.0;

}  // namespace

double decade_of(double value) {
  const double exponent = std::floor(std::log10(value));
  const double decade = std::pow(10.0, exponent);
  if (decade > value) return std::pow(10.0, exponent - 1);
  const double next = std::pow(10.0, exponent + 1);
  return next <= value ? next : decade;
}

double round_down(double value) {
  const double decade = decade_of(value);
  if (5.0 * decade <= value) return 5.0 * decade;
  return 2.0 * decade <= value ? 2.0 * decade : decade;
}

double round_near(double value) {
  const double below = round_down(value);
  const double decade = decade_of(below);
  const double above = below < 2.0 * decade   ? 2.0 * decade
                       : below < 5.0 * decade ? 5.0 * decade
                                              : 10.0 * decade;
  return value / below <= above / value ? below : above;
}

int decimals_for(double step) {
  constexpr int most = 9;
  for (int decimals = 0; decimals < most; ++decimals) {
    const double scaled = step * std::pow(10.0, decimals);
    if (std::abs(scaled - std::round(scaled)) <= 1e-6 * scaled) return decimals;
  }
  return most;
}

std::vector<double> multiples(const Range& range, double step) {
  std::vector<double> values;
  const double first = std::ceil(range.min / step);
  const double count = std::min(std::floor(range.max / step) - first + 1.0, most_multiples);
  for (double i = 0.0; i < count; ++i) values.push_back((first + i) * step);
  return values;
}

}  // namespace survey_report

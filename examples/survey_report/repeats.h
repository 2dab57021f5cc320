// repeats.h: points that were measured more than once.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "survey_report/points.h"

namespace survey_report {

/// How near two points are when nothing else is said.
constexpr double default_tolerance = 0.02;

/// More pairs are not listed.
constexpr std::size_t most_pairs = 10000;

/// Two points on nearly the same spot, by their places in the survey from 0, the
/// earlier one first.
struct RepeatedPair {
  std::size_t first = 0;
  std::size_t second = 0;
  double distance = 0.0;  ///< in plan
  double rise = 0.0;      ///< from the first to the second; infinite past every double

  bool operator==(const RepeatedPair&) const = default;
};

struct Repeats {
  double tolerance = 0.0;
  /// Every two points that are nearer than the tolerance in X and nearer in Y, in
  /// the order of the survey; none where there are more than most_pairs.
  std::vector<RepeatedPair> pairs;
  bool too_many_pairs = false;
  /// What the library's removal leaves, by places in the survey, in its order; none at a fault. Of
  /// neighbours in the order of X that are near the first of them the highest
  /// stays; a pair that another point parts in that order is not seen.
  std::vector<std::size_t> kept;
  std::string fault;  ///< why nothing was removed; else empty

  bool keeps(std::size_t place) const {
    return std::binary_search(kept.begin(), kept.end(), place);
  }
};

/// The library tells `progress` how far it is.
Repeats repeats_of(const std::vector<SurveyPoint>& points, double tolerance,
                   Progress& progress = unseen_progress());

std::vector<SurveyPoint> kept_points(const std::vector<SurveyPoint>& points,
                                     const Repeats& repeats);

/// What came of the library's dialog, in which the user removes repeated points.
struct DialogRemoval {
  bool confirmed = false;         ///< without it there is nothing else
  std::vector<SurveyPoint> kept;  ///< in the order of the survey; their lines are 0
  /// For each point of the survey the place in `kept` of the one that stands for it.
  std::vector<std::size_t> stands_for;
};

/// Opens the dialog and waits until the user has left it. Without a screen the
/// library says so on standard error and the dialog is cancelled.
/// Throws RunFailure.
DialogRemoval remove_in_dialog(const std::vector<SurveyPoint>& points);

}  // namespace survey_report

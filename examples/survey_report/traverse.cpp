#include "survey_report/traverse.h"

#include <cmath>

#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/orv2_geo.hpp"
#include "survey_report/failure_words.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

std::string between(const SurveyPoint& from, const SurveyPoint& to, const Word& what) {
  return words::between_points.with({from.number, to.number, what.view()});
}

double azimuth_of(double dx, double dy) {
  double azimuth = 0.0;
  orv2_geo::cgeo_Algorismos().Azimut(dx, dy, azimuth);
  return azimuth;
}

Leg leg_between(const SurveyPoint& from, const SurveyPoint& to) try {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  Leg leg;
  leg.distance = std::hypot(dx, dy);
  if (!std::isfinite(leg.distance)) {
    throw LegFault(between(from, to, words::too_far_apart), to.line);
  }
  const bool same_spot = dx == 0.0 && dy == 0.0;
  if (!same_spot) leg.azimuth = azimuth_of(dx, dy);
  return leg;
} catch (const orv2_geo::RunFailure& failure) {
  throw LegFault(words::azimuth_between.with({from.number, to.number, words_of(failure)}), to.line);
}

}  // namespace

Traverse traverse_through(const std::vector<SurveyPoint>& points) {
  Traverse traverse;
  for (std::size_t i = 1; i < points.size(); ++i) {
    traverse.legs.push_back(leg_between(points[i - 1], points[i]));
    traverse.length += traverse.legs.back().distance;
    if (!std::isfinite(traverse.length)) {
      throw LegFault(between(points[i - 1], points[i], words::traverse_too_long), points[i].line);
    }
  }
  return traverse;
}

}  // namespace survey_report

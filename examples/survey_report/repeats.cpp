#include "survey_report/repeats.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory_resource>
#include <set>
#include <span>
#include <stdexcept>
#include <string_view>
#include <tuple>
#include <utility>

#include "orv2_geo/orv2_geo.hpp"
#include "survey_report/failure_words.h"
#include "survey_report/point_arrays.h"
#include "survey_report/progress_indicator.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

using Points = std::vector<SurveyPoint>;
using Places = std::vector<std::size_t>;

// ---- Pairs

bool near(double anchor, double value, double tolerance) {
  return anchor - tolerance < value && value < anchor + tolerance;
}

RepeatedPair pair_of(const Points& points, std::size_t a, std::size_t b) {
  const auto [first, second] = std::minmax(a, b);
  const SurveyPoint& from = points[first];
  const SurveyPoint& to = points[second];
  return {first, second, std::hypot(to.x - from.x, to.y - from.y), to.z - from.z};
}

// A point, and where it stands in the survey.
struct InX {
  double x;
  std::uint32_t place;
};

std::vector<InX> from_west_to_east(const Points& points) {
  std::vector<InX> order(points.size());
  for (std::size_t i = 0; i < points.size(); ++i) {
    order[i] = {points[i].x, static_cast<std::uint32_t>(i)};
  }
  std::sort(order.begin(), order.end(), [](const InX& a, const InX& b) {
    return std::tie(a.x, a.place) < std::tie(b.x, b.place);
  });
  return order;
}

// Walks the points eastwards. Those behind that are still near in X stand in a
// strip, by their Y, so that no more of them are looked at than may be near.
class PairSearch {
 public:
  PairSearch(const Points& points, double tolerance)
      : points_(points), tolerance_(tolerance), order_(from_west_to_east(points)) {}

  std::vector<RepeatedPair> take_pairs(std::size_t most) {
    for (const auto& [x, place] : order_) {
      if (pairs_.size() > most) break;
      leave_behind(x);
      meet(place);
      strip_.emplace(points_[place].y, place);
    }
    std::sort(pairs_.begin(), pairs_.end(), [](const RepeatedPair& a, const RepeatedPair& b) {
      return std::tie(a.first, a.second) < std::tie(b.first, b.second);
    });
    return std::move(pairs_);
  }

 private:
  void leave_behind(double x) {
    while (!strip_.empty() && !(x < order_[west_].x + tolerance_)) {
      strip_.erase({points_[order_[west_].place].y, order_[west_].place});
      ++west_;
    }
  }

  void meet(std::size_t place) {
    const SurveyPoint& point = points_[place];
    const double room = 2.0 * tolerance_;  // whatever rounding does, all that are near are inside
    for (auto other = strip_.lower_bound({point.y - room, 0});
         other != strip_.end() && other->first <= point.y + room; ++other) {
      const SurveyPoint& anchor = points_[other->second];
      if (near(anchor.x, point.x, tolerance_) && near(anchor.y, point.y, tolerance_)) {
        pairs_.push_back(pair_of(points_, other->second, place));
      }
    }
  }

  const Points& points_;
  double tolerance_;
  std::vector<InX> order_;
  std::size_t west_ = 0;  // of the strip's points the westernmost, by its place in order_
  std::pmr::unsynchronized_pool_resource pool_;
  std::pmr::set<std::pair<double, std::size_t>> strip_{&pool_};
  std::vector<RepeatedPair> pairs_;
};

// ---- The library's removal

Places kept_of(const Points& points, double tolerance, Progress& shown) {
  const PointArrays arrays(points);
  std::int32_t count = arrays.count;
  orv2_geo::LongArray numbers(0, count);
  for (std::int32_t i = 1; i <= count; ++i) numbers(i) = i;
  const orv2_geo::ObjectRef progress(new ProgressIndicator(shown));
  orv2_geo::cgeo_Matrices().Quita_Puntos_Repetidos_XYZ_con_indice1(
      count, arrays.x, arrays.y, arrays.z, numbers, progress, tolerance, false);
  if (count < 1) throw std::range_error(words::search_failed.text());
  std::vector<bool> stays(points.size());
  for (std::int32_t i = 1; i <= count; ++i) stays[static_cast<std::size_t>(numbers(i)) - 1] = true;
  Places kept;
  kept.reserve(static_cast<std::size_t>(count));
  for (std::size_t i = 0; i < stays.size(); ++i) {
    if (stays[i]) kept.push_back(i);
  }
  return kept;
}

// ---- The library's dialog

struct DialogArrays : PointArrays {
  explicit DialogArrays(const Points& points)
      : PointArrays(points), codes(0, count), numbers(0, count), layers(0, count) {
    std::int32_t i = 0;
    for (const SurveyPoint& point : points) {
      ++i;
      codes(i) = orv2_geo::Text::from_utf8(point.code);
      numbers(i) = orv2_geo::Text::from_utf8(point.number);
    }
  }

  // The number of points that stay.
  std::int32_t show() {
    std::int32_t left = count;
    double not_used = 0.0;  // the tolerance is the one typed in the dialog
    orv2_geo::cgeo_Matrices().Quita_Pts_Repetidos(left, x, y, z, codes, numbers, layers,
                                                  new_numbers, true, not_used);
    return left;
  }

  SurveyPoint point(std::int32_t i) const {
    return {numbers(i).to_utf8(), x(i), y(i), z(i), codes(i).to_utf8(), 0};
  }

  orv2_geo::StringArray codes;
  orv2_geo::StringArray numbers;
  orv2_geo::ShortArray layers;      // a survey has none
  orv2_geo::LongArray new_numbers;  // without storage unless the user removed points
};

}  // namespace

Repeats repeats_of(const Points& points, double tolerance, Progress& progress) {
  Repeats repeats;
  repeats.tolerance = tolerance;
  repeats.pairs = PairSearch(points, tolerance).take_pairs(most_pairs);
  repeats.too_many_pairs = repeats.pairs.size() > most_pairs;
  if (repeats.too_many_pairs) repeats.pairs.clear();
  try {
    repeats.kept = kept_of(points, tolerance, progress);
  } catch (const orv2_geo::RunFailure& failure) {
    repeats.fault = words_of(failure);
  } catch (const std::range_error& fault) {
    repeats.fault = fault.what();
  }
  return repeats;
}

Points kept_points(const Points& points, const Repeats& repeats) {
  Points kept;
  for (const std::size_t place : repeats.kept) kept.push_back(points[place]);
  return kept;
}

DialogRemoval remove_in_dialog(const Points& points) {
  DialogArrays arrays(points);
  const std::int32_t count = arrays.show();
  if (count < 1 || !arrays.new_numbers.allocated()) return {};
  DialogRemoval removal{true, {}, {}};
  for (std::int32_t i = 1; i <= count; ++i) removal.kept.push_back(arrays.point(i));
  for (std::size_t i = 1; i <= points.size(); ++i) {
    const std::int32_t number = arrays.new_numbers(static_cast<std::int32_t>(i));
    removal.stands_for.push_back(static_cast<std::size_t>(number) - 1);
  }
  return removal;
}

}  // namespace survey_report

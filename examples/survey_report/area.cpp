#include "survey_report/area.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <stdexcept>

#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/orv2_geo.hpp"
#include "survey_report/choice_fault.h"
#include "survey_report/failure_words.h"
#include "survey_report/layout.h"
#include "survey_report/utf8.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

// The library's lattice is 32 bits of hundredths.
constexpr double largest_area = 21474836.0;
constexpr double margin = 1.0;  // beyond the area's box nothing can be inside
constexpr double first_quarter = 0.25;
constexpr double last_quarter = 0.75;

std::vector<Place> middle_of(const Box& box) {
  const auto part_of = [](const Range& range) {
    return Range{std::lerp(range.min, range.max, first_quarter),
                 std::lerp(range.min, range.max, last_quarter)};
  };
  const Range x = part_of(box.x);
  const Range y = part_of(box.y);
  return {{x.min, y.min}, {x.max, y.min}, {x.max, y.max}, {x.min, y.max}};
}

WorkArea chosen(const std::vector<SurveyPoint>& points, const Boundary& boundary,
                const AreaChoice& choice) {
  if (!choice.vertices.empty()) return {words::as_given.text(), choice.vertices, {}, {}};
  if (choice.code) {
    const std::string origin =
        words::points_with_code.with({words::points.view(), without_controls(*choice.code)});
    const std::vector<Place> ring = ring_through(places_coded(points, *choice.code));
    if (ring.size() >= fewest_vertices) return {origin, ring, {}, {}};
    throw ChoiceFault(words::area_code_too_few.text());
  }
  if (boundary.vertices.empty()) return {};
  return {words::middle_half.text(), middle_of(box_of(boundary.vertices)), {}, {}};
}

bool is_near(const SurveyPoint& point, const Box& box) {
  return point.x >= box.x.min - margin && point.x <= box.x.max + margin &&
         point.y >= box.y.min - margin && point.y <= box.y.max + margin;
}

std::vector<std::size_t> points_in(const std::vector<SurveyPoint>& points,
                                   const std::vector<Place>& ring) {
  const Box box = box_of(ring);
  if (!(larger_side(box) < largest_area)) {
    throw std::range_error(words::area_larger_than.with({fixed(largest_area, 0)}));
  }
  const Place origin{box.x.min, box.y.min};
  const Chain chain(ring, origin);
  orv2_geo::cgeo_api library;
  std::vector<std::size_t> inside;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (!is_near(points[i], box)) continue;
    std::int16_t no_region = 0;
    const bool is_inside = library.Pto_in_Poligono(
        chain.x, chain.y, chain.count, points[i].x - origin.x, points[i].y - origin.y, no_region);
    if (no_region != 0) throw std::range_error(words::no_region.text());
    if (is_inside) inside.push_back(i);
  }
  return inside;
}

}  // namespace

WorkArea area_of(const std::vector<SurveyPoint>& points, const Boundary& boundary,
                 const AreaChoice& choice) {
  WorkArea area = chosen(points, boundary, choice);
  if (area.vertices.empty()) return area;
  try {
    area.inside = points_in(points, area.vertices);
  } catch (const orv2_geo::RunFailure& failure) {
    area.fault = words_of(failure);
  } catch (const std::range_error& fault) {
    area.fault = fault.what();
  }
  return area;
}

}  // namespace survey_report

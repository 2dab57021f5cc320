// The engine of repeated points, beside its steps.
#include <algorithm>
#include <cmath>
#include <vector>

#include "fuzz/harness.h"
#include "fuzz/source.h"
#include "tests/repeated/as_restated.h"

namespace orv2_geo {
namespace {

using fuzzing::Source;

// From the bytes one by one, or very many from a few of them.
std::vector<Point> points_of(Source& source) {
  if (source.one_in(16)) {
    Numbers numbers(source.any<std::uint64_t>());
    const double unit = source.one_of({0.0002, 0.5, 1.0});
    return any_points(numbers, 1 + source.below(source.one_in(32) ? 500 : 60), unit);
  }
  std::vector<Point> points(source.below(24));
  const std::size_t in_plan = source.below(Source::kinds_without_edges);
  const std::size_t upwards = source.below(Source::kinds_without_edges);
  for (Point& point : points) {
    point = {source.number(in_plan), source.number(in_plan), source.number(upwards)};
  }
  return points;
}

double precision_of(Source& source) {
  constexpr double usual[] = {0.0, 0.0002, 0.5, 1.0, 0.003, -0.5, 1e-12};
  const double precision = source.one_in(3) ? source.number() : source.one_of(usual);
  return std::isnan(precision) ? 0.0 : precision;  // fails before anything is sorted
}

// Nothing, or one thing that is wrong.
void spoil(Source& source, PointList& list, restated::Bar& bar) {
  const std::int32_t point = source.between(0, list.nPtos);
  DoubleArray* const axes[] = {&list.X, &list.Y, &list.Z};
  switch (source.below(6)) {
    case 0: (*axes[1 + source.below(2)])(point) = source.number(); break;
    case 1: axes[source.below(3)]->size_keeping(0, point); break;
    case 2: bar.fails_at = source.between(1, 4); break;
    default: break;
  }
}

// What a host does to a coordinate while its indicator is set up.
void change(Source& source, const PointList& list, restated::Bar& bar) {
  const bool whole = static_cast<std::int32_t>(list.X.count()) > list.nPtos &&
                     static_cast<std::int32_t>(list.Y.count()) > list.nPtos &&
                     static_cast<std::int32_t>(list.Z.count()) > list.nPtos;
  if (!whole || list.nPtos < 1 || !source.one_in(3)) return;
  bar.change = {source.between(0, 2), source.between(1, list.nPtos), source.number()};
}

}  // namespace
}  // namespace orv2_geo

void orv2_geo::fuzzing::try_input(const std::uint8_t* data, std::size_t size) {
  Source source(data, size);
  PointList list(points_of(source));
  const double precision = precision_of(source);
  restated::Bar bar;
  spoil(source, list, bar);
  const bool removal = source.one_in(2);
  if (removal) {
    expect_removal_as_restated(list, precision, bar);
    expect_neighbours_as_restated(list);
  } else {
    change(source, list, bar);
    expect_indexes_as_restated(list, precision, bar);
  }
}

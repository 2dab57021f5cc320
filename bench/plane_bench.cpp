// The plane members beside the same formulas unchecked, and beside the
// geometry libraries that a C++ user would take instead. One million random
// pairs of survey-sized segments, about a third of which cross.
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Segment_2.h>
#include <CGAL/intersections.h>
#include <CGAL/squared_distance_2.h>
#include <benchmark/benchmark.h>
#include <geos/algorithm/LineIntersector.h>
#include <geos/geom/Coordinate.h>

#include <array>
#include <boost/geometry.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/segment.hpp>
#include <cmath>
#include <random>
#include <vector>

#include "bench/plane_bench_functions.h"
#include "orv2_geo/orv2_geo.hpp"

namespace {

using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using Point = Kernel::Point_2;
using Segment = Kernel::Segment_2;
using BoostPoint = boost::geometry::model::d2::point_xy<double>;
using BoostSegment = boost::geometry::model::segment<BoostPoint>;
using GeosPoint = geos::geom::Coordinate;

constexpr std::size_t pair_count = 1000000;

// Two segments: x1 y1 x2 y2 x3 y3 x4 y4.
using Pair = std::array<double, 8>;

const std::vector<Pair>& pairs() {
  static const std::vector<Pair> all = [] {
    std::mt19937_64 engine(11);
    std::uniform_real_distribution<double> near(0.0, 100.0);
    std::vector<Pair> made(pair_count);
    for (Pair& pair : made) {
      for (std::size_t i = 0; i < 8; ++i) {
        pair[i] = (i % 2 == 0 ? 435000.0 : 4473000.0) + std::round(near(engine) * 1000.0) / 1000.0;
      }
    }
    return made;
  }();
  return all;
}

// Each library's own values, made beforehand: only the question is measured.
template <class Value, class Make>
const std::vector<std::array<Value, 2>>& segments_as(Make make) {
  static const std::vector<std::array<Value, 2>> all = [&] {
    std::vector<std::array<Value, 2>> made;
    made.reserve(pair_count);
    for (const Pair& p : pairs()) {
      made.push_back({make(p[0], p[1], p[2], p[3]), make(p[4], p[5], p[6], p[7])});
    }
    return made;
  }();
  return all;
}

const std::vector<std::array<Segment, 2>>& cgal_segments() {
  return segments_as<Segment>([](double x1, double y1, double x2, double y2) {
    return Segment(Point(x1, y1), Point(x2, y2));
  });
}

const std::vector<std::array<BoostSegment, 2>>& boost_segments() {
  return segments_as<BoostSegment>([](double x1, double y1, double x2, double y2) {
    return BoostSegment(BoostPoint(x1, y1), BoostPoint(x2, y2));
  });
}

using GeosSegment = std::array<GeosPoint, 2>;
const std::vector<std::array<GeosSegment, 2>>& geos_segments() {
  return segments_as<GeosSegment>([](double x1, double y1, double x2, double y2) {
    return GeosSegment{GeosPoint(x1, y1), GeosPoint(x2, y2)};
  });
}

// Runs `question` over all items and keeps the sum of its answers.
template <class Items, class Question>
void over(benchmark::State& state, const Items& items, Question question) {
  double sum = 0.0;
  for (auto _ : state) {
    for (const auto& item : items) sum += question(item);
    benchmark::DoNotOptimize(sum);
  }
  state.counters["answers"] = benchmark::Counter(sum / static_cast<double>(state.iterations()));
}

const orv2_geo::cgeo_Algorismos algorithms;

void crossing_test(benchmark::State& state) {
  over(state, pairs(), [](const Pair& p) {
    return algorithms.Se_cruzan_2lineas(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7]).bits != 0;
  });
}
void crossing_test_plain(benchmark::State& state) {
  over(state, pairs(), [](const Pair& p) { return bench::crosses_plain(p.data()); });
}
void crossing_test_cgal(benchmark::State& state) {
  over(state, cgal_segments(), [](const auto& s) { return CGAL::do_intersect(s[0], s[1]); });
}
void crossing_test_boost(benchmark::State& state) {
  over(state, boost_segments(),
       [](const auto& s) { return boost::geometry::intersects(s[0], s[1]); });
}
void crossing_test_geos(benchmark::State& state) {
  geos::algorithm::LineIntersector intersector;
  over(state, geos_segments(), [&](const auto& s) {
    intersector.computeIntersection(s[0][0], s[0][1], s[1][0], s[1][1]);
    return intersector.hasIntersection();
  });
}

void crossing_point(benchmark::State& state) {
  over(state, pairs(), [](const Pair& p) {
    double x = 0.0;
    double y = 0.0;
    const bool meets =
        algorithms.Cruce_XY_2lineas(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7], x, y);
    return meets ? x + y : 0.0;
  });
}
void crossing_point_plain(benchmark::State& state) {
  over(state, pairs(), [](const Pair& p) {
    double x = 0.0;
    double y = 0.0;
    return bench::crossing_plain(p.data(), x, y) ? x + y : 0.0;
  });
}
void crossing_point_cgal(benchmark::State& state) {
  over(state, cgal_segments(), [](const auto& s) {
    const auto meeting = CGAL::intersection(s[0], s[1]);
    if (!meeting) return 0.0;
    const Point* point = boost::get<Point>(&*meeting);
    return point != nullptr ? point->x() + point->y() : 0.0;
  });
}
void crossing_point_boost(benchmark::State& state) {
  std::vector<BoostPoint> points;
  over(state, boost_segments(), [&](const auto& s) {
    points.clear();
    boost::geometry::intersection(s[0], s[1], points);
    return points.empty() ? 0.0 : points[0].x() + points[0].y();
  });
}
void crossing_point_geos(benchmark::State& state) {
  geos::algorithm::LineIntersector intersector;
  over(state, geos_segments(), [&](const auto& s) {
    intersector.computeIntersection(s[0][0], s[0][1], s[1][0], s[1][1]);
    if (!intersector.hasIntersection()) return 0.0;
    const GeosPoint& point = intersector.getIntersection(0);
    return point.x + point.y;
  });
}

void distance_to_segment(benchmark::State& state) {
  over(state, pairs(), [](const Pair& p) {
    return algorithms.Distancia_Punto_Linea(p[4], p[5], p[0], p[1], p[2], p[3]);
  });
}
void distance_to_segment_plain(benchmark::State& state) {
  over(state, pairs(), [](const Pair& p) { return bench::distance_plain(p.data()); });
}
void distance_to_segment_cgal(benchmark::State& state) {
  over(state, cgal_segments(),
       [](const auto& s) { return std::sqrt(CGAL::squared_distance(s[1].source(), s[0])); });
}
void distance_to_segment_boost(benchmark::State& state) {
  over(state, boost_segments(),
       [](const auto& s) { return boost::geometry::distance(s[1].first, s[0]); });
}

// A ring of `vertices` vertices, closed, with teeth: a level line through its
// middle meets only its two sides, one through the teeth most of them.
struct Ring {
  orv2_geo::DoubleArray x;
  orv2_geo::DoubleArray y;
  std::int32_t vertices;

  explicit Ring(std::int32_t count) : x(1, count), y(1, count), vertices(count) {
    constexpr double turn = 6.283185307179586;
    for (std::int32_t i = 1; i <= count; ++i) {
      const double angle = turn * (i - 1) / (count - 1);
      const double radius = 500.0 + (i % 2);
      x(i) = 435000.0 + radius * std::cos(angle);
      y(i) = 4473000.0 + radius * std::sin(angle);
    }
    x(count) = x(1);
    y(count) = y(1);
  }
};

void cuts(benchmark::State& state) {
  const Ring ring(static_cast<std::int32_t>(state.range(0)));
  std::int32_t count = 0;
  orv2_geo::DoubleArray x;
  orv2_geo::DoubleArray y;
  for (auto _ : state) {
    algorithms.Cortes_R1_con_Pol(434000.0, 4472900.5, 436000.0, 4473100.25, ring.vertices, ring.x,
                                 ring.y, count, x, y);
    benchmark::DoNotOptimize(count);
  }
  state.counters["answers"] = count;
}
void cuts_plain(benchmark::State& state) {
  const Ring ring(static_cast<std::int32_t>(state.range(0)));
  std::size_t count = 0;
  for (auto _ : state) {
    count = bench::cuts_plain({434000.0, 4472900.5, 436000.0, 4473100.25}, ring.x.data(),
                              ring.y.data(), static_cast<std::size_t>(ring.vertices))
                .size();
    benchmark::DoNotOptimize(count);
  }
  state.counters["answers"] = static_cast<double>(count);
}

// A comb of 2,000 edges, every one of which the line meets.
void cuts_of_a_comb(benchmark::State& state) {
  constexpr std::int32_t vertices = 2001;
  orv2_geo::DoubleArray x(1, vertices);
  orv2_geo::DoubleArray y(1, vertices);
  for (std::int32_t i = 1; i <= vertices; ++i) x(i) = i, y(i) = i % 2 == 0 ? 10.0 : -10.0;
  std::int32_t count = 0;
  orv2_geo::DoubleArray xc;
  orv2_geo::DoubleArray yc;
  for (auto _ : state) {
    algorithms.Cortes_R1_con_Pol(5000.0, 0.5, -5.0, 0.25, vertices, x, y, count, xc, yc);
    benchmark::DoNotOptimize(count);
  }
  state.counters["cuts"] = count;
}

BENCHMARK(crossing_test)->Unit(benchmark::kMillisecond);
BENCHMARK(crossing_test_plain)->Unit(benchmark::kMillisecond);
BENCHMARK(crossing_test_cgal)->Unit(benchmark::kMillisecond);
BENCHMARK(crossing_test_boost)->Unit(benchmark::kMillisecond);
BENCHMARK(crossing_test_geos)->Unit(benchmark::kMillisecond);
BENCHMARK(crossing_point)->Unit(benchmark::kMillisecond);
BENCHMARK(crossing_point_plain)->Unit(benchmark::kMillisecond);
BENCHMARK(crossing_point_cgal)->Unit(benchmark::kMillisecond);
BENCHMARK(crossing_point_boost)->Unit(benchmark::kMillisecond);
BENCHMARK(crossing_point_geos)->Unit(benchmark::kMillisecond);
BENCHMARK(distance_to_segment)->Unit(benchmark::kMillisecond);
BENCHMARK(distance_to_segment_plain)->Unit(benchmark::kMillisecond);
BENCHMARK(distance_to_segment_cgal)->Unit(benchmark::kMillisecond);
BENCHMARK(distance_to_segment_boost)->Unit(benchmark::kMillisecond);
BENCHMARK(cuts)->Arg(1000)->Arg(100000);
BENCHMARK(cuts_plain)->Arg(1000)->Arg(100000);
BENCHMARK(cuts_of_a_comb)->Unit(benchmark::kMillisecond);

}  // namespace

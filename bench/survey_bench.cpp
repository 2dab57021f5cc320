// Surveying members beside the same formulas unchecked, and the point in polygon
// beside the geometry libraries that a C++ user would take instead: each gets
// the same raw arrays, as the library does on every call, and its own set-up
// counts.
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Polygon_2_algorithms.h>
#include <benchmark/benchmark.h>
#include <geos/algorithm/locate/IndexedPointInAreaLocator.h>
#include <geos/algorithm/locate/SimplePointInAreaLocator.h>
#include <geos/geom/CoordinateArraySequence.h>
#include <geos/geom/GeometryFactory.h>
#include <geos/geom/LinearRing.h>
#include <geos/geom/Polygon.h>

#include <array>
#include <boost/geometry.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

#include "bench/survey_bench_functions.h"
#include "orv2_geo/orv2_geo.hpp"

namespace {

using orv2_geo::DoubleArray;

const orv2_geo::cgeo_api api;
const orv2_geo::cgeo_Geometria geometry;
const orv2_geo::cgeo_Terreno terrain;

// A ring about a point of the national grid, closed, its radius different at
// every vertex; and points of which about half lie inside.
struct Ring {
  DoubleArray x, y;
  std::int32_t vertices;
  std::vector<std::array<double, 2>> points;

  explicit Ring(std::int64_t count)
      : x(1, static_cast<std::int32_t>(count) + 1),
        y(1, static_cast<std::int32_t>(count) + 1),
        vertices(static_cast<std::int32_t>(count) + 1) {
    std::mt19937_64 engine(21);
    std::uniform_real_distribution<double> radius(400.0, 600.0);
    std::uniform_real_distribution<double> around(-450.0, 450.0);
    for (std::int32_t i = 1; i < vertices; ++i) {
      const double angle = 6.283185307179586 * (i - 1) / (vertices - 1);
      const double r = radius(engine);
      x(i) = 435000.0 + std::round(r * std::cos(angle) * 1000.0) / 1000.0;
      y(i) = 4473000.0 + std::round(r * std::sin(angle) * 1000.0) / 1000.0;
    }
    x(vertices) = x(1);
    y(vertices) = y(1);
    for (int i = 0; i < 64; ++i) {
      points.push_back({435000.0 + around(engine), 4473000.0 + around(engine)});
    }
  }

  std::size_t size() const { return static_cast<std::size_t>(vertices); }
};

// One question a round, about the next of the points.
template <class Question>
void ask(benchmark::State& state, Question question) {
  const Ring ring(state.range(0));
  double inside = 0.0;
  for (const auto& [x, y] : ring.points) inside += question(ring, x, y) ? 1.0 : 0.0;
  state.counters["answers"] = inside;
  std::size_t next = 0;
  for (auto _ : state) {
    const auto& [x, y] = ring.points[next++ % ring.points.size()];
    benchmark::DoNotOptimize(question(ring, x, y));
  }
}

void point_in_polygon(benchmark::State& state) {
  ask(state, [](const Ring& ring, double x, double y) {
    std::int16_t loc = 0;
    return bool(api.Pto_in_Poligono(ring.x, ring.y, ring.vertices, x, y, loc));
  });
}

void point_in_polygon_cgal(benchmark::State& state) {
  using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
  ask(state, [](const Ring& ring, double x, double y) {
    std::vector<Kernel::Point_2> points;
    points.reserve(ring.size());
    for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
      points.emplace_back(ring.x.data()[i], ring.y.data()[i]);
    }
    return CGAL::bounded_side_2(points.begin(), points.end(), Kernel::Point_2(x, y), Kernel()) ==
           CGAL::ON_BOUNDED_SIDE;
  });
}

void point_in_polygon_boost(benchmark::State& state) {
  using Point = boost::geometry::model::d2::point_xy<double>;
  ask(state, [](const Ring& ring, double x, double y) {
    boost::geometry::model::ring<Point, false> made;
    made.reserve(ring.size());
    for (std::size_t i = 0; i < ring.size(); ++i) {
      made.emplace_back(ring.x.data()[i], ring.y.data()[i]);
    }
    return boost::geometry::within(Point(x, y), made);
  });
}

template <class Locator>
void ask_geos(benchmark::State& state) {
  const auto factory = geos::geom::GeometryFactory::create();
  ask(state, [&](const Ring& ring, double x, double y) {
    std::vector<geos::geom::Coordinate> corners;
    corners.reserve(ring.size());
    for (std::size_t i = 0; i < ring.size(); ++i) {
      corners.emplace_back(ring.x.data()[i], ring.y.data()[i]);
    }
    auto sequence = std::make_unique<geos::geom::CoordinateArraySequence>(std::move(corners));
    const auto polygon = factory->createPolygon(factory->createLinearRing(std::move(sequence)));
    const geos::geom::Coordinate point(x, y);
    return Locator(*polygon).locate(&point) == geos::geom::Location::INTERIOR;
  });
}
struct GeosSimple {
  explicit GeosSimple(const geos::geom::Geometry& area) : locator(&area) {}
  auto locate(const geos::geom::Coordinate* point) { return locator.locate(point); }
  geos::algorithm::locate::SimplePointInAreaLocator locator;
};
void point_in_polygon_geos(benchmark::State& state) { ask_geos<GeosSimple>(state); }
void point_in_polygon_geos_prepared(benchmark::State& state) {
  ask_geos<geos::algorithm::locate::IndexedPointInAreaLocator>(state);
}

// Random survey-sized lines.
const std::vector<std::array<double, 8>>& lines() {
  static const auto all = [] {
    std::mt19937_64 engine(22);
    std::uniform_real_distribution<double> near(0.0, 100.0);
    std::vector<std::array<double, 8>> made(4096);
    for (auto& line : made) {
      for (std::size_t i = 0; i < 8; ++i) {
        line[i] = (i % 2 == 0 ? 435000.0 : 4473000.0) + std::round(near(engine) * 1000.0) / 1000.0;
      }
    }
    return made;
  }();
  return all;
}

template <class Formula>
void over_lines(benchmark::State& state, Formula formula) {
  double sum = 0.0;
  for (auto _ : state) {
    sum = 0.0;
    for (const auto& line : lines()) {
      double a = 0.0;
      double b = 0.0;
      formula(line.data(), a, b);
      sum += a + b;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.counters["answers"] = sum;
}

void bearing_and_distance(benchmark::State& state) {
  over_lines(state, [](const double* c, double& bearing, double& distance) {
    geometry.GR_AngDist_de_1Recta(c[0], c[1], c[2], c[3], bearing, distance);
  });
}
void bearing_and_distance_unchecked(benchmark::State& state) {
  over_lines(state, bench::bearing_and_distance_plain);
}
void point_by_bearing(benchmark::State& state) {
  over_lines(state, [](const double* c, double& x, double& y) {
    geometry.GR_XY_de_AngDist(c[0], c[1], c[2], c[3], x, y);
  });
}
void point_by_bearing_unchecked(benchmark::State& state) {
  over_lines(state, bench::point_by_bearing_plain);
}
void line_intersection(benchmark::State& state) {
  over_lines(state, [](const double* c, double& x, double& y) {
    orv2_geo::Bool parallel = false;
    geometry.GR_Intersec_2_Rectas(c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], x, y, parallel);
  });
}
void line_intersection_unchecked(benchmark::State& state) {
  over_lines(state, [](const double* c, double& x, double& y) {
    benchmark::DoNotOptimize(bench::line_intersection_plain(c, x, y));
  });
}

// 10,000 distances on a profile of 1,000 points: a walk of 500 on average.
struct Profile {
  DoubleArray x{1, 1000}, y{1, 1000}, at{0, 10000}, levels;

  Profile() {
    std::mt19937_64 engine(23);
    std::uniform_real_distribution<double> level(600.0, 700.0);
    std::uniform_real_distribution<double> along(0.0, 9990.0);
    for (std::int32_t i = 1; i <= 1000; ++i) x(i) = 10.0 * (i - 1), y(i) = level(engine);
    for (std::int32_t i = 1; i <= 10000; ++i) at(i) = along(engine);
  }
  double sum() const { return std::accumulate(levels.data(), levels.data() + levels.count(), 0.0); }
};

void profile_elevations(benchmark::State& state) {
  Profile profile;
  for (auto _ : state) {
    terrain.TR_Cotas_en_unTerreno_dando_DistOr(profile.x, profile.y, profile.at, profile.levels);
    benchmark::DoNotOptimize(profile.levels.data());
  }
  state.counters["answers"] = profile.sum();
}
void profile_elevations_unchecked(benchmark::State& state) {
  Profile profile;
  profile.levels.size(0, 10000);
  for (auto _ : state) {
    for (std::int32_t i = 1; i <= 10000; ++i) {
      profile.levels(i) =
          bench::elevation_at_plain(&profile.x(1), &profile.y(1), 1000, profile.at(i));
    }
    benchmark::DoNotOptimize(profile.levels.data());
  }
  state.counters["answers"] = profile.sum();
}

// 10,000 points in random order, a tenth of them at a distance that another has.
template <class CleanUp>
void clean_up_points(benchmark::State& state, CleanUp clean_up) {
  std::mt19937_64 engine(24);
  DoubleArray distances(0, 10000);
  DoubleArray levels(0, 10000);
  for (std::int32_t i = 1; i <= 10000; ++i) {
    distances(i) = static_cast<double>(engine() % 50000) / 10.0;
    levels(i) = static_cast<double>(engine() % 1000) / 10.0;
  }
  for (auto _ : state) {
    DoubleArray x = distances;
    DoubleArray y = levels;
    clean_up(x, y);
    benchmark::DoNotOptimize(x.data());
  }
}
void profile_clean_up(benchmark::State& state) {
  clean_up_points(state, [](DoubleArray& x, DoubleArray& y) {
    std::int32_t points = 10000;
    terrain.Ordena_terreno_y_quita_repetidos(points, x, y);
  });
}
void exchange_sort_unchecked(benchmark::State& state) {
  clean_up_points(state, [](DoubleArray& x, DoubleArray& y) {
    bench::exchange_sort_plain(&x(1), &y(1), 10000);
  });
}

BENCHMARK(point_in_polygon)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK(point_in_polygon_cgal)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK(point_in_polygon_boost)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK(point_in_polygon_geos)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK(point_in_polygon_geos_prepared)->Arg(10)->Arg(1000)->Arg(100000);
BENCHMARK(bearing_and_distance);
BENCHMARK(bearing_and_distance_unchecked);
BENCHMARK(point_by_bearing);
BENCHMARK(point_by_bearing_unchecked);
BENCHMARK(line_intersection);
BENCHMARK(line_intersection_unchecked);
BENCHMARK(profile_elevations);
BENCHMARK(profile_elevations_unchecked);
BENCHMARK(profile_clean_up);
BENCHMARK(exchange_sort_unchecked);

}  // namespace

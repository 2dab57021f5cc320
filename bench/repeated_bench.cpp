// The repeated points of a survey, found by the engine and by what a C++ user
// would take instead: a spatial index asked about every point, a sorted list of
// pairs, a grid of cells. Each gets the same raw arrays, and its set-up counts.
#include <benchmark/benchmark.h>
#include <geos/geom/Envelope.h>
#include <geos/index/strtree/TemplateSTRtree.h>

#include <algorithm>
#include <boost/geometry.hpp>
#include <boost/geometry/geometries/box.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/index/rtree.hpp>
#include <cmath>
#include <nanoflann.hpp>
#include <random>
#include <unordered_map>
#include <utility>
#include <vector>

#include "bench/sizes.h"
#include "orv2_geo/orv2_geo.hpp"
#include "orv2_geo/repeated/mOrdena_repetidos.h"
#include "orv2_geo/sorting/mOrdena.h"

namespace {

namespace mOrdena = orv2_geo::mOrdena;
using orv2_geo::DoubleArray;
using orv2_geo::LongArray;

constexpr double tolerance = 0.0002;

// Points with 3 decimals in a square, of 5 km where nothing else is said, a tenth of
// them on the spot of another.
constexpr std::int64_t millimetres = 5'000'000;
constexpr std::int64_t millimetres_of_ten_times_the_area = 15'811'388;

struct Survey {
  std::int32_t n;
  DoubleArray X, Y, Z;

  Survey(const benchmark::State& state, std::int64_t side)
      : n(static_cast<std::int32_t>(state.range(0))), X(0, n), Y(0, n), Z(0, n) {
    std::mt19937_64 engine(41);
    std::uniform_int_distribution<std::int64_t> along(0, side);
    std::uniform_int_distribution<std::int64_t> level(600000, 700000);
    for (std::int32_t p = 1; p <= n; ++p) {
      X(p) = 435000.0 + static_cast<double>(along(engine)) / 1000.0;
      Y(p) = 4473000.0 + static_cast<double>(along(engine)) / 1000.0;
      Z(p) = static_cast<double>(level(engine)) / 1000.0;
      if (p > 1 && engine() % 10 == 0) {
        const auto other = static_cast<std::int32_t>(1 + engine() % static_cast<unsigned>(p - 1));
        X(p) = X(other), Y(p) = Y(other);
      }
    }
  }
  std::size_t size() const { return static_cast<std::size_t>(n); }
};

class Silent final : public orv2_geo::LateBound {
 public:
  orv2_geo::Variant call(std::string_view, std::span<const orv2_geo::Argument>) override {
    return {};
  }
  void set_property(std::string_view, const orv2_geo::Variant&) override {}
};

// One search a round, which answers with how many points are left. The one before
// is not timed: what memory the system has taken back meanwhile comes at a price of
// its own, which a few long rounds would pay and many short ones not.
template <class Search>
void search_in(benchmark::State& state, const Survey& survey, Search find) {
  std::size_t left = find(survey);
  for (auto _ : state) left = find(survey);
  state.counters["left"] = static_cast<double>(left);
  state.counters["ns_a_point"] = benchmark::Counter(
      static_cast<double>(survey.n) / 1e9,
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

template <class Search>
void search(benchmark::State& state, Search find, std::int64_t side = millimetres) {
  search_in(state, Survey(state, side), find);
}

std::size_t survivors_in_x(const Survey& s) {
  const orv2_geo::ObjectRef progress(new Silent);
  LongArray Indice;
  std::int32_t left = 0;
  mOrdena::m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X(s.n, s.X, s.Y, s.Z, left, Indice,
                                                         tolerance, progress);
  return static_cast<std::size_t>(left);
}
void repeated_in_x(benchmark::State& state) { search(state, survivors_in_x); }
// One point was read with an absurd X.
Survey with_a_wild_point(const Survey& survey) {
  Survey wild = survey;
  wild.X(wild.n / 2) = 1e14;
  return wild;
}
void repeated_in_x_wild(benchmark::State& state) {
  search_in(state, with_a_wild_point(Survey(state, millimetres)), survivors_in_x);
}

void repeated_in_x_wide(benchmark::State& state) {
  search(state, survivors_in_x, millimetres_of_ten_times_the_area);
}

std::size_t survivors_renumbered(const Survey& s) {
  const orv2_geo::ObjectRef progress(new Silent);
  LongArray IndiceNuevos, IndiceGeneral;
  mOrdena::BoolArray Repetido;
  std::int32_t left = 0;
  mOrdena::m_Indice_de_Puntos_sin_Repetir_2(s.n, s.X, s.Y, s.Z, left, IndiceNuevos, IndiceGeneral,
                                            Repetido, tolerance, progress);
  return static_cast<std::size_t>(left);
}
void repeated_renumbered(benchmark::State& state) { search(state, survivors_renumbered); }
void repeated_renumbered_wild(benchmark::State& state) {
  search_in(state, with_a_wild_point(Survey(state, millimetres)), survivors_renumbered);
}
void repeated_renumbered_wide(benchmark::State& state) {
  search(state, survivors_renumbered, millimetres_of_ten_times_the_area);
}

// The sort that the engine starts with, alone.
void order_alone(benchmark::State& state) {
  search(state, [](const Survey& s) {
    LongArray Orden;
    mOrdena::Ordena_Double_Index_Array(s.X, Orden, 1, s.n);
    return static_cast<std::size_t>(Orden(1));
  });
}

// The member with its three copies of the coordinates. The survey that it works on is made
// before each round, and taken down with the next.
void remove_repeated(benchmark::State& state, const Survey& survey) {
  const orv2_geo::ObjectRef progress(new Silent);
  const orv2_geo::cgeo_Ordena sorts;
  Survey own = survey;
  LongArray Indice;
  const auto remove = [&] {
    sorts.Quita_Puntos_Repetidos_XY_con_indice1(own.n, own.X, own.Y, own.Z, Indice, progress,
                                                tolerance, false);
  };
  remove();
  for (auto _ : state) {
    state.PauseTiming();
    own = survey;
    Indice.release();
    state.ResumeTiming();
    remove();
  }
  state.counters["left"] = static_cast<double>(own.n);
}
void repeated_removed(benchmark::State& state) {
  remove_repeated(state, Survey(state, millimetres));
}
void repeated_removed_wild(benchmark::State& state) {
  remove_repeated(state, with_a_wild_point(Survey(state, millimetres)));
}

// A plain sort of (X, number) and one pass with the same anchored box.
void repeated_std_sort(benchmark::State& state) {
  search(state, [](const Survey& s) {
    std::vector<std::pair<double, std::int32_t>> order(s.size());
    for (std::int32_t p = 1; p <= s.n; ++p) order[static_cast<std::size_t>(p - 1)] = {s.X(p), p};
    std::sort(order.begin(), order.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    const double* y = &s.Y(0);
    const double* z = &s.Z(0);
    std::vector<std::int32_t> chosen;
    chosen.reserve(order.size());
    double ax = -1e300;
    double ay = 0.0;
    double top = 0.0;
    for (const auto& [x, p] : order) {
      if (std::abs(x - ax) < tolerance && std::abs(y[p] - ay) < tolerance) {
        if (z[p] > top || (z[p] == top && p < chosen.back())) top = z[p], chosen.back() = p;
      } else {
        chosen.push_back(p);
        ax = x, ay = y[p], top = z[p];
      }
    }
    benchmark::DoNotOptimize(chosen.data());
    return chosen.size();
  });
}

// Of a point and what lies near it the first is kept, each near one is dropped.
class Kept {
 public:
  explicit Kept(std::size_t points) : dropped_(points + 1), left_(points) {}
  bool is_dropped(std::int32_t p) const { return dropped_[static_cast<std::size_t>(p)] != 0; }
  void meet(std::int32_t p, std::int32_t near) {
    if (near <= p || is_dropped(near)) return;
    dropped_[static_cast<std::size_t>(near)] = 1;
    --left_;
  }
  std::size_t left() const { return left_; }

 private:
  std::vector<char> dropped_;
  std::size_t left_;
};

struct PlanView {
  const double* x;
  const double* y;
  std::size_t n;
  std::size_t kdtree_get_point_count() const { return n; }
  double kdtree_get_pt(std::size_t i, std::size_t axis) const { return axis == 0 ? x[i] : y[i]; }
  template <class Box>
  bool kdtree_get_bbox(Box&) const {
    return false;
  }
};

void repeated_nanoflann(benchmark::State& state) {
  using Distance = nanoflann::L2_Simple_Adaptor<double, PlanView>;
  using Tree = nanoflann::KDTreeSingleIndexAdaptor<Distance, PlanView, 2, std::int32_t>;
  search(state, [](const Survey& s) {
    const PlanView plan{&s.X(1), &s.Y(1), s.size()};
    const Tree tree(2, plan, nanoflann::KDTreeSingleIndexAdaptorParams(16));
    Kept kept(s.size());
    std::vector<std::pair<std::int32_t, double>> near;
    for (std::int32_t p = 1; p <= s.n; ++p) {
      if (kept.is_dropped(p)) continue;
      const double at[] = {s.X(p), s.Y(p)};
      tree.radiusSearch(at, tolerance * tolerance, near, nanoflann::SearchParams(32, 0, false));
      for (const auto& one : near) kept.meet(p, one.first + 1);
    }
    return kept.left();
  });
}

void repeated_boost(benchmark::State& state) {
  namespace bg = boost::geometry;
  using Place = bg::model::d2::point_xy<double>;
  using Entry = std::pair<Place, std::int32_t>;
  search(state, [](const Survey& s) {
    std::vector<Entry> entries;
    entries.reserve(s.size());
    for (std::int32_t p = 1; p <= s.n; ++p) entries.emplace_back(Place(s.X(p), s.Y(p)), p);
    const bg::index::rtree<Entry, bg::index::quadratic<16>> tree(entries);
    Kept kept(s.size());
    std::vector<Entry> near;
    for (std::int32_t p = 1; p <= s.n; ++p) {
      if (kept.is_dropped(p)) continue;
      const bg::model::box<Place> box(Place(s.X(p) - tolerance, s.Y(p) - tolerance),
                                      Place(s.X(p) + tolerance, s.Y(p) + tolerance));
      near.clear();
      tree.query(bg::index::intersects(box), std::back_inserter(near));
      for (const Entry& one : near) kept.meet(p, one.second);
    }
    return kept.left();
  });
}

void repeated_geos(benchmark::State& state) {
  search(state, [](const Survey& s) {
    geos::index::strtree::TemplateSTRtree<std::int32_t> tree(10, s.size());
    for (std::int32_t p = 1; p <= s.n; ++p) {
      tree.insert(geos::geom::Envelope(s.X(p), s.X(p), s.Y(p), s.Y(p)), p);
    }
    tree.build();
    Kept kept(s.size());
    for (std::int32_t p = 1; p <= s.n; ++p) {
      if (kept.is_dropped(p)) continue;
      tree.query(geos::geom::Envelope(s.X(p) - tolerance, s.X(p) + tolerance, s.Y(p) - tolerance,
                                      s.Y(p) + tolerance),
                 [&](std::int32_t near) { kept.meet(p, near); });
    }
    return kept.left();
  });
}

// Cells of twice the tolerance: a point looks into its own and the eight around.
void repeated_hash_grid(benchmark::State& state) {
  struct Cell {
    std::size_t operator()(const std::pair<std::int64_t, std::int64_t>& at) const {
      return (static_cast<std::size_t>(at.first) * 0x9e3779b97f4a7c15U) ^
             (static_cast<std::size_t>(at.second) * 0xc2b2ae3d27d4eb4fU);
    }
  };
  search(state, [](const Survey& s) {
    std::unordered_map<std::pair<std::int64_t, std::int64_t>, std::int32_t, Cell> first;
    first.reserve(s.size());
    const auto cell = [](double at) {
      return static_cast<std::int64_t>(std::floor(at / (2 * tolerance)));
    };
    std::size_t left = 0;
    for (std::int32_t p = 1; p <= s.n; ++p) {
      const std::int64_t x = cell(s.X(p));
      const std::int64_t y = cell(s.Y(p));
      bool repeated = false;
      for (std::int64_t dx = -1; dx <= 1 && !repeated; ++dx) {
        for (std::int64_t dy = -1; dy <= 1 && !repeated; ++dy) {
          const auto found = first.find({x + dx, y + dy});
          repeated = found != first.end() && std::abs(s.X(found->second) - s.X(p)) < tolerance &&
                     std::abs(s.Y(found->second) - s.Y(p)) < tolerance;
        }
      }
      if (!repeated) {
        first.emplace(std::pair(x, y), p);
        ++left;
      }
    }
    return left;
  });
}

constexpr std::int64_t most_of_trees = 1'000'000;  // beyond they take a minute
BENCHMARK(repeated_in_x)->Apply(bench::sizes);
BENCHMARK(repeated_renumbered)->Apply(bench::sizes);
BENCHMARK(order_alone)->Apply(bench::sizes);
BENCHMARK(repeated_removed)->Apply(bench::sizes);
BENCHMARK(repeated_std_sort)->Apply(bench::sizes);
BENCHMARK(repeated_nanoflann)->Apply(bench::sizes<most_of_trees>);
BENCHMARK(repeated_boost)->Apply(bench::sizes<most_of_trees>);
BENCHMARK(repeated_geos)->Apply(bench::sizes<most_of_trees>);
BENCHMARK(repeated_hash_grid)->Apply(bench::sizes);
BENCHMARK(repeated_in_x_wild)->Arg(1000000);
BENCHMARK(repeated_renumbered_wild)->Arg(1000000);
BENCHMARK(repeated_removed_wild)->Arg(1000000);
BENCHMARK(repeated_in_x_wide)->Arg(1000000);
BENCHMARK(repeated_renumbered_wide)->Arg(1000000);

}  // namespace

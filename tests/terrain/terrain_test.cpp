#include <bit>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "orv2_geo/frame/mConstantes.h"
#include "orv2_geo/terrain/cgeo_Terreno.h"
#include "tests/platform/recording_interface.h"
#include "tests/support/arrays.h"
#include "tests/support/exchange_by_passes.h"
#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

const cgeo_Terreno terrain;

struct QueryRow {
  const char* rule;
  std::vector<double> x, y;
  double at, expected;
};

TEST(Profile, ElevationAtADistance) {
  const std::vector<double> x = {0, 10, 20}, y = {100, 110, 90};
  const std::vector<double> step = {0, 10, 10, 20}, levels = {1, 2, 3, 4};
  const QueryRow table[] = {
      {"the first point", x, y, 0, 100},
      {"the last point", x, y, 20, 90},
      {"an inner point", x, y, 10, 110},
      {"first stretch", x, y, 5, 105},
      {"second stretch", x, y, 15, 100},
      {"before the profile", x, y, -10, 90},
      {"after the profile", x, y, 30, 70},
      {"a step: the first of the pair", step, levels, 10, 2},
      {"just before a step: on towards its first", step, levels, std::nextafter(10.0, 0.0),
       (2.0 - 1.0) * std::nextafter(10.0, 0.0) / 10.0 + 1.0},
      {"just after a step: from its second", step, levels, std::nextafter(10.0, 11.0),
       (4.0 - 3.0) * (std::nextafter(10.0, 11.0) - 10.0) / 10.0 + 3.0},
      {"between the step and the next", step, levels, 15, 3.5},
      {"a first stretch of no width", {5, 5, 9}, {7, 8, 9}, 1, 7},
      {"a descending profile gives what it gives", {20, 10, 0}, {1, 2, 3}, 5, 2.5},
      {"one point", {4}, {9}, 4, 0},
  };
  for (const QueryRow& row : table) {
    EXPECT_EQ(
        bits(terrain.TF_Y_del_Terreno_dando_su_X(doubles(1, row.x), doubles(1, row.y), row.at)),
        bits(row.expected))
        << row.rule;
  }
  EXPECT_EQ(terrain.TF_Y_del_Terreno_dando_su_X(doubles(0, {4}), DoubleArray(), 4), 0.0);
}

TEST(Profile, ArraysThatAreTooShortAre9) {
  const DoubleArray x = doubles(1, {0, 10, 20});
  EXPECT_EQ(failure_of([&] { terrain.TF_Y_del_Terreno_dando_su_X(DoubleArray(), x, 1); }), 9);
  EXPECT_EQ(failure_of([&] { terrain.TF_Y_del_Terreno_dando_su_X(doubles(2, {0, 10}), x, 1); }), 9);
  EXPECT_EQ(failure_of([&] { terrain.TF_Y_del_Terreno_dando_su_X(x, doubles(1, {5}), 5); }), 9);
  EXPECT_EQ(failure_of([&] { terrain.TF_Y_del_Terreno_dando_su_X(x, doubles(1, {5}), 0); }), 0);
  EXPECT_EQ(failure_of([&] { terrain.TF_ProyeccVertical_de_X_en_1R(0, 0, 1e-300, 1e300, 5); }), 6);
  EXPECT_EQ(terrain.TF_ProyeccVertical_de_X_en_1R(3, 7, 3, 9, 100), 7.0);
}

TEST(Profile, ElevationsAtManyDistances) {
  const DoubleArray x = doubles(1, {0, 10, 20}), y = doubles(1, {100, 110, 90});
  DoubleArray levels(5, 9);
  terrain.TR_Cotas_en_unTerreno_dando_DistOr(x, y, doubles(0, {999, 5, 15}), levels);
  EXPECT_EQ(levels.lower(), 0);
  EXPECT_EQ(elements(levels), (std::vector<double>{0, 105, 100}));
  terrain.TR_Cotas_en_unTerreno_dando_DistOr(x, y, doubles(0, {999}), levels);
  EXPECT_EQ(elements(levels), std::vector<double>{0});
  EXPECT_EQ(
      failure_of([&] { terrain.TR_Cotas_en_unTerreno_dando_DistOr(x, y, DoubleArray(), levels); }),
      9);
  // A failure half-way leaves the new array with what was worked out.
  EXPECT_EQ(failure_of([&] {
              terrain.TR_Cotas_en_unTerreno_dando_DistOr(x, doubles(1, {100, 110}),
                                                         doubles(0, {0, 5, 15, 5}), levels);
            }),
            9);
  EXPECT_EQ(elements(levels), (std::vector<double>{0, 105, 0, 0}));
  DoubleArray shared = doubles(0, {0, 5, 15});
  terrain.TR_Cotas_en_unTerreno_dando_DistOr(x, y, shared, shared);
  EXPECT_EQ(elements(shared), (std::vector<double>{0, 100, 100}));  // dropped before it is read
}

TEST(Profile, ExtremesOfAProfile) {
  const DoubleArray y = doubles(0, {-999, 5, 3, 8, 3});
  EXPECT_EQ(terrain.TF_Yminima_del_Terreno(y), 3.0);
  EXPECT_EQ(terrain.TF_Ymaxima_del_Terreno(y), 8.0);
  EXPECT_EQ(terrain.TF_Yminima_del_Terreno(doubles(1, {500})), 0.0);
  EXPECT_EQ(terrain.TF_Ymaxima_del_Terreno(doubles(1, {500})), 0.0);
  for (const DoubleArray& two : {doubles(1, {-5, -3}), doubles(1, {-3, -5})}) {
    EXPECT_EQ(terrain.TF_Yminima_del_Terreno(two), -5.0);
    EXPECT_EQ(terrain.TF_Ymaxima_del_Terreno(two), -3.0);
  }
  // Of zeros of either sign the first.
  for (const double zero : {0.0, -0.0}) {
    EXPECT_EQ(bits(terrain.TF_Yminima_del_Terreno(doubles(1, {zero, -zero, zero}))), bits(zero));
    EXPECT_EQ(bits(terrain.TF_Ymaxima_del_Terreno(doubles(1, {zero, -zero, zero}))), bits(zero));
  }
  for (const DoubleArray& bad : {DoubleArray(), doubles(0, {7}), doubles(2, {7, 8})}) {
    EXPECT_EQ(failure_of([&] { terrain.TF_Yminima_del_Terreno(bad); }), 9);
    EXPECT_EQ(failure_of([&] { terrain.TF_Ymaxima_del_Terreno(bad); }), 9);
  }
}

// No formula is asked there: it could lose bits.
TEST(Profile, APlaceOfTheProfileHasItsElevationToTheBit) {
  const DoubleArray x = doubles(1, {0, 10, 20, 30}), y = doubles(1, {1e9, 0.1, 1e9, 0.3});
  for (std::int32_t i = 1; i <= 4; ++i) {
    EXPECT_EQ(bits(terrain.TF_Y_del_Terreno_dando_su_X(x, y, x(i))), bits(y(i))) << i;
  }
}

double stepped_elevation(const std::vector<double>& x, const std::vector<double>& y, double at) {
  const std::size_t n = x.size() - 1;
  const auto on = [&](std::size_t a, std::size_t b) {
    const double dx = x[b] - x[a];
    if (dx == 0.0) return y[a];
    const volatile double product = (y[b] - y[a]) * (at - x[a]);
    const volatile double quotient = product / dx;
    return quotient + y[a];
  };
  if (n < 2) return 0.0;
  if (at == x[1]) return y[1];
  if (at == x[n]) return y[n];
  if (at < x[1]) return on(1, 2);
  if (at > x[n]) return on(n - 1, n);
  for (std::size_t i = 2; i <= n; ++i) {
    if (at == x[i]) return y[i];
    if (at < x[i]) return on(i - 1, i);
  }
  return 0.0;
}

TEST(Profile, RandomProfiles) {
  Numbers numbers(61);
  for (int run = 0; run < 2000; ++run) {
    const std::size_t n = 2 + numbers.below(49);
    std::vector<double> x(n + 1), y(n + 1);
    for (std::size_t i = 1; i <= n; ++i) {
      x[i] =
          run % 2 == 0 ? x[i - 1] + static_cast<double>(numbers.below(3)) : numbers.small_whole();
      y[i] = numbers.between(600, 640);
    }
    const DoubleArray X = doubles(0, x), Y = doubles(0, y);
    for (int k = 0; k < 10; ++k) {
      const double at =
          k % 2 == 0 ? numbers.small_whole() + x[1 + numbers.below(n)] : numbers.between(-5, 60);
      ASSERT_EQ(bits(terrain.TF_Y_del_Terreno_dando_su_X(X, Y, at)),
                bits(stepped_elevation(x, y, at)));
    }
  }
}

TEST(CleanUp, OrderIsCheckedWithOneMessage) {
  RecordingInterface screen;
  EXPECT_TRUE(terrain.TF_DistaOrigen_estan_ordenadas(doubles(1, {0, 5, 5, 9})));
  EXPECT_TRUE(terrain.TF_DistaOrigen_estan_ordenadas(doubles(0, {7})));
  EXPECT_TRUE(terrain.TF_DistaOrigen_estan_ordenadas(doubles(1, {7})));
  EXPECT_TRUE(screen.boxes.empty());
  EXPECT_FALSE(terrain.TF_DistaOrigen_estan_ordenadas(doubles(1, {5, 4})));
  EXPECT_FALSE(terrain.TF_DistaOrigen_estan_ordenadas(doubles(1, {0, 5, 4, 9, 1})));
  ASSERT_EQ(screen.boxes.size(), 2U);
  EXPECT_EQ(screen.boxes[0],
            (RecordingInterface::Box{"ERROR: Las Distancia a origen no estan ordenadas.\r\n"
                                     "      Hay distacias parciales negativas.\r\n"
                                     "                  ¡¡Corigelas!!",
                                     16, std::nullopt}));
  EXPECT_EQ(failure_of([] { (void)terrain.TF_DistaOrigen_estan_ordenadas(DoubleArray()); }), 9);
}

struct CleanUpRow {
  const char* rule;
  std::vector<double> distances, levels;
  std::int32_t points;
  std::vector<double> new_distances, new_levels;
};

TEST(CleanUp, SortsAndDropsNeighbouringRepeats) {
  const CleanUpRow table[] = {
      {"sorted", {30, 10, 20}, {3, 1, 2}, 3, {0, 10, 20, 30}, {0, 1, 2, 3}},
      {"equal distances turn round", {5, 5, 5}, {1, 2, 3}, 3, {0, 5, 5, 5}, {0, 3, 2, 1}},
      {"a repeat goes", {5, 5}, {7, 7}, 1, {0, 5}, {0, 7}},
      {"a repeat that is no neighbour stays", {5, 5, 5}, {1, 2, 1}, 3, {0, 5, 5, 5}, {0, 1, 2, 1}},
  };
  for (const CleanUpRow& row : table) {
    DoubleArray D = doubles(1, row.distances), Z = doubles(1, row.levels);
    auto points = static_cast<std::int32_t>(row.distances.size());
    terrain.Ordena_terreno_y_quita_repetidos(points, D, Z);
    EXPECT_EQ(points, row.points) << row.rule;
    EXPECT_EQ(D.lower(), 0) << row.rule;
    EXPECT_EQ(elements(D), row.new_distances) << row.rule;
    EXPECT_EQ(elements(Z), row.new_levels) << row.rule;
  }
  for (std::int32_t points : {1, 0}) {
    const std::int32_t before = points;
    DoubleArray D = doubles(3, {9, 8}), Z = doubles(4, {1, 2});
    terrain.Ordena_terreno_y_quita_repetidos(points, D, Z);
    EXPECT_EQ(points, before);
    EXPECT_EQ(D.lower(), 3);
    EXPECT_EQ(elements(Z), (std::vector<double>{1, 2}));
  }
}

TEST(CleanUp, AFailureHalfWayLeavesTheExchangesMade) {
  DoubleArray D = doubles(1, {3, 2, 1}), Z = doubles(1, {30, 20});
  std::int32_t points = 3;
  EXPECT_EQ(failure_of([&] { terrain.Ordena_terreno_y_quita_repetidos(points, D, Z); }), 9);
  EXPECT_EQ(points, 3);
  EXPECT_EQ(elements(D), (std::vector<double>{2, 1, 3}));  // its elevation had no partner
  EXPECT_EQ(elements(Z), (std::vector<double>{20, 30}));
  points = -1;
  EXPECT_EQ(failure_of([&] { terrain.Ordena_terreno_y_quita_repetidos(points, D, Z); }), 9);
  points = 4;
  EXPECT_EQ(failure_of([&] { terrain.Ordena_terreno_y_quita_repetidos(points, D, Z); }), 9);
}

TEST(CleanUp, ADistanceThatIsNaNStopsThePassThatMeetsIt) {
  DoubleArray D = doubles(1, {3, 2, nan, 1}), Z = doubles(1, {30, 20, 0, 10});
  std::int32_t points = 4;
  EXPECT_EQ(failure_of([&] { terrain.Ordena_terreno_y_quita_repetidos(points, D, Z); }), 6);
  EXPECT_EQ(D(1), 2.0);
  EXPECT_EQ(D(2), 3.0);
  EXPECT_EQ(elements(Z), (std::vector<double>{20, 30, 0, 10}));
}

// One variable for both: each exchange is made twice.
TEST(CleanUp, OneArrayForDistancesAndElevations) {
  DoubleArray D = doubles(1, {3, 3, 2, 1});
  std::int32_t points = 4;
  terrain.Ordena_terreno_y_quita_repetidos(points, D, D);
  EXPECT_EQ(points, 3);
  EXPECT_EQ(elements(D), (std::vector<double>{0, 3, 2, 1}));
}

// Points of equal distance are told apart by their elevations, so that the order
// in which they end is seen.
TEST(CleanUp, TheOrderOfTiesIsThatOfThePasses) {
  Numbers numbers(63);
  for (int run = 0; run < 3000; ++run) {
    const std::size_t n = 2 + numbers.below(run % 10 == 0 ? 200 : 12);
    const std::size_t different = 1 + numbers.below(run % 3 == 0 ? 3 : n);
    std::vector<double> d(n), z(n);
    for (std::size_t i = 0; i < n; ++i) {
      d[i] = static_cast<double>(numbers.below(different));
      if (d[i] == 0.0 && numbers.below(2) == 0) d[i] = -0.0;
      if (d[i] == 1.0 && different > 2) d[i] = inf;
      z[i] = static_cast<double>(i);
    }
    DoubleArray D = doubles(1, d), Z = doubles(1, z);
    auto points = static_cast<std::int32_t>(n);
    {
      // Without memory the passes themselves are made: the same outcome.
      const RefusedAllocation refused(run % 2 == 0 ? 2 : 1000);
      terrain.Ordena_terreno_y_quita_repetidos(points, D, Z);
      ASSERT_EQ(refused.happened(), run % 2 == 0);
    }
    exchange_by_passes(0, d, z);
    d.insert(d.begin(), 0.0);
    z.insert(z.begin(), 0.0);
    ASSERT_EQ(elements(Z), z) << run;
    ASSERT_EQ(elements(D), d) << run;
  }
}

struct NotANumberRow {
  const char* rule;
  std::vector<double> d, z;
  std::int32_t failure;
};

// The elevation is looked at whatever the distance says.
TEST(CleanUp, NaNIs6WhereItIsCompared) {
  const NotANumberRow table[] = {
      {"the first elevation", {1, 2, 3}, {nan, 0, 0}, 6},
      {"a later one", {1, 2, 3}, {0, nan, 0}, 6},
      {"the last one", {1, 2, 3}, {0, 0, nan}, 6},
      {"one of two at one distance", {1, 2, 2}, {0, 5, nan}, 6},
      {"a distance", {1, nan, 3}, {0, 0, 0}, 6},
      {"of one point alone nothing is compared", {nan}, {nan}, 0},
  };
  for (const NotANumberRow& row : table) {
    DoubleArray D = doubles(1, row.d), Z = doubles(1, row.z);
    const auto count = static_cast<std::int32_t>(row.d.size());
    std::int32_t points = count;
    EXPECT_EQ(failure_of([&] { terrain.Ordena_terreno_y_quita_repetidos(points, D, Z); }),
              row.failure)
        << row.rule;
    EXPECT_EQ(points, count) << row.rule;
    EXPECT_EQ(D.lower(), 1) << row.rule;  // the arrays are still the caller's
    EXPECT_EQ(Z.count(), row.z.size()) << row.rule;
  }
}

// The count is written first, then the distances, then the elevations.
TEST(CleanUp, WithoutMemoryForTheOutcomeWhatWasWrittenStays) {
  std::vector<std::string> states;
  for (long let_pass = 0;; ++let_pass) {
    DoubleArray D = doubles(1, {2, 1, 1}), Z = doubles(1, {20, 10, 10});
    std::int32_t points = 3;
    const RefusedAllocation refused(let_pass);
    const std::int32_t number =
        failure_of([&] { terrain.Ordena_terreno_y_quita_repetidos(points, D, Z); });
    if (!refused.happened()) break;
    if (number == 0) continue;  // the passes themselves were made
    EXPECT_EQ(number, 7);
    const std::string state = std::to_string(points) + " points, distances from " +
                              std::to_string(D.lower()) + ", elevations from " +
                              std::to_string(Z.lower());
    if (states.empty() || states.back() != state) states.push_back(state);
  }
  EXPECT_EQ(states, (std::vector<std::string>{"3 points, distances from 1, elevations from 1",
                                              "2 points, distances from 1, elevations from 1",
                                              "2 points, distances from 0, elevations from 1"}));
}

TEST(CleanUp, RandomTiesAgainstTheLiteralProcedure) {
  Numbers numbers(62);
  for (int run = 0; run < 2000; ++run) {
    const std::size_t n = 2 + numbers.below(20);
    std::vector<double> d(n + 1), z(n + 1);
    for (std::size_t i = 0; i <= n; ++i) {
      d[i] = static_cast<double>(numbers.below(4));
      z[i] = static_cast<double>(numbers.below(3));
    }
    DoubleArray D = doubles(0, d), Z = doubles(0, z);
    auto points = static_cast<std::int32_t>(n);
    terrain.Ordena_terreno_y_quita_repetidos(points, D, Z);
    exchange_by_passes(1, d, z);
    std::vector<double> kept_d = {0, d[1]}, kept_z = {0, z[1]};
    for (std::size_t i = 2; i <= n; ++i) {
      if (d[i] == kept_d.back() && z[i] == kept_z.back()) continue;
      kept_d.push_back(d[i]);
      kept_z.push_back(z[i]);
    }
    ASSERT_EQ(elements(D), kept_d);
    ASSERT_EQ(elements(Z), kept_z);
    ASSERT_EQ(points, static_cast<std::int32_t>(kept_d.size() - 1));
  }
}

TEST(Constants, EightBytesChangePlacesAsTheyAre) {
  double a = std::bit_cast<double>(std::uint64_t{0x7ff0000000000001});  // a signalling NaN
  double b = -0.0;
  mConstantes::Intercambia_8_bytes(&a, &b);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(a), 0x8000000000000000U);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(b), 0x7ff0000000000001U);
  mConstantes::Intercambia_8_bytes(&a, &a);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(a), 0x8000000000000000U);
}

}  // namespace
}  // namespace orv2_geo

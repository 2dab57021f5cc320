// The formulas of the plane, beside the same statement by statement.
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

#include "fuzz/harness.h"
#include "fuzz/source.h"
#include "orv2_geo/frame/checked_math.h"
#include "tests/plane/agree.h"
#include "tests/plane/restated_cuts.h"
#include "tests/plane/restated_elevation.h"
#include "tests/plane/restated_measures.h"

namespace orv2_geo::plane_tests {
namespace {

using fuzzing::Source;

// ---- Members of numbers ----------------------------------------------------

// Infinities have no place in the restatements; NaN neither.
template <class T>
T finite(Source& source, std::size_t kind) {
  const auto value = static_cast<T>(source.finite_number(kind));
  return std::isfinite(value) ? value : T{0};
}

template <class R, class... P, class Restated>
void agree_on_any(Source& source, R (cgeo_Algorismos::*member)(P...) const, Restated restated) {
  constexpr std::size_t N = sizeof...(P);
  std::array<FirstOf<P...>, N> values;
  const bool mixed = source.one_in(4);
  const std::size_t one_kind = source.below(Source::kinds);
  for (auto& value : values) {
    value = finite<FirstOf<P...>>(source, mixed ? source.below(Source::kinds) : one_kind);
  }
  std::array<std::size_t, N> place;
  const bool shared = source.one_in(4);
  for (std::size_t i = 0; i < N; ++i) place[i] = shared ? source.below(N) : i;
  agree_on(member, restated, values, place);
}

template <auto member, auto restated>
void doubles_agree(Source& source) {
  agree_on_any(source, member, restated);
}
template <auto member, auto restated>
void singles_agree(Source& source) {
  agree_on_any(source, member, single_variant(member, restated));
}

// ---- Whole numbers ---------------------------------------------------------

void whole_points(Source& source) {
  std::int32_t p[4];
  for (std::int32_t& one : p) one = source.whole();
  const std::int32_t& Y1 = source.one_in(4) ? p[0] : p[1];
  EXPECT_EQ(outcome_of([&] { return algorithms.Distancia_Punto_Punto_l(p[0], Y1, p[2], p[3]); }),
            outcome_of([&] { return restated_whole(p[0], Y1, p[2], p[3]); }));
}

// ---- A chain ---------------------------------------------------------------

void cuts(Source& source) {
  constexpr int sharings[][4] = {{0, 1, 2, 3}, {0, 1, 2, 3}, {0, 1, 2, 2}, {0, 1, 0, 3},
                                 {0, 1, 1, 0}, {0, 0, 2, 3}, {0, 0, 0, 0}};
  constexpr std::size_t most_vertices = 30;
  const std::size_t kind = source.below(Source::kinds);
  const auto coordinate = [&] { return source.finite_number(kind); };
  const auto& at = source.one_of(sharings);
  const auto vertices = static_cast<std::int32_t>(source.below(most_vertices));
  DoubleArray arrays[4];
  PlainArray restated[4];
  for (int a = 0; a < 2; ++a) {
    const std::int32_t lower = source.between(-3, 1);
    arrays[a].make(lower, static_cast<std::uint32_t>(vertices - lower + 1));
    restated[a].allocated = true;
    restated[a].lower = lower;
    for (std::uint32_t i = 0; i < arrays[a].count(); ++i) {
      restated[a].elements.push_back(arrays[a].data()[i] = coordinate());
    }
  }
  const double p[4] = {coordinate(), coordinate(), coordinate(), coordinate()};
  const std::int32_t given = vertices + (source.one_in(8) ? source.between(-2, 2) : 0);
  std::int32_t counts[2] = {given, -1};
  std::int32_t restated_counts[2] = {given, -1};
  const int Pc = source.one_in(8) ? 0 : 1;
  EXPECT_EQ(failure_of([&] {
              algorithms.Cortes_R1_con_Pol(p[0], p[1], p[2], p[3], counts[0], arrays[at[0]],
                                           arrays[at[1]], counts[Pc], arrays[at[2]], arrays[at[3]]);
            }),
            failure_of([&] {
              restated_cuts(p[0], p[1], p[2], p[3], restated_counts[0], restated[at[0]],
                            restated[at[1]], restated_counts[Pc], restated[at[2]], restated[at[3]]);
            }));
  EXPECT_EQ(counts[0], restated_counts[0]);
  EXPECT_EQ(counts[1], restated_counts[1]);
  for (int a = 0; a < 4; ++a) expect_same(arrays[a], restated[a]);
}

// ---- Formulas --------------------------------------------------------------

// In one go with one look at the end, and with a look at each operation.
template <class Formula>
void expect_one_outcome(const Formula& formula) {
  const Outcome in_one_go = outcome_of([&] { return checked::settle(formula); });
  const Outcome step_by_step = outcome_of(
      [&] { return checked::settle_stepwise(formula, std::make_index_sequence<Formula::size>{}); });
  EXPECT_EQ(in_one_go, step_by_step);
}

void formulas(Source& source) {
  const Checked a = source.number(), b = source.number(), c = source.number(), d = source.number();
  switch (source.below(10)) {
    case 0: return expect_one_outcome(a + b - c * d);
    case 1: return expect_one_outcome((a - b) / (c - d));
    case 2: return expect_one_outcome(a / (b / (c / d)));
    case 3: return expect_one_outcome(sqrt((a - b) * (a - b) + (c - d) * (c - d)));
    case 4: return expect_one_outcome(atan((a - b) / c) * d);
    case 5: return expect_one_outcome(sin(a * b) * c + d);
    case 6: return expect_one_outcome(power(a - b, 2.0) + power(c, d));
    case 7: return expect_one_outcome(-exp(a) + ln(b) / abs(c * d));
    case 8: return expect_one_outcome(cos(a / b) + tan(c - d));
    default: return expect_one_outcome(a / sqrt(-b * b + 1.0) + c / d);
  }
}

}  // namespace
}  // namespace orv2_geo::plane_tests

void orv2_geo::fuzzing::try_input(const std::uint8_t* data, std::size_t size) {
  using namespace orv2_geo::plane_tests;
  using A = orv2_geo::cgeo_Algorismos;
  constexpr void (*checks[])(Source&) = {
      formulas,
      cuts,
      whole_points,
      doubles_agree<&A::Se_cruzan_2lineas, restated_crossing>,
      doubles_agree<&A::Intersec_XY_2lineas, restated_meeting>,
      doubles_agree<&A::Cruce_XY_2lineas, restated_cut>,
      singles_agree<&A::se_cruzan_2lineass_s, restated_crossing>,
      singles_agree<&A::Intersec_XY_2lineas_s, restated_meeting>,
      singles_agree<&A::Cruce_XY_2lineas_s, restated_cut>,
      doubles_agree<&A::Distancia_Punto_Linea, restated_distance>,
      doubles_agree<&A::Toca_Punto_Recta, restated_touch>,
      doubles_agree<&A::Toca_Punto_Recta_SN, restated_near>,
      doubles_agree<&A::Longitud_Linea, restated_endless>,
      doubles_agree<&A::PntOnLine, restated_position<double>>,
      singles_agree<&A::Distancia_Punto_Linea_s, restated_distance>,
      singles_agree<&A::Toca_Punto_Recta_s, restated_touch>,
      singles_agree<&A::Toca_Punto_Recta_sSN, restated_touch>,
      singles_agree<&A::Longitud_Linea_s, restated_endless>,
      doubles_agree<&A::PntOnLine_s, restated_position_of_singles>,
      doubles_agree<&A::recta_Angulo_y_Dist, restated_direction>,
      doubles_agree<&A::XY_dando_ANG_DIST, restated_point>,
      doubles_agree<&A::XY_de_Z_en_Recta, restated_point_of_elevation>,
      doubles_agree<&A::Cota_en_alineacion, restated_elevation>,
      doubles_agree<&A::Triangulo_Cota_1p_interior, restated_inside>,
      doubles_agree<&A::Triangulo_pendiente, restated_slope>,
  };
  Source source(data, size);
  source.one_of(checks)(source);
}

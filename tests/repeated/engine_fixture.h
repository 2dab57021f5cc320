// engine_fixture.h: point lists for the engine's tests, and calls of its routines
// that bring back everything a caller can see.
#pragma once

#include <string>
#include <vector>

#include "orv2_geo/repeated/mOrdena_repetidos.h"
#include "tests/platform/recording_interface.h"
#include "tests/repeated/progress_object.h"
#include "tests/repeated/restated_engine.h"
#include "tests/support/preamble.h"

namespace orv2_geo::testing_support {

struct Point {
  double x, y, z;
};

/// Coordinates from subscript 0, which holds no point.
struct PointList {
  DoubleArray X, Y, Z;
  std::int32_t nPtos;

  explicit PointList(const std::vector<Point>& points)
      : X(0, upper(points)), Y(0, upper(points)), Z(0, upper(points)), nPtos(upper(points)) {
    X(0) = Y(0) = Z(0) = -999.0;
    for (std::int32_t p = 1; p <= nPtos; ++p) {
      const Point& point = points[static_cast<std::size_t>(p - 1)];
      X(p) = point.x, Y(p) = point.y, Z(p) = point.z;
    }
  }

 private:
  static std::int32_t upper(const std::vector<Point>& points) {
    return static_cast<std::int32_t>(points.size());
  }
};

/// What a routine of an index leaves: its box ("" for none) and its outputs.
struct IndexOutcome {
  std::string box;
  std::int32_t nNuevos = -77;
  LongArray first;   // Indice, IndiceNuevos or Secuencia
  LongArray second;  // IndiceGeneral or Indice
  mOrdena::BoolArray Repetido;
};

inline std::string box_of(const RecordingInterface& screen) {
  if (screen.boxes.empty()) return "";
  EXPECT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(screen.boxes[0].flags, 16);
  return screen.boxes[0].text;
}

inline IndexOutcome in_X(const PointList& list, double Precision, const ObjectRef& progress) {
  const RecordingInterface screen;
  IndexOutcome out;
  mOrdena::m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X(
      list.nPtos, list.X, list.Y, list.Z, out.nNuevos, out.first, Precision, progress);
  out.box = box_of(screen);
  return out;
}

using Renumbering = decltype(&mOrdena::m_Indice_de_Puntos_sin_Repetir_2);
inline constexpr Renumbering highest = &mOrdena::m_Indice_de_Puntos_sin_Repetir_2;
inline constexpr Renumbering all_axes = &mOrdena::m_Indice_de_Puntos_sin_Repetir_2D;
inline constexpr Renumbering flagging = &mOrdena::m_Indice_de_Puntos_sin_Repetir_XY;

inline IndexOutcome run(Renumbering routine, const PointList& list, double Precision,
                        const ObjectRef& progress) {
  const RecordingInterface screen;
  IndexOutcome out;
  routine(list.nPtos, list.X, list.Y, list.Z, out.nNuevos, out.first, out.second, out.Repetido,
          Precision, progress);
  out.box = box_of(screen);
  return out;
}

inline const std::string title_in_X = "m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X - Error nº ";
inline const std::string title_2 = "m_Indice_de_Puntos_sin_Repetir_2 - Error nº ";
inline const std::string title_2D = "m_Indice_de_Puntos_sin_Repetir_2D - Error nº ";
inline const std::string title_2D_0 = "Quita Puntos Repetidos 2D 0 - Error nº ";

/// The text of a box: "" when there was no failure.
inline std::string boxed(const std::string& title, int number) {
  if (number == 0) return "";
  return title + " " + std::to_string(number) + ":" + std::string(failure::description_of(number));
}

/// Points of every kind that makes the sweep decide something: grids with many
/// ties and neighbours exactly a tolerance away, clusters, chains, survey points.
inline std::vector<Point> any_points(Numbers& numbers, std::size_t count, double unit) {
  const std::uint64_t kind = numbers.below(5);
  std::vector<Point> points;
  double chain = -3.0;
  const double spread = 2.0 + static_cast<double>(numbers.below(6));
  const auto whole = [&](double span) { return std::floor(numbers.between(-span, span)); };
  while (points.size() < count) {
    const double z = whole(3.0) * unit;
    switch (kind) {
      case 0: points.push_back({whole(spread) * unit, whole(2.0) * unit, z}); break;
      case 1:
        points.push_back(
            {whole(4.0) + whole(3.0) * unit / 3, whole(2.0) + whole(3.0) * unit / 3, z});
        break;
      case 2:
        chain += numbers.between(0.0, 1.2) * unit;
        points.push_back({chain, whole(1.5) * unit / 2, z});
        break;
      case 3: points.push_back({whole(2.0), whole(2.0), whole(2.0)}); break;
      default:
        points.push_back({435000.0 + whole(spread) / 1000, 4473000.0 + whole(spread) / 1000,
                          600.0 + whole(2.0) / 1000});
    }
  }
  if (kind == 2) std::reverse(points.begin(), points.begin() + static_cast<long>(count / 2));
  return points;
}

/// Shows 3000 lists of any points, each with one of the precisions.
template <class Check>
void for_any_lists(Numbers& numbers, const std::vector<double>& precisions, Check check) {
  const double units[] = {0.0002, 0.5, 1.0};
  for (int round = 0; round < 3000; ++round) {
    const std::size_t count = 1 + numbers.below(round % 50 == 0 ? 2500 : 40);
    const PointList list(any_points(numbers, count, units[numbers.below(3)]));
    check(list, precisions[numbers.below(precisions.size())]);
    if (::testing::Test::HasFailure()) FAIL() << "round " << round;
  }
}

/// A call that one thing is to be wrong with.
struct AnyCall {
  static constexpr double largest = std::numeric_limits<double>::max();
  static constexpr double odd[] = {nan, inf, -inf, largest, -largest, 0.0};

  explicit AnyCall(Numbers& numbers) : AnyCall(numbers, numbers.below(20)) {}

  PointList list;
  std::int32_t point;    // one of them, or 0
  std::int32_t shorter;  // an upper bound that leaves some out, or none
  double Precision;
  restated::Bar bar;

 private:
  AnyCall(Numbers& numbers, std::size_t count)
      : list(any_points(numbers, count, 0.5)),
        point(static_cast<std::int32_t>(numbers.below(count + 1))),
        shorter(static_cast<std::int32_t>(numbers.below(count + 1))),
        Precision(numbers.below(3) == 0 ? largest / 2 : 1.0) {}
};

}  // namespace orv2_geo::testing_support

// Every survey of a few points on a small lattice through every routine of the
// repeated-point engine, beside the engine's steps restated.
#include <gtest/gtest-spi.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <string_view>
#include <vector>

#include "orv2_geo/arrays/cgeo_Matrices.h"
#include "tests/exhaustive/check.h"
#include "tests/repeated/as_restated.h"

namespace orv2_geo::exhaustive {
namespace {

// Three by three places of two heights.
constexpr std::uint64_t places = 18;

constexpr std::uint64_t surveys_of(std::int32_t points) {
  return points == 0 ? 1 : places * surveys_of(points - 1);
}

/// The survey with this number among those of so many points, a step apart.
PointList survey(std::uint64_t number, std::int32_t points, double step) {
  std::vector<Point> all;
  for (std::int32_t p = 0; p < points; ++p, number /= places) {
    const auto place = static_cast<int>(number % places);
    all.push_back({place % 3 * step, place / 3 % 3 * step, place / 9 * step});
  }
  return PointList(all);
}

/// A lattice's step, and tolerances in steps.
struct Lattice {
  double step;
  std::vector<double> tolerances;
};

// The tolerance that 0 stands for, below and at and above a step, above the diagonal, which
// no box looks at, at and above the whole lattice, and none. In tenths of a millimetre
// neighbours are nearer than what 0 stands for.
const std::vector<Lattice> every_tolerance = {
    {1.0, {0.0, 0.999999, 1.0, 1.000001, 1.5, 2.0, 2.000001, -1.0}}, {0.0001, {0.0}}};
// Where there are very many surveys.
const std::vector<Lattice> some_tolerances = {{1.0, {0.0, 1.0, 1.000001}}, {0.0001, {0.0}}};

/// What one thread compares with: nothing of it is made anew for each survey.
class Engine {
 public:
  Engine(Tally& tally, const Lattice& lattice) : tally_(tally), lattice_(lattice) {}

  void compare(std::uint64_t number, std::int32_t points) {
    const PointList list = survey(number, points, lattice_.step);
    number_ = number, list_ = &list;
    x_ = restated::row_of(list.X), y_ = restated::row_of(list.Y), z_ = restated::row_of(list.Z);
    for (const double tolerance : lattice_.tolerances) {
      tolerance_ = tolerance;
      compare_order_in_X();
      compare_renumbering();
      compare_flags();
      compare_removal();
    }
    tolerance_ = 0.0;
    compare_neighbours();
    const bool silent = screen_.boxes.empty();
    screen_.boxes.clear();
    expect("no box", silent);
  }

 private:
  void expect(std::string_view what, bool same) {
    tally_.expect(same, [&](std::ostream& out) {
      out << what << ", tolerance " << tolerance_ << ", survey " << number_ << ':';
      for (std::int32_t p = 1; p <= list_->nPtos; ++p) {
        out << " (" << list_->X(p) << ' ' << list_->Y(p) << ' ' << list_->Z(p) << ')';
      }
    });
  }

  template <class T>
  static bool same(const GeoArray<T>& array, const restated::Row<T>& row) {
    return array.allocated() == row.allocated && array.legal_count() == row.elements.size() &&
           array.lower() == row.lower &&
           std::equal(row.elements.begin(), row.elements.end(), array.data());
  }
  static bool same(const mOrdena::BoolArray& array, const restated::Flags& row) {
    return array.allocated() == row.allocated && array.legal_count() == row.elements.size() &&
           array.lower() == row.lower &&
           std::equal(row.elements.begin(), row.elements.end(), array.data(),
                      [](bool a, Bool b) { return Bool(a).bits == b.bits; });
  }

  void compare_order_in_X() {
    const auto expected = restated::ordered_in_X(list_->nPtos, x_, y_, z_, tolerance_, {});
    std::int32_t count = -77;
    LongArray Indice;
    mOrdena::m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X(
        list_->nPtos, list_->X, list_->Y, list_->Z, count, Indice, tolerance_, progress_);
    expect("ORDENADOS_EN_X",
           expected.number == 0 && count == expected.nNuevos && same(Indice, expected.Indice));
    // The class's member gives the caller's own numbers: here 1000 more.
    std::int32_t points = list_->nPtos;
    LongArray numbers(0, points);
    for (std::int32_t p = 1; p <= points; ++p) numbers(p) = 1000 + p;
    cgeo_Matrices().Quita_Puntos_Repetidos_XYZ_con_indice1(points, list_->X, list_->Y, list_->Z,
                                                           numbers, progress_, tolerance_, false);
    restated::Longs composed = expected.Indice;
    for (std::int32_t& one : composed.elements) one = one == 0 ? 0 : 1000 + one;
    expect("XYZ_con_indice1", points == expected.nNuevos && same(numbers, composed));
  }

  void compare_renumbering() {
    for (const Renumbering routine : {highest, all_axes}) {
      const auto expected =
          restated::renumbered(routine == all_axes, list_->nPtos, x_, y_, z_, tolerance_, {});
      std::int32_t count = -77;
      LongArray news, general;
      mOrdena::BoolArray repeated;
      routine(list_->nPtos, list_->X, list_->Y, list_->Z, count, news, general, repeated,
              tolerance_, progress_);
      expect(routine == all_axes ? "sin_Repetir_2D" : "sin_Repetir_2",
             expected.number == 0 && count == expected.nNuevos &&
                 same(news, expected.IndiceNuevos) && same(general, expected.IndiceGeneral) &&
                 same(repeated, expected.Repetido));
    }
  }

  void compare_flags() {
    restated::Flagged expected;
    restated::flag(expected, list_->nPtos, x_, y_, z_, tolerance_, {});
    std::int32_t count = -77;
    LongArray sequence, index;
    mOrdena::BoolArray repeated;
    flagging(list_->nPtos, list_->X, list_->Y, list_->Z, count, sequence, index, repeated,
             tolerance_, progress_);
    expect("sin_Repetir_XY", expected.number == 0 && count == expected.nNuevos &&
                                 same(sequence, expected.Secuencia) &&
                                 same(index, expected.Indice) && same(repeated, expected.Repetido));
  }

  void compare_removal() {
    const auto expected = restated::removed(list_->nPtos, x_, y_, z_, tolerance_, {});
    PointList left = *list_;
    LongArray Indice;
    cgeo_Ordena().Quita_Puntos_Repetidos_XY_con_indice1(left.nPtos, left.X, left.Y, left.Z, Indice,
                                                        progress_, tolerance_, false);
    expect("XY_con_indice1", expected.number == 0 && expected.thrown == 0 &&
                                 same_points(left, expected) && same(Indice, expected.Indice));
  }

  void compare_neighbours() {
    const auto expected = restated::removed_neighbours(list_->nPtos, x_, y_, z_);
    PointList left = *list_;
    remove_neighbours(left);
    expect("2D_0", expected.number == 0 && same_points(left, expected));
  }

  static bool same_points(const PointList& left, const restated::Removed& expected) {
    return left.nPtos == expected.nPtos && same(left.X, expected.X) && same(left.Y, expected.Y) &&
           same(left.Z, expected.Z);
  }

  Tally& tally_;
  const Lattice& lattice_;
  RecordingInterface screen_;
  const ObjectRef progress_{new Silent};
  std::uint64_t number_ = 0;
  double tolerance_ = 0.0;
  const PointList* list_ = nullptr;
  restated::Doubles x_, y_, z_;
};

template <std::int32_t points>
void every_survey(std::uint64_t first, std::uint64_t end, Tally& tally) {
  for (const Lattice& lattice : points < 6 ? every_tolerance : some_tolerances) {
    Engine engine(tally, lattice);
    for (std::uint64_t number = first; number < end; ++number) engine.compare(number, points);
  }
}

template <std::int32_t points>
constexpr Check check_of(const char* name, const char* what, std::uint64_t quick_parts,
                         std::uint64_t nights = 1) {
  return {name, what, surveys_of(points), 64, quick_parts, nights, every_survey<points>};
}

// ---- Failures --------------------------------------------------------------

/// One thing that is wrong with a call, or nothing.
struct Wrong {
  std::string_view what;
  void (*with)(PointList& list, restated::Bar& bar, double& tolerance);
};

constexpr double largest = std::numeric_limits<double>::max();

template <int write>
void refuse_write(PointList&, restated::Bar& bar, double&) {
  bar.fails_at = write;
}
template <DoubleArray PointList::*axis>
void shorten(PointList& list, restated::Bar&, double&) {
  (list.*axis).size_keeping(0, list.nPtos - 1);
}
template <int axis>
void change(PointList&, restated::Bar& bar, double&) {
  bar.change = {axis, 1, 2.5};
}

constexpr Wrong wrongs[] = {
    {"nothing", [](PointList&, restated::Bar&, double&) {}},
    {"the first write", refuse_write<1>},
    {"the second write", refuse_write<2>},
    {"the third write", refuse_write<3>},
    {"the last write", refuse_write<4>},
    {"a short X", shorten<&PointList::X>},
    {"a short Y", shorten<&PointList::Y>},
    {"a short Z", shorten<&PointList::Z>},
    {"a changed X", change<0>},
    {"a changed Y", change<1>},
    {"a changed Z", change<2>},
    {"no number in X", [](PointList& list, restated::Bar&, double&) { list.X(1) = nan; }},
    {"no number in Y", [](PointList& list, restated::Bar&, double&) { list.Y(1) = nan; }},
    {"no number in Z", [](PointList& list, restated::Bar&, double&) { list.Z(1) = nan; }},
    {"a box beyond all numbers",
     [](PointList& list, restated::Bar&, double& tolerance) {
       list.Y(list.nPtos) = largest;
       tolerance = largest / 2;
     }},
};

// The tests' own comparisons, boxes and failures included.
void every_failure(std::uint64_t first, std::uint64_t end, Tally& tally) {
  ::testing::TestPartResultArray results;
  const ::testing::ScopedFakeTestPartResultReporter reporter(
      ::testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
  for (std::uint64_t number = first; number < end; ++number) {
    const Wrong& wrong = wrongs[number % std::size(wrongs)];
    PointList list = survey(number / std::size(wrongs), 3, 1.0);
    restated::Bar bar;
    double tolerance = 1.000001;
    wrong.with(list, bar, tolerance);
    const int before = results.size();
    expect_indexes_as_restated(list, tolerance, bar);
    if (bar.change.axis < 0) expect_removal_as_restated(list, tolerance, bar);
    expect_neighbours_as_restated(list);
    tally.expect(results.size() == before, [&](std::ostream& out) {
      out << "wrong is " << wrong.what << ", survey " << number / std::size(wrongs) << ": "
          << results.GetTestPartResult(before).message();
    });
  }
}

}  // namespace

std::vector<Check> checks_of_surveys() {
  constexpr const char* what = "surveys of so many points, nine tolerances each";
  return {check_of<1>("surveys_of_1", what, 1),
          check_of<2>("surveys_of_2", what, 1),
          check_of<3>("surveys_of_3", what, 7),
          check_of<4>("surveys_of_4", what, 127),
          check_of<5>("surveys_of_5", what, 2411),
          check_of<6>("surveys_of_6", "surveys of six points, four tolerances each", 20011, 4),
          {"surveys_failing", "surveys of three points with each of fifteen things wrong",
           surveys_of(3) * std::size(wrongs), 30, 67, 1, every_failure}};
}

}  // namespace orv2_geo::exhaustive

#include <functional>
#include <limits>
#include <optional>

#include "tests/repeated/as_restated.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

using Numbers32 = std::vector<std::int32_t>;

// ---- Survivors in X order --------------------------------------------------

struct InXRow {
  const char* rule;
  std::vector<Point> points;
  double Precision;
  std::int32_t nNuevos;
  Numbers32 Indice;  // from subscript 0
};

TEST(SurvivorsInX, Rules) {
  const InXRow table[] = {
      {"one point", {{7, 8, 9}}, 0, 1, {0, 1}},
      {"no repeats: the X order", {{5, 0, 0}, {-1, 0, 0}, {3, 0, 0}}, 0, 3, {0, 2, 3, 1}},
      {"the highest survives, of equal Z the lowest number",
       {{0, 0, 1}, {0, 0, 5}, {0, 0, 5}},
       0.001,
       1,
       {0, 2, 0, 0}},
      {"a lower Z changes nothing", {{0, 0, 5}, {0, 0, 1}, {0, 0, 4}}, 0.001, 1, {0, 1, 0, 0}},
      {"equal Z met later with a lower number takes over",
       {{0.5, 0, 5}, {0, 0, 5}, {0.25, 0, 1}},
       1,
       1,
       {0, 1, 0, 0}},
      {"equal Z after a rise, lower number",
       {{0.75, 0, 9}, {0.25, 0, 9}, {0, 0, 1}},
       1,
       1,
       {0, 1, 0, 0}},
      {"exactly the tolerance apart in X", {{0, 0, 0}, {0.5, 0, 0}}, 0.5, 2, {0, 1, 2}},
      {"exactly the tolerance apart in Y upwards", {{0, 0, 0}, {0, 0.5, 0}}, 0.5, 2, {0, 1, 2}},
      {"exactly the tolerance apart in Y downwards", {{0, 0, 0}, {0, -0.5, 0}}, 0.5, 2, {0, 1, 2}},
      {"0.99 tolerances apart", {{0, 0, 0}, {0.495, 0, 0}}, 0.5, 1, {0, 1, 0}},
      {"0.99 tolerances apart on both axes: a box, no circle",
       {{0, 0, 0}, {0.495, -0.495, 0}},
       0.5,
       1,
       {0, 1, 0}},
      {"any Z", {{0, 0, -1e9}, {0, 0, 1e9}}, 0.5, 1, {0, 2, 0}},
      {"precision 0 is 0.0002: 0.0001 away", {{0, 0, 0}, {0.0001, 0, 0}}, 0, 1, {0, 1, 0}},
      {"precision 0 is 0.0002: 0.0002 away", {{0, 0, 0}, {0.0002, 0, 0}}, 0, 2, {0, 1, 2}},
      {"precision of negative zero is 0.0002 too", {{0, 0, 0}, {0.0001, 0, 0}}, -0.0, 1, {0, 1, 0}},
      {"a precision below the default is kept", {{0, 0, 0}, {0.0001, 0, 0}}, 0.0001, 2, {0, 1, 2}},
      {"a negative precision: no repeats", {{1, 1, 1}, {1, 1, 1}}, -0.5, 2, {0, 1, 2}},
      {"a point of equal X and another Y comes between",
       {{1, 0, 0}, {1, 5, 0}, {1, 0, 0}},
       0,
       3,
       {0, 1, 2, 3}},
      {"a chain ends a tolerance from the anchor",
       {{0, 0, 0}, {0.375, 0, 0}, {0.75, 0, 0}, {1, 0, 0}, {1.5, 0, 0}},
       1,
       2,
       {0, 1, 4, 0, 0, 0}},
      {"the anchor stays in X and Y when a higher point takes over",
       {{0, 0, 0}, {0.75, 0, 9}, {1.5, 0, 9}},
       1,
       2,
       {0, 2, 3, 0}},
      {"beyond the range of the X order only neighbours are found",
       {{1e9, 0, 0}, {5, 0, 0}, {1e9, 0, 0}},
       0,
       2,
       {0, 1, 2, 0}},
  };
  for (const InXRow& row : table) {
    const Indicator progress;
    const IndexOutcome out = in_X(PointList(row.points), row.Precision, progress.reference);
    EXPECT_EQ(out.box, "") << row.rule;
    EXPECT_EQ(out.nNuevos, row.nNuevos) << row.rule;
    EXPECT_EQ(out.first.lower(), 0) << row.rule;
    EXPECT_EQ(elements(out.first), row.Indice) << row.rule;
  }
}

TEST(SurvivorsInX, WhatTheIndexHeldIsGone) {
  const PointList list({{2, 0, 0}, {1, 0, 0}});
  const Indicator progress;
  LongArray Indice(5, 9);
  std::int32_t nNuevos = 0;
  mOrdena::m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X(list.nPtos, list.X, list.Y, list.Z,
                                                         nNuevos, Indice, 0.0, progress.reference);
  EXPECT_EQ(Indice.lower(), 0);
  EXPECT_EQ(elements(Indice), (Numbers32{0, 2, 1}));
}

// ---- Renumbered survivors --------------------------------------------------

struct RenumberedRow {
  const char* rule;
  Renumbering routine;
  std::vector<Point> points;
  double Precision;
  std::int32_t nNuevos;
  Numbers32 IndiceNuevos, IndiceGeneral;  // from subscript 0
};

TEST(Renumbered, Rules) {
  const std::vector<Point> stack = {{0, 0, 1}, {0, 0, 5}, {0, 0, 5}};
  const std::vector<Point> sandwich = {{0, 0, 1}, {0, 0, 5}, {0, 0, 1}};
  const std::vector<Point> apart = {{9, 0, 0}, {1, 0, 0}, {9, 0, 0}};
  const RenumberedRow table[] = {
      {"one point", highest, {{7, 8, 9}}, 0, 1, {0, 1}, {0, 1}},
      {"one point, all axes", all_axes, {{7, 8, 9}}, 0, 1, {0, 1}, {0, 1}},
      {"the highest of a plan position", highest, stack, 0.001, 1, {0, 2, 0, 0}, {0, 1, 1, 1}},
      {"all axes: the anchor's Z is the first's",
       all_axes,
       stack,
       0.001,
       2,
       {0, 1, 2, 0},
       {0, 1, 2, 2}},
      {"all axes: a point of another Z comes between",
       all_axes,
       sandwich,
       0.001,
       3,
       {0, 1, 2, 3},
       {0, 1, 2, 3}},
      {"new numbers go by input number", highest, apart, 0, 2, {0, 1, 2, 0}, {0, 1, 2, 1}},
      {"new numbers go by input number, all axes",
       all_axes,
       apart,
       0,
       2,
       {0, 1, 2, 0},
       {0, 1, 2, 1}},
      {"all axes: the lowest number whatever the Z",
       all_axes,
       {{0.25, 0, 0.25}, {0, 0, 0}, {0.125, 0, 0.5}},
       1,
       1,
       {0, 1, 0, 0},
       {0, 1, 1, 1}},
      {"all axes: exactly the tolerance in Z upwards",
       all_axes,
       {{0, 0, 0}, {0, 0, 0.5}},
       0.5,
       2,
       {0, 1, 2},
       {0, 1, 2}},
      {"all axes: exactly the tolerance in Z downwards",
       all_axes,
       {{0, 0, 0}, {0, 0, -0.5}},
       0.5,
       2,
       {0, 1, 2},
       {0, 1, 2}},
      {"all axes: the anchor's Z does not rise",
       all_axes,
       {{0, 0, 0}, {0, 0, 0.375}, {0, 0, 0.75}},
       0.5,
       2,
       {0, 1, 3, 0},
       {0, 1, 1, 2}},
      {"a negative precision", highest, stack, -1, 3, {0, 1, 2, 3}, {0, 1, 2, 3}},
      {"a negative precision, all axes", all_axes, stack, -1, 3, {0, 1, 2, 3}, {0, 1, 2, 3}},
      {"precision 0 is 0.0002", all_axes, {{0, 0, 0}, {0, 0, 0.0001}}, 0, 1, {0, 1, 0}, {0, 1, 1}},
  };
  for (const RenumberedRow& row : table) {
    const Indicator progress;
    const IndexOutcome out =
        run(row.routine, PointList(row.points), row.Precision, progress.reference);
    EXPECT_EQ(out.box, "") << row.rule;
    EXPECT_EQ(out.nNuevos, row.nNuevos) << row.rule;
    EXPECT_EQ(elements(out.first), row.IndiceNuevos) << row.rule;
    EXPECT_EQ(elements(out.second), row.IndiceGeneral) << row.rule;
    EXPECT_EQ(elements(out.Repetido), std::vector<bool>(row.points.size() + 1)) << row.rule;
    EXPECT_EQ(out.first.lower(), 0) << row.rule;
    EXPECT_EQ(out.second.lower(), 0) << row.rule;
  }
}

TEST(Renumbered, TiesInXOfManyPointsLeaveTheLowestNumber) {
  std::vector<Point> points(40, {3, 4, 5});
  points.push_back({1, 0, 0});
  for (const Renumbering routine : {highest, all_axes}) {
    const Indicator progress;
    const IndexOutcome out = run(routine, PointList(points), 0.0, progress.reference);
    EXPECT_EQ(out.nNuevos, 2);
    EXPECT_EQ(out.first(1), 1);
    EXPECT_EQ(out.first(2), 41);
  }
}

// Each point takes over from the one before: the way from the first to the last
// survivor is as long as the survey, and is not gone once for every point.
TEST(Renumbered, EveryPointReplacesTheOneBefore) {
  constexpr std::int32_t n = 1000000;
  PointList list(std::vector<Point>(n, {3, 4, 0}));
  LongArray order;
  mOrdena::Ordena_Double_Index_Array(list.X, order, 1, n);
  for (std::int32_t i = 1; i <= n; ++i) list.Z(order(i)) = i;
  const Indicator progress;
  const IndexOutcome out = run(highest, list, 0.0, progress.reference);
  EXPECT_EQ(out.nNuevos, 1);
  EXPECT_EQ(out.first(1), order(n));
  EXPECT_EQ(out.first(2), 0);
  for (std::int32_t p = 1; p <= n; ++p) ASSERT_EQ(out.second(p), 1);
}

TEST(Renumbered, WhatTheFlagsHeldIsGone) {
  const PointList list({{2, 0, 0}, {2, 0, 0}});
  for (const Renumbering routine : {highest, all_axes}) {
    const Indicator progress;
    LongArray IndiceNuevos(7, 8), IndiceGeneral(-3, 30);
    mOrdena::BoolArray Repetido(0, 9);
    for (std::int32_t i = 0; i <= 9; ++i) Repetido(i) = true;
    std::int32_t nNuevos = 0;
    routine(list.nPtos, list.X, list.Y, list.Z, nNuevos, IndiceNuevos, IndiceGeneral, Repetido, 0.0,
            progress.reference);
    EXPECT_EQ(elements(Repetido), std::vector<bool>(3));
    EXPECT_EQ(elements(IndiceNuevos), (Numbers32{0, 1, 0}));
    EXPECT_EQ(elements(IndiceGeneral), (Numbers32{0, 1, 1}));
  }
}

// ---- One variable given twice ----------------------------------------------

TEST(UnrepeatedIndex, OneVariableGivenTwice) {
  PointList list({{1, 0, 0}, {2, 0, 0}, {1, 0, 0}, {5, 0, 0}});
  const Indicator progress;
  const RecordingInterface screen;
  LongArray a, b;
  mOrdena::BoolArray Repetido;
  std::int32_t count = 4;
  mOrdena::m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X(count, list.X, list.X, list.X, count, a,
                                                         0.0, progress.reference);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(elements(a), (Numbers32{0, 1, 2, 4, 0}));
  for (const Renumbering routine : {highest, all_axes}) {
    count = 4;
    routine(count, list.X, list.X, list.X, count, a, b, Repetido, 0.0, progress.reference);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(elements(a), (Numbers32{0, 1, 2, 4, 0}));
    EXPECT_EQ(elements(b), (Numbers32{0, 1, 2, 1, 3}));
    count = 4;
    routine(count, list.X, list.X, list.X, count, b, b, Repetido, 0.0, progress.reference);
    EXPECT_EQ(elements(b), (Numbers32{0, 1, 2, 4, 0})) << "the last to be written";
  }
  EXPECT_TRUE(screen.boxes.empty());
}

// ---- Against the steps restated --------------------------------------------

TEST(UnrepeatedIndex, AnyPointsAsRestated) {
  Numbers numbers(71);
  for_any_lists(numbers, {0.0, 0.0002, 0.5, 1.0, 0.003, -0.5, 1e-12},
                [](const PointList& list, double Precision) {
                  expect_indexes_as_restated(list, Precision, {});
                });
}

// So many points without ties that they are sorted by their numbers.
TEST(UnrepeatedIndex, ManyPointsWithoutTiesAsRestated) {
  Numbers numbers(77);
  for (const std::size_t count : {4095U, 4096U, 9000U}) {
    std::vector<Point> points;
    while (points.size() < count) {
      const double x = 0.01 * static_cast<double>(points.size());
      points.push_back({x, std::floor(numbers.between(0.0, 3.0)), numbers.small_whole()});
      if (numbers.below(5) == 0) points.push_back({x + 0.0001, points.back().y, points.back().z});
    }
    for (std::size_t p = points.size(); p > 1; --p) {
      std::swap(points[p - 1], points[numbers.below(p)]);
    }
    expect_indexes_as_restated(PointList(points), 0.0, {});
    if (HasFailure()) FAIL() << count;
  }
}

// Distances and tolerances about those at which keys, whole millionths, stop
// telling which point is in the box; far points, beside which nothing is told.
TEST(UnrepeatedIndex, AnyToleranceAsRestated) {
  Numbers numbers(75);
  const double units[] = {1e-7, 1e-6, 3e-6, 1e-5, 0.001, 1e4, 1e7};
  const double tolerances[] = {1e-300, 1e-9, 0.5, 1.0, 1.5, 6.0,  7.0,  8.0,
                               9.0,    10.0, 100, 1e3, 1e9, 1e12, 1e300};
  for (int round = 0; round < 6000; ++round) {
    const double unit = units[numbers.below(7)];
    const std::size_t count = 1 + numbers.below(round % 50 == 0 ? 1000 : 60);
    const double origin = numbers.below(2) == 0 ? 0.0 : 435000.0;
    // A few Y are as far off as the marks of cells repeat themselves, or further.
    const double far = std::ldexp(unit, static_cast<int>(numbers.below(70)));
    std::vector<Point> points;
    const auto at = [&](double span) {
      const double steps = std::floor(numbers.between(-span, span));
      return steps * unit + (numbers.below(3) == 0 ? numbers.between(-1e-6, 1e-6) : 0.0);
    };
    while (points.size() < count) {
      const double y = numbers.below(8) == 0 ? std::floor(numbers.between(-2.0, 3.0)) * far : 0.0;
      points.push_back({origin + at(9.0), y + at(3.0), at(2.0)});
    }
    double Precision = tolerances[numbers.below(15)] * (numbers.below(2) == 0 ? unit : 1e-6);
    if (numbers.below(20) == 0) Precision = -Precision;
    expect_indexes_as_restated(PointList(points), Precision, {});
    if (HasFailure()) FAIL() << "round " << round << ", " << Precision << " of " << unit;
  }
}

// What the host does to the coordinates while its indicator is set up counts for
// the boxes and no longer for the order.
TEST(UnrepeatedIndex, WhatTheHostChangesMeanwhileAsRestated) {
  Numbers numbers(76);
  const double far[] = {nan, 1e299, 1e301, -1e301, 1e12, -7e8, 699999999.9999999};
  for (int round = 0; round < 6000; ++round) {
    const std::size_t count = 1 + numbers.below(round % 100 == 0 ? 1000 : 40);
    PointList list(any_points(numbers, count, 0.5));
    const auto any_point = [&] { return static_cast<std::int32_t>(1 + numbers.below(count)); };
    restated::Bar bar;
    bar.change.axis = static_cast<int>(numbers.below(3));
    bar.change.point = any_point();
    DoubleArray* const axes[] = {&list.X, &list.Y, &list.Z};
    DoubleArray& axis = *axes[bar.change.axis];
    const double before = axis(bar.change.point);
    switch (numbers.below(5)) {
      case 0: bar.change.value = far[numbers.below(7)]; break;
      case 1: bar.change.value = axis(any_point()); break;
      case 2: bar.change.value = before + 1e-8; break;
      case 3: bar.change.value = before + numbers.between(-1.0, 1.0); break;
      default: bar.change.value = -before;
    }
    expect_indexes_as_restated(list, numbers.below(2) == 0 ? 0.5 : 0.0, bar);
    if (HasFailure()) FAIL() << "round " << round;
  }
}

// In a word there is no room for the distance between the old X and the new: what
// there is room for is the same.
TEST(UnrepeatedIndex, AChangeOfXByAPowerOfTwoOfMillionthsIsSeen) {
  struct Row {
    std::int32_t n;
    double by;
  };
  for (const Row& row : {Row{16385, 0x1p49}, Row{40000, 0x1p48}, Row{131073, 0x1p46}}) {
    PointList list(std::vector<Point>(static_cast<std::size_t>(row.n), {0, 0, 0}));
    for (std::int32_t p = 3; p <= row.n; ++p) list.X(p) = p * 0.01;
    const Indicator progress;
    progress.object->on_write = [&](std::size_t n) {
      if (n == 3) list.X(2) += row.by / 1e6;
    };
    EXPECT_EQ(in_X(list, 0.0, progress.reference).nNuevos, row.n) << row.n;
  }
}

// What the host does to the indexes while its indicator is set up is gone, but for
// what is never written.
TEST(UnrepeatedIndex, WhatTheHostWritesIntoTheIndexesMeanwhileIsWrittenOver) {
  const PointList list({{1, 0, 0}, {2, 0, 0}, {1, 0, 0}, {5, 0, 0}});
  PointList high = list;  // with which something could fail
  high.Z(4) = 1e305;
  struct Row {
    const char* rule;
    std::function<void(LongArray&)> to_first;
    std::function<void(LongArray&)> to_second;
    std::int32_t second_at_0;
  };
  const auto nothing = [](LongArray&) {};
  const auto scribble = [](LongArray& index) {
    for (std::int32_t i = index.lower(); i <= index.upper(); ++i) index(i) = 99;
  };
  const auto wider = [](LongArray& index) { index.size(-2, 7); };
  const auto longer = [](LongArray& index) { index.size(0, 7); };
  const auto of_two_dimensions = [](LongArray& index) { index.make(0, index.count(), 2); };
  const auto release = [](LongArray& index) { index.release(); };
  const Row table[] = {
      {"written", scribble, scribble, 99},
      {"the first made again", wider, scribble, 99},
      {"the first made longer", longer, nothing, 0},
      {"the first made of two dimensions", of_two_dimensions, nothing, 0},
      {"the first released", release, nothing, 0},
  };
  for (const Row& row : table) {
    for (const PointList* points : {&list, static_cast<const PointList*>(&high)}) {
      const RecordingInterface screen;
      IndexOutcome out;
      const Indicator progress;
      progress.object->on_write = [&](std::size_t n) {
        if (n != 3) return;
        row.to_first(out.first);
        if (out.second.allocated()) row.to_second(out.second);
      };
      mOrdena::m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X(
          4, points->X, points->Y, points->Z, out.nNuevos, out.first, 0.0, progress.reference);
      EXPECT_EQ(out.nNuevos, 3) << row.rule;
      EXPECT_EQ(out.first.lower(), 0) << row.rule;
      EXPECT_EQ(out.first.dimensions(), 1) << row.rule;
      EXPECT_EQ(elements(out.first), (Numbers32{0, 1, 2, 4, 0})) << row.rule;
      for (const Renumbering routine : {highest, all_axes}) {
        progress.object->written.clear();
        routine(4, points->X, points->Y, points->Z, out.nNuevos, out.first, out.second,
                out.Repetido, 0.0, progress.reference);
        EXPECT_EQ(out.nNuevos, 3) << row.rule;
        EXPECT_EQ(out.first.lower(), 0) << row.rule;
        EXPECT_EQ(out.first.dimensions(), 1) << row.rule;
        EXPECT_EQ(elements(out.first), (Numbers32{0, 1, 2, 4, 0})) << row.rule;
        EXPECT_EQ(elements(out.second), (Numbers32{row.second_at_0, 1, 2, 1, 3})) << row.rule;
      }
      EXPECT_EQ(box_of(screen), "") << row.rule;
    }
  }
}

TEST(UnrepeatedIndex, AGeneralIndexThatTheHostMakesAnotherMeanwhileIs9AfterWhatFits) {
  const PointList list({{1, 0, 0}, {2, 0, 0}, {1, 0, 0}, {5, 0, 0}});
  struct Row {
    const char* rule;
    std::function<void(LongArray&)> change;
    Numbers32 left;
  };
  const Row table[] = {
      {"too short", [](LongArray& index) { index.size(0, 3); }, {0, 1, 2, 1}},
      {"of two dimensions", [](LongArray& index) { index.make(0, 5, 2); }, Numbers32(5)},
  };
  for (const Row& row : table) {
    for (const Renumbering routine : {highest, all_axes}) {
      const RecordingInterface screen;
      IndexOutcome out;
      const Indicator progress;
      progress.object->on_write = [&](std::size_t n) {
        if (n == 3) row.change(out.second);
      };
      routine(4, list.X, list.Y, list.Z, out.nNuevos, out.first, out.second, out.Repetido, 0.0,
              progress.reference);
      EXPECT_EQ(box_of(screen), boxed(routine == all_axes ? title_2D : title_2, 9)) << row.rule;
      EXPECT_EQ(out.nNuevos, -77) << row.rule;
      EXPECT_EQ(elements(out.first), Numbers32(5)) << row.rule;
      EXPECT_EQ(elements(out.second), row.left) << row.rule;
    }
  }
}

// The numbers are written of the points that are left; what stands above stays.
TEST(UnrepeatedIndex, AHostThatLowersTheNumberOfPointsKeepsWhatItWroteAbove) {
  for (const Renumbering routine : {highest, all_axes}) {
    PointList list({{1, 0, 0}, {2, 0, 0}, {3, 0, 0}});
    const RecordingInterface screen;
    IndexOutcome out;
    const Indicator progress;
    progress.object->on_write = [&](std::size_t n) {
      if (n != 3) return;
      list.nPtos = 2;
      for (std::int32_t p = 0; p <= 3; ++p) out.first(p) = out.second(p) = 99;
    };
    routine(list.nPtos, list.X, list.Y, list.Z, out.nNuevos, out.first, out.second, out.Repetido,
            0.0, progress.reference);
    EXPECT_EQ(box_of(screen), "");
    EXPECT_EQ(out.nNuevos, 2);
    EXPECT_EQ(elements(out.first), (Numbers32{0, 1, 2, 0})) << "a whole copy";
    EXPECT_EQ(elements(out.second), (Numbers32{99, 1, 2, 99}));
  }
}

TEST(UnrepeatedIndex, AnIndexThatTheHostLocksMeanwhileIsWrittenButNotReplaced) {
  const PointList list({{1, 0, 0}, {2, 0, 0}, {1, 0, 0}, {5, 0, 0}});
  for (const Renumbering routine : {highest, all_axes}) {
    for (const bool first : {true, false}) {
      const RecordingInterface screen;
      IndexOutcome out;
      std::optional<ArrayLock> lock;
      const Indicator progress;
      progress.object->on_write = [&](std::size_t n) {
        if (n == 3) lock.emplace(first ? out.first : out.second);
      };
      routine(4, list.X, list.Y, list.Z, out.nNuevos, out.first, out.second, out.Repetido, 0.0,
              progress.reference);
      const char* const title = routine == all_axes ? title_2D.c_str() : title_2.c_str();
      EXPECT_EQ(box_of(screen), boxed(title, first ? 10 : 0));
      EXPECT_EQ(out.nNuevos, 3) << "written before the index that is replaced";
      EXPECT_EQ(elements(out.first), first ? Numbers32(5) : (Numbers32{0, 1, 2, 4, 0}));
      EXPECT_EQ(elements(out.second), (Numbers32{0, 1, 2, 1, 3}));
    }
  }
}

TEST(UnrepeatedIndex, WhatAFailureLeavesAsRestated) {
  Numbers numbers(72);
  int failed = 0;
  for (int round = 0; round < 4000; ++round) {
    auto [list, point, shorter, Precision, bar] = AnyCall(numbers);
    const auto odd = [&] { return AnyCall::odd[numbers.below(6)]; };
    switch (numbers.below(7)) {
      case 0: list.Y(point) = odd(); break;
      case 1: list.Z(point) = odd(); break;
      case 2: list.X.size_keeping(0, shorter); break;
      case 3: list.Y.size_keeping(0, shorter); break;
      case 4: list.Z.size_keeping(0, shorter); break;
      case 5: bar.fails_at = 1 + static_cast<int>(numbers.below(4)); break;
      default: Precision = odd();
    }
    if (std::isnan(Precision)) continue;  // a row of its own below
    failed += restated::ordered_in_X(list.nPtos, restated::row_of(list.X), restated::row_of(list.Y),
                                     restated::row_of(list.Z), Precision, bar)
                  .number != 0;
    expect_indexes_as_restated(list, Precision, bar);
    if (HasFailure()) FAIL() << "round " << round;
  }
  EXPECT_GT(failed, 500);
}

// ---- Failures --------------------------------------------------------------

TEST(UnrepeatedIndex, FailuresThatAreTrapped) {
  const std::vector<Point> two = {{1, 1, 1}, {2, 2, 2}};
  struct Row {
    const char* rule;
    std::int32_t nPtos;
    double Precision;
    std::vector<Point> points;
    int number;
    std::size_t writes;
    bool sized;
  };
  const double large = 1e308;
  const double most = std::numeric_limits<double>::max();
  const Row table[] = {
      {"no points: 32000 / 0, before the indicator", 0, 0, two, 11, 0, true},
      {"a negative number of points", -1, 0, two, 9, 0, false},
      {"the lowest number of all", lowest_long, 0, two, 9, 0, false},
      {"too few elements", 3, 0, two, 9, 0, true},
      {"a precision that is no number", 2, nan, two, 6, 0, true},
      {"a high bound that overflows", 2, large, {{0, large, 0}, {1, 2, 0}}, 6, 3, true},
      {"a low bound that overflows", 2, large, {{0, -large, 0}, {1, 2, 0}}, 6, 3, true},
      {"a bound that the precision alone makes overflow",
       2,
       most,
       {{0, 1e300, 0}, {1, 2, 0}},
       6,
       3,
       true},
      {"NaN against the box", 2, 1, {{0, 0, 0}, {1, nan, 0}}, 6, 3, true},
      {"a box about NaN", 2, 1, {{0, nan, 0}, {1, 0, 0}}, 6, 3, true},
  };
  for (const Row& row : table) {
    PointList list(row.points);
    list.nPtos = row.nPtos;
    const auto size = row.sized ? static_cast<std::size_t>(row.nPtos) + 1 : 0;
    Indicator progress;
    IndexOutcome out = in_X(list, row.Precision, progress.reference);
    EXPECT_EQ(out.box, boxed(title_in_X, row.number)) << row.rule;
    EXPECT_EQ(out.nNuevos, -77) << row.rule;
    EXPECT_EQ(elements(out.first), Numbers32(size)) << row.rule;
    EXPECT_EQ(progress.object->written.size(), row.writes) << row.rule;
    for (const Renumbering routine : {highest, all_axes}) {
      Indicator again;
      out = run(routine, list, row.Precision, again.reference);
      EXPECT_EQ(out.box, boxed(routine == highest ? title_2 : title_2D, row.number)) << row.rule;
      EXPECT_EQ(out.nNuevos, -77) << row.rule;
      EXPECT_EQ(elements(out.first), Numbers32(size)) << row.rule;
      EXPECT_EQ(elements(out.second), Numbers32(size)) << row.rule;
      EXPECT_EQ(elements(out.Repetido), std::vector<bool>(size)) << row.rule;
      EXPECT_EQ(again.object->written.size(), row.writes) << row.rule;
    }
  }
}

TEST(UnrepeatedIndex, ABoundThatOverflowsComesBeforeTheCoordinateComparedWithIt) {
  PointList list({{0, 1.5e308, 0}, {1, 2, 0}});
  list.Y.size_keeping(0, 1);
  const Indicator progress;
  EXPECT_EQ(in_X(list, 1e308, progress.reference).box, boxed(title_in_X, 6));
  EXPECT_EQ(in_X(list, 1.0, progress.reference).box, boxed(title_in_X, 9));
  EXPECT_EQ(run(highest, list, 1e308, progress.reference).box, boxed(title_2, 6));
  EXPECT_EQ(run(all_axes, list, 1e308, progress.reference).box, boxed(title_2D, 6));
  EXPECT_EQ(run(flagging, list, 1e308, progress.reference).box, boxed(title_2, 6));
}

TEST(UnrepeatedIndex, AnAxisIsComparedBeforeTheNextIsRead) {
  PointList list({{0, 0, 0}, {0, nan, 0}});
  list.Z.size_keeping(0, 1);
  const Indicator progress;
  EXPECT_EQ(run(all_axes, list, 1.0, progress.reference).box, boxed(title_2D, 6));
  list.Y(2) = 0;
  EXPECT_EQ(run(all_axes, list, 1.0, progress.reference).box, boxed(title_2D, 9));

  PointList moved({{0, 0, 0}, {1, 0, 0}});
  moved.Y.size_keeping(0, 1);
  const auto set_X_meanwhile = [&](double value) {
    const Indicator indicator;
    indicator.object->on_write = [&moved, value](std::size_t n) {
      if (n == 3) moved.X(2) = value;
    };
    return indicator.reference;
  };
  EXPECT_EQ(in_X(moved, 1.0, set_X_meanwhile(nan)).box, boxed(title_in_X, 6));
  moved.X(2) = 1;
  EXPECT_EQ(in_X(moved, 1.0, set_X_meanwhile(2.0)).box, boxed(title_in_X, 9));
  for (const Renumbering routine : {highest, all_axes, flagging}) {
    moved.X(2) = 1;
    EXPECT_EQ(run(routine, moved, 1.0, set_X_meanwhile(nan)).box,
              boxed(routine == all_axes ? title_2D : title_2, 6));
  }
}

TEST(UnrepeatedIndex, AnAnchorMayOverflowWhenNothingIsComparedWithIt) {
  const double large = 1e308;
  const Indicator progress;
  // The last point opens a cluster, and no point comes after it.
  const IndexOutcome out =
      in_X(PointList({{0, 0, 0}, {1, large * 1.5, 0}}), large, progress.reference);
  EXPECT_EQ(out.box, "");
  EXPECT_EQ(elements(out.first), (Numbers32{0, 1, 2}));
  const IndexOutcome one = in_X(PointList({{0, large, 0}}), large, progress.reference);
  EXPECT_EQ(one.box, "");
  EXPECT_EQ(one.nNuevos, 1);
}

TEST(UnrepeatedIndex, AnInfinityOfTheCallersIsOneLikeAnyOther) {
  const Indicator progress;
  const IndexOutcome out =
      in_X(PointList({{0, inf, 0}, {0, inf, 0}, {0, 3, 0}}), 1, progress.reference);
  EXPECT_EQ(out.box, "");
  EXPECT_EQ(elements(out.first), (Numbers32{0, 1, 2, 3}));  // not strictly between its own bounds
}

TEST(UnrepeatedIndex, TheBoxIsCaptionedWithTheEngine) {
  const PointList list({{1, 1, 1}});
  const RecordingInterface screen;
  std::int32_t nNuevos = 0;
  LongArray Indice;
  mOrdena::m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X(1, list.X, list.Y, list.Z, nNuevos, Indice,
                                                         0.0, nullptr);
  ASSERT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(screen.boxes[0].caption, "Orv2_Geo.mOrdena");
  EXPECT_EQ(screen.boxes[0].text, title_in_X + " 91:Variable de objeto no establecida");
}

TEST(UnrepeatedIndex, LockedIndexesAre10) {
  const PointList list({{1, 1, 1}});
  const Indicator progress;
  IndexOutcome out;
  for (LongArray* locked : {&out.first, &out.second}) {
    const RecordingInterface screen;
    const ArrayLock lock(*locked);
    highest(1, list.X, list.Y, list.Z, out.nNuevos, out.first, out.second, out.Repetido, 0.0,
            progress.reference);
    EXPECT_EQ(box_of(screen), boxed(title_2, 10));
    EXPECT_EQ(out.nNuevos, -77);
  }
}

// ---- Memory ----------------------------------------------------------------

// Refuses every allocation in turn: the routine returns, shows 7 or has done
// without, and leaks nothing. Answers with how often it showed 7.
template <class Call>
int refuse_each_allocation(const std::string& title, Call call) {
  const IndexOutcome expected = call();
  int shown = 0;
  for (int let_pass = 0;; ++let_pass) {
    const long before = allocations_in_use();
    bool refused = false;
    {
      std::optional<RefusedAllocation> refusal(std::in_place, let_pass);
      const IndexOutcome out = call();
      refused = RefusedAllocation::happened();
      refusal.reset();
      if (out.box.empty()) {
        EXPECT_EQ(elements(out.first), elements(expected.first)) << let_pass;
        EXPECT_EQ(out.nNuevos, expected.nNuevos) << let_pass;
      } else {
        EXPECT_EQ(out.box, boxed(title, 7)) << let_pass;
        EXPECT_EQ(out.nNuevos, -77) << let_pass;
        ++shown;
      }
    }
    EXPECT_EQ(allocations_in_use(), before) << let_pass;
    if (!refused) return shown;
  }
}

TEST(UnrepeatedIndex, RefusedMemoryIs7AndLeaksNothing) {
  Numbers numbers(73);
  auto points = any_points(numbers, 30, 0.5);
  const PointList list(points);
  const ObjectRef progress(new Silent);
  // What the sort keeps on the thread about the characters of keys is there once a
  // value that has no key as a number has made all of them texts.
  points.push_back({1234567890.5, 0, 0});
  in_X(PointList(points), 0.0, progress);
  EXPECT_EQ(refuse_each_allocation(title_in_X, [&] { return in_X(list, 0.0, progress); }), 1);
  for (const Renumbering routine : {highest, all_axes, flagging}) {
    EXPECT_EQ(refuse_each_allocation(routine == all_axes ? title_2D : title_2,
                                     [&] { return run(routine, list, 0.0, progress); }),
              routine == flagging ? 3 : 5);
  }
  // Texts, or a Z with which something could fail, take memory besides.
  PointList high = list;
  high.Z(1) = 1e305;
  for (const PointList& other : {PointList(points), high}) {
    EXPECT_GE(refuse_each_allocation(title_in_X, [&] { return in_X(other, 0.0, progress); }), 2);
    for (const Renumbering routine : {highest, all_axes}) {
      EXPECT_GE(refuse_each_allocation(routine == all_axes ? title_2D : title_2,
                                       [&] { return run(routine, other, 0.0, progress); }),
                3 + 4);  // the order, the numbers, the points replaced twice
    }
  }
}

TEST(UnrepeatedIndex, LessThan64BytesForEachPointBesidesTheIndexes) {
  Numbers numbers(74);
  const std::size_t count = 100000;
  std::vector<Point> points;
  while (points.size() < count) {
    points.push_back({numbers.coordinate(), numbers.coordinate(), numbers.coordinate()});
    if (numbers.below(10) == 0) points.back() = points[numbers.below(points.size())];
  }
  const PointList list(points);
  const ObjectRef progress(new Silent);
  const RecordingInterface screen;
  const auto beyond = [&](std::size_t bytes_of_indexes, auto&& work) {
    return (peak_bytes_of(work) - bytes_of_indexes * (count + 1)) / count;
  };
  std::int32_t nNuevos = 0;
  LongArray a, b;
  mOrdena::BoolArray flags;
  EXPECT_LT(beyond(4,
                   [&] {
                     mOrdena::m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X(
                         list.nPtos, list.X, list.Y, list.Z, nNuevos, a, 0.0, progress);
                   }),
            64U);
  a.release();
  for (const Renumbering routine : {highest, all_axes, flagging}) {
    EXPECT_LT(beyond(4 + 4 + 2,
                     [&] {
                       routine(list.nPtos, list.X, list.Y, list.Z, nNuevos, a, b, flags, 0.0,
                               progress);
                     }),
              64U);
    a.release(), b.release(), flags.release();
  }
  EXPECT_LT(static_cast<std::size_t>(nNuevos), count);
  EXPECT_TRUE(screen.boxes.empty());
}

}  // namespace
}  // namespace orv2_geo

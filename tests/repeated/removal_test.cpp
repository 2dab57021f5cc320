#include <limits>

#include "tests/repeated/as_restated.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

using Numbers32 = std::vector<std::int32_t>;
using Values = std::vector<double>;

const cgeo_Ordena sorts;

// ---- Flags and sequence ----------------------------------------------------

struct FlagRow {
  const char* rule;
  std::vector<Point> points;
  double Precision;
  std::int32_t nNuevos;
  Numbers32 Secuencia, Indice;  // from subscript 0
  std::vector<bool> Repetido;
};

TEST(Flagging, Rules) {
  const FlagRow table[] = {
      {"one point", {{7, 8, 9}}, 0, 1, {0, 1}, {0, 1}, {false, false}},
      {"no repeats: X order, and each its own number",
       {{9, 0, 0}, {0, 0, 0}, {5, 0, 0}},
       0,
       3,
       {0, 2, 3, 1},
       {0, 1, 2, 3},
       {false, false, false, false}},
      {"a repeat of a higher number is flagged",
       {{9, 0, 0}, {0, 0, 0}, {0, 0, 0}, {5, 0, 0}},
       0,
       3,
       {0, 2, 3, 4, 1},
       {0, 1, 2, 2, 3},
       {false, false, false, true, false}},
      // Point 1 takes over from 2 and writes itself under its own number, over
      // what stood there; the place itself is written next.
      {"a lower number takes over",
       {{0.25, 0, 0}, {0, 0, 0}},
       1,
       1,
       {0, 1, 1},
       {0, 1, 1},
       {false, false, true}},
      {"an entry under a point's number that the sweep does not come back to",
       {{0.5, 0, 0}, {0, 0, 0}, {0.25, 0, 0}},
       1,
       1,
       {0, 1, 3, 1},
       {0, 1, 1, 1},
       {false, false, true, true}},
      // Flagged point 2 reads the number at Secuencia(2) = 3, still a cluster's.
      {"a flagged point reads a cluster number above it",
       {{9, 0, 0}, {9, 0, 0}, {5, 0, 0}, {1, 0, 0}},
       0,
       3,
       {0, 4, 3, 1, 2},
       {0, 1, 2, 2, 3},
       {false, false, true, false, false}},
      {"Z does not count",
       {{0, 0, -1e9}, {0, 0, 1e9}},
       0,
       1,
       {0, 1, 2},
       {0, 1, 1},
       {false, false, true}},
      {"exactly the tolerance apart",
       {{0, 0, 0}, {0, 0.5, 0}},
       0.5,
       2,
       {0, 1, 2},
       {0, 1, 2},
       {false, false, false}},
      {"a negative precision",
       {{0, 0, 0}, {0, 0, 0}},
       -1,
       2,
       {0, 1, 2},
       {0, 1, 2},
       {false, false, false}},
  };
  for (const FlagRow& row : table) {
    const Indicator progress;
    const IndexOutcome out =
        run(flagging, PointList(row.points), row.Precision, progress.reference);
    EXPECT_EQ(out.box, "") << row.rule;
    EXPECT_EQ(out.nNuevos, row.nNuevos) << row.rule;
    EXPECT_EQ(elements(out.first), row.Secuencia) << row.rule;
    EXPECT_EQ(elements(out.second), row.Indice) << row.rule;
    EXPECT_EQ(elements(out.Repetido), row.Repetido) << row.rule;
  }
}

TEST(Flagging, ZIsNeverRead) {
  PointList list({{0, 0, 0}, {1, 0, 0}});
  list.Z.release();
  const Indicator progress;
  const IndexOutcome out = run(flagging, list, 0.0, progress.reference);
  EXPECT_EQ(out.box, "");
  EXPECT_EQ(out.nNuevos, 2);
}

// Found by the fuzzer: the bounds of Y overflow, and the point compared has no Y.
TEST(Removal, ABoundThatOverflowsComesBeforeTheCoordinateComparedWithIt) {
  PointList list({{0, -1.5e308, 0}, {1, 2, 0}});
  list.Y.size_keeping(0, 1);
  for (const double Precision : {1e308, -1e308, 1.0}) {
    expect_removal_as_restated(list, Precision, {});
  }
  const Indicator progress;
  EXPECT_EQ(Removal(list, 1e308, progress.reference).box, boxed(title_2, 6));
  EXPECT_EQ(Removal(list, 1.0, progress.reference).box, boxed(title_2, 9));
}

TEST(Flagging, ABoundThatOverflowsLeavesTheSweepWhereItWas) {
  const double large = 1e308;
  const Indicator progress;
  // The second point opens the cluster whose bound overflows at the third.
  const IndexOutcome out = run(flagging, PointList({{3, 0, 0}, {0, 0, 0}, {1, large * 1.5, 0}}),
                               large, progress.reference);
  EXPECT_EQ(out.box, boxed(title_2, 6));
  EXPECT_EQ(out.nNuevos, -77);
  EXPECT_EQ(elements(out.first), (Numbers32{0, 2, 3, 0}));
  EXPECT_EQ(elements(out.second), (Numbers32{0, 0, 1, 2}));
  EXPECT_EQ(progress.object->written, set_up(3.0 / 10667.0));
}

// ---- The public member -----------------------------------------------------

struct RemovalRow {
  const char* rule;
  std::vector<Point> points;
  double Precision;
  std::int32_t nPtos;
  Values X, Y, Z;    // from subscript 1
  Numbers32 Indice;  // from subscript 0
};

TEST(Removal, Rules) {
  const RemovalRow table[] = {
      {"no repeats: X order",
       {{9, 1, 7}, {0, 2, 8}, {5, 3, 9}},
       0,
       3,
       {0, 5, 9},
       {2, 3, 1},
       {8, 9, 7},
       {0, 2, 3, 1}},
      {"the flag is a point's and the entry a place's: both repeats stay, point 4 is lost",
       {{9, 0, 1}, {0, 0, 2}, {0, 0, 3}, {5, 0, 4}},
       0,
       3,
       {0, 0, 9},
       {0, 0, 0},
       {2, 3, 1},
       {0, 2, 3, 1, 3}},
      {"one point", {{4, 5, 6}}, 0, 1, {4}, {5}, {6}, {0, 1}},
      {"all on one spot", {{4, 5, 1}, {4, 5, 2}, {4, 5, 3}}, 0, 1, {4}, {5}, {1}, {0, 1, 1, 1}},
      {"a negative precision keeps all",
       {{4, 5, 1}, {4, 5, 2}},
       -1,
       2,
       {4, 4},
       {5, 5},
       {1, 2},
       {0, 1, 2}},
  };
  for (const RemovalRow& row : table) {
    for (const Bool Aviso : {Bool(false), Bool(true)}) {
      const Indicator progress;
      const Removal out(PointList(row.points), row.Precision, progress.reference, Aviso);
      EXPECT_EQ(out.box, "") << row.rule;
      EXPECT_EQ(out.thrown, 0) << row.rule;
      EXPECT_EQ(out.list.nPtos, row.nPtos) << row.rule;
      const auto from_zero = [](const Values& values) {
        Values all = {-999.0};
        all.insert(all.end(), values.begin(), values.end());
        return all;
      };
      EXPECT_EQ(elements(out.list.X), from_zero(row.X)) << row.rule;
      EXPECT_EQ(elements(out.list.Y), from_zero(row.Y)) << row.rule;
      EXPECT_EQ(elements(out.list.Z), from_zero(row.Z)) << row.rule;
      EXPECT_EQ(elements(out.Indice), row.Indice) << row.rule;
    }
  }
}

TEST(Removal, AnyPointsAsRestated) {
  Numbers numbers(81);
  for_any_lists(numbers, {0.0, 0.0002, 0.5, 1.0, 0.003, -0.5},
                [](const PointList& list, double Precision) {
                  expect_removal_as_restated(list, Precision, {});
                });
}

TEST(Removal, WhatAFailureLeavesAsRestated) {
  Numbers numbers(82);
  int trapped = 0;
  int thrown = 0;
  for (int round = 0; round < 4000; ++round) {
    auto [list, point, shorter, Precision, bar] = AnyCall(numbers);
    switch (numbers.below(6)) {
      case 0: list.Y(point) = AnyCall::odd[numbers.below(5)]; break;  // all but zero
      case 1: list.X.size_keeping(0, shorter); break;
      case 2: list.Y.size_keeping(0, shorter); break;
      case 3: list.Z.size_keeping(0, shorter); break;
      case 4: list.Z.release(); break;
      default: bar.fails_at = 1 + static_cast<int>(numbers.below(4));
    }
    using restated::row_of;
    const auto expected = restated::removed(list.nPtos, row_of(list.X), row_of(list.Y),
                                            row_of(list.Z), Precision, bar);
    trapped += expected.number != 0;
    thrown += expected.thrown != 0;
    expect_removal_as_restated(list, Precision, bar);
    if (HasFailure()) FAIL() << "round " << round;
  }
  EXPECT_GT(trapped, 500);
  EXPECT_GT(thrown, 500);
}

TEST(Removal, ATrappedFailureIsPassedOver) {
  const std::vector<Point> two = {{1, 1, 1}, {2, 2, 2}};
  const Removal out(PointList(two), 0.0, nullptr);
  EXPECT_EQ(out.box, boxed(title_2, 91));
  EXPECT_EQ(out.thrown, 0);
  EXPECT_EQ(out.list.nPtos, 0);
  for (const DoubleArray* array : {&out.list.X, &out.list.Y, &out.list.Z}) {
    EXPECT_EQ(array->lower(), 0);
    EXPECT_EQ(elements(*array), Values{-999.0});
  }
  EXPECT_EQ(elements(out.Indice), (Numbers32{0, 0, 0}));
}

TEST(Removal, NoPointsEndWithElementZeroAlone) {
  for (const bool with_arrays : {true, false}) {
    PointList list({{1, 1, 1}, {2, 2, 2}});
    list.nPtos = 0;
    if (!with_arrays) list.X.release(), list.Y.release(), list.Z.release();
    const Indicator progress;
    const Removal out(list, 0.0, progress.reference);
    EXPECT_EQ(out.box, boxed(title_2, 11));
    EXPECT_EQ(out.thrown, 0);
    EXPECT_EQ(out.list.nPtos, 0);
    EXPECT_EQ(elements(out.list.X), Values{with_arrays ? -999.0 : 0.0});
    EXPECT_EQ(elements(out.list.Z), Values{with_arrays ? -999.0 : 0.0});
    EXPECT_EQ(elements(out.Indice), Numbers32{0});
    EXPECT_TRUE(progress.object->written.empty());
  }
}

TEST(Removal, ANegativeNumberOfPointsIs9) {
  PointList list({{1, 1, 1}});
  list.nPtos = -1;
  const Indicator progress;
  const Removal out(list, 0.0, progress.reference);
  EXPECT_EQ(out.box, "");
  EXPECT_EQ(out.thrown, 9);
  EXPECT_EQ(out.list.nPtos, -1);
  EXPECT_FALSE(out.Indice.allocated());
}

TEST(Removal, ALowerBoundOtherThan0Is9AtTheEnd) {
  for (const bool only_z : {false, true}) {
    PointList list({{2, 20, 200}, {1, 10, 100}, {2, 20, 300}});
    const auto from_1 = [](DoubleArray& array) {
      DoubleArray made(1, 3);
      for (std::int32_t i = 1; i <= 3; ++i) made(i) = array(i);
      array = made;
    };
    from_1(list.Z);
    if (!only_z) from_1(list.X);
    const Indicator progress;
    const Removal out(list, 0.0, progress.reference);
    EXPECT_EQ(out.box, "");
    EXPECT_EQ(out.thrown, 9);
    EXPECT_EQ(out.list.nPtos, 2);
    EXPECT_EQ(out.list.X.lower(), only_z ? 0 : 1);
    EXPECT_EQ(out.list.X.upper(), only_z ? 2 : 3);
    EXPECT_EQ(out.list.X(1), 1.0);
    EXPECT_EQ(out.list.Z.upper(), 3);
  }
}

// Nothing was found, so that every entry of the sequence is 0: of an array from 1 it is none.
TEST(Removal, AfterATrappedFailurePoint0IsMovedWhereThereIsOne) {
  PointList list({{2, 20, 200}, {1, 10, 100}});
  DoubleArray from_1(1, 2);
  from_1(1) = 200, from_1(2) = 100;
  list.Z = from_1;
  const Removal out(list, 0.0, nullptr);
  EXPECT_EQ(out.box, boxed(title_2, 91));
  EXPECT_EQ(out.thrown, 9);
  EXPECT_EQ(elements(out.list.X), (Values{-999, -999, 1}));
  EXPECT_EQ(elements(out.list.Y), (Values{-999, -999, 10}));
  EXPECT_EQ(elements(out.list.Z), (Values{200, 100}));
  EXPECT_EQ(out.list.nPtos, 2);
}

TEST(Removal, OneArrayForAllCoordinates) {
  const Indicator progress;
  DoubleArray values(0, 3);
  values(1) = 5, values(2) = 3, values(3) = 4;
  LongArray Indice;
  std::int32_t nPtos = 3;
  sorts.Quita_Puntos_Repetidos_XY_con_indice1(nPtos, values, values, values, Indice,
                                              progress.reference, 0.0, false);
  EXPECT_EQ(nPtos, 3);
  EXPECT_EQ(elements(values), (Values{0, 3, 4, 5}));
}

// Point 3 repeats point 5, and has the lower number: it takes place 3 of the order, which the
// sweep has passed, and its own.
TEST(Removal, APointMayBeChosenTwice) {
  PointList list({{7, 2.6, 0}, {1, 1, 0}, {5.2, 1.2, 0}, {3, 2.4, 0}, {5, 1, 0}, {9, 1.4, 0}});
  const Removal out(list, 0.5, Indicator().reference);
  EXPECT_EQ(out.list.nPtos, 5);
  EXPECT_EQ(elements(out.list.X), (Values{-999, 1, 3, 5.2, 5.2, 9}));
}

TEST(Removal, ALockedIndexIsPassedOverUntilItIsWritten) {
  PointList list({{2, 0, 0}, {1, 0, 0}});
  const Indicator progress;
  const RecordingInterface screen;
  LongArray Indice;
  const ArrayLock lock(Indice);
  EXPECT_EQ(failure_of([&] {
              sorts.Quita_Puntos_Repetidos_XY_con_indice1(list.nPtos, list.X, list.Y, list.Z,
                                                          Indice, progress.reference, 0.0, false);
            }),
            9);
  EXPECT_EQ(box_of(screen), boxed(title_2, 10));
  EXPECT_EQ(list.nPtos, 2);
}

TEST(Removal, AFailureIsSignedWithTheClass) {
  std::int32_t nPtos = -5;
  DoubleArray none;
  LongArray Indice;
  try {
    sorts.Quita_Puntos_Repetidos_XY_con_indice1(nPtos, none, none, none, Indice, nullptr, 0.0,
                                                false);
    FAIL();
  } catch (const RunFailure& failure) {
    EXPECT_EQ(failure.source(), "Orv2_Geo.cgeo_Ordena");
  }
}

TEST(SwapStrings, SwapsNothing) {
  const Text a(u"one"), b(u"two");
  const std::int32_t number = 7;
  sorts.SwapStrings(a, b, number);
  EXPECT_EQ(a.view(), u"one");
  EXPECT_EQ(b.view(), u"two");
  EXPECT_EQ(number, 7);
}

// ---- Neighbours ------------------------------------------------------------

struct NeighbourRow {
  const char* rule;
  std::vector<Point> points;
  std::int32_t nPtos;
  Values X;  // from subscript 0
};

TEST(Neighbours, Rules) {
  const NeighbourRow table[] = {
      {"of the first run the first stays, of a later one the first two",
       {{1, 0, 0}, {1, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 0, 0}, {2, 0, 0}},
       3,
       {-999, 1, 2, 2, 2, 2, 2}},
      {"a chain near all the way: its first point",
       {{0, 0, 0}, {0.00015, 0, 0}, {0.0003, 0, 0}},
       1,
       {-999, 0, 0.00015, 0.0003}},
      {"one point", {{4, 5, 6}}, 1, {-999, 4}},
      {"no neighbours: X order", {{3, 0, 0}, {1, 0, 0}, {2, 0, 0}}, 3, {-999, 1, 2, 3}},
      {"exactly the tolerance is not near", {{0, 0, 0}, {0.0002, 0, 0}}, 2, {-999, 0, 0.0002}},
      {"exactly the tolerance in Y is not near", {{0, 0, 0}, {0, -0.0002, 0}}, 2, {-999, 0, 0}},
      {"the predecessor counts, kept or not",
       {{5, 0, 0}, {6, 0, 0}, {6.0001, 0, 0}, {6.0002, 0, 0}, {6.0003, 0, 0}},
       3,
       {-999, 5, 6, 6.0001, 6.0002, 6.0003}},
  };
  for (const NeighbourRow& row : table) {
    for (const Bool Aviso : {Bool(false), Bool(true)}) {
      const RecordingInterface screen;
      PointList list(row.points);
      remove_neighbours(list, Aviso);
      EXPECT_EQ(box_of(screen), "") << row.rule;
      EXPECT_EQ(list.nPtos, row.nPtos) << row.rule;
      EXPECT_EQ(elements(list.X), row.X) << row.rule;
    }
  }
}

TEST(Neighbours, CoordinatesTravelTogetherAndTheRestStays) {
  PointList list({{2, 20, 200}, {1, 10, 100}, {2, 20, 300}, {2, 20, 400}});
  remove_neighbours(list);
  EXPECT_EQ(list.nPtos, 3);
  EXPECT_EQ(elements(list.X), (Values{-999, 1, 2, 2, 2}));
  EXPECT_EQ(elements(list.Y), (Values{-999, 10, 20, 20, 20}));
  EXPECT_EQ(elements(list.Z), (Values{-999, 100, 200, 300, 400}));
}

TEST(Neighbours, AnyPointsAsRestated) {
  Numbers numbers(83);
  for (int round = 0; round < 3000; ++round) {
    const std::size_t count = numbers.below(round % 50 == 0 ? 2500 : 40);
    PointList list(any_points(numbers, count, 0.0002));
    const auto shorter = static_cast<std::int32_t>(numbers.below(count + 1));
    switch (numbers.below(8)) {
      case 0: list.X.size_keeping(0, shorter); break;
      case 1: list.Y.size_keeping(0, shorter); break;
      case 2: list.Z.size_keeping(0, shorter); break;
      case 3: list.Y(shorter) = nan; break;
      case 4: list.Y(shorter) = std::numeric_limits<double>::max(); break;
      default: break;
    }
    expect_neighbours_as_restated(list);
    if (HasFailure()) FAIL() << "round " << round;
  }
}

TEST(Neighbours, FailuresThatAreTrapped) {
  struct Row {
    const char* rule;
    std::int32_t nPtos;
    int number;
  };
  for (const Row& row :
       {Row{"no points", 0, 9}, Row{"a negative number", -1, 9},
        Row{"the lowest number of all", -2147483647 - 1, 9}, Row{"too few elements", 5, 9}}) {
    PointList list({{1, 1, 1}, {1, 1, 1}});
    list.nPtos = row.nPtos;
    const RecordingInterface screen;
    remove_neighbours(list);
    EXPECT_EQ(box_of(screen), boxed(title_2D_0, row.number)) << row.rule;
    EXPECT_EQ(list.nPtos, row.nPtos) << row.rule;
    EXPECT_EQ(elements(list.X), (Values{-999, 1, 1})) << row.rule;
  }
}

TEST(Neighbours, AShortZFailsWhenTheNumberIsReplacedAlready) {
  PointList list({{3, 0, 0}, {1, 0, 0}, {1, 0, 0}});
  list.Z.size_keeping(0, 2);
  const RecordingInterface screen;
  remove_neighbours(list);
  EXPECT_EQ(box_of(screen), boxed(title_2D_0, 0));  // the third is not kept
  EXPECT_EQ(list.nPtos, 2);
  PointList other({{1, 0, 0}, {1, 0, 0}, {3, 0, 0}});
  other.Z.size_keeping(0, 2);
  remove_neighbours(other);
  EXPECT_EQ(box_of(screen), boxed(title_2D_0, 9));
  EXPECT_EQ(other.nPtos, 2);
  EXPECT_EQ(elements(other.X), (Values{-999, 1, 1, 3}));
}

TEST(Neighbours, OneArrayForAllCoordinates) {
  DoubleArray values(0, 3);
  values(1) = 5, values(2) = 3, values(3) = 3;
  std::int32_t nPtos = 3;
  mOrdena::Quita_Puntos_Repetidos_2D_0(nPtos, values, values, values, false);
  EXPECT_EQ(nPtos, 2);
  EXPECT_EQ(elements(values), (Values{0, 3, 5, 3}));
}

// ---- Memory ----------------------------------------------------------------

TEST(Removal, RefusedMemoryIs7InTheBoxOrAtTheCaller) {
  Numbers numbers(84);
  const PointList points(any_points(numbers, 30, 0.5));
  const ObjectRef progress(new Silent);
  int shown = 0;
  int thrown = 0;
  for (int let_pass = 0;; ++let_pass) {
    PointList list = points;
    LongArray Indice;
    RecordingInterface screen;
    bool refused = false;
    const int number = failure_of([&] {
      const RefusedAllocation refusal(let_pass);
      const auto note = [&] { refused = RefusedAllocation::happened(); };
      try {
        sorts.Quita_Puntos_Repetidos_XY_con_indice1(list.nPtos, list.X, list.Y, list.Z, Indice,
                                                    progress, 0.0, false);
        note();
      } catch (...) {
        note();
        throw;
      }
    });
    EXPECT_TRUE(number == 0 || number == 7 || number == 9) << number;
    thrown += number == 7;
    if (!screen.boxes.empty()) {
      EXPECT_EQ(box_of(screen), boxed(title_2, 7));
      ++shown;
    }
    if (!refused) break;
  }
  EXPECT_GE(thrown, 5);  // two lists, three copies; what shrinks stays where it is
  EXPECT_GE(shown, 1);   // the index; the lists are long enough
}

TEST(Neighbours, RefusedMemoryIs7) {
  Numbers numbers(85);
  const PointList points(any_points(numbers, 30, 0.5));
  int shown = 0;
  for (int let_pass = 0;; ++let_pass) {
    PointList list = points;
    RecordingInterface screen;
    bool refused = false;
    {
      const RefusedAllocation refusal(let_pass);
      remove_neighbours(list);
      refused = RefusedAllocation::happened();
    }
    if (!screen.boxes.empty()) {
      EXPECT_EQ(box_of(screen), boxed(title_2D_0, 7));
      ++shown;
    }
    if (!refused) break;
  }
  EXPECT_GE(shown, 4);
}

}  // namespace
}  // namespace orv2_geo

// as_restated.h: the engine's routines beside their steps restated: boxes, failures and
// everything written are the same.
#pragma once

#include <string>

#include "orv2_geo/sorting/cgeo_Ordena.h"
#include "tests/repeated/engine_fixture.h"

namespace orv2_geo::testing_support {

/// An indicator that does to the points what the bar of the restatement does.
inline ObjectRef indicator_of(const restated::Bar& bar, PointList& list) {
  const Indicator progress;
  progress.object->on_write = [&list, bar](std::size_t n) {
    if (static_cast<int>(n) == bar.fails_at) raise(bar.failure);
    DoubleArray* const axes[] = {&list.X, &list.Y, &list.Z};
    if (n == 3 && bar.change.axis >= 0) {
      (*axes[bar.change.axis])(bar.change.point) = bar.change.value;
    }
  };
  return progress.reference;
}

/// The routines of an index.
inline void expect_indexes_as_restated(const PointList& list, double Precision, restated::Bar bar) {
  using restated::row_of;
  const auto x = row_of(list.X), y = row_of(list.Y), z = row_of(list.Z);
  const restated::Index expected = restated::ordered_in_X(list.nPtos, x, y, z, Precision, bar);
  PointList own = list;
  const IndexOutcome out = in_X(own, Precision, indicator_of(bar, own));
  EXPECT_EQ(out.box, boxed(title_in_X, expected.number));
  EXPECT_EQ(out.nNuevos, expected.nNuevos);
  EXPECT_TRUE(row_of(out.first) == expected.Indice);
  for (const Renumbering routine : {highest, all_axes}) {
    const restated::Renumbered renumbered =
        restated::renumbered(routine == all_axes, list.nPtos, x, y, z, Precision, bar);
    own = list;
    const IndexOutcome of = run(routine, own, Precision, indicator_of(bar, own));
    EXPECT_EQ(of.box, boxed(routine == all_axes ? title_2D : title_2, renumbered.number));
    EXPECT_EQ(of.nNuevos, renumbered.nNuevos);
    EXPECT_TRUE(row_of(of.first) == renumbered.IndiceNuevos);
    EXPECT_TRUE(row_of(of.second) == renumbered.IndiceGeneral);
    EXPECT_TRUE(row_of(of.Repetido) == renumbered.Repetido);
  }
  restated::Flagged flags;
  restated::flag(flags, list.nPtos, x, y, z, Precision, bar);
  own = list;
  const IndexOutcome of = run(flagging, own, Precision, indicator_of(bar, own));
  EXPECT_EQ(of.box, boxed(title_2, flags.number));
  EXPECT_EQ(of.nNuevos, flags.nNuevos);
  EXPECT_TRUE(row_of(of.first) == flags.Secuencia);
  EXPECT_TRUE(row_of(of.second) == flags.Indice);
  EXPECT_TRUE(row_of(of.Repetido) == flags.Repetido);
}

/// What the public member leaves.
struct Removal {
  PointList list;
  LongArray Indice;
  std::string box;
  int thrown = 0;

  Removal(const PointList& points, double Precision, const ObjectRef& progress, Bool Aviso = false)
      : list(points) {
    const RecordingInterface screen;
    thrown = failure_of([&] {
      cgeo_Ordena().Quita_Puntos_Repetidos_XY_con_indice1(list.nPtos, list.X, list.Y, list.Z,
                                                          Indice, progress, Precision, Aviso);
    });
    box = box_of(screen);
  }
};

inline void expect_points(const PointList& list, const restated::Removed& expected) {
  EXPECT_EQ(list.nPtos, expected.nPtos);
  EXPECT_TRUE(restated::row_of(list.X) == expected.X);
  EXPECT_TRUE(restated::row_of(list.Y) == expected.Y);
  EXPECT_TRUE(restated::row_of(list.Z) == expected.Z);
}

/// The public member that removes.
inline void expect_removal_as_restated(const PointList& list, double Precision, restated::Bar bar) {
  using restated::row_of;
  Indicator progress;
  progress.object->on_write = [=](std::size_t n) {
    if (static_cast<int>(n) == bar.fails_at) raise(bar.failure);
  };
  const restated::Removed expected =
      restated::removed(list.nPtos, row_of(list.X), row_of(list.Y), row_of(list.Z), Precision, bar);
  const Removal out(list, Precision, progress.reference);
  EXPECT_EQ(out.box, boxed(title_2, expected.number));
  EXPECT_EQ(out.thrown, expected.thrown);
  expect_points(out.list, expected);
  EXPECT_TRUE(row_of(out.Indice) == expected.Indice);
}

inline void remove_neighbours(PointList& list, Bool Aviso = false) {
  mOrdena::Quita_Puntos_Repetidos_2D_0(list.nPtos, list.X, list.Y, list.Z, Aviso);
}

/// The routine that removes neighbours.
inline void expect_neighbours_as_restated(PointList list) {
  using restated::row_of;
  const restated::Removed expected =
      restated::removed_neighbours(list.nPtos, row_of(list.X), row_of(list.Y), row_of(list.Z));
  const RecordingInterface screen;
  remove_neighbours(list);
  EXPECT_EQ(box_of(screen), boxed(title_2D_0, expected.number));
  expect_points(list, expected);
}

}  // namespace orv2_geo::testing_support

// The progress indicator: what is written, in which order and type, and what is
// left when it fails.
#include "orv2_geo/repeated/sweep.h"
#include "orv2_geo/sorting/cgeo_Ordena.h"
#include "tests/repeated/engine_fixture.h"

namespace orv2_geo {
namespace {

std::vector<Point> apart(std::int32_t count) {
  std::vector<Point> points;
  for (std::int32_t p = 1; p <= count; ++p) points.push_back({static_cast<double>(p), 0, 0});
  return points;
}

struct ScaleRow {
  std::int32_t nPtos;
  double max;
};

TEST(Progress, OrderTypesAndScale) {
  const ScaleRow table[] = {
      {1, 1.0 / 32001.0},    {2, 2.0 / 16001.0},   {7, 7.0 / 4572.0},
      {1000, 1000.0 / 33.0}, {16000, 16000.0 / 3}, {16001, 8000.5},
      {32000, 16000.0},      {32001, 32001.0},     {40000, 40000.0},
  };
  for (const ScaleRow& row : table) {
    const PointList list(apart(row.nPtos));
    RecordingInterface screen;
    const Indicator in_x;
    in_X(list, 0.0, in_x.reference);
    EXPECT_EQ(in_x.object->written, set_up(row.max)) << row.nPtos;
    for (const Renumbering routine : {highest, all_axes, flagging}) {
      const Indicator progress;
      run(routine, list, 0.0, progress.reference);
      EXPECT_EQ(progress.object->written, whole_protocol(row.max)) << row.nPtos;
    }
    PointList removed = list;
    LongArray Indice;
    const Indicator progress;
    cgeo_Ordena().Quita_Puntos_Repetidos_XY_con_indice1(
        removed.nPtos, removed.X, removed.Y, removed.Z, Indice, progress.reference, 0.0, false);
    EXPECT_EQ(progress.object->written, whole_protocol(row.max)) << row.nPtos;
    EXPECT_EQ(screen.yields, 0);
  }
}

TEST(Progress, NoPointOfAnySweepMovesTheIndicatorOrYields) {
  RecordingInterface screen;
  const Indicator indicator;
  const std::int32_t points = 5;
  const repeated::Progress progress(points, indicator.reference);
  for (std::int32_t i = 1; i <= 3000000; ++i) progress.step(i);
  for (std::int32_t i = 2147483000; i < 2147483647; ++i) progress.step(i);
  EXPECT_EQ(indicator.object->written.size(), 3U);
  EXPECT_EQ(screen.yields, 0);
  progress.step(0);  // the test itself stands: at 0 both sides are 0
  EXPECT_EQ(indicator.object->written.back(), (Written{"Value", typed(0.0)}));
  EXPECT_EQ(screen.yields, 1);
}

// The n-th write fails: what came before it stays written, and the rest is as the
// steps leave it.
TEST(Progress, AnIndicatorThatFails) {
  const std::vector<Point> points = {{2, 0, 0}, {1, 0, 0}, {2, 0, 0}};
  const std::vector<std::int32_t> zeros(4);
  for (std::size_t n = 1; n <= 4; ++n) {
    const auto failing = [n] {
      Indicator progress;
      progress.object->on_write = [n](std::size_t written) {
        if (written == n) throw RunFailure(1234, "Sin barra", "Host.Barra");
      };
      return progress;
    };
    const std::string words = " 1234:Sin barra";
    const Indicator in_x = failing();
    const IndexOutcome first = in_X(PointList(points), 0.0, in_x.reference);
    EXPECT_EQ(first.box, n <= 3 ? title_in_X + words : "");
    EXPECT_EQ(first.nNuevos, n <= 3 ? -77 : 2);
    EXPECT_EQ(in_x.object->written.size(), std::min<std::size_t>(n, 3));
    if (n <= 3) {
      EXPECT_EQ(elements(first.first), zeros);
    }
    for (const Renumbering routine : {highest, all_axes, flagging}) {
      const Indicator progress = failing();
      const IndexOutcome out = run(routine, PointList(points), 0.0, progress.reference);
      EXPECT_EQ(out.box, (routine == all_axes ? title_2D : title_2) + words);
      EXPECT_EQ(progress.object->written.size(), n);
      EXPECT_EQ(out.nNuevos, n <= 3 ? -77 : 2) << "the last write comes after the answer";
      if (n <= 3) {
        EXPECT_EQ(elements(out.first), zeros);
        EXPECT_EQ(elements(out.second), zeros);
      }
    }
    PointList list(points);
    LongArray Indice;
    const Indicator progress = failing();
    const RecordingInterface screen;
    cgeo_Ordena().Quita_Puntos_Repetidos_XY_con_indice1(list.nPtos, list.X, list.Y, list.Z, Indice,
                                                        progress.reference, 0.0, false);
    ASSERT_EQ(screen.boxes.size(), 1U);
    EXPECT_EQ(screen.boxes[0].caption, "Host.Barra");
    EXPECT_EQ(list.nPtos, n <= 3 ? 0 : 2);
    EXPECT_EQ(list.X.upper(), list.nPtos);
  }
}

TEST(Progress, NoObjectAndNoPropertyAreTrapped) {
  const PointList list(apart(3));
  EXPECT_EQ(in_X(list, 0.0, nullptr).box, boxed(title_in_X, 91));
  EXPECT_EQ(run(highest, list, 0.0, nullptr).box, boxed(title_2, 91));
  EXPECT_EQ(run(all_axes, list, 0.0, nullptr).box, boxed(title_2D, 91));
  EXPECT_EQ(run(flagging, list, 0.0, nullptr).box, boxed(title_2, 91));
  const Indicator lacking;
  lacking.object->on_write = [](std::size_t n) {
    if (n == 2) raise(failure::no_such_member);
  };
  EXPECT_EQ(in_X(list, 0.0, lacking.reference).box, boxed(title_in_X, 438));
}

TEST(Progress, TheCallersVariableIsLookedAtAtEachWrite) {
  const PointList list(apart(3));
  const Indicator first, second;
  ObjectRef variable = first.reference;
  first.object->on_write = [&](std::size_t n) {
    if (n == 2) variable = second.reference;
  };
  EXPECT_EQ(run(highest, list, 0.0, variable).box, "");
  EXPECT_EQ(first.object->written.size(), 2U);
  ASSERT_EQ(second.object->written.size(), 2U);
  EXPECT_EQ(second.object->written[0].name, "max");
  EXPECT_EQ(second.object->written[1].name, "Visible");
}

TEST(Progress, AnIndicatorMayDropItsOwnLastReference) {
  const PointList list(apart(3));
  auto* const alone = new ProgressObject;
  ObjectRef variable(alone);
  std::size_t writes = 0;
  alone->on_write = [&](std::size_t n) {
    variable = nullptr;
    writes = n + alone->written.size();  // still there
  };
  EXPECT_EQ(run(highest, list, 0.0, variable).box, boxed(title_2, 91));
  EXPECT_EQ(writes, 2U);
}

// A host's indicator can do anything while it is written to; the sweep reads what
// there is afterwards.
TEST(Progress, AHostThatChangesItsArraysMeanwhile) {
  PointList list(apart(3));
  const Indicator progress;
  progress.object->on_write = [&](std::size_t n) {
    if (n == 3) list.Y(2) = nan;
  };
  EXPECT_EQ(in_X(list, 0.0, progress.reference).box, boxed(title_in_X, 6));
  const Indicator releasing;
  releasing.object->on_write = [&](std::size_t n) {
    if (n == 3) list.X.release();
  };
  EXPECT_EQ(in_X(list, 0.0, releasing.reference).box, boxed(title_in_X, 9));
  PointList more(apart(3));
  const Indicator counting;
  counting.object->on_write = [&](std::size_t n) {
    if (n == 2) more.nPtos = 2;  // read again for the scale, for the sweep and after it
  };
  const IndexOutcome out = run(highest, more, 0.0, counting.reference);
  EXPECT_EQ(out.box, "");
  EXPECT_EQ(out.nNuevos, 2);
  EXPECT_EQ(counting.object->written[2], (Written{"max", typed(2.0 / 10667.0)}));
  EXPECT_EQ(elements(out.first), (std::vector<std::int32_t>{0, 1, 2, 0}));
  EXPECT_EQ(elements(out.second), (std::vector<std::int32_t>{0, 1, 2, 0}));
}

TEST(Progress, AHostThatLeavesNoPointsMeanwhile) {
  for (const std::int32_t left : {0, -1, -5, lowest_long}) {
    for (const Renumbering routine : {highest, all_axes}) {
      PointList list(apart(3));
      const Indicator progress;
      progress.object->on_write = [&](std::size_t n) {
        if (n == 3) list.nPtos = left;
      };
      const IndexOutcome out = run(routine, list, 0.0, progress.reference);
      EXPECT_EQ(out.box, "") << left;
      EXPECT_EQ(out.nNuevos, 0) << left;
      EXPECT_EQ(elements(out.first), (std::vector<std::int32_t>(4))) << left;
      EXPECT_EQ(elements(out.second), (std::vector<std::int32_t>(4))) << left;
      EXPECT_EQ(progress.object->written.size(), 4U) << left;
    }
  }
}

TEST(Progress, AHostThatChangesTheIndexesMeanwhile) {
  using Numbers32 = std::vector<std::int32_t>;
  const PointList list({{2, 0, 0}, {1, 0, 0}, {2, 0, 0}});
  const RecordingInterface screen;
  std::int32_t nNuevos = 0;
  LongArray a, b;
  mOrdena::BoolArray flags;
  const Indicator progress;
  progress.object->on_write = [&](std::size_t n) {
    if (n == 3) a.size(5, 9);
  };
  mOrdena::m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X(3, list.X, list.Y, list.Z, nNuevos, a, 0.0,
                                                         progress.reference);
  EXPECT_EQ(nNuevos, 2);
  EXPECT_EQ(a.lower(), 0) << "a whole copy, bounds included";
  EXPECT_EQ(elements(a), (Numbers32{0, 2, 1, 0}));
  EXPECT_TRUE(screen.boxes.empty());

  // The general index ends in the middle of its own writing, before the other.
  const Indicator shortening;
  shortening.object->on_write = [&](std::size_t n) {
    if (n == 3) b.size(0, 2);
  };
  nNuevos = -77;
  highest(3, list.X, list.Y, list.Z, nNuevos, a, b, flags, 0.0, shortening.reference);
  EXPECT_EQ(box_of(screen), boxed(title_2, 9));
  EXPECT_EQ(nNuevos, -77);
  EXPECT_EQ(elements(a), (Numbers32{0, 0, 0, 0}));
  EXPECT_EQ(elements(b), (Numbers32{0, 1, 2}));
}

TEST(Progress, AHostThatLocksAnIndexMeanwhileIs10InTheEnd) {
  const PointList list({{2, 0, 0}, {1, 0, 0}});
  const RecordingInterface screen;
  std::int32_t nNuevos = -77;
  LongArray a;
  const Indicator progress;
  progress.object->on_write = [&](std::size_t n) {
    if (n == 3) a.lock();
  };
  mOrdena::m_Indice_de_Puntos_sin_Repetir_ORDENADOS_EN_X(2, list.X, list.Y, list.Z, nNuevos, a, 0.0,
                                                         progress.reference);
  EXPECT_EQ(box_of(screen), boxed(title_in_X, 10));
  EXPECT_EQ(nNuevos, 2) << "written before the index that is replaced";
  EXPECT_EQ(elements(a), (std::vector<std::int32_t>{0, 0, 0}));
}

}  // namespace
}  // namespace orv2_geo

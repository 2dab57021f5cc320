#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <utility>
#include <vector>

#include "orv2_geo/library/object.h"
#include "tests/plane/restated_cuts.h"
#include "tests/plane/restatement.h"
#include "tests/platform/recording_interface.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo::plane_tests {
namespace {

TEST(RetiredPolygonTests, SayThatTheyAreObsolete) {
  RecordingInterface user;
  DoubleArray none;
  SingleArray no_singles;
  std::int16_t Loc = 7;
  EXPECT_EQ(plain(algorithms.Pto_en_Poligono_d(none, none, -5, nan, nan, Loc)), 0);
  EXPECT_EQ(plain(algorithms.Pto_en_Poligono(no_singles, no_singles, 1000, 0.0F, 0.0F, Loc)), 0);
  EXPECT_EQ(Loc, 7);
  const RecordingInterface::Box plain_box{"obsoleto", 0, std::nullopt};
  EXPECT_EQ(user.boxes, (std::vector{plain_box, plain_box}));
}

TEST(RetiredPolygonTests, TheLastArgumentOfTheDoubleOneMayBeLeftOut) {
  RecordingInterface user;
  const ObjectRef object = create("Orv2_Geo.cgeo_Algorismos");
  DoubleArray array;
  SingleArray singles;
  const Argument five[] = {ref(array), ref(array), 3, 1.0, 1.0};
  const Variant answer = object->call("Pto_en_Poligono_d", five);
  EXPECT_EQ(answer.get<Bool>()->bits, 0);
  EXPECT_EQ(user.boxes.size(), 1U);
  const Argument single_five[] = {ref(singles), ref(singles), 3, 1.0F, 1.0F};
  EXPECT_EQ(failure_of([&] { object->call("Pto_en_Poligono", single_five); }), 449);
  EXPECT_EQ(user.boxes.size(), 1U);
}

TEST(RetiredPolygonTests, ABoxThatCannotBeShownIsAFailure) {
  RecordingInterface user;
  DoubleArray none;
  SingleArray no_singles;
  std::int16_t Loc = 7;
  const auto refused = [](auto&& call) {
    const RefusedAllocation first(0);
    return failure_of(call);
  };
  EXPECT_EQ(refused([&] { (void)algorithms.Pto_en_Poligono_d(none, none, 3, 0, 0, Loc); }), 7);
  EXPECT_EQ(
      refused([&] { (void)algorithms.Pto_en_Poligono(no_singles, no_singles, 3, 0, 0, Loc); }), 7);
  EXPECT_EQ(Loc, 7);
  EXPECT_TRUE(user.boxes.empty());
}

struct Point {
  double x, y;
  friend bool operator==(const Point&, const Point&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Point& p) {
    return out << '(' << p.x << ", " << p.y << ')';
  }
};

// One call: a chain with any lower bound, and what it answers.
struct Call {
  DoubleArray Vx, Vy, Xc, Yc;
  std::int32_t Nv = 0;
  std::int32_t Pc = -9;

  explicit Call(const std::vector<Point>& chain, std::int32_t lower = 1) {
    Nv = static_cast<std::int32_t>(chain.size());
    Vx.size(lower, std::max(lower, Nv));
    Vy.size(lower, std::max(lower, Nv));
    for (std::int32_t i = 1; i <= Nv; ++i) {
      Vx(i) = chain[i - 1].x;
      Vy(i) = chain[i - 1].y;
    }
  }
  std::int32_t cut(Point from, Point to) {
    return failure_of(
        [&] { algorithms.Cortes_R1_con_Pol(from.x, from.y, to.x, to.y, Nv, Vx, Vy, Pc, Xc, Yc); });
  }
  std::vector<Point> cuts() const {
    std::vector<Point> found;
    for (std::int32_t i = 1; i <= Pc; ++i) found.push_back({Xc(i), Yc(i)});
    return found;
  }
};

const std::vector<Point> open_square = {{0, 0}, {4, 0}, {4, 4}, {0, 4}};
const std::vector<Point> square = {{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}};

TEST(PolygonCuts, EachRule) {
  struct Row {
    const char* rule;
    std::vector<Point> chain;
    Point from, to;
    std::vector<Point> cuts;
  };
  const Row rows[] = {
      {"through a square: the nearer cut first", square, {-1, 1}, {9, 1}, {{0, 1}, {4, 1}}},
      {"and back", square, {9, 1}, {-1, 1}, {{4, 1}, {0, 1}}},
      {"the closing side is the caller's", open_square, {-1, 1}, {9, 1}, {{4, 1}}},
      {"through a vertex: found on both sides, kept once", square, {2, 6}, {6, 2}, {{4, 4}}},
      {"through two opposite vertices", square, {-1, -1}, {5, 5}, {{0, 0}, {4, 4}}},
      {"along a side: its neighbours are cut", square, {-1, 4}, {9, 4}, {{0, 4}, {4, 4}}},
      {"a chain from a vertical neighbour", {{1, 1}, {1, 5}}, {0, 2}, {2, 2}, {{1, 2}}},
      {"0.0005 apart on both axes: the later one goes",
       {{1, 3}, {1, -3}, {1.0005, -3}, {1.0005, 3}},
       {0, 0},
       {2, 2},
       {{1, 1}}},
      {"0.002 apart in X: both stay",
       {{1, 3}, {1, -3}, {1.002, -3}, {1.002, 3}},
       {0, 0.5},
       {2, 0.5},
       {{1, 0.5}, {1.002, 0.5}}},
      {"0.002 apart in X, leftwards",
       {{1, 3}, {1, -3}, {1.002, -3}, {1.002, 3}},
       {2, 0.5},
       {0, 0.5},
       {{1.002, 0.5}, {1, 0.5}}},
      {"0.002 apart in Y, upwards",
       {{-3, 1}, {3, 1}, {3, 1.002}, {-3, 1.002}},
       {0, 0},
       {0, 2},
       {{0, 1}, {0, 1.002}}},
      {"0.002 apart in Y, downwards",
       {{-3, 1}, {3, 1}, {3, 1.002}, {-3, 1.002}},
       {0, 2},
       {0, 0},
       {{0, 1.002}, {0, 1}}},
      {"a box, not a distance: 0.0009 and 0.0009 go",
       {{1, 3}, {1, -3}, {1.0009, -3}, {1.0009, 3}},
       {0, 0},
       {2, 2},
       {{1, 1}}},
      {"exactly on the box stays",
       {{0, 3}, {0, -3}, {0.001, -3}, {0.001, 3}},
       {-1, 0},
       {2, 0},
       {{0, 0}, {0.001, 0}}},
      {"compared with the last kept one only: 0.0006, 0.0012",
       {{0, 3}, {0, -3}, {0.0006, -3}, {0.0006, 3}, {0.0012, 3}, {0.0012, -3}},
       {-1, 0},
       {2, 0},
       {{0, 0}, {0.0012, 0}}},
      {"the first cut is kept near the origin too",
       {{0.0002, 1}, {0.0002, -1}},
       {-1, 0},
       {1, 0},
       {{0.0002, 0}}},
      {"from inside", square, {1, 1}, {9, 1}, {{4, 1}}},
      {"many cuts come in order along the piece",
       {{3, 1}, {3, -1}, {1, -1}, {1, 1}, {2, 1}, {2, -1}},
       {0, 0},
       {9, 0},
       {{1, 0}, {2, 0}, {3, 0}}},
  };
  for (const Row& row : rows) {
    for (const std::int32_t lower : {1, 0, -3}) {
      Call call(row.chain, lower);
      EXPECT_EQ(call.cut(row.from, row.to), 0) << row.rule;
      EXPECT_EQ(call.cuts(), row.cuts) << row.rule << ", arrays from " << lower;
      for (const DoubleArray* answer : {&call.Xc, &call.Yc}) {
        EXPECT_EQ(answer->lower(), 0) << row.rule;
        EXPECT_EQ(answer->upper(), call.Pc) << row.rule;
        EXPECT_EQ(bits((*answer)(0)), bits(0.0)) << row.rule;
      }
      EXPECT_EQ(call.Nv, static_cast<std::int32_t>(row.chain.size())) << row.rule;
    }
  }
}

TEST(PolygonCuts, AtOneDistanceTheLaterFoundComesFirst) {
  // Through a shared vertex the two sides give points that can differ in their
  // last bits and still lie at one distance: they change places, and the one
  // found later is kept.
  Numbers numbers(80);
  int ties = 0;
  for (int trial = 0; trial < 20000; ++trial) {
    const auto some = [&] { return numbers.between(-3.0, 3.0); };
    const Point vertex{some(), some()};
    const Point from{vertex.x - 4.0, vertex.y - some()};
    const Point to{vertex.x + (vertex.x - from.x), vertex.y + (vertex.y - from.y)};
    const std::vector<Point> chain = {
        {vertex.x + some(), vertex.y + 9.0}, vertex, {vertex.x + some(), vertex.y - 9.0}};
    Point cut[2];
    double distance[2];
    bool both = true;
    for (int side = 0; side < 2; ++side) {
      both = both && algorithms.Cruce_XY_2lineas(from.x, from.y, to.x, to.y, chain[side].x,
                                                 chain[side].y, chain[side + 1].x,
                                                 chain[side + 1].y, cut[side].x, cut[side].y);
      distance[side] = runtime.sqrt(runtime.pow(from.x - cut[side].x, 2.0) +
                                    runtime.pow(from.y - cut[side].y, 2.0));
    }
    if (!both || cut[0] == cut[1] || distance[0] != distance[1]) continue;
    ++ties;
    Call call(chain);
    ASSERT_EQ(call.cut(from, to), 0);
    ASSERT_EQ(call.cuts(), (std::vector<Point>{cut[1]}));
  }
  EXPECT_GT(ties, 100);
}

TEST(PolygonCuts, NoCutsLeaveTheAnswersAsTheyWere) {
  for (const std::int32_t nv : {5, 1, 0, -4}) {
    Call call(square);
    call.Nv = nv;
    EXPECT_EQ(call.cut({10, 10}, {20, 30}), 0);
    EXPECT_EQ(call.Pc, 0);
    EXPECT_FALSE(call.Xc.allocated());
    EXPECT_FALSE(call.Yc.allocated());
    call.Xc.size(5, 6);
    call.Xc(6) = 1.5;
    call.Yc.make(0, 4, 2);
    call.Pc = 3;
    EXPECT_EQ(call.cut({10, 10}, {20, 30}), 0);
    EXPECT_EQ(call.Pc, 0);
    EXPECT_EQ(call.Xc.lower(), 5);
    EXPECT_EQ(call.Xc(6), 1.5);
    EXPECT_EQ(call.Yc.dimensions(), 2);
  }
  // Without a side nothing is read, not even from arrays that are not there.
  Call call({});
  call.Vx = DoubleArray();
  call.Vx.make(2, 0);
  call.Nv = 1;
  EXPECT_EQ(call.cut({nan, 0}, {1, 1}), 0);
}

TEST(PolygonCuts, AnswersOfAnyShapeAreReplaced) {
  Call call(square);
  call.Xc.make(-7, 30, 3);
  call.Yc.size(4, 5);
  call.Yc(4) = 9.0;
  EXPECT_EQ(call.cut({-1, 1}, {9, 1}), 0);
  EXPECT_EQ(call.cuts(), (std::vector<Point>{{0, 1}, {4, 1}}));
  EXPECT_EQ(call.Yc(0), 0.0);
  EXPECT_EQ(call.Xc.dimensions(), 1);
}

TEST(PolygonCuts, FailuresLeaveTheCountSoFarAndNoAnswers) {
  const auto expect = [](const char* rule, Call& call, Point from, Point to, std::int32_t failure,
                         std::int32_t count) {
    EXPECT_EQ(call.cut(from, to), failure) << rule;
    EXPECT_EQ(call.Pc, count) << rule;
    EXPECT_FALSE(call.Xc.allocated()) << rule;
    EXPECT_FALSE(call.Yc.allocated()) << rule;
  };
  const Point from{-1, 1}, to{9, 1};
  {
    Call call(square);
    call.Nv = 6;
    expect("more vertices than elements", call, from, to, 9, 2);
  }
  {
    Call call(square);
    call.Vy.size_keeping(1, 3);
    expect("Y shorter than X", call, from, to, 9, 1);
  }
  {
    Call call(square);
    call.Vx.make(2, 5);
    expect("X from 2", call, from, to, 9, 0);
  }
  {
    Call call(square);
    call.Vy.make(2, 5);
    expect("Y from 2", call, from, to, 9, 0);
  }
  {
    Call call(square);
    call.Vx = DoubleArray();
    expect("unallocated", call, from, to, 9, 0);
  }
  {
    Call call(square);
    call.Vy.make(1, 5, 2);
    expect("two dimensions", call, from, to, 9, 0);
  }
  {
    Call call(square);
    call.Vx(5) = nan;
    expect("NaN in the last side", call, from, to, 6, 1);
  }
  {
    Call call({{4, 0}, {4, 4}, {1e300, 1e300}, {0, -1e300}});
    expect("coordinates beyond a product", call, {-1, 0.5}, {9, 1}, 6, 1);
  }
  {
    Call call({{1e200, -5}, {1e200, 5}});
    expect("a distance beyond f64", call, {-1e200, 0}, {2e200, 0}, 6, 1);
  }
  {
    Call call(square);
    expect("NaN in the piece", call, {nan, 0}, to, 6, 0);
  }
  {
    Call call(square);
    expect("infinite", call, {-inf, 1}, to, 6, 0);
  }
  {
    Call call(square);
    call.Xc.lock();
    expect("X locked", call, from, to, 10, 2);
    call.Xc.unlock();
  }
  {
    Call call(square);
    call.Yc.lock();
    EXPECT_EQ(call.cut(from, to), 10);
    EXPECT_EQ(call.Pc, 2);
    EXPECT_EQ(call.Xc.upper(), 2);  // sized before Y refused
    EXPECT_EQ(call.Xc(1), 0.0);
    EXPECT_FALSE(call.Yc.allocated());
    call.Yc.unlock();
  }
}

TEST(PolygonCuts, RefusedMemoryIs7AndLeaksNothing) {
  const long before = allocations_in_use();
  bool happened = true;
  int refusals = 0;
  for (long let_pass = 0; happened; ++let_pass) {
    Call call(square);
    std::int32_t failure = 0;
    {
      const RefusedAllocation refused(let_pass);
      failure = call.cut({-1, 1}, {9, 1});
      happened = RefusedAllocation::happened();
    }
    EXPECT_EQ(failure, happened ? 7 : 0) << let_pass;
    refusals += happened;
    if (happened) {
      EXPECT_GE(call.Pc, 1) << let_pass;  // counted before its place was found
    } else {
      EXPECT_EQ(call.cuts(), (std::vector<Point>{{0, 1}, {4, 1}}));
    }
  }
  EXPECT_GT(refusals, 6);
  EXPECT_EQ(allocations_in_use(), before);
}

// Which arrays Vx, Vy, Xc and Yc are, and whether Nv and Pc are one variable.
struct Sharing {
  int array[4];
  bool one_count;
};

TEST(PolygonCuts, RandomChainsAndSharedVariables) {
  const Sharing sharings[] = {
      {{0, 1, 2, 3}, false}, {{0, 1, 2, 2}, false}, {{0, 1, 0, 3}, false}, {{0, 1, 2, 1}, false},
      {{0, 1, 1, 0}, false}, {{0, 0, 2, 3}, false}, {{0, 0, 0, 0}, false}, {{0, 1, 2, 3}, true},
  };
  Numbers numbers(81);
  int with_cuts = 0, dropped = 0, failed = 0;
  for (int trial = 0; trial < 20000; ++trial) {
    // Small lattices bring ties and vertices; fine ones the box; coordinates of
    // a survey the last bits; any size the failures.
    const auto coordinate = [&](double base) {
      switch (trial % 4) {
        case 0: return numbers.small_whole();
        case 1: return std::round(numbers.between(-4, 4)) * 0.0005;
        case 2: return std::round((base + numbers.between(-200, 200)) * 1000.0) / 1000.0;
        default: return numbers.any();
      }
    };
    const Sharing& sharing = sharings[trial % 5 == 0 ? numbers.below(8) : 0];
    const auto vertices = static_cast<std::int32_t>(numbers.below(61));
    const std::int32_t lowers[] = {0, 1, -3};
    DoubleArray arrays[4];
    PlainArray plain_arrays[4];
    for (int a = 0; a < 2; ++a) {
      const std::int32_t lower = lowers[numbers.below(3)];
      plain_arrays[a].allocated = true;
      plain_arrays[a].lower = lower;
      arrays[a].make(lower, static_cast<std::uint32_t>(vertices - lower + 1));
      for (std::uint32_t i = 0; i < arrays[a].count(); ++i) {
        const double v = coordinate(a == 0 ? 435000.123 : 4473000.456);
        arrays[a].data()[i] = v;
        plain_arrays[a].elements.push_back(v);
      }
    }
    const double p[4] = {coordinate(435000.123), coordinate(4473000.456), coordinate(435000.123),
                         coordinate(4473000.456)};
    std::int32_t counts[2] = {vertices, -1};
    if (numbers.below(50) == 0) counts[0] += 2;  // too short
    std::int32_t plain_counts[2] = {counts[0], counts[1]};
    const int Pc = sharing.one_count ? 0 : 1;
    const auto& at = sharing.array;
    const std::int32_t got = failure_of([&] {
      algorithms.Cortes_R1_con_Pol(p[0], p[1], p[2], p[3], counts[0], arrays[at[0]], arrays[at[1]],
                                   counts[Pc], arrays[at[2]], arrays[at[3]]);
    });
    const std::int32_t expected = failure_of([&] {
      restated_cuts(p[0], p[1], p[2], p[3], plain_counts[0], plain_arrays[at[0]],
                    plain_arrays[at[1]], plain_counts[Pc], plain_arrays[at[2]],
                    plain_arrays[at[3]]);
    });
    ASSERT_EQ(got, expected) << trial;
    ASSERT_EQ(counts[0], plain_counts[0]) << trial;
    ASSERT_EQ(counts[1], plain_counts[1]) << trial;
    for (int a = 0; a < 4; ++a) {
      ASSERT_NO_FATAL_FAILURE(expect_same(arrays[a], plain_arrays[a])) << trial << ' ' << a;
    }
    failed += expected != 0;
    with_cuts += expected == 0 && counts[Pc] > 0;
    dropped += expected == 0 && counts[Pc] > 0 && trial % 4 < 2;
  }
  EXPECT_GT(with_cuts, 5000);
  EXPECT_GT(dropped, 2000);
  EXPECT_GT(failed, 10);
}

TEST(PolygonCuts, OneVariableForNvAndPcIsCleared) {
  Call call(square);
  algorithms.Cortes_R1_con_Pol(-1, 1, 9, 1, call.Nv, call.Vx, call.Vy, call.Nv, call.Xc, call.Yc);
  EXPECT_EQ(call.Nv, 0);  // so that no side is looked at
  EXPECT_FALSE(call.Xc.allocated());
}

TEST(PolygonCuts, OneArrayForTheChainAndItsCuts) {
  Call call(square);
  algorithms.Cortes_R1_con_Pol(-1, 1, 9, 1, call.Nv, call.Vx, call.Vy, call.Pc, call.Vx, call.Vy);
  EXPECT_EQ(call.Pc, 2);
  EXPECT_EQ(call.Vx.upper(), 2);
  EXPECT_EQ(call.Vx(2), 4.0);
  EXPECT_EQ(call.Vy(2), 1.0);
}

}  // namespace
}  // namespace orv2_geo::plane_tests

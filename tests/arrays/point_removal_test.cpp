#include <cmath>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "orv2_geo/arrays/cgeo_Matrices.h"
#include "orv2_geo/frame/progress_sink.h"
#include "tests/platform/recording_interface.h"
#include "tests/support/arrays.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

const cgeo_Matrices matrices;
using Values = std::vector<double>;
using Index = std::vector<std::int32_t>;

// Takes every property and keeps none.
class AnyProgress final : public LateBound {
 public:
  Variant call(std::string_view, std::span<const Argument>) override { return {}; }
  void set_property(std::string_view, const Variant&) override { ++writes; }
  int writes = 0;
};

struct FilterRow {
  const char* rule;
  std::int32_t points;
  double max, min;
  Index kept;
};

TEST(ElevationFilter, KeepsTheIntervalAndItsEnds) {
  const FilterRow table[] = {
      {"both ends stay", 5, 30, 20, {2, 3, 5}},
      {"one elevation", 5, 20, 20, {2, 5}},
      {"all", 5, 99, -99, {1, 2, 3, 4, 5}},
      {"the ends the wrong way round drop all", 5, 20, 30, {}},
      {"only the first points count", 3, 30, 20, {2, 3}},
      {"no points", 0, 99, -99, {}},
      {"fewer than none", -4, 99, -99, {}},
  };
  for (const FilterRow& row : table) {
    DoubleArray x = doubles(0, {7, 1, 2, 3, 4, 5}), y = doubles(0, {7, 10, 20, 30, 40, 50}),
                z = doubles(0, {7, 10, 20, 30, 40, 20});
    LongArray index = longs(0, {7, 1, 2, 3, 4, 5});
    std::int32_t points = row.points;
    matrices.Quita_Puntos_fuera_interv_de_Cotas_con_indice(points, x, y, z, index, row.max,
                                                           row.min);
    EXPECT_EQ(points, static_cast<std::int32_t>(row.kept.size())) << row.rule;
    Index expected = row.kept;
    expected.insert(expected.begin(), 7);
    EXPECT_EQ(elements(index), expected) << row.rule;
    EXPECT_EQ(elements(x), Values(expected.begin(), expected.end())) << row.rule;
    EXPECT_EQ(y.upper(), points) << row.rule;
    EXPECT_EQ(z.upper(), points) << row.rule;
  }
}

TEST(ElevationFilter, ThePointsAreCountedIn16Bits) {
  const std::int32_t most = 32767;
  DoubleArray x(0, most), y(0, most), z(0, most);
  LongArray index(0, most);
  for (std::int32_t i = 1; i <= most; ++i) x(i) = i, z(i) = i % 2;
  std::int32_t points = most + 1;
  const auto filter = [&] {
    matrices.Quita_Puntos_fuera_interv_de_Cotas_con_indice(points, x, y, z, index, 0.5, -0.5);
  };
  EXPECT_EQ(failure_of(filter), 6);
  EXPECT_EQ(points, most + 1);  // nothing has changed
  EXPECT_EQ(x.upper(), most);
  for (std::int32_t i = 1; i <= most; ++i) ASSERT_TRUE(x(i) == i && z(i) == i % 2) << i;
  points = most;
  EXPECT_EQ(failure_of(filter), 6);  // when all have been handled
  EXPECT_EQ(points, most);
  EXPECT_EQ(x.upper(), most);
  EXPECT_EQ(x(2), 4.0);
  EXPECT_EQ(x(most / 2), most - 1.0);
  points = most - 1;
  EXPECT_EQ(failure_of(filter), 0);
}

// Of a filter that keeps what lies from 0 to 5.
std::int32_t failure_of_filter(std::int32_t& points, DoubleArray& x, DoubleArray& y, DoubleArray& z,
                               LongArray& index) {
  return failure_of([&] {
    matrices.Quita_Puntos_fuera_interv_de_Cotas_con_indice(points, x, y, z, index, 5, 0);
  });
}

TEST(ElevationFilter, FailuresLeaveTheCompactionDone) {
  DoubleArray x = doubles(1, {1, 2, 3}), y = doubles(1, {1, 2, 3}), z = doubles(1, {9, 1, 1});
  LongArray index = longs(1, {1, 2, 3});
  std::int32_t points = 4;
  EXPECT_EQ(failure_of_filter(points, x, y, z, index), 9);
  EXPECT_EQ(points, 4);
  EXPECT_EQ(elements(x), (Values{2, 3, 3}));
  LongArray short_index = longs(1, {1});
  points = 3;
  x = doubles(1, {1, 2, 3});
  z = doubles(1, {1, 1, 1});
  EXPECT_EQ(failure_of_filter(points, x, y, z, short_index), 9);
  z(1) = nan;
  EXPECT_EQ(failure_of_filter(points, x, y, z, index), 6);
}

struct NotANumberRow {
  const char* rule;
  Values z;
  double max, min;
  Index index;  // by then
};

// Both ends of the interval are looked at, whatever the first says.
TEST(ElevationFilter, NaNInAnElevationOrAnEndIs6WithThePointsBeforeItDone) {
  const NotANumberRow table[] = {
      {"the first elevation", {nan, 1, 1}, 5, 0, {1, 2, 3}},
      {"a later one", {9, 1, nan}, 5, 0, {2, 2, 3}},
      {"the last one", {9, 9, nan}, 5, 0, {1, 2, 3}},
      {"the upper end", {1, 1, 1}, nan, 0, {1, 2, 3}},
      {"the lower end", {1, 1, 1}, 5, nan, {1, 2, 3}},
      {"the lower end, all points being above", {9, 9, 9}, 5, nan, {1, 2, 3}},
  };
  for (const NotANumberRow& row : table) {
    DoubleArray x = doubles(1, {1, 2, 3}), y = doubles(1, {1, 2, 3}), z = doubles(1, row.z);
    LongArray index = longs(1, {1, 2, 3});
    std::int32_t points = 3;
    EXPECT_EQ(failure_of([&] {
                matrices.Quita_Puntos_fuera_interv_de_Cotas_con_indice(points, x, y, z, index,
                                                                       row.max, row.min);
              }),
              6)
        << row.rule;
    EXPECT_EQ(points, 3) << row.rule;
    EXPECT_EQ(elements(index), row.index) << row.rule;
    EXPECT_EQ(elements(x), Values(row.index.begin(), row.index.end())) << row.rule;
  }
}

TEST(ElevationFilter, ArraysThatDoNotStartAt0FailWhenTheyAreResized) {
  DoubleArray x = doubles(1, {1, 2, 3}), y = doubles(0, {0, 1, 2, 3}), z = doubles(0, {0, 9, 1, 1});
  LongArray index = longs(0, {0, 1, 2, 3});
  std::int32_t points = 3;
  EXPECT_EQ(failure_of_filter(points, x, y, z, index), 9);
  EXPECT_EQ(points, 2);
  EXPECT_EQ(elements(x), (Values{2, 3, 3}));
  EXPECT_EQ(y.upper(), 3);  // X comes first
}

// Where arrays of `points` elements and the ends of an interval lie in a host's memory.
struct SharedList {
  std::size_t points;
  std::size_t x, y, z, max, min;
};

// Compacts as the rules read. Failure 6 at a NaN, 9 where the arrays do not start at 0.
std::int32_t filter_plainly(const SharedList& list, Values& memory, Index& index) {
  std::size_t k = 0;
  for (std::size_t i = 0; i < list.points; ++i) {
    const double level = memory[list.z + i], max = memory[list.max], min = memory[list.min];
    if (std::isnan(level) || std::isnan(max) || std::isnan(min)) return 6;
    if (level > max || level < min) continue;
    memory[list.x + k] = memory[list.x + i];
    memory[list.y + k] = memory[list.y + i];
    memory[list.z + k] = memory[list.z + i];
    index[k] = index[i];
    ++k;
  }
  return 9;
}

TEST(ElevationFilter, CompactsPointByPointWhateverIsSharedAndHoweverLongTheList) {
  for (std::uint64_t seed = 1; seed <= 4000; ++seed) {
    std::mt19937_64 engine(seed);
    const auto below = [&](std::size_t end) { return static_cast<std::size_t>(engine() % end); };
    const std::size_t points = below(300);
    const auto start = [&] { return below(3) == 0 ? below(4) : below(3) * 400; };
    const auto end = [&] { return below(2) == 0 ? below(1000) : below(20); };
    const SharedList list{points, start(), start(), start(), end(), end()};
    Values memory(1200);
    for (double& value : memory) value = static_cast<double>(below(9));
    memory[list.max] = 6.0;
    memory[list.min] = 1.0;
    if (below(4) == 0) memory[below(memory.size())] = nan;
    Index index(points);
    std::iota(index.begin(), index.end(), 1);

    Values plain = memory;
    Index plain_index = index;
    const std::int32_t expected = filter_plainly(list, plain, plain_index);
    FixedMemory owner;
    const auto count = static_cast<std::uint32_t>(points);
    DoubleArray x, y, z;
    LongArray numbers;
    x.adopt(owner, memory.data() + list.x, 1, count);
    y.adopt(owner, memory.data() + list.y, 1, count);
    z.adopt(owner, memory.data() + list.z, 1, count);
    numbers.adopt(owner, index.data(), 1, count);
    auto n = static_cast<std::int32_t>(points);
    const std::int32_t failed = failure_of([&] {
      matrices.Quita_Puntos_fuera_interv_de_Cotas_con_indice(n, x, y, z, numbers, memory[list.max],
                                                             memory[list.min]);
    });
    ASSERT_EQ(failed, expected) << seed;
    ASSERT_EQ(index, plain_index) << seed;
    for (std::size_t i = 0; i < memory.size(); ++i) {
      ASSERT_EQ(bits(memory[i]), bits(plain[i])) << seed << " at " << i;
    }
  }
}

TEST(RemovalFacades, TheEmptyOnesChangeNothing) {
  const DoubleArray none;
  matrices.Quita_Puntos_Repetidos_XYZ_con_indice(5, none, none, none, LongArray(), 1, true);
  matrices.Quita_Pts_Repetidos_3D(5, none, none, none, StringArray(), StringArray(), ShortArray(),
                                  LongArray(), ObjectRef(), true, 1);
}

TEST(RemovalFacades, PrecisionAndAvisoDoNotMatterInPlace) {
  for (const double precision : {0.0, 0.5, 100.0, -1.0}) {
    for (const bool aviso : {false, true}) {
      DoubleArray x = doubles(1, {1, 1, 1, 2, 2, 2}), y(1, 6), z = doubles(1, {1, 2, 3, 4, 5, 6});
      std::int32_t points = 6;
      matrices.Quita_Puntos_Repetidos(points, x, y, z, precision, aviso);
      EXPECT_EQ(points, 3);
      EXPECT_EQ(elements(x), (Values{1, 2, 2, 2, 2, 2}));
      EXPECT_EQ(elements(z), (Values{1, 4, 5, 4, 5, 6}));
    }
  }
}

TEST(RemovalFacades, TheIndexIsComposedWithTheCallersNumbering) {
  auto* progress = new AnyProgress;
  const ObjectRef sink(progress);
  const DoubleArray x = doubles(1, {9, 1, 1, 5}), y(1, 4), z = doubles(1, {0, 1, 2, 0});
  LongArray index = longs(1, {100, 200, 300, 400});
  std::int32_t points = 4;
  matrices.Quita_Puntos_Repetidos_XYZ_con_indice1(points, x, y, z, index, sink, 0.1, true);
  EXPECT_EQ(points, 3);
  EXPECT_EQ(elements(index), (Index{0, 300, 400, 100, 0}));  // the higher of two, in X order
  EXPECT_EQ(elements(x), (Values{9, 1, 1, 5}));
  EXPECT_GT(progress->writes, 0);
}

// Near all the way, but not all near the first: two clusters, where a comparison
// with the neighbour alone keeps one point.
TEST(RemovalFacades, AChainEndsItsClusterAtTheAnchorsTolerance) {
  const Values chain = {0, 0.00015, 0.0003};
  LongArray index = longs(1, {1, 2, 3});
  std::int32_t points = 3;
  matrices.Quita_Puntos_Repetidos_XYZ_con_indice1(points, doubles(1, chain), DoubleArray(1, 3),
                                                  DoubleArray(1, 3), index,
                                                  ObjectRef(new AnyProgress), 0, true);
  EXPECT_EQ(points, 2);
  EXPECT_EQ(elements(index), (Index{0, 1, 3, 0}));
  DoubleArray x = doubles(1, chain), y = doubles(1, {7, 7, 7}), z = doubles(1, {1, 2, 3});
  points = 3;
  matrices.Quita_Puntos_Repetidos(points, x, y, z, 0, false);
  EXPECT_EQ(points, 1);
  points = 1;
  x = doubles(1, {4, 5});
  matrices.Quita_Puntos_Repetidos(points, x, y, z, 0, false);
  EXPECT_EQ(points, 1);
  EXPECT_EQ(elements(x), (Values{4, 5}));
  EXPECT_EQ(elements(y), (Values{7, 7, 7}));
  EXPECT_EQ(elements(z), (Values{1, 2, 3}));
}

TEST(RemovalFacades, ALockedIndexAndANegativeCountAre9) {
  RecordingInterface screen;
  LongArray index(0, 3);
  const ArrayLock lock(index);
  std::int32_t points = -1;
  matrices.Quita_Puntos_Repetidos_XYZ_con_indice1(points, DoubleArray(), DoubleArray(),
                                                  DoubleArray(), index, ObjectRef(), 0, true);
  ASSERT_EQ(screen.boxes.size(), 1U);
  EXPECT_NE(screen.boxes[0].text.find("Error nº  9:"), std::string::npos);
}

TEST(RemovalFacades, APointBeyondTheCallersNumberingIs9) {
  const ObjectRef sink(new AnyProgress);
  const DoubleArray x = doubles(1, {3, 2, 1}), y(1, 3), z(1, 3);
  LongArray index = longs(1, {100, 200});
  std::int32_t points = 3;
  EXPECT_EQ(failure_of([&] {
              matrices.Quita_Puntos_Repetidos_XYZ_con_indice1(points, x, y, z, index, sink, 0.1,
                                                              true);
            }),
            9);
  EXPECT_EQ(points, 3);
}

TEST(RemovalFacades, AFailureOfTheEngineIsShownAndLeavesNoPoints) {
  RecordingInterface screen;
  const DoubleArray x = doubles(1, {3, 2, 1}), none;
  LongArray index = longs(1, {100, 200, 300});
  std::int32_t points = 3;
  matrices.Quita_Puntos_Repetidos_XYZ_con_indice1(points, x, none, none, index,
                                                  ObjectRef(new AnyProgress), 0.1, true);
  EXPECT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(points, 0);
}

// A point list as a host holds it.
struct Points {
  std::int32_t count = 3;
  DoubleArray x = doubles(0, {0, 1, 1, 2}), y{0, 3}, z{0, 3};
  StringArray codes{0, 3}, names{0, 3};
  ShortArray layers{0, 3};
  LongArray numbers{0, 3};
  double precision = 0.0;

  void remove() {
    matrices.Quita_Pts_Repetidos(count, x, y, z, codes, names, layers, numbers, false, precision);
  }
};

TEST(RemovalFacades, TheDialogsToleranceIsThatOfItsTextBox) {
  for (const double precision : {0.0, 0.05}) {
    RecordingInterface screen;
    std::string text;
    screen.user = [&](Form& form) {
      text = form.control("TxtPresc").text().to_utf8();
      form.click("cmdCalcular");
      form.click("cmdEliminar");
    };
    Points points;
    points.x = doubles(0, {0, 1, 1.01, 2});  // further apart than the text says
    points.precision = precision;
    points.remove();
    EXPECT_EQ(text, "0.001");
    EXPECT_EQ(points.count, 3);
    EXPECT_EQ(points.precision, precision == 0.0 ? 0.001 : precision);
  }
}

TEST(RemovalFacades, CancelledTheDialogLeavesAllButPrecision) {
  RecordingInterface screen;
  screen.user = [&](Form& form) { form.click("cmdCancelar"); };
  Points points;
  points.remove();
  EXPECT_EQ(points.count, 3);
  EXPECT_EQ(elements(points.x), (Values{0, 1, 1, 2}));
  EXPECT_EQ(points.precision, 0.001);
}

}  // namespace
}  // namespace orv2_geo

#include <utility>
#include <vector>

#include "orv2_geo/arrays/cgeo_Matrices.h"
#include "tests/platform/recording_interface.h"
#include "tests/support/arrays.h"
#include "tests/support/exchange_by_passes.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

const cgeo_Matrices matrices;
using Values = std::vector<double>;
using Index = std::vector<std::int32_t>;

TEST(SortsInX, FewerThanTwoPointsNeedNoArrays) {
  DoubleArray none;
  for (const std::int32_t points : {1, 0, -1, lowest_long}) {
    EXPECT_EQ(failure_of([&] { matrices.Ordena_en_X_3_Matrices(points, none, none, none); }), 0);
  }
}

TEST(SortsInX, EqualNeighboursChangePlaces) {
  DoubleArray x = doubles(1, {5, 5}), y = doubles(1, {1, 2}), z = doubles(1, {3, 4});
  matrices.Ordena_en_X_3_Matrices(2, x, y, z);
  EXPECT_EQ(elements(y), (Values{2, 1}));
  EXPECT_EQ(elements(z), (Values{4, 3}));
}

TEST(SortsInX, Element0Stays) {
  DoubleArray x = doubles(0, {9, 8, 7}), y = doubles(0, {1, 2, 3}), z = doubles(0, {4, 5, 6});
  matrices.Ordena_en_X_3_Matrices(2, x, y, z);
  EXPECT_EQ(elements(x), (Values{9, 7, 8}));
  EXPECT_EQ(elements(y), (Values{1, 3, 2}));
  EXPECT_EQ(elements(z), (Values{4, 6, 5}));
}

TEST(SortsInX, AFailureLeavesTheExchangesBeforeIt) {
  DoubleArray x = doubles(1, {3, 2, 1}), y = doubles(1, {30, 20}), z = doubles(1, {7, 8, 9});
  EXPECT_EQ(failure_of([&] { matrices.Ordena_en_X_3_Matrices(3, x, y, z); }), 9);
  EXPECT_EQ(elements(x), (Values{2, 1, 3}));
  EXPECT_EQ(elements(y), (Values{20, 30}));
  EXPECT_EQ(elements(z), (Values{8, 7, 9}));  // not yet its turn
}

TEST(SortsInX, RandomPointsAgainstTheLiteralProcedure) {
  Numbers numbers(97);
  for (int run = 0; run < 1000; ++run) {
    const std::size_t n = 2 + numbers.below(30);
    Values x(n), y(n), z(n);
    for (std::size_t i = 0; i < n; ++i) {
      x[i] = static_cast<double>(numbers.below(1 + numbers.below(12)));
      y[i] = static_cast<double>(i);
      z[i] = numbers.between(0, 9);
    }
    DoubleArray X = doubles(1, x), Y = doubles(1, y), Z = doubles(1, z);
    const bool two_are_one = run % 9 == 0;  // exchanged twice, and so left alone
    DoubleArray& last = two_are_one ? Y : Z;
    matrices.Ordena_en_X_3_Matrices(static_cast<std::int32_t>(n), X, Y, last);
    if (two_are_one) {
      exchange_by_passes(0, x);
    } else {
      exchange_by_passes(0, x, y, z);
    }
    ASSERT_EQ(elements(X), x);
    ASSERT_EQ(elements(Y), y);
    ASSERT_EQ(elements(Z), z);
  }
}

const RecordingInterface::Box subscript_box = {
    "Ordena en X el Indice una Matriz1 - Error nº  9:El subíndice está fuera del intervalo", 16,
    "Orv2_Geo.cgeo_Matrices"};

TEST(IndexInX, TheFirstAndTheThirdSort) {
  RecordingInterface screen;
  const DoubleArray x = doubles(1, {5, -1, 3, 0});
  LongArray first(7, 8), third;
  matrices.Ordena_en_X_el_Indice_1Matriz(4, x, first);
  matrices.Ordena_en_X_el_Indice_1Matriz2(3, x, third, ObjectRef());
  EXPECT_EQ(elements(first), (Index{0, 2, 4, 3, 1}));
  EXPECT_EQ(elements(third), (Index{0, 2, 3, 1}));
  EXPECT_EQ(first.lower(), 0);
  EXPECT_EQ(elements(x), (Values{5, -1, 3, 0}));
  EXPECT_TRUE(screen.boxes.empty());
}

TEST(IndexInX, TheFirstFailsAndTheThirdShowsIt) {
  RecordingInterface screen;
  LongArray index;
  EXPECT_EQ(failure_of([&] { matrices.Ordena_en_X_el_Indice_1Matriz(2, DoubleArray(), index); }),
            9);
  EXPECT_TRUE(screen.boxes.empty());
  matrices.Ordena_en_X_el_Indice_1Matriz2(2, DoubleArray(), index, ObjectRef());
  ASSERT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(screen.boxes[0], subscript_box);  // with Matriz1 in it
  EXPECT_EQ(elements(index), (Index{0, 0, 0}));
}

TEST(IndexInX, TheSecondOnlyNumbers) {
  RecordingInterface screen;
  LongArray index = longs(0, {77, 7, 7, 7});
  matrices.Ordena_en_X_el_Indice_1Matriz1(3, DoubleArray(), index, ObjectRef());
  EXPECT_EQ(elements(index), (Index{77, 1, 2, 3}));
  matrices.Ordena_en_X_el_Indice_1Matriz1(0, DoubleArray(), index, ObjectRef());
  EXPECT_TRUE(screen.boxes.empty());
  LongArray two(1, 2);
  matrices.Ordena_en_X_el_Indice_1Matriz1(3, DoubleArray(), two, ObjectRef());
  EXPECT_EQ(elements(two), (Index{1, 2}));
  ASSERT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(screen.boxes[0], subscript_box);
  // The count may be an entry of the index itself: it is read once.
  LongArray own = longs(1, {3, 9, 9});
  matrices.Ordena_en_X_el_Indice_1Matriz1(own(1), DoubleArray(), own, ObjectRef());
  EXPECT_EQ(elements(own), (Index{1, 2, 3}));
}

}  // namespace
}  // namespace orv2_geo

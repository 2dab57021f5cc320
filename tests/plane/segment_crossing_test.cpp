#include <gtest/gtest.h>

#include "tests/plane/agree.h"
#include "tests/plane/restated_crossing.h"
#include "tests/plane/restatement.h"

namespace orv2_geo::plane_tests {
namespace {

constexpr double left_alone = 77.5;

struct Row {
  const char* rule;
  double p[8];
  bool cross, meet, met;  // Se_cruzan, Intersec, Cruce
  double xi, yi;          // where meet
};

const Row table[] = {
    {"the diagonals of a square", {0, 0, 2, 2, 0, 2, 2, 0}, true, true, true, 1, 1},
    {"an end on the other piece touches", {0, 0, 2, 0, 1, 0, 1, 5}, true, true, true, 1, 0},
    {"collinear and apart on a level line", {0, 0, 1, 0, 5, 0, 6, 0}, true, false, false, 0, 0},
    {"collinear and overlapping, sloped", {0, 0, 2, 2, 1, 1, 3, 3}, true, false, false, 0, 0},
    {"lines that cross outside both", {0, 0, 1, 1, 5, 0, 6, -1}, false, true, false, 2.5, 2.5},
    {"both vertical, apart", {0, 0, 0, 5, 1, 0, 1, 5}, false, false, false, 0, 0},
    {"both vertical on one X, at any heights",
     {1, 0, 1, 5, 1, 90, 1, 95},
     true,
     false,
     false,
     0,
     0},
    {"parallel and sloped", {0, 0, 2, 1, 0, 1, 2, 2}, false, false, false, 0, 0},
    {"first vertical", {1, -1, 1, 3, 0, 0, 2, 2}, true, true, true, 1, 1},
    {"first vertical, reached outside", {9, -1, 9, 3, 0, 0, 2, 2}, false, true, false, 9, 9},
    {"second vertical", {0, 0, 2, 2, 1, -1, 1, 3}, true, true, true, 1, 1},
    {"second vertical, reached outside", {0, 0, 2, 2, -3, -1, -3, 3}, false, true, false, -3, -3},
    {"second level", {0, -1, 4, 3, 0, 1, 5, 1}, true, true, true, 2, 1},
    {"end to end", {0, 0, 2, 2, 2, 2, 4, 0}, true, true, true, 2, 2},
    {"one side only: the second piece stops short",
     {0, 0, 4, 4, 4, 0, 3, 1},
     false,
     true,
     false,
     2,
     2},
    {"one side only: the first piece stops short",
     {4, 0, 3, 1, 0, 0, 4, 4},
     false,
     true,
     false,
     2,
     2},
    {"a point on the other piece", {1, 1, 1, 1, 0, 0, 2, 2}, true, true, true, 1, 1},
    {"a point on the X of the other piece", {1, 9, 1, 9, 0, 0, 2, 2}, false, true, false, 1, 1},
};

TEST(SegmentCrossing, EachRule) {
  for (const Row& row : table) {
    const auto& p = row.p;
    EXPECT_EQ(plain(algorithms.Se_cruzan_2lineas(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7])),
              row.cross ? -1 : 0)
        << row.rule;
    double xi = left_alone, yi = left_alone;
    EXPECT_EQ(plain(algorithms.Intersec_XY_2lineas(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7],
                                                   xi, yi)),
              row.meet ? -1 : 0)
        << row.rule;
    EXPECT_EQ(xi, row.meet ? row.xi : left_alone) << row.rule;
    EXPECT_EQ(yi, row.meet ? row.yi : left_alone) << row.rule;
    xi = yi = left_alone;
    EXPECT_EQ(
        plain(algorithms.Cruce_XY_2lineas(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7], xi, yi)),
        row.met ? -1 : 0)
        << row.rule;
    EXPECT_EQ(xi, row.met ? row.xi : left_alone) << row.rule;
    EXPECT_EQ(yi, row.met ? row.yi : left_alone) << row.rule;
  }
}

TEST(SegmentCrossing, TheSingleVariantsAlwaysWriteThePoint) {
  for (const Row& row : table) {
    float p[8];
    for (int i = 0; i < 8; ++i) p[i] = static_cast<float>(row.p[i]);
    EXPECT_EQ(
        plain(algorithms.se_cruzan_2lineass_s(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7])),
        row.cross ? -1 : 0)
        << row.rule;
    float xi = 77.5F, yi = 77.5F;
    EXPECT_EQ(plain(algorithms.Intersec_XY_2lineas_s(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7],
                                                     xi, yi)),
              row.meet ? -1 : 0)
        << row.rule;
    EXPECT_EQ(xi, row.meet ? static_cast<float>(row.xi) : 0.0F) << row.rule;
    EXPECT_EQ(yi, row.meet ? static_cast<float>(row.yi) : 0.0F) << row.rule;
    xi = yi = 77.5F;
    EXPECT_EQ(plain(algorithms.Cruce_XY_2lineas_s(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7],
                                                  xi, yi)),
              row.met ? -1 : 0)
        << row.rule;
    EXPECT_EQ(xi, row.met ? static_cast<float>(row.xi) : 0.0F) << row.rule;
    EXPECT_EQ(yi, row.met ? static_cast<float>(row.yi) : 0.0F) << row.rule;
  }
}

struct FailureRow {
  const char* rule;
  double p[8];
  std::int32_t cross, meet;
  double xi, yi;  // after Intersec
};

TEST(SegmentCrossing, FailuresLeaveWhatWasWritten) {
  const FailureRow rows[] = {
      {"products beyond f64", {0, 0, 1e300, 1e300, 0, 1e300, 1e300, 0}, 6, 0, 5e299, 5e299},
      {"a slope beyond f64", {0, 0, 1e-10, 1e300, 1, 0, 2, 1}, 0, 6, left_alone, left_alone},
      {"the point of a vertical piece: X is written before Y fails",
       {1e300, 0, 1e300, 1, 0, 0, 1, 1e300},
       6,
       6,
       1e300,
       left_alone},
      {"the same with the second piece vertical",
       {0, 0, 1, 1e300, 1e300, 0, 1e300, 1},
       6,
       6,
       1e300,
       left_alone},
      {"a difference beyond f64", {-1e308, 0, 1e308, 1, 0, 1, 1, 0}, 6, 6, left_alone, left_alone},
      {"X1 is NaN", {nan, 0, 1, 1, 0, 1, 1, 0}, 6, 6, left_alone, left_alone},
      {"x3 is NaN and the first piece vertical",
       {1, 0, 1, 1, nan, 1, 1, 0},
       6,
       6,
       left_alone,
       left_alone},
      {"Y2 is NaN: only the endless lines carry it",
       {0, 0, 1, nan, 0, 1, 1, 0},
       6,
       6,
       left_alone,
       left_alone},
      {"infinite against infinite", {0, 0, inf, inf, 0, 1, 1, 0}, 6, 6, left_alone, left_alone},
  };
  for (const FailureRow& row : rows) {
    const auto& p = row.p;
    EXPECT_EQ(failure_of([&] {
                (void)algorithms.Se_cruzan_2lineas(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7]);
              }),
              row.cross)
        << row.rule;
    double xi = left_alone, yi = left_alone;
    EXPECT_EQ(failure_of([&] {
                (void)algorithms.Intersec_XY_2lineas(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7],
                                                     xi, yi);
              }),
              row.meet)
        << row.rule;
    EXPECT_EQ(xi, row.xi) << row.rule;
    EXPECT_EQ(yi, row.yi) << row.rule;
    // The inner test's failure arrives under its own number, with nothing written.
    if (row.cross == 0) continue;
    xi = yi = left_alone;
    EXPECT_EQ(failure_of([&] {
                (void)algorithms.Cruce_XY_2lineas(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7],
                                                  xi, yi);
              }),
              row.cross)
        << row.rule;
    EXPECT_EQ(xi, left_alone) << row.rule;
    EXPECT_EQ(yi, left_alone) << row.rule;
  }
}

// Between level pieces the Y alone decides, but every X has been compared.
TEST(SegmentCrossing, NaNInAnyCoordinateIs6EvenBetweenLevelPieces) {
  for (std::size_t at = 0; at < 8; at += 2) {
    double v[8] = {0, 0, 2, 0, 5, 1, 6, 1};
    v[at] = nan;
    EXPECT_EQ(failure_of([&] {
                (void)cgeo_Algorismos().Se_cruzan_2lineas(v[0], v[1], v[2], v[3], v[4], v[5], v[6],
                                                          v[7]);
              }),
              6)
        << at;
  }
}

TEST(SegmentCrossing, AnInfinityThatRaisesNothingTravelsOn) {
  // From (0,0) to (infinity,5): the slope is 5 / infinity, a plain zero.
  double xi = left_alone, yi = left_alone;
  EXPECT_TRUE(algorithms.Cruce_XY_2lineas(0, 0, inf, 5, 2, -1, 4, 1, xi, yi));
  EXPECT_EQ(xi, 3.0);
  EXPECT_EQ(yi, 0.0);
}

TEST(SegmentCrossing, AFailureIsSignedByTheClass) {
  try {
    double xi = 0.0, yi = 0.0;
    (void)algorithms.Cruce_XY_2lineas(nan, 0, 1, 1, 0, 1, 1, 0, xi, yi);
    FAIL();
  } catch (const RunFailure& failure) {
    EXPECT_EQ(failure.number(), 6);
    EXPECT_EQ(failure.source(), "Orv2_Geo.cgeo_Algorismos");
  }
}

TEST(SegmentCrossing, ASingleAnswerBeyondItsRangeIs6) {
  float xi = 77.5F, yi = 77.5F;
  // x = 3e38 fits, y = 9e38 does not.
  EXPECT_EQ(failure_of([&] {
              (void)algorithms.Intersec_XY_2lineas_s(3e38F, 0, 3e38F, 1, 0, 0, 1, 3, xi, yi);
            }),
            6);
  EXPECT_EQ(xi, 3e38F);
  EXPECT_EQ(yi, 77.5F);
  // x = 4e38 does not fit: nothing is given back.
  xi = 77.5F;
  EXPECT_EQ(failure_of([&] {
              (void)algorithms.Intersec_XY_2lineas_s(0, 0, 2e38F, 1, 0, 1, 2e38F, 1.5F, xi, yi);
            }),
            6);
  EXPECT_EQ(xi, 77.5F);
  EXPECT_EQ(yi, 77.5F);
  EXPECT_EQ(failure_of([&] {
              (void)algorithms.Cruce_XY_2lineas_s(0, nan_single, 1, 1, 0, 1, 1, 0, xi, yi);
            }),
            6);
  EXPECT_EQ(
      failure_of([&] { (void)algorithms.se_cruzan_2lineass_s(0, 0, 1, 1, 0, 1, nan_single, 0); }),
      6);
  EXPECT_EQ(xi, 77.5F);
  EXPECT_EQ(yi, 77.5F);
}

constexpr auto two_lines = parameters(a_point, a_point, a_point, a_point);
constexpr auto two_lines_and_answer =
    parameters(a_point, a_point, a_point, a_point, an_output, an_output);

TEST(SegmentCrossing, RandomPieces) {
  agree(&cgeo_Algorismos::Se_cruzan_2lineas, restated_crossing, two_lines);
  agree(&cgeo_Algorismos::Intersec_XY_2lineas, restated_meeting, two_lines_and_answer);
  agree(&cgeo_Algorismos::Cruce_XY_2lineas, restated_cut, two_lines_and_answer);
}

TEST(SegmentCrossing, RandomSinglePieces) {
  agree_single(&cgeo_Algorismos::se_cruzan_2lineass_s, restated_crossing, two_lines);
  agree_single(&cgeo_Algorismos::Intersec_XY_2lineas_s, restated_meeting, two_lines_and_answer);
  agree_single(&cgeo_Algorismos::Cruce_XY_2lineas_s, restated_cut, two_lines_and_answer);
}

}  // namespace
}  // namespace orv2_geo::plane_tests

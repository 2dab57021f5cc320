#include <gtest/gtest.h>

#include <algorithm>

#include "tests/plane/agree.h"
#include "tests/plane/restated_elevation.h"
#include "tests/plane/restatement.h"

namespace orv2_geo::plane_tests {
namespace {

TEST(DirectionAndDistance, EachQuadrantAndEachAxis) {
  struct Row {
    const char* rule;
    double x, y, angle, distance;
    bool exact;
  };
  const double root = runtime.sqrt(2.0);
  const Row rows[] = {
      {"first quadrant", 1, 1, 50, root, false},
      {"second quadrant", 1, -1, 150, root, false},
      {"third quadrant", -1, -1, 250, root, false},
      {"fourth quadrant", -1, 1, 350, root, false},
      {"east is exactly 100", 1, 0, 100, 1, true},
      {"south is exactly 200", 0, -1, 200, 1, true},
      {"west is exactly 300", -1, 0, 300, 1, true},
      {"north is exactly 0", 0, 1, 0, 1, true},
      {"no length: both are 0", 0, 0, 0, 0, true},
      {"minus zero is zero", -0.0, -0.0, 0, 0, true},
      {"a slope that underflows, east by north: not above 0, so from 300", 1e10, 1e-320, 300, 1e10,
       true},
      {"the same east by south: from 100", 1e10, -1e-320, 100, 1e10, true},
      {"the same west by south", -1e10, -1e-320, 300, 1e10, true},
      {"the same west by north", -1e10, 1e-320, 300, 1e10, true},
      {"the last angle before north stays below 400, as this circle is a hair wide", -1e-290, 1,
       399.99999998694273, 1, true},
  };
  for (const Row& row : rows) {
    double angle = -1.0, distance = -1.0;
    algorithms.recta_Angulo_y_Dist(0, 0, row.x, row.y, angle, distance);
    EXPECT_EQ(distance, row.distance) << row.rule;
    if (row.exact) {
      EXPECT_EQ(bits(angle), bits(row.angle)) << row.rule;
    } else {
      EXPECT_NEAR(angle, row.angle, 1e-7) << row.rule;
    }
  }
}

TEST(DirectionAndDistance, FailuresLeaveWhatWasWritten) {
  struct Row {
    const char* rule;
    double p[4];
    std::int32_t failure;
    double angle, distance;
  };
  const Row rows[] = {
      {"a square beyond f64", {0, 0, 1e300, 0}, 6, -1, -1},
      {"a difference beyond f64", {-1e308, 0, 1e308, 0}, 6, -1, -1},
      {"NaN passes the distance and fails at its comparison", {0, 0, nan, 0}, 6, -1, nan},
      {"a slope beyond f64, after the distance", {0, 0, 1e-300, 1e100}, 6, -1, 1e100},
      {"infinite on both axes: the quotient", {0, 0, inf, inf}, 6, -1, inf},
      {"infinite on one axis travels on", {0, 0, inf, 5}, 0, 300, inf},
      {"infinite minus infinite", {inf, 0, inf, 5}, 6, -1, -1},
  };
  for (const Row& row : rows) {
    double angle = -1.0, distance = -1.0;
    EXPECT_EQ(failure_of([&] {
                algorithms.recta_Angulo_y_Dist(row.p[0], row.p[1], row.p[2], row.p[3], angle,
                                               distance);
              }),
              row.failure)
        << row.rule;
    EXPECT_EQ(bits(angle), bits(row.angle)) << row.rule;
    EXPECT_EQ(bits(distance), bits(row.distance)) << row.rule;
  }
}

TEST(PointByDirection, TheFactorIsRounded) {
  double x = -1.0, y = -1.0;
  algorithms.XY_dando_ANG_DIST(10, 20, 100, 5, x, y);
  EXPECT_NEAR(x, 15.0, 1e-8);
  EXPECT_NEAR(y, 20.0, 1e-8);
  EXPECT_NE(y, 20.0);
  algorithms.XY_dando_ANG_DIST(10, 20, 0, 5, x, y);
  EXPECT_EQ(x, 10.0);
  EXPECT_EQ(y, 25.0);
  algorithms.XY_dando_ANG_DIST(10, 20, 250, 0, x, y);
  EXPECT_EQ(x, 10.0);
  EXPECT_EQ(y, 20.0);
}

TEST(PointByDirection, FailuresLeaveWhatWasWritten) {
  double x = -1.0, y = -1.0;
  EXPECT_EQ(failure_of([&] { algorithms.XY_dando_ANG_DIST(0, 0, inf, 5, x, y); }), 6);
  EXPECT_EQ(x, -1.0);
  EXPECT_EQ(failure_of([&] { algorithms.XY_dando_ANG_DIST(1.7e308, 0, 100, 1.7e308, x, y); }), 6);
  EXPECT_EQ(x, -1.0);
  EXPECT_EQ(failure_of([&] { algorithms.XY_dando_ANG_DIST(3, 1.7e308, 0, 1.7e308, x, y); }), 6);
  EXPECT_EQ(x, 3.0);
  EXPECT_EQ(y, -1.0);
  algorithms.XY_dando_ANG_DIST(nan, 5, 0, 1, x, y);  // carried on, compared with nothing
  EXPECT_TRUE(std::isnan(x));
  EXPECT_EQ(y, 6.0);
}

TEST(PointByDirection, TheDirectionIsReadBeforeAnythingIsWritten) {
  double angle = 100.0, y = 0.0;
  algorithms.XY_dando_ANG_DIST(0, 0, angle, 5, angle, y);
  EXPECT_NEAR(angle, 5.0, 1e-8);
  EXPECT_NEAR(y, 0.0, 1e-8);
  double distance = 5.0;  // the written X is the distance of Y
  algorithms.XY_dando_ANG_DIST(1, 0, 0, distance, distance, y);
  EXPECT_EQ(distance, 1.0);
  EXPECT_EQ(y, 1.0);
}

TEST(PointByElevation, MeasuredFromTheSecondEndAppliedFromTheFirst) {
  double x = -1.0, y = -1.0;
  algorithms.XY_de_Z_en_Recta(0, 0, 0, 10, 0, 10, x, y, 10);
  EXPECT_NEAR(x, 0.0, 1e-8);
  EXPECT_NEAR(y, 0.0, 1e-8);
  algorithms.XY_de_Z_en_Recta(0, 0, 0, 10, 0, 10, x, y, 0);
  EXPECT_NEAR(x, 10.0, 1e-8);
  EXPECT_NEAR(y, 0.0, 1e-8);
  algorithms.XY_de_Z_en_Recta(0, 0, 0, 10, 0, 10, x, y, 7);  // 3 from the first end, not 7
  EXPECT_NEAR(x, 3.0, 1e-8);
  algorithms.XY_de_Z_en_Recta(0, 0, 0, 0, 10, 10, x, y, 7);  // due north there is no rounding
  EXPECT_EQ(x, 0.0);
  EXPECT_EQ(y, 3.0);
}

TEST(PointByElevation, FailuresLeaveWhatWasWritten) {
  struct Row {
    const char* rule;
    double p[6];
    double pz;
    std::int32_t failure;
    double x, y;
  };
  const Row rows[] = {
      {"level ends", {0, 0, 5, 10, 0, 5}, 1, 11, -1, -1},
      {"level ends at the elevation asked for", {0, 0, 5, 10, 0, 5}, 5, 6, -1, -1},
      {"level ends without length", {3, 3, 5, 3, 3, 5}, 1, 6, -1, -1},
      {"no length but a height: the first end", {3, 4, 5, 3, 4, 6}, 1, 0, 3, 4},
      {"a length beyond f64", {0, 0, 0, 1e300, 0, 1}, 0, 6, -1, -1},
      {"an elevation beyond f64", {0, 0, 0, 0, 1e200, 1e200}, -1e300, 6, -1, -1},
      {"a product beyond f64 over level ends", {0, 0, 1e200, 0, 1e150, 1e200}, -1e200, 6, -1, -1},
      {"NaN in plan", {nan, 0, 0, 1, 0, 1}, 0, 6, -1, -1},
      {"NaN as elevation travels on", {0, 0, nan, 0, 5, 1}, 0, 0, nan, nan},
  };
  for (const Row& row : rows) {
    const auto& p = row.p;
    double x = -1.0, y = -1.0;
    EXPECT_EQ(failure_of([&] {
                algorithms.XY_de_Z_en_Recta(p[0], p[1], p[2], p[3], p[4], p[5], x, y, row.pz);
              }),
              row.failure)
        << row.rule;
    EXPECT_EQ(bits(x), bits(row.x)) << row.rule;
    EXPECT_EQ(bits(y), bits(row.y)) << row.rule;
  }
}

TEST(ElevationAlongALine, EachRule) {
  struct Row {
    const char* rule;
    double p[8];
    std::int32_t failure;
    double expected;
  };
  const Row rows[] = {
      {"half way", {0, 0, 0, 10, 0, 10, 5, 0}, 0, 5.0},
      {"past the second end: its distance counts back", {0, 0, 0, 10, 0, 10, 15, 0}, 0, 5.0},
      {"off the line: its distance counts", {0, 0, 0, 10, 0, 10, 10, 3}, 0, 7.0},
      {"on the second end", {0, 0, 0, 10, 0, 10, 10, 0}, 0, 10.0},
      {"on the first end", {0, 0, 0, 10, 0, 10, 0, 0}, 0, 0.0},
      {"before the first end", {0, 0, 0, 10, 0, 10, -10, 0}, 0, -10.0},
      {"falling", {0, 0, 10, 3, 4, 0, 3, 3}, 0, 2.0},
      {"no length: the second elevation", {5, 5, 1, 5, 5, 9, 100, 100}, 0, 9.0},
      {"a length whose square is zero is none", {0, 0, 1, 1e-200, 0, 9, 100, 100}, 0, 9.0},
      {"a square beyond f64", {0, 0, 1, 1e300, 0, 9, 0, 0}, 6, 0},
      {"a point too far away, even without length", {0, 0, 1, 0, 0, 9, 1e300, 0}, 6, 0},
      {"a drop beyond f64", {0, 0, -1e308, 1, 0, 1e308, 0, 0}, 6, 0},
      {"NaN in plan", {nan, 0, 1, 1, 0, 9, 0, 0}, 6, 0},
      {"NaN as elevation travels on", {0, 0, nan, 1, 0, 9, 0, 0}, 0, nan},
      {"infinite against infinite", {inf, 0, 1, inf, 0, 9, 0, 0}, 6, 0},
  };
  for (const Row& row : rows) {
    const auto& p = row.p;
    double answer = 0.0;
    EXPECT_EQ(failure_of([&] {
                answer =
                    algorithms.Cota_en_alineacion(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7]);
              }),
              row.failure)
        << row.rule;
    EXPECT_EQ(bits(answer), bits(row.expected)) << row.rule;
  }
}

TEST(ElevationInATriangle, EachRule) {
  struct Row {
    const char* rule;
    double p[11];
    std::int32_t failure;
    double expected;
  };
  const Row rows[] = {
      {"inside", {0, 0, 0, 10, 0, 10, 0, 10, 10, 2.5, 2.5}, 0, 5.0},
      {"on vertex 1", {3, 0, 7, 10, 0, 10, 0, 10, 10, 3, 0}, 0, 7.0},
      {"on vertex 1 with the far side vertical: no meeting, 0",
       {0, 0, 7, 10, 0, 10, 10, 9, 10, 0, 0},
       0,
       0.0},
      {"the line to the point is parallel to the far side",
       {0, 0, 7, 0, 1, 9, 2, 3, 9, 1, 1},
       0,
       0.0},
      {"both vertical", {0, 0, 7, 5, 0, 9, 5, 3, 9, 0, 4}, 0, 0.0},
      {"a slope beyond f64", {0, 0, 0, 0, 0, 1, 1e-10, 1e300, 1, 1, 1}, 6, 0},
      {"an elevation beyond f64", {0, 0, -1e308, 10, 0, 1e308, 0, 10, 1e308, 2.5, 2.5}, 6, 0},
      {"NaN", {nan, 0, 0, 10, 0, 10, 0, 10, 10, 2.5, 2.5}, 6, 0},
  };
  for (const Row& row : rows) {
    const auto& p = row.p;
    double answer = 0.0;
    EXPECT_EQ(failure_of([&] {
                answer = algorithms.Triangulo_Cota_1p_interior(p[0], p[1], p[2], p[3], p[4], p[5],
                                                               p[6], p[7], p[8], p[9], p[10]);
              }),
              row.failure)
        << row.rule;
    EXPECT_DOUBLE_EQ(answer, row.expected) << row.rule;
  }
}

double slope(const double (&p)[9]) {
  return algorithms.Triangulo_pendiente(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7], p[8]);
}

TEST(SlopeOfATriangle, EachRule) {
  struct Row {
    const char* rule;
    double p[9];
    double expected, within;
  };
  const Row rows[] = {
      {"level", {0, 0, 4, 10, 0, 4, 0, 10, 4}, 0.0, 0.0},
      {"bottom side level", {0, 0, 0, 10, 0, 0, 0, 10, 5}, 50.0, 0.0},
      {"top side level", {0, 0, 0, 10, 0, 5, 0, 10, 5}, 70.710678, 1e-6},
      {"three levels", {0, 0, 0, 10, 0, 4, 0, 10, 10}, 111.803399, 1e-6},
      {"the same triangle raised by 100", {0, 0, 100, 10, 0, 104, 0, 10, 110}, 100.02, 0.005},
      {"bottom side level and the high vertex over it", {0, 0, 0, 10, 0, 0, 5, 0, 5}, 0.0, 0.0},
      {"top side level and the low vertex under it", {5, 0, 0, 10, 0, 5, 0, 0, 5}, 0.0, 0.0},
      {"three levels in one point of the plan", {3, 3, 1, 3, 3, 2, 3, 3, 5}, 0.0, 0.0},
      {"a bottom side that is a point", {0, 0, 0, 0, 0, 0, 3, 4, 5}, 100.0, 0.0},
      {"top side level, below zero", {0, 0, -5, 10, 0, -5, 0, 10, -10}, 50.0, 0.0},
  };
  for (const Row& row : rows) {
    EXPECT_NEAR(slope(row.p), row.expected, row.within) << row.rule;
  }
}

TEST(SlopeOfATriangle, EveryRanking) {
  // Where elevations are equal, the last block that fits decides which vertex
  // is which; with three levels each order of the vertices is one triangle.
  const double plan[3][2] = {{0, 0}, {10, 0}, {2, 9}};
  for (int code = 0; code < 27; ++code) {
    const double z[3] = {double(code % 3) + 1, double(code / 3 % 3) + 1, double(code / 9) + 1};
    const double p[9] = {plan[0][0], plan[0][1], z[0],       plan[1][0], plan[1][1],
                         z[1],       plan[2][0], plan[2][1], z[2]};
    const double expected = restated_slope(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7], p[8]);
    EXPECT_EQ(bits(slope(p)), bits(expected)) << z[0] << ' ' << z[1] << ' ' << z[2];
    EXPECT_EQ(expected == 0.0, z[0] == z[1] && z[1] == z[2]);
    int order[3] = {0, 1, 2};
    if (z[0] == z[1] || z[1] == z[2] || z[0] == z[2]) continue;
    do {  // the same three vertices handed in in any order
      const double q[9] = {plan[order[0]][0], plan[order[0]][1], z[order[0]],
                           plan[order[1]][0], plan[order[1]][1], z[order[1]],
                           plan[order[2]][0], plan[order[2]][1], z[order[2]]};
      EXPECT_EQ(bits(slope(q)), bits(expected));
    } while (std::next_permutation(order, order + 3));
  }
}

TEST(SlopeOfATriangle, WhateverFailsInsideLeavesAs3) {
  const double rows[][9] = {
      {0, 0, nan, 10, 0, 0, 0, 10, 5},                          // a comparison, 6
      {0, 0, 1, 10, 0, nan, 0, 10, 5},                          // the same
      {0, 0, 1, 10, 0, 1, 0, 10, nan},                          // the same in the last
      {0, 0, 0, 10, 0, 0, 0, 1e300, 5},                         // bottom side level, distance, 6
      {0, 1e300, 0, 10, 0, 5, 0, 10, 5},                        // top side level, distance, 6
      {1e308, 0, 0, 10, 0, 4, 1e308, 10, 10},                   // the midpoint, 6
      {0, 0, 0, 1e300, 0, 4, 0, 10, 10},                        // the point of elevation zero, 6
      {0, 0, 1e10, 1e150, 0, 10000000000.000002, 0, 10, 2e10},  // the way there, 6
      {0, 0, 0, 1e-200, 0, 0, 1, 1, 5},                         // a square that is zero, 11
      {0, 0, -1e308, 10, 0, -1e308, 0, 10, 1e308},              // the rise, 6
      {0, 0, 0, 1, 0, 0, 0, 1e-10, 1e300},                      // the slope, 6
  };
  for (const auto& row : rows) {
    try {
      (void)slope(row);
      ADD_FAILURE() << row[2] << ' ' << row[5] << ' ' << row[8];
    } catch (const RunFailure& failure) {
      EXPECT_EQ(failure.number(), 3);
      EXPECT_EQ(failure.description(), "Return sin GoSub");
      EXPECT_EQ(failure.source(), "Orv2_Geo.cgeo_Algorismos");
    }
  }
}

TEST(Elevations, RandomValuesAndSharedVariables) {
  agree(&cgeo_Algorismos::recta_Angulo_y_Dist, restated_direction,
        parameters(a_point, a_point, an_output, an_output));
  agree(&cgeo_Algorismos::XY_dando_ANG_DIST, restated_point,
        parameters(a_point, an_angle, a_distance, an_output, an_output));
  agree(&cgeo_Algorismos::XY_de_Z_en_Recta, restated_point_of_elevation,
        parameters(a_vertex, a_vertex, an_output, an_output, an_elevation));
  agree(&cgeo_Algorismos::Cota_en_alineacion, restated_elevation,
        parameters(a_vertex, a_vertex, a_point));
  agree(&cgeo_Algorismos::Triangulo_Cota_1p_interior, restated_inside,
        parameters(a_vertex, a_vertex, a_vertex, a_point));
  agree(&cgeo_Algorismos::Triangulo_pendiente, restated_slope,
        parameters(a_vertex, a_vertex, a_vertex));
}

}  // namespace
}  // namespace orv2_geo::plane_tests

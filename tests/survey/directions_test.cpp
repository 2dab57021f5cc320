#include "orv2_geo/angles/cgeo_Algorismos.h"
#include "orv2_geo/survey/cgeo_Geometria.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

const cgeo_Geometria geometry;

struct BearingRow {
  const char* rule;
  double x1, y1, x2, y2;
  double bearing, of_the_function;
  double length;
};

TEST(Directions, BearingAndLengthOfALine) {
  const double root_of_two = 1.4142135623730951;
  const BearingRow table[] = {
      {"first quadrant", 0, 0, 1, 1, 50.000000006528644, 50.000000006528644, root_of_two},
      {"third quadrant", 0, 0, -1, -1, 250.00000000652864, 250.00000000652864, root_of_two},
      {"second quadrant", 0, 0, 1, -1, 149.99999999347136, 149.99999999347136, root_of_two},
      {"fourth quadrant", 0, 0, -1, 1, 349.99999999347136, 349.99999999347136, root_of_two},
      {"east: the function says 0", 0, 0, 1, 0, 100, 0, 1},
      {"west: the function says 0", 0, 0, -1, 0, 300, 0, 1},
      {"north", 0, 0, 0, 1, 0, 0, 1},
      {"south: the function says 0", 0, 0, 0, -1, 200, 0, 1},
      {"equal points", 3, 4, 3, 4, 0, 0, 0},
      // Squares that underflow: a line too short to have a length has no bearing.
      {"no length, to the north-east", 0, 0, 1e-200, 1e-200, 0, 0, 0},
      {"no length, to the south-west", 0, 0, -1e-170, -1e-200, 0, 0, 0},
      // The slope underflows to zero: only a fall to the east still tells its base.
      {"east, rising by nothing", 0, 0, 1e150, 1e-300, 300, 300, 1e150},
      {"east, falling by nothing", 0, 0, 1e150, -1e-300, 100, 100, 1e150},
      {"west, rising by nothing", 0, 0, -1e150, 1e-300, 300, 300, 1e150},
      {"west, falling by nothing", 0, 0, -1e150, -1e-300, 300, 300, 1e150},
  };
  for (const BearingRow& row : table) {
    double bearing = -1.0, length = -1.0;
    geometry.GR_AngDist_de_1Recta(row.x1, row.y1, row.x2, row.y2, bearing, length);
    EXPECT_EQ(bits(bearing), bits(row.bearing)) << row.rule;
    EXPECT_EQ(bits(length), bits(row.length)) << row.rule;
    EXPECT_EQ(bits(geometry.GF_Angulo_de_1Recta(row.x1, row.y1, row.x2, row.y2)),
              bits(row.of_the_function))
        << row.rule;
  }
}

TEST(Directions, TheLengthIsWrittenBeforeALaterFailure) {
  double bearing = -1.0, length = -1.0;
  EXPECT_EQ(
      failure_of([&] { geometry.GR_AngDist_de_1Recta(0, 0, 5e-324, 1e150, bearing, length); }), 6);
  EXPECT_EQ(length, 1e150);
  EXPECT_EQ(bearing, -1.0);
  length = -1.0;
  EXPECT_EQ(failure_of([&] { geometry.GR_AngDist_de_1Recta(0, 0, 1e200, 1, bearing, length); }), 6);
  EXPECT_EQ(length, -1.0);
  EXPECT_EQ(failure_of([&] { (void)geometry.GF_Angulo_de_1Recta(-1e308, 0, 1e308, 1); }), 6);
}

TEST(Directions, TheDistanceIsAVariantOfF64) {
  EXPECT_EQ(*geometry.GF_Distancia(0, 0, 3, 4).get<double>(), 5.0);
  const float a = 0.1F, b = 0.2F;
  const double dy = static_cast<double>(b) - a;
  const double expected = runtime.sqrt(runtime.pow(dy, 2.0) + runtime.pow(0.0, 2.0));
  EXPECT_EQ(bits(*geometry.GF_Distancia_S(a, b, a, a).get<double>()), bits(expected));
  EXPECT_EQ(bits(*geometry.GF_Distancia(7, 3, 7, 3).get<double>()), bits(0.0));
  EXPECT_EQ(bits(*geometry.GF_Distancia_S(7, 3, 7, 3).get<double>()), bits(0.0));
  EXPECT_EQ(failure_of([&] { (void)geometry.GF_Distancia(1e200, 0, 0, 0); }), 6);
}

TEST(Directions, APointByBearingAndDistance) {
  double x = 0.0, y = 0.0;
  geometry.GR_XY_de_AngDist(0, 0, 100, 10, x, y);
  EXPECT_EQ(bits(x), bits(10.0));
  EXPECT_EQ(bits(y), bits(-2.0510342851533114e-09));
}

TEST(Directions, TheBearingIsReadAgainOnceXIsWritten) {
  double shared = 100.0, y = 0.0;
  geometry.GR_XY_de_AngDist(0, 0, shared, 10, shared, y);
  EXPECT_EQ(bits(shared), bits(10.0));
  EXPECT_EQ(bits(y), bits(runtime.cos(10.0 * 0.01570796327) * 10.0 + 0.0));
}

TEST(Directions, AFailureLeavesTheOutputsBeforeItWritten) {
  double x = -1.0, y = -1.0;
  EXPECT_EQ(failure_of([&] { geometry.GR_XY_de_AngDist(0, 1e308, 0, 1e308, x, y); }), 6);
  EXPECT_EQ(x, 0.0);
  EXPECT_EQ(y, -1.0);
}

TEST(Directions, TheAngleAtAVertex) {
  EXPECT_EQ(geometry.GF_angulo_3_puntos(1, 0, 0, 0, 0, 1), 100.0);
  EXPECT_EQ(geometry.GF_angulo_3_puntos(7, 3, 0, 0, 7, 3), 0.0);
  EXPECT_EQ(bits(geometry.GF_angulo_3_puntos(1, 1, 0, 0, -1, 1)), bits(100.00000001305727));
  EXPECT_EQ(geometry.GF_angulo_3_puntos(0, -1, 0, 0, 0, 1), 200.0);
  EXPECT_EQ(geometry.GF_angulo_3_puntos(0, 0, 0, 0, -1, 0), 100.0);  // P1 on P2: 300 folded
  EXPECT_EQ(geometry.GF_angulo_3_puntos(-1, 0, 0, 0, 0, 0), 100.0);  // P3 on P2 likewise
}

TEST(Directions, AParallelToTheRight) {
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
  geometry.GR_Paralela(0, 0, 0, 10, x1, y1, x2, y2, 5);
  EXPECT_EQ(bits(x1), bits(5.0));
  EXPECT_EQ(bits(y1), bits(1.0255171425766557e-09));
  EXPECT_EQ(bits(x2), bits(5.0));
  EXPECT_EQ(bits(y2), bits(10.000000001025517));
  geometry.GR_Paralela(0, 0, 10, 0, x1, y1, x2, y2, 5);
  EXPECT_EQ(bits(x1), bits(0.0));
  EXPECT_EQ(y1, -5.0);
  EXPECT_EQ(x2, 10.0);
  EXPECT_EQ(y2, -5.0);
  geometry.GR_Paralela(0, 0, 10, 0, x1, y1, x2, y2, -5);
  EXPECT_EQ(y1, 5.0);
  geometry.GR_Paralela(2, 2, 2, 2, x1, y1, x2, y2, 5);
  EXPECT_EQ(x1, 7.0);
}

// The steps again, with every value read where it is used.
void stepped(const double& x1, const double& y1, const double& x2, const double& y2, double& angle,
             double& length) {
  const double dy = y2 - y1, dx = x2 - x1;
  length = runtime.sqrt(runtime.pow(dy, 2.0) + runtime.pow(dx, 2.0));
  if (length == 0.0) {
    angle = 0.0;
  } else if (dy == 0.0) {
    angle = x2 < x1 ? 300.0 : 100.0;
  } else if (dx == 0.0) {
    angle = y2 < y1 ? 200.0 : 0.0;
  } else {
    const volatile double quotient = dy / dx;
    const volatile double scaled = runtime.atan(quotient) * 400.0;
    const double a = scaled / 6.283185308;
    double base = 0.0;
    if (a > 0.0) {
      base = dy >= 0.0 || dx >= 0.0 ? 100.0 : 300.0;
    } else {
      base = dy >= 0.0 || dx <= 0.0 ? 300.0 : 100.0;
    }
    angle = base - a;
    if (angle == 400.0) angle = 0.0;
  }
}

TEST(Directions, RandomLinesAndSharedVariables) {
  Numbers numbers(51);
  for (int i = 0; i < 10000; ++i) {
    double v[6];
    for (double& value : v) value = i % 2 == 0 ? numbers.small_whole() : numbers.any();
    double angle = 0, length = 0, stepped_angle = 0, stepped_length = 0;
    geometry.GR_AngDist_de_1Recta(v[0], v[1], v[2], v[3], angle, length);
    stepped(v[0], v[1], v[2], v[3], stepped_angle, stepped_length);
    ASSERT_EQ(bits(angle), bits(stepped_angle));
    ASSERT_EQ(bits(length), bits(stepped_length));
    // The other class gives the same bits.
    double other_angle = 0, other_length = 0;
    cgeo_Algorismos().recta_Angulo_y_Dist(v[0], v[1], v[2], v[3], other_angle, other_length);
    ASSERT_EQ(bits(angle), bits(other_angle));
    ASSERT_EQ(bits(length), bits(other_length));
    // Along an axis the function says 0.
    const bool along = v[0] == v[2] || v[1] == v[3];
    ASSERT_EQ(bits(geometry.GF_Angulo_de_1Recta(v[0], v[1], v[2], v[3])),
              bits(along ? 0.0 : angle));
    // The length in the place of an end's coordinate.
    double w[4] = {v[0], v[1], v[2], v[3]}, s[4] = {v[0], v[1], v[2], v[3]};
    geometry.GR_AngDist_de_1Recta(w[0], w[1], w[2], w[3], angle, w[2]);
    stepped(s[0], s[1], s[2], s[3], stepped_angle, s[2]);
    ASSERT_EQ(bits(angle), bits(stepped_angle));
    ASSERT_EQ(bits(w[2]), bits(s[2]));

    double a1 = 0, a2 = 0;
    stepped(v[2], v[3], v[0], v[1], a1, length);
    stepped(v[2], v[3], v[4], v[5], a2, length);
    const double turn = std::fabs(a2 - a1);
    ASSERT_EQ(bits(geometry.GF_angulo_3_puntos(v[0], v[1], v[2], v[3], v[4], v[5])),
              bits(turn > 200.0 ? 400.0 - turn : turn));
    ASSERT_EQ(bits(*geometry.GF_Distancia(v[0], v[1], v[2], v[3]).get<double>()),
              bits(runtime.sqrt(runtime.pow(v[1] - v[3], 2.0) + runtime.pow(v[0] - v[2], 2.0))));

    double x = 0, y = 0;
    geometry.GR_XY_de_AngDist(v[0], v[1], v[4], v[5], x, y);
    const volatile double w2 = v[4] * 0.01570796327;
    const volatile double px = runtime.sin(w2) * v[5];
    const volatile double py = runtime.cos(w2) * v[5];
    ASSERT_EQ(bits(x), bits(px + v[0]));
    ASSERT_EQ(bits(y), bits(py + v[1]));

    double p[4] = {};
    geometry.GR_Paralela(v[0], v[1], v[2], v[3], p[0], p[1], p[2], p[3], v[4]);
    stepped(v[0], v[1], v[2], v[3], a1, length);
    const volatile double wp = (a1 - 100.0) * 0.01570796327;
    const volatile double ox = runtime.sin(wp) * v[4];
    const volatile double oy = runtime.cos(wp) * v[4];
    ASSERT_EQ(bits(p[0]), bits(v[0] - ox));
    ASSERT_EQ(bits(p[1]), bits(v[1] - oy));
    ASSERT_EQ(bits(p[2]), bits(v[2] - ox));
    ASSERT_EQ(bits(p[3]), bits(v[3] - oy));
  }
}

void stepped_parallel(const double& x1, const double& y1, const double& x2, const double& y2,
                      double& rx1, double& ry1, double& rx2, double& ry2, const double& distance) {
  double angle = 0.0, length = 0.0;
  stepped(x1, y1, x2, y2, angle, length);
  const volatile double w = (angle - 100.0) * 0.01570796327;
  const auto shifted = [&](const double& from, double (*function)(double)) {
    const volatile double by = function(w) * distance;
    return from - by;
  };
  rx1 = shifted(x1, runtime.sin);
  ry1 = shifted(y1, runtime.cos);
  rx2 = shifted(x2, runtime.sin);
  ry2 = shifted(y2, runtime.cos);
}

// One variable for an answer and for what is read, whichever they are: each value is read
// where it is used, and the answers are written in their order.
TEST(Directions, AParallelOfSharedVariables) {
  Numbers numbers(53);
  for (int run = 0; run < 300; ++run) {
    double start[9];
    for (double& value : start) value = numbers.small_half();
    for (const std::size_t answer : {4, 5, 6, 7}) {
      for (const std::size_t read : {0, 1, 2, 3, 8}) {
        double library[9], literal[9];
        std::copy_n(start, 9, library);
        std::copy_n(start, 9, literal);
        const auto at = [&](double* v, std::size_t i) -> double& {
          return v[i == answer ? read : i];
        };
        double* v = library;
        geometry.GR_Paralela(at(v, 0), at(v, 1), at(v, 2), at(v, 3), at(v, 4), at(v, 5), at(v, 6),
                             at(v, 7), at(v, 8));
        v = literal;
        stepped_parallel(at(v, 0), at(v, 1), at(v, 2), at(v, 3), at(v, 4), at(v, 5), at(v, 6),
                         at(v, 7), at(v, 8));
        for (std::size_t i = 0; i < 9; ++i) {
          ASSERT_EQ(bits(library[i]), bits(literal[i])) << answer << " is " << read << ": " << i;
        }
      }
    }
  }
}

}  // namespace
}  // namespace orv2_geo

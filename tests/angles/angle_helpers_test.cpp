
#include "orv2_geo/angles/cgeo_Algorismos.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

const cgeo_Algorismos algorithms;

double azimuth(double dx, double dy) {
  double aZ = -1.0;
  algorithms.Azimut(dx, dy, aZ);
  return aZ;
}

struct AzimuthRow {
  const char* rule;
  double dx, dy, expected;
};

TEST(Azimut, EachQuadrantAndEachAxis) {
  const AzimuthRow table[] = {
      {"east is 100 to within the last digit", 1, 0, 100.0},
      {"west is 300", -1, 0, 300.0},
      {"north is 0", 0, 1, 0.0},
      {"south is 200 to within the last digit", 0, -1, 200.0},
      {"no direction is 999, scaled", 0, 0, 63598.315251217158},
      {"first quadrant", 1, 1, 49.99999999347136},
      {"second quadrant", 1, -1, 150.00000000652864},
      {"third quadrant", -1, -1, 249.99999999347136},
      {"fourth quadrant", -1, 1, 350.00000000652864},
      {"minus zero is zero", -0.0, -0.0, 63598.315251217158},
  };
  for (const AzimuthRow& row : table) {
    EXPECT_DOUBLE_EQ(azimuth(row.dx, row.dy), row.expected) << row.rule;
  }
  EXPECT_EQ(azimuth(-1, 0), 300.0);
  EXPECT_EQ(azimuth(0, 1), 0.0);
}

TEST(Azimut, FailuresLeaveTheAnswerAsItWas) {
  double aZ = 7.0;
  EXPECT_EQ(failure_of([&] { algorithms.Azimut(1e300, 1e-300, aZ); }), 6);
  EXPECT_EQ(aZ, 7.0);
  EXPECT_EQ(failure_of([&] { algorithms.Azimut(1.0, nan, aZ); }), 6);
  EXPECT_EQ(failure_of([&] { algorithms.Azimut(nan, 0.0, aZ); }), 6);
  EXPECT_EQ(aZ, 7.0);
}

// Step by step, with every value read where it is used.
void stepped_azimuth(const double& dx, const double& dy, double& aZ) {
  if (dy == 0.0) {
    aZ = dx > 0.0 ? 3.141592654 / 2.0 : dx < 0.0 ? 9.424777962 / 2.0 : 999.0;
  } else {
    const volatile double quotient = dx / dy;
    aZ = runtime.atan(quotient);
    if (dy < 0.0) aZ = aZ + 3.141592654;
    if (aZ < 0.0) aZ = aZ + 6.283185308;
  }
  const volatile double scaled = aZ * 200.0;
  aZ = scaled / 3.141592654;
}

TEST(Azimut, RandomValuesAndOneVariableTwice) {
  Numbers numbers(31);
  for (int i = 0; i < 10000; ++i) {
    const double x = numbers.any();
    const double y = numbers.any();
    double expected = 0.0;
    stepped_azimuth(x, y, expected);
    ASSERT_EQ(bits(azimuth(x, y)), bits(expected)) << x << ' ' << y;

    double same = x, same_expected = x;
    algorithms.Azimut(same, y, same);
    stepped_azimuth(same_expected, y, same_expected);
    ASSERT_EQ(bits(same), bits(same_expected)) << x << ' ' << y;

    same = y, same_expected = y;
    algorithms.Azimut(x, same, same);
    stepped_azimuth(x, same_expected, same_expected);
    ASSERT_EQ(bits(same), bits(same_expected)) << x << ' ' << y;

    same = same_expected = y;
    algorithms.Azimut(same, same, same);
    stepped_azimuth(same_expected, same_expected, same_expected);
    ASSERT_EQ(bits(same), bits(same_expected)) << y;
  }
}

TEST(Azimut, TheSingleVariantWritesNothing) {
  const float values[] = {0.0F, 1.0F, -1.0F, 3.5F};
  for (const float dx : values) {
    for (const float dy : values) {
      const float aZ = 12.5F;
      algorithms.Azimut_s(dx, dy, aZ);
      EXPECT_EQ(aZ, 12.5F);
    }
  }
  EXPECT_EQ(failure_of([] { algorithms.Azimut_s(nan_single, 0.0F, 0.0F); }), 6);
}

struct Atan2Row {
  const char* rule;
  double y, x;
  float expected;
};

TEST(Atan2, EachRowOfItsTable) {
  constexpr float pi = 3.14159265358979F;
  const Atan2Row table[] = {
      {"up", 2, 0, 1.57079632679489F},
      {"down", -2, 0, -1.57079632679489F},
      {"nowhere", 0, 0, 0.0F},
      {"left is pi", 0, -1, pi},
      {"right", 0, 5, 0.0F},
      {"upper left", 1, -1, 2.35619449019234F},
      {"lower left", -1, -1, -2.35619449F},
      {"upper right", 1, 1, 0.785398163397448F},
      {"lower right", -1, 1, -0.785398163F},
      {"minus zero is zero", -0.0, -1, pi},
  };
  for (const Atan2Row& row : table) {
    EXPECT_EQ(bits(algorithms.Atan2(row.y, row.x)), bits(row.expected)) << row.rule;
  }
  EXPECT_EQ(failure_of([] { return algorithms.Atan2(1e300, 1e-300); }), 6);
  EXPECT_EQ(failure_of([] { return algorithms.Atan2(nan, 0.0); }), 6);
  EXPECT_EQ(failure_of([] { return algorithms.Atan2(1.0, nan); }), 6);
}

TEST(Atan2, RandomValues) {
  Numbers numbers(32);
  for (int i = 0; i < 10000; ++i) {
    const double y = numbers.any();
    const double x = numbers.any();
    const double p = 4.0 * runtime.atan(1.0);
    double expected = 0.0;
    if (x == 0.0) {
      if (y > 0.0) expected = p / 2.0;
      if (y < 0.0) expected = -(p / 2.0);
    } else if (y == 0.0) {
      if (x < 0.0) expected = p;
    } else {
      const volatile double quotient = y / x;
      expected = runtime.atan(quotient);
      if (x < 0.0 && y > 0.0) expected = expected + p;
      if (x < 0.0 && y < 0.0) expected = expected - p;
    }
    ASSERT_EQ(bits(algorithms.Atan2(y, x)), bits(static_cast<float>(expected))) << y << ' ' << x;
  }
}

TEST(Atn2, AZeroYBecomesItsReplacement) {
  double y = 0.0;
  EXPECT_EQ(algorithms.Atn2(3.0, y),
            static_cast<float>(runtime.atan(3.0 / 1e-09) - 3.141592 / 2.0));
  EXPECT_EQ(y, 1e-09);
  y = -0.0;
  (void)algorithms.Atn2(3.0, y);
  EXPECT_EQ(y, 1e-09);
}

TEST(Atn2, ItsOwnPi) {
  double y = 1.0;
  EXPECT_EQ(algorithms.Atn2(0.0, y), -1.570796F);
  EXPECT_NEAR(algorithms.Atn2(1.0, y), -0.785398, 1e-6);
  EXPECT_EQ(y, 1.0);
}

TEST(Atn2, AFailureComesAfterTheReplacement) {
  double y = 0.0;
  EXPECT_EQ(failure_of([&] { (void)algorithms.Atn2(1e300, y); }), 6);
  EXPECT_EQ(y, 1e-09);
  y = nan;
  EXPECT_EQ(failure_of([&] { (void)algorithms.Atn2(1.0, y); }), 6);
}

TEST(Atn2, RandomValuesAndOneVariableTwice) {
  Numbers numbers(33);
  const auto sign = [](double v) { return v > 0.0 ? 1 : v < 0.0 ? -1 : 0; };
  const auto stepped = [&](const double& x, double& y) {
    if (y == 0.0) y = 1e-09;
    const volatile double quotient = std::fabs(x) / std::fabs(y);
    const double a = runtime.atan(quotient);
    const volatile double placed = a * sign(x);
    const volatile double turned = placed - 3.141592 / 2.0;
    return static_cast<float>(turned * sign(y));
  };
  for (int i = 0; i < 10000; ++i) {
    const double x = numbers.any();
    double y = numbers.any();
    double expected_y = y;
    const float expected = stepped(x, expected_y);
    ASSERT_EQ(bits(algorithms.Atn2(x, y)), bits(expected));
    ASSERT_EQ(bits(y), bits(expected_y));
    double same = numbers.small_whole();
    double expected_same = same;
    const float both = stepped(expected_same, expected_same);
    ASSERT_EQ(bits(algorithms.Atn2(same, same)), bits(both));
    ASSERT_EQ(bits(same), bits(expected_same));
  }
}

TEST(Arccos, TheTwoEndsDiffer) {
  EXPECT_EQ(bits(algorithms.Arccos(2.0F)), bits(0.0F));
  EXPECT_EQ(bits(algorithms.Arccos(1.0F)), bits(0.0F));
  EXPECT_EQ(bits(algorithms.Arccos(-2.0F)), bits(3.1415F));
  EXPECT_EQ(bits(algorithms.Arccos(-1.0F)), bits(3.1415F));
  EXPECT_NEAR(algorithms.Arccos(-0.9999999F), 3.14115F, 1e-4);
  EXPECT_NEAR(algorithms.Arccos(0.0F), 1.5707964F, 1e-7);
  EXPECT_EQ(failure_of([] { return algorithms.Arccos(1e30F); }), 6);  // its square leaves f32
  EXPECT_EQ(failure_of([] { return algorithms.Arccos(nan_single); }), 6);
}

TEST(Arccos, RandomValues) {
  Numbers numbers(34);
  for (int i = 0; i < 10000; ++i) {
    const auto s = static_cast<float>(numbers.between(-1.1, 1.1));
    const volatile double square = -static_cast<double>(s) * s;
    const auto t = static_cast<float>(square + 1.0);
    float expected = s > 0.0F ? 0.0F : 3.1415F;
    if (t > 0.0F) {
      const volatile double quotient = -static_cast<double>(s) / runtime.sqrt(t);
      expected = static_cast<float>(runtime.atan(quotient) + 2.0 * runtime.atan(1.0));
    }
    ASSERT_EQ(bits(algorithms.Arccos(s)), bits(expected)) << s;
  }
}

TEST(AngleUnits, ZeroIsExactAndTheFactorIsShort) {
  EXPECT_EQ(bits(algorithms.An360(0.0F)), bits(0.0F));
  EXPECT_EQ(bits(algorithms.An360(-0.0F)), bits(0.0F));
  EXPECT_EQ(bits(algorithms.An400(0.0F)), bits(0.0F));
  EXPECT_EQ(algorithms.An360(100.0F), 90.0F);
  EXPECT_EQ(algorithms.An400(90.0F), 100.0F);
  EXPECT_EQ(failure_of([] { return algorithms.An400(3.3e38F); }), 6);
  EXPECT_EQ(failure_of([] { return algorithms.An360(3.3e38F); }), 0);
  EXPECT_EQ(failure_of([] { return algorithms.An360(nan_single); }), 6);
}

TEST(AngleUnits, RandomValues) {
  Numbers numbers(35);
  for (int i = 0; i < 10000; ++i) {
    const auto an = static_cast<float>(numbers.any());
    ASSERT_EQ(bits(algorithms.An360(an)),
              bits(an == 0.0F ? 0.0F : static_cast<float>(an / 1.11111111111111)));
    ASSERT_EQ(bits(algorithms.An400(an)),
              bits(an == 0.0F ? 0.0F : static_cast<float>(an * 1.11111111111111)));
  }
}

struct AngleRow {
  const char* rule;
  float x1, y1, x2, y2, x3, y3;
  float expected;
};

TEST(GetAngle3P, EachCaseOfTheTable) {
  const AngleRow table[] = {
      {"P1 = P2: 0", 5, 5, 5, 5, 7, 9, 0.0F},
      {"P2 due west: 180, wherever P3 is", 0, 0, -1, 0, 3, 8, 180.0F},
      {"P2 due east: 0, wherever P3 is", 0, 0, 1, 0, 3, 8, 0.0F},
      {"P2 due north: 90", 0, 0, 0, 4, 3, 8, 90.0F},
      {"P2 due south: 270", 0, 0, 0, -4, 3, 8, 270.0F},
      {"P3 on P1, P2 due south: placed all the same", 0, 0, 0, -4, 0, 0, 270.0F},
      {"P3 on P2, P2 north-west: nothing measured, (90 - 0) + 90", 0, 0, -1, 1, -1, 1, 180.0F},
      {"P1 between P2 and P3: the division is passed over", 0, 0, 1, 1, -1, -1, 0.0F},
  };
  for (const AngleRow& row : table) {
    EXPECT_EQ(bits(algorithms.GetAngle3P(row.x1, row.y1, row.x2, row.y2, row.x3, row.y3)),
              bits(row.expected))
        << row.rule;
  }
}

TEST(GetAngle3P, TheAngleIsPlacedByItsQuadrant) {
  EXPECT_NEAR(algorithms.GetAngle3P(0, 0, 1, 1, 1, 0), 45.0F, 1e-4);
  EXPECT_NEAR(algorithms.GetAngle3P(0, 0, 1, -1, 1, 0), 315.0F, 1e-4);
  EXPECT_NEAR(algorithms.GetAngle3P(0, 0, -1, 1, 1, 0), 45.0F, 1e-4);    // (90 - 135) + 90
  EXPECT_NEAR(algorithms.GetAngle3P(0, 0, -1, -1, 1, 0), 315.0F, 1e-4);  // 135 + 180
}

TEST(GetAngle3P, NaNFailsBeforeAnythingIsSkipped) {
  const float n = nan_single;
  EXPECT_EQ(failure_of([&] { return algorithms.GetAngle3P(n, 0, 1, 1, 1, 0); }), 6);
  EXPECT_EQ(failure_of([&] { return algorithms.GetAngle3P(0, 0, 0, 0, n, 0); }), 6);
}

float stepped_angle(float x1, float y1, float x2, float y2, float x3, float y3) {
  const auto side = [](double ax, double ay, double bx, double by) {
    return runtime.sqrt(runtime.pow(bx - ax, 2.0) + runtime.pow(by - ay, 2.0));
  };
  float g = 0.0F;
  const double a = side(x1, y1, x2, y2);
  const double b = side(x1, y1, x3, y3);
  const double c = side(x2, y2, x3, y3);
  if (a != 0.0 && b != 0.0 && c != 0.0) {
    const double s = (c + a + b) * 0.5;
    if (s < b || s < c || s < a) return 0.0F;
    const volatile double product = (s - a) * (s - b);
    const volatile double by_s = product / s;
    const double rest = s - c;
    const double ratio = rest != 0.0 ? by_s / rest : -1.0;
    if (ratio >= 0.0) {
      const volatile double angle = 2.0 * runtime.atan(runtime.pow(ratio, 0.5));
      g = static_cast<float>(angle * 63.66197722844561);
    }
    g = g == 0.0F ? 0.0F : static_cast<float>(g / 1.11111111111111);
  }
  if (x1 == x2) return y1 > y2 ? 270.0F : y1 < y2 ? 90.0F : g;
  if (y1 == y2) return x1 > x2 ? 180.0F : 0.0F;
  if (x1 > x2)
    return y1 < y2 ? static_cast<float>((90.0 - g) + 90.0) : static_cast<float>(g + 180.0);
  return y1 > y2 ? static_cast<float>((90.0 - g) + 270.0) : g;
}

TEST(GetAngle3P, RandomPoints) {
  Numbers numbers(36);
  for (int i = 0; i < 10000; ++i) {
    float p[6];
    for (float& v : p) {
      v = static_cast<float>(i % 2 == 0 ? numbers.small_half() : numbers.between(-50.0, 50.0));
    }
    ASSERT_EQ(bits(algorithms.GetAngle3P(p[0], p[1], p[2], p[3], p[4], p[5])),
              bits(stepped_angle(p[0], p[1], p[2], p[3], p[4], p[5])))
        << p[0] << ' ' << p[1] << ' ' << p[2] << ' ' << p[3] << ' ' << p[4] << ' ' << p[5];
  }
}

}  // namespace
}  // namespace orv2_geo

#include "orv2_geo/angles/cgeo_FuncDeriv.h"

#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

constexpr double radians_per_centesimal = 0.01570796327;
constexpr double right_angle = 1.5707963267948966;

using Member = double (cgeo_FuncDeriv::*)(double) const;

struct Row {
  const char* rule;
  double RPi;
  Member member;
  double x;
  double expected;
  std::int32_t failure = 0;
};

const Row rows[] = {
    {"sine is 0 until RPi is set", 0.0, &cgeo_FuncDeriv::F_Sen, 100.0, 0.0},
    {"tangent is 0 until RPi is set", 0.0, &cgeo_FuncDeriv::F_Tan, -37.5, -0.0},
    {"cosine is 1 until RPi is set", 0.0, &cgeo_FuncDeriv::F_Cos, 1e300, 1.0},
    {"arc sine is 0 until RPi is set", 0.0, &cgeo_FuncDeriv::F_ArcSen, 5.0, 0.0},
    {"arc cosine is a right angle until RPi is set", 0.0, &cgeo_FuncDeriv::F_ArcCos, 5.0,
     right_angle},
    {"sine of 100 centesimal", radians_per_centesimal, &cgeo_FuncDeriv::F_Sen, 100.0, 1.0},
    {"decimal logarithm of 1", 0.0, &cgeo_FuncDeriv::F_Log10, 1.0, 0.0},
    {"natural logarithm of 1", 0.0, &cgeo_FuncDeriv::F_LogN, 1.0, 0.0},
    {"logarithm of 0 is 5", 0.0, &cgeo_FuncDeriv::F_LogN, 0.0, 0.0, 5},
    {"logarithm of a negative is 5", 0.0, &cgeo_FuncDeriv::F_Log10, -1.0, 0.0, 5},
    {"hyperbolic tangent of 0", 0.0, &cgeo_FuncDeriv::F_TanH, 0.0, 0.0},
    {"hyperbolic cosine of 0", 0.0, &cgeo_FuncDeriv::F_CosH, 0.0, 1.0},
    {"hyperbolic tangent does not settle", 0.0, &cgeo_FuncDeriv::F_TanH, 800.0, 0.0, 6},
    {"nor on the other side", 0.0, &cgeo_FuncDeriv::F_TanH, -800.0, 0.0, 6},
    {"hyperbolic sine overflows", 0.0, &cgeo_FuncDeriv::F_SenH, 709.79, 0.0, 6},
    {"hyperbolic cosine overflows", 0.0, &cgeo_FuncDeriv::F_CosH, -709.79, 0.0, 6},
    {"hyperbolic sine just before", 0.0, &cgeo_FuncDeriv::F_SenH, 709.78, 8.9641139719725777e+307},
    {"arc sine above 1 is 5", radians_per_centesimal, &cgeo_FuncDeriv::F_ArcSen, 100.0, 0.0, 5},
    {"arc cosine above 1 is 5", 1.0, &cgeo_FuncDeriv::F_ArcCos, -1.0000000000000002, 0.0, 5},
    {"arc sine of exactly 1 is 11", 1.0, &cgeo_FuncDeriv::F_ArcSen, 1.0, 0.0, 11},
    {"arc sine of exactly -1 is 11", 1.0, &cgeo_FuncDeriv::F_ArcSen, -1.0, 0.0, 11},
    {"arc cosine of exactly 1 is 11", 1.0, &cgeo_FuncDeriv::F_ArcCos, 1.0, 0.0, 11},
    {"arc cosine of exactly -1 is 11", 0.5, &cgeo_FuncDeriv::F_ArcCos, -2.0, 0.0, 11},
    {"arc sine far above 1 is 5, though t t overflows", 1.0, &cgeo_FuncDeriv::F_ArcSen, 1.35e154,
     0.0, 5},
    {"arc sine just below that is 5", 1.0, &cgeo_FuncDeriv::F_ArcSen, 1.34e154, 0.0, 5},
    {"arc cosine far below -1 is 5", 1.0, &cgeo_FuncDeriv::F_ArcCos, -1e300, 0.0, 5},
    {"arc cosine of infinity is 5", 1.0, &cgeo_FuncDeriv::F_ArcCos, inf, 0.0, 5},
    {"arc sine of a scaled argument that overflows is 6", 1e300, &cgeo_FuncDeriv::F_ArcSen, 1e300,
     0.0, 6},
    {"tangent of a right angle is large", 1.0, &cgeo_FuncDeriv::F_Tan, right_angle,
     16331239353195370.0},
    {"a scaled argument that overflows is 6", 1e300, &cgeo_FuncDeriv::F_Sen, 1e300, 0.0, 6},
    {"infinite factor times zero is 6", inf, &cgeo_FuncDeriv::F_Cos, 0.0, 0.0, 6},
    {"sine of infinity is 6", inf, &cgeo_FuncDeriv::F_Sen, 1.0, 0.0, 6},
};

TEST(FuncDeriv, EveryEdge) {
  for (const Row& row : rows) {
    cgeo_FuncDeriv functions;
    functions.RPi = row.RPi;
    double value = 0.0;
    const std::int32_t number = failure_of([&] { value = (functions.*row.member)(row.x); });
    EXPECT_EQ(number, row.failure) << row.rule;
    if (row.failure != 0) continue;
    EXPECT_EQ(bits(value), bits(row.expected)) << row.rule << ' ' << value;
  }
}

TEST(FuncDeriv, ANewObjectHasZeros) {
  const cgeo_FuncDeriv functions;
  EXPECT_EQ(bits(functions.Pi), bits(0.0));
  EXPECT_EQ(bits(functions.RPi), bits(0.0));
}

TEST(FuncDeriv, PiChangesNothing) {
  cgeo_FuncDeriv plain;
  cgeo_FuncDeriv with_pi;
  with_pi.Pi = 3.0;
  plain.RPi = with_pi.RPi = 0.1;
  for (const Member member :
       {&cgeo_FuncDeriv::F_Log10, &cgeo_FuncDeriv::F_LogN, &cgeo_FuncDeriv::F_SenH,
        &cgeo_FuncDeriv::F_CosH, &cgeo_FuncDeriv::F_TanH, &cgeo_FuncDeriv::F_ArcSen,
        &cgeo_FuncDeriv::F_ArcCos, &cgeo_FuncDeriv::F_Sen, &cgeo_FuncDeriv::F_Cos,
        &cgeo_FuncDeriv::F_Tan}) {
    EXPECT_EQ(bits((plain.*member)(2.5)), bits((with_pi.*member)(2.5)));
  }
}

TEST(FuncDeriv, EachObjectHasItsOwnFactor) {
  cgeo_FuncDeriv a;
  cgeo_FuncDeriv b;
  a.RPi = 1.0;
  b.RPi = 2.0;
  EXPECT_EQ(bits(a.F_Sen(0.5)), bits(runtime.sin(0.5)));
  EXPECT_EQ(bits(b.F_Sen(0.5)), bits(runtime.sin(1.0)));
}

TEST(FuncDeriv, FailuresAreSigned) {
  try {
    (void)cgeo_FuncDeriv().F_LogN(0.0);
    FAIL();
  } catch (const RunFailure& failure) {
    EXPECT_EQ(failure.source(), "Orv2_Geo.cgeo_FuncDeriv");
    EXPECT_EQ(failure.description(), "Argumento o llamada a procedimiento no válidos");
  }
}

// The members again, as one would write them by hand.
TEST(FuncDeriv, RandomValuesAgreeWithTheFormulas) {
  Numbers numbers(21);
  cgeo_FuncDeriv functions;
  const auto& f = runtime;
  for (int i = 0; i < 10000; ++i) {
    const double x = numbers.between(-700.0, 700.0);
    const double rising = f.exp(x);
    const double falling = f.exp(-x);
    ASSERT_EQ(bits(functions.F_SenH(x)), bits((rising - falling) / 2.0));
    ASSERT_EQ(bits(functions.F_CosH(x)), bits((rising + falling) / 2.0));
    ASSERT_EQ(bits(functions.F_TanH(x)), bits((rising - falling) / (falling + rising)));
    const double y = std::fabs(numbers.any()) + 1e-300;
    ASSERT_EQ(bits(functions.F_Log10(y)), bits(f.log(y) / f.log(10.0)));
    ASSERT_EQ(bits(functions.F_LogN(y)), bits(f.log(y) / f.log(f.exp(1.0))));

    functions.RPi = numbers.between(-0.02, 0.02);
    const double angle = numbers.any();
    const volatile double t = angle * functions.RPi;
    ASSERT_EQ(bits(functions.F_Sen(angle)), bits(f.sin(t)));
    ASSERT_EQ(bits(functions.F_Cos(angle)), bits(f.cos(t)));
    ASSERT_EQ(bits(functions.F_Tan(angle)), bits(f.tan(t)));

    const double ratio = numbers.between(-1.0, 1.0) / 0.02;
    functions.RPi = 0.02;
    const volatile double r = ratio * 0.02;
    const volatile double square = -r * r;
    const double side = f.sqrt(square + 1.0);
    ASSERT_EQ(bits(functions.F_ArcSen(ratio)), bits(f.atan(r / side)));
    const double h = f.atan(1.0);
    ASSERT_EQ(bits(functions.F_ArcCos(ratio)), bits(f.atan(-r / side) + (h + h)));
  }
}

}  // namespace
}  // namespace orv2_geo

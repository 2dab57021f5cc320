#include "orv2_geo/frame/checked_math.h"

#include <cfenv>
#include <limits>
#include <optional>
#include <ostream>

#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

constexpr double largest = std::numeric_limits<double>::max();
constexpr double smallest = std::numeric_limits<double>::denorm_min();
const double signalling_nan = std::numeric_limits<double>::signaling_NaN();

// What a formula gives: a value, or the number of its failure.
struct Outcome {
  double value = 0.0;
  std::int32_t failure = 0;

  friend bool operator==(const Outcome& a, const Outcome& b) {
    return a.failure == b.failure && (a.failure != 0 || bits(a.value) == bits(b.value));
  }
  friend std::ostream& operator<<(std::ostream& out, const Outcome& o) {
    return o.failure != 0 ? out << "failure " << o.failure : out << std::hexfloat << o.value;
  }
};

template <class Formula>
Outcome outcome(Formula&& formula) {
  Outcome result;
  result.failure = failure_of([&] { result.value = Checked(formula()).value(); });
  return result;
}

struct Row {
  const char* rule;
  Outcome (*formula)();
  Outcome expected;
};

Checked n(double value) { return value; }

const Row rows[] = {
    {"a value by zero is 11", [] { return outcome([] { return n(1.0) / 0.0; }); }, {0, 11}},
    {"a value by minus zero is 11", [] { return outcome([] { return n(-1.0) / -0.0; }); }, {0, 11}},
    {"zero by zero is 6", [] { return outcome([] { return n(0.0) / 0.0; }); }, {0, 6}},
    {"infinity by zero stays infinite",
     [] { return outcome([] { return n(inf) / 0.0; }); },
     {inf, 0}},
    {"infinity by infinity is 6", [] { return outcome([] { return n(inf) / inf; }); }, {0, 6}},
    {"a quotient that overflows is 6",
     [] { return outcome([] { return n(1e300) / 1e-300; }); },
     {0, 6}},
    {"a quotient that underflows is zero",
     [] { return outcome([] { return n(1e-300) / 1e300; }); },
     {0.0, 0}},
    {"a sum that overflows is 6",
     [] { return outcome([] { return n(largest) + largest; }); },
     {0, 6}},
    {"a difference that overflows is 6",
     [] { return outcome([] { return n(-largest) - largest; }); },
     {0, 6}},
    {"a product that overflows is 6",
     [] { return outcome([] { return n(1e300) * 1e300; }); },
     {0, 6}},
    {"a product that underflows is zero",
     [] { return outcome([] { return n(1e-300) * 1e-300; }); },
     {0.0, 0}},
    {"a caller's infinity travels", [] { return outcome([] { return n(inf) + 1.0; }); }, {inf, 0}},
    {"infinity less infinity is 6", [] { return outcome([] { return n(inf) - inf; }); }, {0, 6}},
    {"infinity times zero is 6", [] { return outcome([] { return n(inf) * 0.0; }); }, {0, 6}},
    {"a caller's quiet NaN travels", [] { return outcome([] { return n(nan) * 2.0; }); }, {nan, 0}},
    {"a signalling NaN is 6",
     [] { return outcome([] { return n(signalling_nan) * 2.0; }); },
     {0, 6}},
    {"one over a caller's infinity is zero",
     [] { return outcome([] { return n(1.0) / inf; }); },
     {0.0, 0}},
    {"an overflow cannot hide in a divisor",
     [] { return outcome([] { return n(1.0) / (n(1e300) * 1e300); }); },
     {0, 6}},
    {"an overflow cannot hide in an arc tangent",
     [] { return outcome([] { return atan(n(1e300) * 1e300); }); },
     {0, 6}},
    {"an overflow cannot hide in an exponential",
     [] { return outcome([] { return exp(-(n(1e300) * 1e300)); }); },
     {0, 6}},
    {"an overflow cannot hide in an exponent",
     [] { return outcome([] { return power(n(0.5), n(1e300) * 1e300); }); },
     {0, 6}},
    {"a division by zero cannot hide in an arc tangent",
     [] { return outcome([] { return atan(n(1.0) / 0.0); }); },
     {0, 11}},
    {"the first failing operation decides: overflow, then by zero",
     [] { return outcome([] { return n(1e300) * 1e300 + n(1.0) / 0.0; }); },
     {0, 6}},
    {"the first failing operation decides: by zero, then overflow",
     [] { return outcome([] { return n(1.0) / 0.0 + n(1e300) * 1e300; }); },
     {0, 11}},
    {"the first failing operation decides: root, then by zero",
     [] { return outcome([] { return sqrt(n(-1.0)) + n(1.0) / 0.0; }); },
     {0, 5}},
    {"a root asks for its argument before a pending overflow is looked at",
     [] { return outcome([] { return sqrt(n(-1e300) * 1e300 + 1.0); }); },
     {0, 5}},
    {"a logarithm too", [] { return outcome([] { return ln(n(-1e300) * 1e300); }); }, {0, 5}},
    {"a root of a positive overflow leaves it pending",
     [] { return outcome([] { return n(1.0) / sqrt(n(1e300) * 1e300); }); },
     {0, 6}},
    {"a division looks at what is pending before a later root",
     [] { return outcome([] { return n(1e300) * 1e300 / 2.0 + sqrt(n(-1.0)); }); },
     {0, 6}},
    {"without a division the root comes first",
     [] { return outcome([] { return n(1e300) * 1e300 + sqrt(n(-1.0)); }); },
     {0, 5}},
    {"infinity less infinity is pending too",
     [] { return outcome([] { return n(inf) - inf + sqrt(n(-1.0)); }); },
     {0, 5}},
    {"a comparison looks at each of its sides",
     [] { return outcome([] { return n(n(1e300) * 1e300 < sqrt(n(-1.0)) ? 1.0 : 0.0); }); },
     {0, 6}},
    {"root of a negative is 5", [] { return outcome([] { return sqrt(n(-1.0)); }); }, {0, 5}},
    {"root of the least negative is 5",
     [] { return outcome([] { return sqrt(n(-smallest)); }); },
     {0, 5}},
    {"root of minus infinity is 5", [] { return outcome([] { return sqrt(n(-inf)); }); }, {0, 5}},
    {"root of minus zero is minus zero",
     [] { return outcome([] { return sqrt(n(-0.0)); }); },
     {-0.0, 0}},
    {"root of infinity is infinite", [] { return outcome([] { return sqrt(n(inf)); }); }, {inf, 0}},
    {"logarithm of zero is 5", [] { return outcome([] { return ln(n(0.0)); }); }, {0, 5}},
    {"logarithm of minus zero is 5", [] { return outcome([] { return ln(n(-0.0)); }); }, {0, 5}},
    {"logarithm of a negative is 5", [] { return outcome([] { return ln(n(-3.0)); }); }, {0, 5}},
    {"exponential overflow is 6", [] { return outcome([] { return exp(n(709.79)); }); }, {0, 6}},
    {"exponential underflow is zero",
     [] { return outcome([] { return exp(n(-800.0)); }); },
     {0.0, 0}},
    {"exponential of minus infinity is zero",
     [] { return outcome([] { return exp(n(-inf)); }); },
     {0.0, 0}},
    {"sine of infinity is 6", [] { return outcome([] { return sin(n(inf)); }); }, {0, 6}},
    {"cosine of minus infinity is 6", [] { return outcome([] { return cos(n(-inf)); }); }, {0, 6}},
    {"tangent of infinity is 6", [] { return outcome([] { return tan(n(inf)); }); }, {0, 6}},
    {"power of a negative, fractional exponent, is 5",
     [] { return outcome([] { return power(n(-8.0), 0.5); }); },
     {0, 5}},
    {"power of a negative, whole exponent",
     [] { return outcome([] { return power(n(-2.0), 3.0); }); },
     {-8.0, 0}},
    {"power of zero, negative exponent, is 5",
     [] { return outcome([] { return power(n(0.0), -1.0); }); },
     {0, 5}},
    {"power of minus zero, negative exponent, is 5",
     [] { return outcome([] { return power(n(-0.0), -2.0); }); },
     {0, 5}},
    {"power of zero, positive exponent",
     [] { return outcome([] { return power(n(0.0), 0.5); }); },
     {0.0, 0}},
    {"power to zero is one", [] { return outcome([] { return power(n(0.0), 0.0); }); }, {1.0, 0}},
    {"power overflow is 6", [] { return outcome([] { return power(n(1e200), 2.0); }); }, {0, 6}},
    {"power underflow is zero",
     [] { return outcome([] { return power(n(1e-200), 2.0); }); },
     {0.0, 0}},
    {"absolute value of minus zero is zero",
     [] { return outcome([] { return abs(n(-0.0)); }); },
     {0.0, 0}},
    {"minus zero keeps its sign through a change of sign",
     [] { return outcome([] { return -n(0.0); }); },
     {-0.0, 0}},
};

TEST(CheckedMath, EveryRuleOfArithmetic) {
  for (const Row& row : rows) EXPECT_EQ(row.formula(), row.expected) << row.rule;
}

TEST(CheckedMath, ComparisonsWithNaNAreOverflow) {
  EXPECT_EQ(failure_of([] { return n(nan) < 1.0; }), 6);
  EXPECT_EQ(failure_of([] { return n(1.0) <= nan; }), 6);
  EXPECT_EQ(failure_of([] { return n(nan) > nan; }), 6);
  EXPECT_EQ(failure_of([] { return n(nan) >= 0.0; }), 6);
  EXPECT_EQ(failure_of([] { return n(nan) == 0.0; }), 6);
  EXPECT_EQ(failure_of([] { return n(nan) != 0.0; }), 6);
  EXPECT_EQ(failure_of([] { return sign(nan); }), 6);
}

TEST(CheckedMath, ComparisonsTestBothSidesFirst) {
  EXPECT_EQ(failure_of([] { return n(1e300) * 1e300 > n(1.0) / 0.0; }), 6);
  EXPECT_EQ(failure_of([] { return n(1.0) / 0.0 > n(1e300) * 1e300; }), 11);
  EXPECT_TRUE(n(inf) > largest);
  EXPECT_TRUE(n(-0.0) == 0.0);
}

// The same formula with the processor's own exception flags read after each
// operation.
class Flagged {
 public:
  double operator()(double outcome) {
    if (failure_ == 0) {
      if (std::fetestexcept(FE_DIVBYZERO) != 0) {
        failure_ = 11;
      } else if (std::fetestexcept(FE_INVALID | FE_OVERFLOW) != 0) {
        failure_ = 6;
      }
    }
    std::feclearexcept(FE_ALL_EXCEPT);
    return outcome;
  }
  std::int32_t failure() const { return failure_; }

 private:
  std::int32_t failure_ = 0;
};

// Each works between two looks at the flags: the volatile keeps it there.
[[gnu::noinline]] double add(double a, double b) {
  const volatile double outcome = a + b;
  return outcome;
}
[[gnu::noinline]] double subtract(double a, double b) {
  const volatile double outcome = a - b;
  return outcome;
}
[[gnu::noinline]] double multiply(double a, double b) {
  const volatile double outcome = a * b;
  return outcome;
}
[[gnu::noinline]] double divide(double a, double b) {
  const volatile double outcome = a / b;
  return outcome;
}

// The flags of the difference and of the sum must be seen before the quotient.
Outcome by_flags_in_order(double a, double b, double c, double d) {
  std::feclearexcept(FE_ALL_EXCEPT);
  Flagged seen;
  const double left = seen(multiply(a, b));
  const double dividend = seen(subtract(c, d));
  const double divisor = seen(add(a, d));
  const double right = seen(divide(dividend, divisor));
  return {seen(add(left, right)), seen.failure()};
}

TEST(CheckedMath, AgreesWithTheProcessorsFlags) {
  Numbers numbers(20261);
  const double special[] = {0.0, -0.0, inf, -inf, nan, largest, -largest, smallest, 1e200};
  const auto draw = [&] {
    const std::uint64_t kind = numbers.below(6);
    if (kind == 0) return special[numbers.below(std::size(special))];
    return kind < 3 ? numbers.any_bits() : numbers.any();
  };
  int failures = 0;
  for (int i = 0; i < 100000; ++i) {
    const double a = draw(), b = draw(), c = draw(), d = draw();
    const Outcome expected = by_flags_in_order(a, b, c, d);
    const Outcome got = outcome([&] { return n(a) * b + (n(c) - d) / (n(a) + d); });
    ASSERT_EQ(got, expected) << a << ' ' << b << ' ' << c << ' ' << d;
    failures += expected.failure != 0 ? 1 : 0;
  }
  EXPECT_GT(failures, 5000);
  EXPECT_LT(failures, 95000);
}

TEST(CheckedMath, NoProductAndSumInOneRounding) {
  // 0.1 x 10 is exactly 1 when it is rounded by itself; in one rounding with
  // the sum a rest of 2^-54 stays.
  volatile double tenth = 0.1;
  EXPECT_EQ(Checked(n(tenth) * 10.0 - 1.0).value(), 0.0);
}

TEST(CheckedMath, PowerReachesThePowerFunction) {
  const double bases[] = {0x1.7ead59fd833bcp+8, 0x1.6a994f2a449a8p+8, 0x1.4d784459bdab8p+7,
                          0x1.bf6e46da64beap+9, 0x1.568907f511aa8p+8, -0x1.1a07df1f7272ap+8,
                          0x1.4b7b32faeb49p+7,  0x1.c1585f1261ep+9};
  int unlike_product = 0;
  for (const double base : bases) {
    const double square = Checked(power(n(base), 2.0)).value();
    EXPECT_EQ(bits(square), bits(runtime.pow(base, 2.0)));
    unlike_product += square != base * base ? 1 : 0;
  }
  // The run-time of 32-bit Windows works in longer numbers, and more of its squares are
  // the products.
  constexpr bool longer_numbers = sizeof(void*) == 4;
  EXPECT_GE(unlike_product, longer_numbers ? 1 : 8);
}

TEST(CheckedMath, ElementaryFunctionsAreTheRuntimes) {
  Numbers numbers(7);
  for (int i = 0; i < 10000; ++i) {
    const double x = numbers.any();
    ASSERT_EQ(bits(Checked(atan(n(x))).value()), bits(runtime.atan(x)));
    ASSERT_EQ(bits(Checked(sin(n(x))).value()), bits(runtime.sin(x)));
    ASSERT_EQ(bits(Checked(cos(n(x))).value()), bits(runtime.cos(x)));
    ASSERT_EQ(bits(Checked(tan(n(x))).value()), bits(runtime.tan(x)));
    ASSERT_EQ(bits(Checked(sqrt(abs(n(x)))).value()), bits(runtime.sqrt(std::fabs(x))));
    ASSERT_EQ(bits(Checked(power(n(x), 2.0)).value()), bits(runtime.pow(x, 2.0)));
    if (x > 0.0) {
      ASSERT_EQ(bits(Checked(ln(n(x))).value()), bits(runtime.log(x)));
      ASSERT_EQ(bits(Checked(power(n(x), 0.5)).value()), bits(runtime.pow(x, 0.5)));
    }
    if (std::fabs(x) < 700.0) {
      ASSERT_EQ(bits(Checked(exp(n(x))).value()), bits(runtime.exp(x)));
    }
  }
}

template <class T>
struct ConversionRow {
  const char* rule;
  double value;
  std::optional<T> expected;  // none: failure 6
};

TEST(Conversions, ToI32RoundsHalfToEven) {
  const ConversionRow<std::int32_t> table[] = {
      {"2.5", 2.5, 2},
      {"3.5", 3.5, 4},
      {"-2.5", -2.5, -2},
      {"-3.5", -3.5, -4},
      {"just above a half", 0.50000000000000011, 1},
      {"just below a half", 0.49999999999999994, 0},
      {"the top", 2147483647.0, 2147483647},
      {"a hair below the top's half", 2147483647.4999998, 2147483647},
      {"the top's half goes up and out", 2147483647.5, std::nullopt},
      {"the bottom", -2147483648.0, lowest_long},
      {"the bottom's half goes to the even bottom", -2147483648.5, lowest_long},
      {"past the bottom's half", -2147483648.5000005, std::nullopt},
      {"far out", 1e300, std::nullopt},
      {"infinity", inf, std::nullopt},
      {"NaN", nan, std::nullopt},
  };
  for (const auto& row : table) {
    std::optional<std::int32_t> got;
    const std::int32_t number = failure_of([&] { got = to_i32(row.value); });
    EXPECT_EQ(got, row.expected) << row.rule;
    EXPECT_EQ(number, row.expected ? 0 : 6) << row.rule;
  }
}

TEST(Conversions, ToI16RoundsHalfToEven) {
  const ConversionRow<std::int16_t> table[] = {
      {"the top", 32767.0, std::int16_t{32767}},
      {"below the top's half", 32767.49, std::int16_t{32767}},
      {"the top's half rounds to 32768", 32767.5, std::nullopt},
      {"the bottom's half", -32768.5, std::int16_t{-32768}},
      {"past the bottom", -32768.6, std::nullopt},
      {"a tie", 0.5, std::int16_t{0}},
      {"a tie", 1.5, std::int16_t{2}},
  };
  for (const auto& row : table) {
    std::optional<std::int16_t> got;
    const std::int32_t number = failure_of([&] { got = to_i16(row.value); });
    EXPECT_EQ(got, row.expected) << row.rule;
    EXPECT_EQ(number, row.expected ? 0 : 6) << row.rule;
  }
}

TEST(Conversions, ToI32AgreesWithLongDivisionOfHalves) {
  Numbers numbers(99);
  for (int i = 0; i < 10000; ++i) {
    const double value = numbers.between(-2147483648.0, 2147483647.0);
    const double halves = std::floor(value * 2.0) / 2.0;  // land on ties often
    for (const double x : {value, halves}) {
      const double below = std::floor(x);
      const double rest = x - below;
      const bool odd = std::fmod(below, 2.0) != 0.0;
      const double expected = rest > 0.5 || (rest == 0.5 && odd) ? below + 1.0 : below;
      ASSERT_EQ(to_i32(x), static_cast<std::int32_t>(expected)) << x;
    }
  }
}

TEST(Conversions, NarrowingTestsOnlyWhenAsked) {
  EXPECT_EQ(failure_of([] { return narrow(1.0e300); }), 6);
  EXPECT_EQ(narrow_plain(1.0e300), inf_single);
  EXPECT_EQ(narrow_plain(-1.0e300), -inf_single);
  constexpr float top = std::numeric_limits<float>::max();
  EXPECT_EQ(narrow(0x1.fffffefffffffp127), top);                    // rounds down to it
  EXPECT_EQ(failure_of([] { return narrow(0x1.ffffffp127); }), 6);  // a tie rounds up and out
  EXPECT_EQ(bits(narrow(1e-60)), bits(0.0F));                       // underflow says nothing
  EXPECT_EQ(narrow(inf), inf_single);                               // the caller's own
  EXPECT_TRUE(std::isnan(narrow(nan)));
  EXPECT_EQ(narrow(0.1), 0.1F);
  EXPECT_EQ(widen(0.1F).value(), static_cast<double>(0.1F));
}

TEST(Conversions, WideningLetsAQuietNaNTravelAndStopsASignallingOne) {
  EXPECT_TRUE(std::isnan(widen(nan_single).value()));
  const volatile std::uint32_t signalling = 0x7fa00000;
  EXPECT_EQ(failure_of([&] {
              const float value = std::bit_cast<float>(static_cast<std::uint32_t>(signalling));
              (void)widen(value);
            }),
            6);
}

TEST(Conversions, FloorStaysAFloatAndSignIsSmall) {
  EXPECT_EQ(floor(n(-0.5)).value(), -1.0);
  EXPECT_EQ(floor(n(1e300)).value(), 1e300);
  EXPECT_EQ(sign(n(-1e-320)), -1);
  EXPECT_EQ(sign(n(-0.0)), 0);
  EXPECT_EQ(sign(n(7.0)), 1);
}

}  // namespace
}  // namespace orv2_geo

#include "orv2_geo/sorting/double_keys.h"

#include <cmath>
#include <string>

#include "orv2_geo/platform/text_services.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using sorting::key_in_span;

// The digits of the key's text as a whole number of millionths.
std::int64_t millionths(double value) {
  const double sum = value < 0.0 ? value + 200000000.0 : value + 300000000.0;
  const Text text = text_services::default_text(sum);
  std::int64_t whole = 0;
  int decimals = -1;
  for (const char16_t unit : text.view()) {
    if (unit < u'0' || unit > u'9') {
      decimals = 0;
      continue;
    }
    whole = whole * 10 + (unit - u'0');
    if (decimals >= 0) ++decimals;
  }
  for (int i = decimals < 0 ? 0 : decimals; i < 6; ++i) whole *= 10;
  return whole;
}

void expect_the_text(double value) {
  if (!(value >= sorting::lowest_in_span && value < sorting::beyond_span)) return;
  ASSERT_EQ(key_in_span(value), millionths(value)) << std::hexfloat << value;
}

TEST(DoubleKeys, RandomValuesGiveTheDigitsOfTheirTexts) {
  Numbers numbers(81);
  for (int i = 0; i < 500000; ++i) {
    expect_the_text(numbers.between(-1e8, 7e8));
    expect_the_text(numbers.coordinate());
    expect_the_text(numbers.any());
    expect_the_text(std::ldexp(numbers.between(-1, 1), static_cast<int>(numbers.below(60)) - 30));
  }
}

// Sums whose seventh decimal and the rest are exactly a half, and their
// neighbours: ties go to even.
TEST(DoubleKeys, HalvesAtTheFifteenthDigit) {
  Numbers numbers(82);
  for (int i = 0; i < 300000; ++i) {
    const double whole = std::floor(numbers.between(0, 7e8));
    const double tie = whole + (2.0 * std::floor(numbers.between(0, 64)) + 1.0) / 128.0;
    for (const double value : {tie, tie - 5e8, tie - 7.5e8}) {
      for (const double near : {value, std::nextafter(value, inf), std::nextafter(value, -inf)}) {
        expect_the_text(near);
      }
    }
  }
  EXPECT_EQ(key_in_span(0.0078125), 300000000007812);  // to the even 2
  EXPECT_EQ(key_in_span(0.0234375), 300000000023438);  // to the even 8
}

TEST(DoubleKeys, TheKeysOfAFewValues) {
  EXPECT_EQ(key_in_span(-0.5), 199999999500000);
  EXPECT_EQ(key_in_span(0.0), 300000000000000);
  EXPECT_EQ(key_in_span(12.5), 300000012500000);
  EXPECT_EQ(millionths(-0.5), 199999999500000);
  EXPECT_EQ(millionths(12.5), 300000012500000);
}

TEST(DoubleKeys, PowersOfTwoAndTheEndsOfTheSpan) {
  for (int e = -1074; e < 30; ++e) {
    for (const double sign : {1.0, -1.0}) {
      const double value = std::ldexp(sign, e);
      for (const double near : {value, std::nextafter(value, inf), std::nextafter(value, -inf)}) {
        expect_the_text(near);
      }
    }
  }
  double low = -1e8, high = 7e8, below_zero = -0.0, zero = 0.0;
  for (int i = 0; i < 100000; ++i) {
    expect_the_text(low);
    expect_the_text(high);
    expect_the_text(below_zero);
    expect_the_text(zero);
    low = std::nextafter(low, inf);
    high = std::nextafter(high, -inf);
    below_zero = i % 2 == 0 ? std::nextafter(below_zero, -inf) : below_zero * 1.5;
    zero = i % 2 == 0 ? std::nextafter(zero, inf) : zero * 1.5;
  }
  EXPECT_EQ(key_in_span(-1e8), 100000000000000);
  EXPECT_EQ(key_in_span(-1e-30), 200000000000000);
  EXPECT_EQ(key_in_span(-0.0), 300000000000000);
  EXPECT_EQ(key_in_span(std::nextafter(7e8, 0)), sorting::first_of_ten_digits);
}

TEST(DoubleKeys, ClosingTheGapKeepsTheOrder) {
  std::uint64_t before = 0;
  for (const double value : {-1e8, -5.0, -1e-6, -1e-30, 0.0, 1e-6, 5.0, 6e8}) {
    const std::uint64_t key = sorting::closed_up(key_in_span(value));
    EXPECT_GT(key, before) << value;
    before = key;
  }
}

TEST(DoubleKeys, TheNumberOfAKeyIsThatOfItsText) {
  Numbers numbers(83);
  for (int i = 0; i < 300000; ++i) {
    const double value = numbers.between(-1e8, 7e8);
    const double sum = value < 0.0 ? value + 200000000.0 : value + 300000000.0;
    const double number = text_services::number_from_text(text_services::default_text(sum).view());
    ASSERT_EQ(bits(sorting::number_of_key(key_in_span(value))), bits(number));
  }
}

}  // namespace
}  // namespace orv2_geo

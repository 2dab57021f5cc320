#include "orv2_geo/platform/text_services.h"

#include <cstdlib>
#include <string>

#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using namespace text_services;

// This test runs under several locales; its texts are written with a point.
std::string with_point(const Text& text) {
  std::string utf8 = text.to_utf8();
  const std::string sign = Text(std::u16string(1, decimal_sign())).to_utf8();
  const std::size_t at = utf8.find(sign);
  if (at != std::string::npos) utf8.replace(at, sign.size(), ".");
  return utf8;
}

TEST(TextServices, TheDecimalSignIsTheLocales) {
  const char* expected = std::getenv("ORV2_TEST_DECIMAL_SIGN");
  EXPECT_EQ(decimal_sign(), expected != nullptr && *expected == ',' ? u',' : u'.');
}

struct NumberRow {
  double number;
  const char* text;
};

TEST(TextServices, TheDefaultTextOfANumber) {
  const NumberRow table[] = {
      {0.0, "0"},
      {-0.0, "0"},
      {7.0, "7"},
      {-7.25, "-7.25"},
      {12.34, "12.34"},
      {0.1, "0.1"},
      {1.0 / 3.0, "0.333333333333333"},
      {2.0 / 3.0, "0.666666666666667"},
      {1234567890.12345678, "1234567890.12346"},
      {300000012.5, "300000012.5"},
      {123456789012345.0, "123456789012345"},
      {1e15, "1E+15"},
      {1.5e300, "1.5E+300"},
      {0.0001, "0.0001"},
      {0.00001, "1E-05"},
      {999999999999999.9, "1E+15"},
  };
  for (const NumberRow& row : table) EXPECT_EQ(with_point(default_text(row.number)), row.text);
  EXPECT_EQ(with_point(default_text(0.1F)), "0.1");
  EXPECT_EQ(with_point(default_text(1234567.8F)), "1234568");
  EXPECT_EQ(with_point(default_text(1e7F)), "1E+07");
  EXPECT_EQ(default_text(std::int32_t{-42}), Text(u"-42"));
  EXPECT_EQ(signed_text(9), Text(u" 9"));
  EXPECT_EQ(signed_text(0), Text(u" 0"));
  EXPECT_EQ(signed_text(-9), Text(u"-9"));
}

struct ParseRow {
  const char* rule;
  const char16_t* text;
  double value;
  std::int32_t failure = 0;
};

TEST(TextServices, TheLeadingNumberOfAText) {
  const ParseRow table[] = {
      {"a number", u"0.001", 0.001},
      {"ends at a comma", u"0,001", 0.0},
      {"ends at a second point", u"1.234.5", 1.234},
      {"letters are 0", u"abc", 0.0},
      {"nothing is 0", u"", 0.0},
      {"a sign alone is 0", u"-", 0.0},
      {"a point alone is 0", u".", 0.0},
      {"blanks, tabs and line feeds are passed over", u" \t1 2\n3", 123.0},
      {"a sign", u"-12.5m", -12.5},
      {"a plus", u"+3", 3.0},
      {"an exponent", u"1.5e3x", 1500.0},
      {"an exponent without digits is none", u"2e+", 2.0},
      {"an exponent with a plus", u"1.5e+3x", 1500.0},
      {"an exponent with a minus", u"1.5e-3x", 0.0015},
      {"a capital exponent", u"25E+1", 250.0},
      {"one sign of an exponent alone counts", u"2e+-1", 2.0},
      {"a plus, and too large is 6", u"1e+999", 0.0, 6},
      {"a plus, without end is 6", u"1e+99999999999999999999", 0.0, 6},
      {"a point in front", u".5", 0.5},
      {"a point behind", u"5.", 5.0},
      {"no infinity", u"inf", 0.0},
      {"no hexadecimal", u"0x10", 0.0},
      {"too large is 6", u"1e999", 0.0, 6},
      {"too small is 0", u"1e-999", 0.0},
      {"an exponent without end is 6", u"1e99999999999999999999", 0.0, 6},
      {"and below without end is 0", u"-1e-99999999999999999999", -0.0},
      {"no other digits", u"\u0661", 0.0},
  };
  for (const ParseRow& row : table) {
    double value = 0.0;
    EXPECT_EQ(failure_of([&] { value = leading_number(row.text); }), row.failure) << row.rule;
    EXPECT_EQ(bits(value), bits(row.value)) << row.rule;
  }
}

TEST(TextServices, AWholeTextAsANumber) {
  const std::u16string sign(1, decimal_sign());
  const auto parsed = [](const std::u16string& text) { return number_from_text(text); };
  EXPECT_EQ(parsed(u"2" + sign + u"5"), 2.5);
  EXPECT_EQ(parsed(u"  -7  "), -7.0);
  EXPECT_EQ(parsed(u"1e3"), 1000.0);
  EXPECT_EQ(parsed(u"+1e+3"), 1000.0);
  const std::u16string other = sign == u"," ? u"." : u",";
  for (const std::u16string& text :
       {std::u16string(u""), std::u16string(u"  "), std::u16string(u"dos"), u"2" + other + u"5",
        std::u16string(u"2 5"), std::u16string(u"5m")}) {
    EXPECT_EQ(failure_of([&] { parsed(text); }), 13) << Text(text).to_utf8();
  }
  EXPECT_EQ(failure_of([&] { parsed(u"1e999"); }), 6);
}

// Range is the number's, not its exponent's.
TEST(TextServices, ManyDigitsAndAnExponentTogether) {
  const std::u16string zeros(400, u'0');
  EXPECT_EQ(failure_of([&] { leading_number(u"1" + zeros + u"e-10"); }), 6);
  EXPECT_EQ(failure_of([&] { leading_number(u"1" + zeros); }), 6);
  EXPECT_EQ(leading_number(u"1" + zeros + u"e-400"), 1.0);
  EXPECT_EQ(leading_number(u"0." + zeros + u"1e5"), 0.0);
  EXPECT_EQ(leading_number(u"0." + zeros + u"1"), 0.0);
  EXPECT_EQ(leading_number(u"0." + zeros + u"1e401"), 1.0);
  EXPECT_EQ(leading_number(u"0." + zeros + u"1e+401"), 1.0);
  EXPECT_EQ(failure_of([&] { leading_number(u"0." + zeros + u"1e800"); }), 6);
  EXPECT_EQ(failure_of([&] { leading_number(u"0." + zeros + u"1e+800"); }), 6);
  EXPECT_EQ(leading_number(u"1" + zeros + u"e-800"), 0.0);
  EXPECT_EQ(leading_number(u"1" + zeros + u".5e-800"), 0.0);
}

TEST(TextServices, NumbersComeBackFromTheirText) {
  Numbers numbers(41);
  for (int i = 0; i < 10000; ++i) {
    const double rounded = number_from_text(default_text(numbers.any()).view());
    ASSERT_EQ(bits(number_from_text(default_text(rounded).view())), bits(rounded + 0.0));
  }
}

struct PatternRow {
  double number;
  int decimals;
  const char* text;
};

TEST(TextServices, ThePatternRoundsTheDecimalFormHalfAway) {
  const PatternRow table[] = {
      {1234.5678, 3, "1234.568"},
      {-0.5, 1, "-0.5"},
      {2.675, 2, "2.68"},
      {1.0005, 3, "1.001"},
      {0.5, 0, "1"},
      {-0.5, 0, "-1"},
      {0.49, 0, "0"},
      {-0.004, 2, "0.00"},
      {0.005, 2, "0.01"},
      {0.0049, 2, "0.00"},
      {999.9995, 3, "1000.000"},
      {0.95, 1, "1.0"},
      {0.0, 2, "0.00"},
      {1.0, 15, "1.000000000000000"},
      {1234567890.12345678, 8, "1234567890.12346000"},
      {1e20, 1, "100000000000000000000.0"},
      {1e-20, 3, "0.000"},
      {7.0, 0, "7"},
  };
  for (const PatternRow& row : table) {
    EXPECT_EQ(with_point(pattern_format(row.number, row.decimals)), row.text);
  }
}

TEST(TextServices, TheCollationIgnoresCase) {
  const auto order = [](const char16_t* a, const char16_t* b) {
    const int result = text_services::compare(a, b);
    return result < 0 ? -1 : result > 0 ? 1 : 0;
  };
  EXPECT_EQ(order(u"abc", u"ABC"), 0);
  EXPECT_EQ(order(u"ABC", u"Abd"), -1);
  EXPECT_EQ(order(u"b", u"A"), 1);
  EXPECT_EQ(order(u"", u"a"), -1);
  EXPECT_EQ(order(u"", u""), 0);
  EXPECT_EQ(order(u"300000012", u"300000012.5"), -1);
  EXPECT_EQ(order(u"1300000000", u"199999995"), -1);
  EXPECT_EQ(
      text_services::compare(std::u16string_view(u"a\0b", 3), std::u16string_view(u"a\0c", 3)) < 0,
      true);
  EXPECT_EQ(
      text_services::compare(std::u16string_view(u"a", 1), std::u16string_view(u"a\0", 2)) < 0,
      true);
}

}  // namespace
}  // namespace orv2_geo

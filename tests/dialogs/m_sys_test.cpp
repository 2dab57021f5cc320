#include "orv2_geo/dialogs/m_sys.h"

#include <string>

#include "orv2_geo/platform/text_services.h"
#include "tests/support/preamble.h"
#include "tests/support/refused_memory.h"

namespace orv2_geo {
namespace {

// Runs under several locales; these say which sign the locale brings.
const bool comma_locale = text_services::decimal_sign() == u',';

std::string text(const Variant& number, std::int16_t decimals, std::int16_t width) {
  return Texto_de_Numero(number, decimals, width).to_utf8();
}

Variant words(const char16_t* units) { return Text(units); }

struct Row {
  const char* rule;
  Variant number;
  std::int16_t decimals, width;
  std::string expected;
};

void expect_all(std::initializer_list<Row> rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(text(row.number, row.decimals, row.width), row.expected) << row.rule;
  }
}

TEST(TextOfANumber, HasItsDecimalsAndAPointInEveryLocale) {
  expect_all({
      {"rounded to three", 1234.5678, 3, 0, "1234.568"},
      {"a negative", -0.5, 1, 0, "-0.5"},
      {"whole part padded to six", 2.5, 3, 6, "     2.500"},
      {"wide enough already", 2.5, 3, 1, "2.500"},
      {"more than 15 decimals are 15", std::int32_t{1}, 20, 0, "1.000000000000000"},
      {"15 are 15", std::int32_t{1}, 15, 0, "1.000000000000000"},
      {"16 are 15", std::int32_t{1}, 16, 0, "1.000000000000000"},
      {"15 significant digits reach the decimals", 1234567890.12345678, 8, 0,
       "1234567890.12346000"},
      {"half away from zero, of the decimal form", 2.675, 2, 0, "2.68"},
      {"half away from zero in thousandths", 1.0005, 3, 0, "1.001"},
      {"half away from zero below it", -2.675, 2, 0, "-2.68"},
      {"a default text with an exponent", 1e20, 2, 0, "100000000000000000000.00"},
      {"a small default text with an exponent", 0.00001, 5, 0, "0.00001"},
  });
}

TEST(TextOfANumber, WithoutDecimalsIsTheDefaultText) {
  expect_all({
      {"an integer", std::int32_t{1234}, 0, 0, "1234"},
      {"an integer of 16 bits", std::int16_t{-7}, 0, 0, "-7"},
      {"padded as a whole", std::int32_t{7}, 0, 3, "  7"},
      {"padded as a whole, an f64", 7.0, 0, 3, "  7"},
      {"the locale's sign stays", 12.34, 0, 0, comma_locale ? "12,34" : "12.34"},
      {"and counts as width", 12.34, -1, 7, comma_locale ? "  12,34" : "  12.34"},
      {"no rounding", 2.675, -5, 0, comma_locale ? "2,675" : "2.675"},
      {"f32 to seven digits", 0.1F, 0, 0, comma_locale ? "0,1" : "0.1"},
      {"a text as it stands", words(u" 1,5 x"), 0, 0, " 1,5 x"},
      {"an empty variant", Variant(), 0, 0, ""},
  });
}

TEST(TextOfANumber, ReadsTextsUpToWhereTheyStopBeingNumbers) {
  expect_all({
      {"a comma is a point", words(u"12,5"), 2, 0, "12.50"},
      {"letters are 0", words(u"abc"), 2, 0, "0.00"},
      {"nothing is 0", words(u""), 2, 0, "0.00"},
      {"an empty variant is 0", Variant(), 1, 0, "0.0"},
      {"the first comma only", words(u"1.234,5"), 4, 0, "1.2340"},
      {"two commas", words(u"1,5,5"), 2, 0, "1.50"},
      {"blanks in front", words(u"   3.25"), 2, 0, "3.25"},
      {"tabs and line feeds", words(u"\t\n3.25"), 2, 0, "3.25"},
      {"an exponent", words(u"1.5e3m"), 1, 0, "1500.0"},
      {"a point in every locale", words(u"12.5"), 2, 0, "12.50"},
  });
}

TEST(TextOfANumber, IsPaddedToAWidth) {
  expect_all({
      {"the sign is part of the whole part", -2.5, 1, 4, "  -2.5"},
      {"as wide: untouched", 123.5, 1, 3, "123.5"},
      {"one wider", 123.5, 1, 4, " 123.5"},
      {"a negative width is none", 2.5, 1, -4, "2.5"},
      {"blanks around a text give way", words(u"  ab "), 0, 4, "  ab"},
      {"and stay where it is wide enough", words(u"  ab "), 0, 2, "  ab "},
      {"all blanks", words(u"   "), 0, 2, "  "},
      {"decimals beyond 15 are taken off the width all the same", std::int32_t{1}, 20, 3,
       std::string(7, ' ') + "1.000000000000000"},
      {"a long text", Text(std::u16string(200, u'9')), 0, 203, "   " + std::string(200, '9')},
      {"a long text, wide enough already", Text(std::u16string(200, u'9')), 0, 199,
       std::string(200, '9')},
      {"the longest that can be measured", Text(std::u16string(32767, u'9')), 0, 1,
       std::string(32767, '9')},
      {"a width of 16 bits", std::int32_t{7}, 0, 32767, std::string(32766, ' ') + "7"},
  });
}

TEST(TextOfANumber, IsEmptyWhereItCannotBeMade) {
  const Text endless(std::u16string(40000, u'9'));
  expect_all({
      {"one more than can be measured", Text(std::u16string(32768, u'9')), 0, 1, ""},
      {"null", Variant::Null{}, 2, 0, ""},
      {"null without decimals", Variant::Null{}, 0, 4, ""},
      {"an object", ObjectRef(), 2, 0, ""},
      {"decimals at the top of 16 bits", 1.0, 32766, 0, ""},
      {"the last decimals that go", 1.0, 32765, 0, "1.000000000000000"},
      {"width less a long way back", 1.0, 100, 32767, ""},
      {"a text too long to measure", endless, 0, 1, ""},
      {"a text too large for a number", endless, 2, 0, ""},
      {"an infinity", inf, 3, 0, ""},
      {"no number", nan, 0, 0, ""},
      {"an infinite f32", inf_single, 3, 0, ""},
  });
  EXPECT_EQ(Texto_de_Numero(endless, 0, 0), endless) << "unmeasured, a long text passes";
}

TEST(TextOfANumber, IsEmptyWithoutMemory) {
  const Variant number = 1234.5678;
  const Text whole = u"     1234.568";
  bool refused = true;
  for (long pass = 0; refused; ++pass) {
    Text made;
    {
      const RefusedAllocation memory(pass);
      made = Texto_de_Numero(number, 3, 9);
      refused = RefusedAllocation::happened();
    }
    EXPECT_EQ(made, refused ? Text() : whole) << pass;
  }
}

}  // namespace
}  // namespace orv2_geo

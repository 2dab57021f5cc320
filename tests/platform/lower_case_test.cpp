#include "orv2_geo/platform/lower_case.h"

#include <gtest/gtest.h>
#include <locale.h>

#include <cwctype>

namespace orv2_geo {
namespace {

TEST(LowerCase, EveryAlphabet) {
  const struct {
    const char* letter;
    char32_t point, lower;
  } rows[] = {
      {"A", U'A', U'a'},
      {"Z", U'Z', U'z'},
      {"before A", U'@', U'@'},
      {"behind Z", U'[', U'['},
      {"n tilde", U'Ñ', U'ñ'},
      {"the multiplication sign between letters", U'\u00d7', U'\u00d7'},
      {"every second letter", U'\u0100', U'\u0101'},
      {"and not those between", U'\u0101', U'\u0101'},
      {"I with a dot", U'\u0130', U'i'},
      {"Y with a diaeresis, far behind", U'\u0178', U'\u00ff'},
      {"sigma", U'\u03a3', U'\u03c3'},
      {"capital sharp s", U'\u1e9e', U'\u00df'},
      {"zhe", U'\u0416', U'\u0436'},
      {"the kelvin sign", U'\u212a', U'k'},
      {"Deseret, beyond 16 bits", U'\U00010400', U'\U00010428'},
      {"the last pair", U'\U0001e921', U'\U0001e943'},
      {"half a pair of units", U'\xd801', U'\xd801'},
      {"a digit", U'5', U'5'},
      {"the last code point", U'\U0010ffff', U'\U0010ffff'},
  };
  for (const auto& row : rows) EXPECT_EQ(lower_case(row.point), row.lower) << row.letter;
}

// The C run-time may know letters of a later Unicode, but none in another way.
TEST(LowerCase, AgreesWithTheRunTime) {
#if defined(_WIN32)
  GTEST_SKIP() << "The run-time has no letters of Unicode apart from a language's";
#else
  const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  if (unicode == nullptr) GTEST_SKIP() << "C.UTF-8 is not installed";
  int letters = 0;
  for (char32_t point = 0; point < 0x110000; ++point) {
    const char32_t lower = lower_case(point);
    if (lower == point) continue;
    ASSERT_EQ(lower, static_cast<char32_t>(towlower_l(point, unicode))) << std::hex << +point;
    ++letters;
  }
  freelocale(unicode);
  EXPECT_EQ(letters, 1433);
#endif
}

}  // namespace
}  // namespace orv2_geo

#include "survey_report/layout.h"

#include <gtest/gtest.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>

#include <limits>
#include <locale>

namespace survey_report {
namespace {

struct NumberRow {
  const char* rule;
  double value;
  int decimals;
  const char* text;
};

const NumberRow number_rows[] = {
    {"decimals are filled up", 12.5, 3, "12.500"},
    {"a coordinate of metres keeps its millimetres", 4473028.1234, 3, "4473028.123"},
    {"below zero", -0.5, 3, "-0.500"},
    {"what rounds to zero has no sign", -0.0004, 3, "0.000"},
    {"minus zero has no sign", -0.0, 3, "0.000"},
    {"what does not quite round to zero keeps its sign", -0.0006, 3, "-0.001"},
};

TEST(Layout, FixedDecimals) {
  for (const NumberRow& row : number_rows) {
    EXPECT_EQ(fixed(row.value, row.decimals), row.text) << row.rule;
  }
}

TEST(Layout, TheLargestNumberIsWrittenOut) {
  EXPECT_EQ(fixed(-std::numeric_limits<double>::max(), 3).size(), 1 + 309 + 4);
}

const NumberRow exact_rows[] = {
    {"decimals are filled up", 12.5, 3, "12.500"},
    {"a whole number too", 12, 3, "12.000"},
    {"as many as it needs", 538542.4645712, 3, "538542.4645712"},
    {"none where none are asked for", 5, 0, "5"},
    {"no more than it needs", 0.02, 0, "0.02"},
    {"minus zero keeps its sign", -0.0, 1, "-0.0"},
};

TEST(Layout, ExactNumbers) {
  for (const NumberRow& row : exact_rows) {
    EXPECT_EQ(exact(row.value, row.decimals), row.text) << row.rule;
  }
}

struct CommaNumbers : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
};

TEST(Layout, TheDecimalSignIsAPointWhateverTheLocale) {
  const std::locale before =
      std::locale::global(std::locale(std::locale::classic(), new CommaNumbers));
  EXPECT_EQ(fixed(1.5, 3), "1.500");
  std::locale::global(before);
}

struct AzimuthRow {
  const char* rule;
  double azimuth;
  const char* text;
};

const AzimuthRow azimuth_rows[] = {
    {"north is zero", 0.0, "0.0000"},
    {"four decimals", 100.00004, "100.0000"},
    {"the last azimuth before north", 399.99994, "399.9999"},
    {"what rounds to the full circle is north", 399.99996, "0.0000"},
};

TEST(Layout, Azimuths) {
  for (const AzimuthRow& row : azimuth_rows) {
    EXPECT_EQ(azimuth_text(row.azimuth), row.text) << row.rule;
  }
}

TEST(Layout, AColumnIsAsWideAsItsWidestCell) {
  Table table({{"Code", Align::left}, {"Z", Align::right}});
  table.add({"EJE", "612.000"});
  table.add(
      {"SE\xC3\x91"
       "AL",
       "7.000"});
  EXPECT_EQ(table.text(),
            "Code         Z\n"
            "-----  -------\n"
            "EJE    612.000\n"
            "SE\xC3\x91"
            "AL    7.000\n");
}

TEST(Layout, AHeadingWiderThanItsCellsGivesTheWidth) {
  Table table({{"Number", Align::right}, {"Code", Align::left}});
  table.add({"1", "A"});
  EXPECT_EQ(table.text(), "Number  Code\n------  ----\n     1  A\n");
}

TEST(Layout, LinesHaveNoBlanksAtTheirEnd) {
  Table table({{"Code", Align::left}, {"Distance", Align::right}});
  table.add({"EJE", ""});
  EXPECT_EQ(table.text(), "Code  Distance\n----  --------\nEJE\n");
}

TEST(Layout, ATableWithoutRowsIsItsHeading) {
  EXPECT_EQ(Table({{"X", Align::right}}).text(), "X\n-\n");
}

TEST(Layout, ACellStaysOnItsLine) {
  Table table({{"Code", Align::left}});
  table.add({"A\tB\rC"});
  EXPECT_EQ(table.text(), "Code\n-----\nA B C\n");
}

// The long way, by the standard library.
std::string by_printf(double value, int decimals) {
  std::array<char, 400> room;
  const int length = std::snprintf(room.data(), room.size(), "%.*f", decimals, value);
  std::string text(room.data(), static_cast<std::size_t>(length));
  const bool is_zero = text.find_first_not_of("-0.") == std::string::npos;
  return is_zero && text.starts_with('-') ? text.substr(1) : text;
}

TEST(Layout, NumbersOfAllSizesAreRoundedOnceAndToEven) {
  std::mt19937_64 numbers(11);
  std::uniform_real_distribution<double> size(-6.0, 14.0);
  std::uniform_real_distribution<double> part(-1.0, 1.0);
  for (int i = 0; i < 50000; ++i) {
    const double value = part(numbers) * std::pow(10.0, size(numbers));
    const double tie = std::round(value * 16.0) / 16.0;  // half of a last digit, now and then
    const int decimals = i % 6;
    ASSERT_EQ(fixed(value, decimals), by_printf(value, decimals));
    ASSERT_EQ(fixed(tie, decimals), by_printf(tie, decimals));
  }
}

TEST(Layout, TheExactTextIsTheShortestWithEnoughDecimals) {
  std::mt19937_64 numbers(12);
  std::uniform_int_distribution<std::int64_t> units(-99999999999999, 99999999999999);
  for (int i = 0; i < 50000; ++i) {
    const int decimals = 1 + i % 4;
    const double value = static_cast<double>(units(numbers) >> (i % 40)) / std::pow(10.0, i % 7);
    std::array<char, 400> room;
    const auto [end, error] =
        std::to_chars(room.data(), room.data() + room.size(), value, std::chars_format::fixed);
    std::string text(room.data(), end);
    if (text.find('.') == std::string::npos) text += '.';
    while (text.size() - text.find('.') <= static_cast<std::size_t>(decimals)) text += '0';
    ASSERT_EQ(exact(value, decimals), text);
  }
}

}  // namespace
}  // namespace survey_report

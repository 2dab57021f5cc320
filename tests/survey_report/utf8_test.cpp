#include "survey_report/utf8.h"

#include <gtest/gtest.h>

namespace survey_report {
namespace {

struct WidthRow {
  const char* rule;
  const char* text;
  std::size_t width;
};

const WidthRow width_rows[] = {
    {"nothing is no column", "", 0},
    {"a plain letter is one column", "ARBOL", 5},
    {"a letter of two bytes is one column",
     "SE\xC3\x91"
     "AL",
     5},
    {"an accent over a letter adds none",
     "SEN\xCC\x83"
     "AL",
     5},
    {"a character of four bytes is one column", "\xF0\x9F\x8C\xB2", 1},
    {"a byte that is no UTF-8 counts by itself", "A\xFF", 2},
};

TEST(Utf8, WidthInAFixedPitchFont) {
  for (const WidthRow& row : width_rows) EXPECT_EQ(display_width(row.text), row.width) << row.rule;
}

struct ByteRow {
  const char* rule;
  std::string_view bytes;
  std::optional<std::size_t> wrong;
};

const ByteRow byte_rows[] = {
    {"empty text is UTF-8", "", std::nullopt},
    {"plain letters are UTF-8", "EJE", std::nullopt},
    {"the last character is UTF-8", "\xF4\x8F\xBF\xBF", std::nullopt},
    {"one byte past the last character", "\xF4\x90\x80\x80", 0},
    {"a letter of a one-byte alphabet",
     "SE\xD1"
     "AL",
     2},
    {"a character cut off at the end", "A\xC3", 1},
    {"two bytes where one would do", "\xC0\xAF", 0},
    {"half of a surrogate pair", "\xED\xA0\x80", 0},
    {"a following byte without a first one", "AB\x80", 2},
};

TEST(Utf8, FirstByteThatIsNotUtf8) {
  for (const ByteRow& row : byte_rows) {
    EXPECT_EQ(first_byte_not_utf8(row.bytes), row.wrong) << row.rule;
  }
}

TEST(Utf8, ControlCharactersBecomeBlanks) {
  EXPECT_EQ(without_controls("TOP\tWALL\x1B[1m\x7F"), "TOP WALL [1m ");
}

TEST(Utf8, ALongTextIsShortened) {
  EXPECT_EQ(shortened("plot.csv", 8), "plot.csv");
  EXPECT_EQ(shortened("plot.csv", 5), "plot\u2026");
  EXPECT_EQ(shortened("SE\u00D1ALES", 4), "SE\u00D1\u2026");
}

}  // namespace
}  // namespace survey_report

#include "survey_report/svg.h"

#include <gtest/gtest.h>

namespace survey_report {
namespace {

struct EscapeRow {
  const char* rule;
  std::string_view text;
  std::string_view escaped;
};

const EscapeRow escape_rows[] = {
    {"plain", "plan.csv", "plan.csv"},
    {"nothing", "", ""},
    {"every mark", "<a & \"b\" 'c'>", "&lt;a &amp; &quot;b&quot; &apos;c&apos;&gt;"},
    {"what looks escaped is not", "&amp;", "&amp;amp;"},
    {"other scripts stay",
     "SE\xC3\x91"
     "AL",
     "SE\xC3\x91"
     "AL"},
    {"controls are blanks",
     "a\tb\x01"
     "c",
     "a b c"},
    {"bytes that are no UTF-8", "a\xFF\xC3", "a??"},
    {"what XML does not allow", "a\xEF\xBF\xBF", "a?"},
};

TEST(Svg, Escaping) {
  for (const EscapeRow& row : escape_rows)
    EXPECT_EQ(xml_escaped(row.text), row.escaped) << row.rule;
}

TEST(Svg, NumbersAreShort) {
  EXPECT_EQ(sheet_number(10), "10");
  EXPECT_EQ(sheet_number(1.5), "1.5");
  EXPECT_EQ(sheet_number(-0.0001), "0");
  EXPECT_EQ(sheet_number(0.12349), "0.123");
  EXPECT_EQ(sheet_number(-200), "-200");
}

TEST(Svg, Paths) {
  EXPECT_EQ(path_through({{1, 2}, {3.5, 4}}, false), "M 1 2 L 3.5 4");
  EXPECT_EQ(path_through({{1, 2}, {3, 4}, {0, 0}}, true), "M 1 2 L 3 4 L 0 0 Z");
}

TEST(Svg, ADocumentIsMeasuredInMillimetres) {
  Svg svg;
  svg.text({1, 2}, "a<b", {.size = 3});
  const std::string document = svg.element(297, 210, "x & y");
  EXPECT_NE(document.find(R"(width="297mm" height="210mm" viewBox="0 0 297 210")"),
            std::string::npos);
  EXPECT_NE(document.find("<title>x &amp; y</title>"), std::string::npos);
  EXPECT_NE(document.find(">a&lt;b</text>"), std::string::npos);
}

}  // namespace
}  // namespace survey_report

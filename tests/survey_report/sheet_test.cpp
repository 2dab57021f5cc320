#include "survey_report/sheet.h"

#include <gtest/gtest.h>

#include "survey_report/choice_fault.h"

namespace survey_report {
namespace {

// A square that fills the shorter side of a sheet, with labels that find room
// from one scale on.
class Square final : public SheetNeeds {
 public:
  Square(double side, double legible) : side_(side), legible_(legible) {}

  double least_scale(const Sheet& sheet) const override {
    return side_ / std::min(sheet.width(), sheet.height());
  }
  double labelled(const ScaledSheet& scaled) const override {
    return std::min(1.0, legible_ / scaled.scale);
  }
  bool prefers_landscape() const override { return true; }

 private:
  double side_;
  double legible_;
};

struct ChoiceRow {
  const char* rule;
  double side;
  double legible;
  const char* paper;
  double scale;
};

// 200 000 is 1:1000 on A4 (210 mm), 1:1000 on A3 (297), 1:500 on A2 (420) and A1 (594).
const ChoiceRow choice_rows[] = {
    {"the smallest where labels find room", 200000, 1000, "A4", 1000},
    {"nine labels in ten are enough", 200000, 900, "A4", 1000},
    {"a larger one where that gives a larger scale", 200000, 600, "A2", 500},
    {"where nothing helps, the one with the most labels", 200000, 1, "A2", 500},
    {"without a size, 1:100", 0, 1000, "A4", 100},
};

TEST(SheetChoice, Found) {
  for (const ChoiceRow& row : choice_rows) {
    const ScaledSheet found = sheet_for(Square(row.side, row.legible), {}, {}, "--scale");
    EXPECT_EQ(found.sheet.paper.name, row.paper) << row.rule;
    EXPECT_EQ(found.scale, row.scale) << row.rule;
    EXPECT_TRUE(found.sheet.landscape) << row.rule;
  }
}

TEST(SheetChoice, AScaleOfTheUserTakesTheSmallestSheetWithRoomForIt) {
  const Square square(200000, 1);
  EXPECT_EQ(sheet_for(square, {}, 5000.0, "--scale").sheet.paper.name, "A4");
  const ScaledSheet found = sheet_for(square, {}, 700.0, "--scale");
  EXPECT_EQ(found.sheet.paper.name, "A3");
  EXPECT_EQ(found.scale, 700.0);
}

TEST(SheetChoice, ASheetOfTheUserIsTaken) {
  const ScaledSheet found = sheet_for(Square(200000, 1), papers[1], {}, "--scale");
  EXPECT_EQ(found.sheet.text(), "A3, 420 x 297 mm");
  EXPECT_EQ(found.scale, 1000.0);
}

TEST(SheetChoice, AScaleWithoutRoomIsRefused) {
  try {
    sheet_for(Square(200000, 1), papers[0], 500.0, "--scale");
    FAIL();
  } catch (const ChoiceFault& fault) {
    EXPECT_STREQ(fault.what(),
                 "--scale 1:500 does not fit A4: the largest round scale that does is 1:1000");
  }
}

TEST(Sheet, Values) {
  EXPECT_EQ(sheet_value(617.936, 2), "617.94");
  EXPECT_EQ(sheet_value(-123456, 2), "-123456.00");
  EXPECT_EQ(sheet_value(1e150, 2), "1.000e150");
}

TEST(Sheet, LabelsLeftOut) {
  EXPECT_EQ(left_out_text(0), "no labels left out");
  EXPECT_EQ(left_out_text(1), "1 label left out");
  EXPECT_EQ(left_out_text(12), "12 labels left out");
}

TEST(Sheet, AnAssumedUnitIsSaidToBeOne) {
  DrawingOptions options;
  EXPECT_EQ(unit_text(options), "metres assumed");
  options.unit = units[1];
  EXPECT_EQ(unit_text(options), "feet");
}

struct CellRow {
  const char* rule;
  const char* text;
  double size;
  const char* part;
};

const CellRow cell_rows[] = {
    {"what fits is as large as asked for", "0123456789", 4.0,
     R"(font-size="4" fill="#222222">0123456789<)"},
    {"what does not is smaller", "01234567890123456789", 4.0, R"(font-size="3.125")"},
    {"and then cut", "0123456789012345678901234567890123456789", 4.0, "\u2026<"},
    {"nothing is nothing", "", 4.0, "></text>"},
};

TEST(Sheet, TextsStayInTheirCells) {
  for (const CellRow& row : cell_rows) {
    Svg svg;
    draw_cell(svg, {0, 0, 44, 6}, row.text, row.size);
    EXPECT_NE(svg.element(1, 1, "").find(row.part), std::string::npos) << row.rule << '\n'
                                                                       << svg.element(1, 1, "");
  }
}

}  // namespace
}  // namespace survey_report

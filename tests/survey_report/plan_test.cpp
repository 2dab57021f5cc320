#include "survey_report/plan.h"

#include <gtest/gtest.h>

#include <sstream>

#include "survey_report/choice_fault.h"

namespace survey_report {
namespace {

std::string plan_on(std::vector<SurveyPoint> points, const DrawingOptions& options = {}) {
  const Survey survey{"plot.csv", FieldOrder::x_first, std::move(points)};
  return plan_of(survey, study_of(survey.points, {}), options).svg;
}

// Points of the most frequent code are circles of 0.9 mm, in their group alone.
std::vector<Place> circles_on(const std::string& plan) {
  std::vector<Place> centres;
  const std::size_t group = plan.find(R"(<g id="points">)");
  const std::string points = plan.substr(group, plan.find("</g>", group) - group);
  for (std::size_t at = points.find("d=\"M "); at != points.npos; at = points.find("d=\"M ", at)) {
    at += 5;
    std::istringstream numbers(points.substr(at, 40));
    Place centre;
    numbers >> centre.x >> centre.y;
    centres.push_back({centre.x + 0.9, centre.y});
  }
  return centres;
}

std::size_t count_of(const std::string& text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++count;
  return count;
}

bool is_landscape(const std::string& plan) {
  return plan.find(R"(viewBox="0 0 297 210")") != std::string::npos;
}

TEST(Plan, TheSheetLiesAsTheSurveyDoes) {
  EXPECT_TRUE(is_landscape(plan_on({{"1", 0, 0, 0, "", 1}, {"2", 9, 3, 0, "", 2}})));
  EXPECT_FALSE(is_landscape(plan_on({{"1", 0, 0, 0, "", 1}, {"2", 3, 9, 0, "", 2}})));
}

struct SheetRow {
  const char* rule;
  double across, up;  // of the survey
  const char* parts[5];
};

// The sheet has a border; inside it are the frame of the plan, with room for the
// coordinates left of it and below, and the key with the legend and the title block.
TEST(Plan, FrameAndLegendHaveTheirPlaces) {
  const SheetRow table[] = {
      {"the key to the right",
       9,
       3,
       {R"(<path d="M 20 10 L 287 10 L 287 200 L 20 200 Z")",
        R"(<path d="M 221 10 L 287 10 L 287 200 L 221 200 Z")",
        R"(<path d="M 27 13 L 218 13 L 218 193 L 27 193 Z")",
        R"(<text x="235" y="63.1" font-size="3" fill="#222222">A (1)<)",
        R"(<text x="235" y="68.1" font-size="3" fill="#222222">B (1)<)"}},
      {"the key below",
       3,
       9,
       {R"(<path d="M 20 10 L 200 10 L 200 287 L 20 287 Z")",
        R"(<path d="M 20 226 L 200 226 L 200 287 L 20 287 Z")",
        R"(<path d="M 27 13 L 197 13 L 197 219 L 27 219 Z")",
        R"(<text x="33" y="232.1" font-size="3" fill="#222222">A (1)<)",
        R"(<text x="33" y="238.3" font-size="3" fill="#222222">B (1)<)"}},
  };
  for (const SheetRow& row : table) {
    const std::string plan =
        plan_on({{"1", 0, 0, 0, "A", 1}, {"2", row.across, row.up, 0, "B", 2}});
    for (const char* part : row.parts) {
      EXPECT_EQ(count_of(plan, part), 1U) << row.rule << ": " << part;
    }
  }
}

// Eleven entries: nine in a column below the plan, the others beside them.
TEST(Plan, TheLegendGoesOnInAnotherColumn) {
  std::vector<SurveyPoint> points;
  for (int i = 0; i < 11; ++i) {
    points.push_back({std::to_string(i), i / 5.0, 1.0 * i, 0, std::string(1, "ABCDEFGHIJK"[i]),
                      static_cast<std::size_t>(i) + 1});
  }
  points.push_back(points.front());  // one code is the most frequent
  const std::string plan = plan_on(points);
  EXPECT_NE(plan.find(R"(<text x="33" y="232.1" font-size="3" fill="#222222">A (2)<)"), plan.npos);
  EXPECT_NE(plan.find(R"(<text x="33" y="281.7" font-size="3" fill="#222222">I (1)<)"), plan.npos);
  EXPECT_NE(plan.find(R"(<text x="81" y="232.1" font-size="3" fill="#222222">J (1)<)"), plan.npos);
}

// The middle of the sheet's frame is at 122.5, 103: 6, 8 is 50 mm off 0, 0 at 1:200.
TEST(Plan, TwoPointsAreAsFarApartAsTheScaleSays) {
  DrawingOptions options;
  options.plan_scale = 200.0;
  const std::string plan =
      plan_on({{"1", 0, 0, 0, "A", 1}, {"2", 6, 8, 0, "A", 2}, {"3", 20, 0, 0, "A", 3}}, options);
  const std::vector<Place> centres = circles_on(plan);
  ASSERT_EQ(centres.size(), 3);
  EXPECT_NEAR(centres[1].x - centres[0].x, 6 * 1000.0 / 200.0, 0.0011);
  EXPECT_NEAR(centres[0].y - centres[1].y, 8 * 1000.0 / 200.0, 0.0011);
  EXPECT_NEAR(centres[2].x - centres[0].x, 100.0, 0.0011);
  EXPECT_NE(plan.find(">Plan, scale 1:200<"), plan.npos);
}

TEST(Plan, TheUnitGoesIntoTheScale) {
  DrawingOptions options;
  options.unit = units[1];
  options.plan_scale = 304.8;
  const std::vector<Place> centres =
      circles_on(plan_on({{"1", 0, 0, 0, "A", 1}, {"2", 60, 0, 0, "A", 2}}, options));
  ASSERT_EQ(centres.size(), 2);
  EXPECT_NEAR(centres[1].x - centres[0].x, 60.0, 0.0011);
}

TEST(Plan, AScaleThatDoesNotFitIsRefused) {
  DrawingOptions options;
  options.plan_scale = 1.0;
  EXPECT_THROW(plan_on({{"1", 0, 0, 0, "", 1}, {"2", 9, 3, 0, "", 2}}, options), ChoiceFault);
}

// 3000 points within 10 cm at 1:1000: most have no room.
TEST(Plan, LabelsWithoutRoomAreCounted) {
  std::vector<SurveyPoint> points = {{"W", 0, 0, 0, "", 1}, {"E", 200, 100, 0, "", 2}};
  for (int i = 0; i < 3000; ++i) points.push_back({"7", 100 + i * 3e-5, 50, 0, "", 3});
  const std::string plan = plan_on(points);
  const std::size_t labels = count_of(plan, ">7</text>");
  EXPECT_GE(labels, 4);
  EXPECT_NE(plan.find('>' + std::to_string(3000 - labels) + " labels left out<"), plan.npos);
}

TEST(Plan, OnePointIsDrawn) {
  EXPECT_NE(plan_on({{"P7", 5, 5, 0, "", 1}}).find(">P7</text>"), std::string::npos);
}

TEST(Plan, TheSameSurveyGivesTheSamePlan) {
  const std::vector<SurveyPoint> points = {
      {"1", 0, 0, 0, "A", 1}, {"2", 9, 3, 1, "B", 2}, {"3", 4, 8, 2, "A", 3}};
  EXPECT_EQ(plan_on(points), plan_on(points));
}

TEST(Plan, PointsPastEveryDoubleHaveNone) {
  EXPECT_THROW(plan_on({{"1", -1e308, 0, 0, "", 1}, {"2", 1e308, 0, 0, "", 2}}), DrawingFault);
}

TEST(Plan, TheBoxIsInTheMiddleOfTheFrame) {
  const Mapping mapping({{0, 100}, {0, 50}}, {0, 0, 112, 112}, 1.0);
  EXPECT_EQ(mapping.on_sheet({50, 25}), (Place{56, 56}));
  EXPECT_EQ(mapping.on_sheet({0, 50}), (Place{6, 31}));
}

}  // namespace
}  // namespace survey_report

#include "survey_report/plan.h"

#include <gtest/gtest.h>

namespace survey_report {
namespace {

std::string plan_on(std::vector<SurveyPoint> points) {
  const Survey survey{"plot.csv", FieldOrder::x_first, std::move(points)};
  return plan_of(survey, study_of(survey.points, {}));
}

bool is_landscape(const std::string& plan) {
  return plan.find(R"(viewBox="0 0 297 210")") != std::string::npos;
}

TEST(Plan, TheSheetLiesAsTheSurveyDoes) {
  EXPECT_TRUE(is_landscape(plan_on({{"1", 0, 0, 0, "", 1}, {"2", 9, 3, 0, "", 2}})));
  EXPECT_FALSE(is_landscape(plan_on({{"1", 0, 0, 0, "", 1}, {"2", 3, 9, 0, "", 2}})));
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
  const Mapping mapping({{0, 100}, {0, 50}}, {0, 0, 112, 112});
  EXPECT_DOUBLE_EQ(mapping.scale(), 1.0);
  EXPECT_EQ(mapping.on_sheet({50, 25}), (Place{56, 56}));
  EXPECT_EQ(mapping.on_sheet({0, 50}), (Place{6, 31}));
}

}  // namespace
}  // namespace survey_report

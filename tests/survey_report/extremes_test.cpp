#include "survey_report/extremes.h"

#include <gtest/gtest.h>

#include "tests/platform/recording_interface.h"

namespace survey_report {
namespace {

using orv2_geo::Form;
using orv2_geo::Grid;
using orv2_geo::testing_support::RecordingInterface;

TEST(Extremes, OfOnePointAreThePoint) {
  const Extents box = extents_of({{"1", -2, 3, 4, "", 1}});
  EXPECT_EQ(box.x.min, -2);
  EXPECT_EQ(box.x.max, -2);
  EXPECT_EQ(box.z.max, 4);
}

TEST(Extremes, ReachFromTheSmallestToTheLargest) {
  const Extents box = extents_of({{"1", 5, -3, 4, "", 1}, {"2", -2, 9, 1, "", 2}});
  EXPECT_EQ(box.x.min, -2);
  EXPECT_EQ(box.x.max, 5);
  EXPECT_EQ(box.y.min, -3);
  EXPECT_EQ(box.y.max, 9);
  EXPECT_EQ(box.z.min, 1);
  EXPECT_EQ(box.z.max, 4);
}

const std::vector<SurveyPoint> four = {{"A", 5, -3, 4, "", 1},
                                       {"B", -2, 9, 1, "", 2},
                                       {"C", -2, 9, 4, "", 3},
                                       {"D", 0, 0, 2.5, "", 4}};

TEST(Extremes, TheFirstOfSeveralHoldsOne) {
  EXPECT_EQ(holder_of(four, &SurveyPoint::x, 5), 0U);
  EXPECT_EQ(holder_of(four, &SurveyPoint::x, -2), 1U);
  EXPECT_EQ(holder_of(four, &SurveyPoint::y, 9), 1U);
  EXPECT_EQ(holder_of(four, &SurveyPoint::z, 4), 0U);
}

std::vector<std::vector<std::string>> shown_in(Form& form) {
  const Grid& grid = form.control("msf_MaxMin").grid();
  std::vector<std::vector<std::string>> rows;
  for (std::int32_t row = 1; row < grid.rows; ++row) {
    rows.emplace_back();
    for (std::int32_t col = 1; col < grid.cols; ++col) {
      rows.back().push_back(grid.cell(row, col).to_utf8());
    }
  }
  return rows;
}

TEST(Extremes, TheDialogShowsThemWithTheirHolders) {
  RecordingInterface screen;
  std::vector<std::vector<std::string>> rows;
  screen.user = [&](Form& form) {
    rows = shown_in(form);
    form.click("cmdDatosaceptar");
  };
  show_extremes(four);
  EXPECT_EQ(rows, (std::vector<std::vector<std::string>>{{"-2.000", "2", "5.000", "1", "7.000"},
                                                         {"-3.000", "1", "9.000", "2", "12.000"},
                                                         {"1.000", "2", "4.000", "1", "3.000"}}));
  EXPECT_TRUE(screen.boxes.empty());
}

TEST(Extremes, TheDialogsHoldersAreTheReports) {
  RecordingInterface screen;
  std::vector<std::vector<std::string>> rows;
  screen.user = [&](Form& form) { rows = shown_in(form); };
  show_extremes(four);
  const auto number = [&](double SurveyPoint::*axis, double value) {
    return std::to_string(holder_of(four, axis, value) + 1);
  };
  const Extents box = extents_of(four);
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows[0][1], number(&SurveyPoint::x, box.x.min));
  EXPECT_EQ(rows[0][3], number(&SurveyPoint::x, box.x.max));
  EXPECT_EQ(rows[1][1], number(&SurveyPoint::y, box.y.min));
  EXPECT_EQ(rows[1][3], number(&SurveyPoint::y, box.y.max));
  EXPECT_EQ(rows[2][1], number(&SurveyPoint::z, box.z.min));
  EXPECT_EQ(rows[2][3], number(&SurveyPoint::z, box.z.max));
}

TEST(Extremes, NothingIsShownUnasked) {
  RecordingInterface screen;
  int dialogs = 0;
  screen.user = [&](Form&) { ++dialogs; };
  extents_of(four);
  EXPECT_EQ(dialogs, 0);
  show_extremes({four[0]});  // one point
  EXPECT_EQ(dialogs, 0);
  show_extremes({four[0], four[1]});
  EXPECT_EQ(dialogs, 1);
}

}  // namespace
}  // namespace survey_report

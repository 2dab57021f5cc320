#include "survey_report/profile_drawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

#include "survey_report/choice_fault.h"

namespace survey_report {
namespace {

struct HeightsRow {
  const char* rule;
  double scale;
  Range elevations;
  double exaggeration, level_step, datum;
};

// The elevations have 96 mm. Levels are about 10 mm apart, the datum at least
// 6 mm below the terrain.
const HeightsRow heights_rows[] = {
    {"ten times has just room", 1000, {600, 609.6}, 10, 1, 599},
    {"ten times has no room any more", 1000, {600, 609.7}, 5, 2, 598},
    {"1:2000 five times is 1:400, which is not round", 2000, {600, 638}, 2, 10, 590},
    {"1:2500 twice is 1:1250, which is not round", 2500, {600, 700}, 1, 20, 580},
    {"1:2500 five times is 1:500", 2500, {600, 648}, 5, 5, 595},
    {"a scale of the user that is not round: any", 2100, {600, 640}, 5, 5, 595},
    {"level: not exaggerated", 1000, {600, 600}, 1, 10, 590},
    {"nearly level: a hundred times at most", 1000, {600, 600.001}, 100, 0.1, 599.9},
    {"below zero", 1000, {-609.6, -600}, 10, 1, -611},
};

TEST(ProfileDrawing, Heights) {
  for (const HeightsRow& row : heights_rows) {
    const ProfileHeights heights = profile_heights(row.scale, row.elevations, 96.0, 1000.0);
    EXPECT_DOUBLE_EQ(heights.exaggeration, row.exaggeration) << row.rule;
    EXPECT_DOUBLE_EQ(heights.level_step, row.level_step) << row.rule;
    EXPECT_DOUBLE_EQ(heights.datum, row.datum) << row.rule;
  }
}

const std::vector<SurveyPoint> points = {
    {"1", 0, 0, 600, "LINDERO", 1},    {"2", 200, 0, 600, "LINDERO", 2},
    {"3", 200, 80, 600, "LINDERO", 3}, {"4", 0, 80, 600, "LINDERO", 4},
    {"5", 20, 40, 600, "EJE", 5},      {"6", 180, 40, 603, "EJE", 6}};

Study study_with(std::optional<double> step) {
  StudyOptions options;
  options.section = SectionLine{{-10, 40}, {210, 40}};
  options.corridor = 1.0;
  options.station_step = step;
  return study_of(points, options);
}

const Survey survey{"a&b.csv", FieldOrder::x_first, points};

std::size_t count_of(const std::string& text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++count;
  return count;
}

// From cut to cut there are 200 units, 200 mm at 1:1000; 3 units are 60 mm at 1:50.
TEST(ProfileDrawing, WhatIsOnIt) {
  const std::string drawing = profile_drawing_of(survey, study_with(50.0)).svg;
  for (const char* text :
       {R"(font-weight="bold">a&amp;b.csv<)", ">Longitudinal profile<",
        ">Scale 1:1000, vertical 1:50<", ">Exaggeration 20, metres assumed<",
        ">Sheet A4, 297 x 210 mm<", ">no labels left out<", ">Datum 599.5<", ">600.0<", ">603.0<",
        ">Elevation<", ">Distance<", ">Station<",
        // From 30 to 190 along the axis; at 100 the elevation is 600 + 3 * 70 / 160.
        ">30.000<", ">600.000<", ">100.000<", ">601.312<", ">190.000<", ">603.000<"}) {
    EXPECT_EQ(count_of(drawing, text), 1) << text;
  }
}

// The terrain is 160 units long, 160 mm at 1:1000, and rises 3 units, 60 mm at 1:50.
TEST(ProfileDrawing, TheTerrainMeasuresWhatTheScalesSay) {
  const std::string drawing = profile_drawing_of(survey, study_with(50.0)).svg;
  std::istringstream path(drawing.substr(drawing.find(R"(<g id="terrain">)")));
  std::string skipped;
  Place from;
  Place to;
  path >> skipped >> skipped >> skipped >> skipped >> from.x >> from.y >> skipped >> to.x >> to.y;
  EXPECT_NEAR(to.x - from.x, 160.0, 0.0011) << drawing;
  EXPECT_NEAR(from.y - to.y, 60.0, 0.0011);
}

TEST(ProfileDrawing, TheScaleOfTheUserIsTaken) {
  DrawingOptions options;
  options.profile_scale = 2000.0;
  const std::string drawing = profile_drawing_of(survey, study_with(50.0), options).svg;
  EXPECT_EQ(count_of(drawing, ">Scale 1:2000, vertical 1:100<"), 1);
  EXPECT_EQ(count_of(drawing, ">Exaggeration 20, metres assumed<"), 1);
  options.profile_scale = 100.0;
  EXPECT_THROW(profile_drawing_of(survey, study_with(50.0), options), ChoiceFault);
}

// At 1:2000 the elevations could be 1:1000 only; at 1:2500 they are 1:250.
TEST(ProfileDrawing, TheNextScaleIsTakenWhereItFillsTheSheetBetter) {
  std::vector<SurveyPoint> wide = points;
  for (SurveyPoint& point : wide) {
    point.x *= 2;
    point.z = 600 + (point.z - 600) * 6;
  }
  StudyOptions study;
  study.section = SectionLine{{-20, 40}, {420, 40}};
  study.corridor = 1.0;
  const std::string drawing =
      profile_drawing_of({"wide.csv", FieldOrder::x_first, wide}, study_of(wide, study)).svg;
  EXPECT_EQ(count_of(drawing, ">Scale 1:2500, vertical 1:250<"), 1) << drawing;
}

TEST(ProfileDrawing, NoScaleForNumbersPastEveryDouble) {
  Study study = study_with({});
  study.profile.lowest = -std::numeric_limits<double>::max();
  study.profile.highest = std::numeric_limits<double>::max();
  EXPECT_THROW(profile_drawing_of(survey, study), DrawingFault);
}

TEST(ProfileDrawing, TextsOfStationsDoNotTouch) {
  const std::string few = profile_drawing_of(survey, study_with(20.0)).svg;
  const std::string many = profile_drawing_of(survey, study_with(0.5)).svg;
  const auto ordinates = [](const std::string& drawing) {
    const std::size_t from = drawing.find(R"(<g id="ordinates")");
    return count_of(drawing.substr(from, drawing.find("</g>", from) - from), "<line");
  };
  EXPECT_EQ(ordinates(few), 10);
  EXPECT_EQ(ordinates(many), 321);
  EXPECT_EQ(count_of(few, "rotate(-90"), 2 * 10);
  const std::size_t texts = count_of(many, "rotate(-90") / 2;
  EXPECT_GT(texts, 40);
  EXPECT_LT(texts, 321);
  EXPECT_EQ(count_of(many, '>' + std::to_string(321 - texts) + " labels left out<"), 1);
  EXPECT_EQ(count_of(many, ">190.000<"), 1);
}

TEST(ProfileDrawing, WithoutAProfileThereIsNone) {
  Study study = study_with({});
  study.profile = Profile{};
  study.profile.corridor = 7;
  EXPECT_EQ(reason_for_no_profile(study),
            "fewer than two points within 7.000 of the section line give it an elevation");
  EXPECT_THROW(profile_drawing_of(survey, study), DrawingFault);
  EXPECT_THROW(profile_drawing_of(survey, Study{}), DrawingFault);
}

}  // namespace
}  // namespace survey_report

#include "survey_report/profile_drawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace survey_report {
namespace {

struct ScaleRow {
  const char* rule;
  double length;
  Range elevations;
  double across, exaggeration, level_step, datum;
};

// The drawing has 237 mm along the axis and 96 mm in height. Levels are about
// 10 mm apart, the datum at least 8 mm below the terrain.
const ScaleRow scale_rows[] = {
    {"ten times has just room", 237, {600, 609.59}, 1, 10, 1, 599},
    {"ten times has no room any more", 237, {600, 609.7}, 1, 5, 2, 598},
    {"half as long, half the height", 118.5, {600, 604.8}, 2, 10, 0.5, 599.5},
    {"steeper than the sheet: shorter", 237, {0, 192}, 0.5, 1, 20, -20},
    {"as high as the sheet", 237, {0, 96}, 1, 1, 10, -10},
    {"level: not exaggerated", 237, {600, 600}, 1, 1, 10, 590},
    {"nearly level: a hundred times at most", 237, {600, 600.001}, 1, 100, 0.1, 599.9},
    {"below zero", 237, {-609.59, -600}, 1, 10, 1, -611},
};

TEST(ProfileDrawing, Scales) {
  for (const ScaleRow& row : scale_rows) {
    const ProfileScale scale = profile_scale(row.length, row.elevations);
    EXPECT_DOUBLE_EQ(scale.across, row.across) << row.rule;
    EXPECT_DOUBLE_EQ(scale.exaggeration, row.exaggeration) << row.rule;
    EXPECT_DOUBLE_EQ(scale.level_step, row.level_step) << row.rule;
    EXPECT_DOUBLE_EQ(scale.datum, row.datum) << row.rule;
  }
}

TEST(ProfileDrawing, NoScaleForNumbersPastEveryDouble) {
  constexpr double huge = std::numeric_limits<double>::max();
  EXPECT_THROW(profile_scale(100, {-huge, huge}), DrawingFault);
  EXPECT_THROW(profile_scale(std::numeric_limits<double>::denorm_min(), {5, 5}), DrawingFault);
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

// From cut to cut there are 200, drawn 237 mm long. 96 mm are room for 3 x 20.
TEST(ProfileDrawing, WhatIsOnIt) {
  const std::string drawing = profile_drawing_of(survey, study_with(50.0));
  for (const char* text :
       {R"(font-weight="bold">Longitudinal profile: a&amp;b.csv<)",
        ">Vertical exaggeration 20: elevations are drawn 20 times as large as distances<",
        ">Datum 599.5<", ">600.0<", ">603.0<", ">Elevation<", ">Distance<", ">Station<",
        // From 30 to 190 along the axis; at 100 the elevation is 600 + 3 * 70 / 160.
        ">30.000<", ">600.000<", ">100.000<", ">601.312<", ">190.000<", ">603.000<"}) {
    EXPECT_EQ(count_of(drawing, text), 1) << text;
  }
}

// The left cut is 6 mm inside the frame, which starts at 38; the terrain starts
// 20 units after it, and 1 unit is 1.185 mm. Its end is 3 units higher:
// 3 * 1.185 * 20 = 71.1 mm; its start is 0.5 above the datum, at 148 - 11.85.
TEST(ProfileDrawing, TheTerrainIsWhereItsNumbersSay) {
  const std::string drawing = profile_drawing_of(survey, study_with(50.0));
  EXPECT_NE(drawing.find(R"(d="M 67.7 136.15 L 257.3 65.05")"), drawing.npos) << drawing;
}

TEST(ProfileDrawing, TextsOfStationsDoNotTouch) {
  const std::string few = profile_drawing_of(survey, study_with(20.0));
  const std::string many = profile_drawing_of(survey, study_with(0.5));
  const auto ordinates = [](const std::string& drawing) {
    const std::size_t from = drawing.find(R"(<g id="ordinates")");
    return count_of(drawing.substr(from, drawing.find("</g>", from) - from), "<line");
  };
  EXPECT_EQ(ordinates(few), 10);
  EXPECT_EQ(ordinates(many), 321);
  EXPECT_EQ(count_of(few, "rotate(-90"), 2 * 10);
  EXPECT_LE(count_of(many, "rotate(-90"), 2 * 54);  // 189.6 mm have room for 53 gaps of 3.6
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

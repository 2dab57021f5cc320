#include "survey_report/profile.h"

#include <gtest/gtest.h>

#include <cmath>

#include "survey_report/choice_fault.h"

namespace survey_report {
namespace {

SurveyPoint at(double x, double y, double z) { return {"1", x, y, z, "", 1}; }

const Boundary wide{{{-900, -900}, {900, -900}, {900, 900}, {-900, 900}}, "EDGE", 4, false};

Profile profile_along(const SectionLine& line, const std::vector<SurveyPoint>& points,
                      double corridor, std::optional<double> step = {},
                      const Boundary& boundary = wide) {
  const TriangleIndex triangles(points, triangulation_of(points, boundary));
  return profile_of(triangles, boundary, section_of(boundary, line), corridor, step);
}

// As "distance:elevation", to a thousandth.
std::string text_of(double distance, double elevation) {
  const auto short_text = [](double value) {
    std::string text = std::to_string(std::round(value * 1000.0) / 1000.0);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.pop_back();
    return text;
  };
  return short_text(distance) + ':' + short_text(elevation) + ' ';
}

std::string terrain_of(const Profile& profile) {
  std::string text;
  for (const ProfilePoint& point : profile.terrain) {
    text += text_of(point.distance, point.elevation);
  }
  return text;
}

std::string stations_of(const Profile& profile) {
  std::string text;
  for (const Station& station : profile.stations) {
    text += text_of(station.distance, station.elevation);
  }
  return text;
}

struct TerrainRow {
  const char* rule;
  std::vector<SurveyPoint> points;
  const char* terrain;
};

// The axis runs from (0, 0) to (100, 0); the corridor reaches 5 to either side.
const TerrainRow terrain_rows[] = {
    {"points on the axis have their own elevations, in order of distance",
     {at(80, 0, 24), at(20, 0, 21), at(50, 0.01, 9)},
     "20:21 50:9 80:24 "},
    {"a point measured twice is one",
     {at(80, 0, 24), at(20, 0, 21), at(80, 0, 24)},
     "20:21 80:24 "},
    {"of one distance, a step",
     {at(20, 0, 21), at(80, 0, 24), at(20, 0, 23)},
     "20:23 20:21 80:24 "},
    {"points beyond the ends do not count",
     {at(-1, 0, 5), at(20, 0, 21), at(80, 0, 24), at(101, 0, 9)},
     "20:21 80:24 "},
    {"an end is as wide as the axis", {at(-0.01, 0, 5), at(100.01, 0, 9)}, "0:5 100:9 "},
    {"points beside it outside the corridor do not count",
     {at(20, 0, 21), at(50, 6, 9), at(50, -6, 9), at(80, 0, 24)},
     "20:21 80:24 "},
    {"a point without a triangle at its foot does not count",
     {at(20, 0.01, 21), at(50, 4, 9), at(80, 0.01, 24)},
     "20:21 80:24 "},
    {"a foot between two points on the axis is on the line between them",
     {at(20, 0, 21), at(50, 4, 9), at(80, 0, 24)},
     "20:21 50:22.5 80:24 "},
    {"one point is no profile", {at(20, 0, 21)}, ""},
    {"no point", {at(20, 50, 21)}, ""},
    {"two points beside the same place are none", {at(20, 0, 21), at(20, 0, 25)}, ""},
};

TEST(Profile, Terrain) {
  for (const TerrainRow& row : terrain_rows) {
    const Profile profile = profile_along({{0, 0}, {100, 0}}, row.points, 5);
    EXPECT_EQ(terrain_of(profile), row.terrain) << row.rule;
    EXPECT_EQ(profile.stations.empty(), profile.terrain.empty()) << row.rule;
    EXPECT_EQ(profile.corridor, 5) << row.rule;
  }
}

// At the foot (50, 0) of the first point its weight in the triangle is 10/12,
// that of each other 1/12: (10 * 7 + 3 + 5) / 12 = 6.5. At (150, 0) alike:
// (10 * 10.6 + 3 + 5) / 12 = 9.5. Half way between them, 8.
const std::vector<SurveyPoint> two_triangles = {at(50, 2, 7),     at(40, -10, 3),  at(60, -10, 5),
                                                at(150, 2, 10.6), at(140, -10, 3), at(160, -10, 5)};

TEST(Profile, BesideTheAxisTheTriangleAroundTheFootCounts) {
  const Profile profile = profile_along({{0, 0}, {200, 0}}, two_triangles, 5, 100.0);
  EXPECT_EQ(terrain_of(profile), "50:6.5 150:9.5 ");
  EXPECT_EQ(stations_of(profile), "50:6.5 100:8 150:9.5 ");
  EXPECT_DOUBLE_EQ(profile.lowest, 6.5);
  EXPECT_DOUBLE_EQ(profile.highest, 9.5);
  EXPECT_DOUBLE_EQ(profile.widest_gap, 100);
}

TEST(Profile, AFootOutsideTheBoundaryDoesNotCount) {
  const Boundary west{{{-900, -900}, {100, -900}, {100, 900}, {-900, 900}}, "EDGE", 4, false};
  EXPECT_TRUE(profile_along({{0, 0}, {200, 0}}, two_triangles, 5, {}, west).terrain.empty());
}

TEST(Profile, StationsAreInterpolatedAndNeverBeyondTheTerrain) {
  const std::vector<SurveyPoint> points = {at(20, 0, 21), at(60, 0, 25), at(80, 0, 24)};
  const Profile profile = profile_along({{0, 0}, {100, 0}}, points, 5, 25.0);
  EXPECT_EQ(stations_of(profile), "20:21 25:21.5 50:24 75:24.25 80:24 ");
  EXPECT_EQ(profile.step, 25.0);
  EXPECT_EQ(profile.lowest, 21.0);
  EXPECT_EQ(profile.highest, 25.0);
  EXPECT_EQ(profile.widest_gap, 40.0);
  EXPECT_EQ(profile.stations[1].place, (Place{25, 0}));
}

TEST(Profile, AStepLargerThanTheTerrainLeavesItsEnds) {
  const Profile profile =
      profile_along({{0, 0}, {100, 0}}, {at(20, 0, 21), at(80, 0, 24)}, 5, 1e300);
  EXPECT_EQ(stations_of(profile), "20:21 80:24 ");
}

TEST(Profile, AnEndOnAMultipleIsOneStation) {
  const Profile profile =
      profile_along({{0, 0}, {100, 0}}, {at(20, 0, 21), at(60, 0, 23)}, 5, 20.0);
  EXPECT_EQ(stations_of(profile), "20:21 40:22 60:23 ");
}

// 3-4-5: 50 along the axis are 30 to the east and 40 to the north.
TEST(Profile, StationsOnASlantingAxis) {
  const std::vector<SurveyPoint> points = {at(100, 200, 5), at(160, 280, 7)};
  const Profile profile = profile_along({{100, 200}, {160, 280}}, points, 5, 50.0);
  EXPECT_EQ(stations_of(profile), "0:5 50:6 100:7 ");
  EXPECT_NEAR(profile.stations[1].place.x, 130, 1e-9);
  EXPECT_NEAR(profile.stations[1].place.y, 240, 1e-9);
}

TEST(Profile, AnAxisBetweenTwoSurveyPointsReachesBoth) {
  const std::vector<SurveyPoint> points = {at(435000.137, 4473000.713, 600),
                                           at(435123.451, 4473077.719, 610)};
  const SectionLine line{{points[0].x, points[0].y}, {points[1].x, points[1].y}};
  const Profile profile = profile_along(line, points, 0.001);
  ASSERT_EQ(profile.terrain.size(), 2);
  EXPECT_EQ(profile.terrain[0].elevation, 600);
  EXPECT_EQ(profile.terrain[1].elevation, 610);
  EXPECT_NEAR(profile.terrain[1].distance, std::hypot(123.314, 77.006), 1e-6);
}

TEST(Profile, OfTooManyPointsTheNearestCount) {
  std::vector<SurveyPoint> points;
  for (int i = 0; i <= 600; ++i) points.push_back(at(i, 0.0001 * i, i));
  const Profile profile = profile_along({{0, 0}, {600, 0}}, points, 5);
  ASSERT_EQ(profile.terrain.size(), most_terrain_points);
  EXPECT_EQ(profile.terrain.back().elevation, 499);
}

TEST(Profile, TooManyStationsAreRefused) {
  const std::vector<SurveyPoint> points = {at(0, 0, 1), at(100, 0, 2)};
  for (const double step : {0.25, 1e-300}) {
    EXPECT_THROW(profile_along({{0, 0}, {100, 0}}, points, 5, step), ChoiceFault) << step;
  }
  EXPECT_EQ(profile_along({{0, 0}, {100, 0}}, points, 5, 0.26).stations.size(), 386);
}

// From 1e308 to -1e308 the difference is no double.
TEST(Profile, ANumberThatTheLibraryRefusesIsTheFaultOfTheProfileAlone) {
  const std::vector<SurveyPoint> points = {at(0, 0, 1e308), at(100, 0, -1e308)};
  const Profile profile = profile_along({{0, 0}, {100, 0}}, points, 5);
  EXPECT_EQ(profile.fault, "Desbordamiento (failure 6 of Orv2_Geo.cgeo_Terreno)");
  EXPECT_TRUE(profile.terrain.empty());
  EXPECT_TRUE(profile.stations.empty());
}

TEST(Profile, DefaultsAreRound) {
  EXPECT_DOUBLE_EQ(default_station_step(220), 20);
  EXPECT_DOUBLE_EQ(default_station_step(160), 20);
  EXPECT_DOUBLE_EQ(default_station_step(159), 10);
  EXPECT_DOUBLE_EQ(default_station_step(0.5), 0.05);
  EXPECT_DOUBLE_EQ(default_corridor({{0, 211}, {0, 160}}), 10);
}

}  // namespace
}  // namespace survey_report

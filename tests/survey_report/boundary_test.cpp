#include "survey_report/boundary.h"

#include <gtest/gtest.h>

namespace survey_report {
namespace {

// ---- Convex hull

struct HullRow {
  const char* rule;
  std::vector<Place> places;
  std::vector<Place> hull;
};

const HullRow hull_rows[] = {
    {"nothing", {}, {}},
    {"one place", {{1, 1}}, {}},
    {"two places", {{1, 1}, {2, 2}}, {}},
    {"places on one line", {{0, 0}, {2, 2}, {1, 1}, {3, 3}}, {}},
    {"one place many times", {{1, 1}, {1, 1}, {1, 1}, {1, 1}}, {}},
    {"a triangle turns left", {{0, 0}, {1, 2}, {2, 0}}, {{0, 0}, {2, 0}, {1, 2}}},
    {"a place inside is no corner",
     {{0, 0}, {4, 0}, {4, 4}, {0, 4}, {2, 1}},
     {{0, 0}, {4, 0}, {4, 4}, {0, 4}}},
    {"a place on a side is no corner",
     {{0, 0}, {2, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 2}},
     {{0, 0}, {4, 0}, {4, 4}, {0, 4}}},
    {"a corner given twice is one", {{0, 0}, {0, 0}, {2, 0}, {1, 2}}, {{0, 0}, {2, 0}, {1, 2}}},
};

TEST(Boundary, ConvexHull) {
  for (const HullRow& row : hull_rows) EXPECT_EQ(convex_hull(row.places), row.hull) << row.rule;
}

// ---- Choice

SurveyPoint at(double x, double y, const char* code) { return {"1", x, y, 0, code, 1}; }

struct ChoiceRow {
  const char* rule;
  std::vector<SurveyPoint> points;
  bool is_hull;
  std::size_t coded_points;
  std::vector<Place> vertices;
};

const ChoiceRow choice_rows[] = {
    {"the points with the code, in the order of the file",
     {at(0, 0, "EDGE"), at(9, 9, "TREE"), at(0, 4, "EDGE"), at(4, 0, "EDGE")},
     false,
     3,
     {{0, 0}, {0, 4}, {4, 0}}},
    {"a code that begins so",
     {at(0, 0, "EDGE 1"), at(0, 4, "EDGE/WALL"), at(4, 0, "EDGES"), at(4, 4, "THE EDGE")},
     false,
     3,
     {{0, 0}, {0, 4}, {4, 0}}},
    {"the first vertex again at the end is none",
     {at(0, 0, "EDGE"), at(0, 4, "EDGE"), at(4, 0, "EDGE"), at(0, 0, "EDGE")},
     false,
     4,
     {{0, 0}, {0, 4}, {4, 0}}},
    {"a vertex measured again, a hair beside, is none",
     {at(0, 0, "EDGE"), at(0, 400, "EDGE"), at(400, 0, "EDGE"), at(0.03, 399.96, "EDGE")},
     false,
     4,
     {{0, 0}, {0, 400}, {400, 0}}},
    {"a vertex farther off is one",
     {at(0, 0, "EDGE"), at(0, 400, "EDGE"), at(400, 0, "EDGE"), at(0, 399.9, "EDGE")},
     false,
     4,
     {{0, 0}, {0, 400}, {400, 0}, {0, 399.9}}},
    {"with two points, the hull of all",
     {at(0, 0, "EDGE"), at(0, 4, "EDGE"), at(4, 0, "TREE")},
     true,
     2,
     {{0, 0}, {4, 0}, {0, 4}}},
    {"with three in two places, the hull of all",
     {at(0, 0, "EDGE"), at(0, 4, "EDGE"), at(0, 4, "EDGE"), at(4, 0, "TREE")},
     true,
     3,
     {{0, 0}, {4, 0}, {0, 4}}},
    {"a lower-case code is another", {at(0, 0, "edge")}, true, 0, {}},
};

TEST(Boundary, Choice) {
  for (const ChoiceRow& row : choice_rows) {
    const Boundary boundary = boundary_of(row.points, "EDGE");
    EXPECT_EQ(boundary.is_hull, row.is_hull) << row.rule;
    EXPECT_EQ(boundary.coded_points, row.coded_points) << row.rule;
    EXPECT_EQ(boundary.vertices, row.vertices) << row.rule;
  }
}

const Boundary notched{{{0, 0}, {10, 0}, {10, 10}, {5, 2}, {0, 10}}, "EDGE", 5, false};

TEST(Boundary, PerimeterClosesTheRing) {
  const Boundary triangle{{{0, 0}, {3, 0}, {3, 4}}, "EDGE", 3, false};
  EXPECT_DOUBLE_EQ(perimeter_of(triangle), 12.0);
}

TEST(Boundary, WhatIsInside) {
  EXPECT_TRUE(contains(notched, {5, 1}));
  EXPECT_TRUE(contains(notched, {1, 6}));
  EXPECT_FALSE(contains(notched, {5, 6}));
  EXPECT_FALSE(contains(notched, {11, 1}));
  EXPECT_FALSE(contains(notched, {-1, 1}));
}

// ---- Section

struct DefaultRow {
  const char* rule;
  Box box;
  SectionLine line;
};

const DefaultRow default_rows[] = {
    {"wider than high", {{100, 300}, {50, 150}}, {{90, 100}, {310, 100}}},
    {"higher than wide", {{0, 10}, {0, 100}}, {{-5, 50}, {15, 50}}},
    {"no width", {{7, 7}, {0, 100}}, {{2, 50}, {12, 50}}},
};

TEST(Section, DefaultRunsFromWestToEastThroughTheCentre) {
  for (const DefaultRow& row : default_rows) {
    const SectionLine line = default_section(row.box);
    EXPECT_EQ(line.from, row.line.from) << row.rule;
    EXPECT_EQ(line.to, row.line.to) << row.rule;
  }
}

TEST(Section, CutsComeInOrderFromItsStart) {
  const Section section = section_of(notched, {{12, 6}, {-2, 6}});
  EXPECT_DOUBLE_EQ(section.bearing, 300.0);
  EXPECT_DOUBLE_EQ(section.length, 14.0);
  const double expected[] = {10.0, 7.5, 2.5, 0.0};
  ASSERT_EQ(section.cuts.size(), 4);
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_NEAR(section.cuts[i].place.x, expected[i], 1e-9);
    EXPECT_NEAR(section.cuts[i].place.y, 6.0, 1e-9);
    EXPECT_NEAR(section.cuts[i].distance, 12.0 - expected[i], 1e-9);
  }
}

TEST(Section, TheLastSideIsCutToo) {
  const Section section = section_of(notched, {{-1, 5}, {1, 5}});
  ASSERT_EQ(section.cuts.size(), 1);
  EXPECT_NEAR(section.cuts[0].distance, 1.0, 1e-9);
}

TEST(Section, BesideTheBoundaryThereAreNoCuts) {
  EXPECT_TRUE(section_of(notched, {{20, 0}, {20, 10}}).cuts.empty());
}

TEST(Section, ManyDigitsBeforeThePointCostNone) {
  Boundary far = notched;
  for (Place& vertex : far.vertices) vertex = {vertex.x + 435000.0, vertex.y + 4473000.0};
  const Section section = section_of(far, {{434999, 4473006}, {435012, 4473006}});
  ASSERT_EQ(section.cuts.size(), 4);
  EXPECT_NEAR(section.cuts[1].distance, 3.5, 1e-9);
}

}  // namespace
}  // namespace survey_report

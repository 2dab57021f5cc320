#include "survey_report/traverse.h"

#include <gtest/gtest.h>

#include <numbers>

namespace survey_report {
namespace {

SurveyPoint at(double x, double y, double z = 0.0) { return {"1", x, y, z, "", 1}; }

struct LegRow {
  const char* rule;
  double dx;
  double dy;
  double azimuth;
  double distance;
};

const LegRow leg_rows[] = {
    {"north is 0", 0, 10, 0, 10},
    {"north-east is 50", 10, 10, 50, 10 * std::numbers::sqrt2},
    {"east is 100", 10, 0, 100, 10},
    {"south-east is 150", 10, -10, 150, 10 * std::numbers::sqrt2},
    {"south is 200", 0, -10, 200, 10},
    {"south-west is 250", -10, -10, 250, 10 * std::numbers::sqrt2},
    {"west is 300", -10, 0, 300, 10},
    {"north-west is 350", -10, 10, 350, 10 * std::numbers::sqrt2},
    {"three, four, five", 3, 4, 40.966552, 5},
    {"a millimetre has a direction", 0.001, 0, 100, 0.001},
};

TEST(Traverse, AzimuthAndDistanceOfALeg) {
  for (const LegRow& row : leg_rows) {
    const Traverse traverse = traverse_through({at(0, 0), at(row.dx, row.dy)});
    ASSERT_EQ(traverse.legs.size(), 1) << row.rule;
    ASSERT_TRUE(traverse.legs[0].azimuth.has_value()) << row.rule;
    EXPECT_NEAR(*traverse.legs[0].azimuth, row.azimuth, 1e-6) << row.rule;
    EXPECT_DOUBLE_EQ(traverse.legs[0].distance, row.distance) << row.rule;
  }
}

TEST(Traverse, TheSameSpotHasNoAzimuth) {
  const Traverse traverse = traverse_through({at(5, 5, 600), at(5, 5, 601)});
  EXPECT_FALSE(traverse.legs[0].azimuth.has_value());
  EXPECT_EQ(traverse.legs[0].distance, 0.0);
}

TEST(Traverse, HeightDoesNotLengthenALeg) {
  EXPECT_EQ(traverse_through({at(0, 0, 0), at(3, 4, 100)}).length, 5.0);
}

TEST(Traverse, TheLengthIsTheSumOfTheLegs) {
  const Traverse traverse = traverse_through({at(0, 0), at(3, 4), at(3, 4), at(3, 10)});
  EXPECT_EQ(traverse.legs.size(), 3);
  EXPECT_EQ(traverse.length, 11.0);
}

TEST(Traverse, OnePointHasNoLegs) {
  const Traverse traverse = traverse_through({at(1, 2)});
  EXPECT_TRUE(traverse.legs.empty());
  EXPECT_EQ(traverse.length, 0.0);
}

struct FaultRow {
  const char* rule;
  std::vector<SurveyPoint> points;
  const char* message;
  std::size_t line;
};

const FaultRow fault_rows[] = {
    {"a failure of the library, with its number, words and source",
     {{"A1", 0, 0, 0, "", 3}, {"B2", 1e10, 1e-300, 0, "", 4}},
     "azimuth from point A1 to point B2: Desbordamiento "
     "(failure 6 of Orv2_Geo.cgeo_Algorismos)",
     4},
    {"a distance past every double",
     {{"A1", -1e308, 0, 0, "", 3}, {"B2", 1e308, 0, 0, "", 9}},
     "from point A1 to point B2: too far apart",
     9},
    {"a length past every double",
     {{"1", 0, 0, 0, "", 1}, {"2", 1e308, 0, 0, "", 2}, {"3", 0, 0, 0, "", 5}},
     "from point 2 to point 3: the traverse becomes too long",
     5},
};

TEST(Traverse, ALegThatCannotBeComputedNamesItsPoints) {
  for (const FaultRow& row : fault_rows) {
    try {
      traverse_through(row.points);
      ADD_FAILURE() << row.rule;
    } catch (const LegFault& fault) {
      EXPECT_STREQ(fault.what(), row.message) << row.rule;
      EXPECT_EQ(fault.line(), row.line) << row.rule;
    }
  }
}

}  // namespace
}  // namespace survey_report

#include "survey_report/scale.h"

#include <gtest/gtest.h>

namespace survey_report {
namespace {

struct RoundRow {
  double at_least;
  double round;
};

const RoundRow round_rows[] = {
    {100, 100},     {100.1, 200},   {201, 250},       {250, 250},         {251, 500},
    {999, 1000},    {1001, 2000},   {2001, 2500},     {2501, 5000},       {5001, 10000},
    {20001, 25000}, {60, 100},      {50, 50},         {21, 25},           {11, 20},
    {3, 5},         {2.1, 5},       {1.5, 2},         {0.7, 1},           {0.3, 0.5},
    {0.021, 0.05},  {1.1e14, 2e14}, {1.5e151, 2e151}, {500 + 1e-10, 500},  // what rounding adds
                                                                           // to a length that
                                                                           // just fits
};

TEST(Scale, TheNextRoundOneIsNeverFiner) {
  for (const RoundRow& row : round_rows) {
    EXPECT_DOUBLE_EQ(round_scale(row.at_least), row.round) << row.at_least;
  }
}

TEST(Scale, Round) {
  for (const double scale : {1.0, 25.0, 100.0, 250.0, 2500.0, 0.5, 0.02}) {
    EXPECT_TRUE(is_round_scale(scale)) << scale;
  }
  for (const double scale : {2.5, 15.0, 125.0, 400.0, 750.0, 0.25}) {
    EXPECT_FALSE(is_round_scale(scale)) << scale;
  }
}

TEST(Scale, AsSheetsStateIt) {
  EXPECT_EQ(scale_text(500), "1:500");
  EXPECT_EQ(scale_text(2500000), "1:2500000");
  EXPECT_EQ(scale_text(1), "1:1");
  EXPECT_EQ(scale_text(round_scale(0.04)), "20:1");
  EXPECT_EQ(scale_text(332.5), "1:332.5");
  EXPECT_EQ(scale_text(1e151), "1:1e151");
}

}  // namespace
}  // namespace survey_report

#include "survey_report/rounding.h"

#include <gtest/gtest.h>

#include "survey_report/plan.h"

namespace survey_report {
namespace {

struct RoundRow {
  double value;
  double down;
  double near;
};

const RoundRow round_rows[] = {
    {1, 1, 1},
    {1.4, 1, 1},
    {1.5, 1, 2},
    {2, 2, 2},
    {3.1, 2, 2},
    {3.2, 2, 5},
    {4.99, 2, 5},
    {5, 5, 5},
    {7, 5, 5},
    {7.2, 5, 10},
    {9.99, 5, 10},
    {10, 10, 10},
    {99, 50, 100},
    {1000, 1000, 1000},
    {0.001, 0.001, 0.001},
    {0.3, 0.2, 0.2},
    {0.00072, 0.0005, 0.001},
    {123456, 100000, 100000},
};

TEST(Rounding, OneTwoFive) {
  for (const RoundRow& row : round_rows) {
    EXPECT_DOUBLE_EQ(round_down(row.value), row.down) << row.value;
    EXPECT_DOUBLE_EQ(round_near(row.value), row.near) << row.value;
  }
}

TEST(Rounding, Decimals) {
  EXPECT_EQ(decimals_for(20), 0);
  EXPECT_EQ(decimals_for(2.5), 1);
  EXPECT_EQ(decimals_for(0.1), 1);
  EXPECT_EQ(decimals_for(0.005), 3);
  EXPECT_EQ(decimals_for(1e-12), 9);
}

TEST(Rounding, AScaleBarIsRoundAndFitsItsRoom) {
  EXPECT_DOUBLE_EQ(scale_bar_length(1.0), 50);
  EXPECT_DOUBLE_EQ(scale_bar_length(1.01), 20);
  EXPECT_DOUBLE_EQ(scale_bar_length(0.05), 1000);
  EXPECT_DOUBLE_EQ(scale_bar_length(100.0), 0.5);
}

TEST(Rounding, MultiplesInARange) {
  EXPECT_EQ(multiples({-3, 12}, 5), (std::vector<double>{0, 5, 10}));
  EXPECT_TRUE(multiples({1, 4}, 5).empty());
}

}  // namespace
}  // namespace survey_report

#include "survey_report/thinning.h"

#include <gtest/gtest.h>

namespace survey_report {
namespace {

using Indices = std::vector<std::size_t>;

struct ThinningRow {
  const char* rule;
  std::vector<Place> places;
  Indices order;
  std::size_t most;
  Indices drawn;
};

// Symbols are 2 wide.
const ThinningRow thinning_rows[] = {
    {"no more than that are all drawn", {{1, 1}, {1, 1}, {9, 9}}, {2, 1, 0}, 3, {0, 1, 2}},
    {"of those that share a square the first in order is",
     {{1, 1}, {1.5, 1}, {9, 9}},
     {1, 2, 0},
     2,
     {1, 2}},
    {"squares grow until no more than that are left",
     {{1, 1}, {3, 1}, {5, 1}, {7, 1}, {9, 9}},
     {0, 1, 2, 3, 4},
     2,
     {0, 4}},
    {"what is off the area counts in its nearest square",
     {{-50, -50}, {1, 1}, {500, 500}},
     {0, 1, 2},
     2,
     {0, 2}},
};

TEST(Thinning, WhichAreDrawn) {
  for (const ThinningRow& row : thinning_rows) {
    EXPECT_EQ(thinned(row.places, row.order, {0, 0, 10, 10}, 2.0, row.most), row.drawn) << row.rule;
  }
}

}  // namespace
}  // namespace survey_report

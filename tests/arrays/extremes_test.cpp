#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "orv2_geo/arrays/cgeo_Matrices.h"
#include "tests/platform/recording_interface.h"
#include "tests/support/arrays.h"
#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

const cgeo_Matrices matrices;

// Six results that show whether they have been written.
struct Box {
  double max_x = -101, min_x = -102, max_y = -103, min_y = -104, max_z = -105, min_z = -106;
  std::vector<double> all() const { return {max_x, min_x, max_y, min_y, max_z, min_z}; }
};

struct OneRow {
  const char* rule;
  DoubleArray x;
  double max, min;
};

TEST(Extremes, OfOneArray) {
  const OneRow table[] = {
      {"one element", doubles(1, {7}), 7, 7},
      {"element 0 takes no part", doubles(0, {99, 3, 5, 4}), 5, 3},
      {"the last element counts", doubles(1, {3, 4, -9}), 4, -9},
      {"infinities are numbers", doubles(1, {3, inf, -inf}), inf, -inf},
      {"of two zeros the first stands", doubles(1, {-0.0, 0.0}), -0.0, -0.0},
      {"of two zeros after others the first stands", doubles(1, {-1, 0.0, -0.0, -2}), 0.0, -2},
      {"NaN at index 0 is not looked at", doubles(0, {nan, 1, 2}), 2, 1},
  };
  for (const OneRow& row : table) {
    double max = -50, min = 50;
    matrices.MaxMin_1Matriz(row.x, max, min);
    EXPECT_EQ(bits(max), bits(row.max)) << row.rule;
    EXPECT_EQ(bits(min), bits(row.min)) << row.rule;
  }
}

TEST(Extremes, FailuresLeaveWhatWasWritten) {
  double max = -1, min = -2;
  EXPECT_EQ(failure_of([&] { matrices.MaxMin_1Matriz(DoubleArray(), max, min); }), 9);
  EXPECT_EQ(failure_of([&] { matrices.MaxMin_1Matriz(doubles(2, {5, 6}), max, min); }), 9);
  EXPECT_EQ(max, -1);
  EXPECT_EQ(min, -2);
  EXPECT_EQ(failure_of([&] { matrices.MaxMin_1Matriz(doubles(1, {5, 9, nan, 11}), max, min); }), 6);
  EXPECT_EQ(max, 9);
  EXPECT_EQ(min, 5);
  EXPECT_EQ(failure_of([&] { matrices.MaxMin_1Matriz(doubles(1, {nan}), max, min); }), 6);

  Box box;
  EXPECT_EQ(failure_of([&] {
              matrices.MaxMin_2Matriz(doubles(1, {4}), doubles(0, {4}), box.max_x, box.min_x,
                                      box.max_y, box.min_y);
            }),
            9);
  EXPECT_EQ(box.all(), (std::vector<double>{4, 4, -103, -104, -105, -106}));
  EXPECT_EQ(failure_of([&] {
              matrices.MaxMin_2Matriz(doubles(1, {4, 9, 11}), doubles(1, {3, 2}), box.max_x,
                                      box.min_x, box.max_y, box.min_y);
            }),
            9);
  EXPECT_EQ(box.all(), (std::vector<double>{11, 4, 3, 2, -105, -106}));  // X(3) was looked at
  EXPECT_EQ(failure_of([&] {
              matrices.MaxMin_2Matriz(doubles(1, {nan}), doubles(1, {3}), box.max_x, box.min_x,
                                      box.max_y, box.min_y);
            }),
            0);  // one element is compared with nothing
}

// Also where all that comes before the first element is missing in both.
TEST(Extremes, AMissingElementOfTheSecondPairIs9HoweverManyThereAre) {
  for (const std::int32_t lower : {2, 1024, 1025, 1026, 5000}) {
    const DoubleArray x1 = doubles(lower, {90, 91}), y1 = doubles(lower, {92, 93});
    double max_x = 0, min_x = 0, max_y = 0, min_y = 0;
    EXPECT_EQ(failure_of([&] {
                matrices.MaxMin_4_matrices_XY_XY(doubles(1, {1, 5}), doubles(1, {8, 2}), x1, y1,
                                                 max_x, min_x, max_y, min_y);
              }),
              9)
        << lower;
    EXPECT_EQ(max_x, 5.0) << lower;
    EXPECT_EQ(max_y, 8.0) << lower;
  }
}

TEST(Extremes, OfTwoPairsOfArrays) {
  Box box;
  const auto four = [&](const DoubleArray& x1, const DoubleArray& y1) {
    matrices.MaxMin_4_matrices_XY_XY(doubles(1, {1, 5}), doubles(1, {8, 2}), x1, y1, box.max_x,
                                     box.min_x, box.max_y, box.min_y);
  };
  four(doubles(1, {-3, 4, 9}), doubles(1, {11, 3, 3}));
  EXPECT_EQ(box.all(), (std::vector<double>{9, -3, 11, 2, -105, -106}));
  four(doubles(1, {-7}), doubles(1, {100}));  // the second pair counts from 1
  EXPECT_EQ(box.all(), (std::vector<double>{5, -7, 100, 2, -105, -106}));
  box = Box();
  EXPECT_EQ(failure_of([&] { four(DoubleArray(), doubles(1, {1})); }), 9);
  EXPECT_EQ(box.all(), (std::vector<double>{5, 1, 8, 2, -105, -106}));
  EXPECT_EQ(failure_of([&] { four(doubles(1, {77}), DoubleArray()); }), 9);
  EXPECT_EQ(box.max_x, 77);
}

// What the dialog shows, row by row, and how the person leaves it.
struct Shown {
  std::string title;
  std::vector<std::string> cells;
};

class ThreeArrays : public ::testing::Test {
 protected:
  ThreeArrays() {
    screen.user = [this](Form& form) {
      const Grid& grid = form.control("msf_MaxMin").grid();
      Shown seen{form.caption().to_utf8(), {}};
      for (std::int32_t row = 1; row < grid.rows; ++row) {
        for (std::int32_t col = 1; col < grid.cols; ++col) {
          seen.cells.push_back(grid.cell(row, col).to_utf8());
        }
      }
      shown.push_back(seen);
      form.click("cmdDatosaceptar");
    };
  }
  void current(const DoubleArray& x_array, const DoubleArray& y_array, const DoubleArray& z_array,
               Bool ver = false) {
    matrices.MaxMin_3Matriz(x_array, y_array, z_array, box.max_x, box.min_x, box.max_y, box.min_y,
                            box.max_z, box.min_z, ver);
  }
  void outdated(const DoubleArray& x_array, const DoubleArray& y_array, const DoubleArray& z_array,
                Bool ver = false) {
    matrices.MaxMin_3Matriz1(x_array, y_array, z_array, box.max_x, box.min_x, box.max_y, box.min_y,
                             box.max_z, box.min_z, ver);
  }

  RecordingInterface screen;
  std::vector<Shown> shown;
  Box box;
  const DoubleArray x = doubles(1, {7, 9, 9, 1}), y = doubles(1, {0, 0, -2.5, 0}),
                    z = doubles(1, {5, 5, 5, 5});
};

using Cells = std::vector<std::string>;

TEST_F(ThreeArrays, TheCurrentFormShowsWhereTheExtremesAre) {
  current(x, y, z, true);
  EXPECT_EQ(box.all(), (std::vector<double>{9, 1, 0, -2.5, 5, 5}));
  ASSERT_EQ(shown.size(), 1U);
  EXPECT_EQ(shown[0].title, "Maximos y Minimos:");
  EXPECT_EQ(shown[0].cells, (Cells{"1.000", "4", "9.000", "2", "8.000", "-2.500", "3", "0.000", "1",
                                   "2.500", "5.000", "1", "5.000", "1", "0.000"}));
  EXPECT_TRUE(screen.boxes.empty());
}

TEST_F(ThreeArrays, TheOutdatedFormSaysSoAndShowsNoPoints) {
  outdated(x, y, z, true);
  EXPECT_EQ(box.all(), (std::vector<double>{9, 1, 0, -2.5, 5, 5}));
  ASSERT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(screen.boxes[0], (RecordingInterface::Box{"obsoleto", 0, std::nullopt}));
  ASSERT_EQ(shown.size(), 1U);
  EXPECT_EQ(shown[0].cells, (Cells{"1.000", "9.000", "8.000", "-2.500", "0.000", "2.500", "5.000",
                                   "5.000", "0.000"}));
  EXPECT_EQ(failure_of([&] { outdated(DoubleArray(), y, z); }), 9);
  EXPECT_EQ(screen.boxes.size(), 2U);
}

TEST_F(ThreeArrays, OnlyAnExactTrueOpensTheDialog) {
  for (const std::int16_t flag : std::initializer_list<std::int16_t>{0, 1, 2, -2, 32767}) {
    current(x, y, z, Bool::raw(flag));
    outdated(x, y, z, Bool::raw(flag));
  }
  EXPECT_TRUE(shown.empty());
  current(x, y, z, Bool::raw(-1));
  EXPECT_EQ(shown.size(), 1U);
}

TEST_F(ThreeArrays, OnePointOpensNoDialog) {
  current(doubles(1, {3}), doubles(1, {4}), doubles(1, {5}), true);
  EXPECT_EQ(box.all(), (std::vector<double>{3, 3, 4, 4, 5, 5}));
  outdated(doubles(1, {6}), doubles(1, {4}), doubles(1, {5}), true);
  EXPECT_EQ(box.max_x, 6);
  ASSERT_EQ(screen.boxes.size(), 1U);
  EXPECT_EQ(screen.boxes[0].text, "obsoleto");
  EXPECT_TRUE(shown.empty());
}

TEST_F(ThreeArrays, TheCurrentFormNeverFails) {
  current(DoubleArray(), DoubleArray(), DoubleArray(), true);
  EXPECT_EQ(box.all(), Box().all());
  EXPECT_TRUE(shown.empty());
  EXPECT_EQ(failure_of([&] { outdated(doubles(1, {1, 2}), DoubleArray(), z); }), 9);
}

TEST_F(ThreeArrays, ElementsThatAreMissingLeaveResultsAndTakeTheIndex) {
  // X lacks 1 to 4: its seeds fail and the caller's values are where it starts.
  box.max_x = 12.5;
  box.min_x = 11;
  current(doubles(5, {12, 10, 13, 9, 10, 10}), doubles(1, {1, 2, 3}),
          doubles(1, std::vector<double>(10, 4)), true);
  EXPECT_EQ(box.all(), (std::vector<double>{13, 9, 3, 1, 4, 4}));
  ASSERT_EQ(shown.size(), 1U);
  EXPECT_EQ(shown[0].cells[1], "8");   // the lowest X is at 8
  EXPECT_EQ(shown[0].cells[3], "7");   // the highest at 7
  EXPECT_EQ(shown[0].cells[6], "10");  // Y ends at 3: both indices run on to the last
  EXPECT_EQ(shown[0].cells[8], "10");
  EXPECT_EQ(shown[0].cells[11], "1");
  shown.clear();
  current(doubles(5, {12}), y, z, true);  // nothing of X improves what the caller had
  EXPECT_EQ(box.max_x, 13);
  EXPECT_EQ(shown[0].cells[1], "4");
}

TEST_F(ThreeArrays, NaNIsTakenWhereTheComparisonIsSkipped) {
  current(doubles(1, {3, nan, 5, 4}), doubles(1, {nan, 1, 2, 3}), z, true);
  // With NaN as result the next comparison fails too, and the next element is taken.
  EXPECT_EQ(bits(box.max_x), bits(5.0));
  EXPECT_EQ(bits(box.min_x), bits(4.0));
  EXPECT_EQ(bits(box.max_y), bits(3.0));
  EXPECT_EQ(bits(box.min_y), bits(1.0));
}

TEST_F(ThreeArrays, ADifferenceThatOverflowsIsSkippedAndTheDialogShown) {
  current(doubles(1, {1e308, -1e308}), doubles(1, {1, 2}), doubles(1, {1, 2}), true);
  EXPECT_EQ(shown.size(), 1U);
  EXPECT_EQ(failure_of([&] {
              outdated(doubles(1, {1e308, -1e308}), doubles(1, {1, 2}), doubles(1, {1, 2}), true);
            }),
            6);
  EXPECT_EQ(shown.size(), 1U);
}

// Element by element, with variables read where they are used.
struct Plain {
  const DoubleArray& array;
  double& max;
  double& min;
  std::int32_t max_at = 1, min_at = 1;
  bool there(std::int32_t i) const { return array.row(i, i) != nullptr; }
};

int plain_scan(std::vector<Plain> all, std::int32_t limit) {
  for (std::int32_t i = 2; i <= limit; ++i) {
    for (Plain& c : all) {
      if (!c.there(i)) return 9;
      if (std::isunordered(c.max, c.array(i))) return 6;
      if (c.max < c.array(i)) c.max = c.array(i);
      if (std::isunordered(c.min, c.array(i))) return 6;
      if (c.min > c.array(i)) c.min = c.array(i);
    }
  }
  return 0;
}

// Where the dialog says that the lowest and the highest of X, Y and Z are.
std::vector<std::string> marks_shown(const DoubleArray& x, const DoubleArray& y,
                                     const DoubleArray& z, Box& box) {
  RecordingInterface screen;
  std::vector<std::string> shown;
  screen.user = [&](Form& form) {
    for (std::int32_t row = 1; row <= 3; ++row) {
      shown.push_back(form.control("msf_MaxMin").grid().cell(row, 2).to_utf8());
      shown.push_back(form.control("msf_MaxMin").grid().cell(row, 4).to_utf8());
    }
    form.close();
  };
  matrices.MaxMin_3Matriz(x, y, z, box.max_x, box.min_x, box.max_y, box.min_y, box.max_z, box.min_z,
                          true);
  return shown;
}

TEST(Extremes, RandomArraysElementByElement) {
  Numbers numbers(95);
  for (int run = 0; run < 600; ++run) {
    const std::size_t n = 1 + numbers.below(run % 10 == 0 ? 5000 : 40);
    std::vector<DoubleArray> arrays;
    for (int k = 0; k < 3; ++k) {
      const std::size_t count = numbers.below(12) == 0 ? 1 + numbers.below(n) : n;
      std::vector<double> values(count);
      for (double& value : values) {
        value = run % 2 == 0 ? numbers.small_half() : numbers.any();
        if (run % 7 == 0) value = numbers.below(2) == 0 ? -0.0 : 0.0;
      }
      if (numbers.below(8) == 0) values[numbers.below(count)] = nan;
      arrays.push_back(doubles(1, values));
    }
    const auto limit = arrays[0].upper();
    Box a, b;
    a.max_x = b.max_x = arrays[0](1), a.min_x = b.min_x = arrays[0](1);
    b.max_y = b.min_y = arrays[1](1);
    b.max_z = b.min_z = arrays[2](1);
    const int expected =
        plain_scan({{arrays[0], b.max_x, b.min_x}, {arrays[1], b.max_y, b.min_y}}, limit);
    ASSERT_EQ(failure_of([&] {
                matrices.MaxMin_2Matriz(arrays[0], arrays[1], a.max_x, a.min_x, a.max_y, a.min_y);
              }),
              expected);
    ASSERT_EQ(bits(a.max_x), bits(b.max_x)) << run;
    ASSERT_EQ(bits(a.min_x), bits(b.min_x)) << run;
    ASSERT_EQ(bits(a.max_y), bits(b.max_y)) << run;
    ASSERT_EQ(bits(a.min_y), bits(b.min_y)) << run;

    // And where failing statements are skipped.
    Box c;
    std::vector<std::int32_t> at;
    double* results[] = {&b.max_x, &b.min_x, &b.max_y, &b.min_y, &b.max_z, &b.min_z};
    for (std::size_t k = 0; k < 3; ++k) {
      double &max = *results[2 * k], &min = *results[2 * k + 1];
      max = min = arrays[k](1);
      std::int32_t max_at = 1, min_at = 1;
      for (std::int32_t i = 2; i <= limit; ++i) {
        const bool there = arrays[k].row(i, i) != nullptr;
        const double e = there ? arrays[k](i) : 0.0;
        if (!there || std::isunordered(max, e) || max < e) {
          if (there) max = e;
          max_at = i;
        }
        if (!there || std::isunordered(min, e) || min > e) {
          if (there) min = e;
          min_at = i;
        }
      }
      at.push_back(min_at);
      at.push_back(max_at);
    }
    const std::vector<std::string> shown = marks_shown(arrays[0], arrays[1], arrays[2], c);
    for (std::size_t k = 0; k < 6; ++k) ASSERT_EQ(bits(c.all()[k]), bits(b.all()[k])) << run;
    if (limit < 2) continue;
    ASSERT_EQ(shown.size(), 6U);
    for (std::size_t k = 0; k < 6; ++k) {
      if (std::isnan(c.all()[k])) continue;
      ASSERT_EQ(shown[k], std::to_string(at[k])) << run << ' ' << k;
    }
  }
}

// The highest subscripts of all: some 2,000,000,000 missing elements are passed at once, and
// the last of them leaves its mark.
TEST(Extremes, ElementsFarAboveTheFirst) {
  const DoubleArray x = doubles(2147483643, {3, 9, 4, 9, 1}), y = doubles(1, {2, 8, 5}), none;
  Box box;
  const std::vector<std::string> shown = marks_shown(x, y, none, box);
  EXPECT_EQ(box.all(), (std::vector<double>{9, -102, 8, 2, -105, -106}));
  EXPECT_EQ(shown, (std::vector<std::string>{"2147483642", "2147483644", "2147483647", "2147483647",
                                             "2147483647", "2147483647"}));
}

// X begins 1024 elements after the scan does, where no element is lower than the variable: of
// those passed at once the last one's mark stays.
TEST(Extremes, TheLastOfTheElementsPassedAtOnceIsMarked) {
  Box box;
  const std::vector<std::string> shown =
      marks_shown(doubles(1026, {3, 9, 4}), DoubleArray(), DoubleArray(), box);
  EXPECT_EQ(box.max_x, 9);
  EXPECT_EQ(shown, (std::vector<std::string>{"1025", "1027", "1028", "1028", "1028", "1028"}));
}

TEST(Extremes, OneVariableForTwoResultsAndOneThatIsAnElement) {
  double both = 0;
  matrices.MaxMin_1Matriz(doubles(1, {3, 9, 4}), both, both);
  EXPECT_EQ(both, 4);  // each element is taken for one or the other
  DoubleArray x = doubles(1, {3, 9, 4, 1});
  double min = 0;
  matrices.MaxMin_1Matriz(x, x(4), min);  // the maximum is written over the last element
  EXPECT_EQ(elements(x), (std::vector<double>{3, 9, 4, 9}));
  EXPECT_EQ(min, 3);
}

}  // namespace
}  // namespace orv2_geo

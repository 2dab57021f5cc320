#include "survey_report/labels.h"

#include <gtest/gtest.h>

namespace survey_report {
namespace {

struct OverlapRow {
  const char* rule;
  Rect other;
  bool overlaps;
};

const Rect box{10, 10, 20, 14};

const OverlapRow overlap_rows[] = {
    {"itself", box, true},
    {"a corner inside", {18, 12, 30, 30}, true},
    {"wholly inside", {12, 11, 13, 12}, true},
    {"wholly around", {0, 0, 50, 50}, true},
    {"across", {14, 0, 15, 50}, true},
    {"to the right", {21, 10, 30, 14}, false},
    {"below", {10, 15, 20, 19}, false},
    {"touching at a side", {20, 10, 30, 14}, false},
    {"touching at a corner", {20, 14, 30, 20}, false},
};

TEST(Labels, Overlap) {
  for (const OverlapRow& row : overlap_rows) {
    EXPECT_EQ(overlap(box, row.other), row.overlaps) << row.rule;
    EXPECT_EQ(overlap(row.other, box), row.overlaps) << row.rule;
    LabelBoard board({0, 0, 60, 60});
    board.occupy(box);
    EXPECT_EQ(board.is_free(row.other), !row.overlaps) << row.rule;
  }
}

TEST(Labels, TheFirstLabelStandsToTheRight) {
  LabelBoard board({0, 0, 60, 60});
  const auto label = board.place({30, 30}, 1, 6, 2);
  ASSERT_TRUE(label.has_value());
  EXPECT_DOUBLE_EQ(label->left, 31);
  EXPECT_DOUBLE_EQ(label->top, 29);
}

TEST(Labels, LabelsOfOnePlaceDoNotCoverEachOtherAndEndWhenItIsFull) {
  LabelBoard board({0, 0, 60, 60});
  std::vector<Rect> placed;
  for (int i = 0; i < 20; ++i) {
    const auto label = board.place({30, 30}, 1, 6, 2);
    if (!label) continue;
    for (const Rect& other : placed) EXPECT_FALSE(overlap(*label, other));
    placed.push_back(*label);
  }
  EXPECT_EQ(placed.size(), 4);  // right, left, above, below
}

TEST(Labels, NoneLeavesTheArea) {
  LabelBoard board({0, 0, 60, 60});
  const auto label = board.place({59, 30}, 1, 6, 2);
  ASSERT_TRUE(label.has_value());
  EXPECT_LE(label->right, 58);
  EXPECT_FALSE(board.place({30, 30}, 1, 70, 2).has_value());
  EXPECT_FALSE(board.place({-20, -20}, 1, 6, 2).has_value());
}

TEST(Labels, ALineIsKeptFree) {
  LabelBoard board({0, 0, 60, 60});
  board.occupy_line({0, 0}, {60, 60});
  EXPECT_FALSE(board.is_free({29, 29, 31, 31}));
  EXPECT_TRUE(board.is_free({40, 29, 46, 31}));
}

TEST(Labels, AnAccentTakesNoWidth) {
  EXPECT_DOUBLE_EQ(text_width("SE\xC3\x91"
                              "AL",
                              2.0),
                   text_width("SENAL", 2.0));
}

}  // namespace
}  // namespace survey_report

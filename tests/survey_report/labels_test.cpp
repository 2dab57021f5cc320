#include "survey_report/labels.h"

#include <gtest/gtest.h>

#include <cmath>

namespace survey_report {
namespace {

struct OverlapRow {
  const char* rule;
  Rect other;
  bool overlaps;
};

bool overlap(const Rect& a, const Rect& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

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

TEST(Labels, WhatIsOccupiedIsNotFree) {
  for (const OverlapRow& row : overlap_rows) {
    LabelBoard board({0, 0, 60, 60});
    board.occupy(box);
    EXPECT_EQ(board.is_free(row.other), !row.overlaps) << row.rule;
    LabelBoard other({0, 0, 60, 60});
    other.occupy(row.other);
    EXPECT_EQ(other.is_free(box), !row.overlaps) << row.rule;
  }
}

TEST(Labels, TheFirstLabelStandsToTheRight) {
  LabelBoard board({0, 0, 60, 60});
  const auto label = board.place({30, 30}, 1, 6, 2);
  ASSERT_TRUE(label.has_value());
  EXPECT_DOUBLE_EQ(label->box.left, 31);
  EXPECT_DOUBLE_EQ(label->box.top, 29);
  EXPECT_FALSE(label->leader.has_value());
}

TEST(Labels, LabelsOfOnePlaceDoNotCoverEachOtherAndEndWhenItIsFull) {
  LabelBoard board({0, 0, 60, 60});
  std::vector<LabelRoom> placed;
  for (int i = 0; i < 40; ++i) {
    const auto label = board.place({30, 30}, 1, 6, 2);
    if (!label) continue;
    for (const LabelRoom& other : placed) EXPECT_FALSE(overlap(label->box, other.box));
    placed.push_back(*label);
  }
  EXPECT_EQ(placed.size(), 4);  // right, left, above, below: no leader gets out between them
}

// The middle of the side that looks at the point.
TEST(Labels, ALeaderEndsAtItsLabel) {
  LabelBoard board({0, 0, 60, 60});
  for (const Rect& beside : {Rect{32.5, 28.5, 34, 31.5}, Rect{26, 28.5, 27.5, 31.5},
                             Rect{29.7, 27, 30.3, 28}, Rect{29.7, 32, 30.3, 33}}) {
    board.occupy(beside);
  }
  const auto off = board.place({30, 30}, 1, 6, 2.5);
  ASSERT_TRUE(off.has_value() && off->leader.has_value());
  const double x = off->leader->to.x;
  EXPECT_TRUE(x == off->box.left || x == off->box.right);
  EXPECT_DOUBLE_EQ(off->leader->to.y, (off->box.top + off->box.bottom) / 2);
  EXPECT_NEAR(std::hypot(off->leader->from.x - 30, off->leader->from.y - 30), 1.0, 1e-9);
  // Its leader is occupied, as it is.
  const Leader& leader = *off->leader;
  const Place middle{(leader.from.x + leader.to.x) / 2, (leader.from.y + leader.to.y) / 2};
  EXPECT_FALSE(board.is_free({middle.x - 0.1, middle.y - 0.1, middle.x + 0.1, middle.y + 0.1}));
}

TEST(Labels, NoneLeavesTheArea) {
  LabelBoard board({0, 0, 60, 60});
  const auto label = board.place({59, 30}, 1, 6, 2);
  ASSERT_TRUE(label.has_value());
  EXPECT_LE(label->box.right, 58);
  EXPECT_FALSE(board.place({30, 30}, 1, 70, 2).has_value());
  EXPECT_FALSE(board.place({-20, -20}, 1, 6, 2).has_value());
}

TEST(Labels, AfterFourFailuresAPlaceIsGivenUp) {
  LabelBoard board({0, 0, 60, 60});
  for (int i = 0; i < 4; ++i) {
    EXPECT_FALSE(board.is_given_up({30, 30})) << i;
    EXPECT_FALSE(board.place({30, 30}, 1, 70, 2).has_value());
  }
  EXPECT_TRUE(board.is_given_up({30, 30}));
  EXPECT_FALSE(board.place({30, 30}, 1, 6, 2).has_value());
  EXPECT_TRUE(board.place({40, 30}, 1, 6, 2).has_value());
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

TEST(Labels, WideLettersTakeMoreRoom) {
  EXPECT_GT(text_width("MMM", 3), text_width("000", 3));
  EXPECT_GT(text_width("000", 3), text_width("...", 3));
  EXPECT_GE(text_width("0", 1), 0.636);  // the widest digits of the usual fonts
}

TEST(Labels, LettersBelowTheLineReachLower) {
  EXPECT_GT(letter_reach("EJE, g", 3).below, letter_reach("612", 3).below);
  EXPECT_GE(letter_reach("612", 3).above, 0.73 * 3);
}

}  // namespace
}  // namespace survey_report

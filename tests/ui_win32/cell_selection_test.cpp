#include "orv2_geo/ui/win32/cell_selection.h"

#include "tests/support/preamble.h"

namespace orv2_geo::win32 {
namespace {

CellSelection of_four_by_six() {
  CellSelection selection;
  selection.fit({4, 6}, {1, 1});
  return selection;
}

bool is(const CellRange& range, Cell first, Cell last) {
  return range.first == first && range.last == last;
}

TEST(CellSelection, BeginsWithNothing) {
  const CellSelection selection = of_four_by_six();
  EXPECT_TRUE(selection.range().is_empty());
  EXPECT_FALSE(selection.holds({1, 1}));
  EXPECT_EQ(selection.beside(0, 1), (Cell{1, 1}));
}

TEST(CellSelection, HeadersAndWhatIsOutsideLeaveItAsItIs) {
  CellSelection selection = of_four_by_six();
  EXPECT_TRUE(selection.move_to({2, 3}, false));
  for (const Cell cell : {Cell{0, 3}, Cell{2, 0}, Cell{4, 3}, Cell{2, 6}, no_cell}) {
    EXPECT_FALSE(selection.move_to(cell, true));
  }
  EXPECT_TRUE(is(selection.range(), {2, 3}, {2, 3}));
}

TEST(CellSelection, IsTheRectangleFromWhereItBegan) {
  CellSelection selection = of_four_by_six();
  selection.move_to({2, 3}, false);
  selection.move_to({1, 5}, true);
  EXPECT_TRUE(is(selection.range(), {1, 3}, {2, 5}));
  selection.move_to({3, 2}, true);
  EXPECT_TRUE(is(selection.range(), {2, 2}, {3, 3}));
  EXPECT_TRUE(selection.holds({3, 3}));
  EXPECT_FALSE(selection.holds({1, 3}));
  selection.select_all();
  EXPECT_TRUE(is(selection.range(), {1, 1}, {3, 5}));
}

TEST(CellSelection, StepsStayInTheGrid) {
  CellSelection selection = of_four_by_six();
  selection.move_to({1, 5}, false);
  EXPECT_EQ(selection.beside(-1, 0), (Cell{1, 5}));
  EXPECT_EQ(selection.beside(1, 1), (Cell{2, 5}));
}

TEST(CellSelection, ASmallerGridDropsWhatIsGone) {
  CellSelection selection = of_four_by_six();
  selection.move_to({3, 5}, false);
  selection.fit({4, 4}, {1, 1});
  EXPECT_TRUE(selection.range().is_empty());
  selection.fit({1, 4}, {1, 1});
  EXPECT_FALSE(selection.move_to(selection.beside(0, 0), false));
  selection.select_all();
  EXPECT_TRUE(selection.range().is_empty());
}

}  // namespace
}  // namespace orv2_geo::win32

#include "orv2_geo/platform/grid_columns.h"

#include <vector>

#include "tests/support/preamble.h"

namespace orv2_geo {
namespace {

using Widths = std::vector<int>;

Widths widths(const std::vector<ColumnWish>& wishes, int room) {
  return column_widths(wishes, room);
}

TEST(GridColumns, EachRule) {
  const struct {
    const char* rule;
    std::vector<ColumnWish> wishes;
    int room;
    Widths widths;
  } rows[] = {
      {"no columns", {}, 100, {}},
      {"without room to spare as wide as the headers", {{60, 90}, {60, 60}}, 100, {60, 60}},
      {"exactly enough", {{40, 40}, {60, 60}}, 100, {40, 60}},
      {"room goes first to those in need", {{40, 70}, {40, 40}}, 110, {70, 40}},
      {"by their need, where it is not enough for all", {{40, 70}, {40, 100}}, 110, {50, 60}},
      {"then to all by their width", {{20, 20}, {40, 60}}, 160, {40, 120}},
      {"the last one ends where the grid does", {{10, 10}, {10, 10}, {10, 10}}, 100, {33, 34, 33}},
      {"no headers at all", {{0, 0}, {0, 0}}, 100, {0, 0}},
  };
  for (const auto& row : rows) EXPECT_EQ(widths(row.wishes, row.room), row.widths) << row.rule;
}

}  // namespace
}  // namespace orv2_geo

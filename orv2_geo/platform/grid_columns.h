// grid_columns.h: how wide the columns of a grid are drawn.
#pragma once

#include <span>
#include <vector>

namespace orv2_geo {

/// What one column asks for, in pixels.
struct ColumnWish {
  int header;   ///< the width of its header, blanks and margins included
  int longest;  ///< the width of its longest cell, the header's at least
};

/// The widths in pixels of columns that stand side by side in `room` pixels. A column is
/// as wide as its header. The room that is left goes first to the columns whose cells need
/// it, by their need; then to all, by their width. Without room to spare nothing grows.
std::vector<int> column_widths(std::span<const ColumnWish> wishes, int room);

}  // namespace orv2_geo

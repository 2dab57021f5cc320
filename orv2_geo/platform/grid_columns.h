// grid_columns.h: how wide the columns of a grid are drawn.
#pragma once

#include <algorithm>
#include <cmath>
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
// Whole in the header: a renderer is a library of its own.
inline std::vector<int> column_widths(std::span<const ColumnWish> wishes, int room) {
  double headers = 0.0;
  double needs = 0.0;
  for (const ColumnWish& wish : wishes) {
    headers += wish.header;
    needs += wish.longest - wish.header;
  }
  const double left = std::max(room - headers, 0.0);
  const double share = std::min(left, needs) / std::max(needs, 1.0);
  const double growth = std::max(room / std::max(headers + share * needs, 1.0), 1.0);
  std::vector<int> widths;
  widths.reserve(wishes.size());
  double edge = 0.0;
  for (const ColumnWish& wish : wishes) {
    // Between rounded edges, so that the last one is the grid's.
    const double next = edge + (wish.header + share * (wish.longest - wish.header)) * growth;
    widths.push_back(static_cast<int>(std::lround(next) - std::lround(edge)));
    edge = next;
  }
  return widths;
}

}  // namespace orv2_geo

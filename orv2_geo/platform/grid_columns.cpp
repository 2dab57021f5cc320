#include "orv2_geo/platform/grid_columns.h"

#include <algorithm>
#include <cmath>

namespace orv2_geo {

std::vector<int> column_widths(std::span<const ColumnWish> wishes, int room) {
  double headers = 0.0;
  double needs = 0.0;
  for (const ColumnWish& wish : wishes) {
    headers += wish.header;
    needs += wish.longest - wish.header;
  }
  const double left = std::max(room - headers, 0.0);
  const double share = std::min(left, needs) / std::max(needs, 1.0);
  const double taken = headers + share * needs;
  const double growth = std::max(room / std::max(taken, 1.0), 1.0);
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

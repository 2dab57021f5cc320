#include "orv2_geo/frame/exchange_sort.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/counted.h"
#include "orv2_geo/frame/mConstantes.h"
#include "orv2_geo/frame/memory.h"
#include "orv2_geo/frame/overlap.h"

namespace orv2_geo {

namespace {

using Arrays = std::initializer_list<DoubleArray*>;

// Pass by pass.
void exchange_neighbours(std::int32_t points, Arrays arrays) {
  const DoubleArray& keys = **arrays.begin();
  for (const std::int32_t i : counted(1, points - 1)) {
    for (const std::int32_t j : counted(1, points - i)) {
      if (Checked(keys(j)) < keys(j + 1)) continue;
      for (DoubleArray* array : arrays) {
        mConstantes::Intercambia_8_bytes(&(*array)(j), &(*array)(j + 1));
      }
    }
  }
}

struct Point {
  double key;
  std::uint32_t place;    // before sorting, from 0
  std::uint32_t further;  // points of higher keys that stand before it
};

// How many of some places there are before another, by a tree of partial sums.
// (Binary indexed tree.)
class PlaceCounts {
 public:
  explicit PlaceCounts(std::size_t places) : sums_(places + 1) {}
  void add(std::size_t place) {
    for (std::size_t i = place + 1; i < sums_.size(); i += i & -i) ++sums_[i];
  }
  std::uint32_t before(std::size_t place) const {
    std::uint32_t sum = 0;
    for (std::size_t i = place; i != 0; i &= i - 1) sum += sums_[i];
    return sum;
  }

 private:
  std::vector<std::uint32_t> sums_;
};

// The order in which equal points end; they come in their first order, with
// `further_in_all` points of higher keys. Each pass takes one of those from before
// each point that has any; and of the points that have none it takes the first
// past the others. When the further ones are in place the points are turned round
// one by one.
void order_ties(std::span<Point> ties, std::size_t further_in_all) {
  for (std::size_t z = 1; z <= ties.size(); ++z) {
    const std::size_t until = z < ties.size() ? ties[z].further : further_in_all;
    const std::size_t passes = until - ties[z - 1].further;
    const auto first = ties.begin();
    std::rotate(first, first + static_cast<std::ptrdiff_t>(passes % z),
                first + static_cast<std::ptrdiff_t>(z));
  }
  std::reverse(ties.begin(), ties.end());
}

bool have_equal_keys(const Point& a, const Point& b) { return a.key == b.key; }

void order_all_ties(std::vector<Point>& sorted) {
  if (std::adjacent_find(sorted.begin(), sorted.end(), have_equal_keys) == sorted.end()) return;
  PlaceCounts further(sorted.size());
  for (std::size_t end = sorted.size(); end != 0;) {
    std::size_t start = end - 1;
    while (start != 0 && have_equal_keys(sorted[start - 1], sorted[start])) --start;
    const std::span<Point> ties(&sorted[start], end - start);
    for (Point& point : ties) point.further = further.before(point.place);
    for (const Point& point : ties) further.add(point.place);
    order_ties(ties, sorted.size() - end);
    end = start;
  }
}

std::vector<Point> order_of(std::span<const double> keys) {
  std::vector<Point> sorted(keys.size());
  for (std::uint32_t i = 0; i < keys.size(); ++i) sorted[i] = {keys[i], i, 0};
  std::sort(sorted.begin(), sorted.end(), [](const Point& a, const Point& b) {
    return a.key < b.key || (a.key == b.key && a.place < b.place);
  });
  order_all_ties(sorted);
  return sorted;
}

// The arrays' elements, when all are there and none is in two arrays.
std::vector<double*> separate_rows(std::int32_t points, Arrays arrays) {
  const auto elements = [&](const double* row) {
    return std::span(row, static_cast<std::size_t>(points));
  };
  std::vector<double*> rows;
  for (DoubleArray* array : arrays) {
    double* row = array->row(1, points);
    const auto meets_it = [&](const double* other) {
      return overlap(elements(row), elements(other));
    };
    if (row == nullptr || std::any_of(rows.begin(), rows.end(), meets_it)) return {};
    rows.push_back(row);
  }
  return rows;
}

// The points in the order in which the passes leave them; nothing where a step of them
// can fail. Throws std::bad_alloc.
std::optional<std::vector<Point>> quick_order(std::span<const double> keys) {
  const auto is_nan = [](double key) { return std::isnan(key); };
  if (std::any_of(keys.begin(), keys.end(), is_nan)) return std::nullopt;
  return order_of(keys);
}

// False, and nothing changed, where the passes themselves must be made. Throws
// std::bad_alloc, with nothing changed either.
bool sort_without_passes(std::int32_t points, Arrays arrays) {
  const std::vector<double*> rows = separate_rows(points, arrays);
  if (rows.empty()) return false;
  const auto sorted = quick_order({rows[0], static_cast<std::size_t>(points)});
  if (!sorted) return false;
  std::vector<double> copy(sorted->size());
  for (double* row : rows) {
    for (std::size_t i = 0; i < sorted->size(); ++i) copy[i] = row[(*sorted)[i].place];
    std::copy(copy.begin(), copy.end(), row);
  }
  return true;
}

}  // namespace

void exchange_sort(std::int32_t points, Arrays arrays) {
  if (points < 2) return;
  if (if_memory_allows([&] { return sort_without_passes(points, arrays); })) return;
  exchange_neighbours(points, arrays);
}

}  // namespace orv2_geo

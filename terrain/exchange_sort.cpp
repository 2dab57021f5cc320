#include "terrain/exchange_sort.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <new>
#include <span>
#include <vector>

#include "frame/checked_math.h"
#include "frame/counted.h"
#include "frame/mConstantes.h"

namespace orv2_geo::terrain {

namespace {

// Pass by pass.
void exchange_neighbours(std::int32_t points, DoubleArray& distances, DoubleArray& elevations) {
  for (const std::int32_t i : counted(1, points - 1)) {
    for (const std::int32_t j : counted(1, points - i)) {
      double& here = distances(j);
      double& next = distances(j + 1);
      if (Checked(here) < next) continue;
      mConstantes::Intercambia_8_bytes(&here, &next);
      mConstantes::Intercambia_8_bytes(&elevations(j), &elevations(j + 1));
    }
  }
}

struct Point {
  double distance;
  double elevation;
  std::size_t place;    // before sorting, from 0
  std::size_t further;  // points further away that stand before it
};

// Counts of marked places, by a tree of partial sums. (Binary indexed tree.)
class Marks {
 public:
  explicit Marks(std::size_t places) : sums_(places + 1) {}
  void mark(std::size_t place) {
    for (std::size_t i = place + 1; i < sums_.size(); i += i & -i) ++sums_[i];
  }
  std::size_t before(std::size_t place) const {
    std::size_t sum = 0;
    for (std::size_t i = place; i != 0; i &= i - 1) sum += sums_[i];
    return sum;
  }

 private:
  std::vector<std::size_t> sums_;
};

// The order in which points of equal distance end; they come in their first
// order, with `further_in_all` points further away. Each pass takes one of those
// from before each point that has any; and of the points that have none it takes
// the first past the others. When the further ones are in place the points are
// turned round one by one.
void order_ties(std::span<Point> ties, std::size_t further_in_all) {
  for (std::size_t z = 1; z <= ties.size(); ++z) {
    const std::size_t until = z < ties.size() ? ties[z].further : further_in_all;
    const std::size_t passes = until - ties[z - 1].further;
    const auto first = ties.begin();
    // `further` is read before the point moves, as z only grows.
    std::rotate(first, first + static_cast<std::ptrdiff_t>(passes % z),
                first + static_cast<std::ptrdiff_t>(z));
  }
  std::reverse(ties.begin(), ties.end());
}

std::vector<Point> sorted_points(std::size_t points, const double* distances,
                                 const double* elevations) {
  std::vector<Point> sorted(points);
  for (std::size_t i = 0; i < points; ++i) sorted[i] = {distances[i], elevations[i], i, 0};
  std::sort(sorted.begin(), sorted.end(), [](const Point& a, const Point& b) {
    return a.distance < b.distance || (a.distance == b.distance && a.place < b.place);
  });
  return sorted;
}

bool same_distance(const Point& a, const Point& b) { return a.distance == b.distance; }

void order_all_ties(std::vector<Point>& sorted) {
  if (std::adjacent_find(sorted.begin(), sorted.end(), same_distance) == sorted.end()) return;
  Marks further(sorted.size());
  for (std::size_t end = sorted.size(); end != 0;) {
    std::size_t start = end - 1;
    while (start != 0 && same_distance(sorted[start - 1], sorted[start])) --start;
    const std::span<Point> ties(&sorted[start], end - start);
    for (Point& point : ties) point.further = further.before(point.place);
    for (const Point& point : ties) further.mark(point.place);
    order_ties(ties, sorted.size() - end);
    end = start;
  }
}

// False, and nothing changed, where the passes themselves must be made.
bool sort_at_once(std::size_t points, double* distances, double* elevations) try {
  if (std::any_of(distances, distances + points, [](double d) { return std::isnan(d); }))
    return false;
  std::vector<Point> sorted = sorted_points(points, distances, elevations);
  order_all_ties(sorted);
  for (std::size_t i = 0; i < points; ++i) {
    distances[i] = sorted[i].distance;
    elevations[i] = sorted[i].elevation;
  }
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

bool apart(const double* a, const double* b, std::size_t count) {
  const std::less_equal<> at_or_before;
  return at_or_before(a + count, b) || at_or_before(b + count, a);
}

}  // namespace

void exchange_sort(std::int32_t points, DoubleArray& distances, DoubleArray& elevations) {
  if (points < 2) return;
  double* d = distances.row(1, points);
  double* z = elevations.row(1, points);
  const auto count = static_cast<std::size_t>(points);
  const bool at_once = d != nullptr && z != nullptr && apart(d, z, count);
  if (at_once && sort_at_once(count, d, z)) return;
  exchange_neighbours(points, distances, elevations);
}

}  // namespace orv2_geo::terrain

#include "sorting/settle_ties.h"

#include <algorithm>
#include <cstddef>

#include "sorting/word_steps.h"

namespace orv2_geo::sorting {

namespace {

// An element: the place of the first of its equals in the sorted order above, its
// own position below.
using Item = std::uint64_t;
constexpr int position_bits = 32;

std::uint32_t rank_of(Item item) { return static_cast<std::uint32_t>(item >> position_bits); }
std::uint32_t position_of(Item item) { return static_cast<std::uint32_t>(item); }
Item lowest_of_rank(std::uint64_t rank) { return rank << position_bits; }

// The algorithm on n items. Places are counted from 0.
class Run {
 public:
  // ties_up_to[p]: how many places up to p are tied to the one before.
  Run(Item* items, const std::uint32_t* ties_up_to, std::uint32_t* order,
      std::int64_t first) noexcept
      : steps_(items, lowest_of_rank(1) - 1, first), ties_up_to_(ties_up_to), order_(order) {}

  void sort(std::int64_t lo, std::int64_t hi) noexcept {
    while (lo <= hi) {
      if (ties_up_to_[lo] == ties_up_to_[hi]) return place_untied(lo, hi);
      if (hi - lo < static_cast<std::int64_t>(insertion_limit)) return insert(lo, hi);
      steps_.choose_pivot(lo, hi);
      const auto [i, j] = steps_.partition(lo, hi);
      for (std::int64_t k = j; k < i; ++k) order_[k] = position_of(steps_[k]);
      // Into the smaller part first: the depth stays at a logarithm.
      if (hi - i < j - lo) {
        sort(i, hi);
        hi = j - 1;
      } else {
        sort(lo, j - 1);
        lo = i;
      }
    }
  }

 private:
  // Each item is alone of its rank here; one whose equals stand in front of the
  // part is its lowest.
  void place_untied(std::int64_t lo, std::int64_t hi) noexcept {
    for (std::int64_t k = lo; k <= hi; ++k) {
      order_[std::max<std::int64_t>(rank_of(steps_[k]), lo)] = position_of(steps_[k]);
    }
  }

  void insert(std::int64_t lo, std::int64_t hi) noexcept {
    steps_.insert(lo, hi);
    for (std::int64_t k = lo; k <= hi; ++k) order_[k] = position_of(steps_[k]);
  }

  WordSteps steps_;
  const std::uint32_t* ties_up_to_;
  std::uint32_t* order_;
};

bool is_tied(std::uint32_t entry) { return (entry & tied_mark) != 0; }

// Up to the insertion limit equal elements keep their order.
void keep_order(std::span<std::uint32_t> order) {
  for (auto start = order.begin(); start != order.end();) {
    const auto end = std::find_if_not(start + 1, order.end(), is_tied);
    for (auto entry = start; entry != end; ++entry) *entry &= ~tied_mark;
    std::sort(start, end);
    start = end;
  }
}

}  // namespace

void settle_ties(std::span<std::uint32_t> order, std::int64_t first, Item* items,
                 std::uint32_t* ties_up_to) noexcept {
  if (std::none_of(order.begin(), order.end(), is_tied)) return;
  if (order.size() <= insertion_limit) return keep_order(order);
  std::uint32_t ties = 0;
  std::uint64_t rank = 0;
  for (std::size_t p = 0; p < order.size(); ++p) {
    const std::uint32_t position = order[p] & ~tied_mark;
    if (is_tied(order[p])) {
      ++ties;
    } else {
      rank = p;
    }
    ties_up_to[p] = ties;
    items[position] = lowest_of_rank(rank) | position;
  }
  Run(items, ties_up_to, order.data(), first).sort(0, static_cast<std::int64_t>(order.size()) - 1);
}

}  // namespace orv2_geo::sorting

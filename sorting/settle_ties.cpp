#include "sorting/settle_ties.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

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
      : items_(items), ties_up_to_(ties_up_to), order_(order), first_(first) {}

  void sort(std::int64_t lo, std::int64_t hi) noexcept {
    while (lo <= hi) {
      if (ties_up_to_[lo] == ties_up_to_[hi]) return place_untied(lo, hi);
      if (hi - lo < static_cast<std::int64_t>(insertion_limit)) return insert(lo, hi);
      choose_pivot(lo, hi);
      const auto [i, j] = partition(lo, hi);
      for (std::int64_t k = j; k < i; ++k) order_[k] = position_of(items_[k]);
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
      order_[std::max<std::int64_t>(rank_of(items_[k]), lo)] = position_of(items_[k]);
    }
  }

  void insert(std::int64_t lo, std::int64_t hi) noexcept {
    for (std::int64_t j = lo + 1; j <= hi; ++j) {
      const Item item = items_[j];
      std::int64_t i = j - 1;
      for (; i >= lo && rank_of(items_[i]) > rank_of(item); --i) items_[i + 1] = items_[i];
      items_[i + 1] = item;
    }
    for (std::int64_t k = lo; k <= hi; ++k) order_[k] = position_of(items_[k]);
  }

  void put_in_order(std::int64_t i, std::int64_t j) noexcept {
    if (rank_of(items_[i]) > rank_of(items_[j])) std::swap(items_[i], items_[j]);
  }

  void choose_pivot(std::int64_t lo, std::int64_t hi) noexcept {
    const std::int64_t middle = (lo + hi + 2 * first_) / 2 - first_;  // of subscripts, to zero
    std::swap(items_[middle], items_[lo + 1]);
    put_in_order(lo, hi);
    put_in_order(lo + 1, hi);
    put_in_order(lo, lo + 1);
  }

  std::pair<std::int64_t, std::int64_t> partition(std::int64_t lo, std::int64_t hi) noexcept {
    const Item pivot = items_[lo + 1];
    const Item from = lowest_of_rank(rank_of(pivot));                       // not below the pivot
    const Item beyond = lowest_of_rank(std::uint64_t{rank_of(pivot)} + 1);  // above it
    auto [i, j] = exchange_blocks(lo + 1, hi, from, beyond);
    while (true) {
      do ++i;
      while (items_[i] < from);
      do --j;
      while (items_[j] >= beyond);
      if (j < i) break;
      std::swap(items_[i], items_[j]);
    }
    items_[lo + 1] = items_[j];
    items_[j] = pivot;
    return {i, j};
  }

  // The exchanges of the two scans while they are far apart, block against block.
  // Which items of a block stop a scan is hard to foresee, so they are listed
  // without a branch and then exchanged pair by pair, in the scans' own order.
  // Gives where the scans stand. (Block partition.)
  std::pair<std::int64_t, std::int64_t> exchange_blocks(std::int64_t i, std::int64_t j, Item from,
                                                        Item beyond) noexcept {
    constexpr std::int64_t block = 64;
    std::array<std::uint8_t, block> upward;
    std::array<std::uint8_t, block> downward;
    std::int64_t up = 0, up_end = 0, down = 0, down_end = 0;
    while (j - i > 2 * block) {
      if (up == up_end) {
        up = up_end = 0;
        for (std::int64_t k = 0; k < block; ++k) {
          upward[static_cast<std::size_t>(up_end)] = static_cast<std::uint8_t>(k);
          up_end += items_[i + 1 + k] >= from;
        }
      }
      if (down == down_end) {
        down = down_end = 0;
        for (std::int64_t k = 0; k < block; ++k) {
          downward[static_cast<std::size_t>(down_end)] = static_cast<std::uint8_t>(k);
          down_end += items_[j - 1 - k] < beyond;
        }
      }
      const std::int64_t pairs = std::min(up_end - up, down_end - down);
      for (std::int64_t k = 0; k < pairs; ++k) {
        std::swap(items_[i + 1 + upward[static_cast<std::size_t>(up + k)]],
                  items_[j - 1 - downward[static_cast<std::size_t>(down + k)]]);
      }
      up += pairs;
      down += pairs;
      if (up == up_end) i += block;
      if (down == down_end) j -= block;
    }
    // A block that is not done is taken up at its first item that is left.
    if (up != up_end) i += upward[static_cast<std::size_t>(up)];
    if (down != down_end) j -= downward[static_cast<std::size_t>(down)];
    return {i, j};
  }

  Item* items_;
  const std::uint32_t* ties_up_to_;
  std::uint32_t* order_;
  std::int64_t first_;
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

void settle_ties(std::span<std::uint32_t> order, std::int64_t first,
                 std::span<std::uint64_t> scratch) noexcept {
  if (std::none_of(order.begin(), order.end(), is_tied)) return;
  if (order.size() <= insertion_limit) return keep_order(order);
  Item* items = scratch.data();
  auto* ties_up_to = reinterpret_cast<std::uint32_t*>(items + order.size());
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

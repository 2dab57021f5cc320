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

constexpr std::int64_t block = 64;

// Where a scan stops, as distances from its start; at most those of two blocks.
class Stops {
 public:
  bool empty() const noexcept { return next_ == end_; }
  std::int64_t left() const noexcept { return end_ - next_; }
  std::int64_t next() noexcept { return at_[static_cast<std::size_t>(next_++)]; }

  template <class Stop>
  void list(std::int64_t count, Stop stops_at) noexcept {
    std::int64_t end = 0;
#pragma GCC unroll 8
    for (std::int64_t k = 0; k < count; ++k) {
      at_[static_cast<std::size_t>(end)] = static_cast<std::uint8_t>(k);
      end += stops_at(k);
    }
    next_ = 0;
    end_ = end;
  }

 private:
  std::array<std::uint8_t, 2 * block> at_;
  std::int64_t next_ = 0;
  std::int64_t end_ = 0;
};

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

  // Insertion keeps the order of equal ranks, so an item's place is the count of
  // those that come before it, which is found without a branch.
  void insert(std::int64_t lo, std::int64_t hi) noexcept {
    const auto count = static_cast<std::size_t>(hi - lo + 1);
    const Item* items = items_ + lo;
    std::array<std::uint32_t, insertion_limit> before{};
    for (std::size_t b = 1; b < count; ++b) {
      for (std::size_t a = 0; a < b; ++a) {
        const std::uint32_t turned = rank_of(items[a]) > rank_of(items[b]);
        before[a] += turned;
        before[b] += 1 - turned;
      }
    }
    for (std::size_t k = 0; k < count; ++k) order_[lo + before[k]] = position_of(items[k]);
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

  // The exchanges of the two scans, block against block. Which items of a block
  // stop a scan is hard to foresee, so they are listed without a branch and then
  // exchanged pair by pair, in the scans' own order. Gives where the scans stand
  // when they are about to meet. (Block partition.)
  std::pair<std::int64_t, std::int64_t> exchange_blocks(std::int64_t i, std::int64_t j, Item from,
                                                        Item beyond) noexcept {
    Stops up;
    Stops down;
    while (j - i > 2 * block) {
      if (up.empty()) up.list(block, [&](std::int64_t k) { return items_[i + 1 + k] >= from; });
      if (down.empty())
        down.list(block, [&](std::int64_t k) { return items_[j - 1 - k] < beyond; });
      const std::int64_t pairs = std::min(up.left(), down.left());
      for (std::int64_t k = 0; k < pairs; ++k) {
        std::swap(items_[i + 1 + up.next()], items_[j - 1 - down.next()]);
      }
      if (up.empty()) i += block;
      if (down.empty()) j -= block;
    }
    if (!up.empty()) i += up.next();
    if (!down.empty()) j -= down.next();
    return exchange_rest(i, j, from, beyond);
  }

  // The same for what is left between them, at most two blocks: each scan's stops
  // are listed over all of it, and hold until the scans pass each other.
  std::pair<std::int64_t, std::int64_t> exchange_rest(std::int64_t i, std::int64_t j, Item from,
                                                      Item beyond) noexcept {
    const std::int64_t between = j - i - 1;
    Stops up;
    Stops down;
    up.list(between, [&](std::int64_t k) { return items_[i + 1 + k] >= from; });
    down.list(between, [&](std::int64_t k) { return items_[j - 1 - k] < beyond; });
    std::int64_t low = i;
    std::int64_t high = j;
    while (!up.empty() && !down.empty()) {
      const std::int64_t a = i + 1 + up.next();
      const std::int64_t b = j - 1 - down.next();
      if (a >= b) return {std::min(a, high) - 1, std::max(b, low) + 1};
      std::swap(items_[a], items_[b]);
      low = a;
      high = b;
    }
    const std::int64_t a = up.empty() ? high : std::min(i + 1 + up.next(), high);
    const std::int64_t b = down.empty() ? low : std::max(j - 1 - down.next(), low);
    return {a - 1, b + 1};
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

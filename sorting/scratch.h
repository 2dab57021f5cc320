// scratch.h: the memory of one sort.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "sorting/packed_sort.h"
#include "sorting/settle_ties.h"

namespace orv2_geo::sorting {

/// Two words and a position an element, one allocation each and written before
/// they are read: a first touch of fresh memory costs more than the work on it.
/// Throws std::bad_alloc.
class Scratch {
 public:
  explicit Scratch(std::size_t count)
      : count_(count), words_(std::make_unique_for_overwrite<std::uint64_t[]>(2 * count)) {}

  std::size_t count() const noexcept { return count_; }
  std::span<std::uint64_t> all() noexcept { return {words_.get(), 2 * count_}; }
  std::span<std::uint64_t> words() noexcept { return {words_.get(), count_}; }
  std::span<std::uint64_t> spare() noexcept { return {words_.get() + count_, count_}; }

  /// Sorts words() and writes their positions in the order in which the
  /// algorithm leaves them at the subscripts from `first` on.
  void order_words(const Packing& packing, std::int64_t first,
                   std::span<std::uint32_t> order) noexcept {
    write_order(packing, sort_packed(packing, words(), spare()), order.data());
    settle_ties(order, first, all());
  }

 private:
  std::size_t count_;
  std::unique_ptr<std::uint64_t[]> words_;
};

/// Puts elements into the order of these positions. Throws std::bad_alloc, with
/// nothing moved.
template <class Element>
void rearrange(std::span<Element> elements, const std::vector<std::uint32_t>& order) {
  std::vector<Element> moved(elements.size());
  for (std::size_t p = 0; p < order.size(); ++p) moved[p] = std::move(elements[order[p]]);
  std::move(moved.begin(), moved.end(), elements.begin());
}

}  // namespace orv2_geo::sorting

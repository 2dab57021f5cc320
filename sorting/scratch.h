// scratch.h: the memory of one sort.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "sorting/packed_sort.h"
#include "sorting/word_steps.h"

namespace orv2_geo::sorting {

/// A word an element, and another only where it is needed: a first touch of fresh
/// memory costs more than the work on it.
class Scratch {
 public:
  /// Throws std::bad_alloc.
  explicit Scratch(std::size_t count);

  std::span<std::uint64_t> words() noexcept { return {words_.get() + words_around, count_}; }

  /// Sorts words(), which come in the order of their positions, into the order in
  /// which the algorithm leaves them at the subscripts from `first` on. False, with
  /// words() as they were, where order_words finds it by other means.
  bool sort_words(const Packing& packing, std::int64_t first) noexcept;

  /// Writes the positions of the same order; words() are then anything.
  void order_words(const Packing& packing, std::int64_t first,
                   std::span<std::uint32_t> order) noexcept;

 private:
  void put_back(const Packing& packing) noexcept;
  bool order_by_numbers(const Packing& packing, std::int64_t first,
                        std::span<std::uint32_t> order) noexcept;

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

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
#include "sorting/word_steps.h"

namespace orv2_geo::sorting {

/// Two words an element, in one allocation and written before they are read: a
/// first touch of fresh memory costs more than the work on it. Throws
/// std::bad_alloc.
class Scratch {
 public:
  explicit Scratch(std::size_t count)
      : count_(count), words_(std::make_unique_for_overwrite<std::uint64_t[]>(2 * room())) {}

  std::size_t count() const noexcept { return count_; }
  std::span<std::uint64_t> all() noexcept { return {words_.get(), 2 * room()}; }
  std::span<std::uint64_t> words() noexcept { return {words_.get(), count_}; }
  std::span<std::uint64_t> spare() noexcept { return {words_.get() + room(), count_}; }

  /// Sorts words(), which come in the order of their positions, into the order in
  /// which the algorithm leaves them at the subscripts from `first` on. None when
  /// that is to be found with other means, as order_words does; words() are then
  /// as they were.
  std::span<const std::uint64_t> sort_words(const Packing& packing, std::int64_t first) noexcept;

  /// Writes the positions of the same order.
  void order_words(const Packing& packing, std::int64_t first,
                   std::span<std::uint32_t> order) noexcept;

 private:
  std::size_t room() const noexcept { return count_ + words_behind; }

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

// packed_words.h: packed words to be put into the order of the sorting algorithm.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "frame/memory.h"
#include "sorting/packed_sort.h"
#include "sorting/word_steps.h"

namespace orv2_geo::sorting {

/// A word an element, and which way to its order is taken: the algorithm run on the
/// words (run_words.h), or a sort by the numbers (packed_sort.h) after which it is
/// run for the ties alone (settle_ties.h). The second needs another word an element,
/// which is not asked for before: a first touch of fresh memory costs more than the
/// work on it.
class PackedWords {
 public:
  /// Throws std::bad_alloc.
  explicit PackedWords(std::size_t count);

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
  Room<std::uint64_t> words_;
};

}  // namespace orv2_geo::sorting

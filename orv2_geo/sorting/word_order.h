// word_order.h: words put into the order of the sorting algorithm, the quickest way.
//
//   way                                | taken                    | cost
//   -----------------------------------|--------------------------|------------------------
//   the algorithm on the words         | many keys are tied       | n log n
//   radix sort, then the algorithm for | few keys are tied, or the| d n, and n log n of the
//   the ties alone                     | first way takes too long | ties
//   the algorithm, however long        | no memory for the second | n log n, at worst n^2
//
// All give the same order. This is the only place that chooses.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "orv2_geo/frame/memory.h"
#include "orv2_geo/sorting/word_layout.h"

namespace orv2_geo::sorting {

/// The words of a sort, one an element, with the memory that its ways need. The second
/// way needs another word an element, which is not asked for before: a first touch of
/// fresh memory costs more than the work on it.
class WordOrder {
 public:
  /// Throws std::bad_alloc.
  explicit WordOrder(std::size_t count);

  std::span<std::uint64_t> words() noexcept;

  /// Sorts words(), which come in the order of their positions, into the order in
  /// which the algorithm leaves them at the subscripts from `first` on. False, with
  /// words() as they were, where write_positions takes another way.
  bool sort_words(const WordLayout& layout, std::int64_t first) noexcept;

  /// Writes the positions of the same order, counted from `position_0`; words() are then
  /// anything.
  void write_positions(const WordLayout& layout, std::int64_t first, std::span<std::uint32_t> order,
                       std::uint32_t position_0 = 0) noexcept;

 private:
  void put_back(const WordLayout& layout) noexcept;
  bool order_by_radix(const WordLayout& layout, std::int64_t first,
                      std::span<std::uint32_t> order) noexcept;

  std::size_t count_;
  Buffer<std::uint64_t> words_;
};

/// Whether some of the words looked at have one key: a guess at whether many have.
bool seem_tied(const WordLayout& layout, std::span<const std::uint64_t> words) noexcept;

}  // namespace orv2_geo::sorting

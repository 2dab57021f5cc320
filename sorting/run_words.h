// run_words.h: the sorting algorithm on elements of one word each.
#pragma once

#include <cstdint>
#include <span>

#include "sorting/packed_sort.h"

namespace orv2_geo::sorting {

/// Writes to `sorted` the words in the order in which the algorithm (see
/// kernel.h) leaves them at the subscripts from `first` on. The words come packed,
/// in the order of their positions. False where that takes too many steps: the
/// words are then in another order, the sorted ones anything. Behind each of the
/// two is room for words_behind more (see word_steps.h), which is written to.
bool run_words(const Packing& packing, std::span<std::uint64_t> words,
               std::span<std::uint64_t> sorted, std::int64_t first) noexcept;

/// Whether some of the words looked at have equal numbers: a guess at whether
/// many have, for the choice between ways to the same order.
bool seem_tied(const Packing& packing, std::span<const std::uint64_t> words) noexcept;

}  // namespace orv2_geo::sorting

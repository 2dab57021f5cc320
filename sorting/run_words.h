// run_words.h: the sorting algorithm on elements of one word each.
#pragma once

#include <cstdint>
#include <span>

#include "sorting/packed_sort.h"

namespace orv2_geo::sorting {

/// Puts words into the order in which the algorithm (see kernel.h) leaves them at
/// the subscripts from `first` on. False where that takes more steps than these,
/// counted in words that a partition looks at: the words are then anywhere. Around
/// them is room for words_around more (see word_steps.h), which stay as they are.
bool run_words(const Packing& packing, std::span<std::uint64_t> words, std::int64_t first,
               std::int64_t most_steps) noexcept;

/// Whether some of the words looked at have equal numbers: a guess at whether
/// many have, for the choice between ways to the same order.
bool seem_tied(const Packing& packing, std::span<const std::uint64_t> words) noexcept;

}  // namespace orv2_geo::sorting

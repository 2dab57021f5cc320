// word_quicksort.h: the sorting algorithm on elements of one word each.
//
// The same pivots, exchanges and parts as in quicksort.h, without its checks: equal
// elements are left in the same order. Two things are done with it: words are sorted,
// or ties are settled in an order that is known but for them.
#pragma once

#include <cstdint>
#include <span>

#include "orv2_geo/sorting/block_partition.h"
#include "orv2_geo/sorting/word_layout.h"

namespace orv2_geo::sorting {

/// Up to so many elements are left to insertion, which keeps the order of equals.
inline constexpr std::size_t insertion_limit = 7;

/// Puts words into the order in which the algorithm leaves them at the subscripts
/// from `first` on. False where that takes more steps than these, counted in words
/// that a partition looks at: the words are then anywhere. Around them
/// are words_around more (see block_partition.h), which stay as they are.
bool word_quicksort(const WordLayout& layout, std::span<std::uint64_t> words, std::int64_t first,
                    std::int64_t most_steps) noexcept;

/// Positions 0 to n - 1 of n elements, in ascending order of their keys. The bit
/// tells that an element's key equals that of the one before it.
inline constexpr std::uint32_t tied_bit = 0x8000'0000U;

/// Puts tied positions into the order in which the algorithm leaves them when the
/// elements stand at the subscripts from `first` on, and takes away the bits. Where
/// nothing is tied there is nothing to find out. The algorithm is run on the elements'
/// ranks alone, and only for the parts in which ties are left; of the others the
/// outcome is known. `words` are one each, with words_around more before and behind,
/// `ties_up_to` one number each. Subscripts and their sums fit 32 bits.
void settle_ties(std::span<std::uint32_t> order, std::int64_t first, std::uint64_t* words,
                 std::uint32_t* ties_up_to) noexcept;

}  // namespace orv2_geo::sorting

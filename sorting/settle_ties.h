// settle_ties.h: the order in which the sorting algorithm leaves equal elements.
#pragma once

#include <cstdint>
#include <span>

namespace orv2_geo::sorting {

/// Positions 0 to n - 1 of n elements, in ascending order of their keys. The mark
/// tells that an element's key equals that of the one before it.
inline constexpr std::uint32_t tied_mark = 0x8000'0000U;

/// Puts tied positions into the order in which the algorithm (see kernel.h)
/// leaves them when the elements stand at the subscripts from `first` on, and
/// takes away the marks. Where nothing is tied there is nothing to find out. The
/// algorithm is run on the elements' ranks alone, and only for the parts in which
/// ties are left; of the others the outcome is known. `items` has room for an item
/// each and words_around more (see word_steps.h), `ties_up_to` for one each.
/// Subscripts and their sums fit 32 bits.
void settle_ties(std::span<std::uint32_t> order, std::int64_t first, std::uint64_t* items,
                 std::uint32_t* ties_up_to) noexcept;

}  // namespace orv2_geo::sorting

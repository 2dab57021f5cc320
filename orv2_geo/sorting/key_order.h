// key_order.h: elements with keys of any length, put into the order of the sorting
// algorithm.
#pragma once

#include <cstdint>
#include <span>

namespace orv2_geo::sorting {

/// Writes the positions of the keys, 0 to n - 1, in the order in which the algorithm
/// leaves them at the subscripts from `first` on. False, with nothing written, where
/// there is no memory. `lowest` and `highest` are bounds of the keys.
///
///   | where a word holds key and position | elsewhere                         | memory   |
///   |-------------------------------------|-----------------------------------|----------|
///   | see word_order.h                    | n, and n log n where any are tied | 44 bytes |
bool write_order(std::span<const std::uint64_t> keys, std::uint64_t lowest, std::uint64_t highest,
                 std::int64_t first, std::span<std::uint32_t> order) noexcept;

}  // namespace orv2_geo::sorting

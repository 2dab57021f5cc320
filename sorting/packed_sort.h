// packed_sort.h: ascending order of whole numbers that come with a position.
#pragma once

#include <cstdint>
#include <span>

namespace orv2_geo::sorting {

/// A number above its position, in one word below 2^63: sorting the words sorts the
/// numbers, equal ones by position.
struct Packing {
  std::uint64_t lowest;  // of all numbers
  int position_bits;
  int number_bits;  // of the highest number above the lowest

  /// For `count` numbers from `lowest` to `highest`.
  Packing(std::uint64_t lowest, std::uint64_t highest, std::size_t count) noexcept;

  bool fits() const noexcept { return position_bits + number_bits <= 63; }

  /// Whether there is room in a word for this number.
  bool holds(std::uint64_t number) const noexcept { return (number - lowest) >> number_bits == 0; }
  std::uint64_t pack(std::uint64_t number, std::uint64_t position) const noexcept {
    return (number - lowest) << position_bits | position;
  }
  std::uint64_t number(std::uint64_t word) const noexcept {
    return (word >> position_bits) + lowest;
  }
  std::uint64_t position_mask() const noexcept { return (std::uint64_t{1} << position_bits) - 1; }
  std::uint32_t position(std::uint64_t word) const noexcept {
    return static_cast<std::uint32_t>(word & position_mask());
  }
};

/// Sorts words that come in the order of their positions; `spare` is as long.
/// The sorted words are in the span that comes back, one of the two.
std::span<std::uint64_t> sort_packed(const Packing& packing, std::span<std::uint64_t> words,
                                     std::span<std::uint64_t> spare) noexcept;

/// Positions of sorted words, each marked that is tied to the one before (see
/// settle_ties.h).
void write_order(const Packing& packing, std::span<const std::uint64_t> sorted,
                 std::uint32_t* order) noexcept;

}  // namespace orv2_geo::sorting

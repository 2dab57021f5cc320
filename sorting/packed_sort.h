// packed_sort.h: ascending order of whole numbers that come with a position.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

namespace orv2_geo::sorting {

/// A number above its position, in one word below 2^63: sorting the words sorts the
/// numbers, equal ones by position. Between the two is room for a mark, of which no
/// order takes notice.
struct Packing {
  std::uint64_t lowest;  // of all numbers
  int position_bits;
  int number_bits;  // of the highest number above the lowest
  int mark_bits = 0;

  /// For `count` numbers from `lowest` to `highest`.
  Packing(std::uint64_t lowest, std::uint64_t highest, std::size_t count) noexcept;

  bool fits() const noexcept { return position_bits + number_bits <= 63; }

  /// Makes room for marks of what bits are left, at most so many.
  void make_room(int most_bits) noexcept {
    mark_bits = std::min(63 - position_bits - number_bits, most_bits);
  }

  /// Whether there is room in a word for this number.
  bool holds(std::uint64_t number) const noexcept { return (number - lowest) >> number_bits == 0; }
  std::uint64_t pack(std::uint64_t number, std::uint64_t position) const noexcept {
    return (number - lowest) << below_number() | position;
  }
  std::uint64_t number(std::uint64_t word) const noexcept {
    return (word >> below_number()) + lowest;
  }
  int below_number() const noexcept { return position_bits + mark_bits; }  // bits
  std::uint64_t mask_below_number() const noexcept {
    return (std::uint64_t{1} << below_number()) - 1;
  }
  std::uint64_t position_mask() const noexcept { return (std::uint64_t{1} << position_bits) - 1; }
  std::uint64_t mark_mask() const noexcept { return mask_below_number() & ~position_mask(); }
  std::uint32_t position(std::uint64_t word) const noexcept {
    return static_cast<std::uint32_t>(word & position_mask());
  }
};

/// Sorts words without marks that come in the order of their positions; `spare` is
/// as long.
/// The sorted words are in the span that comes back, one of the two.
std::span<std::uint64_t> sort_packed(const Packing& packing, std::span<std::uint64_t> words,
                                     std::span<std::uint64_t> spare) noexcept;

/// Positions of sorted words, each marked that is tied to the one before (see
/// settle_ties.h).
void write_order(const Packing& packing, std::span<const std::uint64_t> sorted,
                 std::uint32_t* order) noexcept;

}  // namespace orv2_geo::sorting

// word_layout.h: how a key, a mark and a position share a word.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace orv2_geo::sorting {

/// One element of a sort in one word below 2^63:
///
///    63  62                                                       0
///   +---+--------------------------+----------+------------------+
///   | 0 |           key            |   mark   |     position     |
///   +---+--------------------------+----------+------------------+
///             key_bits              mark_bits    position_bits
///
/// The key is a whole number less the lowest of all, so that as few bits as possible
/// hold it. The position is the place of the element before the sort, from 0. Sorting
/// words that have no marks sorts the keys, and equal keys by position. The mark is
/// the caller's own, no order takes notice of it. With keys from 1000 to 1005 and six
/// elements, key 1003 at position 4 is the word 0b011'100.
class WordLayout {
 public:
  /// For `count` keys from `lowest` to `highest`.
  WordLayout(std::uint64_t lowest, std::uint64_t highest, std::size_t count) noexcept
      : lowest_(lowest),
        position_bits_(static_cast<int>(std::bit_width(count > 1 ? count - 1 : 1))),
        key_bits_(static_cast<int>(std::bit_width(highest - lowest))) {}

  /// Whether a word can hold key and position.
  bool fits() const noexcept { return position_bits_ + key_bits_ <= word_bits; }

  /// Gives what bits are left to marks, at most so many.
  void add_marks(int most_bits) noexcept {
    mark_bits_ = std::min(word_bits - position_bits_ - key_bits_, most_bits);
  }

  int position_bits() const noexcept { return position_bits_; }
  int mark_bits() const noexcept { return mark_bits_; }
  int key_bits() const noexcept { return key_bits_; }
  int bits_below_key() const noexcept { return position_bits_ + mark_bits_; }
  std::uint64_t lowest() const noexcept { return lowest_; }

  std::uint64_t position_mask() const noexcept { return low_bits(position_bits_); }
  std::uint64_t mask_below_key() const noexcept { return low_bits(bits_below_key()); }
  std::uint64_t mark_mask() const noexcept { return mask_below_key() & ~position_mask(); }

  /// Whether the key is one that words of this layout can hold.
  bool holds(std::uint64_t key) const noexcept { return (key - lowest_) >> key_bits_ == 0; }

  std::uint64_t word(std::uint64_t key, std::uint64_t position) const noexcept {
    return (key - lowest_) << bits_below_key() | position;
  }
  std::uint64_t key(std::uint64_t word) const noexcept {
    return (word >> bits_below_key()) + lowest_;
  }
  std::uint32_t position(std::uint64_t word) const noexcept {
    return static_cast<std::uint32_t>(word & position_mask());
  }

  /// Whether two words have one key.
  bool are_tied(std::uint64_t a, std::uint64_t b) const noexcept {
    return (a ^ b) >> bits_below_key() == 0;
  }

 private:
  static constexpr int word_bits = 63;  // the sign bit of a difference of two is then free

  static std::uint64_t low_bits(int bits) noexcept { return (std::uint64_t{1} << bits) - 1; }

  std::uint64_t lowest_;
  int position_bits_;
  int key_bits_;
  int mark_bits_ = 0;
};

}  // namespace orv2_geo::sorting

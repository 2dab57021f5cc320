// block_partition.h: the partition of the sorting algorithm on elements of one word
// each, without a branch that a processor would have to guess.
//
// The two scans of a partition stop at words that are hard to foresee. So a block of
// words is compared with the pivot at once, which gives a bit a word: a stop or none;
// then the stops of both sides are exchanged pair by pair, in the order of the scans,
// so that every word ends where scanning word by word would have put it.
//
//     lo   lo+1                i                  j                hi
//   +-----+-------+------------+------------------+-------------+------+
//   | <=p | pivot |  key <= p  |  not yet scanned |  key >= p   | >=p  |
//   +-----+-------+------------+------------------+-------------+------+
//                    done  ->                        <-  done
//
// Between two blocks: no word before place i has a key above the pivot's, none behind
// place j one below it, and words of the pivot's own key were exchanged like others.
// Source: block partition (Edelkamp and Weiss, BlockQuicksort, 2016).
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "orv2_geo/platform/words_below.h"

namespace orv2_geo::sorting {

/// How many words must be there, in front of the elements and behind, to be looked
/// at.
inline constexpr std::size_t words_around = words_at_once;

/// The exchanges of one partition. A word is an element's key above bits that take no
/// part in the order, and is below 2^63.
class BlockPartition {
 public:
  using Word = std::uint64_t;

  /// Words from `lowest_of_pivot` to `highest_of_pivot` have the pivot's key.
  BlockPartition(Word* words, Word lowest_of_pivot, Word highest_of_pivot) noexcept
      : words_(words), from_(lowest_of_pivot), beyond_(highest_of_pivot + 1) {}

  /// Where the upward scan and the downward scan end.
  using Ends = std::pair<std::int64_t, std::int64_t>;

  /// Over the places i to j.
  Ends exchange(std::int64_t i, std::int64_t j) noexcept {
    Mask up = 0;    // stops from i on, the first in the lowest bit
    Mask down = 0;  // stops from j downwards, the same
    while (j - i >= 2 * block) {
      if (up == 0) up = stops_up(i);
      if (down == 0) down = stops_down(j);
      exchange_pairs(i, j, up, down);
      if (up == 0) i += block;
      if (down == 0) j -= block;
    }
    pass_by(i, j, up, down, 0);
    while (j - i >= block) {
      up = stops_up(i, block / 2);
      down = stops_down(j, block / 2);
      exchange_pairs(i, j, up, down);
      pass_by(i, j, up, down, block / 2);
    }
    return exchange_last(i, j);
  }

 private:
  // A bit for each of 64 words in a row: 0b...0101 says that the first and the third
  // stop the scan.
  using Mask = std::uint64_t;
  static constexpr std::int64_t block = 64;

  // Words not below the pivot's key stop the upward scan, from place i on; words not
  // above it the downward one, from place j.
  Mask stops_up(std::int64_t i) const noexcept {
    const Word* words = words_ + i;
    return ~(words_below(words, from_) | words_below(words + 16, from_) << 16 |
             words_below(words + 32, from_) << 32 | words_below(words + 48, from_) << 48);
  }
  Mask stops_down(std::int64_t j) const noexcept {
    const Word* words = words_ + j - 15;
    return words_below_backwards(words, beyond_) |
           words_below_backwards(words - 16, beyond_) << 16 |
           words_below_backwards(words - 32, beyond_) << 32 |
           words_below_backwards(words - 48, beyond_) << 48;
  }

  // The same of up to 64 words; a few more are looked at.
  Mask stops_up(std::int64_t i, std::int64_t count) const noexcept {
    Mask below = words_below(words_ + i, from_);
    for (std::int64_t k = words_at_once; k < count; k += words_at_once) {
      below |= words_below(words_ + i + k, from_) << k;
    }
    return ~below & first_bits(count);
  }
  Mask stops_down(std::int64_t j, std::int64_t count) const noexcept {
    const Word* words = words_ + j - 15;
    Mask mask = words_below_backwards(words, beyond_);
    for (std::int64_t k = words_at_once; k < count; k += words_at_once) {
      mask |= words_below_backwards(words - k, beyond_) << k;
    }
    return mask & first_bits(count);
  }

  // first_bits(3) is 0b111.
  static Mask first_bits(std::int64_t count) noexcept {
    return count == 0 ? 0 : ~Mask{0} >> (block - count);
  }
  // 0b0110 becomes 0b0100.
  static Mask without_first(Mask mask) noexcept { return mask & (mask - 1); }

  // Until one side has no more stops.
  void exchange_pairs(std::int64_t i, std::int64_t j, Mask& up, Mask& down) noexcept {
    while (up != 0 && down != 0) {
      std::swap(words_[i + std::countr_zero(up)], words_[j - std::countr_zero(down)]);
      up = without_first(up);
      down = without_first(down);
    }
  }

  // To the stops that are left, or by all that was looked at.
  static void pass_by(std::int64_t& i, std::int64_t& j, Mask up, Mask down,
                      std::int64_t all) noexcept {
    i += up != 0 ? std::countr_zero(up) : all;
    j -= down != 0 ? std::countr_zero(down) : all;
  }

  // The same for what is left between, at most one block: each side's stops are
  // those of all of it, and hold until the scans pass each other.
  Ends exchange_last(std::int64_t i, std::int64_t j) noexcept {
    const std::int64_t count = j - i + 1;
    Mask up = stops_up(i, count);
    Mask down = stops_down(j, count);
    std::int64_t last_a = i - 1;  // the last exchanged,
    std::int64_t last_b = j + 1;  // where the other scan would stop
    while (up != 0 && down != 0) {
      const std::int64_t a = i + std::countr_zero(up);
      const std::int64_t b = j - std::countr_zero(down);
      if (a > b) break;
      up = without_first(up);
      down = without_first(down);
      if (a == b) break;  // a word of the pivot's key, exchanged with itself
      std::swap(words_[a], words_[b]);
      last_a = a;
      last_b = b;
    }
    if (up != 0) last_b = std::min<std::int64_t>(i + std::countr_zero(up), last_b);
    if (down != 0) last_a = std::max<std::int64_t>(j - std::countr_zero(down), last_a);
    return {last_b, last_a};
  }

  Word* words_;
  Word from_;    // the lowest word that stops the upward scan
  Word beyond_;  // the lowest that does not stop the downward one
};

}  // namespace orv2_geo::sorting

// word_steps.h: the steps of the sorting algorithm on elements of one word each.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "platform/words_below.h"

namespace orv2_geo::sorting {

/// How many words must be there, in front of the elements and behind, to be looked
/// at.
inline constexpr std::size_t words_around = words_at_once;

/// Elements up to this many are left to insertion, which keeps the order of equals.
inline constexpr std::size_t insertion_limit = 7;

/// The choice of the pivot, the partition and the insertion (see kernel.h). A word is an
/// element's key above bits that take no part in the order, and is below 2^63.
/// Places are counted from 0, the first being that of the subscript `first`.
class WordSteps {
 public:
  using Word = std::uint64_t;

  WordSteps(Word* words, Word mask_below_key, std::int64_t first) noexcept
      : words_(words), mask_below_key_(mask_below_key), first_(first) {}

  Word operator[](std::int64_t place) const noexcept { return words_[place]; }

  /// The median of three goes to lo + 1, without a branch: which is which is a
  /// matter of chance.
  void choose_pivot(std::int64_t lo, std::int64_t hi) noexcept {
    const std::int64_t middle = (lo + hi + 2 * first_) / 2 - first_;  // of subscripts, to zero
    Word low = words_[lo];
    Word pivot = std::exchange(words_[middle], words_[lo + 1]);
    Word high = words_[hi];
    put_in_order(low, high);
    put_in_order(pivot, high);
    put_in_order(low, pivot);
    words_[lo] = low;
    words_[lo + 1] = pivot;
    words_[hi] = high;
  }

  /// Gives where the upward scan ended, and the pivot's final place.
  std::pair<std::int64_t, std::int64_t> partition(std::int64_t lo, std::int64_t hi) noexcept {
    const Word pivot = words_[lo + 1];
    const Limits limits = {lowest_of_key(pivot), highest_of_key(pivot) + 1};
    const auto [i, j] = exchange(lo + 2, hi - 1, limits);
    words_[lo + 1] = words_[j];
    words_[j] = pivot;
    return {i, j};
  }

  /// Of up to seven words, or none. Insertion keeps the order of equals, so a word's
  /// place is the count of those that come before it, which is found without a
  /// branch: always for seven, those beyond the part staying where they are.
  void insert(std::int64_t lo, std::int64_t hi) noexcept {
    std::array<Word, insertion_limit> words;
    std::array<Word, insertion_limit> highest;  // that is not above the word
    std::array<std::uint32_t, insertion_limit> before;
#pragma GCC unroll 7
    for (std::uint32_t k = 0; k < insertion_limit; ++k) {
      words[k] = words_[lo + k];
      highest[k] = lo + k <= hi ? highest_of_key(words[k]) : ~Word{0};
      before[k] = k;
    }
#pragma GCC unroll 7
    for (std::size_t b = 1; b < insertion_limit; ++b) {
#pragma GCC unroll 7
      for (std::size_t a = 0; a < b; ++a) {
        const std::uint32_t turned = words[a] > highest[b];
        before[a] += turned;
        before[b] -= turned;
      }
    }
#pragma GCC unroll 7
    for (std::size_t k = 0; k < insertion_limit; ++k) words_[lo + before[k]] = words[k];
  }

 private:
  // A bit for each of 64 words in a row.
  using Mask = std::uint64_t;
  static constexpr std::int64_t block = 64;

  // Of the words that stop the scans: not below `from` upwards, below `beyond`
  // downwards.
  struct Limits {
    Word from;
    Word beyond;
  };

  Word lowest_of_key(Word word) const noexcept { return word & ~mask_below_key_; }
  Word highest_of_key(Word word) const noexcept { return word | mask_below_key_; }

  void put_in_order(Word& low, Word& high) const noexcept {
    const bool turned = low > highest_of_key(high);
    const Word above = turned ? low : high;
    low = turned ? high : low;
    high = above;
  }

  // From place i upwards, and from place j downwards.
  Mask not_below(std::int64_t i, Word limit) const noexcept {
    const Word* words = words_ + i;
    return ~(words_below(words, limit) | words_below(words + 16, limit) << 16 |
             words_below(words + 32, limit) << 32 | words_below(words + 48, limit) << 48);
  }
  Mask below(std::int64_t j, Word limit) const noexcept {
    const Word* words = words_ + j - 15;
    return words_below_backwards(words, limit) | words_below_backwards(words - 16, limit) << 16 |
           words_below_backwards(words - 32, limit) << 32 |
           words_below_backwards(words - 48, limit) << 48;
  }

  // The same of up to 64 words; a few more are looked at.
  Mask not_below(std::int64_t i, std::int64_t count, Word limit) const noexcept {
    Mask mask = words_below(words_ + i, limit);
    for (std::int64_t k = words_at_once; k < count; k += words_at_once) {
      mask |= words_below(words_ + i + k, limit) << k;
    }
    return ~mask & first_bits(count);
  }
  Mask below(std::int64_t j, std::int64_t count, Word limit) const noexcept {
    const Word* words = words_ + j - 15;
    Mask mask = words_below_backwards(words, limit);
    for (std::int64_t k = words_at_once; k < count; k += words_at_once) {
      mask |= words_below_backwards(words - k, limit) << k;
    }
    return mask & first_bits(count);
  }
  static Mask first_bits(std::int64_t count) noexcept {
    return count == 0 ? 0 : ~Mask{0} >> (block - count);
  }

  static Mask without_first(Mask mask) noexcept { return mask & (mask - 1); }

  // The exchanges of the two scans over the places i to j; where the scans end.
  // What stops a scan is hard to foresee, so it is found out for a block of
  // words at once, without a branch, and then the stops of both sides are
  // exchanged pair by pair, in the scans' own order. (Block partition.)
  std::pair<std::int64_t, std::int64_t> exchange(std::int64_t i, std::int64_t j,
                                                 Limits limits) noexcept {
    Mask up = 0;    // stops from i on
    Mask down = 0;  // up to j
    while (j - i >= 2 * block) {
      if (up == 0) up = not_below(i, limits.from);
      if (down == 0) down = below(j, limits.beyond);
      exchange_pairs(i, j, up, down);
      if (up == 0) i += block;
      if (down == 0) j -= block;
    }
    pass_by(i, j, up, down, 0);
    while (j - i >= block) {
      up = not_below(i, block / 2, limits.from);
      down = below(j, block / 2, limits.beyond);
      exchange_pairs(i, j, up, down);
      pass_by(i, j, up, down, block / 2);
    }
    return exchange_last(i, j, limits);
  }

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
  std::pair<std::int64_t, std::int64_t> exchange_last(std::int64_t i, std::int64_t j,
                                                      Limits limits) noexcept {
    const std::int64_t count = j - i + 1;
    Mask up = not_below(i, count, limits.from);
    Mask down = below(j, count, limits.beyond);
    std::int64_t last_a = i - 1;  // the last exchanged,
    std::int64_t last_b = j + 1;  // where the other scan would stop
    while (up != 0 && down != 0) {
      const std::int64_t a = i + std::countr_zero(up);
      const std::int64_t b = j - std::countr_zero(down);
      if (a > b) break;
      up = without_first(up);
      down = without_first(down);
      if (a == b) break;  // an equal of the pivot, exchanged with itself
      std::swap(words_[a], words_[b]);
      last_a = a;
      last_b = b;
    }
    if (up != 0) last_b = std::min<std::int64_t>(i + std::countr_zero(up), last_b);
    if (down != 0) last_a = std::max<std::int64_t>(j - std::countr_zero(down), last_a);
    return {last_b, last_a};
  }

  Word* words_;
  Word mask_below_key_;
  std::int64_t first_;
};

}  // namespace orv2_geo::sorting

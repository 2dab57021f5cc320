// word_steps.h: the steps of the sorting algorithm on elements of one word each.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <utility>

#include "sorting/words_below.h"

namespace orv2_geo::sorting {

/// How many words more than there are elements must be there to be looked at.
inline constexpr int words_behind = words_at_once;

/// The choice of the pivot and the partition (see kernel.h). A word is an
/// element's key above what its position in the array takes, and is below 2^63.
/// Places are counted from 0, the first being that of the subscript `first`.
class WordSteps {
 public:
  using Word = std::uint64_t;

  WordSteps(Word* words, Word position_mask, std::int64_t first) noexcept
      : words_(words), position_mask_(position_mask), first_(first) {}

  Word operator[](std::int64_t place) const noexcept { return words_[place]; }
  void put(std::int64_t place, Word word) noexcept { words_[place] = word; }

  /// The highest word of the same key.
  Word highest_of_key(Word word) const noexcept { return word | position_mask_; }

  /// Whether the key of one word comes after that of another.
  bool is_above(Word a, Word b) const noexcept { return a > highest_of_key(b); }

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

  Word lowest_of_key(Word word) const noexcept { return word & ~position_mask_; }

  void put_in_order(Word& low, Word& high) const noexcept {
    const bool turned = is_above(low, high);
    const Word above = turned ? low : high;
    low = turned ? high : low;
    high = above;
  }

  Mask below(std::int64_t start, Word limit) const noexcept {
    const Word* words = words_ + start;
    return words_below(words, limit) | words_below(words + 16, limit) << 16 |
           words_below(words + 32, limit) << 32 | words_below(words + 48, limit) << 48;
  }

  // Of up to 64 words, a little more than are asked for.
  Mask below_of(std::int64_t count, std::int64_t start, Word limit) const noexcept {
    Mask mask = words_below(words_ + start, limit);
    for (std::int64_t k = words_at_once; k < count; k += words_at_once) {
      mask |= words_below(words_ + start + k, limit) << k;
    }
    return mask;
  }

  static Mask without_first(Mask mask) noexcept { return mask & (mask - 1); }
  static Mask without_last(Mask mask) noexcept {
    return mask & ~(Mask{1} << 63 >> std::countl_zero(mask));
  }

  // The exchanges of the two scans over the places i to j; where the scans end.
  // What stops a scan is hard to foresee, so it is found out for a block of
  // words at once, without a branch, and then the stops of both sides are
  // exchanged pair by pair, in the scans' own order. (Block partition.)
  std::pair<std::int64_t, std::int64_t> exchange(std::int64_t i, std::int64_t j,
                                                 Limits limits) noexcept {
    Mask up = 0;    // stops from i on
    Mask down = 0;  // up to j
    while (j - i >= 2 * block) {
      if (up == 0) up = ~below(i, limits.from);
      if (down == 0) down = below(j - block + 1, limits.beyond);
      exchange_pairs(i, j, up, down);
      if (up == 0) i += block;
      if (down == 0) j -= block;
    }
    pass_by(i, j, up, down, 0);
    while (j - i >= block) {
      up = half(~below_of(block / 2, i, limits.from));
      down = half(below_of(block / 2, j - block / 2 + 1, limits.beyond)) << (block / 2);
      exchange_pairs(i, j, up, down);
      pass_by(i, j, up, down, block / 2);
    }
    return exchange_last(i, j, limits);
  }

  static Mask half(Mask mask) noexcept { return mask & (~Mask{0} >> (block / 2)); }

  // Until one side has no more stops.
  void exchange_pairs(std::int64_t i, std::int64_t j, Mask& up, Mask& down) noexcept {
    while (up != 0 && down != 0) {
      std::swap(words_[i + std::countr_zero(up)], words_[j - std::countl_zero(down)]);
      up = without_first(up);
      down = without_last(down);
    }
  }

  // To the stops that are left, or by all that was looked at.
  static void pass_by(std::int64_t& i, std::int64_t& j, Mask up, Mask down,
                      std::int64_t all) noexcept {
    i += up != 0 ? std::countr_zero(up) : all;
    j -= down != 0 ? std::countl_zero(down) : all;
  }

  // The same for what is left between, at most one block: each side's stops are
  // those of all of it, and hold until the scans pass each other.
  std::pair<std::int64_t, std::int64_t> exchange_last(std::int64_t i, std::int64_t j,
                                                      Limits limits) noexcept {
    const std::int64_t count = j - i + 1;
    const Mask all = count == 0 ? 0 : ~Mask{0} >> (block - count);
    Mask up = ~below_of(count, i, limits.from) & all;
    Mask down = below_of(count, i, limits.beyond) & all;
    std::int64_t low = -1;      // the last exchanged, where the other
    std::int64_t high = count;  // scan would stop
    while (up != 0 && down != 0) {
      const std::int64_t a = std::countr_zero(up);
      const std::int64_t b = 63 - std::countl_zero(down);
      if (a > b) break;
      up = without_first(up);
      down = without_last(down);
      if (a == b) break;  // an equal of the pivot, exchanged with itself
      std::swap(words_[i + a], words_[i + b]);
      low = a;
      high = b;
    }
    const std::int64_t a = up != 0 ? std::min<std::int64_t>(std::countr_zero(up), high) : high;
    const std::int64_t b =
        down != 0 ? std::max<std::int64_t>(63 - std::countl_zero(down), low) : low;
    return {i + a, i + b};
  }

  Word* words_;
  Word position_mask_;
  std::int64_t first_;
};

}  // namespace orv2_geo::sorting

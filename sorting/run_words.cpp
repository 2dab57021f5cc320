#include "sorting/run_words.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <limits>

#include "sorting/settle_ties.h"
#include "sorting/word_steps.h"

namespace orv2_geo::sorting {

namespace {

using Word = WordSteps::Word;

// Parts are finished from the left to the right, so that each may write beyond
// its end what the next overwrites.
class Run {
 public:
  Run(const WordSteps& steps, Word* sorted, std::int64_t count) noexcept
      : steps_(steps),
        sorted_(sorted),
        last_(count - 1),
        steps_left_(2 * count * std::bit_width(static_cast<std::uint64_t>(count))) {}

  bool sort() noexcept {
    std::int64_t lo = 0;
    std::int64_t hi = last_;
    while (true) {
      while (hi - lo >= static_cast<std::int64_t>(insertion_limit)) {
        steps_.choose_pivot(lo, hi);
        const auto [i, j] = steps_.partition(lo, hi);
        steps_left_ -= hi - lo;
        if (steps_left_ < 0 || waiting_ == parts_.size()) return false;
        parts_[waiting_++] = {j, i, hi};
        hi = j - 1;
      }
      if (lo <= hi) insert(lo);
      if (waiting_ == 0) return true;
      const auto [j, i, end] = parts_[--waiting_];
      sorted_[j] = steps_[j];
      sorted_[j + 1] = steps_[j + 1];  // an equal of the pivot, or not yet its turn
      lo = i;
      hi = end;
    }
  }

 private:
  // What comes after a partition's lower part: the pivot at j, and the part i to hi.
  struct Upper {
    std::int64_t j;
    std::int64_t i;
    std::int64_t hi;
  };

  // Always as many as insertion takes at most. Insertion keeps the order of
  // equals, and no word behind the part is below one in it: so a word's place is
  // the count of those that come before it, whatever the part's length.
  void insert(std::int64_t lo) noexcept {
    std::array<Word, insertion_limit> words;
    std::array<std::uint32_t, insertion_limit> before;
#pragma GCC unroll 7
    for (std::uint32_t k = 0; k < insertion_limit; ++k) {
      words[k] = steps_[lo + k];
      before[k] = k;
    }
#pragma GCC unroll 7
    for (std::size_t b = 1; b < insertion_limit; ++b) {
#pragma GCC unroll 7
      for (std::size_t a = 0; a < b; ++a) {
        const std::uint32_t turned = steps_.is_above(words[a], words[b]);
        before[a] += turned;
        before[b] -= turned;
      }
    }
#pragma GCC unroll 7
    for (std::size_t k = 0; k < insertion_limit; ++k) sorted_[lo + before[k]] = words[k];
  }

  WordSteps steps_;
  Word* sorted_;
  std::int64_t last_;
  std::int64_t steps_left_;
  std::array<Upper, 128> parts_;  // more deep only where there are too many steps
  std::size_t waiting_ = 0;
};

}  // namespace

bool run_words(const Packing& packing, std::span<std::uint64_t> words,
               std::span<std::uint64_t> sorted, std::int64_t first) noexcept {
  constexpr Word above_all = std::numeric_limits<std::int64_t>::max();
  std::fill_n(words.data() + words.size(), words_behind, above_all);
  const WordSteps steps(words.data(), packing.position_mask(), first);
  return Run(steps, sorted.data(), static_cast<std::int64_t>(words.size())).sort();
}

bool seem_tied(const Packing& packing, std::span<const std::uint64_t> words) noexcept {
  // Neighbours, as points are measured twice in a row, at places all over.
  constexpr std::size_t looks = 512;
  constexpr std::size_t neighbours = 8;
  constexpr int slot_bits = 12;
  std::array<std::uint64_t, std::size_t{1} << slot_bits> seen;
  seen.fill(~std::uint64_t{0});
  const std::size_t step = words.size() / looks;
  if (step < neighbours) return true;  // so few that either way will do
  for (std::size_t start = 0; start + neighbours <= words.size(); start += step) {
    for (const std::uint64_t word : words.subspan(start, neighbours)) {
      const std::uint64_t number = packing.number(word);
      // Multiplicative hashing, by the golden ratio.
      const auto slot = static_cast<std::size_t>(number * 0x9e3779b97f4a7c15U >> (64 - slot_bits));
      if (seen[slot] == number) return true;
      seen[slot] = number;
    }
  }
  return false;
}

}  // namespace orv2_geo::sorting

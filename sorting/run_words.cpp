#include "sorting/run_words.h"

#include <array>
#include <cstddef>

#include "sorting/word_steps.h"

namespace orv2_geo::sorting {

namespace {

class Run {
 public:
  Run(const WordSteps& steps, std::int64_t most_steps) noexcept
      : steps_(steps), steps_left_(most_steps) {}

  bool sort(std::int64_t lo, std::int64_t hi) noexcept {
    while (true) {
      while (hi - lo >= static_cast<std::int64_t>(insertion_limit)) {
        steps_.choose_pivot(lo, hi);
        const auto [i, j] = steps_.partition(lo, hi);
        steps_left_ -= hi - lo;
        if (steps_left_ < 0) return false;
        // The larger part waits, so that never more do than a logarithm.
        const bool upper_waits = hi - i >= j - lo;
        waiting_[parts_++] = upper_waits ? Part{i, hi} : Part{lo, j - 1};
        lo = upper_waits ? lo : i;
        hi = upper_waits ? j - 1 : hi;
      }
      steps_.insert(lo, hi);
      if (parts_ == 0) return true;
      lo = waiting_[--parts_].lo;
      hi = waiting_[parts_].hi;
    }
  }

 private:
  struct Part {
    std::int64_t lo;
    std::int64_t hi;
  };

  WordSteps steps_;
  std::int64_t steps_left_;
  std::array<Part, 64> waiting_;
  std::size_t parts_ = 0;
};

}  // namespace

bool run_words(const Packing& packing, std::span<std::uint64_t> words, std::int64_t first,
               std::int64_t most_steps) noexcept {
  const WordSteps steps(words.data(), packing.mask_below_number(), first);
  return Run(steps, most_steps).sort(0, static_cast<std::int64_t>(words.size()) - 1);
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

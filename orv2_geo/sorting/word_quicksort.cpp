#include "orv2_geo/sorting/word_quicksort.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace orv2_geo::sorting {

namespace {

using Word = std::uint64_t;

constexpr std::size_t small_part = 64;

// The pivot's choice, the partition and the insertion. Places are counted from 0, the
// first being that of the subscript `first`.
class Steps {
 public:
  Steps(Word* words, Word mask_below_key, std::int64_t first) noexcept
      : words_(words), mask_below_key_(mask_below_key), first_(first) {}

  Word operator[](std::int64_t place) const noexcept { return words_[place]; }

  // The median of three goes to lo + 1, without a branch: which is which is a matter
  // of chance.
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

  // Whether no word's key is below the one before.
  bool is_ascending(std::int64_t lo, std::int64_t hi) const noexcept {
    for (std::int64_t k = lo; k < hi; ++k) {
      if (words_[k] > highest_of_key(words_[k + 1])) return false;
    }
    return true;
  }

  // The place of the last word up to which each key is above the one before.
  std::int64_t end_of_rise(std::int64_t lo, std::int64_t hi) const noexcept {
    std::int64_t k = lo;
    while (k < hi && words_[k + 1] > highest_of_key(words_[k])) ++k;
    return k;
  }

  bool is_tied_to_next(std::int64_t k) const noexcept {
    return lowest_of_key(words_[k]) == lowest_of_key(words_[k + 1]);
  }

  // Puts a small part in order whose words nearly are, and no two of one key: whatever way it is
  // sorted, the outcome is the same. False, with the words as they were, where it is not so.
  [[gnu::noinline]] bool put_few_in_order(std::int64_t lo, std::int64_t hi) noexcept {
    const auto count = static_cast<std::size_t>(hi - lo + 1);
    const Word* const part = words_ + lo;
    std::array<Word, small_part> in_order;
    std::size_t moves_left = 2 * small_part;
    for (std::size_t k = 0; k < count; ++k) {
      std::size_t place = k;
      for (; place != 0 && in_order[place - 1] > highest_of_key(part[k]); --place) {
        in_order[place] = in_order[place - 1];
      }
      const bool tied = place != 0 && in_order[place - 1] >= lowest_of_key(part[k]);
      if (tied || k - place > moves_left) return false;
      moves_left -= k - place;
      in_order[place] = part[k];
    }
    std::copy_n(in_order.begin(), count, words_ + lo);
    return true;
  }

  // Gives where the upward scan ended, and the pivot's final place.
  BlockPartition::Ends partition(std::int64_t lo, std::int64_t hi) noexcept {
    const Word pivot = words_[lo + 1];
    const auto [i, j] = BlockPartition(words_, lowest_of_key(pivot), highest_of_key(pivot))
                            .exchange(lo + 2, hi - 1);
    words_[lo + 1] = words_[j];
    words_[j] = pivot;
    return {i, j};
  }

  // Of up to seven words, or none. Insertion keeps the order of equals, so a word's
  // place is the count of those that come before it, which is found without a branch:
  // always for seven, those beyond the part staying where they are.
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
  // With two bits below the key, of 0b10110 they are 0b10100 and 0b10111.
  Word lowest_of_key(Word word) const noexcept { return word & ~mask_below_key_; }
  Word highest_of_key(Word word) const noexcept { return word | mask_below_key_; }

  void put_in_order(Word& low, Word& high) const noexcept {
    const bool turned = low > highest_of_key(high);
    const Word above = turned ? low : high;
    low = turned ? high : low;
    high = above;
  }

  Word* words_;
  Word mask_below_key_;
  std::int64_t first_;
};

// The loop over the parts. `Purpose` is told what becomes of them:
//   is_settled(lo, hi)        whether the part needs no sorting, and is dealt with;
//   partitioned(lo, hi, ends) a partition is done; false gives up;
//   inserted(lo, hi)          a part of up to seven words, or none, is sorted.
template <class Purpose>
bool sort_parts(Steps& steps, std::int64_t lo, std::int64_t hi, Purpose& purpose) noexcept {
  struct Part {
    std::int64_t lo, hi;
  };
  // The larger part waits, so that never more do than a logarithm of the words.
  std::array<Part, 64> waiting;
  std::size_t parts = 0;
  while (true) {
    if (!purpose.is_settled(lo, hi)) {
      if (hi - lo >= static_cast<std::int64_t>(insertion_limit)) {
        steps.choose_pivot(lo, hi);
        const auto [i, j] = steps.partition(lo, hi);
        if (!purpose.partitioned(lo, hi, {i, j})) return false;
        const bool upper_waits = hi - i >= j - lo;
        waiting[parts++] = upper_waits ? Part{i, hi} : Part{lo, j - 1};
        lo = upper_waits ? lo : i;
        hi = upper_waits ? j - 1 : hi;
        continue;
      }
      steps.insert(lo, hi);
      purpose.inserted(lo, hi);
    }
    if (parts == 0) return true;
    lo = waiting[--parts].lo;
    hi = waiting[parts].hi;
  }
}

// The words themselves are the answer. Where they come in runs small parts are looked at
// first: of those in order, or nearly, the outcome is known, unless there are ties in more than
// insertion is left with.
template <bool in_runs>
class SortWords {
 public:
  SortWords(Steps& steps, std::int64_t most_steps) noexcept
      : steps_(steps), steps_left_(most_steps) {}

  bool is_settled(std::int64_t lo, std::int64_t hi) noexcept {
    if (!in_runs || hi - lo >= static_cast<std::int64_t>(small_part)) return false;
    if (hi - lo < static_cast<std::int64_t>(insertion_limit)) return steps_.is_ascending(lo, hi);
    const std::int64_t end = steps_.end_of_rise(lo, hi);
    return end == hi || (!steps_.is_tied_to_next(end) && steps_.put_few_in_order(lo, hi));
  }
  bool partitioned(std::int64_t lo, std::int64_t hi, const BlockPartition::Ends&) noexcept {
    steps_left_ -= hi - lo;
    return steps_left_ >= 0;
  }
  static void inserted(std::int64_t, std::int64_t) noexcept {}

 private:
  Steps& steps_;
  std::int64_t steps_left_;
};

// Whether words mostly ascend or descend for a while, at places all over. Marks and
// positions are looked at like keys: it is a guess.
bool seem_to_come_in_runs(std::span<const std::uint64_t> words) noexcept {
  constexpr std::size_t looks = 64;
  constexpr std::size_t neighbours = 8;
  const std::size_t step = words.size() / looks;
  if (step < neighbours) return false;  // so few that either way will do
  std::size_t runs = 0;
  for (std::size_t look = 0; look < looks; ++look) {
    const auto some = words.subspan(look * step, neighbours);
    runs += std::is_sorted(some.begin(), some.end()) || std::is_sorted(some.rbegin(), some.rend());
  }
  return runs > looks * 3 / 4;
}

template <bool in_runs>
bool sort_words(Steps steps, std::size_t count, std::int64_t most_steps) noexcept {
  SortWords<in_runs> purpose(steps, most_steps);
  return sort_parts(steps, 0, static_cast<std::int64_t>(count) - 1, purpose);
}

// In place of its key a word has the element's rank: the place of the first of its
// equals in the sorted order.
constexpr int bits_below_rank = 32;
std::uint32_t rank_of(Word word) { return static_cast<std::uint32_t>(word >> bits_below_rank); }
std::uint32_t position_of(Word word) { return static_cast<std::uint32_t>(word); }
constexpr Word word_of_rank(std::uint64_t rank) { return rank << bits_below_rank; }

// Positions are written as soon as their places are known, and a part without ties is
// not sorted at all.
class SettleTies {
 public:
  // ties_up_to[p]: how many places up to p are tied to the one before.
  SettleTies(const Steps& steps, const std::uint32_t* ties_up_to, std::uint32_t* order) noexcept
      : steps_(steps), ties_up_to_(ties_up_to), order_(order) {}

  bool is_settled(std::int64_t lo, std::int64_t hi) noexcept {
    if (lo > hi) return true;
    if (ties_up_to_[lo] != ties_up_to_[hi]) return false;
    // Each word is alone of its rank here; one whose equals stand in front of the part
    // is its lowest.
    for (std::int64_t k = lo; k <= hi; ++k) {
      order_[std::max<std::int64_t>(rank_of(steps_[k]), lo)] = position_of(steps_[k]);
    }
    return true;
  }
  bool partitioned(std::int64_t, std::int64_t, const BlockPartition::Ends& ends) noexcept {
    write(ends.second, ends.first - 1);  // the pivot, and what lies between the two parts
    return true;
  }
  void inserted(std::int64_t lo, std::int64_t hi) noexcept { write(lo, hi); }

 private:
  void write(std::int64_t lo, std::int64_t hi) noexcept {
    for (std::int64_t k = lo; k <= hi; ++k) order_[k] = position_of(steps_[k]);
  }

  const Steps& steps_;
  const std::uint32_t* ties_up_to_;
  std::uint32_t* order_;
};

bool is_tied(std::uint32_t entry) { return (entry & tied_bit) != 0; }

// Up to the insertion limit equal elements keep their order.
void keep_order(std::span<std::uint32_t> order) {
  for (auto start = order.begin(); start != order.end();) {
    const auto end = std::find_if_not(start + 1, order.end(), is_tied);
    for (auto entry = start; entry != end; ++entry) *entry &= ~tied_bit;
    std::sort(start, end);
    start = end;
  }
}

}  // namespace

bool word_quicksort(const WordLayout& layout, std::span<std::uint64_t> words, std::int64_t first,
                    std::int64_t most_steps) noexcept {
  const Steps steps(words.data(), layout.mask_below_key(), first);
  return seem_to_come_in_runs(words) ? sort_words<true>(steps, words.size(), most_steps)
                                     : sort_words<false>(steps, words.size(), most_steps);
}

void settle_ties(std::span<std::uint32_t> order, std::int64_t first, std::uint64_t* words,
                 std::uint32_t* ties_up_to) noexcept {
  if (std::none_of(order.begin(), order.end(), is_tied)) return;
  if (order.size() <= insertion_limit) return keep_order(order);
  std::uint32_t ties = 0;
  std::uint64_t rank = 0;
  for (std::size_t p = 0; p < order.size(); ++p) {
    const std::uint32_t position = order[p] & ~tied_bit;
    if (is_tied(order[p])) {
      ++ties;
    } else {
      rank = p;
    }
    ties_up_to[p] = ties;
    words[position] = word_of_rank(rank) | position;
  }
  Steps steps(words, word_of_rank(1) - 1, first);
  SettleTies purpose(steps, ties_up_to, order.data());
  sort_parts(steps, 0, static_cast<std::int64_t>(order.size()) - 1, purpose);
}

}  // namespace orv2_geo::sorting

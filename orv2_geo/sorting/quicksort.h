// quicksort.h: the sorting algorithm, step by step and checked.
//
// Its steps are a rule: they decide in which order equal elements are left.
//
//   | best    | usual     | worst | memory    | stable                          |
//   |---------|-----------|-------|-----------|---------------------------------|
//   | n log n | 1.2 n log n | n^2 | 32 ranges | up to seven elements, else not |
//
// Steps are comparisons, in the usual case for elements in random order. Equal elements
// cost no more than others. Where nothing can fail the same order is found in
// n log n steps whatever the elements: see word_order.h.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "orv2_geo/frame/checked_integer.h"
#include "orv2_geo/frame/counted.h"

namespace orv2_geo::sorting {

/// A range of subscripts, both ends included.
struct Range {
  std::int32_t lo;
  std::int32_t hi;
};

/// The parts that are still to be sorted. The larger part is put aside each time,
/// so that 32 ranges are enough for every array.
class RangeStack {
 public:
  bool empty() const noexcept { return counter_ == 0; }
  void push(Range range) {
    if (counter_ == ranges_.size()) raise(failure::subscript_out_of_range);
    ranges_[counter_++] = range;
  }
  Range pop() noexcept { return ranges_[--counter_]; }

 private:
  std::array<Range, 32> ranges_{};
  std::size_t counter_ = 0;
};

/// Sorts the elements lo to hi of what `Elements` offers:
///   above(i, j)    whether the key of element i comes after that of element j;
///   swap(i, j)     exchanges two elements;
///   hold(k)        element k with its key, taken once, to be compared and put
///                  elsewhere:
///     .is_above(i), .is_below(i)  its key and that of element i;
///     .shift(i)    element i moves up to i + 1, where the held one or a gap was;
///     .put(k)      it goes into the gap at k;
///     .settle(j)   element j goes to the held one's place, and it to j.
/// Every access is checked.
template <class Elements>
class Quicksort {
 public:
  explicit Quicksort(Elements& elements) noexcept : elements_(elements) {}

  void sort(Range range) {
    RangeStack waiting;
    while (true) {
      // Up to seven elements are left to insertion.
      if ((Checked32(range.hi) - range.lo).value() < 7) {
        insert(range);
        if (waiting.empty()) return;
        range = waiting.pop();
        continue;
      }
      choose_pivot(range);
      const auto [i, j] = partition(range);
      const Range low = {range.lo, j - 1};
      const Range high = {i, range.hi};
      const bool high_is_larger = range.hi - i + 1 >= j - range.lo;
      waiting.push(high_is_larger ? high : low);
      range = high_is_larger ? low : high;
    }
  }

 private:
  void order(std::int32_t i, std::int32_t j) {
    if (elements_.above(i, j)) elements_.swap(i, j);
  }

  // Keeps the order of equal keys: it stops at one that is not above.
  void insert(Range range) {
    if (range.hi <= range.lo) return;
    for (const std::int32_t j : counted(range.lo + 1, range.hi)) {
      auto held = elements_.hold(j);
      std::int32_t i = j - 1;
      while (i >= range.lo && held.is_below(i)) {
        held.shift(i);
        i = (Checked32(i) - 1).value();
      }
      held.put(i + 1);
    }
  }

  // The median of three goes to lo + 1; lo and hi guard the scans.
  void choose_pivot(Range range) {
    const auto [lo, hi] = range;
    const std::int32_t middle = (Checked32(lo) + hi).value() / 2;  // towards zero
    elements_.swap(middle, lo + 1);
    order(lo, hi);
    order(lo + 1, hi);
    order(lo, lo + 1);
  }

  // Both scans stop on keys equal to the pivot's, which are exchanged too. Gives
  // where the upward scan ended, and the pivot's final place.
  std::pair<std::int32_t, std::int32_t> partition(Range range) {
    auto pivot = elements_.hold(range.lo + 1);
    std::int32_t i = range.lo + 1;
    std::int32_t j = range.hi;
    while (true) {
      do ++i;
      while (pivot.is_above(i));
      do --j;
      while (pivot.is_below(j));
      if (j < i) break;
      elements_.swap(i, j);
    }
    pivot.settle(j);
    return {i, j};
  }

  Elements& elements_;
};

template <class Elements>
void quicksort(Elements elements, Range range) {
  Quicksort<Elements>(elements).sort(range);
}

}  // namespace orv2_geo::sorting

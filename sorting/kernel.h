// kernel.h: the sorting algorithm, step by step.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "frame/checked_integer.h"
#include "frame/counted.h"

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
///   key(k)      the key of the element at subscript k, checked;
///   above(a,b)  whether key a comes after key b;
///   swap(i,j)   exchanges two elements.
/// Elements only ever change places, so that a failure loses none.
template <class Elements>
class Kernel {
 public:
  explicit Kernel(Elements& elements) noexcept : elements_(elements) {}

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
  bool above(std::int32_t i, std::int32_t j) {
    return elements_.above(elements_.key(i), elements_.key(j));
  }
  void order(std::int32_t i, std::int32_t j) {
    if (above(i, j)) elements_.swap(i, j);
  }

  // Keeps the order of equal keys: it stops at one that is not above.
  void insert(Range range) {
    if (range.hi <= range.lo) return;
    for (const std::int32_t j : counted(range.lo + 1, range.hi)) {
      std::int32_t i = j - 1;
      while (i >= range.lo && above(i, i + 1)) {
        elements_.swap(i, i + 1);
        i = (Checked32(i) - 1).value();
      }
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
    const std::int32_t pivot = range.lo + 1;
    std::int32_t i = pivot;
    std::int32_t j = range.hi;
    while (true) {
      do ++i;
      while (above(pivot, i));
      do --j;
      while (above(j, pivot));
      if (j < i) break;
      elements_.swap(i, j);
    }
    elements_.swap(pivot, j);
    return {i, j};
  }

  Elements& elements_;
};

template <class Elements>
void sort_by_steps(Elements elements, Range range) {
  Kernel<Elements>(elements).sort(range);
}

}  // namespace orv2_geo::sorting

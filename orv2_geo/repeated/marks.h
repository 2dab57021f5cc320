// marks.h: where points stand in Y, beside the keys of their X order.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>

#include "orv2_geo/repeated/box.h"
#include "orv2_geo/sorting/word_layout.h"

namespace orv2_geo::repeated {

/// Marks in the words of points in X order, which tell of most points on one X that
/// they are not on one spot, without a look at their Y: the numbers of cells in Y,
/// of some tolerances each, in as many of their lowest bits as words have for them.
/// With the default tolerance a cell is 4 x 0.0002 m = 0.8 mm high, and with all 20
/// bits the marks come again every 2^20 x 0.8 mm = 838 m.
class Marks {
 public:
  static constexpr int most_bits = 20;

  Marks(double tolerance, const sorting::WordLayout& layout) noexcept
      : per_metre_(1.0 / cell(tolerance)),
        furthest_(std::bit_cast<std::uint64_t>(std::min(cell(tolerance) * most_cells, tame))),
        position_bits_(layout.position_bits()),
        mask_(layout.mark_mask()) {}

  /// Marks the words of some points, which have no marks yet. Where a Y is NaN or
  /// so far off that its cell is uncertain, the marks of all points tell nothing.
  void put(std::span<const double> Y, std::span<std::uint64_t> words) noexcept {
    const double* const y = Y.data();
    std::uint64_t* const word = words.data();
    std::uint64_t over = 0;
    std::size_t k = 0;
    for (; k + at_once <= words.size(); k += at_once) over |= put<at_once>(y + k, word + k);
    for (; k < words.size(); ++k) over |= put<1>(y + k, word + k);
    certain_ = certain_ && over >> 63 == 0;
  }

  /// Whether they tell something, and so every Y is tame.
  bool certain() const noexcept { return certain_; }

  /// Of words in X order: whether a point may be in the box of the anchor, the point
  /// before it being either that anchor or in its box.
  bool may_meet(std::uint64_t before, std::uint64_t word) const noexcept {
    // In the same cell or one beside it: the difference of the marks is -1, 0 or 1, or
    // -2 where the positions below borrow one. With 2 added it is from 0 to 3.
    const std::uint64_t cell = std::uint64_t{1} << position_bits_;
    return ((word - before + 2 * cell) & mask_) < 4 * cell;
  }

 private:
  // In cells of four tolerances, two points of one box have numbers at most 1 apart:
  //
  //   2 / 4      both are less than a tolerance from the anchor
  //   2 / 32     the bounds of the box are rounded, up to 2^48 cells within 2^-5
  //   2 / 32     each number of cells is a product, within as much
  //   2 x 1/2    each is rounded to a whole one
  //   ------
  //   1.6...     and so 1, as both are whole
  static double cell(double tolerance) noexcept { return 4.0 * std::max(tolerance, 1e-300); }
  static constexpr double most_cells = 281474976710656.0;  // 2^48

  static constexpr std::size_t at_once = 32;  // a loop without a branch

  template <std::size_t count>
  std::uint64_t put(const double* y, std::uint64_t* words) const noexcept {
    // Adding 1.5 x 2^52 leaves a number without a fraction and, also below 0, with its
    // whole number in the lowest bits: for -2.2 they end in 0b...1110.
    constexpr double whole = 6755399441055744.0;
    // The highest bit is 1 where a Y is too far off, or NaN (see are_tame).
    std::uint64_t over = 0;
    for (std::size_t k = 0; k < count; ++k) {
      over |= furthest_ - std::bit_cast<std::uint64_t>(std::abs(y[k]));
      const auto cells = std::bit_cast<std::uint64_t>(y[k] * per_metre_ + whole);
      words[k] |= cells << position_bits_ & mask_;
    }
    return over;
  }

  double per_metre_;
  std::uint64_t furthest_;
  int position_bits_;
  std::uint64_t mask_;
  bool certain_ = true;
};

}  // namespace orv2_geo::repeated

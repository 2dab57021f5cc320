// box.h: when a point is on the spot of another.
#pragma once

#include <array>
#include <cstddef>

#include "orv2_geo/frame/checked_math.h"

namespace orv2_geo::repeated {

/// In the unit of the coordinates: what a precision of 0 stands for.
inline constexpr double default_tolerance = 0.0002;

/// Where neither a coordinate nor the tolerance is further from 0, no bound of a box
/// can overflow.
inline constexpr double tame = 1e300;

/// Only an exact 0 asks for the default; a negative precision stays.
inline double tolerance(double precision) {
  return Checked(precision) == 0.0 ? default_tolerance : precision;
}

/// Coordinates that a box compares: X and Y, or all three.
template <std::size_t axes>
using Spot = std::array<double, axes>;

/// The open box about an anchor: per axis strictly less than the tolerance away,
/// so that a point exactly at the tolerance is outside. No distance: diagonally
/// it reaches further.
template <std::size_t axes>
class Box {
 public:
  explicit Box(double tolerance) noexcept : tolerance_(tolerance) {}

  void move_to(const Spot<axes>& anchor) noexcept {
    anchor_ = anchor;
    finite_ = true;
#pragma GCC unroll 3
    for (std::size_t axis = 0; axis < axes; ++axis) {
      low_[axis] = anchor[axis] - tolerance_;
      high_[axis] = anchor[axis] + tolerance_;
      finite_ = finite_ && checked::is_finite(low_[axis]) && checked::is_finite(high_[axis]);
    }
  }

  /// Comes before a comparison: an anchor may have bounds that overflow as long
  /// as nothing is compared with it. Failure 6.
  void check_bounds() const {
    if (!finite_) [[unlikely]]
      check_each_bound();
  }

  /// Whether it holds the spot that read(axis) tells, each axis compared before the
  /// next is read; writes what it read to `spot`. Failure 6 for NaN, and what
  /// reading fails with.
  template <class Read>
  bool holds(Read read, Spot<axes>& spot) const {
    bool inside = true;
#pragma GCC unroll 3
    for (std::size_t axis = 0; axis < axes; ++axis) {
      spot[axis] = read(axis);
      const bool above = Checked(low_[axis]) < spot[axis];
      const bool below = Checked(spot[axis]) < high_[axis];
      inside = inside && above && below;
    }
    return inside;
  }

 private:
  [[gnu::noinline, gnu::cold]] void check_each_bound() const {
    for (const double at : anchor_) {
      static_cast<void>(Checked(Checked(at) - tolerance_));
      static_cast<void>(Checked(Checked(at) + tolerance_));
    }
  }

  double tolerance_;
  Spot<axes> anchor_{};
  Spot<axes> low_{};
  Spot<axes> high_{};
  bool finite_ = true;
};

}  // namespace orv2_geo::repeated

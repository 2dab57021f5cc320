// sweep.h: what the routines of the repeated-point engine share: tolerance, box,
// progress and the sweep over the points in X order.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "frame/checked_math.h"
#include "frame/counted.h"
#include "frame/geo_arrays.h"
#include "frame/progress_sink.h"
#include "platform/event_pump.h"

namespace orv2_geo::repeated {

/// What the engine's failures are signed with.
inline constexpr char source[] = "Orv2_Geo.mOrdena";

/// In the unit of the coordinates: what a precision of 0 stands for.
inline constexpr double default_tolerance = 0.0002;

/// Only an exact 0 asks for the default; a negative precision stays.
inline double tolerance(double precision) {
  return Checked(precision) == 0.0 ? default_tolerance : precision;
}

/// The caller's progress indicator, set up for a sweep over so many points.
class Progress {
 public:
  /// Failure 11 for no points, before the indicator is touched.
  Progress(const std::int32_t& points, const ObjectRef& indicator)
      : indicator_(indicator), step_(to_i32(floor(Checked(32000.0) / points) + 1.0)) {
    indicator_.visible(true);
    indicator_.min(0);
    indicator_.max(Checked(points) / step_);
  }

  /// Comes before the i-th point is examined.
  void step(std::int32_t i) const {
    if (i % 1000 != 0) return;  // else i / 1000 is not whole, and the next test cannot hold
    // It holds for no i at all: the indicator stays where it was set up, on
    // purpose, as the bar's scale is no scale of i.
    if (floor(Checked(i) / 100.0) == Checked(i) / 1000.0) show(i);
  }

  void visible() const { indicator_.visible(true); }

 private:
  void show(std::int32_t i) const {
    yield_to_events();
    indicator_.value(floor(Checked(i) / step_));
  }

  ProgressSink indicator_;
  std::int32_t step_;
};

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

  /// Failure 6 for NaN.
  bool holds(const Spot<axes>& spot) const {
    bool inside = true;
    for (std::size_t axis = 0; axis < axes; ++axis) {
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

/// Points in an order of their own stand anywhere in their arrays: their
/// coordinates are asked for some points ahead.
template <std::size_t arrays>
class Ahead {
 public:
  /// Elements 1 to `last` of `order` are subscripts of the arrays; nothing is
  /// fetched when one of them is beyond an array.
  Ahead(const LongArray& order, std::int32_t last,
        const std::array<const DoubleArray*, arrays>& coordinates) noexcept
      : order_(order.row(1, last)), last_(last) {
    if (order_ == nullptr) last_ = 0;
    for (std::size_t i = 0; i < arrays; ++i) {
      rows_[i] = coordinates[i]->row(1, last);
      if (rows_[i] == nullptr) last_ = 0;
    }
  }

  void of(std::int32_t i) const noexcept {
    if (last_ - i < points) return;
    const std::int32_t next = order_[i - 1 + points];
    for (const double* row : rows_) __builtin_prefetch(row + (next - 1));
  }

 private:
  static constexpr std::int32_t points = 24;

  const std::int32_t* order_;
  std::array<const double*, arrays> rows_{};
  std::int32_t last_;
};

/// The coordinates of the points, and the points in X order.
struct Cloud {
  const DoubleArray& X;
  const DoubleArray& Y;
  const DoubleArray& Z;
  const LongArray& Orden;

  template <std::size_t axes>
  Spot<axes> spot(std::int32_t point) const {
    if constexpr (axes == 2) {
      const double x = X(point);
      return {x, Y(point)};
    } else {
      const double x = X(point);
      const double y = Y(point);
      return {x, y, Z(point)};
    }
  }
};

/// Walks the points in X order and tells `clusters` of each: first(p) of the
/// very first, opened(p) of one outside the box of the cluster at hand, which
/// becomes the anchor of the next, joined(p) of one inside, and after either
/// placed(i, p), i being its place in the order.
template <class Clusters>
void sweep(const std::int32_t& nPtos, const Cloud& cloud, double tolerance,
           const Progress& progress, Clusters& clusters) {
  constexpr std::size_t axes = Clusters::axes;
  const DoubleArray& last_read = Clusters::reads_Z ? cloud.Z : cloud.Y;
  const Ahead<3> ahead(cloud.Orden, nPtos, {&cloud.X, &cloud.Y, &last_read});
  Box<axes> box(tolerance);
  const std::int32_t first = cloud.Orden(1);
  clusters.first(first);
  box.move_to(cloud.spot<axes>(first));
  for (const std::int32_t i : counted(2, nPtos)) {
    const std::int32_t p = cloud.Orden(i);
    ahead.of(i);
    progress.step(i);
    box.check_bounds();
    const Spot<axes> spot = cloud.spot<axes>(p);
    if (box.holds(spot)) {
      clusters.joined(p);
    } else {
      clusters.opened(p);
      box.move_to(spot);
    }
    clusters.placed(i, p);
  }
}

}  // namespace orv2_geo::repeated

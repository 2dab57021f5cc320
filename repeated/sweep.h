// sweep.h: the sweep over the points in X order.
#pragma once

#include <cstdint>
#include <limits>
#include <optional>

#include "frame/counted.h"
#include "frame/geo_arrays.h"
#include "repeated/box.h"
#include "repeated/cloud.h"
#include "repeated/keyed_points.h"
#include "repeated/marks.h"
#include "repeated/progress.h"
#include "repeated/x_order.h"

namespace orv2_geo::repeated {

/// What the engine's failures are signed with.
inline constexpr char source[] = "Orv2_Geo.mOrdena";

/// Tells the clusters of each of the first nPtos points in order, see Sweep.
template <class Points, class Clusters>
std::int32_t walk(std::int32_t nPtos, const Points& points, double tolerance,
                  const Progress& progress, Clusters clusters) {
  constexpr std::size_t axes = Clusters::axes;
  Box<axes> box(tolerance);
  const std::int32_t first = points.point(1);
  clusters.first(first, points);
  box.move_to(spot<axes>(points, first));
  for (const std::int32_t i : counted(2, nPtos)) {
    const std::int32_t p = points.point(i);
    points.ahead(i, clusters);
    progress.step(i);
    box.check_bounds();
    Spot<axes> at;
    if (box.holds([&](std::size_t axis) { return coordinate(points, p, axis); }, at)) {
      clusters.joined(p, points);
    } else {
      clusters.opened(p, points);
      box.move_to(at);
    }
    clusters.placed(i, p);
  }
  return clusters.found();
}

struct Coordinates {
  const DoubleArray& X;
  const DoubleArray& Y;
  const DoubleArray& Z;
};

/// The sweep over the first nPtos points in X order.
template <bool reads_Z>
class Sweep {
 public:
  Sweep(std::int32_t nPtos, const Coordinates& at, XOrder& order, double tolerance) noexcept
      : nPtos_(nPtos), at_(at), order_(order), tolerance_(tolerance) {
    take_keyed_way();
  }

  /// Whether nothing can fail in it, so that results need no place of their own
  /// until it is done.
  bool cannot_fail() const noexcept { return keyed_.has_value(); }

  /// A word for each point, to be written one by one as points join; none where
  /// there is no room to spare.
  std::span<std::uint64_t> room() noexcept {
    return cannot_fail() ? order_.words() : std::span<std::uint64_t>();
  }

  /// Walks the points in X order and tells `clusters` of each: first(p) of the
  /// very first, opened(p) of one outside the box of the cluster at hand, which
  /// becomes the anchor of the next, joined(p) of one inside, and after either
  /// placed(i, p), i being its place in the order. opened_each(from, to, point_at)
  /// stands for both, of each of the points point_at(from) to point_at(to - 1),
  /// whose places are from + 1 to to. Some points before, ahead(p) may come. It is
  /// not disturbed by what is written to order.numbers() up to place i. Answers with
  /// how many clusters there are.
  template <class Clusters>
  std::int32_t run(const Progress& progress, const Clusters& clusters) {
    static_assert(Clusters::reads_Z == reads_Z);
    if (keyed_) return keyed_->walk(progress, clusters);
    order_.put_in_order();
    const Cloud cloud = {at_.X, at_.Y, at_.Z, order_.numbers()};
    const auto sound = SoundCloud<reads_Z>::of(cloud, nPtos_);
    if (sound) return walk(nPtos_, *sound, tolerance_, progress, clusters);
    return walk(nPtos_, cloud, tolerance_, progress, clusters);
  }

 private:
  // Where no coordinate can make a step fail and X still has its keys.
  void take_keyed_way() noexcept {
    if (!order_.is_packed() || nPtos_ != order_.points()) return;
    if (nPtos_ == std::numeric_limits<std::int32_t>::max()) return;  // its counter fails
    const auto points = SoundPoints<reads_Z>::of(at_.X, at_.Y, at_.Z, nPtos_);
    if (!points || !are_tame({&tolerance_, 1}) || !are_tame(points->all_z())) return;
    Marks marks(tolerance_, order_.packing());
    if (!order_.mark(at_.X, points->all_y(), marks)) return;
    if (!marks.certain() && !are_tame(points->all_y())) return;
    if (!order_.sort_words()) return;
    keyed_.emplace(order_.words(), order_.packing(), marks, *points, tolerance_);
  }

  std::int32_t nPtos_;
  Coordinates at_;
  XOrder& order_;
  double tolerance_;
  std::optional<KeyedPoints<SoundPoints<reads_Z>>> keyed_;
};

}  // namespace orv2_geo::repeated

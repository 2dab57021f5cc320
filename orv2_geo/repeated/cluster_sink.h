// cluster_sink.h: whom a sweep tells of the clusters that it finds.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>

namespace orv2_geo::repeated {

/// What a sweep tells. A sink derives from it, says `axes` (2 or 3, those of its box)
/// and `reads_Z`, and declares first, opened and joined:
///
///   first(p, points)    the first point of all, which opens the first cluster;
///   opened(p, points)   p is outside the box of the cluster at hand and opens the
///                       next one, whose anchor it is;
///   joined(p, points)   p is inside it.
///
/// and opened_each, which stands for opened and placed, one after the other, of each
/// of the points point_at(from) to point_at(to - 1), whose places in the order are
/// from + 1 to to. It is told only by a sweep in which no step can fail.
///
/// placed and prefetch_for are there already and do nothing.
struct ClusterSink {
  /// Comes after each opened or joined: the place of p in the X order, from 1.
  static void placed(std::int32_t, std::int32_t) noexcept {}

  /// Comes some points before p is told of.
  static void prefetch_for(std::int32_t) noexcept {}
};

/// A sink that can hear of `Points`, and tells how many clusters it has heard of.
template <class S, class Points>
concept HearsOf = std::derived_from<S, ClusterSink> &&
    requires(S sink, const Points& points, std::int32_t p, std::size_t k,
             std::int32_t (*point_at)(std::size_t)) {
  requires S::axes == 2 || S::axes == 3;
  requires S::reads_Z || !S::reads_Z;
  sink.first(p, points);
  sink.opened(p, points);
  sink.joined(p, points);
  sink.placed(p, p);
  sink.prefetch_for(p);
  sink.opened_each(k, k, point_at);
  { sink.found() } -> std::same_as<std::int32_t>;
};

}  // namespace orv2_geo::repeated

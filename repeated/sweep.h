// sweep.h: the sweep over the points in X order.
#pragma once

#include <cstdint>

#include "frame/counted.h"
#include "frame/geo_arrays.h"
#include "repeated/box.h"
#include "repeated/cloud.h"
#include "repeated/keyed_points.h"
#include "repeated/progress.h"
#include "repeated/x_order.h"

namespace orv2_geo::repeated {

/// What the engine's failures are signed with.
inline constexpr char source[] = "Orv2_Geo.mOrdena";

/// Tells the clusters of each of the first nPtos points in order, see sweep().
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
    const Spot<axes> at = spot<axes>(points, p);
    if (box.holds(at)) {
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

/// Walks the points in X order and tells `clusters` of each: first(p) of the
/// very first, opened(p) of one outside the box of the cluster at hand, which
/// becomes the anchor of the next, joined(p) of one inside, and after either
/// placed(i, p), i being its place in the order. opened_each(from, to, point_at)
/// stands for both, of each of the points point_at(from) to point_at(to - 1), whose
/// places are from + 1 to to. Some points before, ahead(p) may come, and
/// ahead_near(p) of one that may be joined. What is written to order.numbers() up
/// to place i does not disturb it. Answers with how many clusters there are.
template <class Clusters>
std::int32_t sweep(std::int32_t nPtos, const Coordinates& at, XOrder& order, double tolerance,
                   const Progress& progress, const Clusters& clusters) {
  const Cloud cloud = {at.X, at.Y, at.Z, order.numbers()};
  const auto sound = SoundCloud<Clusters::reads_Z>::of(cloud, nPtos);
  if (sound && nPtos == order.points() && sound->is_tame(tolerance)) {
    if (const auto words = order.keyed(at.X); !words.empty()) {
      const KeyedPoints keyed(words, order.packing(), *sound, tolerance);
      return keyed.walk(progress, clusters);
    }
  }
  order.put_in_order();
  if (sound) return walk(nPtos, *sound, tolerance, progress, clusters);
  return walk(nPtos, cloud, tolerance, progress, clusters);
}

}  // namespace orv2_geo::repeated

// point_sweep.h: the sweep point by point.
#pragma once

#include <cstdint>

#include "orv2_geo/frame/counted.h"
#include "orv2_geo/repeated/box.h"
#include "orv2_geo/repeated/cluster_sink.h"
#include "orv2_geo/repeated/points.h"
#include "orv2_geo/repeated/progress.h"

namespace orv2_geo::repeated {

/// Tells the sink of the first nPtos points in their order; answers with how many
/// clusters it found. Every step may fail: 6 where a bound of a box overflows or NaN is
/// compared, 9 at a point that is missing, and what the progress fails with.
template <class Points, class Sink>
requires HearsOf<Sink, Points> std::int32_t sweep_points(std::int32_t nPtos, const Points& points,
                                                         double tolerance, const Progress& progress,
                                                         Sink sink) {
  constexpr std::size_t axes = Sink::axes;
  Box<axes> box(tolerance);
  const std::int32_t first = points.point(1);
  sink.first(first, points);
  box.move_to(spot<axes>(points, first));
  for (const std::int32_t i : counted(2, nPtos)) {
    const std::int32_t p = points.point(i);
    points.prefetch_after(i, sink);
    progress.step(i);
    box.check_bounds();
    Spot<axes> at;
    if (box.holds([&](std::size_t axis) { return coordinate(points, p, axis); }, at)) {
      sink.joined(p, points);
    } else {
      sink.opened(p, points);
      box.move_to(at);
    }
    sink.placed(i, p);
  }
  return sink.found();
}

}  // namespace orv2_geo::repeated

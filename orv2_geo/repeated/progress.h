// progress.h: the caller's indicator during a sweep.
#pragma once

#include <cstdint>

#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/progress_sink.h"
#include "orv2_geo/platform/event_pump.h"

namespace orv2_geo::repeated {

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
    // Where i / 1000 is not whole, the test that follows cannot hold.
    if (i % 1000 == 0) [[unlikely]]
      step_at_thousand(i);
  }

  void visible() const { indicator_.visible(true); }

 private:
  // The test holds for no point at all: on purpose the indicator stays where it
  // was set up.
  [[gnu::noinline]] void step_at_thousand(std::int32_t i) const {
    if (floor(Checked(i) / 100.0) == Checked(i) / 1000.0) show(i);
  }

  void show(std::int32_t i) const {
    yield_to_events();
    indicator_.value(floor(Checked(i) / step_));
  }

  ProgressSink indicator_;
  std::int32_t step_;
};

}  // namespace orv2_geo::repeated

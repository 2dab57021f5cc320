// progress_sink.h: the caller's progress indicator.
#pragma once

#include "frame/variant.h"

namespace orv2_geo {

/// Sets the four properties of a progress indicator by name. Nothing is tested
/// beforehand: no object is failure 91, a missing property 438.
class ProgressSink {
 public:
  explicit ProgressSink(const ObjectRef& indicator) noexcept : indicator_(indicator) {}

  void visible(Bool shown) const { indicator_->set_property("Visible", shown); }
  void min(std::int16_t value) const { indicator_->set_property("Min", value); }
  void max(double value) const { indicator_->set_property("max", value); }
  void value(double value) const { indicator_->set_property("Value", value); }

 private:
  const ObjectRef& indicator_;
};

}  // namespace orv2_geo

// progress_sink.h: the caller's progress indicator.
#pragma once

#include "orv2_geo/frame/floating_point_guard.h"
#include "orv2_geo/frame/variant.h"

namespace orv2_geo {

/// Sets the four properties of a progress indicator by name. Nothing is tested
/// beforehand: no object is failure 91, a missing property 438. The variable is
/// looked at anew each time: a host may put another indicator there meanwhile.
class ProgressSink {
 public:
  explicit ProgressSink(const ObjectRef& indicator) noexcept : indicator_(indicator) {}

  void visible(Bool shown) const { set("Visible", shown); }
  void min(std::int16_t value) const { set("Min", value); }
  void max(double value) const { set("max", value); }
  void value(double value) const { set("Value", value); }

 private:
  void set(std::string_view property, const Variant& value) const {
    const ObjectRef present = indicator_;  // lives on where the host lets it go meanwhile
    in_settings_of_host([&] { present->set_property(property, value); });
  }

  const ObjectRef& indicator_;
};

}  // namespace orv2_geo

// progress_object.h: a host's progress indicator that writes down what it is told.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "orv2_geo/frame/argument.h"
#include "orv2_geo/frame/late_bound.h"
#include "orv2_geo/frame/variant.h"

namespace orv2_geo::testing_support {

/// A property written: its name, and its value with its type.
struct Written {
  std::string name;
  std::string value;
  friend bool operator==(const Written&, const Written&) = default;
};
inline std::ostream& operator<<(std::ostream& out, const Written& one) {
  return out << one.name << " = " << one.value;
}

inline std::string typed(bool value) { return value ? "bool -1" : "bool 0"; }
inline std::string typed(std::int16_t value) { return "i16 " + std::to_string(value); }
inline std::string typed(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "f64 %a", value);
  return text;
}
inline std::string typed(const Variant& value) {
  if (const auto* flag = value.get<Bool>()) return "bool " + std::to_string(flag->bits);
  if (const auto* number = value.get<std::int16_t>()) return typed(*number);
  if (const auto* number = value.get<double>()) return typed(*number);
  return "another type";
}

class ProgressObject final : public LateBound {
 public:
  Variant call(std::string_view, std::span<const Argument>) override {
    raise(failure::no_such_member);
  }
  void set_property(std::string_view name, const Variant& value) override {
    written.push_back({std::string(name), typed(value)});
    if (on_write) on_write(written.size());
  }

  std::vector<Written> written;
  std::function<void(std::size_t)> on_write;  // after the n-th write; may fail
};

/// One that takes everything and keeps nothing.
class Silent final : public LateBound {
 public:
  Variant call(std::string_view, std::span<const Argument>) override { return {}; }
  void set_property(std::string_view, const Variant&) override {}
};

/// What a sweep over `points` sets up: Visible, Min, max.
inline std::vector<Written> set_up(double max) {
  return {{"Visible", typed(true)}, {"Min", typed(std::int16_t{0})}, {"max", typed(max)}};
}
/// The same and Visible once more at the end.
inline std::vector<Written> whole_protocol(double max) {
  std::vector<Written> all = set_up(max);
  all.push_back({"Visible", typed(true)});
  return all;
}

/// A progress object and the reference that a routine takes.
struct Indicator {
  ProgressObject* object = new ProgressObject;
  ObjectRef reference{object};
};

}  // namespace orv2_geo::testing_support

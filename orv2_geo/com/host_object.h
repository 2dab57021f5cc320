// host_object.h: a host's object, reached by the names of its members.
#pragma once

#include "orv2_geo/com/system.h"
#include "orv2_geo/frame/late_bound.h"

namespace orv2_geo::com {

/// A host's variable that holds an object. It is looked at anew with each use: in the
/// middle of a call the host may put another object there, or none (failure 91).
class HostVariable final : public LateBound {
 public:
  /// A variable for objects alone.
  explicit HostVariable(IDispatch** variable) noexcept : object_(variable) {}
  /// A variable for anything, which holds an object now.
  explicit HostVariable(const VARIANT& variable) noexcept : variant_(&variable) {}

  Variant call(std::string_view name, std::span<const Argument> arguments) override;
  void set_property(std::string_view name, const Variant& value) override;

 private:
  IDispatch* present() const;

  IDispatch** object_ = nullptr;
  const VARIANT* variant_ = nullptr;
};

}  // namespace orv2_geo::com

// progress_indicator.h: progress as the library tells it.
#pragma once

#include <span>
#include <string_view>

#include "orv2_geo/frame/late_bound.h"
#include "survey_report/progress.h"

namespace survey_report {

/// The indicator that members of the library ask for: its properties Visible, Min, Max and
/// Value, of which the last moves the progress of a run.
class ProgressIndicator final : public orv2_geo::LateBound {
 public:
  /// `progress` must outlive it.
  explicit ProgressIndicator(Progress& progress) : progress_(progress) {}

  /// It has no methods: failure 438.
  orv2_geo::Variant call(std::string_view name,
                         std::span<const orv2_geo::Argument> arguments) override;
  /// Failure 438 for a property that it does not have, 13 for what is no number.
  void set_property(std::string_view name, const orv2_geo::Variant& value) override;

 private:
  void tell() const;

  Progress& progress_;
  bool visible_ = false;
  double min_ = 0.0;
  double max_ = 0.0;
  double value_ = 0.0;
};

}  // namespace survey_report

#include "survey_report/progress_indicator.h"

#include <algorithm>
#include <cctype>
#include <string>

#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/frame/variant.h"

namespace survey_report {

namespace {

using orv2_geo::Variant;

// Names of properties are alike in capitals and small letters.
std::string lower(std::string_view name) {
  std::string text(name);
  for (char& letter : text)
    letter = static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  return text;
}

double number_in(const Variant& value) {
  if (const auto* const number = value.get<double>()) return *number;
  if (const auto* const number = value.get<float>()) return static_cast<double>(*number);
  if (const auto* const number = value.get<std::int32_t>()) return *number;
  if (const auto* const number = value.get<std::int16_t>()) return *number;
  orv2_geo::raise(orv2_geo::failure::type_mismatch);
}

bool flag_in(const Variant& value) {
  const auto* const flag = value.get<orv2_geo::Bool>();
  return flag != nullptr ? static_cast<bool>(*flag) : number_in(value) != 0.0;
}

}  // namespace

Variant ProgressIndicator::call(std::string_view, std::span<const orv2_geo::Argument>) {
  orv2_geo::raise(orv2_geo::failure::no_such_member);
}

void ProgressIndicator::set_property(std::string_view name, const Variant& value) {
  const std::string property = lower(name);
  if (property == "visible") {
    visible_ = flag_in(value);
  } else if (property == "min") {
    min_ = number_in(value);
  } else if (property == "max") {
    max_ = number_in(value);
  } else if (property == "value") {
    value_ = number_in(value);
  } else {
    orv2_geo::raise(orv2_geo::failure::no_such_member);
  }
  tell();
}

void ProgressIndicator::tell() const {
  if (!visible_ || !(max_ > min_)) return;
  progress_.reach(std::clamp((value_ - min_) / (max_ - min_), 0.0, 1.0));
}

}  // namespace survey_report

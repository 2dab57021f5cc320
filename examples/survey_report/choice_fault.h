// choice_fault.h: options that do not fit the survey.
#pragma once

#include <stdexcept>

namespace survey_report {

/// What the user chose cannot be followed on this survey. The message begins
/// with the option.
class ChoiceFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace survey_report

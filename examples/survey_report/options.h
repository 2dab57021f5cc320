// options.h: what the command line asks for.
#pragma once

#include <optional>
#include <span>
#include <stdexcept>
#include <string>

#include "survey_report/points.h"
#include "survey_report/sheet.h"
#include "survey_report/study.h"

namespace survey_report {

/// Options that cannot be followed.
class UsageFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Command {
  bool help = false;
  FieldOrder order = FieldOrder::x_first;
  std::optional<std::string> input;  ///< there, unless help is asked for
  std::optional<std::string> output;
  std::optional<std::string> plan;
  std::optional<std::string> profile;
  std::optional<std::string> kept;  ///< there when the dialog is asked for
  bool extremes_dialog = false;
  bool removal_dialog = false;
  DrawingOptions drawings;
  StudyOptions study;
};

/// Reads the words after the program's name from left to right, up to a call
/// for help. Throws UsageFault.
Command command_of(std::span<const char* const> words);

}  // namespace survey_report

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
  std::optional<std::string> information;  ///< what --help or --version prints, and nothing else
  FieldOrder order = FieldOrder::x_first;
  std::optional<std::string> input;   ///< there, unless information is asked for
  std::optional<std::string> output;  ///< a folder
  std::optional<std::string> plan;
  std::optional<std::string> profile;
  std::optional<std::string> kept;  ///< there when the dialog is asked for
  bool extremes_dialog = false;
  bool removal_dialog = false;
  DrawingOptions drawings;
  StudyOptions study;
};

/// Sets the language that the words after the program's name ask for, or else that of the
/// locale, before anything is said.
void choose_language(std::span<const char* const> words);

/// Reads those words. Throws UsageFault.
Command command_of(std::span<const char* const> words);

}  // namespace survey_report

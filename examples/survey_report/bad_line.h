// bad_line.h: what is wrong with a point file, and where.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "survey_report/exit_code.h"

namespace survey_report {

/// A line that is neither a point nor one of the lines without points.
struct BadLine {
  std::size_t line = 0;    ///< from 1; 0 where the file as a whole is at fault
  std::size_t column = 0;  ///< in characters, from 1; 0 where there is none
  std::string what;
  ExitCode code = ExitCode::bad_line;
};

/// Bad lines as messages, "file:17:3: what", one a line. After the first twenty
/// the others are counted.
std::string messages(std::string_view file, const std::vector<BadLine>& bad_lines);

}  // namespace survey_report

// page_parts.h: the files of page/, as the build put them into the program.
#pragma once

#include <string_view>

namespace survey_report {

extern const std::string_view page_styles;
extern const std::string_view page_script;

}  // namespace survey_report

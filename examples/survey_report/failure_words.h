// failure_words.h: a failure of the library as a message says it.
#pragma once

#include <string>

#include "orv2_geo/frame/run_failure.h"

namespace survey_report {

/// The library's words, with number and source.
std::string words_of(const orv2_geo::RunFailure& failure);

}  // namespace survey_report

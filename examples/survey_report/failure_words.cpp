#include "survey_report/failure_words.h"

namespace survey_report {

std::string words_of(const orv2_geo::RunFailure& failure) {
  return std::string(failure.description()) + " (failure " + std::to_string(failure.number()) +
         " of " + std::string(failure.source()) + ')';
}

}  // namespace survey_report

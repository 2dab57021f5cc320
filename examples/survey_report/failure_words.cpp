#include "survey_report/failure_words.h"
#include "survey_report/words.h"

namespace survey_report {

std::string words_of(const orv2_geo::RunFailure& failure) {
  return words::failure_of.with(
      {failure.description(), std::to_string(failure.number()), failure.source()});
}

}  // namespace survey_report

#include "survey_report/scale.h"

#include <array>
#include <charconv>

#include "survey_report/rounding.h"

namespace survey_report {

namespace {

constexpr double slack = 1e-9;          // what rounding may have added to a scale that is round
constexpr double quarters_from = 10.0;  // 1:25 is a scale, 1:2.5 is none
constexpr int digits = 12;

std::string short_text(double value) {
  std::array<char, 32> room;
  const auto [end, error] = std::to_chars(room.data(), room.data() + room.size(), value,
                                          std::chars_format::general, digits);
  std::string text(room.data(), end);
  std::erase(text, '+');
  return text;
}

}  // namespace

double round_scale(double at_least) {
  const double wanted = at_least * (1.0 - slack);
  const double decade = decade_of(at_least);
  for (const double part : {1.0, 2.0, 2.5, 5.0}) {
    if (part == 2.5 && decade < quarters_from) continue;
    if (part * decade >= wanted) return part * decade;
  }
  return 10.0 * decade;
}

bool is_round_scale(double scale) {
  const double round = round_scale(scale);
  return round - scale <= slack * scale;
}

std::string scale_text(double scale) {
  return scale < 1.0 ? short_text(1.0 / scale) + ":1" : "1:" + short_text(scale);
}

}  // namespace survey_report

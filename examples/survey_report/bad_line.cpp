#include "survey_report/bad_line.h"

#include <algorithm>

#include "survey_report/utf8.h"
#include "survey_report/words.h"

namespace survey_report {

namespace {

constexpr std::size_t bad_lines_shown = 20;

std::string place_of(const BadLine& bad) {
  if (bad.line == 0) return {};
  return ':' + std::to_string(bad.line) + (bad.column == 0 ? "" : ':' + std::to_string(bad.column));
}

}  // namespace

std::string messages(std::string_view file, const std::vector<BadLine>& bad_lines) {
  const std::string name = without_controls(file);
  const std::size_t shown = std::min(bad_lines.size(), bad_lines_shown);
  std::string text;
  for (std::size_t i = 0; i < shown; ++i) {
    text += name + place_of(bad_lines[i]) + ": " + bad_lines[i].what + '\n';
  }
  const std::size_t others = bad_lines.size() - shown;
  if (others == 0) return text;
  const Word& word = others == 1 ? words::more_bad_line : words::more_bad_lines;
  return text + name + ": " + word.with({std::to_string(others)}) + '\n';
}

}  // namespace survey_report

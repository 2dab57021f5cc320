#include "survey_report/progress_bar.h"

#include <algorithm>
#include <utility>

#include "survey_report/layout.h"

namespace survey_report {

namespace {

constexpr double patience = 0.5;  // seconds
constexpr double pause = 0.1;
constexpr double width = 30.0;
constexpr std::string_view clear_line = "\r\x1B[K";

}  // namespace

ProgressBar::ProgressBar(Write write, Clock clock)
    : write_(std::move(write)), clock_(std::move(clock)), next_(clock_() + patience) {}

ProgressBar::~ProgressBar() {
  if (drawn_) write_(clear_line);
}

void ProgressBar::show(double part, std::string_view what) {
  if (!what.empty()) what_ = what;
  const double now = clock_();
  if (now < next_) return;
  next_ = now + pause;
  drawn_ = true;
  const double done = std::clamp(part, 0.0, 1.0);
  const auto cells = static_cast<std::size_t>(done * width);
  const std::string percent = fixed(100.0 * done, 0);
  write_(std::string(clear_line) + '[' + std::string(cells, '#') +
         std::string(static_cast<std::size_t>(width) - cells, '.') + ']' +
         std::string(4 - percent.size(), ' ') + percent + " %  " + what_);
}

}  // namespace survey_report
